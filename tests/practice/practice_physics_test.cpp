#include "practice/Physics.h"

#include <gtest/gtest.h>

#include "practice/Parameters.h"

using namespace practice;

namespace {

// One player on the pitch, in play, so that every step moves.
struct Scene {
    World world;
    Random random{7};
    Player& p = world.player(0);

    Scene() {
        world.mode = {Phase::playOn};
        world.ball.pos.y = 30.0; // far away
        p.active = true;
        p.pos = {-20.0, 0.0};
    }
    std::vector<int> step() {
        auto touchers = moveAll(world, random);
        recoverAll(world);
        return touchers;
    }
};

} // namespace

// Movement is noisy by up to a tenth of the speed: the observed numbers hold within that.
TEST(Physics, DashesAccelerateAndCostStamina) {
    Scene s;
    dash(s.p, 150.0); // clamped to 100
    s.step();
    EXPECT_NEAR(s.p.pos.x, -20.0 + 0.6, 0.06);
    EXPECT_NEAR(s.p.vel.length(), 0.24, 0.024);
    EXPECT_DOUBLE_EQ(s.p.stamina, 7945.0);
    s.p.vel = {0.24, 0.0};
    dash(s.p, 100.0, 90.0);
    s.step();
    EXPECT_NEAR(s.p.vel.x, 0.4 * 0.24, 0.03);
    EXPECT_NEAR(s.p.vel.y, 0.24, 0.03);
    s.p.pos = {};
    s.p.halt();
    dash(s.p, -100.0); // has no power here, but is a dash
    s.step();
    EXPECT_EQ(s.p.pos, Vec{});
    EXPECT_EQ(s.p.counts.dash, 3);
}

TEST(Physics, TirednessLowersRecoveryAndEffort) {
    Scene s;
    s.p.stamina = 2400.0;
    s.step();
    s.step(); // recovered above the threshold: nothing is lost any more
    EXPECT_DOUBLE_EQ(s.p.recovery, 0.998);
    EXPECT_DOUBLE_EQ(s.p.effort, 0.995);
    EXPECT_DOUBLE_EQ(s.p.stamina, 2400.0 + 2 * 0.998 * 45.0);
    for (int i = 0; i < 1000; ++i) {
        dash(s.p, 100.0);
        s.step();
    }
    EXPECT_DOUBLE_EQ(s.p.recovery, 0.5);
    EXPECT_DOUBLE_EQ(s.p.effort, 0.6);
    EXPECT_LT(s.p.stamina, 50.0);
    EXPECT_DOUBLE_EQ(s.p.extra, 0.0);
}

TEST(Physics, TurnsAreSlowedBySpeedAndNoisyWithinATenth) {
    Scene s;
    s.p.vel = {0.2938, 0.0};
    double least = 1e9, most = -1e9;
    for (int i = 0; i < 2000; ++i) {
        turn(s.p, 60.0, s.random);
        least = std::min(least, toDeg(s.p.pendingTurn));
        most = std::max(most, toDeg(s.p.pendingTurn));
    }
    EXPECT_NEAR(least, 24.303 * 0.9, 0.02);
    EXPECT_NEAR(most, 24.303 * 1.1, 0.02);
}

TEST(Physics, NeckStaysWithinItsBounds) {
    Scene s;
    for (auto const& [moment, neck] :
         {std::pair{70.0, 70.0}, {70.0, 90.0}, {-999.0, -90.0}, {30.0, -60.0}}) {
        turnNeck(s.p, moment);
        s.step();
        EXPECT_NEAR(toDeg(s.p.neck), neck, 1e-9);
    }
}

TEST(Physics, KickDependsOnDistanceAndSide) {
    Scene s;
    s.world.ball.pos = s.p.pos + Vec{0.5, 0.0};
    constexpr int kicks = 4000; // the noise has mean 0
    for (int i = 0; i < kicks; ++i)
        ASSERT_TRUE(kick(s.world, s.p, 50.0, 30.0, s.random));
    EXPECT_NEAR(s.world.ball.acc.length() / kicks, 1.2946, 0.005);
    EXPECT_NEAR(toDeg(s.world.ball.acc.angle()), 30.0, 0.2);
    s.world.ball.pos = s.p.pos + Vec{1.0851, 0.0};
    EXPECT_FALSE(kick(s.world, s.p, 50.0, 0.0, s.random));
}

TEST(Physics, GoalieJumpsToTheBallItCatches) {
    Scene s;
    s.world.ball.pos = s.p.pos + Vec{0.8, 0.0};
    ASSERT_TRUE(catchBall(s.world, s.p, 0.0));
    EXPECT_NEAR(s.p.pos.x, -20.0 + 0.415, 1e-9);
    s.p.pos = s.world.ball.pos - Vec{0.8, 0.51}; // beside the area
    EXPECT_FALSE(catchBall(s.world, s.p, 0.0));
    EXPECT_TRUE(catchBall(s.world, s.p, 40.0));
}

TEST(Physics, CollisionsSeparateAndTurnBack) {
    Scene s;
    Player& other = s.world.player(12);
    other.active = true;
    other.pos = s.p.pos + Vec{0.4, 0.0};
    other.vel = {1e-9, 0.0};
    s.step();
    EXPECT_NEAR(distance(s.p.pos, other.pos), 0.6, 1e-6);
    EXPECT_NEAR(s.p.pos.x, -20.1, 1e-6);
    EXPECT_LT(other.vel.x, 0.0);

    s.world.ball.pos = s.p.pos + Vec{-0.2, 0.0};
    s.world.ball.vel = {0.2, 0.0};
    EXPECT_EQ(s.step(), std::vector<int>{0});
    EXPECT_NEAR(s.world.ball.vel.x, -0.02, 0.003);
    Vec const waiting = s.world.ball.pos = s.p.pos + Vec{0.1, 0.0};
    s.world.ball.halt();
    s.world.mode = {Phase::kickIn, Side::left};
    s.step();
    EXPECT_EQ(s.world.ball.pos, waiting); // only the player gives way
}

// The path of a ball that meets a post, against small steps of a plain simulation.
TEST(Physics, PostsReflect) {
    Vec const post{52.44, 7.07};
    Random random(3);
    int bounces = 0;
    for (int i = 0; i < 3000; ++i) {
        Vec pos = post + polar(random.uniform(0.2, 1.5), random.direction());
        Vec vel = polar(2.0, random.direction());
        constexpr int slices = 20000;
        Vec dir = vel * (1.0 / slices);
        Vec const end = moveAlong(pos, vel, ballSize);
        for (int k = 0; k < slices; ++k) {
            pos += dir;
            Vec const normal = pos - post;
            if (normal.length() < 0.145 && dot(dir, normal) < 0.0) {
                dir = dir - normal * (2.0 * dot(dir, normal) / dot(normal, normal));
                ++bounces;
            }
        }
        ASSERT_NEAR(vel.length(), 2.0, 1e-9);
        // A grazing contact turns a slice of path into an angle: compare loosely.
        ASSERT_LT(distance(pos, end), 0.15) << i;
    }
    EXPECT_GT(bounces, 100);
}
