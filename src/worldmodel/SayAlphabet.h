#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// The symbols of the team's say messages; a symbol's place is its value.
namespace SayAlphabet {

inline constexpr std::string_view SYMBOLS =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs";
static_assert(SYMBOLS.size() == 55);

/// The value of a character that is no symbol.
inline constexpr float UNKNOWN_SYMBOL = 999.0F;

/// The symbol of a value from 0 on; larger ones than the last symbol's are told as the last.
constexpr char symbolOf(int value) {
    return SYMBOLS[std::min(static_cast<std::size_t>(value), SYMBOLS.size() - 1)];
}

/// 0 to 54, or UNKNOWN_SYMBOL.
constexpr float valueOf(char symbol) {
    auto const value = SYMBOLS.find(symbol);
    return value == SYMBOLS.npos ? UNKNOWN_SYMBOL : static_cast<float>(value);
}

} // namespace SayAlphabet
