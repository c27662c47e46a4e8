// Tools for whoever debugs the integration: checks that stop the program at an impossible value,
// and hooks to look at a copy of an object in a debugger. Nothing in play calls them.

#include "worldmodel/WorldModel.h"

#include <cerrno> // program_invocation_short_name, a GNU extension
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

/// One condition of a check, as its report names it. The line identifies the condition, so it stays
/// the same wherever the code moves, and so do the texts.
struct Condition {
    int line;
    char const* function;
    char const* text;
};

constexpr char const* CHECK_BALL = "void WorldModel::checkBall()";
constexpr char const* CHECK_PLAYER = "void WorldModel::checkPlayer(const Player&) const";

constexpr Condition BALL_POSITION = {
    673, CHECK_BALL,
    "bPos.isInvalid() || ((bPos.getX() < 60 && bPos.getX() > -60) && (bPos.getY() < 40 && "
    "bPos.getY() > -40))"};
constexpr Condition BALL_VELOCITY = {
    676, CHECK_BALL,
    "bVel.isInvalid() || ((bVel.getLength() <= 3.3 && bVel.getLength() >= 0) && "
    "(bVel.getDirection() <= 180 && bVel.getDirection() >=-180 ))"};
constexpr Condition PLAYER_POSITION = {
    690, CHECK_PLAYER,
    "pPos.isInvalid() || ((pPos.getX() < 60 && pPos.getX() > -60) && (pPos.getY() < 40 && "
    "pPos.getY() > -40))"};
constexpr Condition PLAYER_VELOCITY = {
    693, CHECK_PLAYER,
    "pVel.isInvalid() || ((pVel.getLength() <= 3 && pVel.getLength() >= 0) && "
    "(pVel.getDirection() <= 180 && pVel.getDirection() >=-180 ))"};
constexpr Condition HEAD_DIRECTION = {
    694, CHECK_PLAYER, "isinf(hDir) || hDir == UNDEFINED_FLOAT || (hDir >= 0 && hDir <= 360)"};
constexpr Condition BODY_DIRECTION = {
    695, CHECK_PLAYER, "isinf(bDir) || bDir == UNDEFINED_FLOAT || (bDir >= 0 && bDir <= 360)"};
constexpr Condition SHIRT_NUMBER = {696, CHECK_PLAYER, "unum <= 11 && unum >= 0"};
constexpr Condition TEAMMATE = {700, "void WorldModel::checkTeammate(const Player&) const",
                                "!p.isOpponent()"};
constexpr Condition OPPONENT = {704, "void WorldModel::checkOpponent(const Player&) const",
                                "p.isOpponent()"};
constexpr Condition MY_TEAM_SIZE = {709, "void WorldModel::checkMyTeam()", "guysCount<=11"};
constexpr Condition THEIR_TEAM_SIZE = {716, "void WorldModel::checkTheirTeam()", "guysCount<=11"};
constexpr Condition UNKNOWN_PLAYERS_SIZE = {723, "void WorldModel::checkUnknownPlayers()",
                                            "guysCount<=21"};

/// As assert() does, but in every build type.
void require(bool holds, Condition const& condition) {
    if (holds) return;
    std::fprintf(stderr, "%s: WorldModel_LowLevel.cpp:%d: %s: Assertion `%s' failed.\n",
                 program_invocation_short_name, condition.line, condition.function, condition.text);
    std::abort();
}

bool isPlausiblePosition(Vector2D pos) {
    return pos.isInvalid() ||
           ((pos.getX() < 60 && pos.getX() > -60) && (pos.getY() < 40 && pos.getY() > -40));
}

bool isPlausibleVelocity(Vector2D vel, double maxSpeed) {
    return vel.isInvalid() || ((vel.getLength() <= maxSpeed && vel.getLength() >= 0) &&
                               (vel.getDirection() <= 180 && vel.getDirection() >= -180));
}

bool isPlausibleDirection(float direction) {
    return std::isinf(direction) || direction == UNDEFINED_FLOAT ||
           (direction >= 0 && direction <= 360);
}

/// Holds a copy while a debugger stops here.
template <typename T>
void lookAt(T /*copy*/) { // NOLINT(performance-unnecessary-value-param): the copy is the point
}

void lookAtAll(std::vector<Player> const& players) {
    for (Player const& player : players) {
        lookAt(player);
    }
}

} // namespace

// Not const where they could be: the reports quote these signatures.
// NOLINTBEGIN(readability-make-member-function-const)

void WorldModel::checkBall() {
    constexpr double FASTEST = 3.3; // intentional: a little above the players' limit
    require(isPlausiblePosition(ball().position), BALL_POSITION);
    require(isPlausibleVelocity(ball().velocity, FASTEST), BALL_VELOCITY);
}

void WorldModel::checkMyself() {
    checkTeammate(myself());
}

void WorldModel::checkPlayer(Player const& p) const {
    constexpr double FASTEST = 3;
    require(isPlausiblePosition(p.position), PLAYER_POSITION);
    require(isPlausibleVelocity(p.velocity, FASTEST), PLAYER_VELOCITY);
    require(isPlausibleDirection(p.headDirection), HEAD_DIRECTION);
    require(isPlausibleDirection(p.bodyDirection), BODY_DIRECTION);
    require(p.unum <= 11 && p.unum >= 0, SHIRT_NUMBER);
}

void WorldModel::checkTeammate(Player const& p) const {
    checkPlayer(p);
    require(!p.isOpponent(), TEAMMATE);
}

void WorldModel::checkOpponent(Player const& p) const {
    checkPlayer(p);
    require(p.isOpponent(), OPPONENT);
}

void WorldModel::checkMyTeam() {
    require(teammates().size() <= 11, MY_TEAM_SIZE);
    for (Player const& player : teammates()) {
        checkTeammate(player);
    }
}

void WorldModel::checkTheirTeam() {
    require(opponents().size() <= 11, THEIR_TEAM_SIZE);
    for (Player const& player : opponents()) {
        checkOpponent(player);
    }
}

void WorldModel::checkUnknownPlayers() {
    require(situation_.unknownPlayers.size() <= 21, UNKNOWN_PLAYERS_SIZE);
    for (Player const& player : situation_.unknownPlayers) {
        checkPlayer(player);
    }
}

void WorldModel::printSenseBody() {
    lookAt(myself().bodyInfo);
}

void WorldModel::printMyself() {
    lookAt(myself());
}

void WorldModel::printMyTeam() {
    lookAtAll(teammates());
}

void WorldModel::printTheirTeam() {
    lookAtAll(opponents());
}

void WorldModel::printUnknownPlayers() {
    lookAtAll(situation_.unknownPlayers);
}

void WorldModel::printBall() {
    lookAt(ball());
}

// NOLINTEND(readability-make-member-function-const)
