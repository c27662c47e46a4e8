#pragma once

#include <array>

#include "practice/World.h"

namespace practice {

struct TeamStatistics {
    int stepsWithBall = 0; // in play, since its kick was the last
    int shots = 0;
    int passesArrived = 0;
};

// Counts what a spectator would: who had the ball, who shot at the goal, whose passes arrived. A
// pass arrives when a team-mate is the next to kick; a shot is a kick that would roll into the goal
// or just past it.
class Statistics {
public:
    // A kick has accelerated the ball in play.
    void kicked(const World& world, int id);
    void stepped(const World& world);

    const TeamStatistics& team(Side side) const {
        return teams_[static_cast<std::size_t>(index(side))];
    }
    // Percent of the steps in which either team had the ball; 0 before the first.
    double possession(Side side) const;

private:
    TeamStatistics& statisticsOf(const Player& p) {
        return teams_[static_cast<std::size_t>(index(p.side))];
    }

    std::array<TeamStatistics, 2> teams_;
    int lastKicker_ = nobody;
    bool shooting_ = false; // the last kick was counted as a shot
};

} // namespace practice
