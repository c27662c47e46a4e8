#pragma once

#include <array>
#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "net/Socket.h"
#include "watch/History.h"
#include "watch/Recorder.h"

namespace watch {

/// The connection to the soccer server: asks to watch until there is an answer, with the newest
/// monitor version that the server speaks, and again when the server has fallen silent.
class Monitor {
public:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    struct Server {
        std::string host; ///< as browsers are told
        net::Address address{};
        Milliseconds silence{3000}; ///< without a datagram, after which it counts as gone
        Milliseconds redial{1000};  ///< between two attempts to reach it
    };

    Monitor(Server server, History& history);
    /// Takes leave of the server.
    ~Monitor();

    /// Waits at most so long for datagrams and does what is due.
    void step(Milliseconds patience);

    /// Sends a command to the server. False if none is connected. May be called from any thread.
    bool send(std::string_view command);

private:
    static constexpr int OLDEST_VERSION = 3, NEWEST_VERSION = 5;

    void dial(Clock::time_point now);
    void askToWatch() const;
    void receive(Clock::time_point now);
    void takeAtDoor(std::string_view datagram, net::Address const& sender);
    void takeRefusal(std::string_view datagram);
    void welcome(net::Address const& sender);
    void takeFromServer(std::string_view datagram);
    void lose(std::string const& why);
    void tellStatus(std::string const& text);

    Server const server_;
    History& history_;
    Recorder recorder_;
    std::mutex mutex_; // what `send` uses is changed with it
    std::optional<net::Socket> socket_;
    bool connected_ = false;
    int version_ = NEWEST_VERSION;
    Clock::time_point nextDial_{}, lastHeard_{};
    std::string status_;
    std::array<char, 65536> buffer_{};
};

} // namespace watch
