#include "link/Communicator.h"

#include <arpa/inet.h>
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
    std::size_t const length = std::strlen(message);
    sockaddr_in const peer = unpacked(hostAddress);
    ssize_t const sent = sendto(ownSocket, message, length, 0,
                                reinterpret_cast<sockaddr const*>(&peer), sizeof peer);
    if (sent != static_cast<ssize_t>(length)) reportError("sending failed: ");
}

int Communicator::getNextMessage(char* buffer) const {
    static int lengthOfMessage = 0;
    sockaddr_in sender{};
    lengthOfMessage =
        static_cast<int>(recvfrom(ownSocket, buffer, MAX_MESSAGE_LENGTH, 0,
                                  reinterpret_cast<sockaddr*>(&sender), &lengthOfHostAddress));
    if (lengthOfMessage < 1) {
        std::perror("reading failed: ");
        // Not exit(): the main thread still runs and must not lose its statics to destructors.
        std::quick_exit(FAILURE_STATUS);
    }
    hostAddress = packed(sender);
    buffer[lengthOfMessage] = '\0';
    return lengthOfMessage;
}
