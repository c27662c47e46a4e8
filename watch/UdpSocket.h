#pragma once

#include <chrono>
#include <netinet/in.h>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace watch {

/// Of IPv4, the only protocol that the field's servers speak.
using Address = sockaddr_in;

/// The address of a machine's name; nothing if it has none.
std::optional<Address> resolve(std::string const& host, int port);

/// A UDP socket of any free port that never blocks and closes itself.
class UdpSocket {
public:
    enum class Arrival { datagram, nothing, peerGone };

    /// Nothing if the system has no socket to give.
    static std::optional<UdpSocket> open();

    UdpSocket(UdpSocket&& from) noexcept : fd_(std::exchange(from.fd_, -1)) {}
    UdpSocket& operator=(UdpSocket&& from) noexcept {
        std::swap(fd_, from.fd_);
        return *this;
    }
    ~UdpSocket();

    /// From now on only datagrams of `peer` arrive, and its end is noticed.
    bool connectTo(Address const& peer) const;
    /// Waits for a datagram at most so long.
    void wait(std::chrono::milliseconds patience) const;
    /// Fills `text` (a view into `buffer`; what does not fit is cut) and `sender`.
    Arrival receive(std::span<char> buffer, std::string_view& text, Address& sender) const;
    /// To the peer, null: the connected one. Adds the NUL that ends every datagram.
    bool send(std::string_view text, Address const* peer = nullptr) const;

private:
    explicit UdpSocket(int fd) : fd_(fd) {}

    int fd_;
};

} // namespace watch
