#include "Samples.h"

#include "parser/RCC_Parser.h"
#include "support/Allocations.h"

#include <gtest/gtest.h>

using support::allocationCount;

namespace {

/// Only counts: an assertion of the test framework would allocate by itself.
template <class T>
struct Counter : RCC_Handler<RCC_Pointer<T>> {
    int calls = 0;
    void const* address = nullptr;
    bool moved = false;

    void handle(RCC_Pointer<T> const& record) override {
        moved = moved || (calls > 0 && address != record.get());
        address = record.get();
        ++calls;
    }
};

TEST(Allocation, TheCounterSeesWhatTheParserTakesWhenItIsBuilt) {
    long const before = allocationCount();
    RCC_Parser const parser(0, "", 0);
    EXPECT_LT(before + static_cast<long>(RCC_Visual::MAX_OBJECTS), allocationCount());
}

TEST(Allocation, NoneFromParseToHandlerEvenForTheFirstMessage) {
    RCC_Parser parser(0, "Alpha", 0);
    Counter<RCC_Visual> visual;
    Counter<RCC_SenseBody> body;
    parser.visualHandlers.push_back(&visual);
    parser.senseBodyHandlers.push_back(&body);

    int records = 0;
    constexpr int ROUNDS = 50;
    long const before = allocationCount();
    for (int round = 0; round < ROUNDS; ++round) {
        for (auto const message : SAMPLES) {
            RCC_Object* const record = parser.parse(RCC_String(message));
            records += record != nullptr ? 1 : 0;
            RCC_Memory::remove(record);
            RCC_Memory::remove(parser.parse(RCC_String(message.substr(0, message.size() - 3))));
        }
    }
    long const after = allocationCount();

    EXPECT_EQ(0, after - before);
    EXPECT_EQ(ROUNDS * static_cast<int>(SAMPLES.size()), records);
    EXPECT_EQ(ROUNDS, visual.calls);
    EXPECT_EQ(ROUNDS, body.calls);
    EXPECT_FALSE(visual.moved || body.moved);
}

} // namespace
