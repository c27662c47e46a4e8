#include <gtest/gtest.h>

#include "practice/Parameters.h"
#include "practice/Physics.h"

using namespace practice;

namespace {

/// One player on the pitch, in play, so that every step moves.
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
        Players const found = moveAll(world, random);
        std::vector<int> touchers(found.begin(), found.end());
        recoverAll(world);
        return touchers;
    }
};

} // namespace

// Whatever a player does in a step, against the rules as plain sums. The noise stays within its
// bounds, and comes near them.
TEST(Physics, OneStepOfAPlayer) {
    Scene s;
    Player& p = s.p;
    auto const draw = [&s](double low, double high) { return s.random.uniform(low, high); };
    double strayed = 0.0, overturned = 0.0;
    for (int i = 0; i < 5000; ++i) {
        p.body = draw(-3.0, 3.0);
        p.neck = toRad(draw(-90.0, 90.0));
        p.vel = polar(draw(0.0, 0.7), draw(-3.0, 3.0));
        p.stamina = i % 3 == 0 ? draw(0.0, 100.0) : draw(2000.0, 8000.0);
        p.effort = draw(0.6, 1.0);
        p.recovery = draw(0.5, 1.0);
        p.extra = draw(0.0, 50.0);
        p.capacity = draw(0.0, 100.0);
        Player const was = p;
        double const moment = draw(-200.0, 200.0), power = draw(-50.0, 150.0), dir = draw(-90, 90);
        turn(p, moment, s.random);
        turnNeck(p, moment);
        dash(p, power, dir);
        s.step();
        double const spent = std::min(std::clamp(power, 0.0, 100.0), was.stamina + was.extra);
        double const left = std::max(0.0, was.stamina - spent);
        double const effort = left <= 2400.0   ? std::max(0.6, was.effort - 0.005)
                              : left >= 4800.0 ? std::min(1.0, was.effort + 0.01)
                                               : was.effort;
        double const recovery = left > 2400.0 ? was.recovery : std::max(0.5, was.recovery - 0.002);
        double const gain = std::min({recovery * 45.0, 8000.0 - left, was.capacity});
        ASSERT_DOUBLE_EQ(p.effort, effort) << left;
        ASSERT_DOUBLE_EQ(p.recovery, recovery) << left;
        ASSERT_DOUBLE_EQ(p.stamina, left + gain);
        ASSERT_NEAR(p.capacity, was.capacity - gain, 1e-9);
        ASSERT_NEAR(p.extra, std::min(was.extra, was.stamina + was.extra - spent), 1e-9);

        Vec const wanted =
            shortenedTo(was.vel + polar(was.effort * spent * 0.006, was.body + toRad(dir)), 1.05);
        Vec const moved = p.pos - was.pos;
        strayed = std::max(strayed, distance(moved, wanted) / wanted.length());
        ASSERT_NEAR(distance(p.vel, moved * 0.4), 0.0, 1e-9);
        double const slowed = std::clamp(moment, -180.0, 180.0) / (1 + 5 * was.vel.length());
        double const turned = toDeg(normalized(p.body - was.body));
        if (std::abs(slowed) < 160.0) {
            overturned = std::max(overturned, std::abs(turned / slowed - 1.0));
        }
        ASSERT_NEAR(toDeg(p.neck), std::clamp(toDeg(was.neck) + moment, -90.0, 90.0), 1e-9);
        p.pos = {};
    }
    EXPECT_EQ(p.counts.dash, 5000); // without power too
    EXPECT_NEAR(strayed, 0.1, 0.001);
    EXPECT_NEAR(overturned, 0.1, 0.001);
}

TEST(Physics, KicksAccelerateTheBallAsFarAsItCanGo) {
    Scene s;
    double strayed = 0.0;
    for (int i = 0; i < 5000; ++i) {
        double const power = s.random.uniform(-50.0, 120.0), dir = s.random.uniform(-180.0, 180.0);
        Vec const rel = polar(s.random.uniform(0.4, 1.1), s.random.direction());
        Movable& ball = s.world.ball;
        ball = {s.p.pos + rel, polar(s.random.uniform(0.0, 2.5), s.random.direction()), {}};
        double const speed = ball.vel.length();
        ASSERT_EQ(kick(s.world, s.p, power, dir, s.random), rel.length() <= 1.085);
        if (rel.length() > 1.085) continue;
        double const off = std::abs(rel.angle()) / toRad(180.0) + (rel.length() - 0.385) / 0.7;
        double const p = std::min(power, 100.0);
        double const noise = 0.1 * p / 100.0 * (1.0 + off / 4.0 + speed / 2.0 / 2.82);
        Vec const wanted = polar(p * 0.027 * (1.0 - off / 4.0), toRad(dir));
        strayed = std::max(strayed, distance(ball.acc, wanted) / std::abs(noise));
        Vec const before = ball.pos, sum = ball.vel + ball.acc;
        s.p.pos = {40.0, -30.0}; // out of the way
        s.step();
        s.p.pos = {-20.0, 0.0};
        s.p.halt();
        double const fastest = std::min(sum.length(), 3.0);
        ASSERT_NEAR(distance(ball.pos, before), fastest, fastest * 0.05 + 1e-9);
        ASSERT_NEAR(distance(ball.vel, (ball.pos - before) * 0.94), 0.0, 1e-9);
    }
    EXPECT_NEAR(strayed, 1.0, 0.01);
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
    EXPECT_NEAR(s.world.ball.vel.x, -0.0188, 0.001);
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
    for (int i = 0; i < 1000; ++i) {
        Vec pos = post + polar(random.uniform(0.2, 1.0), random.direction());
        Vec vel = polar(2.0, random.direction());
        constexpr int SLICES = 20000;
        Vec dir = vel * (1.0 / SLICES);
        Vec const end = moveAlong(pos, vel, BALL_SIZE);
        for (int k = 0; k < SLICES; ++k) {
            pos += dir;
            Vec const normal = pos - post;
            if (normal.length() < 0.145 && dot(dir, normal) < 0.0) {
                dir = dir - normal * (2.0 * dot(dir, normal) / dot(normal, normal));
            }
        }
        ASSERT_NEAR(distance(vel, dir * SLICES), 0.0, 0.3) << i; // a grazing contact is inexact
        ASSERT_LT(distance(pos, end), 0.15) << i;
    }
}
