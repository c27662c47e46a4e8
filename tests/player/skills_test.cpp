#include "skills/SkillPool.h"

#include <gtest/gtest.h>

#include <set>

#include "player/Stage.h"
#include "skills/Utils.h"

namespace {

/// How far the player's body, or its gaze, is off the direction to a point, in degrees.
double errorOf(practice::Player const& p, double direction, practice::Vec point) {
    return std::abs(turned(practice::toDeg((point - p.pos).angle() - direction)));
}

constexpr double KICK_POWER_RATE = 0.027;

Vector2D const NOWHERE = at(1e10, 1e10);

/// The direction, on the pitch, in which the queued kick accelerates the ball.
double kickDirection(Stage& stage) {
    return turned(practice::toDeg(stage.body().body) + stage.number(1));
}

} // namespace

TEST(Facing, BodyAndNeckEndUpThere) {
    Stage stage;
    Draw draw;
    practice::Player const& body = stage.body();
    for (int i = 0; i < 3000; ++i) {
        double const facing = draw(-180, 180);
        stage.put(draw(-30, 30), draw(-30, 30), facing, draw(-90, 90));
        bool const neckOnly = i % 3 == 0;
        double const direction = facing + (neckOnly ? draw(-88, 88) : draw(-180, 180));
        practice::Vec const point =
            body.pos + practice::polar(draw(1, 40), practice::toRad(direction));
        Vector2D const target = at(point.x, point.y);
        stage.perceive();
        double const before = errorOf(body, body.body, point);
        double const gazeBefore = errorOf(body, body.gaze(), point);
        EXPECT_TRUE(neckOnly     ? SkillPool::faceOnlyNeckToPoint(target)
                    : i % 3 == 1 ? SkillPool::faceOnlyBodyToPoint(target)
                                 : SkillPool::faceNeckAndBodyToPoint(target));
        EXPECT_EQ(stage.mainCommand().empty(), neckOnly || before < 5.0) << before;
        stage.perform();
        // The server turns a tenth more or less.
        double const noise = before < 5.0 || neckOnly ? before : 0.1 * before;
        EXPECT_LE(errorOf(body, body.body, point), noise + 0.1);
        double const gaze = errorOf(body, body.gaze(), point);
        double const allowed = neckOnly     ? (gazeBefore < 2.0 ? 2.0 : 0.01)
                               : i % 3 == 1 ? 180.0
                                            : 0.1 * before + 2.1;
        EXPECT_LE(gaze, allowed);
    }
    stage.perceive();
    EXPECT_FALSE(SkillPool::faceNeckAndBodyToPoint(NOWHERE));
    SkillPool::faceNeckToPoint(at(5, 5)); // does nothing
    EXPECT_TRUE(stage.allCommands().empty());
}

TEST(Facing, ScansTheWholeFieldWithTheNeck) {
    Stage stage;
    stage.put(0, 0, 75);
    std::set<long> seen;
    for (int i = 0; i < 10; ++i) {
        stage.perceive();
        SkillPool::scanFieldWithNeck();
        stage.perform();
        seen.insert(std::lround(practice::toDeg(stage.body().neck)));
    }
    EXPECT_EQ(seen, (std::set<long>{-90, -45, 0, 45, 90}));
}

TEST(Going, SmallPrint) {
    struct Case {
        double x, degrees; // of the target, to the left of the body
        float stamina;
        char const* command;
    };
    for (Case const& c :
         {Case{0.99, 0, 8000, ""}, Case{1, 0, 8000, "(dash 100.000000)"}, Case{9, 0, 2500.7F, ""},
          Case{9, 0, 2550.9F, "(dash 50.000000)"}, Case{9, 7.9, 8000, "(dash 100.000000)"},
          Case{9, 8.1, 8000, "(turn -8.100000)"}}) {
        Stage stage;
        stage.put(0, 0, 0);
        stage.perceive();
        stage.world.myself().bodyInfo.stamina = c.stamina;
        practice::Vec const target = practice::polar(c.x, practice::toRad(-c.degrees));
        EXPECT_EQ(SkillPool::goToPoint(at(target.x, target.y), 1, 100), c.x < 1);
        EXPECT_EQ(stage.mainCommand().substr(0, 10), std::string(c.command).substr(0, 10));
    }
}

TEST(Going, ToTheBall) {
    struct Case {
        double x, vy;
        bool forCatch, arrived;
        char const* word;
    };
    // The body looks 6 degrees past the ball: straight at it is a dash, ahead of it is a turn.
    for (Case const& c : {Case{0.79, 0, false, true, ""}, Case{0.8, 0, false, false, "dash"},
                          Case{1.79, 0, true, true, ""}, Case{1.8, 0, true, false, "dash"},
                          Case{3, 0.149, false, false, "dash"}, Case{3, 0.15, false, false, "turn"},
                          Case{3, -0.15, false, false, "dash"}, Case{1e10, 0, false, false, ""}}) {
        Stage stage;
        stage.show(0, 0, -6, c.x, 0, 0, c.vy);
        EXPECT_EQ(SkillPool::getBall(100, c.forCatch, WALK_TO_BALL), c.arrived) << c.x;
        EXPECT_EQ(stage.word(), c.word) << c.x << ' ' << c.vy;
    }
}

TEST(Kicking, GivesTheBallTheMotionAskedFor) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        bool const fastest = i % 5 == 0;
        practice::Vec const rel = practice::polar(draw(0.4, 1.0), draw(-3.1, 3.1));
        practice::Vec const me{draw(-30, 30), draw(-30, 30)};
        practice::Vec const motion{draw(-1, 1), draw(-1, 1)};
        practice::Vec const target{draw(-50, 50), draw(-30, 30)};
        stage.show(me.x, me.y, draw(-180, 180), me.x + rel.x, me.y + rel.y, motion.x, motion.y);
        SkillPool::kickToPoint(at(target.x, target.y), 60, fastest);

        // The rate is taken by the ball's bearing on the pitch, not from the body.
        double const rate = 1 - 0.25 * std::abs(rel.angle()) / practice::toRad(180) -
                            0.25 * (rel.length() - 0.385) / 0.7;
        practice::Vec const got = practice::polar(stage.number(0) * rate * KICK_POWER_RATE,
                                                  practice::toRad(kickDirection(stage)));
        practice::Vec const wanted =
            practice::polar(rate * (fastest ? 200 : 60) * KICK_POWER_RATE, (target - me).angle()) -
            motion * 0.94;
        EXPECT_NEAR(got.x, wanted.x, 2e-3);
        EXPECT_NEAR(got.y, wanted.y, 2e-3);
    }
}

TEST(Kicking, PassesArriveAtTheSpeedAskedFor) {
    Stage stage;
    Draw draw;
    constexpr int PASSES = 200;
    double meanSpeed = 0;
    for (int i = 0; i < PASSES; ++i) {
        practice::Vec const target = practice::polar(12, draw(-1.5, 1.5));
        stage.show(0, 0, 0, 0.5, 0);
        EXPECT_TRUE(SkillPool::passBallToPos(at(target.x, target.y), 1.0F));
        stage.perform();
        stage.put(0, 33, 0); // out of the way
        double nearest = 12;
        double now = nearest;
        while (now <= nearest) {
            nearest = now;
            stage.perform();
            now = distance(stage.pitch.ball.pos, target);
        }
        EXPECT_LT(nearest, 2.5);
        meanSpeed += stage.pitch.ball.vel.length() / PASSES;
    }
    EXPECT_NEAR(meanSpeed, 0.94, 0.08); // one cycle past the target
    // The ball's own motion counts in full for the power and decayed for the kick.
    stage.show(0, 0, 0, 0.385, 0, 0.5);
    EXPECT_TRUE(SkillPool::passBallToPos(at(12, 0), 1.0F));
    EXPECT_NEAR(stage.number(0),
                (Utils::calcKickSpeedToTravel(12, 1) - 0.5 - 0.5 * 0.94) / KICK_POWER_RATE, 0.01);
    stage.show(0, 0, 0, 2, 2);
    EXPECT_FALSE(SkillPool::passBallToPos(at(9, 9), 1.0F));
    EXPECT_FALSE(SkillPool::scoreGoal());
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, ShotsAimInsideThePosts) {
    constexpr double UNKNOWN = 99;
    struct Case {
        double x, y, goalieY, aim;
    };
    // Unknown goalkeeper: the nearer corner; known: the one farther from it. Steeper shots aim
    // farther towards the side the goal lies on.
    for (Case const& c :
         {Case{40, 0, UNKNOWN, 5.51}, Case{40, -3, UNKNOWN, -5.51}, Case{40, 3, UNKNOWN, 5.51},
          Case{40, 0, 3, -5.51}, Case{40, 0, -3, 5.51}, Case{40, 0, 0, 5.51},
          Case{50, -5, UNKNOWN, -3.51}, Case{50, 5, UNKNOWN, 3.51}, Case{51, -5, UNKNOWN, -1.51},
          Case{51.5, 5, UNKNOWN, -2.49}}) {
        Stage stage;
        if (c.goalieY != UNKNOWN) stage.addOpponent(1, 50, static_cast<float>(c.goalieY), true);
        stage.show(c.x, c.y, 0, c.x + 0.4, c.y);
        EXPECT_TRUE(SkillPool::scoreGoal());
        double const direction = practice::toDeg(std::atan2(c.aim - c.y, 52 - c.x));
        EXPECT_NEAR(kickDirection(stage), direction, 0.01) << c.x << ' ' << c.y;
        EXPECT_NEAR(stage.number(0), 200, 0.01);
    }
    Stage stage;
    stage.show(53, 5, 0, 53.4, 5); // their goal lies behind
    EXPECT_TRUE(SkillPool::scoreGoal());
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, ClearsAndDribbles) {
    struct Case {
        double x, y;
        bool toSide;
        double targetX, targetY;
    };
    for (Case const& c :
         {Case{14.9, 0, false, 52.5, -29}, Case{14.9, 1, false, 52.5, 29},
          Case{15, 9, false, 52, 0}, Case{3, 0, true, 3, 32}, Case{3, -1, true, 3, -32}}) {
        Stage stage;
        stage.show(c.x - 0.4, c.y, 0, c.x, c.y);
        SkillPool::kickAway(c.toSide);
        double const direction = std::atan2(c.targetY - c.y, c.targetX - (c.x - 0.4));
        EXPECT_NEAR(kickDirection(stage), practice::toDeg(direction), 0.05) << c.x << ' ' << c.y;
        EXPECT_NEAR(stage.number(0), 100, 0.01);
    }
    Stage stage;
    stage.show(0, 0, 0, 0.4, 0);
    EXPECT_TRUE(SkillPool::simpleDribbleToPoint(at(14.9, 0), 100));
    EXPECT_NEAR(stage.number(0), 30, 0.01);
    stage.show(0, 0, 0, 5, 0);
    EXPECT_TRUE(SkillPool::simpleDribbleToPoint(at(40, 0), 70));
}

TEST(Kicking, StopsTheBall) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 200; ++i) {
        practice::Vec const rel = practice::polar(draw(0.45, 0.9), draw(-3.1, 3.1));
        practice::Vec const motion = practice::polar(draw(0.5, 0.7), draw(-3.1, 3.1));
        stage.show(0, 0, draw(-180, 180), rel.x, rel.y, motion.x, motion.y);
        EXPECT_TRUE(SkillPool::stopBall());
        practice::kick(stage.pitch, stage.body(), stage.number(0), stage.number(1), stage.random);
        EXPECT_LT((stage.pitch.ball.vel + stage.pitch.ball.acc).length(), 0.15);
    }
    stage.show(0, 0, 0, 0.385, 0, 0.40); // worth a power just below 15
    EXPECT_FALSE(SkillPool::stopBall());
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, KnowsWhichBallToStop) {
    struct Case {
        double direction, offLine, speed; // degrees, of the ball's way and of its line past me
        bool stop;
    };
    for (Case const& c : {Case{0, 0, 1.5, false}, Case{119, 0, 1.5, false}, Case{121, 0, 1.5, true},
                          Case{-121, 0, 1.5, true}, Case{0, 59, 1.5, false}, Case{0, 61, 1.5, true},
                          Case{0, -61, 1.0, true}, Case{0, 180, 0.99, false}}) {
        Stage stage;
        practice::Vec const motion = practice::polar(c.speed, practice::toRad(c.direction));
        practice::Vec const ball =
            practice::polar(1, practice::toRad(c.direction + 180 + c.offLine));
        stage.show(0, 0, 0, ball.x, ball.y, motion.x, motion.y);
        EXPECT_EQ(SkillPool::shouldStopBall(), c.stop) << c.direction << ' ' << c.offLine;
    }
}

TEST(Catching, ReachesTheBallBeforeIt) {
    Stage stage(1, true);
    Draw draw;
    for (int i = 0; i < 500; ++i) {
        double const facing = draw(-180, 180);
        practice::Vec const rel =
            practice::polar(draw(0.5, 1.19), practice::toRad(facing + draw(-90, 90)));
        stage.show(-45, 0, facing, -45 + rel.x, rel.y);
        EXPECT_TRUE(SkillPool::catchBall());
        stage.perform();
        EXPECT_TRUE(stage.caught);
    }
    stage.show(-45, 0, 0, -43.79, 0);
    EXPECT_FALSE(SkillPool::catchBall());
    EXPECT_EQ(stage.mainCommand(), "");
}
