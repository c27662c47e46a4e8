// When the commands of a cycle leave: the choice of the moment, and the timer at work.

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>

#include "runtime/SenseThread.h"
#include "skills/Utils.h"
#include "tests/support/AgentHarness.h"
#include "tests/support/Scenes.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

TEST(Timing, IntervalOfSeesForEachView) {
    struct Case {
        ViewMode mode;
        int high, low;
    };
    for (Case const& c : {Case{ViewMode::narrow, 75, 37}, Case{ViewMode::normal, 150, 75},
                          Case{ViewMode::wide, 300, 150}}) {
        EXPECT_EQ(c.high, SenseThread::calculateSeeInterval(ViewQuality::high, c.mode));
        EXPECT_EQ(c.low, SenseThread::calculateSeeInterval(ViewQuality::low, c.mode));
    }
}

TEST(Timing, FractionAndDelay) {
    struct Case {
        long tillNextSee, delay;
    };
    // The float nearest to 0.7 is a little less, so 69999.
    for (Case const& c : {Case{101, 50000}, Case{100, 80000}, Case{51, 80000}, Case{50, 69999},
                          Case{-15, 69999}, Case{-2147483748L, 69999}, Case{2147483647L, 50000}}) {
        EXPECT_EQ(c.delay, SenseThread::sendDelay(SenseThread::chooseFraction(c.tillNextSee)))
            << c.tillNextSee;
    }
    EXPECT_EQ(150000, SenseThread::sendDelay(1.5F));
    EXPECT_LT(999999, SenseThread::sendDelay(1e30F)); // more than a timer takes
}

/// The sense thread at work on messages of a server, with the test in the place of the main loop.
/// The thread never returns: it goes with the process, so there is one for all tests, whose agent
/// never closes its socket.
class SenseLoop {
public:
    static SenseLoop& instance() {
        static SenseLoop& loop = *new SenseLoop;
        return loop;
    }

    /// Sends that and waits until the thread has taken it.
    void send(std::string const& message) {
        lastSent_ = Clock::now();
        agent.server.send(message);
        EXPECT_TRUE(agent.world.waitForNewInfo());
    }
    static bool isTimerRunning() {
        itimerval timer{};
        getitimer(ITIMER_REAL, &timer);
        return timer.it_value.tv_sec != 0 || timer.it_value.tv_usec != 0;
    }
    /// Expects the timer to run, armed for `delay` after the last message.
    void expectArmed(microseconds delay) const {
        constexpr microseconds ROUNDING{1000};
        itimerval timer{};
        getitimer(ITIMER_REAL, &timer);
        microseconds const left{timer.it_value.tv_usec};
        EXPECT_EQ(0, timer.it_value.tv_sec);
        EXPECT_EQ(0, timer.it_interval.tv_usec); // once only
        EXPECT_LE(left, delay + ROUNDING);
        EXPECT_GE(left, delay - (Clock::now() - lastSent_) - ROUNDING);
    }

    support::LinkedAgent agent;

private:
    SenseLoop() {
        agent.link.sendMessage("(hello)");
        agent.server.receive();
        pthread_t thread{};
        pthread_create(&thread, nullptr, SenseThread::senseCallback, &agent.world);
        pthread_detach(thread);
    }

    Clock::time_point lastSent_;
};

TEST(Timing, TheTimerWaitsForTheSeeOfTheCycle) {
    SenseLoop& loop = SenseLoop::instance();
    WorldModel& world = loop.agent.world;
    struct Case {
        char const* view;
        int interval;
    };
    // By the stamps, since a busy machine may oversleep.
    auto const delayOf = [&](int interval) {
        timeval const see = world.timeLastSee();
        timeval const senseBody = world.timeLastSB();
        int const tillNextSee = interval + Utils::timerDiffMsec(&see, &senseBody) - 100;
        return microseconds(SenseThread::sendDelay(SenseThread::chooseFraction(tillNextSee)));
    };
    // A see 20 ms after a sense_body: the next one comes 70, -5 or 220 ms after the next
    // sense_body.
    for (Case const& c : {Case{"high normal", 150}, Case{"high narrow", 75}, Case{"low narrow", 37},
                          Case{"high wide", 300}}) {
        SCOPED_TRACE(c.view);
        loop.send(support::senseBody(1, c.view));
        world.integrateSensorInfo();
        std::this_thread::sleep_for(milliseconds(20));
        loop.send("(see 1)");
        world.integrateSensorInfo();
        microseconds const delay = delayOf(c.interval);
        loop.send(support::senseBody(2, c.view));
        loop.expectArmed(delay);
        // Any message before main has integrated arms the timer once more.
        microseconds const delayAgain = delayOf(c.interval);
        std::this_thread::sleep_for(milliseconds(25));
        loop.send("(hear 1 referee play_on)");
        loop.expectArmed(delayAgain);
        world.integrateSensorInfo();
    }
}

TEST(Timing, OnlyTheTimerOfCommandsThatAreSentIsCalledOff) {
    SenseLoop& loop = SenseLoop::instance();
    loop.send(support::senseBody(1));
    ArmedTimer const first = SenseThread::timer();
    loop.agent.world.integrateSensorInfo();
    SenseThread::callTimerOff(first);
    EXPECT_FALSE(SenseLoop::isTimerRunning());

    loop.send(support::senseBody(2));
    SenseThread::callTimerOff(first);
    EXPECT_TRUE(SenseLoop::isTimerRunning());

    // However a sense_body meets the calling off of the timer before, its own timer runs.
    constexpr int ROUNDS = 10000;
    for (int round = 0; round < ROUNDS; ++round) {
        ArmedTimer const last = SenseThread::timer();
        std::atomic<bool> go = false;
        std::thread other([&go] {
            while (!go) {
            }
            SenseThread::setTimeSignal();
        });
        go = true;
        SenseThread::callTimerOff(last);
        other.join();
        ASSERT_TRUE(SenseLoop::isTimerRunning()) << round;
    }
}

} // namespace
