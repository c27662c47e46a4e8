#pragma once

#include <sys/time.h>

#include "geometry/Vector2D.h"

class WorldModel;

/// Small calculations for the skills, under one name: angles as the agent sees them, and the
/// formulas of geometry, physics and time that lower folders hold.
///
/// Angles to points are bearings (see geometry/Bearings.h). Initialised by `Agent` once its world
/// model exists; the angle functions read it, so they are the main thread's.
class Utils {
public:
    /// Takes over the agent's world model, handed in as for SkillPool::initialize().
    static void initialize(WorldModel const* model);

    /// From the agent, or from `from`, to a point; what is below half a degree counts as 0. NaN for
    /// the point itself.
    static float calcAngleToPoint(Vector2D p);
    static float calcAngleToPoint(Vector2D from, Vector2D to);
    static float calcAngleToBall();
    /// Relative to the agent's body or head, clockwise, [0, 360).
    static float calcAngleToPointRel2Body(Vector2D p);
    static float calcAngleToBallRel2Body();
    static float calcAngleToBallRel2Head();

    /// The part of a dash power (negative: backwards) that keeps the stamina above the threshold
    /// below which effort is lost.
    static float correctDashPowerForStamina(float power, float stamina);
    /// How much of a kick's power reaches the ball: 1 with the ball at the foot straight ahead.
    /// `dist` in metres between the centres, `dir` in degrees from the body, either sign.
    static float calculateKickRate(float dist, float dir);
    /// Full width of the view cone in degrees by a width from 1 (narrow) to 3 (wide); otherwise
    /// NaN.
    static float viewQualToAngle(int viewWidth);
    /// Intentional: viewQualToAngle of the agent's view width as it is, although those numbers
    /// start one lower (see ViewMode). NaN when the view is narrow, else the next narrower cone.
    static float getViewAngle();
    /// The speed at which the ball must start to cover `dist` and arrive with `endSpeed`.
    static float calcKickSpeedToTravel(float dist, float endSpeed);
    static float calcInitSpeedFromEndSpeed(float endSpeed, float cycles);
    /// The turn that a turn command of `angle` achieves at `speed`, and the command for a turn.
    static float calcActualTurnAngle(float angle, float speed);
    static float calcAngleForTurn(float angle, float speed);

    /// `tv` plus less than 1000 milliseconds.
    static timeval timerAddMsec(timeval const* tv, int msec);
    /// a - b in whole milliseconds.
    static int timerDiffMsec(timeval const* a, timeval const* b);

    /// The value of a symbol of a say message, 0 to 54; 999 for any other character.
    static float doAsciiToFloat(char c);

private:
    inline static WorldModel const* worldModel = nullptr;
};
