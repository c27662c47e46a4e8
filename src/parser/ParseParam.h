#pragma once

#include "parser/RCC_Param.h"
#include "parser/RCC_Scanner.h"

namespace rcc {

// Each reads what follows the first word of its message, up to the closing, which is not read.
// Either all the values in their order, `14.02 5 0.3 ...`, or named, `(goal_width 14.02)...`, in
// any order. Names are compared without regard to case and underscores; unknown ones are skipped.

bool parseServerParam(RCC_Scanner& scanner, RCC_ServerParam& param);
bool parsePlayerParam(RCC_Scanner& scanner, RCC_PlayerParam& param);

/// All values must be there in the named form too.
bool parsePlayerType(RCC_Scanner& scanner, RCC_PlayerType& type);

} // namespace rcc
