#pragma once

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "practice/Parameters.h"
#include "tests/support/Scenes.h"
#include "tests/support/ServerEnd.h"

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// One run of the program in a folder of its own, with what it prints kept in files.
class AgentProcess {
public:
    /// Without a configuration when `conf` is null.
    AgentProcess(std::vector<std::string> arguments, char const* conf) {
        std::string name = (std::filesystem::temp_directory_path() / "agent.XXXXXX").string();
        folder_ = mkdtemp(name.data());
        if (conf != nullptr) std::ofstream(folder_ / "player.conf") << conf;
        arguments.insert(arguments.begin(), AGENT_BINARY);
        std::vector<char*> argv;
        argv.reserve(arguments.size() + 1);
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        pid_ = fork();
        if (pid_ == 0) run(argv);
    }
    ~AgentProcess() {
        if (status_ < 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        std::filesystem::remove_all(folder_);
    }
    AgentProcess(AgentProcess const&) = delete;
    AgentProcess& operator=(AgentProcess const&) = delete;

    bool isRunning() { return status_ < 0 && waitpid(pid_, &status_, WNOHANG) == 0; }
    /// The exit status; 1000 and the signal when killed by one, -1 when it does not end.
    int waitForEnd() {
        constexpr milliseconds LIMIT{10000};
        auto const start = Clock::now();
        while (isRunning()) {
            if (Clock::now() - start > LIMIT) return -1;
            poll(nullptr, 0, 5);
        }
        return WIFEXITED(status_) ? WEXITSTATUS(status_) : 1000 + WTERMSIG(status_);
    }
    void interrupt() const { kill(pid_, SIGINT); }
    std::string output() const { return content("out"); }
    std::string errors() const { return content("err"); }

private:
    std::string content(char const* file) const {
        std::ostringstream text;
        text << std::ifstream(folder_ / file).rdbuf();
        return text.str();
    }
    [[noreturn]] void run(std::vector<char*> const& argv) const {
        auto const redirect = [&](char const* file, int descriptor) {
            dup2(open((folder_ / file).c_str(), O_CREAT | O_WRONLY, 0600), descriptor);
        };
        redirect("out", STDOUT_FILENO);
        redirect("err", STDERR_FILENO);
        if (chdir(folder_.c_str()) == 0) execv(argv[0], argv.data());
        _exit(127);
    }

    std::filesystem::path folder_;
    pid_t pid_ = -1;
    int status_ = -1;
};

/// A server that says what the test tells it to, from another port than the one it is greeted at.
class ProcessTest : public testing::Test {
protected:
    std::string conf() const {
        return "serverHost: \"localhost\"\nserverPort: " + std::to_string(server.port()) +
               "\nteamname: \"FromFile\"\n";
    }
    void welcome() {
        ASSERT_TRUE(server.receive(5000));
        server.changePort();
        answerInit();
    }
    void answerInit() const {
        server.send("(init l 5 before_kick_off)");
        server.send(practice::serverParamMessage(3000));
        server.send(practice::playerParamMessage());
        poll(nullptr, 0, 150); // until the first look at the messages
    }
    /// Counts the commands that come for so long by their first word.
    void collect(int msec) {
        auto const end = Clock::now() + milliseconds(msec);
        do {
            if (auto const text = server.receive(10)) {
                ++sent[text->substr(1, text->find_first_of(" )") - 1)];
            }
        } while (Clock::now() < end);
    }
    /// Plays cycles, each message sent `copies` times, until so many more of the command have come.
    bool play(std::string const& command, int enough, int copies = 1) {
        constexpr int MAX_CYCLES = 100; // in case that the machine is busy
        int const last = cycle + MAX_CYCLES;
        int const aim = sent[command] + enough;
        while (sent[command] < aim && ++cycle < last) {
            for (int i = 0; i < copies; ++i) {
                server.send(support::senseBody(cycle));
                server.send("(see " + std::to_string(cycle) +
                            " ((f c) 40 0) ((b) 20 30) ((l r) 90 90))");
            }
            collect(100);
        }
        return sent[command] >= aim;
    }

    int cycle = 0;
    std::map<std::string, int> sent;
    support::ServerEnd server;
};
