#pragma once

#include <charconv>
#include <string>
#include <type_traits>

namespace practice {

/// Appends words and numbers without blanks in between. A double prints as the protocol has it: at
/// most six significant digits in the shortest form, "-0" for negative zero, whatever the locale.
template <typename... Parts>
void appendText(std::string& out, Parts const&... parts) {
    auto const append = [&out]<typename Part>(Part const& part) {
        if constexpr (std::is_floating_point_v<Part>) {
            char digits[32];
            out.append(digits, std::to_chars(digits, digits + sizeof digits, part,
                                             std::chars_format::general, 6)
                                   .ptr);
        } else if constexpr (std::is_same_v<Part, int>) {
            out += std::to_string(part);
        } else {
            out += part;
        }
    };
    (append(parts), ...);
}

/// The same as a new string: text("(score ", 3, " ", 1, " ", 0, ")").
template <typename... Parts>
std::string text(Parts const&... parts) {
    std::string out;
    appendText(out, parts...);
    return out;
}

} // namespace practice
