#pragma once

#include <string>

#include "practice/World.h"

namespace practice {

/// What only the server can know of a match, as one JSON object: whose answers came in time, what
/// was refused, who was lost, which commands were executed. Everything else is in the game log.
std::string resultsJson(World const& world);

} // namespace practice
