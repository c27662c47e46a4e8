#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

#include "tests/geometry/Sweep.h"
#include "tests/player/Point.h"
#include "tests/support/AgentHarness.h"

namespace {

class Objects : public Sweep {
protected:
    /// What `predicted` says of a player that first turns by `turn` and then speeds up by `push()`
    /// in each cycle. Body directions count clockwise, turns counter-clockwise.
    template <typename Predicted, typename Push>
    static void expectWay(Player const& player, float turn, Predicted predicted, Push push) {
        double const largest = 180 / (1 + 5 * std::abs(toComplex(player.velocity)));
        int const turning = static_cast<int>(std::ceil(std::abs(turn) / largest));
        EXPECT_EQ(predicted(turning - 1), player.position); // it stands as long as it turns
        Complex position = toComplex(player.position);
        Complex v = toComplex(player.velocity);
        for (int cycle = turning; cycle < turning + 8; ++cycle) {
            ASSERT_LT(std::abs(toComplex(predicted(cycle)) - position), 1e-3);
            v = capped(v + push() * unit(turn - player.bodyDirection), 1.05);
            position += v;
            v *= 0.4;
        }
    }

    support::AgentHarness agent; // the server's parameters, and the agent that Utils looks at
};

TEST_F(Objects, OnlyWhatIsKnownMovesOn) {
    for (bool const lost : {true, false}) {
        auto const expectStill = [lost](auto object, auto... command) {
            object.position = lost ? at(0, 1e10) : at(1, 2);
            object.velocity = lost ? at(0.5, -0.25) : at(RCC_ABSENT, 0);
            EXPECT_EQ(object.predictedPosition(3, command...), object.position);
        };
        expectStill(MovingObject());
        expectStill(Ball(), 0.0F, 50.0F, 0.5F, 0.0F);
        expectStill(Player(), 50.0F, 0.0F);
        expectStill(Myself(), 50.0F, 0.0F);
    }
    EXPECT_EQ(MovingObject(at(1, 2), at(0.5, -0.25)).predictedPosition(3), at(2.5, 1.25));
}

TEST_F(Objects, ABallRollsAsAGeometricSeriesAfterAKick) {
    for (int i = 0; i < 3000; ++i) {
        Ball ball;
        ball.position = point();
        ball.velocity = point() / 20;
        int const cycles = i % 30;
        float const angle = number(-180, 180);
        float const power = number(0, 100);
        float const distance = number(0.4F, 1);
        float const direction = number(-180, 180);

        double const rate = 1 - std::abs(direction) / 720.0 - 0.25 * (distance - 0.085 - 0.3) / 0.7;
        Complex const kick = rate * power * 0.027 * unit(angle);
        double const sum = (1 - std::pow(0.94, cycles)) / (1 - 0.94);
        auto const expectEnd = [&](Vector2D end, Complex start) {
            ASSERT_LT(std::abs(toComplex(end - ball.position) - capped(start, 3) * sum), 1e-3);
        };
        Complex const before = toComplex(ball.velocity);
        expectEnd(ball.predictedPosition(cycles, angle, power, distance, direction), before + kick);
        expectEnd(ball.rollingPosition(cycles), before);
        // Half a kick is none.
        expectEnd(ball.predictedPosition(cycles, angle, Ball::NO_KICK, distance, 0), before);
        expectEnd(ball.predictedPosition(cycles, Ball::NO_KICK, power, distance, 0), before);
    }
}

TEST_F(Objects, APlayerTurnsInPlaceAndThenDashes) {
    for (int i = 0; i < 2000; ++i) {
        Player const player(point(), point() / 120, number(0, 360), 0, 7, false, false);
        float const power = number(-100, 100);
        float const turn = number(-360, 360);
        expectWay(
            player, turn, [&](int cycles) { return player.predictedPosition(cycles, power, turn); },
            [&] { return power * 0.006; });
    }
}

TEST_F(Objects, TheAgentDashesWithWhatItsStaminaAllows) {
    Myself& me = agent.world.myself();
    for (int i = 0; i < 2000; ++i) {
        me.position = point();
        me.velocity = point() / 120;
        me.bodyDirection = number(0, 360);
        me.bodyInfo.stamina = number(1200, 3000);
        me.bodyInfo.effort = number(0.6F, 1);
        float const power = number(-100, 300);
        float const turn = i % 2 == 0 ? 0 : number(-90, 90);
        float stamina = me.bodyInfo.stamina;
        float effort = me.bodyInfo.effort;
        float recovery = Player::RECOVER_INIT;
        expectWay(
            me, turn, [&](int cycles) { return me.predictedPosition(cycles, power, turn); },
            [&] {
                double const dash = std::clamp<double>(power, std::min(1250.0F - stamina, 0.0F),
                                                       std::max(stamina - 2500.0F, 0.0F));
                double const push = dash * 0.006 * effort;
                me.updatePredictedStamina(stamina, effort, recovery, static_cast<float>(dash));
                return push;
            });
    }
}

TEST_F(Objects, StaminaDrainsAndRecovers) {
    struct Case {
        float stamina, effort, recovery, power; // and afterwards
        float nextStamina, nextEffort, nextRecovery;
    };
    // clang-format off
    constexpr std::array CASES = {
        Case{4000, 1.000F, 1.000F, -50, 4145.000F, 1.000F, 1.000F}, // backwards gives, not takes
        Case{7980, 1.000F, 1.000F, -50, 8000.000F, 1.000F, 1.000F}, // full is full
        Case{  30, 0.900F, 0.800F, 100,   35.910F, 0.895F, 0.798F}, // empty is empty
        Case{2500, 1.000F, 1.000F, 100, 2444.910F, 0.995F, 0.998F}, // 2400 counts as low
        Case{2501, 0.900F, 0.900F, 100, 2441.500F, 0.900F, 0.900F},
        Case{2000, 0.600F, 0.500F,   0, 2022.500F, 0.600F, 0.500F}, // at the bottom they stay,
        Case{2000, 0.601F, 0.501F,   0, 2022.455F, 0.596F, 0.499F}, // but may step below it
        Case{4900, 0.800F, 1.000F, 100, 4845.000F, 0.810F, 1.000F}, // 4800 counts as high
        Case{4899, 0.800F, 1.000F, 100, 4844.000F, 0.800F, 1.000F},
        Case{4900, 0.995F, 1.000F, 100, 4845.000F, 1.000F, 1.000F}, // no fitter than fit
    };
    // clang-format on
    for (auto [stamina, effort, recovery, power, nextStamina, nextEffort, nextRecovery] : CASES) {
        Myself().updatePredictedStamina(stamina, effort, recovery, power);
        EXPECT_NEAR(stamina, nextStamina, 1e-2);
        EXPECT_NEAR(effort, nextEffort, 1e-5) << nextStamina;
        EXPECT_NEAR(recovery, nextRecovery, 1e-5) << nextStamina;
    }
}

TEST_F(Objects, CyclesToAPointCountRunTurnAndStart) {
    struct Case {
        double body, distance, speed; // to a point at +x
        bool margin;
        int cycles;
    };
    // clang-format off
    constexpr std::array CASES = {
        Case{    0, 10.6, 0.00, false, 11}, Case{    5, 10.6, 0.0, false, 11},
        Case{ 5.1, 10.6, 0.00, false, 12}, Case{99.9, 10.6, 0.0, false, 12},
        Case{  100, 10.6, 0.00, false, 13}, Case{  260, 10.6, 0.0, false, 13},
        Case{RCC_ABSENT, 10.6, 0.00, false, 11}, Case{  NAN, 10.6, 0.0, false, 11},
        Case{    0, 10.6, 1.05, false, 11}, Case{    0, 10.6, 1.2, false, 10},
        Case{    0, 12.1, 0.00, true,  11}, Case{    0,  1.0, 0.0, true,  1},
        Case{    0,  0.0, 0.00, true,   0}, // 1.5 metres past it: one cycle less than none
    };
    // clang-format on
    for (Case const& c : CASES) {
        Player const player({}, at(0, c.speed), static_cast<float>(c.body), 0, 7, false, false);
        EXPECT_EQ(player.predictedCyclesToPoint(at(c.distance, 0), c.margin), c.cycles)
            << c.body << ' ' << c.distance;
    }
    Player const crosswise({}, {}, 90, 0, 7, false, false);
    EXPECT_EQ(crosswise.predictedCyclesToPoint(at(0, -10.6), false), 11); // 90 is along -y
    Configuration::playerSpeedMax = 0; // as if the parameters had been lost
    EXPECT_GT(crosswise.predictedCyclesToPoint(at(0, 10.6), false), 1000000);
}

} // namespace
