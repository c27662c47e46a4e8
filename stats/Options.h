#pragma once

#include <span>
#include <string>
#include <vector>

namespace stats {

enum class Rows : unsigned char { matches, players, events, cycles };

struct Options {
    Rows rows = Rows::matches;
    bool json = false;
    bool help = false;
    unsigned jobs = 0; ///< files read at once; 0: one for each core
    std::vector<std::string> files;
};

/// Reads the arguments after the program's name. Returns what is wrong with them, empty if nothing.
std::string readOptions(std::span<char const* const> arguments, Options& options);

std::string helpText();

} // namespace stats
