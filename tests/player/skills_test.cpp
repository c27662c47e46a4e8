#include <algorithm>
#include <gtest/gtest.h>

#include "config/ConfigFile.h"
#include "skills/SkillPool.h"
#include "skills/Utils.h"
#include "tests/player/Stage.h"

namespace {

// Apart from the power near the target, and no whole number.
[[maybe_unused]] double const FAR_DRIBBLE = ConfigFile::dribbleKickPower = 60.5;

double bearing(practice::Vec from, practice::Vec to) {
    return practice::toDeg((to - from).angle());
}

/// A player and the ball somewhere in motion; returns the player.
practice::Player const& scatter(Stage& stage, Draw& draw) {
    stage.put(draw(-30, 30), draw(-30, 30), draw(-180, 180), draw(-90, 90));
    stage.body().vel = practice::polar(draw(0, 0.4), draw(-3.1, 3.1));
    practice::Vec const ball =
        stage.body().pos + practice::polar(draw(0.4, 1.05), draw(-3.14, 3.14));
    stage.putBall(ball.x, ball.y, draw(-1, 1), draw(-1, 1));
    return stage.body();
}

/// The share of its power that a kick has when the ball lies so.
double rate(practice::Vec ball, double angle) {
    return 1 - std::abs(turned(angle)) / 720 - (ball.length() - 0.385) / 2.8;
}

/// The acceleration that the queued kick gives the ball, if the rate is this.
practice::Vec acceleration(Stage& stage, double kickRate) {
    return practice::polar(stage.number(0) * kickRate * 0.027,
                           stage.body().body + practice::toRad(stage.number(1)));
}

/// The queued kick must leave the ball the motion that one of this power gives a resting ball.
void expectKick(Stage& stage, practice::Vec target, double power) {
    practice::Vec const rel = stage.pitch.ball.pos - stage.body().pos;
    // By the ball's bearing on the pitch, not from the body.
    double const r = rate(rel, practice::toDeg(rel.angle()));
    practice::Vec const got = acceleration(stage, r) + stage.pitch.ball.vel * 0.94;
    practice::Vec const wanted =
        practice::polar(r * power * 0.027, (target - stage.body().pos).angle());
    EXPECT_LT(distance(got, wanted), 4e-3) << target.x << ' ' << target.y << ' ' << power;
}

} // namespace

TEST(Facing, TurnsBodyAndNeckByWhatIsMissing) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 6000; ++i) {
        practice::Player const& me = scatter(stage, draw);
        double const neck = practice::toDeg(me.neck);
        double const off = draw(-180, 180) * (i % 2 == 0 ? 1 : 0.1);
        practice::Vec const point = me.pos + practice::polar(20, me.body + practice::toRad(off));
        stage.perceive();
        auto const face = i % 3 == 0   ? SkillPool::faceOnlyNeckToPoint
                          : i % 3 == 1 ? SkillPool::faceOnlyBodyToPoint
                                       : SkillPool::faceNeckAndBodyToPoint;
        EXPECT_TRUE(face(at(point.x, point.y)));
        double const inertia = 1 + 5.0 * 0.4 * me.vel.length();
        bool const turns = i % 3 != 0 && std::abs(off) >= 5;
        double const moment = turns ? std::clamp(off * inertia, -180.0, 180.0) : 0;
        EXPECT_EQ(stage.word(), turns ? "turn" : "");
        EXPECT_TRUE(!turns || std::abs(stage.number(0) - moment) < 0.01);

        double missing = turned(off - neck - moment / inertia);
        if (std::abs(missing + neck) > 240) missing -= std::copysign(360, missing);
        bool const turnsNeck = i % 3 != 1 && std::abs(missing) >= 2;
        ASSERT_EQ(stage.otherCommands().size(), turnsNeck) << missing;
        if (turnsNeck && std::abs(std::abs(missing) - 180) > 0.1) {
            EXPECT_NEAR(numbersIn(stage.otherCommands()[0])[0], missing, 0.01);
        }
        stage.startCycle();
        SkillPool::scanFieldWithNeck(); // the way the numbers of the neck grow, up to its bound
        EXPECT_EQ(numbersIn(stage.otherCommands()[0])[0], neck < 45 ? 45 : -180);
    }
    stage.startCycle();
    EXPECT_FALSE(SkillPool::faceNeckAndBodyToPoint(at(1e10, 1e10)));
    EXPECT_TRUE(stage.allCommands().empty());
}

TEST(Going, TurnsOrDashesFromWhereItWillBe) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 6000; ++i) {
        practice::Player const& me = scatter(stage, draw);
        practice::Vec const next = me.pos + me.vel * 2.5;
        double const power = i % 2 == 0 ? 99.5 : -99.5;
        double const heading = practice::toDeg(me.body) + (power < 0 ? 180 : 0);
        practice::Vec const target =
            next + practice::polar(draw(0.5, 9), practice::toRad(heading + draw(-24, 24)));
        stage.perceive();
        float const stamina = stage.world.myself().bodyInfo.stamina = draw.real(1000, 3000);
        bool const there = distance(me.pos, target) < 1;
        EXPECT_EQ(SkillPool::goToPoint(at(target.x, target.y), 1, static_cast<float>(power)),
                  there);
        double const turn = turned(bearing(next, target) - heading);
        double const spare = stamina - (power > 0 ? 2500 : 1250);
        double const dash = std::trunc(std::clamp(spare, 0.0, 99.5));
        if (there || (std::abs(turn) <= 8 && dash == 0)) {
            EXPECT_EQ(stage.mainCommand(), "") << spare;
        } else if (std::abs(turn) <= 8) {
            EXPECT_EQ(stage.word(), "dash") << turn;
            EXPECT_EQ(stage.number(0), std::copysign(dash, power));
        } else {
            EXPECT_EQ(stage.word(), "turn") << turn;
            EXPECT_NEAR(stage.number(0), turn * (1 + 5 * me.vel.length()), 0.01);
        }
    }
}

TEST(Going, ToTheBallOrWhereItCanBeMet) {
    Stage stage;
    Draw draw;
    int met = 0;
    for (int i = 0; i < 3000; ++i) {
        bool const forCatch = i % 2 == 0;
        float const reach = forCatch ? 1.8F : 0.8F;
        double const speed = i % 5 == 0 ? 0.149 : i % 5 == 1 ? 0.15 : draw(0.15, 2);
        practice::Vec const motion = practice::polar(speed, i % 5 == 1 ? 0 : draw(-3, 3));
        stage.show(0, 0, 0, i % 7 == 0 ? static_cast<double>(reach) : draw(0.7, 6),
                   i % 7 == 0 ? 0 : draw(-3, 3), motion.x, motion.y);
        Vector2D point;
        int cycles = 0;
        bool const meets = speed >= 0.15 && stage.world.interceptionPoint(stage.world.myself(),
                                                                          point, cycles, forCatch);
        if (!meets) point = stage.world.ball().position;
        bool const near = stage.world.ball().position.getLength() < reach;
        bool const arrived = near || SkillPool::goToPoint(point, reach, 100);
        std::string const expected = near ? "" : stage.mainCommand();
        stage.startCycle();
        EXPECT_EQ(SkillPool::getBall(100, forCatch, WALK_TO_BALL), arrived);
        EXPECT_EQ(stage.mainCommand(), expected) << motion.x << ' ' << motion.y;
        met += meets;
    }
    EXPECT_GT(met, 1000);
    stage.world.ball().position.y = UNDEFINED_FLOAT;
    stage.startCycle();
    EXPECT_FALSE(SkillPool::getBall(100, false, WALK_TO_BALL));
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Going, ReachesABallThatOneDashIsEnoughFor) {
    Stage stage;
    Draw draw;
    int dashes = 0;
    for (int i = 0; i < 1000; ++i) {
        practice::Player const& me = scatter(stage, draw);
        stage.perceive();
        stage.world.myself().bodyInfo.effort = 0.8F;
        practice::Vec const way =
            stage.pitch.ball.pos + stage.pitch.ball.vel - me.pos - me.vel * 2.5;
        double const power = dot(way, practice::polar(1, me.body)) / (0.8 * 0.006);
        bool const possible = std::abs(power) <= 100;
        EXPECT_EQ(SkillPool::interceptClose(), possible) << power;
        EXPECT_EQ(std::abs(stage.number(0) - power) < 0.05, possible); // no number, no dash
        dashes += possible;
    }
    EXPECT_GT(dashes, 100);
}

TEST(Kicking, KicksDribblesAndClears) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 3000; ++i) {
        practice::Player const& me = scatter(stage, draw);
        bool const clears = i % 4 > 1;
        if (clears) { // whole metres, so as to meet the limits
            stage.pitch.ball.pos = {std::rint(draw(12, 18)), std::rint(draw(-2, 2))};
            stage.body().pos = stage.pitch.ball.pos + practice::Vec{-0.6, 0.25};
        }
        auto const [x, y] = stage.pitch.ball.pos;
        practice::Vec target = me.pos + practice::polar(std::rint(draw(26, 34)) / 2, draw(-3, 3));
        Vector2D const point = at(target.x, target.y);
        stage.perceive();
        double power = 100;
        if (clears) {
            SkillPool::kickAway(i % 4 == 2);
            target = {52.5, y > 0 ? 29.0 : -29.0};
            if (i % 4 == 2) target = {x, y < 0 ? -32.0 : 32.0};
            if (i % 4 == 3 && x >= 15) target = {52, 0};
        } else if (i % 4 == 1) {
            SkillPool::kickToPoint(point, 60, i % 8 == 1);
            power = i % 8 == 1 ? 200 : 60;
        } else {
            EXPECT_TRUE(SkillPool::simpleDribbleToPoint(point, 100));
            power = point.getDistanceTo(stage.world.myself().position) < 15.0F ? 30 : 60;
        }
        expectKick(stage, target, power);
    }
    stage.show(0, 0, 0, 5, 0);
    EXPECT_TRUE(SkillPool::simpleDribbleToPoint(at(40, 0), 70));
    EXPECT_EQ(stage.mainCommand(), "(dash 70.000000)");
}

TEST(Kicking, PassesAndStops) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 3000; ++i) {
        practice::Player const& me = scatter(stage, draw);
        practice::Movable& ball = stage.pitch.ball;
        ball.vel *= 0.5;
        stage.perceive();
        practice::Vec const rel = ball.pos - me.pos;
        double const r = rate(rel, practice::toDeg(rel.angle() - me.body));
        double const length = draw(1, 40);
        practice::Vec const target = me.pos + practice::polar(length, draw(-3.1, 3.1));
        EXPECT_TRUE(SkillPool::passBallToPos(at(target.x, target.y), 1.2F));
        double const speed = Utils::calcKickSpeedToTravel(static_cast<float>(length), 1.2F);
        // The motion on the way counts in full for the power.
        practice::Vec const change = practice::polar(speed, (target - me.pos).angle()) - ball.vel;
        expectKick(stage, target, change.length() / r / 0.027);

        stage.startCycle();
        practice::Vec const motion = ball.vel - me.vel * 2.5;
        bool const fast = motion.length() / r / 0.027 > 15;
        EXPECT_EQ(SkillPool::stopBall(), fast);
        EXPECT_EQ((acceleration(stage, r) + motion).length() < 2e-3, fast); // no number, no kick
    }
    stage.show(0, 0, 0, 2, 2); // out of reach
    EXPECT_FALSE(SkillPool::passBallToPos(at(9, 9), 1.0F) || SkillPool::scoreGoal() ||
                 SkillPool::stopBall());
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, ShotsAimInsideThePosts) {
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        Stage stage;
        bool const straight = i % 10 == 0;
        double const angle = i % 10 == 1 ? 90 : straight ? 0 : draw(-89.9, 89.9);
        practice::Vec const goal{52, 0};
        practice::Vec const me = goal - practice::polar(draw(3, 20), practice::toRad(angle));
        practice::Vec const keeper{draw(45, 51), straight ? 0 : draw(-7, 7)};
        bool const known = i % 3 != 0;
        if (known) {
            stage.addOpponent(1, static_cast<float>(keeper.x), static_cast<float>(keeper.y), true);
        }
        stage.show(me.x, me.y, draw(-180, 180), me.x - 0.3, me.y + 0.4, 0.1, 0.2);

        double const steep = std::abs(angle);
        double const beside = steep < 60 ? 0 : steep < 75 ? 2 : steep < 82.5 ? 4 : 8;
        // How far the goalkeeper is off the line to a post; unknown, the nearer corner is taken.
        auto const off = [&](double post) {
            practice::Vec const way = practice::Vec{52, post} - me;
            practice::Vec const to = keeper - me;
            return known ? std::abs(way.x * to.y - way.y * to.x) / way.length() : -way.length();
        };
        if (!straight && std::abs(off(-7.01) - off(7.01)) < 0.01) continue;
        double const post = straight || off(7.01) > off(-7.01) ? 5.51 : -5.51;
        EXPECT_TRUE(SkillPool::scoreGoal());
        expectKick(stage, {52, post + std::copysign(beside, angle)}, 200);
    }
    Stage stage;
    stage.show(53, 5, 0, 53.4, 5); // their goal lies behind
    EXPECT_TRUE(SkillPool::scoreGoal());
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, KnowsWhichBallToStop) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        practice::Vec const motion =
            i % 9 == 0 ? practice::Vec{-1, 0} : practice::polar(draw(0.9, 1.3), draw(-3.1, 3.1));
        practice::Vec const ball = practice::polar(1, draw(-3.1, 3.1));
        stage.show(0, 0, 0, ball.x, ball.y, motion.x, motion.y);
        double const way = practice::toDeg(motion.angle());
        bool const comes = std::abs(way) < 120 && std::abs(turned(way - bearing(ball, {}))) < 60;
        EXPECT_EQ(SkillPool::shouldStopBall(), !comes && motion.length() >= 1) << way;
    }
}

TEST(Catching, ReachesTheBallBeforeIt) {
    Stage stage(1, true);
    Draw draw;
    for (int i = 0; i < 500; ++i) {
        double const facing = draw(-180, 180);
        double const gap = draw(0.5, 1.3);
        practice::Vec const rel = practice::polar(gap, practice::toRad(facing + draw(-90, 90)));
        stage.show(0, 0, facing, rel.x, rel.y);
        EXPECT_EQ(SkillPool::catchBall(), gap <= 1.2);
        EXPECT_EQ(stage.mainCommand().empty(), gap > 1.2);
        stage.caught = false;
        stage.perform();
        EXPECT_EQ(stage.caught, gap <= 1.2);
    }
}
