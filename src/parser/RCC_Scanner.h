#pragma once

#include "parser/CharClasses.h"
#include "parser/RCC_Angle.h"
#include "parser/ShortDecimal.h"

#include <charconv>
#include <concepts>
#include <limits>
#include <string_view>

/// A cursor over one message of nested lists: `(word 1.5 "text" (word ...))`.
///
/// Every operation skips leading blanks and tells whether it found what it was asked for. After a
/// failure the position means nothing any more: the message is to be dropped.
class RCC_Scanner {
public:
    static constexpr int MAX_DEPTH = 32; ///< of lists that are skipped unread
    static constexpr int MAX_CYCLE = 1000000000;
    static constexpr int MAX_UNUM = 11;     ///< players of a team
    static constexpr float FULL_TURN = 360; ///< degrees

    explicit RCC_Scanner(std::string_view message)
        : cursor(message.data()), end(message.data() + message.size()) {}

    bool open() { return take('('); }
    bool close() { return take(')'); }

    /// The opening of a list with the given first word.
    bool open(std::string_view first) { return open() && keyword(first); }

    /// The closing of the message, which nothing but blanks may follow.
    bool finish();

    bool atOpen() { return peek() == '('; }
    bool atClose() { return peek() == ')'; }
    bool atQuote() { return peek() == '"'; }
    bool atNumber() { return rcc::is(rcc::DIGIT, peek()) || peek() == '-' || peek() == '.'; }

    /// The next character that is not blank, NUL at the end of the message.
    char peek() {
        char const* at = cursor; // a copy, because a char may alias the cursor itself
        while (at != end && rcc::is(rcc::SPACE | rcc::OTHER_BLANK, *at)) {
            ++at;
        }
        cursor = at;
        return at == end ? '\0' : *at;
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
        char const* const rest = rcc::readShortDecimal(cursor, end, number);
        if (rest == nullptr || !isDelimiter(rest)) return anyReal(value);
        cursor = rest;
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
        if (peek() != expected || cursor == end) return false;
        ++cursor;
        return true;
    }

    bool startsNumber() {
        char const first = peek();
        if (first != '-') return rcc::is(rcc::DIGIT, first) || first == '.';
        return end - cursor > 1 && (rcc::is(rcc::DIGIT, cursor[1]) || cursor[1] == '.');
    }

    /// Whether a number may end here.
    bool isDelimiter(char const* at) const {
        return at == end || !rcc::is(rcc::DIGIT | rcc::LETTER | rcc::QUOTE, *at);
    }

    /// A number that is long, has an exponent, or is none.
    template <std::floating_point T>
    [[gnu::noinline]] bool anyReal(T& value) {
        if (!startsNumber()) return false;
        auto const [rest, error] = std::from_chars(cursor, end, value);
        cursor = rest;
        return error == std::errc{} && isDelimiter(cursor);
    }

    /// The run of characters of these classes here.
    std::string_view takeWhile(unsigned classes);

    bool skipAtom();

    char const* cursor;
    char const* end;
};
