#include "gamelog/Records.h"

#include <algorithm>
#include <charconv>

namespace gamelog {

std::string const* Parameters::find(std::string_view name) const {
    auto const found = std::ranges::find(pairs, name, &Parameter::name);
    return found == pairs.end() ? nullptr : &found->value;
}

double Parameters::number(std::string_view name, double fallback) const {
    std::string const* const text = find(name);
    if (text == nullptr) return fallback;
    double value = fallback;
    auto const read = std::from_chars(text->data(), text->data() + text->size(), value);
    return read.ec == std::errc{} ? value : fallback;
}

} // namespace gamelog
