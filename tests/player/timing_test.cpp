// When the commands of a cycle leave: the choice of the moment, and the timer at work.

#include <chrono>
#include <gtest/gtest.h>
#include <pthread.h>
#include <thread>

#include "runtime/SenseThread.h"
#include "support/AgentHarness.h"

using support::AgentHarness;

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
    for (Case const& c : {Case{110, 50000}, Case{101, 50000}, Case{100, 80000}, Case{51, 80000},
                          Case{50, 69999}, Case{0, 69999}, Case{-15, 69999}, Case{-70, 69999},
                          Case{-2147483748L, 69999}, Case{2147483647L, 50000}}) {
        EXPECT_EQ(c.delay, SenseThread::sendDelay(SenseThread::chooseFraction(c.tillNextSee)))
            << c.tillNextSee;
    }
    EXPECT_EQ(100000, SenseThread::sendDelay(1.0F));
    EXPECT_EQ(150000, SenseThread::sendDelay(1.5F));
    EXPECT_LT(999999, SenseThread::sendDelay(1e30F)); // more than a timer takes
}

/// The sense thread at work on messages of a server, with the test in the place of the main loop.
class SenseLoop {
public:
    SenseLoop() {
        agent.link.sendMessage("(hello)");
        agent.server.receive();
        pthread_create(&thread, nullptr, SenseThread::senseCallback, &agent.world);
    }
    ~SenseLoop() {
        pthread_cancel(thread); // it waits in a receive, which is where it can end
        pthread_join(thread, nullptr);
    }
    SenseLoop(SenseLoop const&) = delete;
    SenseLoop& operator=(SenseLoop const&) = delete;

    void send(std::string const& message) {
        lastSent = Clock::now();
        agent.server.send(message);
    }
    void senseBody(std::string const& view) {
        send("(sense_body " + std::to_string(++cycle) + " (view_mode " + view +
             ") (stamina 8000 1) (speed 0 0) (head_angle 0) (kick 0) (dash 0) (turn 0) (say 0) "
             "(turn_neck 0) (catch 0) (move 0) (change_view 0))");
        EXPECT_TRUE(agent.world.waitForNewInfo());
    }
    void see() {
        send("(see " + std::to_string(cycle) + ")");
        EXPECT_TRUE(agent.world.waitForNewInfo());
        agent.world.integrateSensorInfo();
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
        EXPECT_GE(left, delay - (Clock::now() - lastSent) - ROUNDING);
    }

    AgentHarness agent;
    Clock::time_point lastSent;

private:
    pthread_t thread{};
    int cycle = 0;
};

TEST(Timing, TheTimerWaitsForTheSeeOfTheCycle) {
    SenseLoop loop;
    struct Case {
        char const* view;
        int delay;
    };
    // A see 20 ms after a sense_body: the next one comes 70, -5 or 220 ms after the next
    // sense_body.
    for (Case const& c : {Case{"high normal", 80000}, Case{"high narrow", 69999},
                          Case{"low narrow", 69999}, Case{"high wide", 50000}}) {
        SCOPED_TRACE(c.view);
        loop.senseBody(c.view);
        loop.agent.world.integrateSensorInfo();
        std::this_thread::sleep_for(milliseconds(20));
        loop.see();
        std::this_thread::sleep_for(milliseconds(80));
        loop.senseBody(c.view);
        loop.expectArmed(microseconds(c.delay));

        // Whatever comes before main has integrated arms the timer once more.
        std::this_thread::sleep_for(milliseconds(25));
        loop.send("(hear 1 referee play_on)");
        EXPECT_TRUE(loop.agent.world.waitForNewInfo());
        itimerval timer{};
        getitimer(ITIMER_REAL, &timer);
        EXPECT_GT(microseconds(timer.it_value.tv_usec),
                  milliseconds(40) - (Clock::now() - loop.lastSent));
        loop.agent.world.integrateSensorInfo();
    }
}

TEST(Timing, TheTimerSendsTheQueueOnce) {
    SenseLoop loop;
    loop.senseBody("high wide");
    auto const armed = loop.lastSent;
    loop.agent.world.integrateSensorInfo();
    loop.agent.startCycle();
    loop.agent.effectors.queueTurnNeck(7.0F);
    EXPECT_TRUE(loop.agent.world.takeSenseBodyArrived());
    loop.agent.effectors.grantSend();
    EXPECT_EQ("(turn_neck 7.000000)", loop.agent.server.receive(2000));
    EXPECT_GE(Clock::now() - armed, microseconds(49000));
    loop.agent.effectors.queueTurnNeck(8.0F);
    EXPECT_EQ(std::nullopt, loop.agent.server.receive(150));
}

} // namespace
