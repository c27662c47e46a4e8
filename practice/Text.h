#pragma once

#include <charconv>
#include <string>
#include <string_view>

namespace practice {

// Appends a number as the protocol prints it: at most six significant digits in the shortest form,
// "-0" for negative zero, whatever the locale.
inline void appendNumber(std::string& out, double value) {
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
    out.append(digits, end.ptr);
}

// Joins words and numbers without blanks in between: text("(score ", 3, " ", 1, " ", 0, ")").
namespace detail {
inline void append(std::string& out, std::string_view part) {
    out += part;
}
inline void append(std::string& out, char part) {
    out += part;
}
inline void append(std::string& out, int part) {
    out += std::to_string(part);
}
inline void append(std::string& out, double part) {
    appendNumber(out, part);
}
} // namespace detail

template <typename... Parts>
void appendText(std::string& out, const Parts&... parts) {
    (detail::append(out, parts), ...);
}

template <typename... Parts>
std::string text(const Parts&... parts) {
    std::string out;
    appendText(out, parts...);
    return out;
}

} // namespace practice
