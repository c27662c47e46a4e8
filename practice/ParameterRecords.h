#pragma once

#include <string>
#include <vector>

#include "practice/Options.h"

namespace practice {

/// The records that begin every game log and greet every monitor: server_param, player_param and
/// the player types, as lines without their ends. `port` is the one where players join.
std::vector<std::string> parameterRecords(Options const& options, int port);

} // namespace practice
