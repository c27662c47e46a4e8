#include "parser/RCC_Parser.h"

#include <gtest/gtest.h>

namespace {

struct Tracked : RCC_Object {
    explicit Tracked(bool& mark) : gone(mark) {}
    Tracked(Tracked const&) = delete;
    ~Tracked() override { gone = true; }
    bool& gone;
};

TEST(Pointer, TheLastHandleDeletesTheObject) {
    bool gone = false;
    RCC_Pointer<Tracked> first(new Tracked(gone));
    {
        RCC_Pointer<Tracked> second = first;
        RCC_Pointer<Tracked> third = std::move(second);
        third = third; // NOLINT(clang-diagnostic-self-assign-overloaded)
        EXPECT_EQ(2, first->references());
        first = RCC_Pointer<Tracked>();
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(std::exchange(gone, false));
    RCC_Memory::remove(new Tracked(gone)); // which nobody has held
    EXPECT_TRUE(gone);
    RCC_Memory::remove(nullptr);
}

TEST(Container, ReportsNullHandlesAndRefusesAnIndexOutOfRange) {
    RCC_Container<RCC_Ball> balls;
    EXPECT_THROW(balls[0], RCC_BoundsException);
    balls.append(RCC_Pointer<RCC_Ball>());
    EXPECT_THROW(balls[1], RCC_BoundsException);
    try {
        balls[0]->hasSpeed();
        FAIL() << "null was dereferenced";
    } catch (RCC_MemoryException const& exception) {
        EXPECT_STREQ("Attempt to dereference a null pointer", exception.what());
    }
}

TEST(Angle, ConvertsRadians) {
    EXPECT_FLOAT_EQ(90.F, (RCC_Angle{1.5707964F, RCC_Angle::Radians}.degrees()));
}

} // namespace
