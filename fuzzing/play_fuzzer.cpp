// Any line is a datagram that the player takes over and decides upon: what a hostile message tells
// goes through all of the arithmetic.

#include <csignal>
#include <cstdlib>
#include <optional>
#include <sys/time.h>

#include "config/ConfigFile.h"
#include "config/Configuration.h"
#include "fuzzing/Lines.h"
#include "sensing/Sensors.h"
#include "skills/SkillPool.h"
#include "tests/support/AgentHarness.h"

namespace {

/// What outlives an agent: the dice of the kick-off and how far a set piece has come.
void forgetLastInput() {
    srandom(1);
    Configuration::playerTypesV.clear();
    SkillPool::resetGoalieFlags();
    support::LinkedAgent first;
    first.join('l', 4, "play_on");
    first.decide();
}

void hear(support::AgentHarness& agent, std::string_view datagram) {
    agent.sense(datagram);
    // Main may be late, so that messages come together: a blank ahead holds one back.
    if (datagram.starts_with(' ')) return;
    if (!agent.world.integrateSensorInfo()) return;
    agent.decide();
    for (std::string const& command : agent.allCommands()) {
        // Spoken words may hold these letters.
        bool const isText = command.starts_with("(say");
        bool const hasNoNumber =
            command.find("nan") != std::string::npos || command.find("inf") != std::string::npos;
        if (hasNoNumber && !isText) std::abort();
    }
}

/// libFuzzer watches for hangs by the signal that an agent takes for its timer: that watch stops
/// while the agents are made, and then gets the signal back.
void start(std::optional<support::LinkedAgent>& agent, bool goalie) {
    itimerval const never{};
    itimerval timer{};
    setitimer(ITIMER_REAL, &never, &timer);
    struct sigaction ignore {};
    struct sigaction handler {};
    ignore.sa_handler = SIG_IGN; // drops a signal on its way
    sigaction(SIGALRM, &ignore, &handler);
    forgetLastInput();
    agent.emplace(goalie);
    sigaction(SIGALRM, &handler, nullptr);
    setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace

/// The first line names the kind of player: "goalie" or anything else.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    // A set piece is then over within the few cycles of an input.
    ConfigFile::passMinDelay = ConfigFile::passScanDelay = 2.0;
    std::string_view const text(reinterpret_cast<char const*>(data), size);
    std::optional<support::LinkedAgent> agent;
    start(agent, text.starts_with("goalie"));
    forEachLine(data, size, [&agent](std::string_view line) { hear(*agent, line); });
    agent->world.integrateSensorInfo();
    return 0;
}
