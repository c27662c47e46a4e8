#pragma once

#include <string>

#include "practice/World.h"

namespace practice {

/// The sense_body message of a player.
void appendSenseBody(std::string& out, World const& world, Player const& player);

} // namespace practice
