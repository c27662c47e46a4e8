#pragma once

#include <string>

#include "practice/World.h"

namespace practice {

/// The sense_body message of a player.
std::string senseBodyMessage(World const& world, Player const& player);

} // namespace practice
