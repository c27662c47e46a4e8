#pragma once

#include <string_view>

/// The symbols of the team's say messages; a symbol's place is its value.
namespace SayAlphabet {

inline constexpr std::string_view SYMBOLS =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs";
static_assert(SYMBOLS.size() == 55);

} // namespace SayAlphabet
