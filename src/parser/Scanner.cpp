#include "parser/Scanner.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace rcc {

namespace {

std::string_view between(char const* first, char const* last) {
    return {first, static_cast<std::size_t>(last - first)};
}

} // namespace

bool Scanner::finish() {
    if (!close()) return false;
    while (peek() == '\0' && cursor_ != end_) {
        ++cursor_; // the NUL that ends a datagram
    }
    return cursor_ == end_;
}

std::string_view Scanner::takeWhile(unsigned classes) {
    char const* const first = cursor_;
    cursor_ = std::find_if_not(cursor_, end_, [=](char c) { return is(classes, c); });
    return between(first, cursor_);
}

std::string_view Scanner::word() {
    peek();
    return takeWhile(DIGIT | LETTER);
}

bool Scanner::textUpToClose(std::string_view& text) {
    peek();
    text = takeWhile(SPACE | DIGIT | QUOTE | LETTER);
    return atClose();
}

bool Scanner::quoted(std::string_view& text) {
    if (!take('"')) return false;
    text = takeWhile(SPACE | DIGIT | PARENTHESIS | LETTER);
    return take('"');
}

bool Scanner::skipAtom() {
    std::string_view ignored;
    return atQuote() ? quoted(ignored) : !word().empty();
}

bool Scanner::item(std::string_view& text) {
    peek();
    char const* const first = cursor_;
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
    text = between(first, cursor_);
    return true;
}

bool Scanner::skipItems() {
    std::string_view ignored;
    while (!atClose()) {
        if (!item(ignored)) return false;
    }
    return true;
}

bool Scanner::integer(int& value, int low, int high) {
    double number = 0;
    if (!real(number) || number < low || number > high || number != std::trunc(number)) {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

bool Scanner::angle(RCC_Angle& angle) {
    angle.unit = RCC_Angle::Unit::degrees;
    return real(angle.value) && isTurn(angle.value);
}

} // namespace rcc
