#include "practice/Placement.h"

#include <algorithm>

#include "practice/Parameters.h"

namespace practice {

namespace {

constexpr double RUN_OFF = 5.0;

/// A rectangle before the goal. Side `owner` defends the end at x = -sign * 52.5.
struct Area {
    double front, halfWidth;

    bool contains(Vec pos, Side owner, double margin = 0.0) const {
        return -sign(owner) * pos.x > front - margin && std::abs(pos.y) < halfWidth + margin;
    }
    Vec cornerIfInside(Vec pos, Side owner) const {
        if (!contains(pos, owner)) return pos;
        return {-sign(owner) * front, std::copysign(halfWidth, pos.y)};
    }
};

constexpr Area PENALTY_AREA{PITCH_HALF_LENGTH - 16.5, 20.16};
constexpr Area GOAL_AREA{PITCH_HALF_LENGTH - 5.5, 9.16};

bool isWithinRunOff(Vec pos) {
    return cutToRunOff(pos) == pos;
}

/// One coordinate of a point on a circle, when the other lies `away` from the centre; of the two
/// solutions the one nearer to `towards`.
double onCircle(double centre, double radius, double away, double towards) {
    double const reach = std::sqrt(std::max(0.0, radius * radius - away * away));
    return centre + std::copysign(reach, towards - centre);
}

Vec edgeOfCircle(Vec pos, Vec centre, double radius) {
    Vec const out = pos - centre;
    double const d = out.length();
    Vec const radial =
        centre + (d > 0.0 ? out * (radius / d) : Vec{-std::copysign(radius, centre.x), 0.0});
    Vec cut = cutToRunOff(radial);
    if (cut.y != radial.y) {
        cut.x = onCircle(centre.x, radius, cut.y - centre.y, cut.x);
    } else if (cut.x != radial.x) {
        cut.y = onCircle(centre.y, radius, cut.x - centre.x, cut.y);
    }
    if (isWithinRunOff(cut)) return cut;
    return centre - centre * (radius / centre.length()); // no room in a corner: towards the middle
}

void put(Player& p, Vec pos) {
    p.pos = pos;
    p.halt();
}

bool isOnOwnGoalLine(Player const& p) {
    return -sign(p.side) * p.pos.x >= PITCH_HALF_LENGTH - PLAYER_SIZE &&
           std::abs(p.pos.y) <= GOAL_HALF_WIDTH;
}

double offsideLine(World const& world, Side attacker) {
    double last = 0.0;
    double secondLast = 0.0;
    for (Player const& p : world.players) {
        if (!p.active || p.side == attacker) continue;
        double const x = sign(attacker) * p.pos.x;
        secondLast = std::max(secondLast, std::min(last, x));
        last = std::max(last, x);
    }
    return std::max(secondLast, sign(attacker) * world.ball.pos.x);
}

} // namespace

bool isInPenaltyArea(Vec pos, Side owner, double margin) {
    return PENALTY_AREA.contains(pos, owner, margin);
}

bool isInGoal(Vec ball) {
    return std::abs(ball.x) > PITCH_HALF_LENGTH + BALL_SIZE &&
           std::abs(ball.y) <= GOAL_HALF_WIDTH + POST_RADIUS;
}

Vec cutToPitch(Vec pos, double inside) {
    return {std::clamp(pos.x, inside - PITCH_HALF_LENGTH, PITCH_HALF_LENGTH - inside),
            std::clamp(pos.y, inside - PITCH_HALF_WIDTH, PITCH_HALF_WIDTH - inside)};
}

Vec cutToRunOff(Vec pos) {
    return cutToPitch(pos, -RUN_OFF);
}

Vec outOfPenaltyArea(Vec pos, Side owner) {
    return PENALTY_AREA.cornerIfInside(pos, owner);
}

Vec outOfGoalArea(Vec pos, Side owner) {
    return GOAL_AREA.contains(pos, owner) ? Vec{-sign(owner) * GOAL_AREA.front, pos.y} : pos;
}

Vec cornerSpot(Vec ball) {
    constexpr double MARGIN = parameter("cornerKickMargin");
    return {std::copysign(PITCH_HALF_LENGTH - MARGIN, ball.x),
            std::copysign(PITCH_HALF_WIDTH - MARGIN, ball.y)};
}

Vec goalKickSpot(Vec ball) {
    return {std::copysign(GOAL_AREA.front, ball.x), std::copysign(GOAL_AREA.halfWidth, ball.y)};
}

OffsideMarks offsideMarks(World const& world, int id) {
    OffsideMarks marks;
    Side const side = world.player(id).side;
    double const line = offsideLine(world, side);
    for (Player const& p : world.players) {
        int const mate = playerId(p);
        if (!p.active || p.side != side || mate == id || sign(side) * p.pos.x <= line) continue;
        Vec const spot = cutToPitch({sign(side) * line, p.pos.y}, 1.0);
        marks[mate] = OffsideMark{GOAL_AREA.cornerIfInside(spot, other(side)), line};
    }
    return marks;
}

void clearBall(World& world, Side team, double radius, bool goalLineMayStay) {
    Vec const ball = world.ball.pos;
    for (Player& p : world.players) {
        bool const stays = goalLineMayStay && isOnOwnGoalLine(p);
        if (!p.active || stays || (team != Side::none && p.side != team)) continue;
        if (distance(p.pos, ball) < radius) put(p, edgeOfCircle(p.pos, ball, radius));
    }
}

void clearPenaltyArea(World& world, Side owner) {
    constexpr double FRONT = PENALTY_AREA.front - PLAYER_SIZE;
    constexpr double HALF_WIDTH = PENALTY_AREA.halfWidth + PLAYER_SIZE;
    for (Player& p : world.players) {
        if (!p.active || p.side == owner || !isInPenaltyArea(p.pos, owner, PLAYER_SIZE)) continue;
        bool const forward = -sign(owner) * p.pos.x - FRONT <= HALF_WIDTH - std::abs(p.pos.y);
        put(p, forward ? Vec{-sign(owner) * FRONT, p.pos.y}
                       : Vec{p.pos.x, std::copysign(HALF_WIDTH, p.pos.y)});
    }
}

void bringBackFromOutside(World& world) {
    for (Player& p : world.players) {
        if (p.active && !isWithinRunOff(p.pos)) put(p, cutToRunOff(p.pos));
    }
}

void sendToOwnHalf(World& world, Random* random) {
    for (Player& p : world.players) {
        if (!p.active || sign(p.side) * p.pos.x <= -PLAYER_SIZE) continue;
        Vec spot{PLAYER_SIZE, p.pos.y};
        if (random != nullptr) {
            spot.x = random->uniform(PLAYER_SIZE, PITCH_HALF_LENGTH);
            spot.y = random->uniform(-PITCH_HALF_WIDTH, PITCH_HALF_WIDTH);
        }
        put(p, {-sign(p.side) * spot.x, spot.y});
    }
}

void clearBeyondOffsideLine(World& world, Side offender, double line) {
    for (Player& p : world.players) {
        if (!p.active || p.side != offender || sign(offender) * p.pos.x <= line) continue;
        put(p, {sign(offender) * (line - parameter("offsideKickMargin")), p.pos.y});
    }
    clearBall(world, offender, parameter("offsideArea"));
}

} // namespace practice
