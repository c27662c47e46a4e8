// The hand-over of see and sense_body from the sense thread to main.

#include "sensing/Arrivals.h"

#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace {

TEST(Arrivals, OnlyWhatIsStampedIsTaken) {
    Arrivals arrivals;
    arrivals.keep(Arrivals::SEE);
    EXPECT_EQ(arrivals.take(), Arrivals::NOTHING);
    EXPECT_TRUE(arrivals.isWaiting(Arrivals::SEE));
    EXPECT_EQ(arrivals.claim(), Arrivals::SEE);
    arrivals.stamp(Arrivals::SEE);
    // Whatever comes next claims what main has left, the sense_body ahead of its see.
    arrivals.keep(Arrivals::SENSE_BODY);
    EXPECT_EQ(arrivals.claim(), Arrivals::SENSE_BODY + Arrivals::SEE);
    EXPECT_EQ(arrivals.take(), Arrivals::NOTHING);
    arrivals.stamp(Arrivals::SENSE_BODY);
    EXPECT_EQ(arrivals.take(), Arrivals::SENSE_BODY);
    arrivals.stamp(Arrivals::SEE);
    EXPECT_EQ(arrivals.take(), Arrivals::SEE);
    EXPECT_EQ(arrivals.claim(), Arrivals::NOTHING);
    // A stamp of nothing leaves nothing behind for the message after it.
    arrivals.stamp(Arrivals::SEE);
    arrivals.keep(Arrivals::SEE);
    EXPECT_EQ(arrivals.take(), Arrivals::NOTHING);
}

/// Two threads at full speed, in numbered rounds: when a message was kept, when its kind was
/// stamped.
TEST(Arrivals, NothingIsTakenBeforeItsStampAndNothingIsLost) {
    constexpr int ROUNDS = 200000;
    constexpr std::array KINDS{Arrivals::SENSE_BODY, Arrivals::SEE};
    Arrivals arrivals;
    std::array<std::atomic<int>, 2> keptIn{};
    std::array<std::atomic<int>, 2> stampedIn{};
    std::atomic<bool> over = false;
    std::thread sense([&] {
        std::mt19937 random(1);
        for (int round = 1; round <= ROUNDS; ++round) {
            // Of three messages one is of neither kind.
            if (auto const kind = random() % 3; kind < 2) {
                arrivals.keep(KINDS[kind]);
                keptIn[kind] = round;
            }
            unsigned const waiting = arrivals.claim();
            for (std::size_t const kind : {0U, 1U}) {
                if ((waiting & KINDS[kind]) == 0) continue;
                stampedIn[kind] = round;
                arrivals.stamp(KINDS[kind]);
            }
        }
        over = true;
    });
    bool isLastLook = false;
    while (!isLastLook) {
        isLastLook = over;
        std::array const kept{keptIn[0].load(), keptIn[1].load()};
        unsigned const ready = arrivals.take();
        for (std::size_t const kind : {0U, 1U}) {
            if ((ready & KINDS[kind]) == 0) continue;
            EXPECT_GE(stampedIn[kind], kept[kind]);
        }
    }
    sense.join();
    EXPECT_FALSE(arrivals.isWaiting(Arrivals::SENSE_BODY) || arrivals.isWaiting(Arrivals::SEE));
}

} // namespace
