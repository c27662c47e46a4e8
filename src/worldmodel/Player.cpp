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
    if (position.isInvalid() || velocity.isInvalid()) return position;
    Vector2D predicted = position;
    Vector2D v = velocity;
    float body = bodyDirection;
    float remainingTurn = turnAngle;
    for (int i = 0; i < cycles; ++i) {
        if (remainingTurn != 0.0F) {
            // A turning player is taken to stand: it neither moves nor slows down.
            turnOneCycle(body, remainingTurn, v.getLength());
            continue;
        }
        v += Vector2D(dashPower * DASH_POWER_RATE, body, POLAR);
        Kinematics::clampSpeed(v, SPEED_MAX);
        predicted += v;
        v *= DECAY;
    }
    return predicted;
}

int Player::predictedCyclesToPoint(Vector2D target, bool useKickableMargin) const {
    float distance = position.getDistanceTo(target);
    if (useKickableMargin) distance -= 1.5F;
    int const run = truncateToInt(distance / SPEED_MAX);

    int turn = 0;
    if (std::isfinite(bodyDirection)) {
        float const difference = std::abs(normalizeTo180Deg(convertAngleTo180(bodyDirection) -
                                                            (target - position).getDirection()));
        if (difference >= 100.0F) {
            turn = 2;
        } else if (difference > 5.0F) {
            turn = 1;
        }
    }

    // Counts in full even when the point is near.
    int const accelerate = truncateToInt((SPEED_MAX - velocity.getLength() * DECAY) / 0.6F);

    // Parameters that never came or an unknown target make any of these huge; the sum must not
    // wrap.
    return truncateToInt(static_cast<float>(run) + static_cast<float>(turn) +
                         static_cast<float>(accelerate));
}
