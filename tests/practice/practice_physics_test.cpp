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
        world.ball.pos = {0.0, 30.0};
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
    s.p.pos = {};
    dash(s.p, 100.0);
    s.step();
    EXPECT_NEAR(s.p.pos.x, 0.84, 0.084);
    EXPECT_EQ(s.p.counts.dash, 2);

    Scene back;
    dash(back.p, -100.0); // has no power here, but is a dash
    back.step();
    EXPECT_EQ(back.p.pos, (Vec{-20.0, 0.0}));
    EXPECT_EQ(back.p.counts.dash, 1);
}

TEST(Physics, TurnsAreSlowedBySpeedAndNoisyWithinATenth) {
    Scene s;
    double least = 1e9;
    double most = -1e9;
    for (int i = 0; i < 2000; ++i) {
        s.p.vel = {0.2938, 0.0};
        turn(s.p, 60.0, s.random);
        least = std::min(least, toDeg(s.p.pendingTurn));
        most = std::max(most, toDeg(s.p.pendingTurn));
    }
    EXPECT_NEAR(least, 24.303 * 0.9, 0.02);
    EXPECT_NEAR(most, 24.303 * 1.1, 0.02);
}

TEST(Physics, NeckStaysWithinItsBounds) {
    Scene s;
    for (const auto& [moment, neck] :
         {std::pair{70.0, 70.0}, {70.0, 90.0}, {-999.0, -90.0}, {30.0, -60.0}}) {
        turnNeck(s.p, moment);
        s.step();
        EXPECT_NEAR(toDeg(s.p.neck), neck, 1e-9);
    }
}

TEST(Physics, KickDependsOnDistanceAndSide) {
    Scene s;
    s.world.ball.pos = s.p.pos + Vec{0.5, 0.0};
    Vec sum;
    constexpr int kicks = 4000; // the noise has mean 0
    for (int i = 0; i < kicks; ++i) {
        s.world.ball.acc = {};
        ASSERT_TRUE(kick(s.world, s.p, 50.0, 30.0, s.random));
        sum += s.world.ball.acc * (1.0 / kicks);
    }
    EXPECT_NEAR(sum.length(), 1.2946, 0.005);
    EXPECT_NEAR(toDeg(sum.angle()), 30.0, 0.2);
    s.world.ball.pos = s.p.pos + Vec{1.0851, 0.0};
    EXPECT_FALSE(kick(s.world, s.p, 50.0, 0.0, s.random));
}

TEST(Physics, GoalieJumpsToTheBallItCatches) {
    Scene s;
    s.p.pos = {-45.0, 5.0};
    s.world.ball.pos = {-44.2, 5.0};
    ASSERT_TRUE(catchBall(s.world, s.p, 0.0));
    EXPECT_NEAR(s.p.pos.x, -44.585, 1e-9);
    s.p.pos = {-45.0, 5.0};
    s.world.ball.pos = {-44.2, 5.51}; // beside the area
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
    const Vec waiting = s.world.ball.pos = s.p.pos + Vec{0.1, 0.0};
    s.world.ball.halt();
    s.world.mode = {Phase::kickIn, Side::left};
    s.step();
    EXPECT_EQ(s.world.ball.pos, waiting); // only the player gives way
}

// The path of a ball that meets a post, against small steps of a plain simulation.
TEST(Physics, PostsReflect) {
    const Vec post{52.44, 7.07};
    Random random(3);
    int bounces = 0;
    for (int i = 0; i < 3000; ++i) {
        const Vec from = post + polar(random.uniform(0.2, 1.5), random.direction());
        Vec vel = polar(2.0, random.direction());
        const Vec aim = vel;
        const Vec end = moveAlong(from, vel, ballSize);

        constexpr int slices = 20000;
        Vec pos = from;
        Vec dir = aim * (1.0 / slices);
        for (int k = 0; k < slices; ++k) {
            pos += dir;
            const Vec normal = pos - post;
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

TEST(Physics, TirednessLowersRecoveryAndEffort) {
    Scene s;
    s.p.stamina = 2400.0;
    s.step();
    EXPECT_DOUBLE_EQ(s.p.recovery, 0.998);
    EXPECT_DOUBLE_EQ(s.p.effort, 0.995);
    EXPECT_DOUBLE_EQ(s.p.stamina, 2400.0 + 0.998 * 45.0);
    for (int i = 0; i < 1000; ++i) {
        dash(s.p, 100.0);
        s.step();
    }
    EXPECT_DOUBLE_EQ(s.p.recovery, 0.5);
    EXPECT_DOUBLE_EQ(s.p.effort, 0.6);
    EXPECT_LT(s.p.stamina, 50.0);
    EXPECT_DOUBLE_EQ(s.p.extra, 0.0);
}
