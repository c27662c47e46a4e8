#pragma once

#include <string>

namespace watch {

/// The viewer's file: `wanted` if it is not empty, else beside the program or where the program's
/// installation has it; empty if there is none.
std::string findPage(std::string const& wanted);

/// Reads the viewer's file; with what is wrong if it cannot be read or is no viewer.
struct Page {
    std::string text;
    std::string wrong; ///< empty: nothing
};
Page readPage(std::string const& path);

/// The page for a live match: where its events come from, and what its commands carry; without a
/// token it can give none.
std::string livePage(std::string text, std::string const& token);

} // namespace watch
