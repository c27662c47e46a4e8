#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>

namespace rcc {

/// Reads a number of at most seven digits without an exponent, as nearly all are that a server
/// sends (`-12.3`, `0.02`). Returns where it ends, or null when [first, last) starts with anything
/// else or longer.
///
/// The value is bit by bit the one that std::from_chars gives: the digits without their point are a
/// whole number below 2^24, and that as well as the power of ten is exact even in a float, so that
/// the one rounding is that of the division, and the result the number nearest to the decimal.
template <std::floating_point T>
char const* readShortDecimal(char const* first, char const* last, T& value) {
    static constexpr std::array<T, 8> POWERS = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};
    constexpr std::ptrdiff_t MOST_DIGITS = POWERS.size() - 1;

    std::uint32_t number = 0; // wraps when there are too many digits
    auto const readDigits = [&number, last](char const* from) {
        for (; from != last; ++from) {
            auto const digit = static_cast<std::uint32_t>(*from) - '0';
            if (digit > 9) break;
            number = number * 10 + digit;
        }
        return from;
    };

    bool const negative = first != last && *first == '-';
    char const* const whole = negative ? first + 1 : first;
    char const* rest = readDigits(whole);
    std::ptrdiff_t digits = rest - whole;
    std::ptrdiff_t decimals = 0;
    if (rest != last && *rest == '.') {
        char const* const fraction = rest + 1;
        rest = readDigits(fraction);
        decimals = rest - fraction;
        digits += decimals;
    }
    if (digits == 0 || digits > MOST_DIGITS) return nullptr;
    T const magnitude = static_cast<T>(number) / POWERS[static_cast<std::size_t>(decimals)];
    value = negative ? -magnitude : magnitude;
    return rest;
}

} // namespace rcc
