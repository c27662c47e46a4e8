#include <array>
#include <gtest/gtest.h>
#include <string>

#include "support/AgentHarness.h"

namespace {

struct Referee {
    char const* word;
    int own, other; // the code when the side is the agent's own, and when it is not
};

// clang-format off
constexpr std::array SIDED = {
    Referee{"kick_off", 4, 5},            Referee{"kick_in", 6, 7},       Referee{"free_kick", 8, 9},
    Referee{"indirect_free_kick", 8, 9},  Referee{"corner_kick", 10, 11}, Referee{"goal_kick", 12, 13},
    Referee{"goal", 14, 15},              Referee{"offside", 17, 18},     Referee{"penalty_kick", 19, 20},
    Referee{"foul_charge", 24, 25},       Referee{"foul_push", 26, 27},   Referee{"foul_multiple_attack", 28, 29},
    Referee{"foul_ballout", 30, 31},      Referee{"back_pass", 32, 33},   Referee{"goalie_catch_ball", 38, 39},
};
constexpr std::array NEUTRAL = {
    Referee{"before_kick_off", 1, 1}, Referee{"time_over", 2, 2},        Referee{"play_on", 3, 3},
    Referee{"drop_ball", 16, 16},     Referee{"first_half_over", 21, 21}, Referee{"pause", 22, 22},
    Referee{"human_judge", 23, 23},   Referee{"time_up", 34, 34},        Referee{"time_up_without_a_team", 35, 35},
    Referee{"time_extended", 36, 36}, Referee{"half_time", 37, 37},      Referee{"goal_l_2", 40, 41},
};
// clang-format on

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

TEST_F(Hearing, TheRefereesWordsBecomePlayModesOfOneselfAndTheOthers) {
    for (char const side : {'l', 'r'}) {
        agent.join(side, 3);
        std::string const own = std::string("_") + side;
        std::string const other = side == 'l' ? "_r" : "_l";
        for (Referee const& r : SIDED) {
            EXPECT_EQ(afterReferee(r.word + own), r.own) << r.word << side;
            EXPECT_EQ(afterReferee(r.word + other), r.other) << r.word << side;
        }
        for (Referee const& r : NEUTRAL) {
            EXPECT_EQ(afterReferee(r.word), side == 'l' ? r.own : r.other) << r.word << side;
        }
        EXPECT_EQ(afterReferee("throw_in_l"), -7);
    }
    // The parser's number for "none", and numbers that no table holds.
    for (int const mode : {-1, 0, 26, 27, 1000000}) {
        situation.playMode = -7;
        RCC_PlayMode word;
        word.mode = mode;
        situation.setPlayMode(word);
        EXPECT_EQ(situation.playMode, mode == 0 ? 0 : mode == 26 ? 41 : -7) << mode;
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
