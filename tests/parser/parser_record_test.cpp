#include <gtest/gtest.h>
#include <utility>

#include "parser/RCC_Records.h"

namespace {

struct Tracked {
    explicit Tracked(int& counter) : alive(++counter) {}
    ~Tracked() { --alive; }
    Tracked(Tracked const&) = delete;
    Tracked& operator=(Tracked const&) = delete;
    int& alive;
};

struct TrackedObject : RCC_Object, Tracked {
    using Tracked::Tracked;
};

TEST(Pointer, TheLastHandleDeletesTheObject) {
    int alive = 0;
    auto first = RCC_Pointer<Tracked>::make(alive);
    {
        RCC_Pointer<Tracked> second = first;
        RCC_Pointer<Tracked> third = std::move(second);
        RCC_Pointer<Tracked> const& itself = third;
        third = itself;
        EXPECT_EQ(2, first.object()->references());
        first = RCC_Pointer<Tracked>();
        EXPECT_EQ(1, alive);
    }
    EXPECT_EQ(0, alive);
    RCC_Memory::remove(new TrackedObject(alive)); // which nobody has held
    RCC_Memory::remove(nullptr);
    EXPECT_EQ(0, alive);
}

TEST(Container, RefusesAnIndexOutOfRangeAndRadiansBecomeDegrees) {
    RCC_Container<RCC_Ball> balls;
    EXPECT_THROW(balls[0], RCC_BoundsException);
    balls.append(RCC_Pointer<RCC_Ball>());
    EXPECT_TRUE(balls[0].isNull());
    EXPECT_EQ(nullptr, balls.add()); // nothing in reserve
    balls.clear();
    EXPECT_THROW(balls[0], RCC_BoundsException);
    EXPECT_FLOAT_EQ(90.F, (RCC_Angle{1.5707964F, RCC_Angle::Unit::radians}.degrees()));
}

} // namespace
