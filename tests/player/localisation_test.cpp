#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "player/Point.h"
#include "practice/Body.h"
#include "practice/Eyes.h"
#include "practice/Parameters.h"
#include "practice/Physics.h"
#include "sensing/Sensors.h"
#include "support/AgentHarness.h"

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
    void step() {
        moveAll(world, random);
        recoverAll(world);
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
    Errors position;
    Errors facing;
    Errors body;
    Errors ball;
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

TEST_P(Localisation, EveryLandmarkLeadsToTheAgent) {
    std::set<int> codes;
    for (int i = 0; i < 300; ++i) {
        place(10);
        look();
        std::vector<RCC_Flag> marks = Sensors::flags;
        marks.insert(marks.end(), Sensors::goals.begin(), Sensors::goals.end());
        for (RCC_Flag const& mark : marks) {
            if (mark.code == RCC_Flag::CLOSE_BY) continue;
            Vector2D const position =
                Field::computePosFromFlag(mark, ours(truth.gaze()), agent.world.situation().side);
            // Half a metre by the goal lines, half a degree and 1 % by the eyes.
            ASSERT_LT(position.getDistanceTo(ours(truth.pos)), 0.6 + mark.distance * 0.014)
                << mark.code;
            codes.insert(mark.code);
        }
    }
    EXPECT_EQ(codes.size(), 55U);
}

TEST_P(Localisation, DeadReckoningFollowsTheCommands) {
    Errors turned;
    Errors dashed;
    Errors kicked;
    for (int i = 0; i < 1000; ++i) {
        double const direction = any(-90, 90);
        place(1.0);
        tellTheTruth();
        agent.effectors.queueKick(100, static_cast<float>(direction));
        practice::kick(world, truth, 100, direction, random);
        for (int cycle = 0; cycle < 3; ++cycle) {
            step();
            feel();
            agent.startCycle();
        }
        kicked.push_back(ballError());

        world.ball.pos = {}; // out of the way
        tellTheTruth();
        agent.effectors.queueDash(100);
        practice::dash(truth, 100);
        step();
        feel();
        dashed.push_back(positionError());

        truth.halt();
        tellTheTruth();
        agent.effectors.queueTurn(static_cast<float>(direction), 0);
        practice::turn(truth, direction, random);
        step();
        feel();
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
RCC_Line line(int code, float direction, float distance = 10) {
    return seen<RCC_Line>(code, distance, direction);
}
RCC_Flag flag(int code, float distance, float direction = 0) {
    return seen<RCC_Flag>(code, distance, direction);
}

TEST(Field, LinesTellTheFacing) {
    auto const faceOf = [](int code, float direction, FieldSide side) {
        std::array const lines = {line(code, direction)};
        return Field::computeFaceDirection(lines, side);
    };
    struct Case {
        int code;
        float direction, left, right; // the facing for a team that plays from there
    };
    // Along the line, on the border of two rules, and the angles that are not reduced.
    for (Case const& c : {Case{2, 0, 0, 180}, Case{3, 0, 360, 180}, Case{4, 0, 0, 180},
                          Case{5, 0, 0, 180}, Case{5, 80, 350, 170}, Case{9, -30, -30, 150}}) {
        EXPECT_EQ(faceOf(c.code, c.direction, FieldSide::left), c.left) << c.code;
        EXPECT_EQ(faceOf(c.code, c.direction, FieldSide::right), c.right) << c.code;
    }
    EXPECT_EQ(Field::computeFaceDirection({}, FieldSide::left), 0);
    EXPECT_EQ(Field::computeFaceDirection({}, FieldSide::right), 180);

    auto const faceOfThree = [](float first, float second) {
        std::array const lines = {line(2, 10, first), line(2, 20, second), line(2, 30, 99)};
        return Field::computeFaceDirection(lines, FieldSide::left);
    };
    EXPECT_EQ(faceOfThree(8, 7), 10); // the farther of the first two
    EXPECT_EQ(faceOfThree(7, 8), 20);
    EXPECT_EQ(faceOfThree(8, 8), 20);
    EXPECT_EQ(faceOfThree(RCC_ABSENT, RCC_ABSENT), 20);
}

class Estimation : public testing::Test {
protected:
    Estimation() { agent.join('l', 7); }
    /// From (7, 7), facing along x.
    Vector2D placeFrom(std::vector<RCC_Flag> const& flags) {
        me.position = at(7, 7);
        agent.world.performSelfLoc({}, flags);
        return me.position;
    }
    void feelSpeed(char const* speed) {
        agent.receiveSenseBody("(sense_body 1 (view_mode high normal) (stamina 8000 1) (speed " +
                               std::string(speed) +
                               " 0) (head_angle 30) (kick 0) (dash 0) (turn 0) (say 0) "
                               "(turn_neck 0) (catch 0) (move 0) (change_view 0))");
        agent.world.integrateSensorInfo();
    }

    support::AgentHarness agent;
    Myself& me = agent.world.myself();
};

TEST_F(Estimation, TheThreeNearestFlagsCountByTheirNearness) {
    RCC_Flag const near = flag(6, 10);
    EXPECT_EQ(placeFrom({}), at(7, 7));
    EXPECT_EQ(placeFrom({near}), at(-10, 0));
    EXPECT_EQ(placeFrom({flag(RCC_Flag::CLOSE_BY, 1), near, flag(26, RCC_ABSENT)}), at(-10, 0));
    EXPECT_EQ(placeFrom({flag(99999, 10)}), at(-10, 0)); // a landmark unheard of is in the middle
    // (45.5, 0) and (65.5, 0) with the weights 1/10 and 1/30
    EXPECT_NEAR(placeFrom({flag(657, 30, 180), flag(657, 10, 180)}).x, 50.5, 1e-4);
    // of four the farthest is out, wherever it comes
    for (int i = 0; i < 4; ++i) {
        std::vector<RCC_Flag> flags = {flag(6, 10), flag(6, 11), flag(6, 12)};
        flags.insert(flags.begin() + i, flag(26, 40));
        EXPECT_NEAR(placeFrom(flags).y, 0, 1e-4) << i;
    }
    // of equally near ones the first is out
    EXPECT_NEAR(placeFrom({flag(26, 10), near, near, near}).y, 0, 1e-4);
    EXPECT_NEAR(placeFrom({near, near, near, flag(26, 10)}).y, -34 / 3.0, 1e-4);
    // on top of a flag
    EXPECT_NEAR(placeFrom({flag(6, 0), flag(26, 20)}).getLength(), 0, 0.01);
}

TEST_F(Estimation, AMoveJumpsAndTheReportedSpeedCarriesOn) {
    agent.placeMyself(5, 5, 90); // looking along -y
    agent.effectors.queueMove(-20, 10);
    feelSpeed("0.2");
    EXPECT_NEAR(me.position.x, -20, 1e-4);
    EXPECT_NEAR(me.position.y, 9.5, 1e-4);
    EXPECT_EQ(me.headDirection, 60); // the neck, 30 to the right, turns clockwise for the server
    // the mirror waits for the next see
    EXPECT_EQ(agent.world.teammates().front().position, at(5, 5));
    agent.startCycle();
    feelSpeed("0");
    EXPECT_NEAR(me.position.y, 9.5, 1e-4);
}

TEST_F(Estimation, TheBallRollsAndOnlyAKickInReachCounts) {
    Ball& ball = agent.world.ball();
    agent.placeMyself(0, 0);
    agent.placeBall(1.2F, 0, 1, 0);
    agent.effectors.queueKick(100, 0);
    feelSpeed("0");
    EXPECT_NEAR(ball.position.x, 2.2, 1e-5);
    EXPECT_NEAR(ball.velocity.x, 0.94, 1e-5);
    agent.placeBall(0.385F, 0, 2, 0);
    feelSpeed("0");
    EXPECT_NEAR(ball.position.x, 3.385, 1e-5); // 2 + 2.7, but no faster than 3
    EXPECT_NEAR(ball.velocity.x, 2.82, 1e-5);

    agent.startCycle();
    agent.placeBall(1e10F, 0, 2, 0);
    feelSpeed("0");
    EXPECT_EQ(ball.position, at(1e10, 0));
    EXPECT_NEAR(ball.velocity.x, 1.88, 1e-5);
    agent.placeBall(1, 1, 1e10F, 0);
    feelSpeed("0");
    EXPECT_EQ(ball.position, at(1, 1));
    EXPECT_EQ(ball.velocity, at(1e10, 0));
}

} // namespace
