// News for the world model: what messages make of it, and in which order.

#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

#include "player/Point.h"
#include "practice/Parameters.h"
#include "sensing/Sensors.h"
#include "support/AgentHarness.h"
#include "support/Scenes.h"

using support::senseBody;

namespace {

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
    /// A sense_body with that speed, straight ahead.
    void feel(int time, std::string const& speed) {
        integrate(senseBody(time, "high normal", speed + " 0"));
    }
    int afterReferee(std::string const& word) {
        situation.playMode = -7;
        integrate("(hear 20 referee " + word + ")");
        return situation.playMode;
    }

    support::AgentHarness agent;
    WorldModel& world = agent.world;
    Ball& ball = agent.world.ball();
    Situation& situation = agent.world.situation();
    std::vector<Player> const& mine = agent.world.teammates();
};

TEST_F(IntegrationTest, BodyReport) {
    EXPECT_TRUE(integrate(senseBody(17, "low wide", "0.4 -30", "25")));
    BodyInfo const& info = world.myself().bodyInfo;
    EXPECT_EQ(17, world.currentTime());
    EXPECT_EQ(17, info.time);
    EXPECT_EQ(1, info.viewQuality);
    EXPECT_EQ(2, info.viewWidth);
    EXPECT_EQ(8000.0F, info.stamina);
    EXPECT_EQ(1.0F, info.effort);
    EXPECT_EQ(0.4F, info.speedAmount);
    EXPECT_EQ(-30.0F, info.speedDirection);
    EXPECT_EQ(-25.0F, info.headAngle);
    EXPECT_EQ(335.0F, world.myself().headDirection);
    expectNear(at(1, 0), world.myself().position); // speed before decay
    EXPECT_FALSE(world.integrateSensorInfo());     // nothing new, nothing moves
    expectNear(at(1, 0), world.myself().position);
}

TEST_F(IntegrationTest, SeeingPlayers) {
    feel(5, "0.4");
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
    // A team-mate with (1, 0.5), an opponent with (2, 0) and somebody whose motion is not told.
    std::string const ally = "((p \"Ours\" 3) 10 0 0.2 90 0 0)";
    std::string const enemyToo = "((p \"Theirs\" 2) 10 0 0.4 0 0 0)" + ally;
    std::string const unknownToo = "((p) 40 0)" + enemyToo;
    struct Case {
        std::string objects;
        int cyclesSinceVelocity;
        Vector2D velocity;
    };
    for (Case const& c :
         {Case{"((b) 10 30 0.5 90)", 9, at(0.433013 + 0.4, 0.25)}, Case{"((b) 10 30)", 0, at(0, 0)},
          Case{"((b) 10 30)" + ally, 3, at(0, 0)}, Case{"((b) 10 30)" + enemyToo, 2, at(2, 0)},
          Case{"((b) 10 30)" + unknownToo, 2, at(1, 0)}}) {
        feel(50, "0.4");
        world.myself().position = at(0, 0);
        situation.ballVelocitySeenTime = 50 - c.cyclesSinceVelocity;
        situation.ballSeenTime = 0;
        integrate("(see 50 " + c.objects + ")");
        expectNear(at(8.660254, 5), ball.position, c.objects);
        expectNear(c.velocity, ball.velocity, c.objects);
        EXPECT_EQ(50, situation.ballSeenTime);
        bool const told = c.cyclesSinceVelocity == 9;
        EXPECT_EQ(told ? 50 : 50 - c.cyclesSinceVelocity, situation.ballVelocitySeenTime);
    }
}

TEST_F(IntegrationTest, TheBallIsForgottenByWhenItWasHeardOf) {
    for (int const silence : {3, 4}) {
        situation.heardBallTime = 100 - silence;
        situation.ballSeenTime = situation.currentTime = 100;
        agent.placeBall(5, 6, 1, 1);
        integrate("(see 100 ((p) 9 9))");
        EXPECT_EQ(silence > 3, ball.position.isInvalid());
        EXPECT_EQ(silence > 3 ? UNDEFINED_FLOAT : 1.0F, ball.velocity.y);
    }
}

TEST_F(IntegrationTest, NewsAreTakenInAFixedOrder) {
    // All of this waits when main comes round; the later of two rules shows what was first.
    agent.receive("(init r 7 kick_in_r)");
    agent.receive("(hear 30 referee play_on)");
    agent.receive("(hear 30 12 \"vnana0a0a\")");
    agent.receive("(see 30 ((b) 10 0 0 0))");
    agent.receive(senseBody(30, "high normal", "0.4 0"));
    ServerParamHandler().handle(RCC_Pointer<RCC_ServerParam>::make()); // all zero
    EXPECT_TRUE(world.integrateSensorInfo());

    EXPECT_EQ(30, situation.ballSeenTime);                // body before see
    EXPECT_EQ(0.0F, world.myself().headDirection);        // see before init
    expectNear(at(11, 0), ball.position);                 // by the old parameters
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
    integrate("(score 9 3 1)");
    EXPECT_EQ(3, situation.ourScore);
    EXPECT_EQ(1, situation.theirScore);

    // One buffer for each kind: of two types before main comes round the second is kept.
    std::size_t const known = Configuration::playerTypesV.size();
    agent.receive("(player_type 4 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    integrate("(player_type 5 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    ASSERT_EQ(known + 1, Configuration::playerTypesV.size());
    EXPECT_EQ(5, Configuration::playerTypesV.back().id);
}

TEST_F(IntegrationTest, StampsOfTheLastMessages) {
    auto const later = [] { std::this_thread::sleep_for(std::chrono::microseconds(10)); };
    situation.currentTime = 8;
    world.setTimeLastSB();
    EXPECT_FALSE(world.seeIsNewerThanSenseBody());
    EXPECT_TRUE(world.waitForNewInfo()); // it came before the wait
    later();
    world.setTimeLastSee();
    situation.currentTime = 9;
    world.setTimeLastSee();
    EXPECT_TRUE(world.seeIsNewerThanSenseBody());
    EXPECT_EQ(2, world.seesSinceLastSB());
    EXPECT_EQ(9, world.cycleOfLastSee());
    EXPECT_TRUE(world.takeSenseBodyArrived());
    EXPECT_FALSE(world.takeSenseBodyArrived());
    later();
    world.setTimeLastSB();
    EXPECT_EQ(0, world.seesSinceLastSB());
    EXPECT_FALSE(world.seeIsNewerThanSenseBody());
}

TEST_F(IntegrationTest, PlayModesAreNumberedThroughWithTwoNumbersForAPair) {
    int code = 0;
    for (int mode = 0; mode <= 26; ++mode) {
        bool const pair = (4 <= mode && mode <= 9) || mode == 11 || mode == 12 ||
                          (16 <= mode && mode <= 20) || mode >= 25;
        for (int const side : {1, -1, 0}) {
            RCC_PlayMode word;
            word.mode = mode;
            word.side = side;
            situation.setPlayMode(word);
            EXPECT_EQ(situation.playMode, pair && side != 1 ? code + 1 : code) << mode;
        }
        code += pair ? 2 : 1;
    }
    for (int const unknown : {-1, 27, 1000000}) {
        RCC_PlayMode word;
        word.mode = unknown;
        situation.setPlayMode(word);
        EXPECT_EQ(situation.playMode, 41) << unknown;
    }
}

TEST_F(IntegrationTest, TheRefereeSpeaksOfOneselfOrOfTheOthers) {
    for (bool const left : {true, false}) {
        agent.join(left ? 'l' : 'r', 3);
        EXPECT_EQ(afterReferee("corner_kick_l"), left ? 10 : 11);
        EXPECT_EQ(afterReferee("goalie_catch_ball_r"), left ? 39 : 38);
        EXPECT_EQ(afterReferee("goal_l_2"), left ? 40 : 41);
        EXPECT_EQ(afterReferee("play_on"), 3);
        EXPECT_EQ(afterReferee("throw_in_l"), -7); // unheard of
    }
}

TEST_F(IntegrationTest, ABallReportIsBelievedAsFarAsTheBallWasNotSeen) {
    struct Case {
        int seen, velocitySeen; // cycles before now, in which the ball was, at (1, 2) with (0.2, 0)
        Vector2D position, velocity; // afterwards
        int heard, velocityHeard;
    };
    constexpr int NEVER = Situation::NEVER;
    for (Case const& c : {
             Case{1, 1, at(-29.5, 9.95), at(0.5, -0.05), 20, 20},
             Case{0, 1, at(1.5, 1.95), at(0.5, -0.05), NEVER, 20}, // seen, but heard to move
             Case{1, 0, at(-30, 10), at(0.2, 0), 20, NEVER},
             Case{0, 0, at(1, 2), at(0.2, 0), NEVER, NEVER},
         }) {
        situation.currentTime = 20;
        situation.ballSeenTime = 20 - c.seen;
        situation.ballVelocitySeenTime = 20 - c.velocitySeen;
        situation.heardBallTime = situation.heardBallVelocityTime = NEVER;
        agent.placeBall(1, 2, 0.2F, 0);
        integrate("(hear 20 -45 \"vyUxAxAy1\")");
        expectNear(c.position, ball.position);
        expectNear(c.velocity, ball.velocity);
        EXPECT_EQ(situation.heardBallTime, c.heard);
        EXPECT_EQ(situation.heardBallVelocityTime, c.velocityHeard);
    }
    situation.heardBallTime = NEVER;
    situation.ballSeenTime = situation.ballVelocitySeenTime = 1;
    for (char const* said : {"30 \"wyUxAxAy1\"", "30 \"\"", "30 \"vyUxAxAy\"", "self \"vyUxAxAy1\"",
                             "coach \"vyUxAxAy1\""}) {
        integrate(std::string("(hear 20 ") + said + ")");
        EXPECT_EQ(situation.heardBallTime, NEVER) << said;
    }
    integrate("(hear 20 30 \"vxsxsxsxs\")"); // no faster than a ball flies
    EXPECT_LT(ball.position.getDistanceTo(at(54, 54)), 3.001F);
}

} // namespace
