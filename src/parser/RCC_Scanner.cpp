#include "parser/RCC_Scanner.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

std::string_view between(char const* first, char const* last) {
    return {first, static_cast<std::size_t>(last - first)};
}

} // namespace

bool RCC_Scanner::finish() {
    if (!close()) return false;
    while (peek() == '\0' && cursor != end) {
        ++cursor; // the NUL that ends a datagram
    }
    return cursor == end;
}

std::string_view RCC_Scanner::takeWhile(unsigned classes) {
    char const* const first = cursor;
    cursor = std::find_if_not(cursor, end, [=](char c) { return rcc::is(classes, c); });
    return between(first, cursor);
}

std::string_view RCC_Scanner::word() {
    peek();
    return takeWhile(rcc::DIGIT | rcc::LETTER);
}

bool RCC_Scanner::textUpToClose(std::string_view& text) {
    peek();
    text = takeWhile(rcc::SPACE | rcc::DIGIT | rcc::QUOTE | rcc::LETTER);
    return atClose();
}

bool RCC_Scanner::quoted(std::string_view& text) {
    if (!take('"')) return false;
    text = takeWhile(rcc::SPACE | rcc::DIGIT | rcc::PARENTHESIS | rcc::LETTER);
    return take('"');
}

bool RCC_Scanner::skipAtom() {
    std::string_view ignored;
    return atQuote() ? quoted(ignored) : !word().empty();
}

bool RCC_Scanner::item(std::string_view& text) {
    peek();
    char const* const first = cursor;
    int depth = 0;
    do {
        if (open()) {
            if (++depth > MAX_DEPTH) return false;
        } else if (close()) {
            if (--depth < 0) return false;
        } else if (!skipAtom()) {
            return false;
        }
    } while (depth > 0);
    text = between(first, cursor);
    return true;
}

bool RCC_Scanner::skipItems() {
    std::string_view ignored;
    while (!atClose()) {
        if (!item(ignored)) return false;
    }
    return true;
}

bool RCC_Scanner::integer(int& value, int low, int high) {
    double number = 0;
    if (!real(number) || number < low || number > high || number != std::trunc(number)) {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

bool RCC_Scanner::angle(RCC_Angle& angle) {
    angle.unit = RCC_Angle::Degrees;
    return real(angle.value) && isTurn(angle.value);
}
