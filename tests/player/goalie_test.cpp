#include <array>
#include <gtest/gtest.h>

#include "skills/SkillPool.h"
#include "tests/player/Stage.h"

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

TEST(Goalie, CatchesABallAtItsOwnPlaceStraightAhead) {
    Keeper keeper;
    keeper.show(-48, 0, 30, -48, 0);
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 100), "catch");
    EXPECT_EQ(keeper.mainCommand(), "(catch 0.000000)");
}

TEST(Goalie, RunsOutOnlyForBallsInItsArea) {
    Keeper keeper;
    Draw draw;
    auto const inArea = [](Vector2D p) {
        return p.x > -52 && p.x < -35.5F && std::abs(p.y) < 20.16F;
    };
    for (int i = 0; i < 2000; ++i) {
        keeper.show(-48, 0, 0, draw(-46, -30), draw(-23, 23), draw(-1, 1), draw(-1, 1));
        Vector2D point;
        int cycles = 0;
        bool const reachable =
            keeper.world.interceptionPoint(keeper.world.myself(), point, cycles, true);
        if (inArea(keeper.world.ball().position) || (reachable && inArea(point))) {
            SkillPool::getBall(100, true, WALK_TO_BALL);
        } else {
            SkillPool::goaliePositioning();
        }
        std::string const command = keeper.mainCommand();
        decided(keeper, PM_PLAY_ON, 50);
        EXPECT_EQ(keeper.mainCommand(), command) << point;
    }
}

TEST(Goalie, GuardsTheLineBetweenBallAndGoal) {
    Keeper keeper;
    Draw draw;
    int backwards = 0;
    for (int i = 0; i < 4000; ++i) {
        practice::Vec const me{draw(-51, -30), draw(-20, 20)};
        // Every other ball nearly straight above or below the goal's middle.
        bool const steep = i % 2 == 0;
        practice::Vec const ball{steep ? -52 + draw(0.001, 0.1) : draw(-45, 50), draw(-33, 33)};
        practice::Vec const motion{steep ? 0 : draw(-1, 1), draw(-1, 1)};
        practice::Vec const goal{-52, 0};
        // As many cycles ahead as the ball at full speed needs to the goal; of the line there the
        // end inside the field.
        practice::Vec way = ball + motion * std::trunc(distance(ball, goal) / 3) - goal;
        if (way.x < 0) way *= -1;
        practice::Vec const target = goal + way * (7.01 / way.length());
        keeper.show(me.x, me.y, draw(-180, 180), ball.x, ball.y, motion.x, motion.y);
        // Backwards when ball and target lie on different sides, so as to keep the ball in view.
        double const between =
            std::abs(turned(practice::toDeg((ball - me).angle() - (target - me).angle())));
        if (std::abs(between - 100) < 0.6) continue; // angles below half a degree count as none
        float const power = between > 100 ? -100 : 100;
        bool const there = SkillPool::goToPoint(at(target.x, target.y), 1, power);
        std::string const word = keeper.word();
        double const number = keeper.number(0);
        keeper.startCycle();
        SkillPool::goaliePositioning();
        EXPECT_EQ(keeper.word(), word) << distance(me, target);
        EXPECT_TRUE(there || std::abs(turned(keeper.number(0) - number)) < 0.01) << number;
        backwards += number == -100;
    }
    EXPECT_GT(backwards, 10);
}

TEST(Goalie, TakesItsFreeKickAfterFiftyCycles) {
    Keeper keeper;
    keeper.takeBall(-48, 4, 11);
    for (int call = 1; call <= 50; ++call) {
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 200 + call), "") << call;
    }
    EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 251), "turn"); // towards their goal line
    EXPECT_NEAR(keeper.number(0), -11, 0.01);
    for (double const facing : {9.9, -9.9}) {
        keeper.takeBall(-48, 0, facing);
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 252), "move");
        EXPECT_EQ(keeper.mainCommand(), "(move -38.000000 -12.000000)");
        keeper.takeBall(-38, -8.9, facing);
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 252), "move");
        keeper.takeBall(-38, -9.1, facing);
        EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 253), "kick");
    }
    keeper.addTeammate(9, 0, 9);
    EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 253), "kick");
    EXPECT_NEAR(turned(keeper.number(1) - 9.9), practice::toDeg(std::atan2(18.1, 38)), 0.1);
    // For five cycles it does not catch its own kick, but goes after it.
    keeper.takeBall(-38, -9.1);
    EXPECT_NE(decided(keeper, PM_PLAY_ON, 257), "catch");
    EXPECT_EQ(decided(keeper, PM_PLAY_ON, 258), "catch");
    EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 259), ""); // waits again after play on
    keeper.show(-48, 20, 0, -46.1, 20);                    // still its own, and not any more
    EXPECT_EQ(decided(keeper, PM_OUR_FREE_KICK, 259), "");
    keeper.show(-48, 20, 0, -45.9, 20);
    EXPECT_NE(decided(keeper, PM_OUR_FREE_KICK, 260), "");
}

TEST(Goalie, KicksOffFromTheSideWithFewerOpponentsForEachTeamMate) {
    Draw draw;
    for (int i = 0; i < 300; ++i) {
        Keeper keeper;
        keeper.show(-48, 30, 0, 0, 0);
        std::array<double, 2> opponents{};
        std::array<double, 2> mates{}; // where the two spaces do not overlap
        for (std::size_t side : {0U, 1U}) {
            opponents[side] = std::floor(draw(0, 4));
            mates[side] = std::floor(draw(0, 4));
            float const y = side == 0 ? -20.0F : 20.0F;
            for (int n = 0; n < opponents[side]; ++n) {
                keeper.addOpponent(2 + n, -20, y);
            }
            for (int n = 0; n < mates[side]; ++n) {
                keeper.addTeammate(2 + n, -20, y);
            }
        }
        double const left = mates[0] * opponents[1];
        double const right = mates[1] * opponents[0];
        bool const better = left < right || (left == right && mates[1] <= mates[0]);
        bool const onRight = opponents[0] > 0 && (opponents[1] == 0 || better);
        EXPECT_EQ(SkillPool::findGoalieKickOffPoint(), at(-38, onRight ? 12 : -12));
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
