#pragma once

#include "worldmodel/BodyInfo.h"
#include "worldmodel/Player.h"

/// The agent itself: a player that also feels its own body. One, in the world model's `Situation`.
class Myself : public Player {
public:
    BodyInfo bodyInfo;

    ~Myself() override = default;

    using MovingObject::predictedPosition;
    /// As Player::predictedPosition, but with the agent's own stamina, effort and recovery.
    Vector2D predictedPosition(int cycles, float dashPower, float turnAngle) const;

    /// What one cycle with a dash of `dashPower` makes of stamina, effort and recovery. A backward
    /// dash (negative power) adds to the predicted stamina. Intentional: the behaviours are tuned
    /// to it.
    void updatePredictedStamina(float& stamina, float& effort, float& recovery,
                                float dashPower) const;
};
