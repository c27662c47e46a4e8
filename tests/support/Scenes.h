#pragma once

#include <string>

#include "practice/World.h"

namespace support {

/// Two full teams on the pitch, the ball near the centre and everything in motion. The player to
/// look through is the left team's number 10, whose wide view takes in nearly all the others.
practice::World fullPitch();
inline constexpr int VIEWER = practice::playerId(practice::Side::left, 10);

/// The see of that player: about the largest a match has.
std::string largestSee();

} // namespace support
