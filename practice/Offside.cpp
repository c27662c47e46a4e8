#include "practice/Offside.h"

#include <algorithm>

#include "practice/Parameters.h"
#include "practice/Placement.h"

namespace practice {

namespace {

Offside::Mark markOf(const Player& p, double line) {
    const Vec spot = cutToPitch({sign(p.side) * line, p.pos.y}, 1.0);
    return {toGoalAreaCorner(spot, other(p.side)), line};
}

} // namespace

double offsideLine(const World& world, Side attacker) {
    double last = 0.0;
    double secondLast = 0.0;
    for (const Player& p : world.players) {
        if (!p.active || p.side == attacker) continue;
        const double x = sign(attacker) * p.pos.x;
        secondLast = std::max(secondLast, std::min(last, x));
        last = std::max(last, x);
    }
    return std::max({0.0, secondLast, sign(attacker) * world.ball.pos.x});
}

void Offside::markTeamMatesOf(const World& world, int id) {
    clear();
    const Side side = world.player(id).side;
    const double line = offsideLine(world, side);
    for (const Player& p : world.players) {
        const int mate = playerId(p);
        if (!p.active || p.side != side || mate == id || sign(side) * p.pos.x <= line) continue;
        marks_[static_cast<std::size_t>(mate)] = markOf(p, line);
    }
}

} // namespace practice
