#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace watch {

struct Options {
    static constexpr std::size_t MEGABYTE = 1'000'000;

    std::string host = "localhost"; ///< of the soccer server
    int port = 6000;
    std::string address = "127.0.0.1"; ///< where browsers are listened for
    int http = 8000;                   ///< their port; 0: any free one
    std::string page;                  ///< the viewer's file; empty: beside the program
    std::size_t history = 256;         ///< megabytes of the match that are kept
    bool lookOnly = false;             ///< browsers can give no commands
    bool help = false;
};

/// Reads the arguments after the program's name. Returns what is wrong with them, empty if nothing.
std::string readOptions(std::span<char const* const> arguments, Options& options);

std::string helpText();

} // namespace watch
