#pragma once

#include <array>
#include <optional>

#include "practice/World.h"

namespace practice {

// Who stood offside when the ball was last played.
class Offside {
public:
    // Where the free kick is taken, and the line, both at the moment of the mark; the line is
    // measured in the attacking direction of the marked team.
    struct Mark {
        Vec spot;
        double line = 0.0;
    };

    // Player `id` plays the ball: its team-mates beyond the line are marked, older marks go.
    void markTeamMatesOf(const World& world, int id);
    void clear() { marks_ = {}; }
    const std::optional<Mark>& mark(int id) const { return marks_[static_cast<std::size_t>(id)]; }

private:
    std::array<std::optional<Mark>, maxPlayers> marks_{};
};

// The line that `attacker` must not be beyond, metres in its attacking direction: the most advanced
// of second-last opponent, ball and half-way line.
double offsideLine(const World& world, Side attacker);

} // namespace practice
