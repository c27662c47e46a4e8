#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "gamelog/PlayMode.h"

/// The records of a game log, one a line. Positions are in metres and speeds in metres a cycle, x
/// to the right, y down, in one frame for both teams; angles are in degrees and grow clockwise.
namespace gamelog {

constexpr int TEAM_SIZE = 11;
constexpr int PLAYERS = 2 * TEAM_SIZE;

constexpr int OLDEST_VERSION = 4, USUAL_VERSION = 5, NEWEST_VERSION = 6;

/// A monitor of version 3, 4 or 5 gets the shows of a log of version 4, 5 or 6.
constexpr int logVersionOfMonitor(int monitorVersion) {
    return monitorVersion + 1;
}

/// Name and value as the log has it: texts keep their quotes, numbers their digits.
struct Parameter {
    std::string name;
    std::string value;

    bool operator==(Parameter const&) const = default;
};

/// Parameters in the order of the log.
struct Parameters {
    std::vector<Parameter> pairs;

    /// The value of a name; null when there is none.
    std::string const* find(std::string_view name) const;
    /// The value as a number; `fallback` when there is none or it is no number.
    double number(std::string_view name, double fallback) const;
    bool operator==(Parameters const&) const = default;
};

struct ServerParam : Parameters {
    static constexpr std::string_view NAME = "server_param";
};

struct PlayerParam : Parameters {
    static constexpr std::string_view NAME = "player_param";
};

/// One heterogeneous type. The pair `id` comes first.
struct PlayerType : Parameters {
    static constexpr std::string_view NAME = "player_type";
};

struct PlayModeChange {
    static constexpr std::string_view NAME = "playmode";
    int time = 0;
    PlayMode mode = PlayMode::none;

    bool operator==(PlayModeChange const&) const = default;
};

/// Penalty kicks taken in a shoot-out.
struct Penalties {
    int scored = 0;
    int missed = 0;

    bool operator==(Penalties const&) const = default;
};

/// Names and goals. A side that nobody has joined is called `null`.
struct Score {
    std::string left = "null", right = "null";
    int goalsLeft = 0, goalsRight = 0;
    /// Left and right; only once a penalty kick was taken.
    std::optional<std::array<Penalties, 2>> penalties;

    bool operator==(Score const&) const = default;
};

struct Team {
    static constexpr std::string_view NAME = "team";
    int time = 0;
    Score score;

    bool operator==(Team const&) const = default;
};

struct Msg {
    static constexpr std::string_view NAME = "msg";
    static constexpr int REFEREE_BOARD = 1; ///< referee, what players say, the result
    static constexpr int COMMAND_BOARD = 2; ///< what clients sent

    int time = 0;
    int board = REFEREE_BOARD;
    std::string text; ///< any bytes but line ends; quotes stand as they are

    bool operator==(Msg const&) const = default;
};

/// What happened to a player in a step; together they make Player::state. All but `ON_FIELD`,
/// `GOALIE`, `DISCARDED` and the cards are gone after the show.
namespace state {
// clang-format off
constexpr std::uint32_t ON_FIELD            = 0x1;
constexpr std::uint32_t KICK                = 0x2;      ///< also set when the kick failed
constexpr std::uint32_t KICK_FAILED         = 0x4;
constexpr std::uint32_t GOALIE              = 0x8;
constexpr std::uint32_t CATCH               = 0x10;
constexpr std::uint32_t CATCH_FAILED        = 0x20;
constexpr std::uint32_t BALL_TO_PLAYER      = 0x40;
constexpr std::uint32_t PLAYER_TO_BALL      = 0x80;
constexpr std::uint32_t DISCARDED           = 0x100;
constexpr std::uint32_t LOST                = 0x200;
constexpr std::uint32_t COLLIDED_BALL       = 0x400;
constexpr std::uint32_t COLLIDED_PLAYER     = 0x800;
constexpr std::uint32_t TACKLE              = 0x1000;
constexpr std::uint32_t TACKLE_FAILED       = 0x2000;
constexpr std::uint32_t BACK_PASS           = 0x4000;
constexpr std::uint32_t FREE_KICK_FAULT     = 0x8000;
constexpr std::uint32_t HIT_POST            = 0x10000;
constexpr std::uint32_t FOUL_FROZEN         = 0x20000;
constexpr std::uint32_t YELLOW_CARD         = 0x40000;
constexpr std::uint32_t RED_CARD            = 0x80000;
constexpr std::uint32_t ILLEGAL_DEFENSE     = 0x100000;
// clang-format on
} // namespace state

/// The kinds of commands that a show counts, in its order.
enum class Count : std::uint8_t {
    kick,
    dash,
    turn,
    catchBall,
    move,
    turnNeck,
    changeView,
    say,
    tackle,
    pointTo,
    attentionTo,
    changeFocus, ///< from version 6 on
};
constexpr int COUNTS = 12;
constexpr std::array<std::string_view, COUNTS> COUNT_NAMES = {
    "kick",        "dash", "turn",   "catch",   "move",        "turn_neck",
    "change_view", "say",  "tackle", "pointto", "attentionto", "change_focus"};

struct Point {
    double x = 0, y = 0;

    bool operator==(Point const&) const = default;
};

/// Whom a player listens to.
struct Attention {
    Side side = Side::left;
    int unum = 1;

    bool operator==(Attention const&) const = default;
};

struct Ball {
    double x = 0, y = 0, vx = 0, vy = 0;

    bool operator==(Ball const&) const = default;
};

/// One player in a show; side and number follow from its place in the array.
struct Player {
    int type = 0;
    std::uint32_t state = 0; ///< of the constants in gamelog::state; 0: absent
    double x = 0, y = 0, vx = 0, vy = 0;
    double body = 0;              ///< absolute
    double neck = 0;              ///< relative to the body
    std::optional<Point> pointTo; ///< absolute, while the arm points
    bool highQuality = true;      ///< of the view
    double viewWidth = 90;
    double focusDist = 0, focusDir = 0; ///< of the view; from version 6 on
    double stamina = 8000, effort = 1, recovery = 1;
    double capacity = -1;                ///< of stamina; -1: no limit, or not told (version 4)
    std::optional<Attention> attention;  ///< while it listens to somebody
    std::array<int, COUNTS> counts = {}; ///< executed commands since it joined

    bool has(std::uint32_t bits) const { return (state & bits) != 0; }
    int count(Count kind) const { return counts[static_cast<std::size_t>(kind)]; }
    bool operator==(Player const&) const = default;
};

/// What a monitor's show tells besides, and a log says in records of its own.
struct Scoreboard {
    PlayMode mode = PlayMode::none;
    Score score;

    bool operator==(Scoreboard const&) const = default;
};

struct Show {
    static constexpr std::string_view NAME = "show";
    int time = 0;
    std::optional<Scoreboard> scoreboard; ///< for monitors; never in a log
    Ball ball;
    std::array<Player, PLAYERS> players; ///< l 1 ... l 11, r 1 ... r 11

    Player& player(Side side, int unum) { return players[indexOf(side, unum)]; }
    Player const& player(Side side, int unum) const { return players[indexOf(side, unum)]; }

    /// The place of a player in the array; unum counts from 1.
    static constexpr std::size_t indexOf(Side side, int unum) {
        return static_cast<std::size_t>((side == Side::left ? 0 : TEAM_SIZE) + unum - 1);
    }
    bool operator==(Show const&) const = default;
};

/// A record that this library does not know, or a msg that is not of its form: the whole line.
struct Unknown {
    std::string line;

    bool operator==(Unknown const&) const = default;
};

using Record =
    std::variant<Unknown, Show, Msg, PlayModeChange, Team, ServerParam, PlayerParam, PlayerType>;

} // namespace gamelog
