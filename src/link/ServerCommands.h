#pragma once

#include <array>
#include <atomic>

#include "link/Command.h"

/// The queue of one cycle: one main (body) command and up to MAX_OTHERS that go beside it.
///
/// Owned by `Effectors`. The main thread fills it, and either the main thread or the SIGALRM
/// handler empties it. A text is complete before its flag or count says so.
struct ServerCommands {
    static constexpr int MAX_OTHERS = 6;

    std::array<char, MAIN_COMMAND_SIZE> mainCommand{};
    Command mainKind = Command::none;
    std::atomic<bool> mainQueued = false;
    std::array<std::array<char, OTHER_COMMAND_SIZE>, MAX_OTHERS> otherCommands{};
    std::array<Command, MAX_OTHERS> otherKinds{};
    std::atomic<int> numberOfOthers = 0;
    std::atomic<int> nextOther = 0;
    Command handedOut = Command::none; ///< kind of what getNextOther gave last

    /// Replaces the main command, if one is queued already.
    void queueMain(char const* text, Command kind);
    /// False when all slots are taken.
    bool queueOther(char const* text, Command kind);
    /// Copies the next other command that was not yet handed out into `out` (OTHER_COMMAND_SIZE
    /// characters) and returns true; an empty text and false when there is none.
    bool getNextOther(char* out);
    /// Empties the queue at the start of a cycle.
    void clear();
    /// Prints the queue to standard output.
    void listContent() const;
};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
