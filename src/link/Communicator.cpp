#include "link/Communicator.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netdb.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int RECEIVE_BUFFER_BYTES = 64000;
constexpr int FAILURE_STATUS = -1;

[[noreturn]] void failWith(char const* prefix) {
    std::perror(prefix);
    std::exit(FAILURE_STATUS);
}

[[noreturn]] void failToRead() {
    std::perror("reading failed: ");
    // Not exit(): another thread still runs and must not lose its statics to destructors.
    std::quick_exit(FAILURE_STATUS);
}

/// The first address of `host` in network byte order.
in_addr_t resolve(char const* host) {
    std::string dotted = host;
    if (hostent const* const entry = gethostbyname(host);
        entry != nullptr && entry->h_addrtype == AF_INET) {
        in_addr first{};
        std::memcpy(&first, entry->h_addr_list[0], sizeof first);
        dotted = inet_ntoa(first);
    }
    in_addr_t const address = inet_addr(dotted.c_str());
    if (address == INADDR_NONE) failWith("Can't find the host: ");
    return address;
}

void writeToStandardError(char const* text) {
    [[maybe_unused]] auto const written = write(STDERR_FILENO, text, std::strlen(text));
}

/// perror() for a signal handler: the same text, by functions that a handler may call.
void reportError(char const* prefix) {
    char const* const description = strerrordesc_np(errno);
    writeToStandardError(prefix);
    writeToStandardError(": ");
    writeToStandardError(description != nullptr ? description : "Unknown error");
    writeToStandardError("\n");
}

constexpr unsigned PORT_BITS = 16;

std::uint64_t packed(sockaddr_in const& address) {
    return std::uint64_t{address.sin_addr.s_addr} << PORT_BITS | address.sin_port;
}

sockaddr_in unpacked(std::uint64_t address) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = static_cast<in_addr_t>(address >> PORT_BITS);
    result.sin_port = static_cast<in_port_t>(address);
    return result;
}

} // namespace

Communicator::Communicator(char const* host, int port) {
    openConnection(host, port);
}

Communicator::~Communicator() {
    closeConnection();
}

void Communicator::openConnection(char const* host, int port) {
    sockaddr_in peer{};
    peer.sin_addr.s_addr = resolve(host);
    peer.sin_port = htons(static_cast<in_port_t>(port));

    int const descriptor = socket(AF_INET, SOCK_DGRAM, 0);
    if (descriptor < 0 || setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &RECEIVE_BUFFER_BYTES,
                                     sizeof RECEIVE_BUFFER_BYTES) < 0) {
        failWith("Initialization of socket failed: ");
    }

    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_ANY);
    own.sin_port = 0;
    if (bind(descriptor, reinterpret_cast<sockaddr*>(&own), sizeof own) < 0) {
        failWith("Binding of socket failed: ");
    }

    ownSocket = descriptor;
    hostAddress = packed(peer);
    lengthOfHostAddress = sizeof peer;
}

void Communicator::closeConnection() {
    close(ownSocket);
    ownSocket = -1;
}

void Communicator::sendMessage(char const* message) const {
    sendMessages({&message, 1});
}

void Communicator::sendMessages(std::span<char const* const> messages) const {
    sockaddr_in peer = unpacked(hostAddress);
    std::array<iovec, MAX_BATCH> texts{};
    std::array<mmsghdr, MAX_BATCH> datagrams{};
    std::size_t const count = std::min(messages.size(), MAX_BATCH);
    for (std::size_t i = 0; i < count; ++i) {
        texts[i] = {const_cast<char*>(messages[i]), std::strlen(messages[i])};
        datagrams[i].msg_hdr.msg_name = &peer;
        datagrams[i].msg_hdr.msg_namelen = sizeof peer;
        datagrams[i].msg_hdr.msg_iov = &texts[i];
        datagrams[i].msg_hdr.msg_iovlen = 1;
    }
    // It stops at the first that fails; the others still have their turn.
    for (std::size_t next = 0; next < count;) {
        int const sent =
            sendmmsg(ownSocket, &datagrams[next], static_cast<unsigned>(count - next), 0);
        if (sent < 1) reportError("sending failed: ");
        next += sent < 1 ? 1U : static_cast<std::size_t>(sent);
    }
}

int Communicator::receive(char* buffer) const {
    static int lengthOfMessage = 0;
    sockaddr_in sender{};
    lengthOfMessage =
        static_cast<int>(recvfrom(ownSocket, buffer, MAX_MESSAGE_LENGTH, 0,
                                  reinterpret_cast<sockaddr*>(&sender), &lengthOfHostAddress));
    if (lengthOfMessage < 1) return lengthOfMessage;
    hostAddress = packed(sender);
    buffer[lengthOfMessage] = '\0';
    return lengthOfMessage;
}

int Communicator::getNextMessage(char* buffer) const {
    int const length = receive(buffer);
    if (length < 1) failToRead();
    return length;
}

void Communicator::limitSilence(int milliseconds) {
    timeval const limit{milliseconds / 1000, milliseconds % 1000 * 1000L};
    setsockopt(ownSocket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

bool Communicator::getMessageUnlessSilent(char* buffer) const {
    int length = 0;
    do {
        length = receive(buffer);
    } while (length < 0 && errno == EINTR); // with a limit the system does not go on by itself
    if (length >= 1) return true;
    if (length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return false;
    failToRead();
}
