#include "Listener.h"
#include "Samples.h"

#include "support/Allocations.h"

#include <gtest/gtest.h>

namespace {

TEST(Allocation, AllWhenTheParserIsBuiltNoneEvenForTheFirstMessage) {
    using support::allocationCount;
    long const before = allocationCount();
    Listener listener;
    long const built = allocationCount();
    int heard = 0;
    constexpr int ROUNDS = 50;
    for (int round = 0; round < ROUNDS; ++round) {
        for (auto const message : SAMPLES) {
            heard += listener.hears(message) ? 1 : 0;
            heard += listener.hears(message.substr(0, message.size() - 3)) ? 1 : 0;
        }
    }
    long const after = allocationCount(); // the test framework allocates as well

    EXPECT_LT(before + static_cast<long>(RCC_Visual::MAX_OBJECTS), built);
    EXPECT_EQ(0, after - built);
    EXPECT_EQ(ROUNDS * static_cast<int>(SAMPLES.size()), heard);
}

} // namespace
