#include "runtime/SenseThread.h"

#include <algorithm>
#include <limits>
#include <unistd.h>

#include "config/ConfigFile.h"
#include "geometry/Numbers.h"
#include "link/Communicator.h"
#include "sensing/Sensors.h"
#include "skills/Utils.h"
#include "worldmodel/WorldModel.h"

namespace {

constexpr int CYCLE_MSEC = 100;

float widthFactor(ViewMode mode) {
    switch (mode) {
    case ViewMode::narrow:
        return 0.5F;
    case ViewMode::normal:
        return 1.0F;
    case ViewMode::wide:
        return 2.0F;
    }
    return std::numeric_limits<float>::quiet_NaN();
}

float qualityFactor(ViewQuality quality) {
    switch (quality) {
    case ViewQuality::high:
        return 1.0F;
    case ViewQuality::low:
        return 0.5F;
    }
    return std::numeric_limits<float>::quiet_NaN();
}

} // namespace

void* SenseThread::senseCallback(void* worldModel) {
    wm = static_cast<WorldModel*>(worldModel);
    itv = {};
    for (;;) {
        Sensors::sense();
        stampArrivals();
        if (Sensors::newThink) handOver();
    }
}

void SenseThread::handOver() {
    constexpr int SILENCE_MSEC = 2500;
    itv = {};
    setitimer(ITIMER_REAL, &itv, nullptr);
    Communicator::limitSilence(SILENCE_MSEC);
    wm->countMessages();
    wm->noteThink();
    handedOver = true;
    wm->signalNewInfo();
    for (;;) {
        pause();
    }
}

bool SenseThread::receiveForMain() {
    if (!Sensors::senseUnlessSilent()) return false;
    stampArrivals();
    if (Sensors::newThink) wm->noteThink();
    return true;
}

void SenseThread::stampArrivals() {
    // What main has not taken yet is among it, so any message that comes before it does arms and
    // stamps once more; main is woken within milliseconds.
    unsigned const waiting = Sensors::arrivals.claim();
    if ((waiting & Arrivals::SENSE_BODY) != 0) {
        if (!handedOver) setTimeSignal();
        wm->setTimeLastSB();
    }
    if ((waiting & Arrivals::SEE) != 0) wm->setTimeLastSee();
}

int SenseThread::calculateSeeInterval(ViewQuality quality, ViewMode mode) {
    constexpr float NORMAL_INTERVAL = 150.0F; // milliseconds
    return truncateToInt(widthFactor(mode) * (qualityFactor(quality) * NORMAL_INTERVAL));
}

float SenseThread::chooseFraction(long tillNextSee) {
    static auto const noSeeFraction = static_cast<float>(ConfigFile::noSeeFraction);
    static auto const firstHalfFraction = static_cast<float>(ConfigFile::firstHalfFraction);
    static auto const lastHalfFraction = static_cast<float>(ConfigFile::lastHalfFraction);
    if (tillNextSee > CYCLE_MSEC) return noSeeFraction;
    return tillNextSee > CYCLE_MSEC / 2 ? lastHalfFraction : firstHalfFraction;
}

long SenseThread::sendDelay(float fraction) {
    constexpr double CYCLE = 100000.0; // microseconds
    constexpr double LIMIT = 1e9;      // fits a long everywhere, and no timer takes as much
    // In double: the float nearest to 0.7 is a little less, and so is the delay.
    return static_cast<long>(std::clamp(CYCLE * static_cast<double>(fraction), -LIMIT, LIMIT));
}

void SenseThread::setTimeSignal() {
    BodyInfo const& info = wm->myself().bodyInfo;
    auto const quality = static_cast<ViewQuality>(info.viewQuality.load());
    auto const mode = static_cast<ViewMode>(info.viewWidth.load());

    timeval const timeLastSee = wm->timeLastSee();
    timeval const timeLastSb = wm->timeLastSB(); // of the sense_body before
    timeval const timeNextSee =
        Utils::timerAddMsec(&timeLastSee, calculateSeeInterval(quality, mode));
    // Meaningless until the first see is stamped: the difference then counts from 1970.
    long const tillNextSee = long{Utils::timerDiffMsec(&timeNextSee, &timeLastSb)} - CYCLE_MSEC;

    itv.it_value.tv_usec = sendDelay(chooseFraction(tillNextSee));
    // Before the timer runs, so that main sees that it is about to be another one.
    armed = {timer().count + 1, static_cast<int>(itv.it_value.tv_usec)};
    setitimer(ITIMER_REAL, &itv, nullptr);
}

void SenseThread::callTimerOff(ArmedTimer armedThen) {
    if (handedOver || timer() != armedThen) return;
    itimerval none{};
    setitimer(ITIMER_REAL, &none, nullptr);
    ArmedTimer const now = timer();
    if (now == armedThen) return;
    // A sense_body has come this very moment, and its timer may be the one that was stopped.
    none.it_value.tv_usec = now.microseconds;
    setitimer(ITIMER_REAL, &none, nullptr);
}
