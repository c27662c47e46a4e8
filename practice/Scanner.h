#pragma once

#include <optional>
#include <string_view>

/// Takes the parts of a command from the front of a text. Blanks before a part are skipped.
namespace practice::scan {

inline constexpr std::string_view BLANKS = " \t\r\n";
inline constexpr std::string_view DIGITS = "0123456789";
inline constexpr std::string_view WORD_LETTERS = "abcdefghijklmnopqrstuvwxyz_";
/// Of team names.
inline constexpr std::string_view TEAM_LETTERS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+,-./:;<=>?@[\\]^_";

/// Takes the letters that come next, blanks before them only if they are letters too.
std::string_view takeAll(std::string_view& s, std::string_view letters);

/// False, and nothing is taken but blanks, when another character comes.
bool take(std::string_view& s, char c);

/// Empty when another character comes.
std::string_view takeWord(std::string_view& s, std::string_view letters = WORD_LETTERS);

/// [+-]digits or [+-][digits].digits, either with an exponent: no "5.", "nan" or "0x1".
std::optional<double> takeNumber(std::string_view& s);

/// [+-]digits that fit into an int.
std::optional<int> takeInteger(std::string_view& s);

/// NUL and blanks at the end of a datagram mean nothing.
std::string_view withoutEnding(std::string_view datagram);

} // namespace practice::scan
