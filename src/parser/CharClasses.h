#pragma once

#include <array>
#include <cstddef>

namespace rcc {

/// Every character is of one class at most, so that a table answers with one look what takes a
/// chain of comparisons otherwise. Classes are combined with `|`; what is in none is not printable.
enum CharClass : unsigned {
    SPACE = 1U << 0U,
    OTHER_BLANK = 1U << 1U, ///< ends of lines and tabs
    DIGIT = 1U << 2U,
    PARENTHESIS = 1U << 3U,
    QUOTE = 1U << 4U,
    LETTER = 1U << 5U, ///< all the other printable characters too
};

inline constexpr auto CHAR_CLASSES = [] {
    std::array<unsigned char, 256> classes{};
    for (std::size_t c = '!'; c <= '~'; ++c) {
        classes[c] = LETTER;
    }
    for (std::size_t c = '0'; c <= '9'; ++c) {
        classes[c] = DIGIT;
    }
    classes[' '] = SPACE;
    classes['\n'] = classes['\t'] = classes['\r'] = OTHER_BLANK;
    classes['('] = classes[')'] = PARENTHESIS;
    classes['"'] = QUOTE;
    return classes;
}();

constexpr bool is(unsigned wantedClasses, char c) {
    return (CHAR_CLASSES[static_cast<unsigned char>(c)] & wantedClasses) != 0;
}

} // namespace rcc
