#include <gtest/gtest.h>

#include "practice/Body.h"
#include "practice/Eyes.h"
#include "practice/Text.h"

using namespace practice;

namespace {

/// One player who looks, and what he sees.
struct Scene {
    World world;
    Random random{5};
    Player& me;

    explicit Scene(Vec pos = {}, double gazeDeg = 0.0) : me(add(0, pos)) {
        world.teamNames = {"Alpha", "Beta"};
        me.body = toRad(gazeDeg);
    }
    Player& add(int id, Vec pos) {
        world.player(id).active = true;
        world.player(id).pos = pos;
        return world.player(id);
    }
    std::string see() {
        std::string message;
        appendSee(message, world, me, random);
        return message;
    }
    std::string senseBody() const {
        std::string message;
        appendSenseBody(message, world, me);
        return message;
    }
    /// The groups whose name starts so, as they stand in the message.
    std::string seen(std::string const& name) {
        std::string const all = see();
        std::string out;
        for (auto at = all.find("((" + name); at != all.npos; at = all.find("((" + name, at + 1)) {
            out += all.substr(at, all.find(" ((", at) - at);
        }
        if (out.ends_with("))")) out.pop_back(); // the end of the message
        return out;
    }
};

} // namespace

TEST(Eyes, LinesAreSeenAlongTheLineOfSight) {
    using Case = std::tuple<Vec, double, std::string>;
    for (auto const& [pos, gaze, lines] : {Case{Vec{0, 0}, 0, "((l r) 52.5 90)"},
                                           {Vec{0, 0}, 30, "((l r) 60.3 60)"},
                                           {Vec{0, 0}, -100, "((l t) 34.5 -80)"},
                                           {Vec{20, 10}, 123, "((l b) 28.5 57)"},
                                           {Vec{0, -36}, 90, "((l t) 2 90)((l b) 70.1 90)"},
                                           {Vec{0, -36}, 30, "((l r) 60.3 60)((l t) 4 -30)"},
                                           {Vec{54, 0}, 180, "((l l) 106.7 90)((l r) 1.5 90)"},
                                           {Vec{0, -36}, -90, ""}}) {
        EXPECT_EQ(Scene(pos, gaze).seen("l "), lines) << gaze;
    }
}

TEST(Eyes, DistancesFallOnTheKnownSteps) {
    std::string met = " ";
    for (int cm = 480; cm < 6300; ++cm) {
        std::string const seen = text(seenDistance(cm / 100.0, 0.1), ' ');
        if (!met.ends_with(' ' + seen)) met += seen;
    }
    EXPECT_EQ(met, " 5 5.5 6 6.7 7.4 8.2 9 10 11 12.2 13.5 14.9 16.4 18.2 20.1 22.2 24.5 27.1 30 "
                   "33.1 36.6 40.4 44.7 49.4 54.6 60.3 ");
}

TEST(Eyes, NearObjectsTellTheirChanges) {
    Scene s;
    s.world.ball.pos = {18.0, 0.0};
    s.world.ball.vel = {-0.36, 0.0942};
    EXPECT_EQ(s.seen("b"), "((b) 18.2 0 -0.364 0.3)");
    s.me.vel = {-0.001, 0.0}; // the velocity of the world is relative to mine
    s.world.ball.vel = {};
    EXPECT_EQ(s.seen("b"), "((b) 18.2 0 0 0)");
    Player& goalie = s.add(11, {15.0, 5.5});
    goalie.goalie = true;
    goalie.body = toRad(-171.0);
    goalie.neck = toRad(70.0);
    EXPECT_EQ(s.seen("p"), "((p \"Beta\" 1 goalie) 16.4 20 0 -0 -171 -101)");
    s.me.view.quality = Quality::low;
    EXPECT_EQ(s.seen("p"), "((p \"Beta\" 1 goalie) 20)");
    EXPECT_EQ(s.seen("b"), "((b) 0)");
    EXPECT_EQ(s.seen("l "), "((l r) 90)");
}

TEST(Eyes, ObjectsBesideTheConeAreFeltWhenClose) {
    Scene s;
    s.add(5, {-2.0, 0.0});
    s.world.ball.pos = {0.0, -2.0};
    EXPECT_EQ(s.seen("P"), "((P) 2 180)");
    EXPECT_EQ(s.seen("F"), "");
    s.me.view.width = Width::wide; // exactly at the edge of the cone is outside
    EXPECT_EQ(s.seen("B"), "((B) 2 -90)");
    s.me.body = toRad(-1.0);
    EXPECT_EQ(s.seen("b"), "((b) 2 -89 0 0)");
    EXPECT_EQ(Scene({-52.0, 0}).seen("G"), "((G) 0.5 180)");
}

// Recognition fades with distance as a share of many looks.
TEST(Eyes, NamesAndVelocitiesFadeWithDistance) {
    using Case = std::array<double, 3>;
    for (auto const& [distance, number, team] :
         {Case{20, 1, 1}, {30, 0.5, 1}, {40, 0, 0.98}, {50, 0, 0.53}, {62, 0, 0}}) {
        Scene s({-40, 0});
        s.add(14, {-40 + distance, 1.0});
        s.world.ball.pos = {-40 + distance, 0.0};
        constexpr double LOOKS = 2000;
        double numbers = 0, teams = 0, velocities = 0;
        for (int i = 0; i < LOOKS; ++i) {
            if (s.seen("p").starts_with("((p \"Beta\" 4) ")) numbers += 1 / LOOKS;
            if (s.seen("p").starts_with("((p \"Beta\"")) teams += 1 / LOOKS;
            if (std::ranges::count(s.seen("b"), ' ') == 4) velocities += 1 / LOOKS;
        }
        EXPECT_NEAR(numbers, number, 0.05) << distance;
        EXPECT_NEAR(teams, team, 0.05) << distance;
        EXPECT_NEAR(velocities, number, 0.05) << distance; // same range
    }
}

TEST(Eyes, MessageKeepsItsOrder) {
    EXPECT_EQ(Scene({-3, -37}, 29.384).see().substr(0, 60),
              "(see 0 ((f c t) 4.3 16 0 0) ((f r t) 55.7 -26) ((f r b) 90 2");
}

TEST(Body, AnglesAreCutAndTheSpeedDirectionFollowsTheGaze) {
    Scene s;
    s.world.cycle = 11;
    s.me.view = {Width::wide, Quality::low};
    s.me.stamina = 7984.8;
    s.me.effort = 0.869186;
    s.me.neck = toRad(60.0); // becomes 59.99999999999999
    s.me.vel = polar(0.1549, toRad(54.1));
    s.me.counts = {1, 32, 5, 33, 6, 2, 3, 34};
    EXPECT_EQ(s.senseBody(),
              "(sense_body 11 (view_mode low wide) (stamina 7984.8 0.869186) (speed 0.15 -5) "
              "(head_angle 59) (kick 1) (dash 32) (turn 5) (say 33) (turn_neck 6) (catch 2) "
              "(move 3) (change_view 34))");
    s.me.vel = {};
    s.me.neck = toRad(40.0);
    EXPECT_NE(s.senseBody().find("(speed 0 -40)"), std::string::npos);
}
