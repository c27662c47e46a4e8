#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace watch {

/// All parts behind one another.
inline std::string joined(std::initializer_list<std::string_view> parts) {
    std::string out;
    for (std::string_view const part : parts) {
        out += part;
    }
    return out;
}

} // namespace watch
