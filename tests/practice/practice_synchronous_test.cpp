// Matches whose clock waits for the players: what is played depends on the seed and on what the
// players say, and nobody can hold it up for long.

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <sstream>
#include <thread>

#include "practice/Server.h"
#include "tests/practice/Guest.h"
#include "tests/support/Allocations.h"

using namespace practice;

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

struct Played {
    std::string game, words, results;
    double seconds = 0.0;
};

/// A player that answers every (think) and acts by what it was told in the cycle. How it answers
/// may be odd from a cycle on.
class Client {
public:
    enum class Manner { honest, silent, dying, leaving, lying, flooding, together };

    Client(int port, std::string const& team, Manner manner)
        : manner_(manner), door_(*net::makeAddress("127.0.0.1", port)),
          socket_(net::Socket::bound(*net::makeAddress("127.0.0.1", 0))) {
        socket_->send("(init " + team + " (version 7.08))", &door_);
        read(-1);
        EXPECT_TRUE(kind_.starts_with("(init ")) << kind_;
    }

    void run(std::atomic<bool> const& over) {
        while (!over) {
            if (!read(20)) continue;
            if (kind_ == "(sense_body") ++cycle_;
            if (kind_ != "(think)") continue;
            answer();
            if (odd() && (manner_ == Manner::dying || manner_ == Manner::leaving)) return;
        }
    }

private:
    bool odd() const { return cycle_ >= 10 && cycle_ < 40; }

    bool read(int milliseconds) {
        pollfd input{socket_->descriptor(), POLLIN, 0};
        std::string_view text;
        if (::poll(&input, 1, milliseconds) < 1) return false;
        auto const arrival = socket_->receive(buffer_, text, server_);
        if (arrival != net::Socket::Arrival::datagram) return false;
        kind_ = text.substr(0, text.find_first_of(std::string_view(" \0", 2)));
        if (kind_ == "(init") kind_ = text;
        return true;
    }

    void say(std::string const& text) const { socket_->send(text, &server_); }

    void answer() {
        if (odd() && manner_ == Manner::silent) return;
        if (odd() && manner_ == Manner::leaving) return say("(bye)");
        if (odd() && manner_ == Manner::dying) return;
        if (odd() && manner_ == Manner::flooding) {
            for (int i = 0; i < 300; ++i) {
                say("(turn_neck 1)");
            }
        }
        std::string const turn = "(turn " + std::to_string(cycle_ * 37 % 90) + ')';
        if (manner_ == Manner::together) return say(turn + "(dash 80)(done)");
        say(turn);
        say("(turn_neck 5)");
        say("(done)");
        if (odd() && manner_ == Manner::lying) {
            say("(done)");
            say("(done)(done)");
        }
    }

    Manner manner_;
    net::Address door_, server_{};
    std::optional<net::Socket> socket_;
    std::string kind_;
    int cycle_ = 0;
    std::array<char, 8192> buffer_{};
};

/// A monitor and a trainer that are there, and that never say or read anything again.
struct Onlookers {
    explicit Onlookers(int port) {
        introduce(monitor, port, "(dispinit version 5)");
        introduce(trainer, port + 1, "(init (version 7.08))");
        trainer.send("(eye on)");
        while (trainer.received().empty()) {
            std::this_thread::yield();
        }
    }
    static void introduce(practice_test::Guest& guest, int port, std::string_view greeting) {
        guest.send(greeting, *net::makeAddress("127.0.0.1", port));
        while (guest.received().empty()) {
            std::this_thread::yield();
        }
    }

    practice_test::Guest monitor, trainer;
};

class Synchronous : public testing::Test {
protected:
    using Manner = Client::Manner;

    /// The port above a free one may be in use; then it tries another.
    static std::unique_ptr<Server> open(Options const& options) {
        std::unique_ptr<Server> server;
        std::string problem;
        for (int i = 0; i < 10 && !server; ++i) {
            server = Server::open(options, problem);
        }
        EXPECT_NE(server, nullptr) << problem;
        return server;
    }

    /// Plays with such players, who join in this order; the last of them is on the right.
    Played play(std::vector<Manner> const& manners, char const* seed = "1",
                std::vector<char const*> more = {}) {
        auto const folder = std::filesystem::path(testing::TempDir()) /
                            testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::create_directories(folder);
        std::string const stem = folder / "m", resultsFile = folder / "r.json";
        std::string const players = std::to_string(manners.size());
        std::vector<char const*> arguments{"--synchronous",
                                           "--port",
                                           "0",
                                           "--players",
                                           players.c_str(),
                                           "--half-cycles",
                                           "50",
                                           "--seed",
                                           seed,
                                           "--log",
                                           stem.c_str(),
                                           "--results",
                                           resultsFile.c_str(),
                                           "--ready-cycles",
                                           "5",
                                           "--scoreboard",
                                           "off"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        Options options;
        EXPECT_EQ(readOptions(arguments, options), "");
        auto const server = open(options);
        int volatile stop = 0;
        std::atomic<bool> over = false;
        std::vector<std::thread> threads;
        std::thread clock([&] {
            server->run(stop);
            over = true;
        });
        std::optional<Onlookers> onlookers;
        if (options.trainer) onlookers.emplace(server->port());
        for (std::size_t i = 0; i < manners.size(); ++i) {
            bool const last = i + 1 == manners.size();
            auto client =
                std::make_unique<Client>(server->port(), last ? "Right" : "Left", manners[i]);
            threads.emplace_back([&over, client = std::move(client)] { client->run(over); });
        }
        auto const content = [](std::string const& name) {
            std::ostringstream out;
            out << std::ifstream(name, std::ios::binary).rdbuf();
            return out.str();
        };
        while (!over && content(resultsFile).empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        over = true; // the clients end, and with them the server
        for (std::thread& thread : threads) {
            thread.join();
        }
        clock.join();
        Played match{content(stem + ".rcg"), content(stem + ".rcl"), content(resultsFile), 0.0};
        auto const at = match.results.find("\"seconds\":");
        if (at != std::string::npos) match.seconds = std::stod(match.results.substr(at + 10));
        EXPECT_NE(match.results.find("\"finished\":true"), std::string::npos) << match.results;
        std::filesystem::remove_all(folder);
        return match;
    }

    static long count(std::string const& text, std::string_view part) {
        long n = 0;
        for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1)) {
            ++n;
        }
        return n;
    }
};

using enum Client::Manner;

TEST_F(Synchronous, OneSeedGivesOneMatch) {
    Played const first = play({honest, together, honest, together});
    Played const again = play({honest, together, honest, together}, "1", {"--speed", "50"});
    Played const other = play({honest, together, honest, together}, "2");
    EXPECT_GT(first.game.size(), 100000U);
    EXPECT_EQ(first.game, again.game);
    EXPECT_EQ(first.words, again.words);
    EXPECT_NE(first.game, other.game);
    EXPECT_EQ(count(first.results, "\"missed\":0,"), 4);
    EXPECT_EQ(count(first.results, "\"late\":0,"), 4);
    EXPECT_GE(again.seconds, 100 * 0.1 / 50);
    // Each was heard in each cycle from the first on.
    EXPECT_NE(first.words.find("99,0\tRecv Right_1: (turn "), std::string::npos);
    EXPECT_GE(count(first.words, "Recv Left_2: (turn "), 100);
}

TEST_F(Synchronous, ASilentPlayerCostsOnePause) {
    testing::internal::CaptureStderr();
    Played const match = play({honest, silent, silent, honest});
    std::string const words = testing::internal::GetCapturedStderr();
    EXPECT_GE(match.seconds, 1.25);
    EXPECT_LT(match.seconds, 2.4); // not a pause for each of them, nor for each cycle
    EXPECT_EQ(count(match.results, "\"missed\":1,"), 2);
    EXPECT_EQ(count(words, "Left 2 has not said (done)"), 1);
    EXPECT_EQ(count(words, "Left 3 has not said (done)"), 1);
    // When they answer again they are heard again.
    EXPECT_NE(match.words.find("99,0\tRecv Left_2: (turn "), std::string::npos);
}

TEST_F(Synchronous, WhoIsGoneIsNotWaitedFor) {
    Played const left = play({honest, leaving, leaving, honest});
    EXPECT_LT(left.seconds, 1.2);
    EXPECT_EQ(count(left.results, "\"lost\":true"), 2);
    EXPECT_EQ(count(left.results, "\"missed\":0,"), 4);
    testing::internal::CaptureStderr(); // died while it was waited for
    Played const died = play({honest, dying, honest});
    testing::internal::GetCapturedStderr();
    EXPECT_LT(died.seconds, 2.4);
    EXPECT_EQ(count(died.results, "\"lost\":true"), 1);
}

TEST_F(Synchronous, WhoOnlyLooksOnChangesNothing) {
    Played const alone = play({honest, honest, honest});
    testing::internal::CaptureStderr();
    Played const watched = play({honest, honest, honest}, "1", {"--trainer"});
    std::string const words = testing::internal::GetCapturedStderr();
    EXPECT_EQ(alone.game, watched.game);
    // A trainer with open eyes is asked to think, and silent, it costs a pause.
    EXPECT_GE(watched.seconds, 1.25);
    EXPECT_LT(watched.seconds, 2.4);
    EXPECT_EQ(count(words, "the trainer has not said (done)"), 1);
}

TEST_F(Synchronous, LiarsHarmNobodyElse) {
    for (Manner const odd : {lying, flooding}) {
        Played const match = play({honest, odd, honest});
        EXPECT_LT(match.seconds, 1.2);
        EXPECT_EQ(count(match.results, "\"missed\":0,"), 3);
        EXPECT_EQ(count(match.results, "\"lost\":false"), 3);
        EXPECT_GE(count(match.words, "Recv Left_1: (turn "), 100);
        EXPECT_GE(count(match.words, "Recv Right_1: (turn "), 100);
    }
}

TEST(SynchronousCost, ACycleAllocatesNothing) {
    Match match({3000, 1, {MAX_PLAYERS, 0, 1000}});
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        match.join(std::string(i % 2 == 0 ? "(init Alpha" : "(init Beta") + " (version 7.08))");
    }
    auto const playCycles = [&match](int cycles) {
        for (int i = 0; i < 10 * cycles; ++i) {
            match.poll();
            if (!match.isThinkTime()) continue;
            match.outbox().clear();
            for (int id = 0; id < MAX_PLAYERS; ++id) {
                match.receive(id, "(turn 30)");
                match.receive(id, "(say \"v1234567890\")");
                match.receive(id, "(done)");
                EXPECT_FALSE(match.isAwaited(id));
            }
        }
    };
    playCycles(1000);
    long const before = support::allocationCount();
    playCycles(100);
    EXPECT_EQ(support::allocationCount() - before, 0);
}

} // namespace
