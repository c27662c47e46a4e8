#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
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

    /// What sendMessages() takes at most: the commands of a cycle and the answer to a think.
    static constexpr std::size_t MAX_BATCH = 8;

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
    /// The same for several texts, in their order and with one system call: up to MAX_BATCH.
    void sendMessages(std::span<char const* const> messages) const;

    /// Blocks for the next datagram and stores it NUL-terminated. `buffer` holds
    /// MESSAGE_BUFFER_SIZE characters; what is longer is cut. Returns the length, at least 1: an
    /// error or an empty datagram ends the process.
    int getNextMessage(char* buffer) const;

    /// From now on getMessageUnlessSilent() waits for so long.
    static void limitSilence(int milliseconds);
    /// getNextMessage(), but false when nothing has come for as long as limitSilence() has set.
    bool getMessageUnlessSilent(char* buffer) const;

private:
    /// Returns what recvfrom() returns; the text is NUL-terminated when there is one.
    int receive(char* buffer) const;

    inline static int ownSocket = -1;
    /// Of the sender's address, as receiving takes and gives it.
    inline static socklen_t lengthOfHostAddress = 0;
    /// Where messages go: address and port, packed so that the sense thread can replace both at
    /// once while the main thread or the signal handler sends.
    inline static std::atomic<std::uint64_t> hostAddress = 0;
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
};
