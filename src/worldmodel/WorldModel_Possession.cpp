// Who has the ball, and who is closest to what.

#include "worldmodel/WorldModel.h"

#include <limits>

#include "config/Configuration.h"

namespace {

/// Who has the ball is this close to it.
constexpr float POSSESSION_DISTANCE = 3.0F;
/// Players this close crowd each other.
constexpr float SPACE = 5.0F;

bool withinKickingReach(Vector2D player, Vector2D ball) {
    // As a sum: a difference would round away a ball that lies exactly at the edge.
    return player.getDistanceTo(ball) <= Player::KICKABLE_MARGIN + Player::SIZE + Ball::SIZE;
}

} // namespace

bool WorldModel::haveBall() const {
    return beingClosestToBall() &&
           ball().position.getDistanceTo(myself().position) <= POSSESSION_DISTANCE;
}

float WorldModel::haveBallRel() const {
    bool const near = ball().position.getDistanceTo(myself().position) <= POSSESSION_DISTANCE;
    return near ? beingClosestToBallRel() : 0.0F;
}

bool WorldModel::hasBall_Player(Player const& p) const {
    return isClosestToBall(p) && ball().position.getDistanceTo(p.position) <= POSSESSION_DISTANCE;
}

float WorldModel::hasBall_PlayerRel(Player const& p) const {
    // Not a number, where every other question answers 0.
    constexpr float UNKNOWN = std::numeric_limits<float>::quiet_NaN();
    if (p.age < 0.0F) return UNKNOWN;
    if (ball().position.getDistanceTo(p.position) >= POSSESSION_DISTANCE) return UNKNOWN;
    return isClosestToBallRel(p);
}

bool WorldModel::hasBall_Team() const {
    Player const* const holder = playerWithBall();
    return holder != nullptr && isTeamMate(*holder);
}

float WorldModel::hasBall_TeamRel() const {
    Player const* const holder = playerWithBall();
    return holder != nullptr ? isTeamMateRel(*holder) : 0.0F;
}

bool WorldModel::isCatchable() const {
    return ball().position.getDistanceTo(myself().position) <= Configuration::catchAreaLength;
}

bool WorldModel::isInKickableArea() const {
    return withinKickingReach(myself().position, ball().position);
}

bool WorldModel::willBeInKickableArea(int cycles, float dashPower) const {
    return withinKickingReach(myself().predictedPosition(cycles, dashPower, 0.0F),
                              ball().rollingPosition(cycles));
}

bool WorldModel::beingClosestToBall() const {
    return isMe(closestPlayerToPoint(ball().position));
}

float WorldModel::beingClosestToBallRel() const {
    return beingClosestToBall() ? 1.0F : 0.0F;
}

bool WorldModel::beingSecondClosestToBall() const {
    return isMe(secondClosestPlayerToPoint(ball().position));
}

bool WorldModel::beingClosestTeamMateToBall() const {
    return isMe(closestTeamMateToPoint(ball().position));
}

bool WorldModel::beingSecondClosestTeamMateToBall() const {
    return isMe(secondClosestTeamMateToPoint(ball().position));
}

bool WorldModel::isClosestToBall(Player const& p) const {
    return isSamePlayer(closestPlayerToPoint(ball().position), p);
}

bool WorldModel::beingClosestToPoint(Vector2D point) const {
    return isMe(closestPlayerToPoint(point));
}

bool WorldModel::isClosestToPoint(Vector2D point, Player const& p) const {
    return isSamePlayer(closestPlayerToPoint(point), p);
}

bool WorldModel::beingClosestTeamMateToPlayer(Player const& p) const {
    return isSamePlayer(closestTeamMateToPoint(p.position), p);
}

float WorldModel::beingClosestTeamMateToPlayerRel(Player const& p) const {
    if (p.age < 0.0F) return 0.0F;
    return beingClosestTeamMateToPlayer(p) ? p.reliability() : 0.0F;
}

bool WorldModel::beingSecondClosestTeamMateToPlayer(Player const& p) const {
    return isSamePlayer(secondClosestTeamMateToPoint(p.position), p);
}

bool WorldModel::beingClosestToPlayer(Player const& p) const {
    return closestPlayerToPlayer(p).isSamePlayerAs(p);
}

float WorldModel::beingClosestToPlayerRel(Player const& p) const {
    if (p.age < 0.0F) return 0.0F;
    return beingClosestToPlayer(p) ? p.reliability() : 0.0F;
}

bool WorldModel::beingSpaced(Player const& p) const {
    return myself().position.getDistanceTo(p.position) < SPACE;
}

float WorldModel::beingSpacedRel(Player const& p) const {
    return beingSpaced(p) ? p.reliability() : 0.0F;
}

bool WorldModel::isOpponent(Player const& p) const {
    return p.isOpponent();
}

float WorldModel::isOpponentRel(Player const& p) const {
    return p.isOpponent() ? 1.0F : 0.0F;
}

bool WorldModel::isTeamMate(Player const& p) const {
    return !p.isOpponent();
}

float WorldModel::isTeamMateRel(Player const& p) const {
    return 1.0F - isOpponentRel(p);
}
