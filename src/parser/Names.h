#pragma once

#include <string_view>

#include "parser/RCC_Records.h"

namespace rcc {

/// What the name of a fixed object or of the ball stands for in a see message.
struct NamedObject {
    enum class Kind { unknown, line, flag, goal, ball };

    Kind kind = Kind::unknown;
    int code = 0; ///< of RCC_Line or RCC_Flag
};

/// `name` is the text between the parentheses, as `f p l c`.
NamedObject findNamedObject(std::string_view name);

/// The play mode that a referee's word stands for, seen from a side (1 left, -1 right, 0 not known
/// yet).
RCC_PlayMode playModeOf(std::string_view word, int ownSide);

} // namespace rcc
