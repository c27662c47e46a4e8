#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "gamelog/Records.h"
#include "practice/Vector.h"

namespace practice {

enum class Side : int { left = 0, right = 1, none = 2 };

constexpr int index(Side side) {
    return static_cast<int>(side);
}
constexpr Side other(Side side) {
    return side == Side::left ? Side::right : Side::left;
}
/// +1 for the team that attacks to the right, -1 for the other.
constexpr double sign(Side side) {
    return side == Side::left ? 1.0 : -1.0;
}
constexpr char letter(Side side) {
    return side == Side::left ? 'l' : 'r';
}

/// An array indexed by the ints that stand for players and sides.
template <typename T, int COUNT>
struct Table : std::array<T, COUNT> {
    T& operator[](int i) { return this->data()[i]; }
    T const& operator[](int i) const { return this->data()[i]; }
};

/// What is being played. The side of a mode HAS the ball (set pieces, goal) or is the OFFENDER
/// (offside, backPass, freeKickFault, catchFault); beforeKickOff, playOn, dropBall and timeOver
/// have none. The modes from pause to penaltyScore and from foulCharge on are set by a trainer
/// only.
// clang-format off
enum class Phase {
    beforeKickOff, playOn, timeOver, dropBall,
    pause, humanJudge, firstHalfOver,
    penaltyKick, penaltySetup, penaltyReady, penaltyTaken, penaltyMiss, penaltyScore,
    kickOff, kickIn, freeKick, indirectFreeKick, cornerKick, goalKick,
    goal, offside, backPass, freeKickFault, catchFault,
    foulCharge, foulPush, foulMultipleAttack, foulBallout, illegalDefense
};
// clang-format on

struct PlayMode {
    Phase phase = Phase::beforeKickOff;
    Side side = Side::none;

    friend bool operator==(PlayMode const&, PlayMode const&) = default;
    bool operator==(Phase p) const { return phase == p; }

    std::string word() const; ///< of the protocol, such as "kick_in_l"
    /// Somebody is to take it.
    bool isSetPiece() const { return phase >= Phase::kickOff && phase <= Phase::goalKick; }
    /// Offside and the faults: the clock stands until the free kick.
    bool isOffence() const { return phase >= Phase::offside; }
    /// Lasts until a trainer sets another mode; nobody dashes or kicks.
    bool isHeld() const { return phase >= Phase::pause && phase <= Phase::penaltyScore; }
    bool isStopped() const; ///< the clock stands still
};

/// The mode of a word of the protocol; nothing for a word that is none.
std::optional<PlayMode> playModeOf(std::string_view word);

enum class Width { narrow, normal, wide };
enum class Quality { high, low };

struct View {
    Width width = Width::normal;
    Quality quality = Quality::high;
};

/// Executed commands since joining, as sense_body reports them.
struct Counts {
    int kick = 0, dash = 0, turn = 0, say = 0, turnNeck = 0, catches = 0, move = 0, changeView = 0;
};

/// Anything that moves: metres, metres per cycle.
struct Movable {
    Vec pos, vel, acc; ///< the acceleration is collected until the next step

    void halt() { vel = acc = Vec{}; }
};

struct Player : Movable {
    Side side = Side::none;
    int unum = 0; ///< 1 to 11
    bool goalie = false;
    bool joined = false; ///< its number is taken and is never given again
    bool active = false; ///< on the pitch

    double body = 0.0, neck = 0.0; ///< radians, the neck relative to the body
    double stamina = 0.0, effort = 0.0, recovery = 0.0;
    double extra = 0.0;    ///< stamina to fall back on when `stamina` is empty
    double capacity = 0.0; ///< what can still be recovered in this half
    View view;
    Counts counts;
    int ticksSinceSee = 0;
    int catchBan = 0;            ///< steps until the goalie may try again
    int goalieMoves = 0;         ///< with the ball it holds now
    Table<int, 2> hearing{1, 1}; ///< capacity for messages of own team, of opponents
    int refused = 0;             ///< datagrams that could not be understood
    int spareNeckTurns = 0;      ///< beyond the one that a cycle allows
    int answers = 0;             ///< bundles of datagrams, one for a cycle
    int lateAnswers = 0;         ///< of these, not in the cycle for which they were meant
    long lastAnswer = -1;        ///< the poll at which it came
    bool lost = false;           ///< it left before the end of the match
    int missed = 0;              ///< cycles in which the server waited for it in vain

    bool discarded = false; ///< taken off the pitch by a human
    /// What happened to it since the last step, as bits of gamelog::state; cleared at the first
    /// poll after the step that ends with them.
    std::uint32_t marks = 0;

    /// Commands of the running cycle, cleared by the step.
    bool answered = false, sightSent = false;
    bool done = false; ///< it has said that no more commands come
    bool bodyUsed = false, neckUsed = false, dashing = false;
    double dashPower = 0.0;
    double dashDir = 0.0;                        ///< radians, relative to the body
    double pendingTurn = 0.0, pendingNeck = 0.0; ///< radians

    double gaze() const { return normalized(body + neck); }
    void restoreStamina();
};

/// A player is named by its index: the left team 0 to 10, then the right.
inline constexpr int PLAYERS_PER_TEAM = 11;
inline constexpr int MAX_PLAYERS = 2 * PLAYERS_PER_TEAM;
inline constexpr int NOBODY = -1;

constexpr int playerId(Side side, int unum) {
    return index(side) * PLAYERS_PER_TEAM + unum - 1;
}
inline int playerId(Player const& p) {
    return playerId(p.side, p.unum);
}

/// Where a player stands who has just joined, outside the touch line, or who is not there.
inline Vec touchlinePlace(Player const& p) {
    return {-3.0 * sign(p.side) * p.unum, -37.0};
}

/// The whole state of a match.
struct World {
    Movable ball;
    Table<Player, MAX_PLAYERS> players;
    Table<std::string, 2> teamNames; ///< empty: not taken yet
    Table<int, 2> score{};
    PlayMode mode;
    int cycle = 0;
    int stoppedSteps = 0; ///< steps since the cycle last grew
    int halfCycles = 3000;
    int ballHolder = NOBODY; ///< goalie with the ball in its hands

    World();

    Player const& player(int id) const { return players[id]; }
    Player& player(int id) { return players[id]; }
    std::string const& teamName(Side side) const { return teamNames[index(side)]; }
    int goals(Side side) const { return score[index(side)]; }
    bool anybodyActive() const { return std::ranges::any_of(players, &Player::active); }
    long joinedCount() const { return std::ranges::count_if(players, &Player::joined); }
};

} // namespace practice
