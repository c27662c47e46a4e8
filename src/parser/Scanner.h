#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "parser/RCC_Records.h"

namespace rcc {

/// Every character is of one class at most, so that one look into a table replaces a chain of
/// comparisons. Classes are combined with `|`; a character in none of them is not printable.
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

/// Reads a number of at most seven digits without an exponent, as nearly all are that a server
/// sends (`-12.3`, `0.02`). Returns where it ends, or null when [first, last) starts with anything
/// else or longer.
///
/// The value is bit by bit the one that std::from_chars gives: the digits without their point are a
/// whole number below 2^24, which a float holds exactly, as it does the power of ten. So only the
/// division rounds, and it rounds to the number nearest to the decimal.
///
/// Always inlined: a see has some two hundred numbers, and calls would cost 6% of reading it.
template <std::floating_point T>
[[gnu::always_inline]] inline char const* readShortDecimal(char const* first, char const* last,
                                                           T& value) {
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

/// A cursor over one message of nested lists: `(word 1.5 "text" (word ...))`.
///
/// Every operation skips leading blanks and tells whether it found what it was asked for. After a
/// failure the position is meaningless and the message is to be dropped.
class Scanner {
public:
    static constexpr int MAX_DEPTH = 32; ///< of lists that are skipped unread
    static constexpr int MAX_CYCLE = 1000000000;
    static constexpr int MAX_UNUM = 11;     ///< players of a team
    static constexpr float FULL_TURN = 360; ///< degrees

    explicit Scanner(std::string_view message)
        : cursor_(message.data()), end_(message.data() + message.size()) {}

    bool open() { return take('('); }
    bool close() { return take(')'); }

    /// The opening of a list with the given first word.
    bool open(std::string_view first) { return open() && keyword(first); }

    /// The closing of the message, which nothing but blanks may follow.
    bool finish();

    bool atOpen() { return peek() == '('; }
    bool atClose() { return peek() == ')'; }
    bool atQuote() { return peek() == '"'; }
    bool atNumber() { return is(DIGIT, peek()) || peek() == '-' || peek() == '.'; }

    /// The next character that is not blank, NUL at the end of the message.
    char peek() {
        char const* at = cursor_; // a copy, because a char may alias the cursor itself
        while (at != end_ && is(SPACE | OTHER_BLANK, *at)) {
            ++at;
        }
        cursor_ = at;
        return at == end_ ? '\0' : *at;
    }

    /// A run of printable characters other than blanks, quotes and parentheses; empty if there is
    /// none here.
    std::string_view word();
    bool keyword(std::string_view expected) { return word() == expected; }

    /// Everything up to the closing of the list, which is not read; nested lists are refused.
    bool textUpToClose(std::string_view& text);

    /// A quoted text of printable characters, without its quotes.
    bool quoted(std::string_view& text);

    /// Any one word, quoted text or list, parentheses included.
    bool item(std::string_view& text);

    /// Items up to the closing of the list, which is not read.
    bool skipItems();

    /// A finite decimal number; infinities, nan and hexadecimal are not numbers.
    template <std::floating_point T>
    bool real(T& value) {
        peek();
        T number = 0;
        char const* const rest = readShortDecimal(cursor_, end_, number);
        if (rest == nullptr || !isDelimiter(rest)) return anyReal(value);
        cursor_ = rest;
        value = number;
        return true;
    }

    /// A number without fraction in [low, high], in whatever form a real may have.
    bool integer(int& value, int low = std::numeric_limits<int>::min(),
                 int high = std::numeric_limits<int>::max());

    /// No match comes near the limit; below it differences of cycles cannot overflow.
    bool cycle(int& time) { return integer(time, 0, MAX_CYCLE); }

    bool uniformNumber(int& unum) { return integer(unum, 1, MAX_UNUM); }

    /// Degrees, at most one full turn either way.
    bool angle(RCC_Angle& angle);

    static bool isTurn(float degrees) { return degrees >= -FULL_TURN && degrees <= FULL_TURN; }

private:
    bool take(char expected) {
        if (peek() != expected || cursor_ == end_) return false;
        ++cursor_;
        return true;
    }

    bool startsNumber() {
        char const first = peek();
        if (first != '-') return is(DIGIT, first) || first == '.';
        return end_ - cursor_ > 1 && (is(DIGIT, cursor_[1]) || cursor_[1] == '.');
    }

    /// Whether a number may end here.
    bool isDelimiter(char const* at) const {
        return at == end_ || !is(DIGIT | LETTER | QUOTE, *at);
    }

    /// A number that is long, has an exponent, or is none.
    template <std::floating_point T>
    [[gnu::noinline]] bool anyReal(T& value) {
        if (!startsNumber()) return false;
        auto const [rest, error] = std::from_chars(cursor_, end_, value);
        cursor_ = rest;
        return error == std::errc{} && isDelimiter(cursor_);
    }

    /// The run of characters of these classes here.
    std::string_view takeWhile(unsigned classes);

    bool skipAtom();

    char const* cursor_;
    char const* end_;
};

} // namespace rcc
