// What a touch counts as, by small matches made by hand.

#include <gtest/gtest.h>

#include "tests/stats/Film.h"

namespace {

using namespace stats_test;
using Told = std::vector<std::string>;

constexpr Side LEFT = Side::left, RIGHT = Side::right;

TEST(Passes, ArriveOrAreIntercepted) {
    Film film;
    film.kick(LEFT, 10, 1, 0, 8);   // forward, to l 9
    film.kick(LEFT, 9, 0, 1, 5);    // to the right hand, to l 8
    film.kick(LEFT, 8, -1, 0, 6);   // back, to r 5
    film.kick(RIGHT, 5, 0, 1, 4);   // to the left hand of those who attack to the left
    film.kick(RIGHT, 6, 0.1, 0, 9); // hardly moves: r 7 takes it over, and that is no pass
    film.kick(RIGHT, 7, 0.1, 0, 9); // nor does l 2 intercept it
    film.kick(LEFT, 2, 0, 0);
    MatchFigures figures = film.figures();
    EXPECT_EQ(told(figures, "pass"),
              (Told{"l10>9 arrived", "l9>8 arrived", "l8 lost", "r5>6 arrived"}));
    EXPECT_EQ(told(figures, "interception"), (Told{"r5"}));
    TeamFigures const& left = figures.team(LEFT);
    EXPECT_EQ(left.passes, 3);
    EXPECT_EQ(left.passesArrived, 2);
    EXPECT_EQ(left.passesForward, 1);
    EXPECT_EQ(left.passesRight, 1);
    EXPECT_EQ(left.passesBack, 1);
    EXPECT_EQ(figures.team(RIGHT).passesLeft, 1);
    EXPECT_EQ(figures.team(RIGHT).interceptions, 1);
    EXPECT_EQ(figures.player(LEFT, 8).passesReceived, 1);
    EXPECT_EQ(figures.player(LEFT, 9).passes, 1);
    EXPECT_EQ(figures.player(RIGHT, 7).kicks, 1);
}

TEST(Passes, EndInADuelOrOutOfPlay) {
    Film film;
    film.kick(LEFT, 10, 1, 0, 8);
    film.mark(LEFT, 9, state::KICK); // both kick: nobody knows whose ball it is
    film.kick(RIGHT, 4, 0, 1, 8);
    film.kick(LEFT, 9, 0, 3, 6);
    film.mode(PlayMode::kickInRight);
    film.put(8, 34);
    film.roll(3);
    film.mode(PlayMode::playOn);
    film.kick(RIGHT, 3, -1, 0, 5);
    film.kick(RIGHT, 2, -1, 0, 1);
    MatchFigures const figures = film.figures();
    EXPECT_EQ(told(figures, "pass"), (Told{"l9 lost", "r3>2 arrived"}));
    EXPECT_EQ(told(figures, "ball_out"), (Told{"l9"}));
    EXPECT_EQ(told(figures, "kick_in"), (Told{"r3"}));
    EXPECT_EQ(figures.team(RIGHT).kickIns, 1);
    EXPECT_EQ(figures.team(RIGHT).setPieces(), 1);
}

TEST(Touches, ThatFailedAreNone) {
    Film film;
    film.kick(LEFT, 10, 1, 0, 8);
    film.kick(RIGHT, 4, 1, 0, 1, state::KICK | state::KICK_FAILED);
    film.kick(RIGHT, 5, 1, 0, 1, state::TACKLE_FAILED);
    film.kick(RIGHT, 1, 1, 0, 1, state::CATCH | state::CATCH_FAILED);
    film.kick(LEFT, 9, 1, 0);
    MatchFigures const figures = film.figures();
    EXPECT_EQ(told(figures, "pass"), (Told{"l10>9 arrived"}));
    EXPECT_EQ(figures.team(RIGHT).tackles + figures.team(RIGHT).catches, 0);
}

TEST(Touches, TackleOnceHoweverLongItLasts) {
    Film film;
    film.kick(LEFT, 10, 1, 0, 8);
    for (int i = 0; i < 5; ++i) {
        film.kick(RIGHT, 5, -1, 0, 1, state::TACKLE);
    }
    film.kick(LEFT, 9, 1, 0);
    MatchFigures const figures = film.figures();
    EXPECT_EQ(figures.team(RIGHT).tackles, 1);
    EXPECT_EQ(told(figures, "interception"), (Told{"r5", "l9"}));
}

TEST(Dribbles, AreOwnTouchesOverADistance) {
    Film film;
    for (int i = 0; i < 4; ++i) {
        film.kick(LEFT, 10, 0.5, 0, 4); // six metres from the first touch to the last
    }
    film.kick(LEFT, 9, 0.1, 0, 4);
    film.kick(LEFT, 9, 0.1, 0, 4);
    film.kick(LEFT, 8, 0, 0);
    MatchFigures figures = film.figures();
    EXPECT_EQ(figures.team(LEFT).dribbles, 1);
    EXPECT_EQ(figures.player(LEFT, 10).dribbles, 1);
    EXPECT_EQ(figures.team(LEFT).passes, 0);
}

TEST(Shots, AreSavedMissOrGoIn) {
    Film film;
    film.put(40, 0);
    film.kick(LEFT, 10, 2, 0.5, 5);
    film.kick(RIGHT, 1, 0, 0, 1, state::CATCH);
    film.mode(PlayMode::freeKickRight); // the goalkeeper's clearance is no set piece
    film.roll(3);
    film.put(40, 0);
    film.mode(PlayMode::playOn);
    film.kick(LEFT, 10, 2, 1.4, 5); // beside the post
    film.mode(PlayMode::goalKickRight);
    film.put(47, 9);
    film.roll();
    film.mode(PlayMode::playOn);
    film.put(44, 0);
    film.kick(LEFT, 11, 2, 4, 5); // far beside it: a lost ball
    film.mode(PlayMode::goalKickRight);
    film.put(-45, 0);
    film.roll();
    film.mode(PlayMode::playOn);
    film.kick(RIGHT, 9, -2.5, 0.1, 3);
    film.mode(PlayMode::goalRight);
    film.add(Team{film.show().time + 1, {"Alpha", "Beta", 0, 1, std::nullopt}});
    film.roll(50);
    MatchFigures figures = film.figures();
    EXPECT_EQ(told(figures, "shot"), (Told{"l10 on_target", "l10 off_target", "r9 on_target"}));
    EXPECT_EQ(told(figures, "goal"), (Told{"r9"}));
    EXPECT_EQ(told(figures, "pass"), (Told{"l11 lost"}));
    EXPECT_EQ(told(figures, "catch"), (Told{"r1"}));
    EXPECT_EQ(told(figures, "interception"), Told{});
    EXPECT_EQ(figures.team(RIGHT).freeKicks, 0);
    EXPECT_EQ(figures.team(RIGHT).goalKicks, 2);
    EXPECT_EQ(figures.team(RIGHT).goals, 1);
    EXPECT_EQ(figures.player(RIGHT, 9).goals, 1);
}

TEST(Shots, TakeTheGoalOfTheLog) {
    Film film;
    film.add([] {
        ServerParam narrow;
        narrow.pairs = {{"goal_width", "2"}, {"ball_decay", "0.5"}};
        return narrow;
    }());
    film.put(45, 2);
    film.kick(LEFT, 10, 4, 0, 1); // 3.5 m to go, and it rolls 8 m
    film.kick(RIGHT, 1, 0, 0, 1);
    film.put(45, 2);
    film.kick(LEFT, 10, 1, 0, 3); // 6.5 m to go, and it rolls 2 m
    film.kick(RIGHT, 1, 0, 0, 1);
    EXPECT_EQ(told(film.figures(), "shot"), (Told{"l10 off_target"}));
}

TEST(Goals, OwnOnesAreNobodys) {
    Film film;
    film.put(-40, 0);
    film.kick(LEFT, 2, -3, 0, 4);
    film.mode(PlayMode::goalRight);
    film.roll();
    MatchFigures const figures = film.figures();
    EXPECT_EQ(told(figures, "goal"), (Told{"r0 own_goal"}));
    EXPECT_EQ(told(figures, "shot"), Told{});
}

TEST(Referee, CountsOffsidesFoulsAndCards) {
    Film film;
    film.kick(LEFT, 10, 2, 0, 8);
    film.mode(PlayMode::offsideLeft);
    film.kick(LEFT, 11, 0, 0); // too late to arrive
    film.mode(PlayMode::freeKickRight);
    film.roll(2);
    film.mode(PlayMode::playOn);
    film.kick(RIGHT, 4, -1, 0, 4);
    film.mode(PlayMode::foulChargeLeft);
    film.mark(LEFT, 6, state::YELLOW_CARD);
    film.roll(3);
    film.show().player(LEFT, 6).state = state::RED_CARD; // sent off
    film.show().player(LEFT, 7).state = 0;               // gone
    film.mode(PlayMode::freeKickRight);
    film.roll();
    MatchFigures const figures = film.figures();
    TeamFigures const& left = figures.team(LEFT);
    EXPECT_EQ(told(figures, "pass"), (Told{"l10 lost"}));
    EXPECT_EQ(told(figures, "foul"), (Told{"l0 foul_charge"}));
    EXPECT_EQ(told(figures, "free_kick"), (Told{"r4", "r0"}));
    EXPECT_EQ(left.offsides, 1);
    EXPECT_EQ(left.fouls, 1);
    EXPECT_EQ(left.yellowCards, 1);
    EXPECT_EQ(left.redCards, 1);
    EXPECT_EQ(left.disconnected, 1);
}

TEST(Bodies, ThatArePlacedDoNotRun) {
    Film film;
    Player& runner = film.show().player(LEFT, 5);
    runner.x += 0.9;
    film.roll();
    runner.x += 9; // placed by the referee
    film.roll();
    runner.y += 1; // placed by its own move
    ++runner.counts[static_cast<std::size_t>(Count::move)];
    film.roll();
    EXPECT_NEAR(film.figures().player(LEFT, 5).metres, 0.9, 1e-9);
}

TEST(Stamina, IsSpentThoughItIsWonBack) {
    Film film;
    Player& runner = film.show().player(LEFT, 5);
    runner.stamina = 7000;
    film.roll();
    runner.stamina -= 60; // 100 spent, 40 won back
    runner.capacity -= 40;
    film.roll();
    runner.stamina = 8000; // a new half
    runner.capacity = 130'600;
    film.roll();
    // The first show had 8000, so 1000 more were spent there.
    EXPECT_NEAR(film.figures().team(LEFT).staminaSpent, 1100, 1e-9);
}

} // namespace
