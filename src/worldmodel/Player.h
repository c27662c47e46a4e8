#pragma once

#include "config/Configuration.h"
#include "physics/Kinematics.h"
#include "worldmodel/MovingObject.h"

/// A player of either team. Two records are the same player when shirt number and opponent flag are
/// equal; positions are never compared. Held by value in the teams.
class Player : public MovingObject {
public:
    // The server's parameters, by reference (see Ball).
    static constexpr float const& SIZE = Configuration::playerSize;
    static constexpr float const& DECAY = Configuration::playerDecay;
    static constexpr float const& RANDOM = Configuration::playerRandom;
    static constexpr float const& WEIGHT = Configuration::playerWeight;
    static constexpr float const& SPEED_MAX = Configuration::playerSpeedMax;
    static constexpr float const& ACCEL_MAX = Configuration::playerAccelMax;
    static constexpr float const& STAMINA_MAX = Configuration::staminaMax;
    static constexpr float const& STAMINA_INC = Configuration::staminaInc;
    static constexpr float const& RECOVER_INIT = Configuration::recoverInit;
    static constexpr float const& RECOVER_DEC_THR = Configuration::recoverDecThr;
    static constexpr float const& RECOVER_MIN = Configuration::recoverMin;
    static constexpr float const& RECOVER_DEC = Configuration::recoverDec;
    static constexpr float const& EFFORT_INIT = Configuration::effortInit;
    static constexpr float const& EFFORT_DEC_THR = Configuration::effortDecThr;
    static constexpr float const& EFFORT_MIN = Configuration::effortMin;
    static constexpr float const& EFFORT_DEC = Configuration::effortDec;
    static constexpr float const& EFFORT_INC_THR = Configuration::effortIncThr;
    static constexpr float const& EFFORT_INC = Configuration::effortInc;
    static constexpr float const& INERTIA_MOMENT = Configuration::inertiaMoment;
    static constexpr float const& DASH_POWER_RATE = Configuration::dashPowerRate;
    static constexpr float const& KICK_POWER_RATE = Configuration::kickPowerRate;
    static constexpr float const& KICKABLE_MARGIN = Configuration::kickableMargin;
    static constexpr float const& MAX_POWER = Configuration::maxPower;
    static constexpr float const& MIN_POWER = Configuration::minPower;
    static constexpr float const& MAX_MOMENT = Configuration::maxMoment;
    static constexpr float const& MIN_MOMENT = Configuration::minMoment;
    static constexpr float const& MAX_NECK_ANGLE = Configuration::maxNeckAngle;
    static constexpr float const& MIN_NECK_ANGLE = Configuration::minNeckAngle;
    static constexpr float const& VISIBLE_ANGLE = Configuration::visibleAngle;
    static constexpr float const& VISIBLE_DIST = Configuration::visibleDist;
    static constexpr float const& KICKABLE_AREA = Configuration::kickableArea;
    static constexpr int const& SAY_MSG_SIZE = Configuration::sayMsgSize;

    /// Clockwise (world-model) directions in degrees, [0, 360) for the agent; UNDEFINED_FLOAT or
    /// infinite when unknown. For other players these are the numbers of the see message.
    float bodyDirection = 0;
    float headDirection = 0;
    int unum = 0; ///< shirt number 1 to 11, 0 when unknown
    bool goalie = false;
    bool opponent = false;

    // Formation points; only the agent's own are ever filled.
    Vector2D attackPosition;
    Vector2D homePosition;
    Vector2D initialPosition;

    Player() = default;
    Player(Vector2D pos, Vector2D vel, float bodyDir, float headDir, int shirt, bool isKeeper,
           bool isOther)
        : MovingObject(pos, vel), bodyDirection(bodyDir), headDirection(headDir), unum(shirt),
          goalie(isKeeper), opponent(isOther) {}

    bool isGoalie() const { return goalie; }
    bool isOpponent() const { return opponent; }
    bool isSamePlayerAs(Player const& other) const {
        return unum == other.unum && opponent == other.opponent;
    }

    using MovingObject::predictedPosition;
    /// `cycles` ahead: first turning by `turnAngle` (degrees, counter-clockwise), standing still
    /// meanwhile, then dashing with `dashPower` in every cycle. Stamina is not modelled.
    Vector2D predictedPosition(int cycles, float dashPower, float turnAngle) const;

    /// An estimate of the cycles to reach `target`, the turn included; within 1.5 metres of it when
    /// `useKickableMargin`.
    int predictedCyclesToPoint(Vector2D target, bool useKickableMargin) const;

protected:
    /// The prediction that Player and Myself share: `push()` tells, once for every cycle that is
    /// not spent turning, the speed that its dash adds.
    template <typename Push>
    Vector2D predictedWay(int cycles, float turnAngle, Push push) const;
};

/// Whether a search found p; no result is nobody.
inline bool isSamePlayer(Player const* found, Player const& p) {
    return found != nullptr && found->isSamePlayerAs(p);
}

/// One cycle of a predicted turn: turns `bodyDirection` (clockwise, [0, 360)) towards the end of
/// `remainingTurn` as far as inertia lets it at `speed`, and takes that off the remaining turn.
void turnOneCycle(float& bodyDirection, float& remainingTurn, float speed);

template <typename Push>
Vector2D Player::predictedWay(int cycles, float turnAngle, Push push) const {
    if (position.isInvalid() || velocity.isInvalid()) return position;
    Vector2D predicted = position;
    Vector2D v = velocity;
    float body = bodyDirection;
    float remainingTurn = turnAngle;
    for (int i = 0; i < cycles; ++i) {
        if (remainingTurn != 0.0F) {
            // Intentional: a turning player is taken to stand; it neither moves nor slows down.
            turnOneCycle(body, remainingTurn, v.getLength());
            continue;
        }
        v += Vector2D(push(), body, POLAR);
        Kinematics::clampSpeed(v, SPEED_MAX);
        predicted += v;
        v *= DECAY;
    }
    return predicted;
}
