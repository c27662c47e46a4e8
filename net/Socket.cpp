#include "net/Socket.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

namespace net {

static sockaddr const* generic(Address const* address) {
    return reinterpret_cast<sockaddr const*>(address);
}
static sockaddr* generic(Address* address) {
    return reinterpret_cast<sockaddr*>(address);
}

std::optional<Address> makeAddress(std::string const& dotted, int port) {
    Address address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, dotted.c_str(), &address.sin_addr) != 1) return std::nullopt;
    return address;
}

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

bool sameAddress(Address const& a, Address const& b) {
    return a.sin_addr.s_addr == b.sin_addr.s_addr && a.sin_port == b.sin_port;
}

std::optional<Socket> Socket::bound(Address const& address) {
    Socket socket(::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (socket.fd_ < 0 || ::bind(socket.fd_, generic(&address), sizeof address) != 0) {
        return std::nullopt;
    }
    return socket;
}

Socket::~Socket() {
    if (fd_ >= 0) ::close(fd_);
}

bool Socket::connectTo(Address const& peer) const {
    return ::connect(fd_, generic(&peer), sizeof peer) == 0;
}

void Socket::enlarge(int bytes) const {
    setsockopt(fd_, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
}

int Socket::port() const {
    Address own{};
    socklen_t length = sizeof own;
    getsockname(fd_, generic(&own), &length);
    return ntohs(own.sin_port);
}

void Socket::wait(std::chrono::milliseconds patience) const {
    pollfd readable{fd_, POLLIN, 0};
    ::poll(&readable, 1, static_cast<int>(patience.count()));
}

Socket::Arrival Socket::receive(std::span<char> buffer, std::string_view& text,
                                Address& sender) const {
    socklen_t length = sizeof sender;
    ssize_t const n = recvfrom(fd_, buffer.data(), buffer.size(), 0, generic(&sender), &length);
    if (n < 0) return errno == ECONNREFUSED ? Arrival::peerGone : Arrival::nothing;
    text = {buffer.data(), static_cast<std::size_t>(n)};
    return Arrival::datagram;
}

Socket::Arrival Socket::receiveSome(Inbox& inbox) const {
    std::array<iovec, Inbox::CAPACITY> parts{};
    std::array<mmsghdr, Inbox::CAPACITY> datagrams{};
    for (std::size_t i = 0; i < Inbox::CAPACITY; ++i) {
        parts[i] = {inbox.buffers[i].data(), inbox.buffers[i].size()};
        datagrams[i].msg_hdr.msg_iov = &parts[i];
        datagrams[i].msg_hdr.msg_iovlen = 1;
    }
    inbox.size = 0;
    int const received = recvmmsg(fd_, datagrams.data(), Inbox::CAPACITY, MSG_DONTWAIT, nullptr);
    if (received < 0) return errno == ECONNREFUSED ? Arrival::peerGone : Arrival::nothing;
    inbox.size = static_cast<std::size_t>(received);
    for (std::size_t i = 0; i < inbox.size; ++i) {
        inbox.texts[i] = {inbox.buffers[i].data(), datagrams[i].msg_len};
    }
    return Arrival::datagram;
}

bool Socket::send(std::string_view text, Address const* peer) const {
    constexpr std::string_view NUL("\0", 1);
    return sendParts(text, NUL, peer);
}

bool Socket::sendBytes(std::string_view bytes, Address const* peer) const {
    return sendParts(bytes, {}, peer);
}

bool Socket::sendAll(std::span<std::string_view const> texts) const {
    std::array<iovec, MOST_AT_ONCE> parts{};
    std::array<mmsghdr, MOST_AT_ONCE> datagrams{};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        parts[i] = {const_cast<char*>(texts[i].data()), texts[i].size()};
        datagrams[i].msg_hdr.msg_iov = &parts[i];
        datagrams[i].msg_hdr.msg_iovlen = 1;
    }
    // It stops at the first that fails; the others still have their turn.
    for (std::size_t next = 0; next < texts.size();) {
        int const sent = sendmmsg(fd_, &datagrams[next], static_cast<unsigned>(texts.size() - next),
                                  MSG_NOSIGNAL);
        if (sent < 1 && errno == ECONNREFUSED) return false;
        next += sent < 1 ? 1U : static_cast<std::size_t>(sent);
    }
    return true;
}

bool Socket::sendParts(std::string_view text, std::string_view end, Address const* peer) const {
    // The system only reads what these point to, but its types do not say so.
    auto const part = [](std::string_view s) {
        return iovec{const_cast<char*>(s.data()), s.size()};
    };
    std::array<iovec, 2> parts{part(text), part(end)};
    msghdr datagram{};
    datagram.msg_iov = parts.data();
    datagram.msg_iovlen = parts.size();
    if (peer != nullptr) {
        datagram.msg_name = const_cast<Address*>(peer);
        datagram.msg_namelen = sizeof *peer;
    }
    return sendmsg(fd_, &datagram, MSG_NOSIGNAL) >= 0 || errno != ECONNREFUSED;
}

} // namespace net
