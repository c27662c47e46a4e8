#include "skills/Utils.h"

#include <limits>

#include "geometry/Bearings.h"
#include "physics/Kinematics.h"
#include "worldmodel/SayAlphabet.h"
#include "worldmodel/Timeval.h"
#include "worldmodel/WorldModel.h"

void Utils::initialize(WorldModel const* model) {
    worldModel = model;
}

float Utils::calcAngleToPoint(Vector2D p) {
    return calcAngleToPoint(worldModel->myself().position, p);
}

float Utils::calcAngleToPoint(Vector2D from, Vector2D to) {
    return snapBearing(bearing(from, to));
}

float Utils::calcAngleToBall() {
    return calcAngleToPoint(worldModel->ball().position);
}

float Utils::calcAngleToPointRel2Body(Vector2D p) {
    Myself const& me = worldModel->myself();
    return snapBearing(relativeBearing(me.bodyDirection, bearing(me.position, p)));
}

float Utils::calcAngleToBallRel2Body() {
    return calcAngleToPointRel2Body(worldModel->ball().position);
}

float Utils::calcAngleToBallRel2Head() {
    // Intentional: just below a full turn counts as straight ahead, unlike relative to the body.
    constexpr float ALMOST_FULL_TURN = 359.9999F;
    Myself const& me = worldModel->myself();
    float angle =
        relativeBearing(me.headDirection, bearing(me.position, worldModel->ball().position));
    if (angle >= ALMOST_FULL_TURN) angle -= 360.0F;
    return angle < BEARING_SNAP ? 0.0F : angle;
}

float Utils::correctDashPowerForStamina(float power, float stamina) {
    return Kinematics::affordableDash(power, stamina);
}

float Utils::calculateKickRate(float dist, float dir) {
    return Kinematics::kickRate(dist, dir);
}

float Utils::viewQualToAngle(int viewWidth) {
    switch (viewWidth) {
    case 1:
        return 0.5F * Player::VISIBLE_ANGLE;
    case 2:
        return Player::VISIBLE_ANGLE;
    case 3:
        return 2.0F * Player::VISIBLE_ANGLE;
    default:
        return std::numeric_limits<float>::quiet_NaN();
    }
}

float Utils::getViewAngle() {
    return viewQualToAngle(worldModel->myself().bodyInfo.viewWidth);
}

float Utils::calcKickSpeedToTravel(float dist, float endSpeed) {
    return Kinematics::speedToTravel(dist, endSpeed);
}

float Utils::calcInitSpeedFromEndSpeed(float endSpeed, float cycles) {
    return Kinematics::speedBefore(endSpeed, cycles);
}

float Utils::calcActualTurnAngle(float angle, float speed) {
    return Kinematics::turnFromMoment(angle, speed);
}

float Utils::calcAngleForTurn(float angle, float speed) {
    return Kinematics::momentForTurn(angle, speed);
}

timeval Utils::timerAddMsec(timeval const* tv, int msec) {
    return Timeval::addMsec(*tv, msec);
}

int Utils::timerDiffMsec(timeval const* a, timeval const* b) {
    return Timeval::diffMsec(*a, *b);
}

float Utils::doAsciiToFloat(char c) {
    return SayAlphabet::valueOf(c);
}
