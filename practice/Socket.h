#pragma once

#include <netinet/in.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace practice {

using Address = sockaddr_in;

std::optional<Address> makeAddress(const std::string& dotted, int port);

// A UDP socket that never blocks and closes itself.
class Socket {
public:
    enum class Arrival { datagram, nothing, peerGone };

    // Port 0 lets the system choose. Without success errno tells why.
    static std::optional<Socket> bound(const Address& address);

    Socket(Socket&& from) noexcept;
    Socket& operator=(Socket&& from) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket();

    bool connectTo(const Address& peer) const;
    int port() const;

    // Fills `text` (a view into `buffer`; what does not fit is cut) and `sender`.
    Arrival receive(std::span<char> buffer, std::string_view& text, Address& sender) const;
    // Adds the NUL that ends every datagram. False when the connected peer is gone.
    bool send(std::string_view text) const;
    void sendTo(std::string_view text, const Address& peer) const;

private:
    explicit Socket(int fd) : fd_(fd) {}

    int fd_;
};

} // namespace practice
