#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "practice/Server.h"

using namespace practice;

namespace {

using namespace std::chrono_literals;

/// Waits up to a second for a datagram that starts so.
bool receives(net::Socket const& socket, std::string_view start, net::Address& sender) {
    std::array<char, 8192> buffer{};
    std::string_view text;
    for (int i = 0; i < 200; ++i) {
        while (socket.receive(buffer, text, sender) == net::Socket::Arrival::datagram) {
            EXPECT_EQ(text.back(), '\0');
            if (text.starts_with(start)) return true;
        }
        std::this_thread::sleep_for(5ms);
    }
    return false;
}

} // namespace

TEST(Server, PlaysOverTheLoopback) {
    Options options;
    std::vector<char const*> const arguments{"--port",    "0",    "--half-cycles",  "2",
                                             "--players", "1",    "--ready-cycles", "0",
                                             "--linger",  "1000", "--scoreboard",   "off"};
    ASSERT_EQ(readOptions(arguments, options), "");
    std::string problem;
    auto const server = Server::open(options, problem);
    ASSERT_NE(server, nullptr) << problem;
    net::Address const door = *net::makeAddress("127.0.0.1", server->port());
    int volatile stop = 0;
    std::thread thread([&] { EXPECT_EQ(server->run(stop), 0); });
    {
        auto const client = net::Socket::bound(*net::makeAddress("127.0.0.1", 0));
        ASSERT_TRUE(client);
        client->send(std::string("\xff\0(((", 5), &door);
        net::Address sender{};
        EXPECT_TRUE(receives(*client, "(error unknown_command)", sender));
        client->send("(init Alpha (version 7.08))", &door);
        ASSERT_TRUE(receives(*client, "(init l 1 before_kick_off)", sender));
        EXPECT_NE(sender.sin_port, door.sin_port);
        for (net::Address const& way : {sender, door}) {
            client->send("(score)", &way);
            EXPECT_TRUE(receives(*client, "(score ", sender));
        }
        EXPECT_TRUE(receives(*client, "(see ", sender));
        auto const monitor = net::Socket::bound(*net::makeAddress("127.0.0.1", 0));
        ASSERT_TRUE(monitor);
        monitor->send("(dispinit version 4)", &door);
        EXPECT_TRUE(receives(*monitor, "(player_type (id 17)", sender));
        EXPECT_TRUE(receives(*monitor, "(show ", sender));
        EXPECT_NE(sender.sin_port, door.sin_port);
        Options same = options;
        same.port = server->port();
        EXPECT_EQ(Server::open(same, problem), nullptr);
        EXPECT_NE(problem.find("is in use; choose another with --port"), std::string::npos);
    }
    thread.join(); // the only client vanished, so nobody is left to linger for
}

TEST(Options, OutOfRangeAreRefused) {
    Options options;
    using Arguments = std::vector<char const*>;
    for (Arguments const& bad : {Arguments{"--port"},
                                 {"--port", "x"},
                                 {"--port", "70000"},
                                 {"--players", "23"},
                                 {"--scoreboard", "big"},
                                 {"--version", "1"}}) {
        EXPECT_NE(readOptions(bad, options), "") << bad.back();
    }
    EXPECT_EQ(readOptions(std::array{"--seed", "18446744073709551615"}, options), "");
    EXPECT_EQ(options.match.seed, 18446744073709551615U);
    std::string problem;
    options.address = "here";
    EXPECT_EQ(Server::open(options, problem), nullptr);
    EXPECT_EQ(problem, "here is no IPv4 address");
}
