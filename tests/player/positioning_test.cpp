#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <vector>

#include "skills/SkillPool.h"
#include "tests/player/Stage.h"

namespace {

// x and y by shirt number; the corner positions from number 2 on.
using Places = std::vector<double>;
Places const HOMES = {-45, 0, -17, -21, -18, -5, -18, 5,  -17, 21, 0,
                      -15, 0, 0,   0,   15,  15, -20, 20, 0,   15, 20};
Places const INITIAL = {-50, 0,   -15, -16, -17, -5, -17, 5,  -15, 16, -10,
                        -20, -10, 0,   -10, 20,  -1, -23, -2, 0,   -1, 23};
Places const OUR_CORNER = {0,   0,  30, -15, 30, -6, 30, 6,  30, 15, 42,
                           -20, 42, 0,  42,  20, 45, -9, 45, 0,  45, 9};
Places const THEIR_CORNER = {0,   0,   -45, -15, -51, -6,  -51, 6,   -45, 15,  -45,
                             -25, -40, 0,   -45, 25,  -35, -20, -35, 0,   -35, 20};

practice::Vec placeOf(int n, Places const& places) {
    std::size_t const i = 2 * static_cast<std::size_t>(n);
    return {places[i - 2], places[i - 1]};
}

/// Where number n stands, drawn from `from`: by the lines of the team instead of by number.
practice::Vec strategic(int n, practice::Vec from, practice::Vec ball, bool offside) {
    std::size_t const line = n == 1 ? 0 : n <= 5 ? 1 : n <= 8 ? 2 : 3;
    practice::Vec place = placeOf(n, HOMES);
    double const pull = (line == 0 ? 0.1 : 0.25) * (ball.y - from.y);
    place += {std::array{0.1, 0.5, 0.5, 0.6}[line] * (ball.x - from.x), pull};
    if (std::abs(place.y) > 24) place.y -= pull / 2;
    if (offside || (line < 2 && ball.x < place.x)) place.x = ball.x;
    place.x = std::clamp(place.x, std::array{-52.5, -41.0, -38.0, -25.0}[line],
                         std::array{-30.0, -10.0, 35.0, 42.0}[line]);
    return place;
}

} // namespace

TEST(Positioning, StrategicPositionsOfAllNumbers) {
    Draw draw;
    for (int i = 0; i < 6000; ++i) {
        int const n = i % 11 + 1;
        Stage stage(n);
        practice::Vec const me{draw(-50, 50), draw(-33, 33)};
        practice::Vec const ball{draw(-52, 52), draw(-34, 34)};
        bool const offside = i % 4 == 0;
        stage.show(me.x, me.y, 0, ball.x, ball.y);
        stage.world.situation().playMode = offside      ? PM_OUR_OFFSIDE
                                           : i % 3 == 0 ? PM_THEIR_OFFSIDE
                                                        : PM_PLAY_ON;

        // Team-mates are expected by their home, the agent itself goes by where it is.
        practice::Vec const expected = strategic(n, placeOf(n, HOMES), ball, offside);
        expectNear(at(expected.x, expected.y), stage.world.calcSBSPPosition(n));
        practice::Vec const way = strategic(n, me, ball, offside) - me;
        double const turn = practice::toDeg(way.angle());
        bool const there = way.length() < 3;
        // Away from its place its neck, there its body too follows the ball.
        SkillPool::doPositioning();
        double const wanted = there ? practice::toDeg((ball - me).angle()) : turn;
        bool const straight = std::abs(wanted) < (there ? 5 : 8);
        EXPECT_EQ(stage.word(), !straight ? "turn" : there ? "" : "dash") << wanted;
        EXPECT_TRUE(straight || std::abs(stage.number(0) - wanted) < 0.01);
        EXPECT_EQ(SkillPool::goToStrategicPosition(), there);
    }
}

TEST(Positioning, FixedPlaces) {
    for (int n = 1; n <= 11; ++n) {
        Stage stage(n);
        practice::Vec const home = placeOf(n, HOMES);
        EXPECT_EQ(stage.world.myself().homePosition, at(home.x, home.y));
        EXPECT_EQ(stage.world.myself().attackPosition, at(home.x + (n == 1 ? 0 : 30), home.y));
        SkillPool::moveToInitialPosition();
        EXPECT_EQ((practice::Vec{stage.number(0), stage.number(1)}), placeOf(n, INITIAL)) << n;
        for (double const off : {-1.01, -0.99, 0.99, 1.01}) {
            bool const there = n == 1 || std::abs(off) < 1; // the goalkeeper has no place
            for (bool const ours : {true, false}) {
                practice::Vec const corner = placeOf(n, ours ? OUR_CORNER : THEIR_CORNER);
                stage.show(corner.x + off, corner.y, off > 0 ? 180 : 0, 0, 0);
                EXPECT_EQ(ours ? SkillPool::goToPositionOurCKick()
                               : SkillPool::goToPositionTheirCKick(),
                          there);
                EXPECT_EQ(stage.mainCommand(), there ? "" : "(dash 60.000000)") << n;
            }
        }
        for (int other = 2; other <= 11; ++other) {
            Vector2D const near = at(placeOf(other, HOMES).x + 2, placeOf(other, HOMES).y);
            EXPECT_EQ(stage.world.isMyHomePosClosestToPos(near), n == other) << n;
        }
        // Of two equally near the lower number, and the goalkeeper never.
        EXPECT_EQ(stage.world.isMyHomePosClosestToPos(at(-18, 0)), n == 3);
        EXPECT_EQ(stage.world.isMyHomePosClosestToPos(at(-51, -1)), n == 3);
    }
    // Nobody's place is near to a ball that is unknown, and an agent without a number is nobody.
    EXPECT_FALSE(support::AgentHarness().world.isMyHomePosClosestToPos(
        at(UNDEFINED_FLOAT, UNDEFINED_FLOAT)));
}
