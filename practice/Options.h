#pragma once

#include <span>
#include <string>

#include "practice/GameLog.h"
#include "practice/Match.h"
#include "practice/Scoreboard.h"

namespace practice {

/// What the command line can say.
struct Options {
    MatchOptions match;
    int port = 6000;
    std::string address = "127.0.0.1";
    LogOptions log{};
    bool trainer = false;     ///< listen for one on the port above
    std::string resultsFile;  ///< empty: none
    int lingerSteps = 50;     ///< after the end of the match
    bool synchronous = false; ///< the clock waits for the players instead of the players for it
    int speed = 0;            ///< of a synchronous match, at most, in times real time; 0: no limit
    Scoreboard::Style scoreboard = Scoreboard::Style::automatic;
    bool help = false;
};

/// Reads the arguments after the program's name. Returns what is wrong with them, empty if nothing.
std::string readOptions(std::span<char const* const> arguments, Options& options);

std::string helpText();

} // namespace practice
