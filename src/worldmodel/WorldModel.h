#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <pthread.h>
#include <span>
#include <sys/time.h>
#include <vector>

#include "config/Configuration.h"
#include "worldmodel/ArrivalClock.h"
#include "worldmodel/Field.h"
#include "worldmodel/Situation.h"

/// A wall-clock time that one thread stamps and another reads: microseconds in one lock-free word.
class TimeStamp {
public:
    void set(std::int64_t microseconds) { microseconds_ = microseconds; }
    void set(timeval const& time);
    timeval get() const;
    friend bool operator>(TimeStamp const& a, TimeStamp const& b) {
        return a.microseconds_ > b.microseconds_;
    }

private:
    std::atomic<std::int64_t> microseconds_ = 0;
    static_assert(std::atomic<std::int64_t>::is_always_lock_free);
};

/// The agent's picture of the match.
///
/// Created by `Agent` as the first of its parts; there is one. Two threads meet here: the sense
/// thread stamps the arrival of a see or sense_body and so wakes the main thread; the main thread
/// integrates what the sensors hold and lets the behaviours ask. Everything but the stamps and the
/// wake-up belongs to the main thread alone, and the mutex guards only the wake-up.
///
/// Frame: the agent's own, own goal at negative x, top touch line at negative y, metres. Directions
/// are clockwise degrees in the sense of geometry/Angles.h: minus the server's, modulo 360.
///
/// The model remembers no players: it knows those of the last see. The ball is kept between sees
/// and rolled forward.
///
/// The questions come in two forms, a yes or no and a reliability ending in `Rel`. Sources:
/// LowLevel (news and integration), Estimation (where am I, where is the ball), HighLevel
/// (searches), Possession, Tactics, Positions, Checks.
class WorldModel {
public:
    /// Cycles since the ball was heard of after which a see without it gives it up. When it was
    /// last seen does not count.
    static constexpr int BALL_MEMORY = 3;
    /// Cycles for which a ball seen without velocity still counts as moving.
    static constexpr int BALL_VELOCITY_MEMORY = 2;
    /// The answer of a reliability that nobody has worked out yet.
    static constexpr float NOT_WORKED_OUT = 0.0F;

    WorldModel();
    virtual ~WorldModel() = default;
    WorldModel(WorldModel const&) = delete;
    WorldModel& operator=(WorldModel const&) = delete;

    /// @name Parts of the picture
    /// @{
    /// All data of these two belongs to their classes; the objects only give access to it.
    Configuration const& configuration() const { return configuration_; }
    Field const& field() const { return field_; }
    Situation& situation() { return situation_; }
    Situation const& situation() const { return situation_; }
    Myself& myself() { return situation_.myself; }
    Myself const& myself() const { return situation_.myself; }
    Ball& ball() { return situation_.ball; }
    Ball const& ball() const { return situation_.ball; }
    /// The agent itself first, then the team-mates of the last see.
    std::vector<Player> const& teammates() const { return situation_.myTeam.players; }
    std::vector<Player> const& opponents() const { return situation_.theirTeam.players; }
    int currentTime() const { return situation_.currentTime; }
    /// Commands queued since the start.
    ServerCommandCounters& queuedCommands() { return queuedCommands_; }
    ServerCommandCounters const& queuedCommands() const { return queuedCommands_; }
    char const* teamname() const { return teamname_.data(); }
    void setTeamname(char const* name);
    bool isGoalie() const { return situation_.myself.goalie; }
    void setGoalie(bool goalie) { situation_.myself.goalie = goalie; }
    /// @}

    /// @name News (WorldModel_LowLevel.cpp)
    /// @{
    /// Main thread: blocks until there is news; false after two to three seconds of silence.
    bool waitForNewInfo();
    /// Sense thread: stamps the see, the sense_body that the sensors have kept, hands it over to
    /// main and wakes it.
    void setTimeLastSee();
    void setTimeLastSB();
    void signalNewInfo();
    /// The thread that receives: from now on time is counted by the messages; the server waits for
    /// the commands of the cycle.
    void countMessages() { clock_.countMessages(); }
    void noteThink() { clock_.think(); }
    /// Main thread: takes over all that is new, in a fixed order; true if a sense_body or a see was
    /// among it.
    bool integrateSensorInfo();

    timeval timeLastSee() const { return lastSee_.get(); }
    timeval timeLastSB() const { return lastSenseBody_.get(); }
    /// Whether the last see is later than the last sense_body, and so the cycle has had its see.
    bool seeIsNewerThanSenseBody() const { return lastSee_ > lastSenseBody_; }
    int cycleOfLastSee() const { return lastSeeCycle_; }
    int cycleOfLastSB() const { return lastSenseBodyCycle_; }
    int seesSinceLastSB() const { return seesSinceSenseBody_; }
    /// Whether a sense_body came since the last call.
    bool takeSenseBodyArrived() { return senseBodyArrived_.exchange(false); }
    /// Whether the timing of the sees against the sense_bodies was asked for and is left alone.
    bool seeTimingSettled() const { return seeTimingRequests_ != 0; }
    void setSeeTimingSettled() { seeTimingRequests_ = 1; }
    /// @}

    /// @name State estimation (WorldModel_Estimation.cpp); called by integrateSensorInfo
    /// @{
    /// Sets the agent's directions from the lines, and its position from the three nearest flags,
    /// the nearer the heavier; without a flag the position stays.
    void performSelfLoc(std::span<RCC_Line const> lines, std::span<RCC_Flag const> flags);
    /// Moves agent and ball one cycle on, by the commands of the last cycle and the body report.
    void estimateCurrentState();
    /// The ball's velocity after the agent's own kick. `direction`: of the kick, relative to the
    /// body, counter-clockwise, degrees.
    Vector2D estimateBallVelocity(float power, float direction) const;
    /// @}

    /// @name Searches (WorldModel_HighLevel.cpp)
    /// Null when nobody qualifies; of equals the first in the list, team-mates before opponents.
    /// @{
    Player const* closestPlayerToPoint(Vector2D point) const; ///< only players of known age
    Player const* closestTeamMateToPoint(Vector2D point) const;
    Player const* closestOpponentToPoint(Vector2D point) const;
    Player const* closestOpponentToMe() const;
    Player const* closestTeammateToMe() const; ///< the agent itself counts
    Player const* closestOpponentToTeammate(Player const& p) const;
    Player closestPlayerToPlayer(Player const& p) const; ///< p itself counts
    Player const* playerWithBall() const;
    /// Farther than the closest team-mate: an opponent nearer than that is never the result.
    Player const* secondClosestPlayerToPoint(Vector2D point) const;
    Player const* secondClosestTeamMateToPoint(Vector2D point) const;
    Player const* lastMan() const; ///< never the agent itself
    Player const* closestTeamMateToOwnGoalOutLine() const;
    Player const* closestOppFieldPlayerToOppGoalOutLine() const; ///< number 1 is no field player
    Player const* wellPositionedPlayer() const;
    /// The team-mate farthest from the last opponent of the list.
    Player const* mostUnvulnerablePlayer() const;
    /// The team-mate to pass to: the best placed one, or else the least exposed one.
    Player const* getPassCand(bool wellPositioned) const;
    /// Whether p gets to the ball within 24 cycles; `point` and `cycles` tell where and how soon
    /// (on failure: those of the last try). `useKickableMargin`: near it is enough.
    bool interceptionPoint(Player const& p, Vector2D& point, int& cycles,
                           bool useKickableMargin) const;
    Player const* fastestTeammateInterceptingBall() const;
    int numOpponentsWithinRectangle(Rectangle const& r) const;
    int numTeammatesWithinRectangle(Rectangle const& r) const;
    int numOpponentsWithin(float const& radius, Vector2D centre) const;
    int numTeammatesWithin(float const& radius, Vector2D centre) const;
    /// Whether the sees come early or late enough in the cycle to be used.
    bool haveOptimalSeeTimes() const;
    /// @}

    /// @name Possession and closeness (WorldModel_Possession.cpp)
    /// @{
    bool haveBall() const;
    float haveBallRel() const;
    bool hasBall_Player(Player const& p) const;
    float hasBall_PlayerRel(Player const& p) const;
    bool hasBall_Team() const;
    float hasBall_TeamRel() const;
    bool isCatchable() const;
    bool isInKickableArea() const;
    float isInKickableAreaRel() const { return NOT_WORKED_OUT; }
    /// After `cycles` cycles of dashing with `dashPower`.
    bool willBeInKickableArea(int cycles, float dashPower) const;
    bool beingClosestToBall() const;
    float beingClosestToBallRel() const;
    bool beingSecondClosestToBall() const;
    float beingSecondClosestToBallRel() const { return 1.0F; } ///< not worked out
    bool beingClosestTeamMateToBall() const;
    bool beingSecondClosestTeamMateToBall() const;
    bool isClosestToBall(Player const& p) const;
    float isClosestToBallRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    bool beingClosestToPoint(Vector2D point) const;
    float beingClosestToPointRel(Vector2D /*point*/) const { return NOT_WORKED_OUT; }
    bool isClosestToPoint(Vector2D point, Player const& p) const;
    float isClosestToPointRel(Vector2D /*point*/, Player const& /*p*/) const {
        return NOT_WORKED_OUT;
    }
    // These compare the closest player with p, not with the agent. So they do not answer "am I the
    // closest to p": they are true when the player found at p's place is p itself.
    bool beingClosestTeamMateToPlayer(Player const& p) const;
    float beingClosestTeamMateToPlayerRel(Player const& p) const;
    bool beingSecondClosestTeamMateToPlayer(Player const& p) const;
    bool beingClosestToPlayer(Player const& p) const;
    float beingClosestToPlayerRel(Player const& p) const;
    bool beingSpaced(Player const& p) const;
    float beingSpacedRel(Player const& p) const;
    bool isOpponent(Player const& p) const;
    float isOpponentRel(Player const& p) const;
    bool isTeamMate(Player const& p) const;
    float isTeamMateRel(Player const& p) const;
    bool isInArea(Player const& /*p*/) const { return true; } ///< not worked out
    float isInAreaRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    /// @}

    /// @name Tactics (WorldModel_Tactics.cpp)
    /// @{
    bool isOnField(Vector2D point) const;
    float isOnFieldRel(Vector2D /*point*/) const { return NOT_WORKED_OUT; }
    bool beingOnField() const;
    float beingOnFieldRel() const;
    /// Intentional: judged along y, towards the bottom touch line; the behaviours are tuned to it.
    bool isOffside(Player const& p) const;
    bool isOffside(Vector2D point) const;
    float isOffsideRel(Player const& p) const; ///< needs an opponent field player
    bool beingOffside() const;
    bool beingLastMan() const; ///< lastMan() is never the agent
    float beingLastManRel() const;
    bool isLastMan(Player const& p) const;
    float isLastManRel(Player const& p) const;
    bool beingInAttackPosition() const;
    float beingInAttackPositionRel() const { return NOT_WORKED_OUT; }
    bool beingInDefensePosition() const;
    bool beingInOptimalPosition() const;
    float beingInOptimalPositionRel() const { return NOT_WORKED_OUT; }
    bool isAGoodPointToScore(Vector2D point) const;
    float isAGoodPointToScoreRel(Vector2D /*point*/) const { return NOT_WORKED_OUT; }
    bool beingAtGoodPointToScore() const;
    float beingAtGoodPointToScoreRel() const { return NOT_WORKED_OUT; }
    bool isAtGoodPointToScore(Player const& p) const;
    float isAtGoodPointToScoreRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    bool beingFrontalAttacked() const;
    float beingFrontalAttackedRel() const { return NOT_WORKED_OUT; }
    bool isFrontalAttacked(Player const& p) const;
    float isFrontalAttackedRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    bool beingAttacked() const;
    float beingAttackedRel() const { return NOT_WORKED_OUT; }
    bool isAttackedTeammate(Player const& p) const;
    float isAttackedTeammateRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    bool isAttackedOpponent(Player const& p) const;
    float isAttackedOpponentRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    /// Intentional: true when an opponent is NEAR p, or none is known, the reverse of its name; the
    /// behaviours are tuned to it.
    bool isNotMarked(Player const& p) const;
    float isNotMarkedRel(Player const& /*p*/) const { return NOT_WORKED_OUT; }
    /// Whether a player stands in the way of a ball from `from` (default: the ball) to `to`.
    bool isIntersected(Vector2D from, Vector2D to) const;
    bool isIntersected(Vector2D to) const;
    bool isCloseToOwnGoalOutLine(Player const& p) const;
    float isCloseToOwnGoalOutLineRel(Player const& p) const;
    bool isCloseToOpponentGoalOutLine(Player const& p) const;
    float isCloseToOpponentGoalOutLineRel(Player const& p) const;
    bool beingCloseToOwnGoalOutLine() const;
    float beingCloseToOwnGoalOutLineRel() const;
    bool beingCloseToOpponentGoalOutLine() const;
    float beingCloseToOpponentGoalOutLineRel() const;
    bool isInAnyRectangle(Vector2D point, Rectangle const& r) const;
    float isInAnyRectangleRel(Vector2D /*point*/, Rectangle const& /*r*/) const {
        return NOT_WORKED_OUT;
    }
    bool isInAnyRectangle(Player const& p, Rectangle const& r) const;
    float isInAnyRectangleRel(Player const& /*p*/, Rectangle const& /*r*/) const {
        return NOT_WORKED_OUT;
    }
    bool beingInAnyRectangle(Rectangle const& r) const;
    float beingInAnyRectangleRel(Rectangle const& /*r*/) const { return NOT_WORKED_OUT; }
    bool isWellPositioned(Player const& p) const;
    bool isUnvulnerable(Player const& p) const;
    /// @}

    /// @name Formation (WorldModel_Positions.cpp)
    /// @{
    /// Where shirt number `unum` (1 to 11) stands without the ball, seen from its home position.
    Vector2D calcSBSPPosition(int unum) const;
    /// Whether the agent's is the field player's home position nearest to `pos`; false for
    /// number 1.
    bool isMyHomePosClosestToPos(Vector2D pos) const;
    /// @}

    /// @name Tools for debugging (WorldModel_Checks.cpp), which nothing in play calls
    /// A check aborts with an assertion's report at the first impossible value, in every build
    /// type. It expects directions in [0, 360], so a see that tells a player's body or head may
    /// stop it: those are kept as the message has them.
    /// @{
    void checkBall();
    void checkMyself();
    void checkPlayer(Player const& p) const;
    void checkTeammate(Player const& p) const;
    void checkOpponent(Player const& p) const;
    void checkMyTeam();
    void checkTheirTeam();
    void checkUnknownPlayers();
    // Places for a breakpoint: each takes a copy of its object and prints nothing.
    void printSenseBody();
    void printMyself();
    void printMyTeam();
    void printTheirTeam();
    void printUnknownPlayers();
    void printBall();
    void printInit() {}
    /// @}

private:
    void integrateSenseBody(RCC_SenseBody const& report);
    void integrateSee();
    Vector2D integratePlayers();
    void integrateSeenBall(RCC_Ball const& seen, Vector2D const& lastPlayerVelocity);
    void integrateInitMsg(RCC_InitMsg const& msg);
    Player playerFromSee(RCC_Player const& seen, bool opponent) const;
    bool isMe(Player const* found) const { return isSamePlayer(found, myself()); }
    /// The player closest to the point among those farther from it than the closest team-mate.
    Player const* secondClosest(Vector2D point, bool amongOpponentsToo) const;

    Configuration configuration_;
    Situation situation_;
    Field field_;
    ServerCommandCounters queuedCommands_;
    std::array<char, 256> teamname_{};

    pthread_mutex_t mutex_{};
    pthread_cond_t condition_{};
    std::atomic<bool> newInfo_ = false;

    // Written by the sense thread, read by main.
    std::atomic<bool> senseBodyArrived_ = false;
    std::atomic<int> lastSeeCycle_ = 0;
    std::atomic<int> lastSenseBodyCycle_ = 0;
    std::atomic<int> seesSinceSenseBody_ = 0;
    TimeStamp lastSee_;
    TimeStamp lastSenseBody_;
    // Only for the thread that receives.
    ArrivalClock clock_;
    int newestSenseBody_ = 0; ///< its cycle

    int seeTimingRequests_ = 0;
};
