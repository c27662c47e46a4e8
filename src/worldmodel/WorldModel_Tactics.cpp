// Offside, marking, pass lines, places to shoot from.

#include "worldmodel/WorldModel.h"

#include "geometry/Bearings.h"

namespace {

/// Half the side of the squares that count as being in position.
constexpr float POSITION_TOLERANCE = 3.0F;
/// Close to a goal out line.
constexpr float GOAL_LINE_DISTANCE = 20.0F;
/// A player in this wedge (degrees to either side) blocks a pass.
constexpr float PASS_LINE_TOLERANCE = 2.0F;

float asFloat(bool value) {
    return value ? 1.0F : 0.0F;
}

Rectangle squareAround(Vector2D centre) {
    Vector2D const corner(POSITION_TOLERANCE, POSITION_TOLERANCE, CARTESIAN);
    return {centre - corner, centre + corner};
}

/// Intentional: to either side along x, but only towards positive y.
Rectangle frontalArea(Vector2D p) {
    constexpr float REACH = 5.0F; // metres
    return {{p.x - REACH, p.y, CARTESIAN}, {p.x + REACH, p.y + REACH, CARTESIAN}};
}

/// Intentional: the second corner has its coordinates exchanged.
Rectangle attackArea(Vector2D p) {
    constexpr float REACH = 1.5F; // metres
    return {{p.x - REACH, p.y - REACH, CARTESIAN}, {p.y + REACH, p.x + REACH, CARTESIAN}};
}

bool isBehind(Player const* lastOpponent, float y) {
    return lastOpponent != nullptr && y > 0.0F && y > lastOpponent->position.y;
}

} // namespace

bool WorldModel::isOnField(Vector2D point) const {
    return Field::L_SIDE_OUTLINE <= point.y && point.y <= Field::R_SIDE_OUTLINE &&
           Field::OWN_GOAL_OUTLINE <= point.x && point.x <= Field::OPP_GOAL_OUTLINE;
}

bool WorldModel::beingOnField() const {
    return isOnField(myself().position);
}

float WorldModel::beingOnFieldRel() const {
    return asFloat(beingOnField());
}

bool WorldModel::isOffside(Player const& p) const {
    return isOffside(p.position);
}

bool WorldModel::isOffside(Vector2D point) const {
    return isBehind(closestOppFieldPlayerToOppGoalOutLine(), point.y);
}

float WorldModel::isOffsideRel(Player const& p) const {
    Player const* const lastOpponent = closestOppFieldPlayerToOppGoalOutLine();
    return isBehind(lastOpponent, p.position.y) ? lastOpponent->reliability() * p.reliability()
                                                : 0.0F;
}

bool WorldModel::beingOffside() const {
    return isOffside(myself().position);
}

bool WorldModel::beingLastMan() const {
    return isMe(lastMan());
}

float WorldModel::beingLastManRel() const {
    return asFloat(beingLastMan());
}

bool WorldModel::isLastMan(Player const& p) const {
    return isSamePlayer(lastMan(), p);
}

float WorldModel::isLastManRel(Player const& p) const {
    return isLastMan(p) ? p.reliability() : 0.0F;
}

bool WorldModel::beingInAttackPosition() const {
    Player const* const holder = playerWithBall();
    if (holder == nullptr) return false;
    Vector2D const advance = holder->position - holder->attackPosition;
    return squareAround(myself().attackPosition + advance).isInside(myself().position);
}

bool WorldModel::beingInDefensePosition() const {
    return squareAround(myself().homePosition).isInside(myself().position);
}

bool WorldModel::beingInOptimalPosition() const {
    return beingAtGoodPointToScore() && !beingFrontalAttacked();
}

bool WorldModel::isAGoodPointToScore(Vector2D point) const {
    constexpr float SHOOTING_DISTANCE = 22.0F;
    constexpr float GOALIE_DISTANCE = 5.0F;
    if (point.getDistanceTo(Field::OPP_GOAL_CENTER) <= SHOOTING_DISTANCE) return true;
    // Intentional: from the agent, wherever the point is.
    Player const* const goalie = situation_.theirTeam.getGoalie();
    return goalie != nullptr && myself().position.getDistanceTo(goalie->position) < GOALIE_DISTANCE;
}

bool WorldModel::beingAtGoodPointToScore() const {
    return isAGoodPointToScore(myself().position) && !beingFrontalAttacked();
}

bool WorldModel::isAtGoodPointToScore(Player const& p) const {
    // Intentional: half a metre behind the goal that isAGoodPointToScore means, and the agent's
    // attackers, not p's.
    constexpr Vector2D GOAL(Field::SERVER_OPP_GOAL_LINE, 0.0F, CARTESIAN);
    constexpr float SHOOTING_DISTANCE = 20.0F;
    return p.position.getDistanceTo(GOAL) < SHOOTING_DISTANCE && !beingFrontalAttacked();
}

bool WorldModel::beingFrontalAttacked() const {
    Player const* const opponent = closestOpponentToMe();
    return opponent != nullptr && frontalArea(myself().position).isInside(opponent->position);
}

bool WorldModel::isFrontalAttacked(Player const& p) const {
    return frontalArea(p.position).isInside(closestPlayerToPlayer(p).position);
}

bool WorldModel::beingAttacked() const {
    Player const* const opponent = closestOpponentToMe();
    return opponent != nullptr && attackArea(myself().position).isInside(opponent->position);
}

bool WorldModel::isAttackedTeammate(Player const& p) const {
    Player const* const opponent = closestOpponentToTeammate(p);
    return opponent != nullptr && attackArea(p.position).isInside(opponent->position);
}

bool WorldModel::isAttackedOpponent(Player const& p) const {
    return attackArea(p.position).isInside(closestPlayerToPlayer(p).position);
}

bool WorldModel::isNotMarked(Player const& p) const {
    constexpr float MARKING_DISTANCE = 3.0F;
    Player const* const opponent = closestOpponentToTeammate(p);
    return opponent == nullptr || p.position.getDistanceTo(opponent->position) < MARKING_DISTANCE;
}

bool WorldModel::isIntersected(Vector2D from, Vector2D to) const {
    // Intentional: raw angles, so a line along 0 degrees does not see what lies at 359.
    float const line = snapBearing(bearing(from, to));
    auto const inTheWay = [&](Player const& player) {
        float const angle = snapBearing(bearing(player.position, to));
        return line - PASS_LINE_TOLERANCE <= angle && angle <= line + PASS_LINE_TOLERANCE;
    };
    for (Player const& player : opponents()) {
        if (inTheWay(player)) return true; // also from behind the target
    }
    float const length = from.getDistanceTo(to);
    for (Player const& player : teammates()) {
        if (player.position.getDistanceTo(to) < length && !isMe(&player) && inTheWay(player)) {
            return true;
        }
    }
    return false;
}

bool WorldModel::isIntersected(Vector2D to) const {
    return isIntersected(ball().position, to);
}

bool WorldModel::isCloseToOwnGoalOutLine(Player const& p) const {
    return p.position.x - Field::OWN_GOAL_OUTLINE < GOAL_LINE_DISTANCE;
}

float WorldModel::isCloseToOwnGoalOutLineRel(Player const& p) const {
    return asFloat(isCloseToOwnGoalOutLine(p));
}

bool WorldModel::isCloseToOpponentGoalOutLine(Player const& p) const {
    return Field::OPP_GOAL_OUTLINE - p.position.x < GOAL_LINE_DISTANCE;
}

float WorldModel::isCloseToOpponentGoalOutLineRel(Player const& p) const {
    return asFloat(isCloseToOpponentGoalOutLine(p));
}

bool WorldModel::beingCloseToOwnGoalOutLine() const {
    return isCloseToOwnGoalOutLine(myself());
}

float WorldModel::beingCloseToOwnGoalOutLineRel() const {
    return asFloat(beingCloseToOwnGoalOutLine());
}

bool WorldModel::beingCloseToOpponentGoalOutLine() const {
    return isCloseToOpponentGoalOutLine(myself());
}

float WorldModel::beingCloseToOpponentGoalOutLineRel() const {
    return asFloat(beingCloseToOpponentGoalOutLine());
}

bool WorldModel::isInAnyRectangle(Vector2D point, Rectangle const& r) const {
    return r.isInside(point);
}

bool WorldModel::isInAnyRectangle(Player const& p, Rectangle const& r) const {
    return r.isInside(p.position);
}

bool WorldModel::beingInAnyRectangle(Rectangle const& r) const {
    return r.isInside(myself().position);
}

bool WorldModel::isWellPositioned(Player const& p) const {
    return isSamePlayer(wellPositionedPlayer(), p);
}

bool WorldModel::isUnvulnerable(Player const& p) const {
    return isSamePlayer(mostUnvulnerablePlayer(), p);
}
