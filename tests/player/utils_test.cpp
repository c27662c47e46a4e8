#include "skills/Utils.h"

#include <gtest/gtest.h>

#include "skills/SkillPool.h"
#include "tests/geometry/Sweep.h"
#include "tests/player/Stage.h"

using Calculations = Sweep;

TEST_F(Calculations, AnglesAgreeWithComplexNumbers) {
    auto const snapped = [](double angle) { // clockwise, in [0, 360), nearly 0 snapped
        double const turned = std::fmod(720 - angle, 360.0);
        return turned < 0.5 ? 0.0 : turned;
    };
    Stage stage;
    Myself& me = stage.world.myself();
    for (int i = 0; i < 5000; ++i) {
        Vector2D const p = point();
        stage.placeMyself(number(-50, 50), number(-30, 30), number(0, 360));
        me.headDirection = number(0, 360);
        stage.world.ball().position = p;
        double const way = degrees(toComplex(p) - toComplex(me.position));
        EXPECT_NEAR(Utils::calcAngleToBall(), snapped(way), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToPoint(p, me.position), snapped(way + 180), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToBallRel2Body(), snapped(way + me.bodyDirection), 2e-3);
        EXPECT_NEAR(Utils::calcAngleToBallRel2Head(), snapped(way + me.headDirection), 2e-3);
    }
    stage.placeMyself(0, 0);
    for (int quarter = 0; quarter < 4; ++quarter) {
        Complex const axis = std::pow(Complex(0, -1), quarter);
        EXPECT_EQ(Utils::calcAngleToPoint(at(axis.real(), axis.imag())), 90 * quarter);
    }
    EXPECT_TRUE(std::isnan(Utils::calcAngleToPoint(Vector2D())));
    // Just below a full turn: none relative to the head, nearly all of it relative to the body.
    me.bodyDirection = me.headDirection = 0.00005F;
    stage.placeBall(50, 0);
    EXPECT_EQ(Utils::calcAngleToBallRel2Head(), 0.0F);
    EXPECT_GT(Utils::calcAngleToBallRel2Body(), 359.0F);
}

TEST_F(Calculations, SpeedsAndTimes) {
    Stage const stage; // for the decay
    EXPECT_NEAR(Utils::calcKickSpeedToTravel(10, 0), 0.6, 1e-5);
    EXPECT_NEAR(Utils::calcKickSpeedToTravel(-100, 1), 0.94, 1e-5); // cannot be reached

    auto const micro = [](timeval t) { return t.tv_sec * 1000000 + t.tv_usec; };
    timeval const noon{6, 500000};
    for (long i = 0; i < 5000; ++i) {
        timeval const t{5 + i % 3, i * 200};
        timeval const sum = Utils::timerAddMsec(&t, static_cast<int>(i % 1000));
        EXPECT_TRUE(micro(sum) - micro(t) == i % 1000 * 1000 && sum.tv_usec < 1000000) << i;
        EXPECT_EQ(Utils::timerDiffMsec(&t, &noon),
                  (micro(t) - micro(noon) + 5000000) / 1000 - 5000);
    }
}

TEST(Report, SymbolsThereAndBack) {
    std::string const symbols = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs";
    for (int i = 0; i < 60; ++i) {
        auto const value = static_cast<float>(i);
        char const symbol = symbols[static_cast<std::size_t>(std::min(i, 54))];
        EXPECT_EQ(SkillPool::do_ascii(value + 0.99F), symbol);
        EXPECT_EQ(SkillPool::do_ascii(-value), symbol);
        EXPECT_EQ(Utils::doAsciiToFloat(symbol), std::min(value, 54.0F));
    }
    for (char const other : {'t', ' ', '\0', '@', '['}) {
        EXPECT_EQ(Utils::doAsciiToFloat(other), 999.0F);
    }
    EXPECT_EQ(SkillPool::do_ascii(1e30F), 's');
}

TEST(Report, SaysTheBall) {
    Stage stage;
    auto const said = [&](float x, float y, float vx, float vy) {
        stage.placeBall(x, y, vx, vy);
        stage.startCycle();
        SkillPool::reportWorldModelStatus();
        return stage.otherCommands();
    };
    using Texts = std::vector<std::string>;
    EXPECT_EQ(said(-30.2F, 10.9F, 0.5F, -0.07F), Texts{"(say \"vyUxAxAy1\")"});
    EXPECT_EQ(said(52, -33, -2.7F, 2.76F), Texts{"(say \"vxqyXysxs\")"});
    EXPECT_EQ(said(UNDEFINED_FLOAT, UNDEFINED_FLOAT, 0, 0), Texts{});
}
