// The player: agent [host [teamname [-goalie]]], with "player.conf" in the working directory.

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <pthread.h>
#include <string_view>

#include "config/ConfigFile.h"
#include "runtime/Agent.h"
#include "runtime/SenseThread.h"
#include "runtime/Statistics.h"

namespace {

constexpr int FAILURE_STATUS = -1;

/// Whether the command line can be understood: a bad one ends the program in silence.
bool isValid(int argc, char* const argv[]) {
    return argc <= 3 || (argc == 4 && std::string_view(argv[3]) == "-goalie");
}

} // namespace

int main(int argc, char* argv[]) {
    if (!isValid(argc, argv)) return FAILURE_STATUS;

    if (!ConfigFile::parseConfigFile("player.conf", false, false)) {
        std::cerr << "Unable to parse <player.conf>!\n";
        return FAILURE_STATUS;
    }
    if (argc > 2) ConfigFile::teamname = argv[2];
    if (argc > 1) ConfigFile::serverHost = argv[1];
    bool const goalie = argc > 3;

    Agent const agent(ConfigFile::serverHost.c_str(), ConfigFile::serverPort,
                      ConfigFile::teamname.c_str(), goalie);

    pthread_t senseThread{};
    int const rc =
        pthread_create(&senseThread, nullptr, SenseThread::senseCallback, Agent::worldModel);
    if (rc != 0) {
        std::cerr << "pthread_create() failed, rc=" << rc << ", errno=" << errno << '\n';
    }
    std::signal(SIGINT, sigintHandler);

    Agent::run();

    // Not exit(): the sense thread still runs and must not lose its statics to destructors.
    std::quick_exit(rc);
}
