#pragma once

#include <cctype>
#include <string>
#include <string_view>

namespace practice_test {

/// The form of a record: every number becomes N, every word of letters stays.
inline std::string skeletonOf(std::string_view record) {
    std::string out;
    for (std::size_t i = 0; i < record.size(); ++i) {
        bool const starts = i == 0 || record[i - 1] == ' ';
        if (starts && (std::isdigit(static_cast<unsigned char>(record[i])) || record[i] == '-')) {
            out += 'N';
            i = std::min(record.find_first_of(" )", i), record.size()) - 1;
        } else {
            out += record[i];
        }
    }
    return out;
}

} // namespace practice_test
