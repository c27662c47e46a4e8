#include "worldmodel/ArrivalClock.h"

#include <sys/time.h>

namespace {

constexpr std::int64_t SECOND = 1000000;
constexpr std::int64_t CYCLE = 100000;
constexpr std::int64_t SEE_IN_TIME = 1000;   ///< after the sense_body
constexpr std::int64_t SEE_TOO_LATE = 80000; ///< so late that no command can follow it
constexpr std::int64_t LONGEST_BURST = 1000; ///< messages within one microsecond, at most

std::int64_t wallClock() {
    timeval now{};
    gettimeofday(&now, nullptr);
    return now.tv_sec * SECOND + now.tv_usec;
}

} // namespace

std::int64_t ArrivalClock::senseBody() {
    thought_ = false;
    cycleStart_ += CYCLE;
    return unique(counting_ ? cycleStart_ : wallClock());
}

std::int64_t ArrivalClock::see() {
    if (!counting_) return unique(wallClock());
    return unique(cycleStart_ + (thought_ ? SEE_TOO_LATE : SEE_IN_TIME));
}

void ArrivalClock::countMessages() {
    counting_ = true;
    cycleStart_ = last_;
}

std::int64_t ArrivalClock::unique(std::int64_t time) {
    // A time far behind the last one means that somebody has set the clock back.
    bool const isTaken = time <= last_ && last_ - time < LONGEST_BURST;
    return last_ = isTaken ? last_ + 1 : time;
}
