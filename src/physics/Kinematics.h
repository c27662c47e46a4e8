#pragma once

#include "geometry/Vector2D.h"

/// The server's rules of motion as formulas: what a kick, a turn or a dash comes to. They need the
/// server's parameters (`Configuration`) and nothing of the world. Before the parameters have come
/// they divide by zero and give infinities or NaN.
///
/// Metres, metres per cycle, degrees. The order of the operations is part of the results: all are
/// single precision.
namespace Kinematics {

/// How much of a kick's power reaches the ball: 1 with the ball at the foot straight ahead.
/// `distance` between the centres of ball and player, `direction` from the body, either sign.
float kickRate(float distance, float direction);

/// The speed that a kick of `power` adds to the ball at this rate.
float kickSpeed(float rate, float power);

/// The power of a kick that adds `speed` to the ball at this rate; the inverse of kickSpeed.
float kickPower(float rate, float speed);

/// The turn that a turn command of `moment` achieves at `speed`.
float turnFromMoment(float moment, float speed);

/// The turn command for a turn of `angle` at `speed`; the inverse of turnFromMoment.
float momentForTurn(float angle, float speed);

/// The speed at which the ball must start to cover `distance` and arrive with `endSpeed`.
float speedToTravel(float distance, float endSpeed);

/// The speed that decays to `endSpeed` in so many cycles.
float speedBefore(float endSpeed, float cycles);

/// The part of a dash power (negative: backwards) that keeps the stamina above the threshold below
/// which effort is lost.
float affordableDash(float power, float stamina);

/// Scales `velocity` down to the length `speedMax` if it is longer.
void clampSpeed(Vector2D& velocity, float speedMax);

} // namespace Kinematics
