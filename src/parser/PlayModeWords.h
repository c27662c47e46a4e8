#pragma once

#include "parser/RCC_PlayMode.h"

#include <string_view>

namespace rcc {

/// The number of a referee's word, seen from a side (1 left, -1 right, 0 not known yet).
RCC_PlayMode playModeOf(std::string_view word, int ownSide);

} // namespace rcc
