#pragma once

#include <string>

#include "practice/World.h"

namespace practice {

/// How fast a match in synchronous mode was played, from the first step to full time.
struct Course {
    int steps = 0; ///< 0: it was played in real time
    double seconds = 0.0;
};

/// What only the server can know of a match, as one JSON object: whose answers came in time, what
/// was refused, who was lost, which commands were executed. Everything else is in the game log.
std::string resultsJson(World const& world, Course const& course = {});

} // namespace practice
