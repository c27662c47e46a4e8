#pragma once

#include <array>
#include <chrono>
#include <netinet/in.h>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace net {

/// Of IPv4, the only protocol that the field's servers speak.
using Address = sockaddr_in;

/// Of a dotted address; nothing if it is none.
std::optional<Address> makeAddress(std::string const& dotted, int port);

/// The address of a machine's name; nothing if it has none.
std::optional<Address> resolve(std::string const& host, int port);

bool sameAddress(Address const& a, Address const& b);

/// Datagrams that were received together. What does not fit into its buffer is cut.
struct Inbox {
    static constexpr std::size_t CAPACITY = 8;
    static constexpr std::size_t LONGEST = 8192;

    std::array<std::array<char, LONGEST>, CAPACITY> buffers;
    std::array<std::string_view, CAPACITY> texts;
    std::size_t size = 0;

    std::span<std::string_view const> items() const { return {texts.data(), size}; }
};

/// A UDP socket that never blocks and closes itself.
class Socket {
public:
    enum class Arrival { datagram, nothing, peerGone };

    /// Port 0 lets the system choose. Without success errno tells why.
    static std::optional<Socket> bound(Address const& address);

    Socket(Socket&& from) noexcept : fd_(std::exchange(from.fd_, -1)) {}
    Socket& operator=(Socket&& from) noexcept {
        std::swap(fd_, from.fd_);
        return *this;
    }
    ~Socket();

    /// From now on only datagrams of `peer` arrive, and its end is noticed.
    bool connectTo(Address const& peer) const;
    /// Room for what arrives while this program does not get the processor, in bytes. When there is
    /// no more, the usual room has to do.
    void enlarge(int bytes) const;
    int port() const;
    int descriptor() const { return fd_; } ///< to wait for
    /// Waits for a datagram at most so long.
    void wait(std::chrono::milliseconds patience) const;

    /// Fills `text` (a view into `buffer`; what does not fit is cut) and `sender`.
    Arrival receive(std::span<char> buffer, std::string_view& text, Address& sender) const;
    /// From the connected peer as many as have come and fit into `inbox`.
    Arrival receiveSome(Inbox& inbox) const;
    /// To the peer, null: the connected one. Adds the NUL that ends every datagram. False when the
    /// connected peer is gone.
    bool send(std::string_view text, Address const* peer = nullptr) const;
    /// The same without the NUL.
    bool sendBytes(std::string_view bytes, Address const* peer = nullptr) const;

    /// At most so many datagrams go at once.
    static constexpr std::size_t MOST_AT_ONCE = 16;
    /// A datagram for each text, to the connected peer; these end with their NUL already. False
    /// when the peer is gone.
    bool sendAll(std::span<std::string_view const> texts) const;

private:
    explicit Socket(int fd) : fd_(fd) {}
    bool sendParts(std::string_view text, std::string_view end, Address const* peer) const;

    int fd_;
};

} // namespace net
