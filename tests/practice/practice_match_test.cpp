#include <gtest/gtest.h>

#include "practice/Match.h"
#include "practice/Parameters.h"
#include "tests/practice/Game.h"

using namespace practice;
using practice_test::Game;
using practice_test::InPlay;
using practice_test::RIGHT_1;

namespace {

std::string repeated(std::string const& s, int n) {
    return n == 0 ? "" : s + repeated(s, n - 1);
}

} // namespace

TEST(Match, JoiningTellsParametersInOrder) {
    Game g(22, 50, 300);
    g.join("Alpha", true);
    g.join("Beta");
    g.poll();
    auto const& m = g.told[0];
    ASSERT_EQ(m.size(), 4U);
    EXPECT_EQ(m[0], "(init l 1 before_kick_off)");
    EXPECT_TRUE(m[1].starts_with("(server_param 14.02 5 0.3 0.4 0.1 60 1.05 1 8000 45 1 0.3 0.5 "));
    EXPECT_TRUE(m[1].ends_with(" -1 -1 -1 0 0 0 100 0 0 0 0 100)"));
    EXPECT_EQ(std::ranges::count(m[1], ' '), 103);
    EXPECT_EQ(m[3], "(player_type 0 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    EXPECT_EQ(g.world.player(RIGHT_1).pos, (Vec{3.0, -37.0}));
}

TEST(Match, RefusesWhoDoesNotFit) {
    constexpr char const* NO_MORE = "(error no_more_player_or_goalie_or_illegal_client_version)";
    Game g(22);
    for (int i = 0; i < 11; ++i) {
        g.join("Alpha", i == 0);
    }
    g.execute(3, "(bye)");
    EXPECT_FALSE(g.world.player(3).active); // but its number stays used
    for (auto const& [datagram, refusal] :
         {std::pair{"(init Alpha (version 7))", NO_MORE},
          {"(init Beta (version 8.1))", NO_MORE}, // takes the name all the same
          {"(init Beta)", NO_MORE},
          {"(init Gamma (version 7))", "(error no_more_team)"},
          {"(init Beta (version 7)(goalie))", ""},
          {"(init Beta (version 7)(goalie))", NO_MORE},
          {"(reconnect Alpha 3)", "(error no_such_team_or_player)"}}) {
        EXPECT_EQ(g.match.join(datagram).refusal, refusal) << datagram;
    }
}

TEST(Match, SightsComeAtTheTicksOfTheEyes) {
    Game g(22);
    g.join("Alpha");
    g.match.receive(0, "(change_view narrow low)");
    std::string polls;
    for (int poll = 1; poll <= 60; ++poll) {
        g.told[0].clear();
        g.poll();
        if (g.count(0, "(see ") > 0) polls += std::to_string(poll) + ' ';
    }
    EXPECT_EQ(polls, "4 8 12 15 19 23 27 30 34 38 42 45 49 53 57 60 ");
    EXPECT_TRUE(g.told[0].back().starts_with("(see ")); // after the sense_body of the same step
    g.told[0].clear();
    g.match.receive(0, "(change_view wide)");
    g.poll(60);
    EXPECT_EQ(g.count(0, "(see "), 2);
}

TEST(Match, OneBodyCommandACycleAndOnlyWhatWorksCounts) {
    Game g(22);
    g.join("Alpha");
    g.match.receive(0, "(move -10 5)(turn 10)(turn_neck 20)(turn_neck 20)(change_view wide)");
    g.match.receive(0, "(change_view narrow)(say elevenchars)");
    g.match.receive(0, R"((say "tencharsxx")(kick 50 0)(score)(foo)(turn 5))");
    g.step();
    Player const& p = g.world.player(0);
    EXPECT_EQ(p.pos, (Vec{-10.0, 5.0}));
    EXPECT_EQ(p.spareNeckTurns, 1);
    g.execute(0, "(move 5 5)");
    g.step();
    EXPECT_LT(p.pos.x, 0.0); // moved back by the referee
    EXPECT_EQ(p.refused, 1); // the warning is none
    for (char const* once :
         {"(kick 0) (dash 0) (turn 0) (say 1) (turn_neck 1) (catch 0) (move 1) (change_view 2))",
          "(hear 0 self \"tencharsxx\")", "(score 0 0 0)", "(error illegal_command_form)",
          "(warning moving_to_opponent_field)"}) {
        EXPECT_EQ(g.count(0, once), 1) << once;
    }
}

TEST(Match, KnowsWhichAnswersMissedTheirCycle) {
    Game g(22);
    g.join("Alpha");
    struct Case {
        int poll, answers, late;
    };
    // Steps at 10, 20 and 30; sights at 15 and 30, after the step.
    int now = 0;
    for (auto const& [poll, answers, late] :
         {Case{6, 1, 0}, {7, 1, 0}, {9, 2, 1}, {13, 3, 2}, {16, 4, 3}, {26, 5, 3}, {31, 6, 3}}) {
        g.poll(poll - 1 - now);
        g.execute(0, "(turn 0)");
        now = poll;
        EXPECT_EQ(g.world.player(0).answers, answers) << poll;
        EXPECT_EQ(g.world.player(0).lateAnswers, late) << poll;
    }
}

TEST(Match, HearingIsLimitedPerTeamAndRelativeToTheBody) {
    Game g(22);
    for (char const* team : {"Alpha", "Alpha", "Alpha", "Beta"}) {
        g.join(team);
    }
    g.put(0, {-10, 0}, 90.0);
    g.put(1, {-20, 0});
    g.put(2, {-25, 0});
    g.put(RIGHT_1, {39.9, 0});
    g.match.receive(1, "(say one)");
    g.execute(2, "(say two)");
    EXPECT_EQ(g.count(0, "(hear 0 90 \""), 1); // one of the two team-mates
    EXPECT_EQ(g.count(RIGHT_1, "(hear 0"), 0); // too far away
    g.execute(RIGHT_1, "(say far)");
    EXPECT_EQ(g.count(0, "(hear 0 -90 \"far\")"), 1);
    g.step();
    g.execute(2, "(say two)");
    EXPECT_EQ(g.count(0, "(hear 0 90 \""), 2);
}

TEST(Referee, KickOffsHalvesAndEnd) {
    Game g(2, 2, 4);
    g.join("Alpha");
    g.join("Beta");
    EXPECT_EQ(g.step(30),
              "0 0 kick_off_l@0 0 1 2 3 half_time@4 before_kick_off@4 4 4 kick_off_r@4 4 5 6 7 "
              "time_up@8 time_over@8 " +
                  repeated("8 ", 18));
    g.execute(0, "(dash 100)");
    g.step();
    EXPECT_EQ(g.world.player(0).counts.dash, 1); // nothing moves any more, but commands count
    EXPECT_EQ(g.world.player(0).vel, Vec{});
}

TEST(Referee, ASetPieceIsTakenWithTheKickAndNotPlayedTwice) {
    InPlay g(1);
    g.put(RIGHT_1, {0.5, 0.0});
    g.put(0, {-0.4, 0.0});
    g.step();
    EXPECT_NEAR(g.world.player(RIGHT_1).pos.x, 9.45, 1e-9);
    EXPECT_EQ(g.execute(0, "(kick 20 0)"), "play_on@1 ");
    EXPECT_EQ(g.world.player(0).counts.kick, 1);
    g.step();
    EXPECT_EQ(g.playBall(0, {-20, 0}), ""); // without a dash in between this is allowed
    g.step();
    g.execute(0, "(dash 1)");
    g.step();
    EXPECT_EQ(g.playBall(0, {-20, 0}), "free_kick_fault_l@4 ");
}

TEST(Referee, GoalStopsTheClockForFiftyStepsUnlessItDoesNotCount) {
    InPlay g(1);
    g.playBall(0, {40, 0});
    g.ball({51.5, 1}, {2, 0});
    g.put(0, {-40, 0});
    EXPECT_EQ(g.step(52), "goal_l_1@1 " + repeated("1 ", 51) + "kick_off_r@1 2 ");
    EXPECT_EQ(g.world.ball.pos, Vec{});
    g.playBall(0, {40, 0}, "(kick 10 0)", {Phase::indirectFreeKick, Side::left});
    g.ball({51.5, 1}, {2, 0});
    EXPECT_EQ(g.step(), "goal_kick_r@3 3 ");
}

TEST(Referee, BallOutOfPlay) {
    using Case = std::tuple<int, Vec, Vec, std::string, Vec>;
    for (auto const& [toucher, pos, vel, mode, spot] :
         {Case{0, Vec{10, 33.5}, Vec{0, 2}, "kick_in_r", Vec{10, 34}},
          {RIGHT_1, Vec{10, -33.5}, Vec{0, -2}, "kick_in_l", Vec{10, -34}},
          {0, Vec{52, 20}, Vec{2, 0}, "goal_kick_r", Vec{47, 9.16}},
          {RIGHT_1, Vec{52, -20}, Vec{2, 0}, "corner_kick_l", Vec{51.5, -33}},
          {0, Vec{-52, 8}, Vec{-2, 0}, "corner_kick_r", Vec{-51.5, 33}}}) {
        InPlay g(1);
        g.playBall(toucher, {0, 0});
        g.ball(pos, vel);
        EXPECT_EQ(g.step(), mode + "@1 1 ");
        EXPECT_NEAR(distance(g.world.ball.pos, spot), 0.0, 0.1) << mode;
        g.step(100);
        EXPECT_EQ(g.count(0, "referee drop_ball)"), 1); // nobody took it
    }
}

TEST(Referee, GoalKickLastsUntilTheBallLeavesTheArea) {
    InPlay g(1);
    g.put(0, {40, 0});
    g.put(RIGHT_1, {47.9, 9.16}, 180.0);
    g.ball({47, 9.16});
    g.world.mode = {Phase::goalKick, Side::right};
    g.step();
    EXPECT_LE(g.world.player(0).pos.x, 36.0 - PLAYER_SIZE + 1e-9);
    EXPECT_EQ(g.execute(RIGHT_1, "(kick 60 0)"), "");
    g.step(15);
    EXPECT_TRUE(g.world.mode == Phase::playOn);
}

TEST(Referee, CatchesFaultsAndMoves) {
    InPlay g(2);
    // The goalie catches after somebody else has played the ball.
    auto const catchAfter = [&g](int kicker, Vec pos) {
        g.playBall(kicker, {-30, 0});
        g.step(6); // the ban of the catch before is over
        g.put(0, pos);
        g.ball(pos + Vec{0.8, 0.0});
        return g.execute(0, "(catch 0)");
    };
    EXPECT_EQ(catchAfter(RIGHT_1, {-45, 5}), "goalie_catch_ball_l@6 free_kick_l@6 ");
    for (int i = 0; i < 3; ++i) {
        g.step();
        g.execute(0, "(move -40 0)");
    }
    g.step();
    EXPECT_EQ(g.count(0, "(error too_many_moves)"), 1);
    EXPECT_EQ(g.world.player(0).counts.move, 3);
    EXPECT_NEAR(distance(g.world.ball.pos, g.world.player(0).pos), 0.385, 1e-9);

    EXPECT_EQ(catchAfter(1, {-49, 0}), "goalie_catch_ball_l@16 back_pass_l@16 "); // of a team-mate
    EXPECT_NEAR(g.world.ball.pos.x, -47.0, 1e-9);
    EXPECT_EQ(g.step(31), repeated("16 ", 30) + "indirect_free_kick_r@16 17 ");

    EXPECT_EQ(catchAfter(RIGHT_1, {-30, 0}), "goalie_catch_ball_l@23 catch_fault_l@23 ");
    EXPECT_EQ(g.step(31), repeated("23 ", 30) + "free_kick_r@23 24 ");

    g.playBall(RIGHT_1, {-30, 0});
    g.execute(0, "(catch 180)"); // misses
    g.step();
    g.ball(g.world.player(0).pos + Vec{0.8, 0.0});
    EXPECT_EQ(g.execute(0, "(catch 0)"), ""); // not again so soon
}

TEST(Referee, OffsideOfWhoGetsTheBall) {
    InPlay g(3); // 0..2 against 11..13
    for (auto const& [id, pos] : {std::pair{1, Vec{30, -10}},
                                  {2, {20, 5}},
                                  {11, {50, 0}},
                                  {12, {20, 20}},
                                  {13, {-20, 20}}}) {
        g.put(id, pos);
    }
    EXPECT_EQ(g.playBall(0, {10, 0}), "");
    g.step();
    g.ball({30.5, -10});
    EXPECT_EQ(g.execute(1, "(kick 50 0)"), "offside_l@1 ");
    EXPECT_NEAR(distance(g.world.ball.pos, {20, -10}), 0.0, 0.5); // the second-last opponent's line
    EXPECT_EQ(g.step(31), repeated("1 ", 30) + "free_kick_r@1 2 ");
    EXPECT_LE(g.world.player(1).pos.x, 20.0);

    g.playBall(0, {10, 0}); // now a team-mate who stands level takes it
    g.ball(g.world.player(2).pos + Vec{0.5, 0});
    EXPECT_EQ(g.execute(2, "(kick 50 0)"), "");

    g.step();
    g.put(1, {30, -10});
    g.playBall(0, {10, 0}, "(kick 10 0)", {Phase::kickIn, Side::left}); // never offside
    g.ball({30.5, -10});
    EXPECT_EQ(g.execute(1, "(kick 50 0)"), "");
}

TEST(Referee, AStuckBallIsDropped) {
    InPlay g(1);
    g.playBall(0, {0, 0}, "(kick 1 0)");
    g.put(0, {-5, 0});
    g.step(50);
    g.ball({4, 0}); // as good as in play
    g.step(99);
    EXPECT_EQ(g.count(0, "drop_ball"), 0);
    g.step(2);
    EXPECT_EQ(g.count(0, "drop_ball"), 1);
    EXPECT_GE(distance(g.world.player(0).pos, g.world.ball.pos), 9.45 - 1e-6);
}

TEST(Match, IsTheSameForTheSameSeed) {
    auto const played = [](std::uint64_t seed) {
        Game g(22, 2, 50, seed);
        g.start(11); // and mill around the ball
        for (int i = 0; i < 150; ++i) {
            for (int id = 0; id < MAX_PLAYERS; ++id) {
                g.match.receive(id, i % 2 == 0 ? "(kick 100 20)(say hit)" : "(dash 80)(turn 40)");
            }
            g.step();
        }
        return g.told;
    };
    auto const first = played(1);
    EXPECT_TRUE(played(1) == first); // too long to be printed
    EXPECT_FALSE(played(2) == first);
}
