#include "tests/support/ServerEnd.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace support {

ServerEnd::ServerEnd() : descriptor_(socket(AF_INET, SOCK_DGRAM, 0)) {
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // Cannot fail: any port will do.
    static_cast<void>(bind(descriptor_, reinterpret_cast<sockaddr*>(&own), sizeof own));
}

ServerEnd::~ServerEnd() {
    close(descriptor_);
}

int ServerEnd::port() const {
    sockaddr_in own{};
    socklen_t length = sizeof own;
    getsockname(descriptor_, reinterpret_cast<sockaddr*>(&own), &length);
    return ntohs(own.sin_port);
}

void ServerEnd::changePort() {
    ServerEnd fresh;
    std::swap(descriptor_, fresh.descriptor_);
}

std::optional<std::string> ServerEnd::receive(int timeoutMsec) {
    pollfd waiting{descriptor_, POLLIN, 0};
    int ready = 0;
    do {
        ready = poll(&waiting, 1, timeoutMsec);
    } while (ready < 0 && errno == EINTR); // the agent's timer
    if (ready != 1) return std::nullopt;
    std::array<char, 8192> buffer{};
    socklen_t length = sizeof client_;
    ssize_t const size = recvfrom(descriptor_, buffer.data(), buffer.size(), 0,
                                  reinterpret_cast<sockaddr*>(&client_), &length);
    if (size < 0) return std::nullopt;
    return std::string(buffer.data(), static_cast<std::size_t>(size));
}

void ServerEnd::send(std::string_view datagram) const {
    sendto(descriptor_, datagram.data(), datagram.size(), 0,
           reinterpret_cast<sockaddr const*>(&client_), sizeof client_);
}

} // namespace support
