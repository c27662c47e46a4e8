#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gamelog/Records.h"

/// Figures of a match, computed from its game log. docs/statistics.md defines each of them.
namespace stats {

using gamelog::Point;
using gamelog::Side;

/// What a team and each of its players can do with the ball.
struct BallFigures {
    int goals = 0; ///< of a team: by the log's score, own goals of the others included
    int passes = 0, passesArrived = 0;
    int shots = 0, shotsOnTarget = 0;
    int interceptions = 0, tackles = 0, dribbles = 0, catches = 0;
    int yellowCards = 0, redCards = 0;
    double metres = 0;
    double staminaSpent = 0;
};

struct PlayerFigures : BallFigures {
    int type = 0;
    int cycles = 0; ///< on the field
    int kicks = 0;
    int passesReceived = 0;
    std::array<int, gamelog::COUNTS> commands = {};
};

struct TeamFigures : BallFigures {
    std::string name;
    gamelog::Penalties penalties;
    int possessionShows = 0, dominationShows = 0; ///< shows of play with the ball theirs, ahead
    int passesForward = 0, passesBack = 0, passesLeft = 0, passesRight = 0;
    int areaEntries = 0;
    int offsides = 0, fouls = 0;
    int kickIns = 0, cornerKicks = 0, freeKicks = 0, goalKicks = 0;
    int disconnected = 0;

    int setPieces() const { return kickIns + cornerKicks + freeKicks + goalKicks; }
};

/// Something that happened, at a place of the ball.
struct Event {
    std::size_t show = 0; ///< the number of the show, for the order
    int cycle = 0;
    std::string_view name;
    std::optional<Side> side;
    int unum = 0; ///< 0: unknown, or nobody
    int to = 0;   ///< who received a pass; 0: nobody
    Point place;
    std::string_view detail;
};

struct MatchFigures {
    std::string date; ///< "2026-11-21T16:50"; empty when the log has no result
    int cycles = 0;   ///< different times that have a show
    int playCycles = 0;
    std::array<TeamFigures, 2> teams;
    std::array<PlayerFigures, gamelog::PLAYERS> players;
    std::vector<Event> events; ///< in the order of the match

    TeamFigures& team(Side side) { return teams[static_cast<std::size_t>(side)]; }
    TeamFigures const& team(Side side) const { return teams[static_cast<std::size_t>(side)]; }
    PlayerFigures& player(Side side, int unum) {
        return players[gamelog::Show::indexOf(side, unum)];
    }
};

} // namespace stats
