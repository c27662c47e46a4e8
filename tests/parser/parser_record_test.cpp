#include "parser/RCC_Parser.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Tracked : RCC_Object {
    explicit Tracked(int& counter) : alive(counter) { ++alive; }
    Tracked(Tracked const& other) : RCC_Object(other), alive(other.alive) { ++alive; }
    Tracked& operator=(Tracked const&) = delete;
    ~Tracked() override { --alive; }
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
    EXPECT_EQ(0, alive);
    RCC_Memory::remove(new Tracked(alive)); // which nobody has held
    EXPECT_EQ(0, alive);
    RCC_Memory::remove(nullptr);
}

TEST(Pointer, ACopyOfARecordCountsForItself) {
    auto const original = RCC_Pointer<RCC_Score>::make();
    auto const copy = RCC_Pointer<RCC_Score>::make(*original);
    EXPECT_EQ(1, copy->references());
    *copy = *original;
    EXPECT_EQ(1, copy->references());
}

TEST(Pointer, NullIsReported) {
    RCC_Pointer<RCC_Ball> const null;
    EXPECT_FALSE(null);
    EXPECT_THROW(*null, RCC_MemoryException);
    try {
        null->hasSpeed();
        FAIL() << "null was dereferenced";
    } catch (RCC_Exception const& exception) {
        EXPECT_EQ("Attempt to dereference a null pointer", exception.message());
        EXPECT_STREQ("Attempt to dereference a null pointer", exception.what());
    }
}

TEST(Container, RefusesAnIndexOutOfRange) {
    RCC_Container<RCC_Ball> balls;
    EXPECT_THROW(balls[0], RCC_BoundsException);
    balls.append(RCC_Pointer<RCC_Ball>());
    EXPECT_TRUE(balls[0].isNull());
    EXPECT_THROW(balls[1], RCC_BoundsException);
    balls.clear();
    EXPECT_EQ(0U, balls.size());
}

TEST(Text, CutsWhatDoesNotFit) {
    EXPECT_STREQ("abcd", RCC_FixedText<4>("abcdef").c_str());
    EXPECT_EQ("abcd", RCC_FixedText<4>("abcdef").view());
}

TEST(Angle, ConvertsRadians) {
    EXPECT_TRUE(RCC_Angle().isAbsent());
    EXPECT_EQ(-12.5F, (RCC_Angle{-12.5F, RCC_Angle::Degrees}.degrees()));
    EXPECT_FLOAT_EQ(90.F, (RCC_Angle{1.5707964F, RCC_Angle::Radians}.degrees()));
}

} // namespace
