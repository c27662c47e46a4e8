#pragma once

#include <sys/time.h>

#include "link/Command.h"

class WorldModel;

/// The thread that receives: takes one message after the other, stamps the arrival of each
/// sense_body and see in the world model, and arms the timer that sends the cycle's commands.
///
/// Started by main() once the agent is built; runs until the process ends. All state is class-level
/// and its own.
class SenseThread {
public:
    /// The start routine; `worldModel` is a WorldModel. Never returns.
    static void* senseCallback(void* worldModel);

    /// Arms the one-shot timer for the cycle of the sense_body that has just come: late when a see
    /// is still to come, so that it can be acted upon, early when none is. Must run before the
    /// world model stamps that sense_body.
    static void setTimeSignal();

    /// Milliseconds between two sees, cut to a whole number.
    static int calculateSeeInterval(ViewQuality quality, ViewMode mode);

    /// Microseconds from sense_body to sending for a fraction of the cycle.
    static long sendDelay(float fraction);
    /// The fraction for a see expected `tillNextSee` milliseconds after the sense_body.
    static float chooseFraction(long tillNextSee);

private:
    static void stampArrivals();

    inline static WorldModel* wm = nullptr;
    inline static itimerval itv{};
};
