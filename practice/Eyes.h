#pragma once

#include <string>

#include "practice/Random.h"
#include "practice/World.h"

namespace practice {

/// The see message of one player. Distances and directions are rounded; names and velocities of far
/// objects are missing at random.
void appendSee(std::string& out, World const& world, Player const& viewer, Random& random);

/// Internal ticks of 37.5 ms between two see messages.
int seeInterval(View view);

/// A distance as seen: rounded on a logarithmic scale, then to one decimal.
double seenDistance(double metres, double step);

} // namespace practice
