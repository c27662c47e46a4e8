#pragma once

#include "parser/RCC_Scanner.h"
#include "parser/RCC_Status.h"

namespace rcc {

// Each reads what follows the first word of its message, up to the closing, which is not read.

bool parseScore(RCC_Scanner& scanner, RCC_Score& score);
bool parseSubstitution(RCC_Scanner& scanner, RCC_Substitution& substitution);
bool parseError(RCC_Scanner& scanner, RCC_Error& error);
bool parseInit(RCC_Scanner& scanner, RCC_InitMsg& init);
bool parseFullState(RCC_Scanner& scanner, RCC_FullState& state);

/// The answer to a reconnect tells the side only: 1 left, -1 right.
bool parseReconnect(RCC_Scanner& scanner, int& side);

} // namespace rcc
