#include "watch/UdpSocket.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace watch {

namespace {

/// Room for what arrives while this program does not get the processor, in bytes.
constexpr int RECEIVE_BUFFER = 1 << 20;

sockaddr const* generic(Address const* address) {
    return reinterpret_cast<sockaddr const*>(address);
}
sockaddr* generic(Address* address) {
    return reinterpret_cast<sockaddr*>(address);
}

} // namespace

std::optional<Address> resolve(std::string const& host, int port) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0) return std::nullopt;
    Address address{};
    std::memcpy(&address, found->ai_addr, sizeof address);
    freeaddrinfo(found);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

std::optional<UdpSocket> UdpSocket::open() {
    UdpSocket socket(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (socket.fd_ < 0) return std::nullopt;
    // Without it the usual room has to do.
    setsockopt(socket.fd_, SOL_SOCKET, SO_RCVBUF, &RECEIVE_BUFFER, sizeof RECEIVE_BUFFER);
    return socket;
}

UdpSocket::~UdpSocket() {
    if (fd_ >= 0) ::close(fd_);
}

bool UdpSocket::connectTo(Address const& peer) const {
    return ::connect(fd_, generic(&peer), sizeof peer) == 0;
}

void UdpSocket::wait(std::chrono::milliseconds patience) const {
    pollfd readable{fd_, POLLIN, 0};
    ::poll(&readable, 1, static_cast<int>(patience.count()));
}

UdpSocket::Arrival UdpSocket::receive(std::span<char> buffer, std::string_view& text,
                                      Address& sender) const {
    socklen_t length = sizeof sender;
    ssize_t const n = recvfrom(fd_, buffer.data(), buffer.size(), 0, generic(&sender), &length);
    if (n < 0) return errno == ECONNREFUSED ? Arrival::peerGone : Arrival::nothing;
    text = {buffer.data(), static_cast<std::size_t>(n)};
    return Arrival::datagram;
}

bool UdpSocket::send(std::string_view text, Address const* peer) const {
    std::string const datagram(text); // its data() ends with the NUL
    socklen_t const length = peer == nullptr ? 0 : sizeof *peer;
    return sendto(fd_, datagram.data(), datagram.size() + 1, MSG_NOSIGNAL, generic(peer), length) >=
           0;
}

} // namespace watch
