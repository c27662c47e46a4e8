#include "practice/Statistics.h"

#include "practice/Parameters.h"

namespace practice {

namespace {

// Rolling freely the ball ends `speed / (1 - decay)` farther on.
bool isShot(const World& world, Side side) {
    constexpr double margin = 2.0;
    const Movable& ball = world.ball;
    const Vec vel = shortenedTo(ball.vel + shortenedTo(ball.acc, parameter("ballAccelMax")),
                                parameter("ballSpeedMax"));
    const Vec path = vel * (1.0 / (1.0 - parameter("ballDecay")));
    const double toLine = sign(side) * pitchHalfLength - ball.pos.x;
    if (sign(side) * path.x < sign(side) * toLine || path.x == 0.0) return false;
    return std::abs(ball.pos.y + path.y * toLine / path.x) <= goalHalfWidth + margin;
}

} // namespace

void Statistics::kicked(const World& world, int id) {
    const Player& kicker = world.player(id);
    TeamStatistics& mine = statisticsOf(kicker);
    const bool received = lastKicker_ != nobody && lastKicker_ != id;
    if (received && world.player(lastKicker_).side == kicker.side) ++mine.passesArrived;
    const bool shot = isShot(world, kicker.side);
    if (shot && !(shooting_ && lastKicker_ == id)) ++mine.shots;
    shooting_ = shot;
    lastKicker_ = id;
}

void Statistics::stepped(const World& world) {
    if (world.mode != Phase::playOn && world.mode != Phase::goalKick) {
        lastKicker_ = nobody;
        shooting_ = false;
    } else if (lastKicker_ != nobody) {
        ++statisticsOf(world.player(lastKicker_)).stepsWithBall;
    }
}

double Statistics::possession(Side side) const {
    const int mine = team(side).stepsWithBall;
    const int all = mine + team(other(side)).stepsWithBall;
    return all == 0 ? 0.0 : 100.0 * mine / all;
}

} // namespace practice
