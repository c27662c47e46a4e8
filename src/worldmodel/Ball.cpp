#include "worldmodel/Ball.h"

#include "physics/Kinematics.h"

Vector2D Ball::predictedPosition(int cycles, float kickAngle, float kickPower, float ballDistance,
                                 float directionDifference) const {
    if (position.isInvalid() || velocity.isInvalid()) return position;
    Vector2D v = velocity;
    if (kickAngle != NO_KICK && kickPower != NO_KICK) {
        // Intentional: not limited by ACCEL_MAX.
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
    if (!rolls_) return;
    Kinematics::clampSpeed(velocity_, Ball::SPEED_MAX);
    place_ += velocity_;
    velocity_ *= Ball::DECAY;
}
