#include "worldmodel/Timeval.h"

namespace {

constexpr long MICROSECONDS_PER_SECOND = 1000000;

} // namespace

timeval Timeval::addMsec(timeval const& tv, int msec) {
    timeval sum{tv.tv_sec, tv.tv_usec + msec * 1000L};
    if (sum.tv_usec >= MICROSECONDS_PER_SECOND) {
        sum.tv_sec += 1;
        sum.tv_usec -= MICROSECONDS_PER_SECOND;
    }
    return sum;
}

int Timeval::diffMsec(timeval const& a, timeval const& b) {
    timeval diff{a.tv_sec - b.tv_sec, a.tv_usec - b.tv_usec};
    if (diff.tv_usec < 0) {
        diff.tv_sec -= 1;
        diff.tv_usec += MICROSECONDS_PER_SECOND;
    }
    return static_cast<int>(diff.tv_usec / 1000 + diff.tv_sec * 1000);
}
