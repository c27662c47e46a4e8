#pragma once

#include "practice/Random.h"
#include "practice/World.h"

// Where the referee puts the ball and the players when the game is interrupted.
namespace practice {

bool isInPenaltyArea(Vec pos, Side owner, double margin = 0.0);

Vec cutToPitch(Vec pos, double inside = 0.0);
// The pitch and the 5 m around it where players may be.
Vec cutToRunOff(Vec pos);
// Outside the penalty area of that side: its front corner if the point lies inside.
Vec outOfPenaltyArea(Vec pos, Side owner);
// Outside the goal area: straight in front of it, or to its front corner.
Vec outOfGoalArea(Vec pos, Side owner);
Vec toGoalAreaCorner(Vec pos, Side owner);
Vec cornerSpot(Vec ball);
Vec goalKickSpot(Vec ball);

// Brings players of one team (none: of both) to the edge of a circle, radially if the run-off
// allows it.
void clearCircle(World& world, Side team, Vec centre, double radius);
// For an indirect free kick: who stands on its own goal line may stay.
void clearCircleButGoalLine(World& world, Side team, Vec centre, double radius);
// Brings the opponents of the owner out of its penalty area.
void clearPenaltyArea(World& world, Side owner);
// Nobody farther from the pitch than its run-off of 5 m.
void bringBackFromOutside(World& world);
// Everybody into the own half: onto the half-way line, or to a random point before the match or a
// half.
void sendToOwnHalf(World& world, Random* random = nullptr);
// Offenders beyond the line, given in their attacking direction, go back behind it.
void clearBeyondOffsideLine(World& world, Side offender, double line);

} // namespace practice
