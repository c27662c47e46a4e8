#include "practice/MonitorCommands.h"

#include <array>
#include <cmath>

#include "practice/Scanner.h"

namespace practice {

namespace {

constexpr std::string_view GREETING = "(dispinit";
constexpr double UNITS_PER_METRE = 16.0;

using Numbers = std::array<int, 5>;

Vec inMetres(int x, int y) {
    return {x / UNITS_PER_METRE, y / UNITS_PER_METRE};
}

std::optional<Side> sideOf(int number) {
    switch (number) {
    case 1:
        return Side::left;
    case -1:
        return Side::right;
    case 0:
        return Side::none;
    default:
        return std::nullopt;
    }
}

/// Nothing for a number that no player can have.
std::optional<int> playerOf(int sideNumber, int unum) {
    auto const side = sideOf(sideNumber);
    bool const known = side && *side != Side::none && unum >= 1 && unum <= PLAYERS_PER_TEAM;
    return known ? std::optional(playerId(*side, unum)) : std::nullopt;
}

std::optional<MonitorCommand> makeFoul(Numbers const& n) {
    auto const side = sideOf(n[2]);
    if (!side) return std::nullopt;
    return CallFoul{inMetres(n[0], n[1]), *side};
}

std::optional<MonitorCommand> makePlace(Numbers const& n) {
    auto const player = playerOf(n[0], n[1]);
    if (!player) return std::nullopt;
    return PlacePlayer{*player, inMetres(n[2], n[3]), toRad(n[4] % 360)};
}

std::optional<MonitorCommand> makeDiscard(Numbers const& n) {
    auto const player = playerOf(n[0], n[1]);
    if (!player) return std::nullopt;
    return DiscardPlayer{*player};
}

/// A word and as many whole numbers.
struct Form {
    std::string_view word;
    std::size_t numbers;
    std::optional<MonitorCommand> (*make)(Numbers const&);
};

// clang-format off
constexpr std::array<Form, 5> FORMS{{
    {"dispstart",   0, [](Numbers const&) -> std::optional<MonitorCommand> { return StartKickOff{}; }},
    {"dispbye",     0, [](Numbers const&) -> std::optional<MonitorCommand> { return Disconnect{}; }},
    {"dispfoul",    3, makeFoul},
    {"dispplayer",  5, makePlace},
    {"dispdiscard", 2, makeDiscard},
}};
// clang-format on

} // namespace

std::optional<MonitorCommand> readMonitorCommand(std::string_view datagram) {
    std::string_view s = scan::withoutEnding(datagram);
    if (!scan::take(s, '(')) return std::nullopt;
    std::string_view const word = scan::takeWord(s);
    for (Form const& form : FORMS) {
        if (form.word != word) continue;
        Numbers numbers{};
        for (std::size_t i = 0; i < form.numbers; ++i) {
            auto const number = scan::takeInteger(s);
            if (!number) return std::nullopt;
            numbers.at(i) = *number;
        }
        return scan::take(s, ')') && s.empty() ? form.make(numbers) : std::nullopt;
    }
    return std::nullopt;
}

bool isMonitorGreeting(std::string_view datagram) {
    return datagram.starts_with(GREETING);
}

std::optional<int> readMonitorVersion(std::string_view greeting) {
    constexpr int WITHOUT_VERSION = 1;
    constexpr double MOST = 1000.0; // of what may be cut to an int
    std::string_view s = scan::withoutEnding(greeting);
    s.remove_prefix(GREETING.size());
    if (scan::take(s, ')')) return s.empty() ? std::optional(WITHOUT_VERSION) : std::nullopt;
    if (scan::takeWord(s) != "version") return std::nullopt;
    auto const version = scan::takeNumber(s);
    bool const closed = scan::take(s, ')') && s.empty();
    if (!version || !closed || std::abs(*version) > MOST) return std::nullopt;
    return static_cast<int>(*version);
}

} // namespace practice
