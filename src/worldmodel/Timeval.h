#pragma once

#include <sys/time.h>

/// Arithmetic on wall-clock times.
namespace Timeval {

/// `tv` plus less than 1000 milliseconds.
timeval addMsec(timeval const& tv, int msec);

/// a - b in whole milliseconds, rounded down.
int diffMsec(timeval const& a, timeval const& b);

} // namespace Timeval
