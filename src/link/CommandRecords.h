#pragma once

#include <array>
#include <atomic>

#include "link/Command.h"

// What the world model keeps of the commands: those of this cycle, and how many there were.

/// What was queued in the current cycle; the state estimation reads it when the next sense_body
/// tells that the cycle is over. One per world model, used by the main thread only.
struct ServerCommandHistory {
    Command mainKind = Command::none;
    Command otherKind = Command::none; ///< of turn_neck, change_view, score: the last one queued
    Command sayKind = Command::none;
    /// move x, kick power, dash power, the turn angle that is to be expected, catch direction
    float mainArgument1 = NO_ARGUMENT;
    float mainArgument2 = NO_ARGUMENT;              ///< move y, kick direction
    float otherArgument1 = NO_ARGUMENT;             ///< turn_neck angle, view width as a number
    float otherArgument2 = NO_ARGUMENT;             ///< view quality as a number
    std::array<char, OTHER_COMMAND_SIZE> sayText{}; ///< without the quotes

    virtual ~ServerCommandHistory() = default;
    void reset() {
        mainKind = otherKind = sayKind = Command::none;
        mainArgument1 = mainArgument2 = otherArgument1 = otherArgument2 = NO_ARGUMENT;
        sayText[0] = '\0';
    }
};

/// A number that threads and signal handlers share: lock-free, and copied with the record it is in.
class SharedInt : public std::atomic<int> {
public:
    constexpr SharedInt(int value = 0) : atomic(value) {}
    SharedInt(SharedInt const& other) : atomic(other.load()) {}
    SharedInt& operator=(SharedInt const& other) { return *this = other.load(); }
    SharedInt& operator=(int value) {
        store(value);
        return *this;
    }
    ~SharedInt() = default;
};

/// Commands of each kind since the start. Shared, since the sender counts and the SIGINT handler
/// reads, each in whichever thread it interrupted.
struct ServerCommandCounters {
    SharedInt kick;
    SharedInt dash;
    SharedInt turn;
    SharedInt say;
    SharedInt turnNeck;
    SharedInt goalieCatch;
    SharedInt move;
    SharedInt changeView;
};
static_assert(std::atomic<int>::is_always_lock_free);
