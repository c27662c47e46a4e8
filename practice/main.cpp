#include <csignal>
#include <cstdio>

#include "practice/Options.h"
#include "practice/Server.h"

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int /*signal*/) {
    stopRequested = 1;
}

int fail(int status, std::string const& problem) {
    std::fprintf(stderr, "practice-server: %s\n", problem.c_str());
    return status;
}

} // namespace

int main(int argc, char** argv) {
    practice::Options options;
    std::span<char const* const> const arguments(argv, static_cast<std::size_t>(argc));
    std::string problem = practice::readOptions(arguments.subspan(1), options);
    if (!problem.empty()) return fail(2, problem);
    if (options.help) {
        std::fputs(practice::helpText().c_str(), stdout);
        return 0;
    }
    std::signal(SIGINT, requestStop);
    std::signal(SIGTERM, requestStop);
    std::signal(SIGHUP, requestStop);
    auto const server = practice::Server::open(options, problem);
    if (!server) return fail(1, problem);
    return server->run(stopRequested);
}
