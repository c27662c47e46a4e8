#include "parser/RCC_Parser.h"

#include <gtest/gtest.h>

namespace {

struct Tracked : RCC_Object {
    explicit Tracked(int& counter) : alive(++counter) {}
    ~Tracked() override { --alive; }
    Tracked(Tracked const&) = delete;
    int& alive;
};

TEST(Pointer, TheLastHandleDeletesTheObject) {
    int alive = 0;
    RCC_Pointer<Tracked> first(new Tracked(alive));
    {
        RCC_Pointer<Tracked> second = first;
        RCC_Pointer<Tracked> third = std::move(second);
        third = third; // NOLINT(clang-diagnostic-self-assign-overloaded)
        EXPECT_EQ(2, first->references());
        first = RCC_Pointer<Tracked>();
        EXPECT_EQ(1, alive);
    }
    RCC_Memory::remove(new Tracked(alive)); // which nobody has held
    RCC_Memory::remove(nullptr);
    EXPECT_EQ(0, alive);
}

TEST(Container, RefusesAnIndexOutOfRangeAndRadiansBecomeDegrees) {
    RCC_Container<RCC_Ball> balls;
    EXPECT_THROW(balls[0], RCC_BoundsException);
    balls.append(RCC_Pointer<RCC_Ball>());
    EXPECT_TRUE(balls[0].isNull());
    EXPECT_FLOAT_EQ(90.F, (RCC_Angle{1.5707964F, RCC_Angle::Radians}.degrees()));
}

} // namespace
