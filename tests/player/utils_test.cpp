#include "skills/Utils.h"

#include <gtest/gtest.h>

#include "player/Stage.h"
#include "skills/SkillPool.h"

TEST(Utils, AnglesToPointsAgreeWithAtan2) {
    auto const directionOf = [](Vector2D from, Vector2D to) { // clockwise, in [0, 360)
        double const degrees = practice::toDeg(std::atan2(from.y - to.y, to.x - from.x));
        return degrees < 0.0 ? degrees + 360.0 : degrees;
    };
    auto const snap = [](double degrees) { return degrees < 0.5 ? 0.0 : degrees; };
    Stage stage;
    Draw draw;
    for (int i = 0; i < 5000; ++i) {
        stage.placeMyself(draw.real(-50, 50), draw.real(-30, 30), draw.real(0, 360));
        Vector2D const p(draw.real(-50, 50), draw.real(-30, 30), CARTESIAN);
        Myself& me = stage.world.myself();
        me.headDirection = draw.real(0, 360);
        stage.world.ball().position = p;

        double const absolute = directionOf(me.position, p);
        auto const relative = [&](double base) {
            return snap(absolute - base + (absolute < base ? 360.0 : 0.0));
        };
        EXPECT_NEAR(Utils::calcAngleToPoint(p), snap(absolute), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToPoint(p, me.position), snap(directionOf(p, me.position)),
                    2e-3);
        EXPECT_NEAR(Utils::calcAngleToBallRel2Body(), relative(me.bodyDirection), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToBallRel2Head(), relative(me.headDirection), 2e-3);
    }
}

TEST(Utils, AnglesAtTheBounds) {
    Stage stage;
    stage.placeMyself(0, 0);
    for (auto const& [point, angle] :
         {std::pair(at(10, 0), 0.0F), std::pair(at(0, -10), 90.0F), std::pair(at(-10, 0), 180.0F),
          std::pair(at(0, 10), 270.0F), std::pair(Vector2D(50, 0.3F, POLAR), 0.0F)}) {
        EXPECT_EQ(Utils::calcAngleToPoint(point), angle);
    }
    EXPECT_TRUE(std::isnan(Utils::calcAngleToPoint(Vector2D())));
    // Just below a full turn: none relative to the head, nearly all of it relative to the body.
    stage.world.myself().bodyDirection = stage.world.myself().headDirection = 0.00005F;
    stage.placeBall(50, 0);
    EXPECT_EQ(Utils::calcAngleToBallRel2Head(), 0.0F);
    EXPECT_GT(Utils::calcAngleToBallRel2Body(), 359.0F);
}

TEST(Utils, SpeedsAndTimes) {
    Stage stage;
    EXPECT_NEAR(Utils::calcKickSpeedToTravel(10, 0), 0.6, 1e-5);
    EXPECT_NEAR(Utils::calcKickSpeedToTravel(-100, 1), 0.94, 1e-5); // cannot be reached

    timeval const late{6, 1999};
    timeval const early{5, 999000};
    timeval const sum = Utils::timerAddMsec(&early, 1);
    EXPECT_TRUE(sum.tv_sec == 6 && sum.tv_usec == 0);
    EXPECT_EQ(Utils::timerDiffMsec(&late, &early), 2); // of 2.999
    EXPECT_EQ(Utils::timerDiffMsec(&early, &late), -3);
}

TEST(Report, SymbolsThereAndBack) {
    std::string const symbols = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs";
    for (int value = 0; value < 60; ++value) {
        auto const number = static_cast<float>(value);
        char const symbol = symbols[static_cast<std::size_t>(std::min(value, 54))];
        EXPECT_EQ(SkillPool::do_ascii(number + 0.99F), symbol);
        EXPECT_EQ(SkillPool::do_ascii(-number), symbol);
        EXPECT_EQ(Utils::doAsciiToFloat(symbol), std::min(number, 54.0F));
    }
    for (char const other : {'t', ' ', '\0', '@', '['}) {
        EXPECT_EQ(Utils::doAsciiToFloat(other), 999.0F);
    }
    EXPECT_EQ(SkillPool::do_ascii(1e30F), 's');
}

TEST(Report, SaysTheBall) {
    Stage stage;
    using Texts = std::vector<std::string>;
    struct Case {
        float x, y, vx, vy;
        Texts said;
    };
    for (Case const& c : {Case{-30.2F, 10.9F, 0.5F, -0.07F, {"(say \"vyUxAxAy1\")"}},
                          Case{0, 0, 0, 0, {"(say \"vx0x0x0x0\")"}},
                          Case{52, -33, -2.7F, 2.76F, {"(say \"vxqyXysxs\")"}},
                          Case{UNDEFINED_FLOAT, UNDEFINED_FLOAT, 0, 0, {}}}) {
        stage.placeBall(c.x, c.y, c.vx, c.vy);
        stage.startCycle();
        SkillPool::reportWorldModelStatus();
        EXPECT_EQ(stage.otherCommands(), c.said);
    }
}
