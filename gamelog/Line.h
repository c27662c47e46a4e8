#pragma once

#include <string>
#include <string_view>

#include "gamelog/Records.h"

namespace gamelog {

/// The longest line that is read, in bytes. The longest of a usual log is the server_param of 4 kB.
constexpr std::size_t LONGEST_LINE = 65536;

/// Where and why a line could not be read.
struct LineFault {
    std::size_t column = 0;    ///< counted from 1; 0: there is no fault
    std::string_view expected; ///< what should have stood there

    explicit operator bool() const { return column != 0; }
};

/// Reads one line, without its end, of a log of any version, or one datagram for a monitor, without
/// its final NUL. Reuses what `record` holds. After a fault the record is incomplete.
LineFault readLine(std::string_view line, Record& record);

/// "column 17: expected a number, found 'abc'", with unprintable bytes as question marks.
std::string describeFault(std::string_view line, LineFault const& fault);

} // namespace gamelog
