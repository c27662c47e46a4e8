#pragma once

#include "geometry/Vector2D.h"

/// Anything that moves on the pitch: a position in metres and a velocity in metres per cycle, in
/// the agent's frame (own goal at negative x, top touch line at negative y). Either may be invalid.
/// Held by value in the world model; main thread only.
class MovingObject {
public:
    Vector2D position;
    Vector2D velocity;
    /// Cycles since the object was seen; negative when unknown. The world model leaves it at 0: it
    /// keeps only what the last see held.
    float age = 0;

    MovingObject() = default;
    MovingObject(Vector2D const& pos, Vector2D const& vel) : position(pos), velocity(vel) {}
    MovingObject(MovingObject const&) = default;
    MovingObject& operator=(MovingObject const&) = default;
    virtual ~MovingObject() = default;

    /// How far what is known may be trusted: 1 when fresh, 0 after 20 cycles.
    float reliability() const { return 1.0F - LOSS_PER_CYCLE * age; }

    /// `cycles` ahead at constant velocity; the position itself when either value is invalid.
    Vector2D predictedPosition(int cycles) const;

private:
    static constexpr float LOSS_PER_CYCLE = 0.05F; ///< of reliability
};
