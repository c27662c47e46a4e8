#include "practice/Scanner.h"

#include <charconv>

namespace practice::scan {

std::string_view takeAll(std::string_view& s, std::string_view letters) {
    std::string_view const taken = s.substr(0, s.find_first_not_of(letters));
    s.remove_prefix(taken.size());
    return taken;
}

bool take(std::string_view& s, char c) {
    takeAll(s, BLANKS);
    if (!s.starts_with(c)) return false;
    s.remove_prefix(1);
    return true;
}

std::string_view takeWord(std::string_view& s, std::string_view letters) {
    takeAll(s, BLANKS);
    return takeAll(s, letters);
}

std::optional<double> takeNumber(std::string_view& s) {
    takeAll(s, BLANKS);
    if (s.starts_with('+') && !s.starts_with("+-")) s.remove_prefix(1); // from_chars takes none
    double value = 0.0;
    auto const [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    std::string_view const taken = s.substr(0, static_cast<std::size_t>(end - s.data()));
    std::size_t const dot = taken.find('.');
    bool const openDot = dot != taken.npos && taken.find_first_of(DIGITS, dot) != dot + 1;
    bool const foreign = taken.find_first_not_of("0123456789+-.eE") != taken.npos;
    if (error != std::errc{} || openDot || foreign) return std::nullopt;
    s.remove_prefix(taken.size());
    return value;
}

std::optional<int> takeInteger(std::string_view& s) {
    takeAll(s, BLANKS);
    if (s.starts_with('+') && !s.starts_with("+-")) s.remove_prefix(1); // from_chars takes none
    int value = 0;
    auto const [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (error != std::errc{}) return std::nullopt;
    s.remove_prefix(static_cast<std::size_t>(end - s.data()));
    return value;
}

std::string_view withoutEnding(std::string_view datagram) {
    constexpr std::string_view ENDINGS(" \t\r\n\0", 5);
    return datagram.substr(0, datagram.find_last_not_of(ENDINGS) + 1);
}

} // namespace practice::scan
