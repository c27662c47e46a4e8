#include "practice/Placement.h"

#include <algorithm>

#include "practice/Parameters.h"

namespace practice {

namespace {

constexpr double runOff = 5.0;
constexpr double penaltyAreaFront = pitchHalfLength - 16.5;
constexpr double penaltyAreaHalfWidth = 20.16;
constexpr double goalAreaFront = pitchHalfLength - 5.5;
constexpr double goalAreaHalfWidth = 9.16;

// Side `owner` defends the end at x = -sign * 52.5.
bool isInArea(Vec pos, Side owner, double front, double halfWidth) {
    const double depth = -sign(owner) * pos.x;
    return depth > front && std::abs(pos.y) < halfWidth;
}

Vec frontCornerIfInside(Vec pos, Side owner, double front, double halfWidth) {
    if (!isInArea(pos, owner, front, halfWidth)) return pos;
    return {-sign(owner) * front, std::copysign(halfWidth, pos.y)};
}

bool isWithinRunOff(Vec pos) {
    return std::abs(pos.x) <= pitchHalfLength + runOff &&
           std::abs(pos.y) <= pitchHalfWidth + runOff;
}

// The point of the circle that shares the limited coordinate: sqrt never sees a negative number.
double onCircle(double centre, double radius, double otherDistance, double towards) {
    const double reach = std::sqrt(std::max(0.0, radius * radius - otherDistance * otherDistance));
    return centre + std::copysign(reach, towards - centre);
}

Vec edgeOfCircle(Vec pos, Vec centre, double radius) {
    const Vec out = pos - centre;
    const double d = out.length();
    const Vec radial =
        centre + (d > 0.0 ? out * (radius / d) : Vec{-std::copysign(radius, centre.x), 0.0});
    if (isWithinRunOff(radial)) return radial;
    Vec cut = cutToRunOff(radial);
    if (cut.y != radial.y) {
        cut.x = onCircle(centre.x, radius, cut.y - centre.y, cut.x);
    } else {
        cut.y = onCircle(centre.y, radius, cut.x - centre.x, cut.y);
    }
    if (isWithinRunOff(cut)) return cut;
    return centre + (Vec{} - centre) *
                        (radius / centre.length()); // squeezed into a corner: towards the middle
}

void put(Player& p, Vec pos) {
    p.pos = pos;
    p.halt();
}

bool isOnOwnGoalLine(const Player& p) {
    return -sign(p.side) * p.pos.x >= pitchHalfLength - playerSize &&
           std::abs(p.pos.y) <= goalHalfWidth;
}

template <typename MayStay>
void clear(World& world, Side team, Vec centre, double radius, MayStay mayStay) {
    for (Player& p : world.players) {
        if (!p.active || (team != Side::none && p.side != team) || mayStay(p)) continue;
        if (distance(p.pos, centre) < radius) put(p, edgeOfCircle(p.pos, centre, radius));
    }
}

} // namespace

bool isInPenaltyArea(Vec pos, Side owner, double margin) {
    return isInArea(pos, owner, penaltyAreaFront - margin, penaltyAreaHalfWidth + margin);
}

Vec cutToPitch(Vec pos, double inside) {
    return {std::clamp(pos.x, inside - pitchHalfLength, pitchHalfLength - inside),
            std::clamp(pos.y, inside - pitchHalfWidth, pitchHalfWidth - inside)};
}

Vec cutToRunOff(Vec pos) {
    return cutToPitch(pos, -runOff);
}

Vec outOfPenaltyArea(Vec pos, Side owner) {
    return frontCornerIfInside(pos, owner, penaltyAreaFront, penaltyAreaHalfWidth);
}

Vec outOfGoalArea(Vec pos, Side owner) {
    if (!isInArea(pos, owner, goalAreaFront, goalAreaHalfWidth)) return pos;
    return {-sign(owner) * goalAreaFront, pos.y};
}

Vec toGoalAreaCorner(Vec pos, Side owner) {
    return frontCornerIfInside(pos, owner, goalAreaFront, goalAreaHalfWidth);
}

Vec cornerSpot(Vec ball) {
    constexpr double margin = parameter("cornerKickMargin");
    return {std::copysign(pitchHalfLength - margin, ball.x),
            std::copysign(pitchHalfWidth - margin, ball.y)};
}

Vec goalKickSpot(Vec ball) {
    return {std::copysign(goalAreaFront, ball.x), std::copysign(goalAreaHalfWidth, ball.y)};
}

void clearCircle(World& world, Side team, Vec centre, double radius) {
    clear(world, team, centre, radius, [](const Player&) { return false; });
}

void clearCircleButGoalLine(World& world, Side team, Vec centre, double radius) {
    clear(world, team, centre, radius, isOnOwnGoalLine);
}

void clearPenaltyArea(World& world, Side owner) {
    for (Player& p : world.players) {
        if (!p.active || p.side == owner || !isInPenaltyArea(p.pos, owner, playerSize)) continue;
        const double sideways = penaltyAreaHalfWidth + playerSize - std::abs(p.pos.y);
        const double forward = -sign(owner) * p.pos.x - penaltyAreaFront + playerSize;
        if (forward <= sideways) {
            put(p, {-sign(owner) * (penaltyAreaFront - playerSize), p.pos.y});
        } else {
            put(p, {p.pos.x, std::copysign(penaltyAreaHalfWidth + playerSize, p.pos.y)});
        }
    }
}

void bringBackFromOutside(World& world) {
    for (Player& p : world.players) {
        if (p.active && !isWithinRunOff(p.pos)) put(p, cutToRunOff(p.pos));
    }
}

void sendToOwnHalf(World& world, Random* random) {
    for (Player& p : world.players) {
        if (!p.active || sign(p.side) * p.pos.x <= -playerSize) continue;
        if (random != nullptr) {
            const double x = -sign(p.side) * random->uniform(playerSize, pitchHalfLength);
            put(p, {x, random->uniform(-pitchHalfWidth, pitchHalfWidth)});
        } else {
            put(p, {-sign(p.side) * playerSize, p.pos.y});
        }
    }
}

void clearBeyondOffsideLine(World& world, Side offender, double line) {
    for (Player& p : world.players) {
        if (!p.active || p.side != offender || sign(offender) * p.pos.x <= line) continue;
        put(p, {sign(offender) * (line - parameter("offsideKickMargin")), p.pos.y});
    }
    clearCircle(world, offender, world.ball.pos, parameter("offsideArea"));
}

} // namespace practice
