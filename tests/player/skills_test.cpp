#include "skills/SkillPool.h"

#include <gtest/gtest.h>

#include <set>

#include "Stage.h"
#include "skills/Utils.h"

namespace {

/// How far the player's body, or its gaze, is off the direction to a point, in degrees.
double errorOf(practice::Player const& p, double direction, double x, double y) {
    return std::abs(turned(practice::toDeg((practice::Vec{x, y} - p.pos).angle() - direction)));
}
double bodyError(practice::Player const& p, double x, double y) {
    return errorOf(p, p.body, x, y);
}
double gazeError(practice::Player const& p, double x, double y) {
    return errorOf(p, p.gaze(), x, y);
}

Vector2D at(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y), CARTESIAN};
}

constexpr double KICK_POWER_RATE = 0.027;

Vector2D const NOWHERE = at(1e10, 1e10);

/// The direction, on the pitch, in which the queued kick accelerates the ball.
double kickDirection(Stage& stage) {
    std::vector<double> const kick = numbersIn(stage.mainCommand());
    return kick.size() == 2 ? turned(practice::toDeg(stage.body().body) + kick[1]) : NAN;
}
double kickPower(Stage const& stage) {
    std::vector<double> const kick = numbersIn(stage.mainCommand());
    return kick.size() == 2 ? kick[0] : NAN;
}

/// The agent with the ball at its foot, facing their goal.
void atTheBall(Stage& stage, double x, double y) {
    stage.put(x, y, 0);
    stage.putBall(x + 0.4, y);
    stage.perceive();
}

} // namespace

TEST(Facing, BodyAndNeckEndUpThere) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        stage.put(draw(-50, 50), draw(-30, 30), draw(-180, 180), draw(-90, 90));
        double const x = draw(-50, 50);
        double const y = draw(-30, 30);
        stage.perceive();
        double const before = bodyError(stage.body(), x, y);
        bool const both = i % 2 == 0;
        EXPECT_TRUE(both ? SkillPool::faceNeckAndBodyToPoint(at(x, y))
                         : SkillPool::faceOnlyBodyToPoint(at(x, y)));
        EXPECT_EQ(stage.mainCommand().empty(), before < 5.0) << before;
        stage.perform();
        // The server turns a tenth more or less.
        double const noise = before < 5.0 ? before : 0.1 * before;
        EXPECT_LE(bodyError(stage.body(), x, y), noise + 0.1);
        double const gaze = gazeError(stage.body(), x, y);
        EXPECT_TRUE(!both || gaze <= 0.1 * before + 2.1) << gaze;
    }
}

TEST(Facing, NeckAloneFindsWhatItCanReach) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        double const body = draw(-180, 180);
        stage.put(0, 0, body, draw(-90, 90));
        practice::Vec const point = practice::polar(20, practice::toRad(body + draw(-88, 88)));
        stage.perceive();
        double const before = gazeError(stage.body(), point.x, point.y);
        EXPECT_TRUE(SkillPool::faceOnlyNeckToPoint(at(point.x, point.y)));
        EXPECT_EQ(stage.allCommands().empty(), before < 2.0);
        stage.perform();
        EXPECT_LE(gazeError(stage.body(), point.x, point.y), before < 2.0 ? 2.0 : 0.01);
    }
    stage.perceive();
    EXPECT_FALSE(SkillPool::faceNeckAndBodyToPoint(NOWHERE));
    SkillPool::faceNeckToPoint(at(5, 5));
    SkillPool::faceNeckToBall();
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
    stage.perceive();
    SkillPool::scanFieldWithBody();
    EXPECT_EQ(stage.mainCommand(), "(turn 45.000000)");
}

TEST(Going, ArrivesForwardsAndBackwards) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 200; ++i) {
        double const power = i % 2 == 0 ? 100 : -100;
        stage.put(draw(-12, 12), draw(-12, 12), draw(-180, 180));
        stage.body().stamina = 8000;
        stage.putBall(0, 33);
        double const x = draw(-12, 12);
        double const y = draw(-12, 12);
        int cycles = 0;
        for (bool arrived = false; !arrived && cycles < 100; ++cycles) {
            stage.perceive();
            arrived = SkillPool::goToPoint(at(x, y), 1.0F, static_cast<float>(power));
            if (wordOf(stage.mainCommand()) == "dash") {
                EXPECT_GT(numbersIn(stage.mainCommand())[0] * power, 0);
            }
            stage.perform();
        }
        EXPECT_LT(cycles, 90);
        EXPECT_LT(distance(stage.body().pos, {x, y}), 2.0);
    }
}

TEST(Going, SmallPrint) {
    Stage stage;
    stage.put(0, 0, 0);
    stage.perceive();
    EXPECT_TRUE(SkillPool::goToPoint(at(0.99, 0), 1, 100));
    EXPECT_EQ(stage.mainCommand(), "");
    EXPECT_FALSE(SkillPool::goToPoint(at(1, 0), 1, 100));
    EXPECT_EQ(stage.mainCommand(), "(dash 100.000000)");
    for (auto const& [above, dash] : {std::pair(0.7F, ""), std::pair(50.9F, "(dash 50.000000)")}) {
        stage.perceive();
        stage.world.myself().bodyInfo.stamina = 2500 + above;
        EXPECT_FALSE(SkillPool::goToPoint(at(9, 0), 1, 100));
        EXPECT_EQ(stage.mainCommand(), dash);
    }
    // Up to eight degrees off it runs, beyond it turns.
    for (auto const& [degrees, word] : {std::pair(7.9, "dash"), std::pair(8.1, "turn")}) {
        stage.perceive();
        practice::Vec const target = practice::polar(20, practice::toRad(-degrees));
        SkillPool::goToPoint(at(target.x, target.y), 1, 100);
        EXPECT_EQ(wordOf(stage.mainCommand()), word);
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
        stage.put(0, 0, -6);
        stage.putBall(c.x, 0, 0, c.vy);
        stage.perceive();
        EXPECT_EQ(SkillPool::getBall(100, c.forCatch, WALK_TO_BALL), c.arrived) << c.x;
        EXPECT_EQ(wordOf(stage.mainCommand()), c.word) << c.x << ' ' << c.vy;
    }
    Stage stage;
    stage.put(0, 0, 130);
    practice::Vec const near = practice::polar(0.5, practice::toRad(130));
    stage.putBall(near.x, near.y);
    stage.perceive();
    EXPECT_TRUE(SkillPool::interceptClose());
    EXPECT_NEAR(numbersIn(stage.mainCommand())[0], 0.5 / 0.006, 0.1);
    stage.putBall(2 * near.x, 2 * near.y);
    stage.perceive();
    EXPECT_FALSE(SkillPool::interceptClose()); // more power than there is
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, GivesTheBallTheMotionAskedFor) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 2000; ++i) {
        bool const fastest = i % 5 == 0;
        practice::Vec const rel = practice::polar(draw(0.4, 1.0), draw(-3.1, 3.1));
        stage.put(draw(-30, 30), draw(-30, 30), draw(-180, 180));
        practice::Vec const me = stage.body().pos;
        practice::Vec const motion{draw(-1, 1), draw(-1, 1)};
        stage.putBall(me.x + rel.x, me.y + rel.y, motion.x, motion.y);
        practice::Vec const target = {draw(-50, 50), draw(-30, 30)};
        stage.perceive();
        SkillPool::kickToPoint(at(target.x, target.y), 60, fastest);

        // The rate is taken by the ball's bearing on the pitch, not from the body.
        double const rate = 1 - 0.25 * std::abs(rel.angle()) / practice::toRad(180) -
                            0.25 * (rel.length() - 0.385) / 0.7;
        double const strength = kickPower(stage) * rate * KICK_POWER_RATE;
        practice::Vec const got = practice::polar(strength, practice::toRad(kickDirection(stage)));
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
        stage.put(0, 0, 0);
        stage.putBall(0.5, 0);
        practice::Vec const target = practice::polar(12, draw(-1.5, 1.5));
        stage.perceive();
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
    stage.putBall(2, 2);
    stage.perceive();
    EXPECT_FALSE(SkillPool::passBallToPos(at(9, 9), 1.0F));
    EXPECT_FALSE(SkillPool::scoreGoal());
    EXPECT_EQ(stage.mainCommand(), "");
}

TEST(Kicking, ShotsAimInsideThePosts) {
    struct Case {
        double x, y;
        std::vector<double> goalie;
        double aim;
    };
    // Unknown goalkeeper: the nearer corner; known: the one farther from it. Steeper shots aim
    // farther towards the side the goal lies on.
    for (Case const& c :
         {Case{40, 0, {}, 5.51}, Case{40, -3, {}, -5.51}, Case{40, 3, {}, 5.51},
          Case{40, 0, {50, 3}, -5.51}, Case{40, 0, {50, -3}, 5.51}, Case{40, 0, {50, 0}, 5.51},
          Case{50, -5, {}, -3.51}, Case{50, 5, {}, 3.51}, Case{51, -5, {}, -1.51},
          Case{51.5, 5, {}, -2.49}}) {
        Stage stage;
        if (!c.goalie.empty()) {
            stage.addOpponent(1, static_cast<float>(c.goalie[0]), static_cast<float>(c.goalie[1]),
                              true);
        }
        atTheBall(stage, c.x, c.y);
        EXPECT_TRUE(SkillPool::scoreGoal());
        double const direction = practice::toDeg(std::atan2(c.aim - c.y, 52 - c.x));
        EXPECT_NEAR(kickDirection(stage), direction, 0.01) << c.x << ' ' << c.y;
        EXPECT_NEAR(kickPower(stage), 200, 0.01);
    }
    Stage stage;
    atTheBall(stage, 53, 5); // their goal lies behind
    EXPECT_TRUE(SkillPool::scoreGoal());
    EXPECT_EQ(stage.mainCommand(), "");
    for (auto const& [angle, offset] :
         {std::pair(59.9F, 0.0F), std::pair(60.0F, 2.0F), std::pair(-74.9F, -2.0F),
          std::pair(75.0F, 4.0F), std::pair(-80.0F, -4.0F), std::pair(82.5F, 8.0F),
          std::pair(-90.0F, -8.0F)}) {
        EXPECT_EQ(calcAngleOffset(angle), offset) << angle;
    }
    EXPECT_TRUE(std::isnan(calcAngleOffset(90.1F)));
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
        stage.put(c.x - 0.4, c.y, 0);
        stage.putBall(c.x, c.y);
        stage.perceive();
        SkillPool::kickAway(c.toSide);
        double const direction = std::atan2(c.targetY - c.y, c.targetX - (c.x - 0.4));
        EXPECT_NEAR(kickDirection(stage), practice::toDeg(direction), 0.05) << c.x << ' ' << c.y;
        EXPECT_NEAR(kickPower(stage), 100, 0.01);
    }
    Stage stage;
    atTheBall(stage, 0, 0);
    EXPECT_TRUE(SkillPool::simpleDribbleToPoint(at(14.9, 0), 100));
    EXPECT_NEAR(kickPower(stage), 30, 0.01);
    stage.putBall(5, 0);
    stage.perceive();
    EXPECT_TRUE(SkillPool::simpleDribbleToPoint(at(40, 0), 70));
    EXPECT_EQ(stage.mainCommand(), "(dash 70.000000)");
    stage.world.ball().position = NOWHERE;
    EXPECT_FALSE(SkillPool::simpleDribbleToPoint(at(40, 0), 70));
}

TEST(Kicking, StopsTheBall) {
    Stage stage;
    Draw draw;
    for (int i = 0; i < 200; ++i) {
        practice::Vec const rel = practice::polar(draw(0.45, 0.9), draw(-3.1, 3.1));
        practice::Vec const motion = practice::polar(draw(0.5, 0.7), draw(-3.1, 3.1));
        stage.put(0, 0, draw(-180, 180));
        stage.putBall(rel.x, rel.y, motion.x, motion.y);
        stage.perceive();
        EXPECT_TRUE(SkillPool::stopBall());
        std::vector<double> const kick = numbersIn(stage.mainCommand());
        practice::kick(stage.pitch, stage.body(), kick[0], kick[1], stage.random);
        EXPECT_LT((stage.pitch.ball.vel + stage.pitch.ball.acc).length(), 0.15);
    }
    for (double const speed : {0.0, 0.40}) { // of no power, of a power just below 15
        stage.put(0, 0, 0);
        stage.putBall(0.385, 0, speed, 0);
        stage.perceive();
        EXPECT_FALSE(SkillPool::stopBall());
        EXPECT_EQ(stage.mainCommand(), "");
    }
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
        stage.put(0, 0, 0);
        practice::Vec const motion = practice::polar(c.speed, practice::toRad(c.direction));
        practice::Vec const ball =
            practice::polar(1, practice::toRad(c.direction + 180 + c.offLine));
        stage.putBall(ball.x, ball.y, motion.x, motion.y);
        stage.perceive();
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
        stage.put(-45, 0, facing);
        stage.putBall(-45 + rel.x, rel.y);
        stage.perceive();
        EXPECT_TRUE(SkillPool::catchBall());
        stage.perform();
        EXPECT_TRUE(stage.caught);
    }
    stage.put(-45, 0, 0);
    stage.putBall(-43.79, 0);
    stage.perceive();
    EXPECT_FALSE(SkillPool::catchBall());
    EXPECT_EQ(stage.mainCommand(), "");
}
