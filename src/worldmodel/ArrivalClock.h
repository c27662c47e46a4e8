#pragma once

#include <cstdint>

/// Tells when messages arrive, in microseconds. No two answers are equal, so of any two messages
/// one is the later.
///
/// By the wall clock, until countMessages(): from then on by the order of the messages alone, so
/// that the same messages have the same times on every machine. A cycle then lasts 100 ms; a see
/// counts as one right behind its sense_body, or as one far too late when the server has already
/// asked for the commands of the cycle.
///
/// One, in the world model; used by the thread that receives.
class ArrivalClock {
public:
    std::int64_t senseBody();
    std::int64_t see();
    /// The server has asked for the commands of the cycle.
    void think() { thought_ = true; }
    void countMessages();

private:
    std::int64_t unique(std::int64_t time);

    bool counting_ = false;
    bool thought_ = false;
    std::int64_t cycleStart_ = 0;
    std::int64_t last_ = 0;
};
