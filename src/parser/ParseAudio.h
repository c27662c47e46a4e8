#pragma once

#include "parser/RCC_Audio.h"
#include "parser/RCC_Scanner.h"

namespace rcc {

// Each reads what follows the speaker in a hear message, up to its closing, which is not read.

/// `ownSide` is 1 left, -1 right, 0 not known.
bool parseRefAudio(RCC_Scanner& scanner, int ownSide, RCC_RefAudio& audio);
bool parseSelfAudio(RCC_Scanner& scanner, RCC_SelfAudio& audio);
bool parseCoachAudio(RCC_Scanner& scanner, RCC_CoachAudio& audio);

/// A player is named by the direction, which is read here too.
bool parsePlayerAudio(RCC_Scanner& scanner, RCC_PlayerAudio& audio);

} // namespace rcc
