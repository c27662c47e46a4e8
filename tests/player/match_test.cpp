#include <gtest/gtest.h>

#include "skills/SkillPool.h"
#include "tests/support/MatchDriver.h"

using practice::Phase;
using practice::Side;
using practice::Vec;
using support::MatchDriver;

namespace {

/// A match in play, with positions given in the agent's own frame.
class Scene : public MatchDriver {
public:
    explicit Scene(Setup const& setup)
        : MatchDriver(setup), side(setup.right ? Side::right : Side::left) {
        kickOff();
        step(); // the agent hears of it, and so forgets the set pieces of a match before
        SkillPool::resetGoalieFlags();
    }

    Vec turned(Vec v) const { return v * practice::sign(side); }
    practice::Player& me() { return match.world().player(id); }
    /// Puts the ball there, the player facing it, and everybody else far away.
    void put(Vec pos, Vec ballPos, Vec ballVelocity = {}) {
        putBall(ballPos, ballVelocity);
        me().pos = turned(pos);
        me().halt();
        me().body = turned(ballPos - pos).angle();
        me().neck = 0.0;
        for (practice::Player& other : match.world().players) {
            double const wing = other.unum % 2 == 0 ? 33.0 : -33.0;
            if (&other != &me()) other.pos = {-20.0 + other.unum, wing};
        }
    }
    void putBall(Vec pos, Vec velocity = {}) {
        match.world().ball.halt();
        match.world().ball.pos = turned(pos);
        match.world().ball.vel = turned(velocity);
    }
    /// An opponent kicks the ball out of the field from there: a set piece of the agent's team.
    void kickOut(Vec from, Vec direction) {
        int const kicker = practice::playerId(other(side), 1);
        practice::Player& opponent = match.world().player(kicker);
        putBall(from + direction * 0.5);
        opponent.pos = turned(from);
        opponent.body = turned(direction).angle();
        match.receive(kicker, "(kick 100 0)");
        until(20, [&] { return match.world().mode.isSetPiece(); });
    }
    int goals() { return match.world().goals(side); }

    /// Steps until the condition holds; false when it does not for so long.
    template <typename Condition>
    bool until(int cycles, Condition condition) {
        for (int i = 0; i < cycles; ++i) {
            if (condition()) return true;
            step();
        }
        return false;
    }
    Side side;
};

} // namespace

class EitherSide : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Match, EitherSide, testing::Values(false, true));

TEST_P(EitherSide, ScoresAgainstAnEmptySide) {
    Scene scene({.right = GetParam(), .opponents = 1});
    scene.put({0, -10}, {10, 5});
    EXPECT_TRUE(scene.until(600, [&] { return scene.goals() > 0; }));
    EXPECT_EQ(scene.me().refused, 0);
}

TEST_P(EitherSide, TakesKickInsAndCorners) {
    Scene scene({.right = GetParam(), .unum = 9, .opponents = 1});
    struct Case {
        Phase phase;
        Vec from, direction;
    };
    for (Case const& c :
         {Case{Phase::kickIn, {20, -32}, {0, -1}}, Case{Phase::cornerKick, {50, -20}, {1, 0}}}) {
        scene.kickOut(c.from, c.direction);
        EXPECT_EQ(scene.match.world().mode, (practice::PlayMode{c.phase, scene.side}));
        Vec const spot = scene.turned(scene.match.world().ball.pos);
        scene.put(spot + Vec{-8, 5}, spot);
        auto const taken = [&] { return scene.match.world().mode == Phase::playOn; };
        EXPECT_FALSE(scene.until(25, taken)); // first it looks around for somebody to pass to
        EXPECT_TRUE(scene.until(90, taken)) << static_cast<int>(c.phase);
        scene.step(); // in which the agent hears of it
    }
}

TEST_P(EitherSide, TheGoalkeeperCatchesAndClears) {
    Scene scene({.goalie = true, .right = GetParam(), .unum = 1, .opponents = 1});
    bool caught = false;
    for (int i = 0; i < 5 && !caught; ++i) { // at times it reaches beside the ball
        scene.put({-47, 0}, {-38, 2}, {-0.8, -0.2});
        caught = scene.until(40, [&] { return scene.match.world().mode == Phase::freeKick; });
    }
    EXPECT_TRUE(caught);
    EXPECT_GT(scene.me().counts.catches, 0);
    auto const away = [&] { return scene.turned(scene.match.world().ball.pos).x > -20; };
    EXPECT_TRUE(scene.until(80, away));
    EXPECT_EQ(scene.me().refused, 0);
    EXPECT_EQ(scene.match.world().goals(other(scene.side)), 0);
}
