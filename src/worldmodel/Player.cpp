#include "worldmodel/Player.h"

#include <algorithm>
#include <cmath>

#include "geometry/Numbers.h"
#include "physics/Kinematics.h"

void turnOneCycle(float& bodyDirection, float& remainingTurn, float speed) {
    float const largest = Kinematics::turnFromMoment(Player::MAX_MOMENT, speed);
    float const turn = std::max(-largest, std::min(remainingTurn, largest));
    bodyDirection = normalizeTo360Deg(bodyDirection + convertAngleTo360(turn));
    remainingTurn -= turn;
}

Vector2D Player::predictedPosition(int cycles, float dashPower, float turnAngle) const {
    return predictedWay(cycles, turnAngle, [&] { return dashPower * DASH_POWER_RATE; });
}

int Player::predictedCyclesToPoint(Vector2D target, bool useKickableMargin) const {
    constexpr float NEAR_ENOUGH = 1.5F;      // metres
    constexpr float TWO_TURNS_FROM = 100.0F; // degrees
    constexpr float ONE_TURN_ABOVE = 5.0F;   // degrees
    constexpr float ACCELERATION = 0.6F;     // metres per cycle, gained in one cycle
    float distance = position.getDistanceTo(target);
    if (useKickableMargin) distance -= NEAR_ENOUGH;
    int const run = truncateToInt(distance / SPEED_MAX);

    int turn = 0;
    if (std::isfinite(bodyDirection)) {
        float const difference = std::abs(normalizeTo180Deg(convertAngleTo180(bodyDirection) -
                                                            (target - position).getDirection()));
        if (difference >= TWO_TURNS_FROM) {
            turn = 2;
        } else if (difference > ONE_TURN_ABOVE) {
            turn = 1;
        }
    }

    // Counts in full even when the point is near.
    int const accelerate = truncateToInt((SPEED_MAX - velocity.getLength() * DECAY) / ACCELERATION);

    // Parameters that never came or an unknown target make any of these huge; the sum must not
    // wrap.
    return truncateToInt(static_cast<float>(run) + static_cast<float>(turn) +
                         static_cast<float>(accelerate));
}
