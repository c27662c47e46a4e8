#pragma once

#include <atomic>
#include <sys/time.h>

#include "link/Command.h"

class WorldModel;

/// One arming of the timer that sends.
struct ArmedTimer {
    unsigned count = 0;   ///< so many before it
    int microseconds = 0; ///< its delay
    bool operator==(ArmedTimer const&) const = default;
};

/// The thread that receives: takes one message after the other, stamps the arrival of each
/// sense_body and see in the world model, and arms the timer that sends the cycle's commands.
///
/// Started by main() once the agent is built; lasts until the process ends. All state is
/// class-level and its own, until it is handed over.
class SenseThread {
public:
    /// The start routine; `worldModel` is a WorldModel. Never returns.
    static void* senseCallback(void* worldModel);

    /// Whether the server has shown itself to be synchronous. From then on the thread rests and
    /// main receives for itself: one message after the other, each integrated and answered
    /// before the next, without a timer, so that the same messages give the same commands.
    static bool hasHandedOver() { return handedOver; }
    /// Main, after the handing over: receives and stamps one message; false when the server has
    /// been silent for too long.
    static bool receiveForMain();

    /// Arms the one-shot timer for the cycle of the sense_body that has just come: late when a see
    /// is still to come, so that the decision can use it, early when none is. Must run before the
    /// world model stamps that sense_body.
    static void setTimeSignal();

    /// The newest arming. Read before a sense_body is taken, it is never that of a later one.
    static ArmedTimer timer() { return armed; }
    /// Main, once the commands are sent: the timer would only wake the process for nothing. Does
    /// nothing if it has been armed again since `armedThen`, for the cycle after.
    static void callTimerOff(ArmedTimer armedThen);

    /// Milliseconds between two sees, cut to a whole number.
    static int calculateSeeInterval(ViewQuality quality, ViewMode mode);

    /// Microseconds from sense_body to sending for a fraction of the cycle.
    static long sendDelay(float fraction);
    /// The fraction for a see expected `tillNextSee` milliseconds after the sense_body.
    static float chooseFraction(long tillNextSee);

private:
    static void stampArrivals();
    [[noreturn]] static void handOver();

    inline static std::atomic<bool> handedOver = false;
    inline static WorldModel* wm = nullptr;
    inline static itimerval itv{};
    inline static std::atomic<ArmedTimer> armed{};
    static_assert(std::atomic<ArmedTimer>::is_always_lock_free);
};
