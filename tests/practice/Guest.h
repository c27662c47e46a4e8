#pragma once

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "net/Socket.h"

namespace practice_test {

/// A program that speaks with a server over the loopback, and never waits for it.
struct Guest {
    net::Socket socket = *net::Socket::bound(*net::makeAddress("127.0.0.1", 0));
    net::Address server{}; ///< whoever spoke last

    void send(std::string_view text, net::Address const& to) const { socket.send(text, &to); }
    void send(std::string_view text) const { send(text, server); }

    /// All datagrams that have come, without the NUL at their ends.
    std::vector<std::string> received() {
        std::vector<std::string> all;
        std::array<char, 8192> buffer{};
        std::string_view text;
        while (socket.receive(buffer, text, server) == net::Socket::Arrival::datagram) {
            EXPECT_TRUE(text.ends_with('\0'));
            all.emplace_back(text.substr(0, text.size() - 1));
        }
        return all;
    }
};

} // namespace practice_test
