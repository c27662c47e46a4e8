#include "skills/SkillPool.h"

#include <gtest/gtest.h>

#include <tuple>

#include "player/Stage.h"

namespace {

std::string decided(Stage& stage, int mode, int cycle) {
    stage.world.situation().currentTime = cycle;
    stage.world.situation().playMode = mode;
    stage.decide();
    return stage.word();
}

/// A goalkeeper whose earlier catches and kicks are forgotten.
class Keeper : public Stage {
public:
    Keeper() : Stage(1, true) {
        show(-48, 0, 0, 0, 0);
        decided(*this, PM_HALF_TIME, 0);
        decided(*this, PM_PLAY_ON, 0);
    }
    void takeBall(double x = -48, double y = 0, double bodyDeg = 0) {
        show(x, y, bodyDeg, x + 0.4, y);
    }
};

} // namespace

TEST(Goalie, CatchesAndWaitsForTheBanToEnd) {
    Keeper keeper;
    keeper.takeBall();
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 100), "catch");
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 100), "catch"); // the same cycle again
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 101), "kick");
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 104), "kick");
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 105), "catch");
    EXPECT_EQ(decided(keeper, PM_HALF_TIME, 106), "");
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 106), "catch");
}

TEST(Goalie, RunsOutOnlyForBallsInItsArea) {
    struct Case {
        double x, y, vx, vy;
        bool runsOut;
    };
    for (Case const& c :
         {Case{-40, 15, 0, 0, true}, Case{-34, 15, 0, 0, false}, Case{-34, 15, -1, -0.5, true},
          Case{-34, 15, 1, 0.5, false}, Case{-40, 21, 0, 0, false}}) {
        Keeper keeper;
        practice::Vec const guard = practice::polar(7.01, std::atan2(c.y, c.x + 52));
        keeper.show(guard.x - 52, guard.y, 0, c.x, c.y, c.vx, c.vy);
        EXPECT_EQ(decided(keeper, PM_PLAY_ON, 50), c.runsOut ? "turn" : "") << c.x << ' ' << c.y;
    }
}

TEST(Goalie, GuardsTheLineBetweenBallAndGoal) {
    Keeper keeper;
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        double const ballX = draw(-45, 50);
        double const ballY = draw(-33, 33);
        practice::Vec const motion{draw(-1, 1), draw(-1, 1)};
        // As many cycles ahead as the ball at full speed needs to the goal.
        int const ahead = static_cast<int>(std::hypot(ballX + 52, ballY) / 3.0);
        double const angle = std::atan2(ballY + ahead * motion.y, ballX + ahead * motion.x + 52);
        double const other = angle + practice::toRad(180);
        // Inside the field lies the end of the line that points away from the goal line.
        double const way = std::abs(angle) < practice::toRad(90) ? angle : other;
        double const x = -52 + 7.01 * std::cos(way);
        double const y = 7.01 * std::sin(way);
        if (x < -50) continue; // too steep to say

        practice::Vec const me{draw(-51, -30), draw(-20, 20)};
        keeper.show(me.x, me.y, draw(-180, 180), ballX, ballY, motion.x, motion.y);
        SkillPool::goaliePositioning();
        std::string const command = keeper.mainCommand();
        double const distance = std::hypot(x - me.x, y - me.y);
        EXPECT_EQ(command.empty(), distance < 1) << distance;
        if (command.empty()) continue;

        // Backwards when ball and target lie on different sides, so as to keep the ball in view.
        double const toTarget = practice::toDeg(std::atan2(y - me.y, x - me.x));
        double const toBall = practice::toDeg(std::atan2(ballY - me.y, ballX - me.x));
        double const between = std::abs(turned(toTarget - toBall));
        if (std::abs(between - 100) < 1) continue; // angles below half a degree count as none
        bool const backwards = between > 100;
        double const turn =
            turned(toTarget - practice::toDeg(keeper.body().body) + (backwards ? 180 : 0));
        if (std::abs(std::abs(turn) - 8) < 0.1 || std::abs(turn) > 179.9) continue;
        if (std::abs(turn) < 8) {
            EXPECT_EQ(command, backwards ? "(dash -100.000000)" : "(dash 100.000000)");
        } else {
            EXPECT_NEAR(keeper.number(0), turn, 0.05 + 0.1 / distance);
        }
    }
}

TEST(Goalie, TakesItsFreeKickAfterFiftyCycles) {
    Keeper keeper;
    keeper.takeBall(-48, 0, 11);
    for (int call = 1; call <= 50; ++call) {
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 200 + call), "") << call;
    }
    EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 251), "turn"); // towards their goal line
    EXPECT_NEAR(keeper.number(0), -11, 0.01);
    for (double const facing : {9.9, -9.9}) {
        keeper.takeBall(-48, 0, facing);
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 252), "move");
        EXPECT_EQ(keeper.mainCommand(), "(move -38.000000 -12.000000)");
        keeper.takeBall(-38, -9.1, facing);
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 253), "kick");
    }
    // For five cycles it does not catch its own kick, but goes after it.
    keeper.takeBall(-38, -9.1);
    EXPECT_NE(decided(keeper, PM_PLAY_ON, 257), "catch");
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 258), "catch");
    EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 259), ""); // waits again after play on
    keeper.show(-38, -9.1, 0, -30, 0);
    EXPECT_NE(decided(keeper, PM_OUR_FREE_KICK, 260), ""); // not its own
}

TEST(Goalie, KicksOffFromTheSideWithFewerOpponentsForEachTeamMate) {
    struct Case {
        int opponentsLeft, opponentsRight, matesLeft, matesRight;
        bool right;
    };
    for (Case const& c :
         {Case{0, 0, 0, 9, false}, Case{0, 3, 0, 0, false}, Case{1, 0, 5, 0, true},
          Case{2, 2, 2, 2, true}, Case{1, 1, 1, 2, true}, Case{1, 1, 2, 1, false},
          Case{1, 2, 1, 2, false}, Case{2, 1, 2, 1, true}, Case{3, 2, 1, 1, true}}) {
        Keeper keeper;
        keeper.show(-48, 30, 0, 0, 0);
        // Where the two spaces do not overlap.
        for (auto const& [opponents, mates, y] :
             {std::tuple(c.opponentsLeft, c.matesLeft, -20.0F),
              std::tuple(c.opponentsRight, c.matesRight, 20.0F)}) {
            for (int i = 0; i < opponents; ++i) {
                keeper.addOpponent(2 + i, -20.0F, y);
            }
            for (int i = 0; i < mates; ++i) {
                keeper.addTeammate(2 + i, -20.0F, y);
            }
        }
        Vector2D const point = SkillPool::findGoalieKickOffPoint();
        EXPECT_EQ(point, at(-38, c.right ? 12 : -12))
            << c.opponentsLeft << c.opponentsRight << c.matesLeft << c.matesRight;
    }
}

TEST(Goalie, DoesWhatThePlayModeAsks) {
    // Away from its initial position (-50, 0), and at it.
    for (int mode = 0; mode <= 45; ++mode) {
        bool const putBack = mode == 1 || mode == 40 || mode == 41;
        bool const guards = mode == 6 || mode == 7 || (mode >= 9 && mode <= 11) || mode == 13;
        bool const idle = mode == 32 || mode == 37;
        for (double const x : {-48.9, -49.1}) {
            Keeper keeper;
            keeper.show(x, 0, -60, 0, -20);
            bool const scans = guards || mode == PM_PLAY_ON || mode == PM_OUR_FREE_KICK;
            bool const acts = scans || (x > -49 && !idle);
            EXPECT_EQ(decided(keeper, mode, 50), !acts ? "" : putBack ? "move" : "turn") << mode;
            keeper.world.ball().position.x = UNDEFINED_FLOAT;
            decided(keeper, mode, 50);
            EXPECT_EQ(keeper.mainCommand() == "(turn 45.000000)", scans) << mode;
        }
    }
}
