#pragma once

#include "geometry/Vector2D.h"
#include "worldmodel/Formation.h"

class Ball;
class Effectors;
class Myself;
class Player;
class WorldModel;

/// What getBall() is wanted for. No rule looks at it yet.
enum Mode { WALK_TO_BALL = 0, DRIBBLE_BALL = 1, RUN_TO_BALL = 2 };

/// All that the agent can do, from one step towards the ball to the decision of a whole cycle.
///
/// Initialised by `Agent`; all state is class-level and belongs to the main thread. A skill looks
/// at the world model as it is now and queues at most one body and one neck command (a second neck
/// command of the same cycle goes out too, but the server obeys the first); it never waits. Unless
/// stated otherwise it returns true when done and false when it queued a movement or could not act.
/// Positions are in the agent's frame (own goal at negative x), metres; powers are the server's, up
/// to 100. Values of "player.conf" are taken at a skill's first use.
///
/// Sources: Basic (move, face, catch), Kicks (kick, pass, shoot, clear), Positioning, FieldPlayer
/// and Goalie (the decisions of a cycle), Report (say messages and the timing of the sees).
class SkillPool {
public:
    /// Takes over the agent's world model and effectors. They are handed in, since reaching for
    /// `Agent` would make this folder include the one above it.
    static void initialize(WorldModel* model, Effectors* commands);

    /// The case of the behaviour that the last decision took, as one word; of several steps the
    /// last. For study: nothing in play reads it.
    static char const* takenCase() { return theCase; }
    /// Notes the case at the place where it is chosen. `name` lives as long as the program.
    static void take(char const* name) { theCase = name; }

    static constexpr float FULL_POWER = 100.0F; ///< of a dash or kick, as the server counts it
    /// A goalkeeper holds a ball that is this near, metres.
    static constexpr float AT_HAND = 2.0F;
    // How fast a pass arrives in set pieces, metres per cycle.
    static constexpr float SET_PIECE_END_SPEED = 1.2F;
    static constexpr float LONG_PASS_END_SPEED = 1.5F;

    /// @name Basic skills (SkillPool_Basic.cpp)
    /// @{
    /// Goes to the ball, or to where it can be met. True when it is in reach: 0.8 metres to kick,
    /// 1.8 metres to catch; false also when nobody knows where it is.
    static bool getBall(float power, bool forCatch, Mode mode);
    /// Dashes to where the ball will be, if one dash gets there; true when it was queued.
    static bool interceptClose();
    /// Turns or dashes (negative power: backwards) towards the target; true when already closer
    /// than `tolerance`.
    static bool goToPoint(Vector2D target, float tolerance, float power);
    /// The facing skills return false for an invalid point only.
    static bool faceOnlyBodyToPoint(Vector2D point);
    static bool faceOnlyNeckToPoint(Vector2D point);
    static void faceNeckToPoint(Vector2D /*point*/) {} ///< does nothing yet
    static bool faceNeckAndBodyToPoint(Vector2D point);
    static bool faceOnlyBodyToBall();
    static bool faceOnlyNeckToBall();
    static void faceNeckToBall(); ///< does nothing yet
    static bool faceNeckAndBodyToBall();
    /// Sweeps the neck in steps of 45 degrees, then swings it back.
    static void scanFieldWithNeck();
    static void scanFieldWithBody();
    /// True when the ball was catchable and a catch is queued.
    static bool catchBall();
    /// @}

    /// @name Kicking (SkillPool_Kicks.cpp)
    /// @{
    /// False only when nobody knows where the ball is.
    static bool simpleDribbleToPoint(Vector2D target, int power);
    /// True when a stopping kick was queued; false also when the ball is slow enough as it is.
    static bool stopBall();
    /// Makes the ball go towards the target. Not limited to what the server allows; no kick at all
    /// when the power is no finite number.
    static void kickToPoint(Vector2D target, float power, bool fastest);
    /// False when the ball is not kickable. `endSpeed`: of the ball when it arrives.
    static bool passBall(Player const* receiver, float endSpeed);
    static bool passBallToPos(Vector2D target, float endSpeed);
    /// True when there was somebody to pass to.
    static bool passIfHaveACandidate(bool wellPositioned, float endSpeed);
    /// False when the ball is not kickable.
    static bool scoreGoal();
    /// Whether the ball should be stopped before it is played.
    static bool shouldStopBall();
    /// Clears the ball, straight over the nearer touch line or towards the opponents.
    static void kickAway(bool toSide);
    /// @}

    /// @name Positioning (SkillPool_Positioning.cpp)
    /// @{
    static constexpr auto& attractionX = Formation::attractionX;
    static constexpr auto& attractionY = Formation::attractionY;
    static constexpr auto& maxX = Formation::maxX;
    static constexpr auto& minX = Formation::minX;
    static constexpr auto& behindBall = Formation::behindBall;

    /// Fills the agent's formation points, as soon as its shirt number is known.
    static void initializePositioning();
    static bool goToStrategicPosition();
    /// Takes up the place without the ball. The result is that of the facing skill used last.
    static bool doPositioning();
    /// True when arrived; a number without a place at corners counts as arrived.
    static bool goToPositionOurCKick();
    static bool goToPositionTheirCKick();
    static void moveToInitialPosition();
    /// @}

    /// @name The decision of a field player (SkillPool_FieldPlayer.cpp)
    /// @{
    static void fieldPlayerGeneralBehaviour();
    static void playOnBehavior();
    /// One decision of our set piece: look around for the first `minDelay` of them, for a receiver
    /// for `scanDelay` more. True while it is under way; false when the time is up or a pass was
    /// just made.
    static bool performKickIn(bool wellPositioned, int minDelay, int scanDelay, float endSpeed);
    /// @}

    /// @name The decision of the goalkeeper (SkillPool_Goalie.cpp)
    /// @{
    static void goalieGeneralBehaviour();
    static void goaliePlayOn();
    /// Takes up the place between ball and goal.
    static void goaliePositioning();
    /// One decision of the goalkeeper's own free kick; true in the one in which it kicked.
    static bool performGoalieFreeKick();
    static Vector2D findGoalieKickOffPoint();
    static void resetGoalieFlags();
    /// @}

    /// @name Reports (SkillPool_Report.cpp)
    /// @{
    static char do_ascii(float v);
    static float fit_do_ascii(float v);
    /// Tells the team-mates where the ball is, if that is known.
    static void reportWorldModelStatus();
    /// Asks the server once for sees at a good moment of the cycle.
    static void doSSProfiling();
    /// @}

private:
    /// How much of a kick's power reaches the ball where it lies now.
    static float kickRateOfBall();
    static bool atInitialPosition();
    /// True when the agent is there; otherwise asks the server to put it there.
    static bool takeInitialPosition();
    static void reportIfClosestToBall();
    /// Before the kick-off: whether the cycle goes to the timing of the sees.
    static bool profileSeeTiming();

    inline static char const* theCase = "none";
    inline static WorldModel* worldModel = nullptr;
    inline static Effectors* effectors = nullptr;
    inline static Myself* myself = nullptr;
    inline static Ball* ball = nullptr;

    /// Set when the goalkeeper has just kicked its free kick, so that it does not catch it again.
    inline static bool PERFORMED_GOALIE_KICK = false;
    inline static int kickedTime = 0; ///< cycle of that kick
    inline static int catchTime = 0;  ///< cycle of the last catch command
};

/// The dash power that moves the agent by `move` along its body in one cycle. `bodyAngle`:
/// clockwise.
float calcPowerForDash(Vector2D move, float bodyAngle, float effort);

/// How far a shot is aimed beside its mark, metres, by the direction of the goal (degrees from the
/// x axis, counter-clockwise). NaN for a goal that lies behind.
float calcAngleOffset(float angle);
