#pragma once

#include <optional>
#include <string>
#include <vector>

#include "practice/Match.h"
#include "tests/support/AgentHarness.h"
#include "tests/support/Script.h"

namespace support {

/// One agent in a match of the practice server, in process and without a clock: the same seed gives
/// the same match. The others on the pitch join and then do nothing, or play by a script.
class MatchDriver {
public:
    struct Setup {
        bool goalie = false;
        bool right = false; ///< the side that the agent plays on
        int unum = 10;      ///< players of its team who join before it: unum - 1
        int opponents = 0;
        int halfCycles = 3000;
        unsigned seed = 1;
        bool scripted = false; ///< two whole teams whose other players play
    };

    explicit MatchDriver(Setup const& setup);

    /// One cycle: commands of the cycle reach the server after its last see, then comes the step.
    /// Returns the commands sent.
    std::vector<std::string> step();
    /// Steps until the match is in play.
    void kickOff();

    practice::Match match;
    AgentHarness agent;
    int id;                             ///< the agent's index in the practice server's world
    std::vector<std::string> announced; ///< the referee's words in the last step

private:
    /// Hands over what the server has sent to the agent and decides on it, as the main loop would.
    void deliver();
    std::vector<std::string> pending;
    std::optional<Script> others;
};

} // namespace support
