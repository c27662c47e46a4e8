#include "skills/SkillPool.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Stage.h"

namespace {

struct Place {
    double x, y;
};

// clang-format off
constexpr Place HOME[] = {{-45, 0}, {-17, -21}, {-18, -5}, {-18, 5}, {-17, 21}, {0, -15},
                          {0, 0}, {0, 15}, {15, -20}, {20, 0}, {15, 20}};
constexpr Place INITIAL[] = {{-50, 0}, {-15, -16}, {-17, -5}, {-17, 5}, {-15, 16}, {-10, -20},
                             {-10, 0}, {-10, 20}, {-1, -23}, {-2, 0}, {-1, 23}};
constexpr Place OUR_CORNER[] = {{30, -15}, {30, -6}, {30, 6}, {30, 15}, {42, -20},
                                {42, 0}, {42, 20}, {45, -9}, {45, 0}, {45, 9}};
constexpr Place THEIR_CORNER[] = {{-45, -15}, {-51, -6}, {-51, 6}, {-45, 15}, {-45, -25},
                                  {-40, 0}, {-45, 25}, {-35, -20}, {-35, 0}, {-35, 20}};
// clang-format on

/// Where number n stands, drawn from `from`: by the lines of the team instead of by number.
Place strategic(int n, Place from, Place ball, bool offside) {
    bool const keeper = n == 1;
    bool const back = n >= 2 && n <= 5;
    bool const striker = n >= 9;
    double const pullX = keeper ? 0.1 : striker ? 0.6 : 0.5;
    double const pullY = keeper ? 0.1 : 0.25;
    Place const home = HOME[n - 1];
    double x = home.x + pullX * (ball.x - from.x);
    double y = home.y + pullY * (ball.y - from.y);
    if (y > 24 || y < -24) y -= pullY * (ball.y - from.y) / 2;
    if (offside || ((keeper || back) && ball.x < x)) x = ball.x;
    double const low = keeper ? -52.5 : back ? -41 : striker ? -25 : -38;
    double const high = keeper ? -30 : back ? -10 : striker ? 42 : 35;
    return {std::clamp(x, low, high), y};
}

} // namespace

TEST(Positioning, StrategicPositionsOfAllNumbers) {
    Draw draw;
    for (int n = 1; n <= 11; ++n) {
        Stage stage(n);
        for (int i = 0; i < 500; ++i) {
            Place const me{draw(-50, 50), draw(-33, 33)};
            Place const ball{draw(-52, 52), draw(-34, 34)};
            bool const offside = i % 4 == 0;
            stage.put(me.x, me.y, 0);
            stage.putBall(ball.x, ball.y);
            stage.perceive();
            stage.world.situation().playMode = offside ? 17 : i % 3 == 0 ? 18 : 3;

            // Team-mates are expected by their home, the agent itself goes by where it is.
            Place const expected = strategic(n, HOME[n - 1], ball, offside);
            Vector2D const position = stage.world.calcSBSPPosition(n);
            EXPECT_NEAR(position.x, expected.x, 1e-3);
            EXPECT_NEAR(position.y, expected.y, 1e-3);
            Place const own = strategic(n, me, ball, offside);
            double const distance = std::hypot(own.x - me.x, own.y - me.y);
            double const turn = practice::toDeg(std::atan2(own.y - me.y, own.x - me.x));
            EXPECT_EQ(SkillPool::goToStrategicPosition(), distance < 3);
            if (wordOf(stage.mainCommand()) == "turn") {
                EXPECT_NEAR(numbersIn(stage.mainCommand())[0], turn, 0.01);
            } else {
                EXPECT_EQ(stage.mainCommand(), distance < 3 ? "" : "(dash 100.000000)");
                EXPECT_TRUE(distance < 3 || std::abs(turn) <= 8.01) << turn;
            }
        }
    }
}

TEST(Positioning, FixedPlaces) {
    for (int n = 1; n <= 11; ++n) {
        Stage stage(n);
        SkillPool::moveToInitialPosition();
        std::vector<double> const move = numbersIn(stage.mainCommand());
        EXPECT_EQ(move, (std::vector{INITIAL[n - 1].x, INITIAL[n - 1].y}));
        Myself const& me = stage.world.myself();
        EXPECT_EQ(me.homePosition.x, HOME[n - 1].x);
        EXPECT_EQ(me.attackPosition.x, HOME[n - 1].x + (n == 1 ? 0 : 30));
        EXPECT_EQ(me.attackPosition.y, HOME[n - 1].y);
        for (bool const ours : {true, false}) {
            auto const go =
                ours ? SkillPool::goToPositionOurCKick : SkillPool::goToPositionTheirCKick;
            Place const place = n == 1 ? Place{} : (ours ? OUR_CORNER : THEIR_CORNER)[n - 2];
            for (auto const& [off, command] :
                 {std::pair(0.99, ""), std::pair(1.01, n == 1 ? "" : "(dash 60.000000)")}) {
                stage.put(place.x - off, place.y, 0);
                stage.perceive();
                EXPECT_EQ(go(), n == 1 || off < 1) << n;
                EXPECT_EQ(stage.mainCommand(), command) << n;
            }
        }
        for (int other = 2; other <= 11; ++other) {
            Place const home = HOME[other - 1];
            Vector2D const near(static_cast<float>(home.x + 2), static_cast<float>(home.y),
                                CARTESIAN);
            EXPECT_EQ(stage.world.isMyHomePosClosestToPos(near), n == other) << n;
        }
        // Of two equally near the lower number, and the goalkeeper never.
        EXPECT_EQ(stage.world.isMyHomePosClosestToPos(Vector2D(-18, 0, CARTESIAN)), n == 3);
        EXPECT_EQ(stage.world.isMyHomePosClosestToPos(Vector2D(-51, -1, CARTESIAN)), n == 3);
    }
}

TEST(Positioning, TheNeckFollowsTheBallAndTheBodyWhenItIsFree) {
    Stage stage(7);
    auto const go = [&stage](double x) {
        stage.put(x, 0, 20);
        stage.putBall(4, -5);
        stage.perceive();
        EXPECT_TRUE(SkillPool::doPositioning());
        return numbersIn(stage.mainCommand()).at(0);
    };
    EXPECT_NEAR(go(-30), practice::toDeg(std::atan2(-1.25, 47)) - 20, 0.01); // on its way
    EXPECT_EQ(stage.otherCommands().size(), 1U);
    EXPECT_NEAR(go(0), practice::toDeg(std::atan2(-5, 4)) - 20, 0.01); // there
    EXPECT_TRUE(stage.otherCommands().empty());
    stage.world.ball().position = Vector2D(UNDEFINED_FLOAT, 0, CARTESIAN);
    stage.startCycle();
    SkillPool::doPositioning();
    EXPECT_EQ(stage.allCommands(), std::vector<std::string>{"(turn 45.000000)"});
}
