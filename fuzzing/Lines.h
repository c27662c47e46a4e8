#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Calls `use` for each line of an input. A fuzzed message is a line: several show what one leaves
/// behind for the next, and the inputs kept are texts.
template <typename Use>
void forEachLine(std::uint8_t const* data, std::size_t size, Use use) {
    std::string_view rest(reinterpret_cast<char const*>(data), size);
    while (!rest.empty()) {
        std::string_view const line = rest.substr(0, rest.find('\n'));
        use(line);
        rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    }
}
