#pragma once

#include <array>
#include <optional>

#include "practice/Random.h"
#include "practice/World.h"

/// The geometry of the rules: areas, offside, and where the referee puts the ball and the players
/// when the game is interrupted.
namespace practice {

bool isInPenaltyArea(Vec pos, Side owner, double margin = 0.0);

/// Behind a goal line and between the posts.
bool isInGoal(Vec ball);

Vec cutToPitch(Vec pos, double inside = 0.0);
/// The pitch and the 5 m around it where players may be.
Vec cutToRunOff(Vec pos);
/// Outside the penalty area of that side: its front corner if the point lies inside.
Vec outOfPenaltyArea(Vec pos, Side owner);
/// Outside the goal area: straight in front of it.
Vec outOfGoalArea(Vec pos, Side owner);
Vec cornerSpot(Vec ball);
Vec goalKickSpot(Vec ball);

/// Where the free kick for an offside is taken, and the line at the moment when the ball was
/// played; the line is measured in the attacking direction of the offender.
struct OffsideMark {
    Vec spot;
    double line = 0.0;
};
using OffsideMarks = Table<std::optional<OffsideMark>, MAX_PLAYERS>;
/// The team-mates of player `id`, who plays the ball, that are beyond the line: the most advanced
/// of second-last opponent, ball and half-way line.
OffsideMarks offsideMarks(World const& world, int id);

/// Brings players of one team (none: of both) to the edge of a circle around the ball, radially if
/// the run-off allows it. At an indirect free kick a player in its own goal may stay.
void clearBall(World& world, Side team, double radius, bool goalLineMayStay = false);
/// Brings the opponents of the owner out of its penalty area.
void clearPenaltyArea(World& world, Side owner);
/// Brings everybody back who is farther from the pitch than its run-off of 5 m.
void bringBackFromOutside(World& world);
/// Brings all players into their own half: onto the half-way line, or to a random point before a
/// half.
void sendToOwnHalf(World& world, Random* random = nullptr);
/// Offenders beyond the line go back behind it, and off the ball.
void clearBeyondOffsideLine(World& world, Side offender, double line);

} // namespace practice
