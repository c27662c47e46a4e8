#pragma once

#include <netinet/in.h>
#include <optional>
#include <string>
#include <string_view>

namespace support {

/// The server's end of a link: a UDP socket on loopback, at a free port.
class ServerEnd {
public:
    ServerEnd();
    ~ServerEnd();
    ServerEnd(ServerEnd const&) = delete;
    ServerEnd& operator=(ServerEnd const&) = delete;

    int port() const;
    /// The next datagram; nothing when none comes in time. Remembers its sender.
    std::optional<std::string> receive(int timeoutMsec = 200);
    /// To whoever sent last.
    void send(std::string_view datagram) const;
    /// Speaks from now on to whom `other` speaks to, as a server does from another port.
    void takeOverFrom(ServerEnd const& other) { client_ = other.client_; }
    /// Closes its port and goes on from another one.
    void changePort();

private:
    int descriptor_;
    sockaddr_in client_{};
};

} // namespace support
