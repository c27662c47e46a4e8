#pragma once

#include <string>

#include "practice/World.h"

namespace practice {

// What a player feels: the sense_body message.
std::string senseBodyMessage(const World& world, const Player& player);

} // namespace practice
