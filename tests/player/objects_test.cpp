#include <array>
#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <limits>

#include "player/Point.h"
#include "practice/Random.h"
#include "support/AgentHarness.h"

namespace {

using Plane = std::complex<double>;

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr double TO_RADIANS = 3.14159265358979323846 / 180.0;

Plane plane(Vector2D v) {
    return {v.x, v.y};
}
Plane capped(Plane v, double longest) {
    return std::abs(v) > longest ? std::polar(longest, std::arg(v)) : v;
}

class Objects : public testing::Test {
protected:
    float any(double from, double to) { return static_cast<float>(random.uniform(from, to)); }
    Vector2D anywhere(double reach) { return at(any(-reach, reach), any(-reach, reach)); }

    support::AgentHarness agent; // the server's parameters, and the agent that Utils looks at
    practice::Random random{11};
};

TEST_F(Objects, ABallRollsAsAGeometricSeriesAfterAKick) {
    for (int i = 0; i < 3000; ++i) {
        Ball ball;
        ball.position = anywhere(50);
        ball.velocity = anywhere(3);
        int const cycles = i % 30;
        float const angle = any(-180, 180);
        float const power = any(0, 100);
        float const distance = any(0.4, 1);
        float const direction = any(-180, 180);

        double const rate = 1 - std::abs(direction) / 720.0 - 0.25 * (distance - 0.085 - 0.3) / 0.7;
        Plane const kick = std::polar(rate * power * 0.027, angle * TO_RADIANS);
        double const decay = 0.94;
        double const sum = (1 - std::pow(decay, cycles)) / (1 - decay);
        auto const expected = [&](Plane v) { return plane(ball.position) + capped(v, 3.0) * sum; };

        Vector2D const kicked = ball.predictedPosition(cycles, angle, power, distance, direction);
        ASSERT_LT(std::abs(plane(kicked) - expected(plane(ball.velocity) + kick)), 1e-3);
        ASSERT_LT(std::abs(plane(ball.rollingPosition(cycles)) - expected(plane(ball.velocity))),
                  1e-3);
    }
}

TEST_F(Objects, APlayerTurnsInPlaceAndThenDashes) {
    for (int i = 0; i < 2000; ++i) {
        // Body directions count clockwise, turns counter-clockwise.
        Player player(anywhere(50), anywhere(0.5), any(0, 360), 0, 7, false, false);
        float const power = any(-100, 100);
        float const turn = any(-360, 360);
        double const largest = 180 / (1 + 5 * std::abs(plane(player.velocity)));
        int const turning = static_cast<int>(std::ceil(std::abs(turn) / largest));

        Plane position = plane(player.position);
        Plane v = plane(player.velocity);
        double const towards = (turn - player.bodyDirection) * TO_RADIANS;
        for (int cycle = turning; cycle < turning + 6; ++cycle) {
            ASSERT_LT(std::abs(plane(player.predictedPosition(cycle, power, turn)) - position),
                      1e-3);
            v = capped(v + std::polar(1.0, towards) * (power * 0.006), 1.05);
            position += v;
            v *= 0.4;
        }
        ASSERT_EQ(player.predictedPosition(turning - 1, power, turn), player.position);
    }
}

TEST_F(Objects, TheAgentDashesWithWhatItsStaminaAllows) {
    struct Case {
        float stamina, effort, power;
        double firstWay; // of the first cycle
    };
    // clang-format off
    constexpr std::array CASES = {
        Case{8000, 0.7F,  100,  0.42}, Case{2550, 1.0F,  100,  0.3}, Case{2400, 1.0F, 100, 0.0},
        Case{8000, 1.0F,  300,  1.05}, Case{8000, 1.0F, -100, -0.6}, Case{1300, 1.0F, -100, -0.3},
    };
    // clang-format on
    Myself& me = agent.world.myself();
    for (Case const& c : CASES) {
        agent.placeMyself(0, 0);
        me.bodyInfo.stamina = c.stamina;
        me.bodyInfo.effort = c.effort;
        EXPECT_NEAR(me.predictedPosition(1, c.power, 0).x, c.firstWay, 1e-4) << c.stamina;
        EXPECT_EQ(me.predictedPosition(1, c.power, 10), at(0, 0)); // a cycle to turn
        EXPECT_EQ(me.predictedPosition(0, c.power, 0), at(0, 0));
    }
    // 2550 allow 50, which leave 2545 and so 45 for the second cycle.
    me.bodyInfo.stamina = 2550;
    me.bodyInfo.effort = 1;
    EXPECT_NEAR(me.predictedPosition(2, 100, 0).x, 0.3 + 0.4 * 0.3 + 45 * 0.006, 1e-3);
}

TEST_F(Objects, StaminaDrainsAndRecovers) {
    struct State {
        float stamina, effort, recovery;
    };
    struct Case {
        State before;
        float power;
        State after;
    };
    // clang-format off
    constexpr std::array CASES = {
        Case{{4000, 1.000F, 1.000F}, -50, {4145.000F, 1.000F, 1.000F}}, // backwards gives, not takes
        Case{{7980, 1.000F, 1.000F}, -50, {8000.000F, 1.000F, 1.000F}}, // full is full
        Case{{  30, 0.900F, 0.800F}, 100, {  35.910F, 0.895F, 0.798F}}, // empty is empty
        Case{{2500, 1.000F, 1.000F}, 100, {2444.910F, 0.995F, 0.998F}}, // 2400 counts as low
        Case{{2501, 0.900F, 0.900F}, 100, {2441.500F, 0.900F, 0.900F}},
        Case{{2000, 0.600F, 0.500F},   0, {2022.500F, 0.600F, 0.500F}}, // at the bottom they stay,
        Case{{2000, 0.601F, 0.501F},   0, {2022.455F, 0.596F, 0.499F}}, // but may step below it
        Case{{4900, 0.800F, 1.000F}, 100, {4845.000F, 0.810F, 1.000F}}, // 4800 counts as high
        Case{{4899, 0.800F, 1.000F}, 100, {4844.000F, 0.800F, 1.000F}},
    };
    // clang-format on
    for (Case const& c : CASES) {
        State s = c.before;
        Myself::updatePredictedStamina(s.stamina, s.effort, s.recovery, c.power);
        EXPECT_NEAR(s.stamina, c.after.stamina, 1e-2) << c.before.stamina;
        EXPECT_NEAR(s.effort, c.after.effort, 1e-5) << c.before.stamina;
        EXPECT_NEAR(s.recovery, c.after.recovery, 1e-5) << c.before.stamina;
    }
}

TEST_F(Objects, CyclesToAPointCountRunTurnAndStart) {
    struct Case {
        float body;
        double distance; // along +x
        double speed;
        bool margin;
        int cycles;
    };
    // clang-format off
    constexpr std::array CASES = {
        Case{    0, 10.6, 0.00, false, 11}, Case{    5, 10.6, 0.0, false, 11},
        Case{ 5.1F, 10.6, 0.00, false, 12}, Case{99.9F, 10.6, 0.0, false, 12},
        Case{  100, 10.6, 0.00, false, 13}, Case{  260, 10.6, 0.0, false, 13},
        Case{  INF, 10.6, 0.00, false, 11}, Case{  NAN, 10.6, 0.0, false, 11},
        Case{    0, 10.6, 1.05, false, 11}, Case{    0, 10.6, 1.2, false, 10},
        Case{    0, 12.1, 0.00, true,  11}, Case{    0,  1.0, 0.0, true,  1},
        Case{    0,  0.0, 0.00, true,   0}, // 1.5 metres past it: one cycle less than none
    };
    // clang-format on
    for (Case const& c : CASES) {
        Player const player({}, at(0, c.speed), c.body, 0, 7, false, false);
        EXPECT_EQ(player.predictedCyclesToPoint(at(c.distance, 0), c.margin), c.cycles)
            << c.body << ' ' << c.distance;
    }
    Player const crosswise({}, {}, 90, 0, 7, false, false);
    EXPECT_EQ(crosswise.predictedCyclesToPoint(at(0, -10.6), false), 11); // 90 is along -y
    Configuration::playerSpeedMax = 0; // as if the parameters had been lost
    EXPECT_GT(crosswise.predictedCyclesToPoint(at(0, 10.6), false), 1000000);
}

} // namespace
