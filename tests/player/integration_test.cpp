// News for the world model: what messages make of it, in which order, and how main waits for them.

#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

#include "practice/Parameters.h"
#include "sensing/Sensors.h"
#include "support/AgentHarness.h"

using support::AgentHarness;

namespace {

std::string senseBody(int time, char const* speed = "0 0", char const* headAngle = "0") {
    return "(sense_body " + std::to_string(time) +
           " (view_mode low wide) (stamina 7984.8 0.87) (speed " + speed + ") (head_angle " +
           headAngle +
           ") (kick 1) (dash 2) (turn 3) (say 4) (turn_neck 5) (catch 6) (move 7) (change_view 8))";
}

void expectNear(Vector2D expected, Vector2D actual, std::string const& what = "") {
    EXPECT_NEAR(expected.x, actual.x, 1e-4) << what;
    EXPECT_NEAR(expected.y, actual.y, 1e-4) << what;
}

Vector2D at(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y), CARTESIAN};
}

/// At the origin of a left-hand agent that faces (and without lines is taken to face) the other
/// goal. Server directions are clockwise with y down, as the frame is: 90 is +y.
class IntegrationTest : public testing::Test {
protected:
    IntegrationTest() {
        agent.join('l', 10);
        agent.placeMyself(0, 0);
    }

    bool integrate(std::string const& message) {
        agent.receive(message);
        return world.integrateSensorInfo();
    }

    AgentHarness agent;
    WorldModel& world = agent.world;
    Situation& situation = agent.world.situation();
    std::vector<Player> const& mine = agent.world.teammates();
};

TEST_F(IntegrationTest, BodyReport) {
    EXPECT_TRUE(integrate(senseBody(17, "0.4 -30", "25")));
    BodyInfo const& info = world.myself().bodyInfo;
    EXPECT_EQ(17, world.currentTime());
    EXPECT_EQ(17, info.time);
    EXPECT_EQ(1, info.viewQuality);
    EXPECT_EQ(2, info.viewWidth);
    EXPECT_EQ(7984.8F, info.stamina);
    EXPECT_EQ(0.87F, info.effort);
    EXPECT_EQ(0.4F, info.speedAmount);
    EXPECT_EQ(-30.0F, info.speedDirection);
    EXPECT_EQ(-25.0F, info.headAngle);
    EXPECT_EQ(335.0F, world.myself().headDirection);
    expectNear(at(1, 0), world.myself().position); // speed before decay
    EXPECT_FALSE(world.integrateSensorInfo());     // nothing new, nothing moves
    expectNear(at(1, 0), world.myself().position);
}

TEST_F(IntegrationTest, SeeingPlayers) {
    integrate(senseBody(5, "0.4 0"));
    world.myself().position = at(1, 2);
    EXPECT_TRUE(integrate("(see 5 ((p \"Ours\" 3) 10 30 0.2 90 45 -100) ((p \"Theirs\" 1 goalie) 2 "
                          "-90 -0.4 0 1 2) ((p \"Ours\") 20 180) ((p) 4 0))"));
    ASSERT_EQ(3U, mine.size());
    expectNear(at(1, 2), mine[0].position);
    expectNear(at(1, 0), mine[0].velocity);
    EXPECT_EQ(10, mine[0].unum);
    EXPECT_EQ(0.0F, mine[0].bodyDirection);

    expectNear(at(1 + 8.660254, 2 + 5), mine[1].position);
    expectNear(at(1, 0.5), mine[1].velocity); // the seen speed counts 1 / decay
    EXPECT_EQ(45.0F, mine[1].bodyDirection);
    EXPECT_EQ(-100.0F, mine[1].headDirection);
    EXPECT_EQ(3, mine[1].unum);
    EXPECT_FALSE(mine[1].opponent || mine[1].goalie);

    expectNear(at(-19, 2), mine[2].position);
    expectNear(at(1, 0), mine[2].velocity); // no motion told
    EXPECT_EQ(0, mine[2].unum);
    EXPECT_TRUE(std::isinf(mine[2].bodyDirection) && std::isinf(mine[2].headDirection));

    ASSERT_EQ(1U, world.opponents().size());
    expectNear(at(1, 0), world.opponents()[0].position);
    expectNear(at(0, 0), world.opponents()[0].velocity);
    EXPECT_TRUE(world.opponents()[0].opponent && world.opponents()[0].goalie);
    ASSERT_EQ(1U, situation.unknownPlayers.size());
    EXPECT_TRUE(situation.unknownPlayers[0].opponent);

    integrate("(see 6)");
    EXPECT_EQ(1U, mine.size());
    EXPECT_TRUE(world.opponents().empty() && situation.unknownPlayers.empty());
}

TEST_F(IntegrationTest, VelocityOfASeenBall) {
    constexpr char const* ALLY = "((p \"Ours\" 3) 10 0 0.2 90 0 0)";   // (1, 0.5)
    constexpr char const* ENEMY = "((p \"Theirs\" 2) 10 0 0.4 0 0 0)"; // (2, 0)
    constexpr char const* UNKNOWN = "((p) 40 0)";                      // (1, 0)
    struct Case {
        std::string objects;
        int cyclesSinceVelocity;
        Vector2D velocity;
    };
    std::vector<Case> const cases = {
        {"((b) 10 30 0.5 90)", 9, at(0.433013 + 0.4, 0.25)},
        {"((b) 10 30)", 0, at(0, 0)},
        {std::string("((b) 10 30)") + ALLY, 2, at(1, 0.5)},
        {std::string("((b) 10 30)") + ALLY, 3, at(0, 0)},
        {std::string("((b) 10 30)") + ENEMY + ALLY, 2, at(2, 0)},
        {std::string("((b) 10 30)") + UNKNOWN + ENEMY + ALLY, 2, at(1, 0)},
    };
    integrate(senseBody(50, "0.4 0"));
    for (Case const& c : cases) {
        world.myself().position = at(0, 0);
        situation.ballVelocitySeenTime = 50 - c.cyclesSinceVelocity;
        situation.ballSeenTime = 0;
        agent.placeBall(9, 9, 2, 2);
        integrate("(see 50 " + c.objects + ")");
        expectNear(at(8.660254, 5), world.ball().position, c.objects);
        expectNear(c.velocity, world.ball().velocity, c.objects);
        EXPECT_EQ(50, situation.ballSeenTime);
        bool const told = c.cyclesSinceVelocity == 9;
        EXPECT_EQ(told ? 50 : 50 - c.cyclesSinceVelocity, situation.ballVelocitySeenTime);
    }
}

TEST_F(IntegrationTest, TheBallIsForgottenByWhenItWasHeardOf) {
    for (int const silence : {0, 3, 4}) {
        situation.heardBallTime = 100 - silence;
        situation.ballSeenTime = 100;
        agent.placeBall(5, 6, 1, 1);
        situation.currentTime = 100;
        integrate("(see 100 ((p) 9 9))");
        EXPECT_EQ(silence > 3, world.ball().position.isInvalid()) << silence;
        EXPECT_EQ(silence > 3 ? UNDEFINED_FLOAT : 1.0F, world.ball().velocity.y) << silence;
    }
}

TEST_F(IntegrationTest, NewsAreTakenInAFixedOrder) {
    // All of this waits when main comes round; the later of two rules shows what was first.
    agent.receive("(init r 7 kick_in_r)");
    agent.receive("(hear 30 referee play_on)");
    agent.receive("(hear 30 12 \"vnana0a0a\")");
    agent.receive("(see 30 ((b) 10 0 0 0))");
    agent.receive(senseBody(30, "0.4 0"));
    ServerParamHandler().handle(RCC_Pointer<RCC_ServerParam>::make()); // all zero
    EXPECT_TRUE(world.integrateSensorInfo());

    EXPECT_EQ(30, situation.ballSeenTime);                // body before see
    EXPECT_EQ(0.0F, world.myself().headDirection);        // see before init
    expectNear(at(11, 0), world.ball().position);         // by the old parameters
    EXPECT_EQ(Situation::NEVER, situation.heardBallTime); // see before report
    EXPECT_EQ(5, situation.playMode);                     // referee before init
    EXPECT_EQ(0.0F, Player::DECAY);                       // parameters last
    EXPECT_FALSE(world.integrateSensorInfo());
}

TEST_F(IntegrationTest, InitAndScoreAndTypes) {
    world.setGoalie(true);
    EXPECT_FALSE(integrate("(init r 3 goal_kick_l)"));
    EXPECT_EQ(3, world.myself().unum);
    EXPECT_EQ(FieldSide::right, situation.side);
    EXPECT_EQ(8, situation.playMode); // the parser's number, not the program's
    EXPECT_EQ(3, mine[0].unum);
    EXPECT_TRUE(mine[0].goalie && !mine[0].opponent);
    EXPECT_EQ(UNDEFINED_FLOAT, mine[0].bodyDirection);
    EXPECT_EQ(UNDEFINED_FLOAT, mine[0].headDirection);

    EXPECT_FALSE(integrate("(hear 1 referee goal_kick_l)"));
    EXPECT_EQ(PM_THEIR_GOAL_KICK, situation.playMode);
    EXPECT_FALSE(integrate("(score 9 3 1)"));
    EXPECT_EQ(3, situation.ourScore);
    EXPECT_EQ(1, situation.theirScore);

    // One buffer for each kind: of two types before main comes round the second is kept.
    std::size_t const known = Configuration::playerTypesV.size();
    agent.receive("(player_type 4 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    integrate("(player_type 5 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    ASSERT_EQ(known + 1, Configuration::playerTypesV.size());
    EXPECT_EQ(5, Configuration::playerTypesV.back().id);
}

TEST_F(IntegrationTest, LostParametersDoNoLastingHarm) {
    Configuration::integrateServerParam(RCC_ServerParam());
    integrate(senseBody(1, "0 0"));
    integrate(senseBody(1000000000, "0.5 0"));
    integrate(
        "(see 1000000000 ((f c) 10 0) ((b) 1 1 1e10 9e9) ((p \"Ours\" 11) 0 0 1e30 1e9 0 0))");
    integrate(practice::serverParamMessage(3000));
    integrate(senseBody(2, "0 0"));
    integrate("(see 2 ((f c) 10 0) ((b) 10 0 0 0))");
    expectNear(at(-10, 0), world.myself().position);
    expectNear(at(0, 0), world.ball().position);
    expectNear(at(0, 0), world.ball().velocity);
}

TEST_F(IntegrationTest, StampsOfTheLastMessages) {
    situation.currentTime = 8;
    world.setTimeLastSB();
    EXPECT_FALSE(world.seeIsNewerThanSenseBody());
    EXPECT_EQ(8, world.cycleOfLastSB());
    std::this_thread::sleep_for(std::chrono::microseconds(10));
    world.setTimeLastSee();
    situation.currentTime = 9;
    world.setTimeLastSee();
    EXPECT_TRUE(world.seeIsNewerThanSenseBody());
    EXPECT_EQ(2, world.seesSinceLastSB());
    EXPECT_EQ(9, world.cycleOfLastSee());
    EXPECT_TRUE(world.takeSenseBodyArrived());
    EXPECT_FALSE(world.takeSenseBodyArrived());
    std::this_thread::sleep_for(std::chrono::microseconds(10));
    world.setTimeLastSB();
    EXPECT_EQ(0, world.seesSinceLastSB());
    EXPECT_FALSE(world.seeIsNewerThanSenseBody());
}

TEST_F(IntegrationTest, WaitingForNews) {
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    auto const waited = [&](bool expected) {
        auto const start = Clock::now();
        EXPECT_EQ(expected, world.waitForNewInfo());
        return Clock::now() - start;
    };
    world.setTimeLastSee();
    world.setTimeLastSB();
    EXPECT_LT(waited(true), milliseconds(500)); // it came before the wait

    std::jthread const sense([&] {
        std::this_thread::sleep_for(milliseconds(50));
        world.signalNewInfo();
    });
    auto const woken = waited(true);
    EXPECT_GT(woken, milliseconds(40));
    EXPECT_LT(woken, milliseconds(1500));

    auto const silence = waited(false); // and the wake-up above left nothing behind
    EXPECT_GT(silence, milliseconds(1990));
    EXPECT_LT(silence, milliseconds(3500));
}

} // namespace
