#pragma once

#include <string>

#include "practice/World.h"

namespace practice {

// What a player feels: the sense_body message.
std::string senseBodyMessage(World const& world, Player const& player);

} // namespace practice
