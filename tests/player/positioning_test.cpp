#include "skills/SkillPool.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "player/Stage.h"
#include "worldmodel/Formation.h"

namespace {

/// Where number n stands, drawn from `from`: by the lines of the team instead of by number.
Vector2D strategic(int n, Vector2D from, Vector2D ball, bool offside) {
    bool const keeper = n == 1;
    bool const back = n >= 2 && n <= 5;
    bool const striker = n >= 9;
    double const pullX = keeper ? 0.1 : striker ? 0.6 : 0.5;
    double const pullY = keeper ? 0.1 : 0.25;
    Vector2D const home = Formation::homePosition(n);
    double x = home.x + pullX * (ball.x - from.x);
    double y = home.y + pullY * (ball.y - from.y);
    if (y > 24 || y < -24) y -= pullY * (ball.y - from.y) / 2;
    if (offside || ((keeper || back) && ball.x < x)) x = ball.x;
    double const low = keeper ? -52.5 : back ? -41 : striker ? -25 : -38;
    double const high = keeper ? -30 : back ? -10 : striker ? 42 : 35;
    return at(std::clamp(x, low, high), y);
}

} // namespace

TEST(Positioning, StrategicPositionsOfAllNumbers) {
    Draw draw;
    for (int n = 1; n <= 11; ++n) {
        Stage stage(n);
        for (int i = 0; i < 500; ++i) {
            Vector2D const me = at(draw(-50, 50), draw(-33, 33));
            Vector2D const ball = at(draw(-52, 52), draw(-34, 34));
            bool const offside = i % 4 == 0;
            stage.show(me.x, me.y, 0, ball.x, ball.y);
            stage.world.situation().playMode = offside ? 17 : i % 3 == 0 ? 18 : 3;

            // Team-mates are expected by their home, the agent itself goes by where it is.
            expectNear(strategic(n, Formation::homePosition(n), ball, offside),
                       stage.world.calcSBSPPosition(n));
            Vector2D const way = strategic(n, me, ball, offside) - me;
            double const turn = practice::toDeg(std::atan2(way.y, way.x));
            bool const there = way.getLength() < 3;
            EXPECT_EQ(SkillPool::goToStrategicPosition(), there);
            if (stage.word() == "turn") {
                EXPECT_NEAR(stage.number(0), turn, 0.01);
            } else {
                EXPECT_EQ(stage.mainCommand(), there ? "" : "(dash 100.000000)");
                EXPECT_TRUE(there || std::abs(turn) <= 8.01) << turn;
            }
        }
    }
}

TEST(Positioning, FixedPlaces) {
    struct Case {
        int unum;
        double advance, ourCornerY, theirCornerX;
    };
    for (Case const& c : {Case{1, 0, NAN, NAN}, Case{2, 30, -15, -45}, Case{11, 30, 9, -35}}) {
        Stage stage(c.unum);
        Vector2D const home = Formation::homePosition(c.unum);
        EXPECT_EQ(stage.world.myself().homePosition, home);
        EXPECT_EQ(stage.world.myself().attackPosition, home + at(c.advance, 0));
        SkillPool::moveToInitialPosition();
        EXPECT_EQ(at(stage.number(0), stage.number(1)), Formation::initialPosition(c.unum));
        for (auto const& [off, command] :
             {std::pair(0.99, ""), std::pair(1.01, "(dash 60.000000)")}) {
            bool const keeper = c.unum == 1; // has no place
            stage.show(c.unum == 11 ? 45 - off : 30 - off, c.ourCornerY, 0, 0, 0);
            EXPECT_EQ(SkillPool::goToPositionOurCKick(), keeper || off < 1);
            EXPECT_EQ(stage.mainCommand(), keeper ? "" : command);
            stage.show(c.theirCornerX - off, c.unum == 11 ? 20 : -15, 0, 0, 0);
            EXPECT_EQ(SkillPool::goToPositionTheirCKick(), keeper || off < 1);
            EXPECT_EQ(stage.mainCommand(), keeper ? "" : command);
        }
    }
    for (int n = 1; n <= 11; ++n) {
        Stage stage(n);
        for (int other = 2; other <= 11; ++other) {
            Vector2D const near = Formation::homePosition(other) + at(2, 0);
            EXPECT_EQ(stage.world.isMyHomePosClosestToPos(near), n == other) << n;
        }
        // Of two equally near the lower number, and the goalkeeper never.
        EXPECT_EQ(stage.world.isMyHomePosClosestToPos(at(-18, 0)), n == 3);
        EXPECT_EQ(stage.world.isMyHomePosClosestToPos(at(-51, -1)), n == 3);
    }
}
