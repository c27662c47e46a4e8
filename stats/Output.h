#pragma once

#include <string>

#include "stats/Options.h"

namespace stats {

/// What one file gives: rows of CSV, each with its line end, or JSON objects with ", " between, and
/// what was wrong with it.
struct FileOutput {
    std::string text;
    std::string error; ///< empty: nothing
};

/// Reads a file and prints what the options ask for. A file that is not understood gives no rows.
FileOutput outputOf(std::string const& file, Options const& options);

/// The header of the CSV table, with its line end.
std::string csvHeader(Rows rows);

} // namespace stats
