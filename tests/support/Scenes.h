#pragma once

#include <string>

namespace support {

/// A sense_body of a fresh player: view mode, speed and head angle as the message has them, and as
/// the numbers of commands executed 1, 22, 333, 4, 5, 6, 7, 8.
std::string senseBody(int time, std::string const& view = "high normal",
                      std::string const& speed = "0 0", std::string const& headAngle = "0");

/// About the largest see that a match has: two full teams in motion, seen in a wide view by a
/// player who has nearly all the others before it.
std::string largestSee();

} // namespace support
