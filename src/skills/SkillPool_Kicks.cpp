// Dribbling, passing, shooting and clearing.

#include "skills/SkillPool.h"

#include <array>
#include <cmath>
#include <limits>

#include "config/ConfigFile.h"
#include "config/Configuration.h"
#include "geometry/Numbers.h"
#include "link/Effectors.h"
#include "physics/Kinematics.h"
#include "skills/Utils.h"
#include "worldmodel/WorldModel.h"

bool SkillPool::simpleDribbleToPoint(Vector2D target, int power) {
    static int const maxPower = truncateToInt(ConfigFile::dribbleKickPower);
    constexpr int minPower = 30;
    constexpr float NEAR = 15.0F; // metres

    bool const far = myself->position.getDistanceTo(target) >= NEAR;
    int const kickPower = far ? maxPower : minPower;
    if (ball->position.isInvalid()) return false;
    if (worldModel->isInKickableArea()) {
        kickToPoint(target, static_cast<float>(kickPower), false);
    } else {
        getBall(static_cast<float>(power), false, DRIBBLE_BALL);
    }
    return true;
}

float SkillPool::kickRateOfBall() {
    return Kinematics::kickRate(myself->position.getDistanceTo(ball->position),
                                convertAngleTo180(Utils::calcAngleToBallRel2Body()));
}

bool SkillPool::stopBall() {
    static auto const powerThr = static_cast<float>(ConfigFile::stopBallPowerThr);

    if (!worldModel->isInKickableArea()) return false;
    float const rate = kickRateOfBall();
    Vector2D const motion = ball->velocity - myself->velocity;
    float const power = Kinematics::kickPower(rate, motion.getLength());
    // Negated, since NaN fails every comparison: without a power there is no kick.
    if (!(power > powerThr) || !std::isfinite(power)) return false;
    effectors->queueKick(power, normalizeTo180Deg(motion.getDirection() + 180.0F -
                                                  convertAngleTo180(myself->bodyDirection)));
    return true;
}

void SkillPool::kickToPoint(Vector2D target, float power, bool fastest) {
    constexpr float FASTEST_FACTOR = 200.0F; // the server cuts it to what it allows

    Vector2D const keptMotion = ball->velocity * Configuration::ballDecay;
    Vector2D const relBall = ball->position - myself->position;
    // Intentional: the direction on the pitch, where the others take the one from the body.
    float const rate = Kinematics::kickRate(relBall.getLength(), relBall.getDirection());
    float const direction = convertAngleTo360((target - myself->position).getDirection());
    float const speed = Kinematics::kickSpeed(rate, fastest ? FASTEST_FACTOR : power);

    Vector2D acceleration = Vector2D(speed, direction, POLAR) - keptMotion;
    acceleration.rotate(-convertAngleTo180(myself->bodyDirection));
    float const neededPower = Kinematics::kickPower(rate, acceleration.getLength());
    // A shot at a goal that lies behind has no aim; the server would refuse it.
    if (!std::isfinite(neededPower)) return;
    effectors->queueKick(neededPower, normalizeTo180Deg(acceleration.getDirection()));
}

bool SkillPool::passBall(Player const* receiver, float endSpeed) {
    return passBallToPos(receiver->position, endSpeed);
}

bool SkillPool::passBallToPos(Vector2D target, float endSpeed) {
    if (!worldModel->isInKickableArea()) return false;
    Vector2D const way = target - myself->position;
    float const speed = Kinematics::speedToTravel(way.getLength(), endSpeed);
    Vector2D const change =
        Vector2D(speed, convertAngleTo360(way.getDirection()), POLAR) - ball->velocity;
    kickToPoint(target, Kinematics::kickPower(kickRateOfBall(), change.getLength()), false);
    return true;
}

bool SkillPool::passIfHaveACandidate(bool wellPositioned, float endSpeed) {
    Player const* const candidate = worldModel->getPassCand(wellPositioned);
    if (candidate == nullptr) return false;
    passBall(candidate, endSpeed);
    return true;
}

float calcAngleOffset(float angle) {
    struct Step {
        float below;  // degrees
        float offset; // metres
    };
    constexpr std::array<Step, 3> STEPS = {{{60.0F, 0.0F}, {75.0F, 2.0F}, {82.5F, 4.0F}}};
    constexpr float LARGEST_OFFSET = 8.0F;

    float const steepness = std::abs(angle);
    float const sign = angle < 0.0F ? -1.0F : 1.0F;
    for (Step const& step : STEPS) {
        if (steepness < step.below) return sign * step.offset;
    }
    if (steepness <= 90.0F) return sign * LARGEST_OFFSET;
    return std::numeric_limits<float>::quiet_NaN();
}

bool SkillPool::scoreGoal() {
    static Vector2D const leftGoalCorner = Field::landmark(Field::OPP_GOAL_LEFT_POST);
    static Vector2D const rightGoalCorner = Field::landmark(Field::OPP_GOAL_RIGHT_POST);
    constexpr Vector2D goalMid = Field::OPP_GOAL_CENTER;
    constexpr float INSIDE_POST = 1.5F; // metres

    if (!worldModel->isInKickableArea()) return false;
    Vector2D const me = myself->position;
    float const offset = calcAngleOffset((goalMid - me).getDirection());

    bool right = false;
    if (Player const* const goalie = worldModel->situation().theirTeam.getGoalie()) {
        // Along the line that is farther from the goalkeeper.
        Line const toLeft = Line::makeLineFromTwoPoints(me, leftGoalCorner);
        Line const toRight = Line::makeLineFromTwoPoints(me, rightGoalCorner);
        right =
            toLeft.distanceToPoint(goalie->position) <= toRight.distanceToPoint(goalie->position);
    } else {
        right = me.getDistanceTo(rightGoalCorner) <= me.getDistanceTo(leftGoalCorner);
    }
    Vector2D aim = right ? rightGoalCorner : leftGoalCorner;
    aim.y = aim.y + (right ? -INSIDE_POST : INSIDE_POST) + offset;
    kickToPoint(aim, FULL_POWER, true);
    return true;
}

bool SkillPool::shouldStopBall() {
    static auto const angTol = static_cast<float>(ConfigFile::stopBallAngleTolerance);
    static auto const velThr = static_cast<float>(ConfigFile::stopBallVelocityThreshold);
    static auto const from = static_cast<float>(ConfigFile::stopBallSectorFrom);
    static auto const to = static_cast<float>(ConfigFile::stopBallSectorTo);

    float const toBall = (ball->position - myself->position).getDirection();
    float const motion = ball->velocity.getDirection();
    float const back = normalizeTo180Deg(motion + 180.0F);
    bool const comesToMe =
        from < motion && motion < to && std::abs(normalizeTo180Deg(toBall - back)) < angTol;
    return !comesToMe && !(ball->velocity.getLength() < velThr);
}

void SkillPool::kickAway(bool toSide) {
    constexpr Vector2D goalMid = Field::OPP_GOAL_CENTER;
    constexpr float CLEARED_X = 15.0F; // from here on straight towards their goal

    Vector2D target;
    if (toSide) {
        constexpr float SIDE_Y = 32.0F;
        target = {ball->position.x, ball->position.y >= 0.0F ? SIDE_Y : -SIDE_Y, CARTESIAN};
    } else if (ball->position.x >= CLEARED_X) {
        target = goalMid;
    } else {
        constexpr float WING_Y = 29.0F;
        target = {Field::SERVER_OPP_GOAL_LINE, ball->position.y > 0.0F ? WING_Y : -WING_Y,
                  CARTESIAN};
    }
    kickToPoint(target, FULL_POWER, false);
}
