#pragma once

#include <string>

#include "practice/Random.h"
#include "practice/World.h"

namespace practice {

// The see message of one player: what its eyes make of the world, with the roundings and the names
// that fade with distance. `random` decides which far names and velocities are recognised this
// time.
std::string seeMessage(World const& world, Player const& viewer, Random& random);

// Internal ticks of 37.5 ms between two see messages.
int seeInterval(View view);

// A distance as seen: rounded on a logarithmic scale, then to one decimal.
double seenDistance(double metres, double step);

} // namespace practice
