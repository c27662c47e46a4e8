// Where the agent and the ball are: from landmarks at a see, from the last commands at a
// sense_body.

#include "worldmodel/WorldModel.h"

#include <algorithm>
#include <array>
#include <utility>

#include "config/Configuration.h"
#include "physics/Kinematics.h"

namespace {

/// The three nearest flags of a see, the nearest first; of equally near ones the later seen first.
class NearestFlags {
public:
    void offer(RCC_Flag const& flag) {
        RCC_Flag const* candidate = &flag;
        for (RCC_Flag const*& place : places_) {
            // Negated, since NaN fails every comparison: such a distance takes no place.
            if (!(distanceOf(candidate) <= distanceOf(place))) continue;
            std::swap(candidate, place);
        }
    }

    /// Moves `position` to the mean of the places they imply, weighted with 1 / distance; without
    /// any flag it stays.
    void locate(float face, FieldSide side, Vector2D& position) const {
        if (places_[0] == nullptr) return;
        Vector2D sum;
        float weights = 0.0F;
        for (RCC_Flag const* const flag : places_) {
            if (flag == nullptr) break;
            float const weight = 1.0F / std::max(flag->distance, LEAST_DISTANCE);
            sum += weight * Field::computePosFromFlag(*flag, face, side);
            weights += weight;
        }
        // A single one tells the place itself, free of the rounding of the mean.
        position = places_[1] == nullptr ? Field::computePosFromFlag(*places_[0], face, side)
                                         : sum / weights;
    }

private:
    /// An empty place is far away, but nearer than a flag without distance.
    static float distanceOf(RCC_Flag const* flag) {
        return flag == nullptr ? UNDEFINED_FLOAT : flag->distance;
    }

    /// A flag that the agent stands on is reported at 0, which has no inverse.
    static constexpr float LEAST_DISTANCE = 0.001F;

    std::array<RCC_Flag const*, 3> places_{};
};

} // namespace

void WorldModel::performSelfLoc(std::span<RCC_Line const> lines, std::span<RCC_Flag const> flags) {
    Myself& me = myself();
    float const face = Field::computeFaceDirection(lines, situation_.side);
    me.headDirection = face;
    me.bodyDirection = normalizeTo360Deg(face - me.bodyInfo.headAngle);

    NearestFlags nearest;
    for (RCC_Flag const& flag : flags) {
        if (flag.code != RCC_Flag::CLOSE_BY) nearest.offer(flag);
    }
    nearest.locate(face, situation_.side, me.position);
}

void WorldModel::estimateCurrentState() {
    float kickPower = 0.0F;
    float kickDirection = UNDEFINED_FLOAT;
    float turn = 0.0F;
    Vector2D moveTarget(UNDEFINED_FLOAT, UNDEFINED_FLOAT, CARTESIAN);

    ServerCommandHistory const& last = situation_.commandHistory;
    switch (last.mainKind) {
    case Command::move:
        moveTarget = Vector2D(last.mainArgument1, last.mainArgument2, CARTESIAN);
        break;
    case Command::kick:
        kickPower = last.mainArgument1;
        kickDirection = last.mainArgument2;
        break;
    case Command::turn:
        turn = last.mainArgument1;
        break;
    default:
        break; // a dash shows in the reported speed
    }

    Myself& me = myself();
    Ball& theBall = ball();
    if (kickPower != 0.0F && isInKickableArea()) {
        theBall.velocity = estimateBallVelocity(kickPower, kickDirection);
    }
    if (turn != 0.0F) me.bodyDirection = normalizeTo360Deg(me.bodyDirection - turn);
    me.headDirection = normalizeTo360Deg(me.bodyDirection + me.bodyInfo.headAngle);
    if (moveTarget.x != UNDEFINED_FLOAT && moveTarget.y != UNDEFINED_FLOAT) {
        me.position = moveTarget;
    }
    me.velocity = Vector2D(me.bodyInfo.speedAmount, me.bodyDirection, POLAR) / Player::DECAY;
    me.position += me.velocity;

    if (!theBall.position.isInvalid() && !theBall.velocity.isInvalid()) {
        theBall.position += theBall.velocity;
    }
    if (!theBall.velocity.isInvalid()) theBall.velocity *= Configuration::ballDecay;
    // The agent's mirror in its team waits for the next see.
}

Vector2D WorldModel::estimateBallVelocity(float power, float direction) const {
    Myself const& me = myself();
    Vector2D const rel = ball().position - me.position;
    float const directionDifference = convertAngleTo180(rel.getDirection() + me.bodyDirection);
    float const rate = Kinematics::kickRate(rel.getLength(), directionDifference);
    Vector2D velocity =
        ball().velocity + Vector2D(rate * Configuration::kickPowerRate * power,
                                   convertAngleTo360(direction) + me.bodyDirection, POLAR);
    Kinematics::clampSpeed(velocity, Configuration::ballSpeedMax);
    return velocity;
}
