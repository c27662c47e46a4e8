#pragma once

#include "practice/Random.h"
#include "practice/World.h"

/// How bodies and ball move and what the commands do to them. Whether a command is allowed at the
/// moment is decided by Match, what it means for the game by Referee. Angles of commands are
/// degrees, relative to the player's body; arguments outside their range are clamped.
namespace practice {

/// Effect at the next step: the turn of the body, with noise and slowed by the speed.
void turn(Player& player, double momentDeg, Random& random);
/// Effect at the next step, exact; the neck stays within +-90 degrees of the body.
void turnNeck(Player& player, double momentDeg);
/// Effect at the start of the next step.
void dash(Player& player, double power, double dirDeg = 0.0);
/// Accelerates the ball; false, and no effect, when it is out of reach.
bool kick(World& world, Player const& player, double power, double dirDeg, Random& random);
/// A goalie jumps to the ball and turns to it; false, and no effect, when the ball is not in its
/// area.
bool catchBall(World& world, Player& goalie, double dirDeg);

/// Some of the players.
struct Players {
    Table<int, MAX_PLAYERS> ids{};
    std::size_t count = 0;

    void add(int id) { ids[static_cast<int>(count++)] = id; }
    int const* begin() const { return ids.data(); }
    int const* end() const { return ids.data() + count; }
};

/// The movement of one step: dashes, turns, noise, goal posts, collisions, the ball in a goalie's
/// hands. Returns the players that the ball ran into.
Players moveAll(World& world, Random& random);

/// What a step gives back after the movement: stamina, hearing, the right to catch and to command.
void recoverAll(World& world);

/// The path of an object of the given size during one step, reflected at the goal posts: `vel` is
/// its direction and length and is turned where it bounces. Returns where it ends.
Vec moveAlong(Vec pos, Vec& vel, double size);

} // namespace practice
