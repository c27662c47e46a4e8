#include "skills/Utils.h"

#include <cmath>
#include <limits>

#include "skills/SayAlphabet.h"
#include "worldmodel/WorldModel.h"

namespace {

/// The clockwise direction from one point to another, by quadrants. `base` is the acute angle
/// between the way and the y axis, in [0, 90].
float f(Vector2D const& from, Vector2D const& to, float base) {
    float result = base;
    if (to.x >= from.x && to.y >= from.y) {
        result = 270.0F + base;
    } else if (from.x >= to.x && to.y >= from.y) {
        result = 270.0F - base;
    } else if (from.x >= to.x && from.y >= to.y) {
        result = 90.0F + base;
    } else if (to.x >= from.x && from.y >= to.y) {
        result = 90.0F - base;
    }
    return result >= 360.0F ? result - 360.0F : result;
}

float exactAngle(Vector2D const& from, Vector2D const& to) {
    return f(from, to, atanDeg(std::abs(to.x - from.x) / std::abs(to.y - from.y)));
}

/// Angles so small are none.
constexpr float SNAP = 0.5F;

float snapped(float angle) {
    if (angle < SNAP) angle = 0.0F;
    return angle >= 360.0F ? angle - 360.0F : angle;
}

float relativeTo(float direction, float angle) {
    return direction <= angle ? angle - direction : angle + 360.0F - direction;
}

} // namespace

void Utils::initialize(WorldModel const* model) {
    worldModel = model;
}

float Utils::calcAngleToPoint(Vector2D p) {
    return calcAngleToPoint(worldModel->myself().position, p);
}

float Utils::calcAngleToPoint(Vector2D from, Vector2D to) {
    return snapped(exactAngle(from, to));
}

float Utils::calcAngleToBall() {
    return calcAngleToPoint(worldModel->ball().position);
}

float Utils::calcAngleToPointRel2Body(Vector2D p) {
    Myself const& me = worldModel->myself();
    return snapped(relativeTo(me.bodyDirection, exactAngle(me.position, p)));
}

float Utils::calcAngleToBallRel2Body() {
    return calcAngleToPointRel2Body(worldModel->ball().position);
}

float Utils::calcAngleToBallRel2Head() {
    Myself const& me = worldModel->myself();
    float angle =
        relativeTo(me.headDirection, exactAngle(me.position, worldModel->ball().position));
    // Just below a full turn counts as none too, unlike relative to the body.
    if (angle >= 359.9999F) angle -= 360.0F;
    return angle < SNAP ? 0.0F : angle;
}

float Utils::correctDashPowerForStamina(float power, float stamina) {
    constexpr float RESERVE = 100.0F;
    float const threshold =
        static_cast<float>(truncateToInt(Player::EFFORT_DEC_THR * Player::STAMINA_MAX)) + RESERVE;
    if (power >= 0.0F) {
        float const allowed = stamina - threshold;
        float const result = power <= allowed ? power : allowed;
        return result < 0.0F ? 0.0F : result;
    }
    float const allowed = stamina - 0.5F * threshold;
    float const result = -power <= allowed ? -power : allowed;
    return result < 0.0F ? 0.0F : -result;
}

float Utils::calculateKickRate(float dist, float dir) {
    return 1.0F - 0.25F * std::abs(dir) / 180.0F -
           0.25F * (dist - Ball::SIZE - Player::SIZE) / Ball::KICKABLE_MARGIN;
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
    if (static_cast<double>(endSpeed) >= EPSILON) {
        // Backwards from the end speed the ball's way is a growing series.
        float const cycles = std::round(
            Geometry::getLengthGeomSeries(endSpeed, 1.0F / Configuration::ballDecay, dist));
        return calcInitSpeedFromEndSpeed(endSpeed, cycles);
    }
    return Geometry::getFirstInfGeomSeries(dist, Configuration::ballDecay);
}

float Utils::calcInitSpeedFromEndSpeed(float endSpeed, float cycles) {
    return endSpeed * std::pow(1.0F / Configuration::ballDecay, cycles);
}

float Utils::calcActualTurnAngle(float angle, float speed) {
    return angle / (1.0F + Configuration::inertiaMoment * speed);
}

float Utils::calcAngleForTurn(float angle, float speed) {
    return angle * (1.0F + Configuration::inertiaMoment * speed);
}

timeval Utils::timerAddMsec(timeval const* tv, int msec) {
    constexpr int LAST_MICROSECOND = 999999;
    timeval sum{tv->tv_sec, tv->tv_usec + msec * 1000L};
    if (sum.tv_usec > LAST_MICROSECOND) {
        sum.tv_sec += 1;
        sum.tv_usec -= LAST_MICROSECOND + 1;
    }
    return sum;
}

int Utils::timerDiffMsec(timeval const* a, timeval const* b) {
    timeval diff{a->tv_sec - b->tv_sec, a->tv_usec - b->tv_usec};
    if (diff.tv_usec < 0) {
        diff.tv_sec -= 1;
        diff.tv_usec += 1000000;
    }
    return static_cast<int>(diff.tv_usec / 1000 + diff.tv_sec * 1000);
}

float Utils::doAsciiToFloat(char c) {
    constexpr float UNKNOWN_SYMBOL = 999.0F;
    auto const value = SayAlphabet::SYMBOLS.find(c);
    return value == SayAlphabet::SYMBOLS.npos ? UNKNOWN_SYMBOL : static_cast<float>(value);
}
