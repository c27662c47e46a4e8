#pragma once

#include <atomic>
#include <cstdint>
#include <sys/socket.h>

/// The UDP link to the soccer server: one socket, plain texts, one message a datagram.
///
/// The server answers the first message from a port of its own for this player; every receive takes
/// over the sender's address, so that the link follows without further code.
///
/// Created by `Agent`; all state is class-level, so several objects would share the one socket.
/// The sense thread receives; the main thread and the SIGALRM handler send.
/// Failures to open or to receive are reported with perror() and end the process with status -1.
class Communicator {
public:
    /// What one receive takes at most, and with the closing NUL what its buffer must hold.
    static constexpr int MAX_MESSAGE_LENGTH = 4095;
    static constexpr int MESSAGE_BUFFER_SIZE = MAX_MESSAGE_LENGTH + 1;

    /// Opens the connection; see openConnection().
    Communicator(char const* host, int port);
    ~Communicator();
    Communicator(Communicator const&) = delete;
    Communicator& operator=(Communicator const&) = delete;

    /// Resolves `host` (a name, or else a dotted address), opens and binds the socket.
    static void openConnection(char const* host, int port);
    static void closeConnection();

    /// Sends the NUL-terminated text, without its NUL, as one datagram. A failure is reported and
    /// otherwise ignored. Async-signal-safe.
    void sendMessage(char const* message) const;

    /// Blocks for the next datagram and stores it NUL-terminated. `buffer` holds
    /// MESSAGE_BUFFER_SIZE characters; what is longer is cut. Returns the length, at least 1: an
    /// error or an empty datagram ends the process.
    int getNextMessage(char* buffer) const;

private:
    inline static int ownSocket = -1;
    /// Of the sender's address, as receiving takes and gives it.
    inline static socklen_t lengthOfHostAddress = 0;
    /// Where messages go: address and port, packed so that the sense thread can replace both at
    /// once while the main thread or the signal handler sends.
    inline static std::atomic<std::uint64_t> hostAddress = 0;
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
};
