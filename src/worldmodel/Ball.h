#pragma once

#include "config/Configuration.h"
#include "worldmodel/MovingObject.h"

/// The ball as the agent knows it.
class Ball : public virtual MovingObject {
public:
    // The server's parameters under the names of the object they describe: references, so that a
    // parameter message changes every prediction at once.
    static constexpr float const& SIZE = Configuration::ballSize;
    static constexpr float const& DECAY = Configuration::ballDecay;
    static constexpr float const& RANDOM = Configuration::ballRandom;
    static constexpr float const& WEIGHT = Configuration::ballWeight;
    static constexpr float const& SPEED_MAX = Configuration::ballSpeedMax;
    static constexpr float const& ACCEL_MAX = Configuration::ballAccelMax;
    static constexpr float const& KICKABLE_MARGIN = Configuration::kickableMargin;

    /// No kick, for predictedPosition().
    static constexpr float NO_KICK = UNDEFINED_FLOAT;

    using MovingObject::predictedPosition;
    /// `cycles` ahead with decay, after a kick now if both its angle (counter-clockwise, degrees,
    /// absolute) and its power are given. `ballDistance` (metres) and `directionDifference`
    /// (degrees from the kicker's body) tell how well the ball lies for it.
    Vector2D predictedPosition(int cycles, float kickAngle, float kickPower, float ballDistance,
                               float directionDifference) const;
    /// `cycles` ahead with decay, without a kick.
    Vector2D rollingPosition(int cycles) const {
        return predictedPosition(cycles, NO_KICK, NO_KICK, NO_KICK, NO_KICK);
    }
};

/// A ball that nobody kicks, followed cycle by cycle. One whose position or velocity is unknown
/// stays where it is.
class RollingBall {
public:
    explicit RollingBall(Ball const& ball)
        : place_(ball.position), velocity_(ball.velocity),
          rolls_(!ball.position.isInvalid() && !ball.velocity.isInvalid()) {}
    /// From a known position with a known velocity.
    RollingBall(Vector2D const& start, Vector2D const& startVelocity)
        : place_(start), velocity_(startVelocity) {}

    Vector2D const& position() const { return place_; }
    void roll();

private:
    Vector2D place_;
    Vector2D velocity_;
    bool rolls_ = true;
};
