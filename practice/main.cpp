#include <csignal>
#include <cstdio>

#include "practice/Options.h"
#include "practice/Server.h"

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int /*signal*/) {
    stopRequested = 1;
}

void catchSignals() {
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int fail(int status, const std::string& problem) {
    std::fprintf(stderr, "practice-server: %s\n", problem.c_str());
    return status;
}

} // namespace

int main(int argc, char** argv) {
    practice::Options options;
    std::string problem;
    const std::span<const char* const> arguments(argv, static_cast<std::size_t>(argc));
    if (!practice::readOptions(arguments.subspan(1), options, problem)) return fail(2, problem);
    if (options.help) {
        std::fputs(practice::helpText().c_str(), stdout);
        return 0;
    }
    catchSignals();
    const auto server = practice::Server::open(options, problem);
    if (!server) return fail(1, problem);
    return server->run(stopRequested);
}
