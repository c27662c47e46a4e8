#include "worldmodel/Ball.h"

#include "physics/Kinematics.h"

Vector2D Ball::predictedPosition(int cycles, float kickAngle, float kickPower, float ballDistance,
                                 float directionDifference) const {
    if (position.isInvalid() || velocity.isInvalid()) return position;
    Vector2D v = velocity;
    if (kickAngle != NO_KICK && kickPower != NO_KICK) {
        // Not limited by ACCEL_MAX, on purpose.
        float const rate = Kinematics::kickRate(ballDistance, directionDifference);
        float const acceleration = Kinematics::kickSpeed(rate, kickPower);
        v += Vector2D(acceleration, convertAngleTo360(kickAngle), POLAR);
    }
    RollingBall rolling(position, v);
    for (int i = 0; i < cycles; ++i) {
        rolling.roll();
    }
    return rolling.position();
}

void RollingBall::roll() {
    if (!rolls) return;
    Kinematics::clampSpeed(velocity, Ball::SPEED_MAX);
    place += velocity;
    velocity *= Ball::DECAY;
}
