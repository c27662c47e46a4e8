#pragma once

#include <string>

#include "gamelog/Records.h"
#include "practice/World.h"

namespace practice {

/// The play mode as game logs and monitors know it.
gamelog::PlayMode logMode(PlayMode mode);

/// Names and goals. A team that is not there is called "null".
gamelog::Score scoreOf(World const& world);

/// "Alpha_2-vs-Beta_0": how a result is called in a log and in file names.
std::string resultName(World const& world);

/// Fills a show with the state of the world; its scoreboard is left alone. A show that is used
/// again needs no new memory.
void fillShow(gamelog::Show& show, World const& world);

} // namespace practice
