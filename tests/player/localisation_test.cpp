#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "player/Point.h"
#include "practice/Body.h"
#include "practice/Eyes.h"
#include "practice/Parameters.h"
#include "practice/Physics.h"
#include "sensing/Sensors.h"
#include "support/AgentHarness.h"
#include "support/Scenes.h"

namespace {

using practice::Vec;

/// An agent and the truth about it: a player of the practice server, of either side.
class Localisation : public testing::TestWithParam<practice::Side> {
protected:
    Localisation() {
        world.teamNames = {support::AgentHarness::TEAM, support::AgentHarness::TEAM};
        agent.join(practice::letter(GetParam()), 7);
        world.mode.phase = practice::Phase::playOn;
        truth.active = true;
    }

    double any(double from, double to) { return random.uniform(from, to); }

    /// Anywhere on the pitch, standing, the ball within `reach`.
    void place(double reach) {
        truth.pos = {any(-52, 52), any(-33.5, 33.5)};
        truth.body = random.direction();
        truth.neck = practice::toRad(any(-90, 90));
        truth.halt();
        world.ball.halt();
        world.ball.pos = truth.pos + practice::polar(any(0.4, reach), random.direction());
    }
    /// The agent knows it all, from wherever it may be.
    void tellTheTruth() {
        agent.placeMyself(ours(truth.pos).x, ours(truth.pos).y, ours(truth.body));
        agent.placeBall(ours(world.ball.pos).x, ours(world.ball.pos).y, ours(world.ball.vel).x,
                        ours(world.ball.vel).y);
        agent.startCycle();
    }
    void feel() {
        ++world.cycle;
        agent.receiveSenseBody(senseBodyMessage(world, truth));
        agent.world.integrateSensorInfo();
    }
    void look() {
        agent.receiveSee(seeMessage(world, truth, random));
        agent.world.integrateSensorInfo();
    }
    /// A cycle passes, which the agent feels.
    void step() {
        moveAll(world, random);
        recoverAll(world);
        feel();
    }

    // The server's values in the agent's frame.
    Vector2D ours(Vec v) const {
        double const sign = practice::sign(GetParam());
        return {static_cast<float>(sign * v.x), static_cast<float>(sign * v.y), CARTESIAN};
    }
    float ours(double angle) const {
        double const turned = GetParam() == practice::Side::left ? 0.0 : 180.0;
        return normalizeTo360Deg(static_cast<float>(turned - practice::toDeg(angle)));
    }
    double positionError() { return me.position.getDistanceTo(ours(truth.pos)); }
    double ballError() { return agent.world.ball().position.getDistanceTo(ours(world.ball.pos)); }
    double bodyError() { return getAbsAngleDifference(me.bodyDirection, ours(truth.body)); }
    double facingError() { return getAbsAngleDifference(me.headDirection, ours(truth.gaze())); }

    support::AgentHarness agent;
    Myself& me = agent.world.myself();
    practice::World world;
    practice::Random random{3};
    practice::Player& truth = world.player(practice::playerId(GetParam(), 7));
};

/// The errors of a sweep.
struct Errors : std::vector<double> {
    double quantile(double share) {
        std::sort(begin(), end());
        return at(static_cast<std::size_t>(share * static_cast<double>(size() - 1)));
    }
    void expectBelow(char const* what, double median, double most, double all) {
        std::printf("%-10s median %.3f, 95%% %.3f, largest %.3f\n", what, quantile(0.5),
                    quantile(0.95), quantile(1));
        EXPECT_LT(quantile(0.5), median) << what;
        EXPECT_LT(quantile(0.95), most) << what;
        EXPECT_LT(quantile(1), all) << what;
    }
};

TEST_P(Localisation, ASeeTellsPlaceFacingAndBall) {
    std::array<Errors, 4> errors;
    auto& [position, facing, body, ball] = errors;
    for (int i = 0; i < 5000; ++i) {
        place(10);
        feel();
        look();
        position.push_back(positionError());
        facing.push_back(facingError());
        body.push_back(bodyError());
        if (!Sensors::balls.empty()) ball.push_back(ballError());
    }
    // Goal lines and the flags there stand half a metre off; sees and necks come in whole degrees.
    position.expectBelow("position", 0.31, 0.62, 0.95);
    facing.expectBelow("facing", 0.26, 0.48, 0.51);
    body.expectBelow("body", 0.55, 1.2, 1.51);
    ball.expectBelow("ball", 0.34, 0.67, 1.05);
}

TEST_P(Localisation, DeadReckoningFollowsTheCommands) {
    std::array<Errors, 3> errors;
    auto& [turned, dashed, kicked] = errors;
    for (int i = 0; i < 1000; ++i) {
        double const direction = any(-90, 90);
        place(1.0);
        tellTheTruth();
        agent.effectors.queueKick(100, static_cast<float>(direction));
        practice::kick(world, truth, 100, direction, random);
        for (int cycle = 0; cycle < 3; ++cycle) {
            step();
            agent.startCycle();
        }
        kicked.push_back(ballError());

        world.ball.pos = {}; // out of the way
        tellTheTruth();
        agent.effectors.queueDash(100);
        practice::dash(truth, 100);
        step();
        dashed.push_back(positionError());

        truth.halt();
        tellTheTruth();
        agent.effectors.queueTurn(static_cast<float>(direction), 0);
        practice::turn(truth, direction, random);
        step();
        turned.push_back(bodyError());
        ASSERT_LE(facingError(), bodyError() + 1.01);
    }
    // What the server adds at random: a tenth to turns and ways, a twentieth to the ball's.
    turned.expectBelow("turn", 1.7, 6.8, 9.01);
    dashed.expectBelow("dash", 0.03, 0.06, 0.1);
    kicked.expectBelow("kick", 0.28, 0.55, 0.85);
}

INSTANTIATE_TEST_SUITE_P(Sides, Localisation,
                         testing::Values(practice::Side::left, practice::Side::right));

template <class Landmark>
Landmark seen(int code, float distance, float direction) {
    Landmark landmark;
    landmark.code = code;
    landmark.distance = distance;
    landmark.direction.value = direction;
    return landmark;
}
auto const line = seen<RCC_Line>;

TEST(Field, LinesTellTheFacing) {
    struct Case {
        int code;
        float direction, left, right; // the facing for a team that plays from there
    };
    // Along the line, on the border of two rules, and the angles that are not reduced.
    for (Case const& c : {Case{2, 0, 0, 180}, Case{3, 0, 360, 180}, Case{4, 0, 0, 180},
                          Case{5, 0, 0, 180}, Case{5, 80, 350, 170}, Case{9, -30, -30, 150}}) {
        std::array const lines = {line(c.code, 10, c.direction)};
        EXPECT_EQ(Field::computeFaceDirection(lines, FieldSide::left), c.left) << c.code;
        EXPECT_EQ(Field::computeFaceDirection(lines, FieldSide::right), c.right) << c.code;
    }
    EXPECT_EQ(Field::computeFaceDirection({}, FieldSide::left), 0);
    EXPECT_EQ(Field::computeFaceDirection({}, FieldSide::right), 180);
    // the farther of the first two
    struct Two {
        float first, second, facing;
    };
    for (Two const& c :
         {Two{8, 7, 10}, Two{7, 8, 20}, Two{8, 8, 20}, Two{RCC_ABSENT, RCC_ABSENT, 20}}) {
        std::array const lines = {line(2, c.first, 10), line(2, c.second, 20), line(2, 99, 30)};
        EXPECT_EQ(Field::computeFaceDirection(lines, FieldSide::left), c.facing) << c.first;
    }
}

class Estimation : public testing::Test {
protected:
    Estimation() { agent.join('l', 7); }
    void feelSpeed(char const* speed, char const* headAngle = "0") {
        agent.receive(support::senseBody(1, "high normal", std::string(speed) + " 0", headAngle));
        agent.world.integrateSensorInfo();
    }

    support::AgentHarness agent;
    Myself& me = agent.world.myself();
};

TEST_F(Estimation, TheThreeNearestFlagsCountByTheirNearness) {
    auto const flag = seen<RCC_Flag>;
    // From (7, 7), facing along x.
    auto const placeFrom = [this](std::vector<RCC_Flag> const& flags) {
        me.position = at(7, 7);
        agent.world.performSelfLoc({}, flags);
        return me.position;
    };
    RCC_Flag const near = flag(6, 10, 0);
    EXPECT_EQ(placeFrom({}), at(7, 7));
    EXPECT_EQ(placeFrom({near}), at(-10, 0));
    EXPECT_EQ(placeFrom({flag(RCC_Flag::CLOSE_BY, 1, 0), near, flag(26, RCC_ABSENT, 0)}),
              at(-10, 0));
    EXPECT_EQ(placeFrom({flag(99999, 10, 0)}), at(-10, 0)); // one unheard of is in the middle
    // (45.5, 0) and (65.5, 0) with the weights 1/10 and 1/30
    expectNear(at(50.5, 0), placeFrom({flag(657, 30, 180), flag(657, 10, 180)}));
    // of four the farthest is out, wherever it comes
    for (int i = 0; i < 4; ++i) {
        std::vector<RCC_Flag> flags = {near, flag(6, 11, 0), flag(6, 12, 0)};
        flags.insert(flags.begin() + i, flag(26, 40, 0));
        EXPECT_NEAR(placeFrom(flags).y, 0, 1e-4) << i;
    }
    // of equally near ones the first is out
    expectNear(at(-10, 0), placeFrom({flag(26, 10, 0), near, near, near}));
    expectNear(at(-10, -34 / 3.0), placeFrom({near, near, near, flag(26, 10, 0)}));
    // on top of a flag
    EXPECT_NEAR(placeFrom({flag(6, 0, 0), flag(26, 20, 0)}).getLength(), 0, 0.01);
}

TEST_F(Estimation, AMoveJumpsAndTheReportedSpeedCarriesOn) {
    agent.placeMyself(5, 5, 90); // looking along -y
    agent.effectors.queueMove(-20, 10);
    feelSpeed("0.2", "30");
    expectNear(at(-20, 9.5), me.position);
    EXPECT_EQ(me.headDirection, 60); // the neck, 30 to the right, turns clockwise for the server
    // the mirror waits for the next see
    EXPECT_EQ(agent.world.teammates().front().position, at(5, 5));
    agent.startCycle();
    feelSpeed("0");
    expectNear(at(-20, 9.5), me.position);
}

TEST_F(Estimation, TheBallRollsAndOnlyAKickInReachCounts) {
    Ball& ball = agent.world.ball();
    struct Case {
        float x, vx;
        bool kick;
        double nextX, nextVx;
    };
    agent.placeMyself(0, 0);
    for (Case const& c : {Case{1.2F, 1, true, 2.2, 0.94},
                          Case{0.385F, 2, true, 3.385, 2.82}, // 2 + 2.7, but no faster than 3
                          Case{1e10F, 2, false, 1e10, 1.88}, Case{1, 1e10F, false, 1, 1e10}}) {
        agent.startCycle();
        agent.placeBall(c.x, 0, c.vx, 0);
        if (c.kick) agent.effectors.queueKick(100, 0);
        feelSpeed("0");
        expectNear(at(c.nextX, 0), ball.position);
        expectNear(at(c.nextVx, 0), ball.velocity);
    }
}

} // namespace
