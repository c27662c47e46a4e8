#pragma once

#include <string_view>

namespace rcc {

/// What the name of a fixed object or of the ball stands for in a see message.
struct NamedObject {
    enum Kind { Unknown, Line, Flag, Goal, Ball };

    Kind kind = Unknown;
    int code = 0; ///< of RCC_Line or RCC_Flag
};

/// `name` is the text between the parentheses, as `f p l c`.
NamedObject findNamedObject(std::string_view name);

} // namespace rcc
