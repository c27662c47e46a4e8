#pragma once

#include <cstdio>
#include <string>

#include "practice/World.h"

/// What people, not players, are told of a match: statistics, files and the scoreboard.
namespace practice {

struct TeamStatistics {
    int stepsWithBall = 0; ///< in play, since its kick was the last
    int shots = 0;
    int passesArrived = 0;
};

/// Counts what a spectator would: who had the ball, who shot at the goal, whose passes arrived. A
/// pass arrives when a team-mate is the next to kick; a shot is a kick that would roll into the
/// goal or just past it.
class Statistics {
public:
    /// A kick has accelerated the ball in play.
    void kicked(World const& world, int id);
    void stepped(World const& world);

    TeamStatistics const& team(Side side) const { return teams_[index(side)]; }
    /// Percent of the steps in which either team had the ball; 0 before the first.
    double possession(Side side) const;

private:
    Table<TeamStatistics, 2> teams_;
    int lastKicker_ = NOBODY;
    bool shooting_ = false; ///< the last kick was counted as a shot
};

/// First line of a log, then one line per step: cycle, play mode, score, ball, and for every player
/// on the pitch side, number, position, body and neck (degrees) and stamina.
std::string logHeader();
std::string logLine(World const& world);

/// Score, teams and players with their executed commands, tab separated.
std::string results(World const& world, Statistics const& statistics);
/// Replaces the file at once, so that nobody reads half of it. False, with errno set, on failure.
bool writeFile(std::string const& path, std::string const& content);

/// Shows the match to whoever started the server: teams, score, play mode, cycle and progress.
class Scoreboard {
public:
    enum class Style { automatic, line, plain, off };

    /// Automatic: a line that is redrawn on a terminal, plain lines elsewhere.
    Scoreboard(Style style, std::FILE* out);

    /// After every step.
    void show(World const& world);
    /// Leaves the redrawn line standing.
    void finish();

private:
    bool isNews(World const& world);

    Style style_;
    std::FILE* out_;
    std::string shown_;
    Table<int, 2> lastScore_{};
    PlayMode lastMode_{Phase::timeOver, Side::none};
    int lastTenth_ = 0;
};

} // namespace practice
