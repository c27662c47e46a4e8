#include "skills/Utils.h"

#include <gtest/gtest.h>

#include "Stage.h"
#include "skills/SkillPool.h"

namespace {

/// The clockwise direction from one point to another, in [0, 360).
double directionOf(Vector2D from, Vector2D to) {
    double const degrees = practice::toDeg(std::atan2(from.y - to.y, to.x - from.x));
    return degrees < 0.0 ? degrees + 360.0 : degrees;
}

double snap(double degrees) {
    return degrees < 0.5 ? 0.0 : degrees;
}

} // namespace

TEST(Utils, AnglesToPointsAgreeWithAtan2) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 5000; ++i) {
        stage.placeMyself(draw.real(-50, 50), draw.real(-30, 30), draw.real(0, 360));
        Vector2D const p(draw.real(-50, 50), draw.real(-30, 30), CARTESIAN);
        Myself& me = stage.world.myself();
        me.headDirection = draw.real(0, 360);
        stage.world.ball().position = p;

        double const absolute = directionOf(me.position, p);
        auto const relative = [&](float base) {
            return snap(absolute - static_cast<double>(base) +
                        (absolute < static_cast<double>(base) ? 360.0 : 0.0));
        };
        EXPECT_NEAR(Utils::calcAngleToPoint(p), snap(absolute), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToPoint(p, me.position), snap(directionOf(p, me.position)),
                    2e-3);
        EXPECT_NEAR(Utils::calcAngleToPointRel2Body(p), relative(me.bodyDirection), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToBallRel2Body(), relative(me.bodyDirection), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToBallRel2Head(), relative(me.headDirection), 2e-3);
    }
}

TEST(Utils, AnglesAtTheBounds) {
    Stage stage;
    auto const at = [](double clockwise) {
        return Vector2D(50, static_cast<float>(clockwise), POLAR);
    };
    stage.placeMyself(0, 0);
    EXPECT_EQ(Utils::calcAngleToPoint(Vector2D(10, 0, CARTESIAN)), 0.0F);
    EXPECT_EQ(Utils::calcAngleToPoint(Vector2D(0, -10, CARTESIAN)), 90.0F);
    EXPECT_EQ(Utils::calcAngleToPoint(Vector2D(-10, 0, CARTESIAN)), 180.0F);
    EXPECT_EQ(Utils::calcAngleToPoint(Vector2D(0, 10, CARTESIAN)), 270.0F);
    EXPECT_EQ(Utils::calcAngleToPoint(Vector2D(10, 10, CARTESIAN)), 315.0F);
    EXPECT_EQ(Utils::calcAngleToPoint(at(0.3)), 0.0F);
    EXPECT_NEAR(Utils::calcAngleToPoint(at(359.8)), 359.8F, 1e-3);
    EXPECT_TRUE(std::isnan(Utils::calcAngleToPoint(Vector2D())));

    stage.world.myself().bodyDirection = 350.0F;
    EXPECT_NEAR(Utils::calcAngleToPointRel2Body(at(10)), 20.0F, 1e-3);
    stage.world.myself().bodyDirection = 10.0F;
    EXPECT_NEAR(Utils::calcAngleToPointRel2Body(at(350)), 340.0F, 1e-3);

    // Just below a full turn: none relative to the head, nearly all of it relative to the body.
    stage.world.myself().bodyDirection = stage.world.myself().headDirection = 0.00005F;
    stage.placeBall(50, 0);
    EXPECT_EQ(Utils::calcAngleToBallRel2Head(), 0.0F);
    EXPECT_GT(Utils::calcAngleToBallRel2Body(), 359.0F);
}

TEST(Utils, DashesLeaveTheStaminaAboveTheThreshold) {
    Stage stage;
    constexpr float THRESHOLD = 2500.0F; // 0.3 of 8000, and 100
    EXPECT_EQ(Utils::correctDashPowerForStamina(100, THRESHOLD + 100), 100.0F);
    EXPECT_EQ(Utils::correctDashPowerForStamina(100, THRESHOLD + 50), 50.0F);
    EXPECT_EQ(Utils::correctDashPowerForStamina(100, THRESHOLD - 1), 0.0F);
    // Backwards down to half of it.
    EXPECT_EQ(Utils::correctDashPowerForStamina(-100, THRESHOLD / 2 + 200), -100.0F);
    EXPECT_EQ(Utils::correctDashPowerForStamina(-100, THRESHOLD / 2 + 30), -30.0F);
    EXPECT_EQ(Utils::correctDashPowerForStamina(-100, THRESHOLD / 2 - 1), 0.0F);
}

TEST(Utils, KicksTurnsAndViews) {
    Stage stage;
    EXPECT_FLOAT_EQ(Utils::calculateKickRate(0.385F, 0), 1.0F);
    EXPECT_FLOAT_EQ(Utils::calculateKickRate(0.385F + 0.7F, -180), 0.5F);
    EXPECT_FLOAT_EQ(Utils::calculateKickRate(0.385F + 0.35F, 90), 0.75F);
    EXPECT_EQ(Utils::viewQualToAngle(1), 45.0F);
    EXPECT_EQ(Utils::viewQualToAngle(2), 90.0F);
    EXPECT_EQ(Utils::viewQualToAngle(3), 180.0F);
    EXPECT_TRUE(std::isnan(Utils::viewQualToAngle(0)));
    EXPECT_FLOAT_EQ(Utils::calcActualTurnAngle(60, 0.4F), 20.0F);
    EXPECT_FLOAT_EQ(Utils::calcAngleForTurn(20, 0.4F), 60.0F);

    // A ball that starts with the speed asked for covers the distance and has the end speed left.
    for (float const endSpeed : {0.5F, 1.0F, 1.5F}) {
        for (int metres = 2; metres < 30; ++metres) {
            auto const distance = static_cast<float>(metres);
            float const start = Utils::calcKickSpeedToTravel(distance, endSpeed);
            float speed = start;
            float way = 0;
            while (speed > endSpeed * 1.001F)
                way += speed *= 0.94F;
            EXPECT_NEAR(way, distance, 0.5F * start); // of whole cycles the nearest
            EXPECT_NEAR(speed, endSpeed, 0.01F);
        }
    }
    EXPECT_NEAR(Utils::calcKickSpeedToTravel(10, 0), 0.6F, 1e-5);
    EXPECT_NEAR(Utils::calcKickSpeedToTravel(-100, 1), 0.94F, 1e-5); // cannot be reached
}

TEST(Utils, TimesInMilliseconds) {
    timeval const late{6, 1000};
    timeval const early{5, 999000};
    timeval const sum = Utils::timerAddMsec(&early, 2);
    EXPECT_EQ(sum.tv_sec, 6);
    EXPECT_EQ(sum.tv_usec, 1000);
    timeval const full{5, 999999};
    EXPECT_EQ(Utils::timerAddMsec(&full, 0).tv_sec, 5);
    EXPECT_EQ(Utils::timerDiffMsec(&late, &early), 2);
    EXPECT_EQ(Utils::timerDiffMsec(&early, &late), -2);
    timeval const next{6, 2999};
    EXPECT_EQ(Utils::timerDiffMsec(&next, &late), 1); // cut, not rounded
}

TEST(Report, SymbolsThereAndBack) {
    std::string const symbols = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs";
    for (int value = 0; value < 300; ++value) {
        auto const number = static_cast<float>(value);
        char const symbol = symbols[static_cast<std::size_t>(std::min(value, 54))];
        EXPECT_EQ(SkillPool::do_ascii(number + 0.99F), symbol);
        EXPECT_EQ(SkillPool::do_ascii(-number), symbol);
        EXPECT_EQ(Utils::doAsciiToFloat(symbol), std::min(number, 54.0F));
    }
    for (char const other : {'t', 'z', '+', ' ', '\0', '@', '[', '/', ':'}) {
        EXPECT_EQ(Utils::doAsciiToFloat(other), 999.0F);
    }
    EXPECT_EQ(SkillPool::do_ascii(1e30F), 's');
}

TEST(Report, SaysTheBall) {
    Stage stage;
    auto const said = [&stage](float x, float y, float vx, float vy) {
        stage.placeBall(x, y, vx, vy);
        stage.startCycle();
        SkillPool::reportWorldModelStatus();
        return stage.otherCommands();
    };
    using Texts = std::vector<std::string>;
    EXPECT_EQ(said(-30.2F, 10.9F, 0.5F, -0.07F), Texts{"(say \"vyUxAxAy1\")"});
    EXPECT_EQ(said(0, 0, 0, 0), Texts{"(say \"vx0x0x0x0\")"});
    EXPECT_EQ(said(52, -33, -2.7F, 2.76F), Texts{"(say \"vxqyXysxs\")"});
    EXPECT_EQ(said(UNDEFINED_FLOAT, UNDEFINED_FLOAT, 0, 0), Texts{});
}
