// Moving, facing and catching.

#include "skills/SkillPool.h"

#include <cmath>

#include "config/ConfigFile.h"
#include "config/Configuration.h"
#include "link/Effectors.h"
#include "skills/Utils.h"
#include "worldmodel/WorldModel.h"

namespace {

/// A ball slower than this (metres per cycle) is run to, not intercepted.
constexpr float SLOW_BALL = 0.15F;

constexpr float SCAN_STEP = 45.0F; ///< degrees, of neck or body

/// Farther than this (degrees) from straight ahead the neck is turned the other way round.
constexpr float NECK_RANGE = 240.0F;

} // namespace

bool SkillPool::getBall(float power, bool forCatch, Mode /*mode*/) {
    constexpr float FOR_KICK_TOLERANCE = 0.8F;
    constexpr float FOR_CATCH_TOLERANCE = 1.8F;
    // Degrees, for an interception at close range behind the body; no rule uses them yet.
    [[maybe_unused]] constexpr int CLOSE_INT_FROM = 85;
    [[maybe_unused]] constexpr int CLOSE_INT_TO = 275;
    float const tolerance = forCatch ? FOR_CATCH_TOLERANCE : FOR_KICK_TOLERANCE;

    if (ball->position.isInvalid()) return false;
    if (myself->position.getDistanceTo(ball->position) < tolerance) return true;

    static Vector2D intPoint;
    int cycles = 0;
    if (ball->velocity.getLength() >= SLOW_BALL && !ball->velocity.isInvalid() &&
        worldModel->interceptionPoint(*myself, intPoint, cycles, forCatch)) {
        return goToPoint(intPoint, tolerance, power);
    }
    return goToPoint(ball->position, tolerance, power);
}

float calcPowerForDash(Vector2D move, float bodyAngle, float effort) {
    return move.rotate(-convertAngleTo180(bodyAngle)).x / (effort * Configuration::dashPowerRate);
}

bool SkillPool::interceptClose() {
    Vector2D const nextBall = ball->MovingObject::predictedPosition(1);
    Vector2D const nextMe = myself->predictedPosition(1, 0.0F, 0.0F);
    float const power =
        calcPowerForDash(nextBall - nextMe, myself->bodyDirection, myself->bodyInfo.effort);
    // Negated as a whole: NaN fails every comparison and so counts as out of range.
    if (!(power >= Configuration::minPower && power <= Configuration::maxPower)) return false;
    effectors->queueDash(power);
    return true;
}

bool SkillPool::goToPoint(Vector2D target, float tolerance, float power) {
    static auto const angleWhenToTurn = static_cast<float>(ConfigFile::angleWhenToTurn);

    if (myself->position.getDistanceTo(target) < tolerance) return true;

    Vector2D const nextMe = myself->predictedPosition(1, 0.0F, 0.0F);
    float direction = myself->bodyDirection;
    if (power < 0.0F) direction = normalizeTo360Deg(direction + 180.0F);
    // A sum, because the body's direction is clockwise and the target's is not.
    float const turn = normalizeTo180Deg((target - nextMe).getDirection() + direction);

    if (std::abs(turn) <= angleWhenToTurn) {
        float const affordable = Utils::correctDashPowerForStamina(power, myself->bodyInfo.stamina);
        float const wholePower = std::trunc(affordable);
        if (wholePower != 0.0F) effectors->queueDash(wholePower);
    } else {
        effectors->queueTurn(turn, myself->velocity.getLength());
    }
    return false;
}

bool SkillPool::faceOnlyBodyToPoint(Vector2D point) {
    constexpr float FACING = 5.0F; // degrees
    if (point.isInvalid()) return false;
    float const rel = normalizeTo180Deg((point - myself->position).getDirection() -
                                        convertAngleTo180(myself->bodyDirection));
    if (std::abs(rel) >= FACING) effectors->queueTurn(rel, myself->bodyInfo.speedAmount);
    return true;
}

bool SkillPool::faceOnlyNeckToPoint(Vector2D point) {
    constexpr float FACING = 2.0F; // degrees
    if (point.isInvalid()) return false;

    float neck = convertAngleTo180(myself->headDirection);
    ServerCommandHistory const& queued = worldModel->situation().commandHistory;
    if (queued.mainKind == Command::turn) neck = normalizeTo180Deg(neck + queued.mainArgument1);

    float rel = normalizeTo180Deg((point - myself->position).getDirection() - neck);
    if (rel < Configuration::minNeckMoment) rel += 360.0F;
    if (rel > Configuration::maxNeckMoment) rel -= 360.0F;

    float const headAngle = convertAngleTo180(myself->bodyInfo.headAngle);
    if (rel + headAngle > NECK_RANGE) rel -= 360.0F;
    if (rel + headAngle < -NECK_RANGE) rel += 360.0F;

    if (std::abs(rel) >= FACING) effectors->queueTurnNeck(rel);
    return true;
}

bool SkillPool::faceNeckAndBodyToPoint(Vector2D point) {
    bool const body = faceOnlyBodyToPoint(point);
    bool const neck = faceOnlyNeckToPoint(point);
    return body && neck;
}

bool SkillPool::faceOnlyBodyToBall() {
    return faceOnlyBodyToPoint(ball->position);
}

bool SkillPool::faceOnlyNeckToBall() {
    return faceOnlyNeckToPoint(ball->position);
}

void SkillPool::faceNeckToBall() {
    faceNeckToPoint(ball->position);
}

bool SkillPool::faceNeckAndBodyToBall() {
    return faceNeckAndBodyToPoint(ball->position);
}

void SkillPool::scanFieldWithNeck() {
    constexpr float STEP = SCAN_STEP;
    float const end = normalizeTo360Deg(myself->bodyDirection - Configuration::maxNeckAngle);
    bool const roomForAStep = getAbsAngleDifference(myself->headDirection, end) >= STEP;
    effectors->queueTurnNeck(roomForAStep ? STEP : Configuration::minNeckMoment);
}

void SkillPool::scanFieldWithBody() {
    effectors->queueTurn(SCAN_STEP, myself->bodyInfo.speedAmount);
}

bool SkillPool::catchBall() {
    if (!worldModel->isCatchable()) return false;
    float const direction = convertAngleTo180(Utils::calcAngleToBallRel2Body());
    // A ball exactly at the agent's own place has no direction, and any direction reaches it.
    effectors->queueGoalieCatch(std::isfinite(direction) ? direction : 0.0F);
    return true;
}
