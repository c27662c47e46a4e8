#include "tests/parser/Messages.h"
#include "tests/support/Allocations.h"

namespace {

TEST(Allocation, AllWhenTheParserIsBuiltNoneEvenForTheFirstMessage) {
    using support::allocationCount;
    Dice dice(5);
    std::vector<std::string> const messages = samples(dice);
    long const before = allocationCount();
    RCC_Parser parser(0, "Alpha", 0);
    long const built = allocationCount();
    for (std::string_view const message : messages) {
        RCC_Memory::remove(parser.parse(RCC_String(message)));
        RCC_Memory::remove(parser.parse(RCC_String(message.substr(0, message.size() - 3))));
    }
    long const after = allocationCount(); // the test framework allocates as well

    EXPECT_LT(before + static_cast<long>(RCC_Visual::MAX_OBJECTS), built);
    EXPECT_EQ(0, after - built);
}

} // namespace
