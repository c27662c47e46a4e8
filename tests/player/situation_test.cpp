#include <array>
#include <gtest/gtest.h>
#include <string>

#include "support/AgentHarness.h"

namespace {

class Hearing : public testing::Test {
protected:
    void hear(std::string const& rest) {
        agent.receive("(hear 20 " + rest + ")");
        agent.world.integrateSensorInfo();
    }
    int afterReferee(std::string const& word) {
        situation.playMode = -7;
        hear("referee " + word);
        return situation.playMode;
    }

    support::AgentHarness agent;
    Situation& situation = agent.world.situation();
    Ball& ball = situation.ball;
};

TEST_F(Hearing, PlayModesAreNumberedThroughWithTwoNumbersForAPair) {
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
    EXPECT_EQ(code, 42);
    for (int const unknown : {-1, 27, 1000000}) {
        RCC_PlayMode word;
        word.mode = unknown;
        situation.setPlayMode(word);
        EXPECT_EQ(situation.playMode, 41) << unknown;
    }
}

TEST_F(Hearing, TheRefereeSpeaksOfOneselfOrOfTheOthers) {
    for (char const side : {'l', 'r'}) {
        agent.join(side, 3);
        bool const left = side == 'l';
        EXPECT_EQ(afterReferee("corner_kick_l"), left ? 10 : 11);
        EXPECT_EQ(afterReferee("corner_kick_r"), left ? 11 : 10);
        EXPECT_EQ(afterReferee("goalie_catch_ball_r"), left ? 39 : 38);
        EXPECT_EQ(afterReferee("goal_l_2"), left ? 40 : 41);
        EXPECT_EQ(afterReferee("play_on"), 3);
        EXPECT_EQ(afterReferee("throw_in_l"), -7); // unheard of
    }
}

TEST_F(Hearing, TheInitReplyKeepsTheParsersNumber) {
    agent.join('r', 9, "corner_kick_r");
    EXPECT_EQ(situation.playMode, 7);
    EXPECT_EQ(situation.side, FieldSide::right);
    EXPECT_EQ(situation.myself.unum, 9);
    EXPECT_EQ(situation.myTeam.players.front().unum, 9);
}

TEST_F(Hearing, ABallReportIsBelievedAsFarAsTheBallWasNotSeen) {
    struct Case {
        int seen, velocitySeen; // cycles before now, in which the ball was, at (1, 2) with (0.2, 0)
        float x, y, vx, vy;     // afterwards
        int heard, velocityHeard;
    };
    constexpr int NEVER = Situation::NEVER;
    // clang-format off
    constexpr std::array CASES = {
        Case{1, 1, -29.5F,  9.95F, 0.5F, -0.05F, 20, 20},
        Case{0, 1,   1.5F,  1.95F, 0.5F, -0.05F, NEVER, 20}, // seen, but heard to move
        Case{1, 0, -30.0F, 10.00F, 0.2F,  0.00F, 20, NEVER},
        Case{0, 0,   1.0F,  2.00F, 0.2F,  0.00F, NEVER, NEVER},
    };
    // clang-format on
    for (Case const& c : CASES) {
        situation.currentTime = 20;
        situation.ballSeenTime = 20 - c.seen;
        situation.ballVelocitySeenTime = 20 - c.velocitySeen;
        situation.heardBallTime = situation.heardBallVelocityTime = NEVER;
        agent.placeBall(1, 2, 0.2F, 0);
        hear("-45 \"vyUxAxAy1\"");
        EXPECT_NEAR(ball.position.x, c.x, 1e-5) << c.seen << c.velocitySeen;
        EXPECT_NEAR(ball.position.y, c.y, 1e-5) << c.seen << c.velocitySeen;
        EXPECT_NEAR(ball.velocity.x, c.vx, 1e-5) << c.seen << c.velocitySeen;
        EXPECT_NEAR(ball.velocity.y, c.vy, 1e-5) << c.seen << c.velocitySeen;
        EXPECT_EQ(situation.heardBallTime, c.heard);
        EXPECT_EQ(situation.heardBallVelocityTime, c.velocityHeard);
    }
}

TEST_F(Hearing, WhatIsNoReportOfTheTeamIsIgnored) {
    situation.currentTime = 20;
    for (char const* said : {"30 \"wyUxAxAy1\"", "30 \"\"", "30 \"v\"", "30 \"vyUxAxAy\"",
                             "self \"vyUxAxAy1\"", "coach \"vyUxAxAy1\""}) {
        agent.placeBall(1, 2);
        hear(said);
        EXPECT_EQ(ball.position, Vector2D(1, 2, CARTESIAN)) << said;
        EXPECT_EQ(situation.heardBallTime, Situation::NEVER) << said;
    }
    hear("30 \"vxsxsxsxs\""); // as far and as fast as can be said, but no faster than a ball flies
    EXPECT_LT(ball.position.getDistanceTo({54, 54, CARTESIAN}), 3.001F);
}

} // namespace
