#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "gamelog/Records.h"
#include "net/Socket.h"
#include "practice/Match.h"
#include "practice/MonitorCommands.h"

namespace practice {

/// The programs that watch the match and may interfere as a referee could. Each has a socket of its
/// own and gets a show every step. None can delay the match: nothing is sent twice or waited for,
/// and few of a monitor's datagrams are read at a time.
class Monitors {
public:
    static constexpr int MAX_MONITORS = 32;

    /// `own` is the server's address, with any port; `greeting` the datagrams that a new monitor
    /// gets first.
    Monitors(net::Address const& own, std::vector<std::string> greeting);

    /// A datagram on the players' port. False if it does not concern monitors; else it is answered.
    bool receiveAtDoor(net::Socket const& door, net::Address const& sender,
                       std::string_view datagram);
    /// Executes what the monitors have sent to their own ports.
    void poll(Match& match);
    /// At the end of every step.
    void show(World const& world);

    std::size_t count() const { return monitors_.size(); }

private:
    static constexpr int OLDEST_VERSION = 3;
    static constexpr int NEWEST_VERSION = 5;

    struct Monitor {
        net::Address address;
        net::Socket socket;
        int version;
        bool gone = false;
    };
    struct Execution;

    std::string_view admit(net::Address const& sender, std::string_view greeting);
    void receive(Monitor& monitor, std::string_view datagram, Match& match);
    void forgetGone();
    std::string const& showFor(int version);

    net::Address own_;
    std::vector<std::string> greeting_;
    std::vector<Monitor> monitors_;
    gamelog::Show show_;
    /// The show of this step for each version from the oldest; empty: nobody has asked for it yet.
    std::array<std::string, NEWEST_VERSION - OLDEST_VERSION + 1> formatted_;
    std::array<char, 8192> buffer_{};
};

} // namespace practice
