#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

#include "parser/RCC_Memory.h"

// What messages become, apart from the parameters. Records are plain values: copying one copies
// bytes and allocates nothing.

/// Marks a quantity that a message did not carry.
inline constexpr float RCC_ABSENT = std::numeric_limits<float>::infinity();

/// An angle as the server counts it: clockwise, 0 straight ahead of whatever it is relative to.
/// Infinite when absent. The parser always delivers degrees.
struct RCC_Angle {
    enum class Unit { degrees, radians };

    float value = RCC_ABSENT;
    Unit unit = Unit::degrees;

    bool isAbsent() const { return value == RCC_ABSENT; }

    float degrees() const {
        constexpr double INVERSE_PI = 0.3183098861837907;
        if (unit == Unit::degrees) return value;
        return static_cast<float>(value * (180 * INVERSE_PI));
    }
};

/// Text of at most CAPACITY characters, held in place: copying it never allocates. What does not
/// fit is cut off.
template <std::size_t CAPACITY>
class RCC_FixedText {
public:
    RCC_FixedText() = default;
    explicit(false) RCC_FixedText(std::string_view text) { assign(text); }

    void assign(std::string_view text) {
        length_ = std::min(text.size(), CAPACITY);
        std::copy_n(text.data(), length_, storage_.begin());
        storage_[length_] = '\0';
    }

    std::string_view view() const { return {storage_.data(), length_}; }
    char const* c_str() const { return storage_.data(); }
    std::size_t size() const { return length_; }
    bool empty() const { return length_ == 0; }

    friend bool operator==(RCC_FixedText const& text, std::string_view other) {
        return text.view() == other;
    }

private:
    std::size_t length_ = 0;
    std::array<char, CAPACITY + 1> storage_{};
};

/// A said, heard or reported text.
using RCC_Text = RCC_FixedText<512>;

// --- What the agent sees ---

/// What a see tells of any object. Directions are relative to the gaze (head) direction, clockwise.
/// With low view quality there is a direction only.
struct RCC_SeenObject {
    float distance = RCC_ABSENT; ///< metres
    RCC_Angle direction;
    float speed = RCC_ABSENT; ///< change of distance, metres per cycle
    RCC_Angle speedDirection; ///< change of direction per cycle

    bool hasDistance() const { return distance != RCC_ABSENT; }
    bool hasSpeed() const { return speed != RCC_ABSENT; }
};

/// A side line; code 2 top, 3 bottom, 4 left, 5 right.
struct RCC_Line : RCC_SeenObject {
    int code = 0;
};

/// A flag or a goal. The code is written with the digits 2 top, 3 bottom, 4 left, 5 right,
/// 6 centre, 7 penalty area, 8 goal; thousands give tens of metres along an outer row. CLOSE_BY is
/// an object felt outside the view cone, of which only the kind is known.
struct RCC_Flag : RCC_SeenObject {
    static constexpr int CLOSE_BY = 1;
    int code = 0;
};

struct RCC_Ball : RCC_SeenObject {};

/// What was recognised of a player: an empty team or a zero uniform number is unknown.
struct RCC_PlayerName {
    RCC_FixedText<31> team;
    int unum = 0;
    bool goalie = false;
};

/// A player; body and head direction are relative to the observer's gaze, absent when too far.
struct RCC_Player : RCC_SeenObject {
    RCC_PlayerName name;
    RCC_Angle bodyDirection;
    RCC_Angle headDirection;
};

/// One see message, its objects sorted by kind in the order of the message. A copy shares the
/// containers.
struct RCC_Visual {
    /// A see with more objects than this in one container is dropped whole.
    static constexpr std::size_t MAX_OBJECTS = 128;

    int time = 0; ///< cycle
    RCC_Pointer<RCC_Container<RCC_Line>> lines;
    RCC_Pointer<RCC_Container<RCC_Flag>> flags;
    RCC_Pointer<RCC_Container<RCC_Flag>> goals;
    RCC_Pointer<RCC_Container<RCC_Player>> allies;
    RCC_Pointer<RCC_Container<RCC_Player>> enemies;
    RCC_Pointer<RCC_Container<RCC_Player>> neuts; ///< team not recognised
    RCC_Pointer<RCC_Container<RCC_Ball>> balls;   ///< none or one
};

// --- What the agent senses of its own body ---

/// Sent once a cycle.
struct RCC_SenseBody {
    int time = 0;        ///< cycle
    int viewQuality = 0; ///< 0 high, 1 low
    int viewWidth = 1;   ///< 0 narrow, 1 normal, 2 wide

    float stamina = 0;
    float effort = 0;
    float speed = 0;          ///< metres per cycle, after decay
    RCC_Angle speedDirection; ///< of the motion relative to the gaze, clockwise, whole degrees
    RCC_Angle headAngle;      ///< of the neck relative to the body, clockwise, whole degrees

    // How many commands of each kind the server has carried out since the agent joined.
    int kicks = 0;
    int dashes = 0;
    int turns = 0;
    int says = 0;
    int turnNecks = 0;
    int catches = 0;
    int moves = 0;
    int changeViews = 0;
};

// --- What the agent hears. `time` is the cycle in which the server sent the message on. ---

/// A word of the referee, and whose it is.
struct RCC_PlayMode {
    enum class Mode : int {
        unknown = -1, ///< a word that is none of these
        none = 0,     ///< no word means this
        beforeKickOff = 1,
        timeOver = 2,
        playOn = 3,
        kickOff = 4,
        kickIn = 5,
        freeKick = 6, ///< indirect ones too
        cornerKick = 7,
        goalKick = 8,
        goal = 9,
        dropBall = 10,
        offside = 11,
        penaltyKick = 12,
        firstHalfOver = 13,
        pause = 14,
        humanJudge = 15,
        foulCharge = 16,
        foulPush = 17,
        foulMultipleAttack = 18,
        foulBallout = 19,
        backPass = 20,
        timeUp = 21,
        timeUpWithoutATeam = 22,
        timeExtended = 23,
        halfTime = 24,
        goalieCatchBall = 25,
        goalWithScore = 26, ///< goal and the new score, as `goal_l_2`
    };

    Mode mode = Mode::unknown;
    int side = 0; ///< 1 the agent's own side, -1 the other one, 0 a word without side
};

struct RCC_RefAudio {
    int time = 0;
    RCC_PlayMode playMode;
};

/// The echo of the agent's own say.
struct RCC_SelfAudio {
    int time = 0;
    RCC_Text text;
};

/// Some player of either team; the server does not tell which one.
struct RCC_PlayerAudio {
    int time = 0;
    RCC_Angle direction; ///< relative to the body, clockwise
    RCC_Text text;
};

/// The trainer or an online coach. A message in the coach language is kept as it stands,
/// parentheses included; a quoted one without its quotes.
struct RCC_CoachAudio {
    int time = 0;
    RCC_Text text;
};

// --- Answers and news of the server ---

/// The answer to a score command.
struct RCC_Score {
    int time = 0; ///< cycle
    int ours = 0;
    int theirs = 0;
};

/// A server in synchronous mode waits for the commands of the cycle.
struct RCC_Think {};

/// A player's type has changed.
struct RCC_Substitution {
    static constexpr int NOT_REVEALED = -1;

    int unum = 0;            ///< 1 to 11
    int type = NOT_REVEALED; ///< known for the own team only
};

/// The server has refused something.
struct RCC_Error {
    RCC_Text text;
};

/// The server has accepted the agent.
struct RCC_InitMsg {
    int side = 0; ///< 1 left, -1 right
    int unum = 0; ///< 1 to 11
    RCC_PlayMode playMode;
};

/// The server's own view of the match; only the time is kept.
struct RCC_FullState {
    int time = 0; ///< cycle
};
