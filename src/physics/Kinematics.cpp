#include "physics/Kinematics.h"

#include <cmath>

#include "config/Configuration.h"
#include "geometry/Geometry.h"
#include "geometry/Numbers.h"

float Kinematics::kickRate(float distance, float direction) {
    return 1.0F - 0.25F * std::abs(direction) / 180.0F -
           0.25F * (distance - Configuration::ballSize - Configuration::playerSize) /
               Configuration::kickableMargin;
}

float Kinematics::kickSpeed(float rate, float power) {
    return rate * power * Configuration::kickPowerRate;
}

float Kinematics::kickPower(float rate, float speed) {
    return speed / rate / Configuration::kickPowerRate;
}

float Kinematics::turnFromMoment(float moment, float speed) {
    return moment / (1.0F + Configuration::inertiaMoment * speed);
}

float Kinematics::momentForTurn(float angle, float speed) {
    return angle * (1.0F + Configuration::inertiaMoment * speed);
}

float Kinematics::speedToTravel(float distance, float endSpeed) {
    if (static_cast<double>(endSpeed) >= EPSILON) {
        // Backwards from the end speed the ball's way is a growing series.
        float const cycles = std::round(
            Geometry::getLengthGeomSeries(endSpeed, 1.0F / Configuration::ballDecay, distance));
        return speedBefore(endSpeed, cycles);
    }
    return Geometry::getFirstInfGeomSeries(distance, Configuration::ballDecay);
}

float Kinematics::speedBefore(float endSpeed, float cycles) {
    return endSpeed * std::pow(1.0F / Configuration::ballDecay, cycles);
}

float Kinematics::affordableDash(float power, float stamina) {
    constexpr float RESERVE = 100.0F;
    float const threshold =
        static_cast<float>(truncateToInt(Configuration::effortDecThr * Configuration::staminaMax)) +
        RESERVE;
    if (power >= 0.0F) {
        float const allowed = stamina - threshold;
        float const result = power <= allowed ? power : allowed;
        return result < 0.0F ? 0.0F : result;
    }
    // Intentional: half of the threshold, not half of the difference.
    float const allowed = stamina - 0.5F * threshold;
    float const result = -power <= allowed ? -power : allowed;
    return result < 0.0F ? 0.0F : -result;
}

void Kinematics::clampSpeed(Vector2D& velocity, float speedMax) {
    float const speed = velocity.getLength();
    if (speed > speedMax) velocity *= speedMax / speed;
}
