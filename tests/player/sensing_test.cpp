// What the handlers keep of each message, and where.

#include <algorithm>
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <span>
#include <thread>
#include <tuple>

#include "practice/Parameters.h"
#include "sensing/Sensors.h"
#include "tests/support/AgentHarness.h"
#include "tests/support/Scenes.h"

namespace {

using support::LinkedAgent;

/// A flag of any type that takes and gives a bool.
struct AnyFlag {
    template <typename Flag>
    explicit(false) AnyFlag(Flag* flag)
        : isRaised([flag] { return static_cast<bool>(*flag); }), lower([flag] { *flag = false; }) {}

    std::function<bool()> isRaised;
    std::function<void()> lower;
};

struct Kind {
    std::string message;
    AnyFlag flag;
    std::function<void const*()> buffer;
};

// clang-format off
std::vector<Kind> const KINDS = {
    {support::senseBody(1),          &Sensors::newSenseBody,    [] { return Sensors::senseBody; }},
    {"(hear 1 referee play_on)",     &Sensors::newRefAudio,     [] { return Sensors::refAudio; }},
    {"(hear 1 self \"a\")",          &Sensors::newSelfAudio,    [] { return Sensors::selfAudio; }},
    {"(hear 1 -12 \"a\")",           &Sensors::newPlayerAudio,  [] { return Sensors::playerAudio; }},
    {"(hear 1 coach \"a\")",         &Sensors::newCoachAudio,   [] { return Sensors::coachAudio; }},
    {"(score 1 2 3)",                &Sensors::newScore,        [] { return Sensors::score; }},
    {"(change_player_type 1 1)",     &Sensors::newSubstitution, [] { return Sensors::substitution; }},
    {"(think)",                      &Sensors::newThink,        [] { return Sensors::think; }},
    {"(error a)",                    &Sensors::newError,        [] { return Sensors::error; }},
    {"(init l 1 play_on)",           &Sensors::newInitMsg,      [] { return Sensors::initMsg; }},
    {practice::serverParamMessage(300), &Sensors::newServerParam,  [] { return Sensors::serverParam; }},
    {practice::playerParamMessage(), &Sensors::newPlayerParam,  [] { return Sensors::playerParam; }},
    {practice::playerTypeMessage(),  &Sensors::newPlayerType,   [] { return Sensors::playerType; }},
    {"(see 1 ((b) 1 1))",            &Sensors::newVisual,       [] { return Sensors::balls.data(); }},
};
// clang-format on

void lowerAllFlags() {
    for (Kind const& kind : KINDS) {
        kind.flag.lower();
    }
}

long raisedFlags() {
    return std::ranges::count_if(KINDS, [](Kind const& kind) { return kind.flag.isRaised(); });
}

TEST(Sensing, EachKindRaisesItsOwnFlagAndKeepsItsAddress) {
    LinkedAgent agent;
    for (Kind const& kind : KINDS) {
        lowerAllFlags();
        agent.receive(kind.message);
        EXPECT_TRUE(kind.flag.isRaised()) << kind.message;
        EXPECT_EQ(1, raisedFlags()) << kind.message;
        void const* const address = kind.buffer();
        EXPECT_NE(nullptr, address) << kind.message;
        agent.receive(kind.message);
        EXPECT_EQ(address, kind.buffer()) << kind.message;
    }
    lowerAllFlags();
    for (char const* message : {"(fullstate 46 (pmode kick_off_l))", "(ok move)", "(see 1 ((b)", "",
                                "(sense_body 9 (view_mode high"}) {
        agent.receive(message);
        EXPECT_EQ(0, raisedFlags()) << message;
    }
}

/// Main may still be reading a vector while the next see is copied into it.
TEST(Sensing, VectorsNeverMove) {
    LinkedAgent agent;
    auto const places = [] {
        return std::tuple(Sensors::lines.data(), Sensors::flags.data(), Sensors::goals.data(),
                          Sensors::allies.data(), Sensors::enemies.data(), Sensors::neuts.data(),
                          Sensors::balls.data());
    };
    auto const before = places();
    std::string see = "(see 1";
    for (std::size_t i = 0; i < RCC_Visual::MAX_OBJECTS; ++i) {
        see += "((l t) 1)((F) 2)((P) 3)";
    }
    agent.receive(see + ")");
    EXPECT_EQ(before, places());
    EXPECT_EQ((std::array{128UL, 128UL, 128UL}),
              (std::array{Sensors::lines.size(), Sensors::flags.size(), Sensors::neuts.size()}));
}

TEST(Sensing, ATextEndsAtItsNul) {
    LinkedAgent agent;
    agent.link.sendMessage("(hello)");
    agent.server.receive();
    agent.server.send(std::string_view("(score 1 7 3)\0left over", 22));
    Sensors::sense();
    EXPECT_EQ(7, Sensors::score->ours);
}

TEST(Sensing, NullHandlesThrowAndLeaveTheSeeBefore) {
    LinkedAgent agent;
    agent.receive("(see 1 ((l t) 30 90) ((b) 5 5))");
    lowerAllFlags();
    try {
        SenseBodyHandler().handle({});
        FAIL() << "null was dereferenced";
    } catch (RCC_MemoryException const& exception) {
        EXPECT_STREQ("Attempt to dereference a null pointer", exception.what());
    }
    auto see = RCC_Pointer<RCC_Visual>::make();
    see->lines = RCC_Pointer<RCC_Container<RCC_Line>>::make();
    EXPECT_THROW(VisualHandler().handle(see), RCC_MemoryException); // the other containers
    see->lines->append(RCC_Pointer<RCC_Line>());
    EXPECT_THROW(VisualHandler().handle(see), RCC_MemoryException); // the element
    EXPECT_EQ(0, raisedFlags());
    EXPECT_EQ(1U, Sensors::lines.size());
}

/// A see of `count` objects of each kind, all `distance` metres away.
std::string seeOf(int count, int distance) {
    std::string see = "(see 1";
    for (int i = 0; i < count; ++i) {
        for (char const* name : {"l t", "f c", "g r", "p \"Ours\" 7", "p \"Theirs\" 7", "p", "b"}) {
            see.append(" ((").append(name).append(") ").append(std::to_string(distance));
            see.append(" 0 0 0)");
        }
    }
    return see + ")";
}

/// The vectors of a see as main reads them: each one's bounds are taken once.
class Reading {
public:
    /// Whether every object is at one of these distances.
    bool isOf(std::vector<float> const& distances) const {
        auto const known = [&](RCC_SeenObject const& object) {
            float const distance = object.distance;
            return std::ranges::count(distances, distance) > 0;
        };
        return std::apply([&](auto... seen) { return (std::ranges::all_of(seen, known) && ...); },
                          seen_);
    }

private:
    template <typename T>
    using Span = std::span<T const>;

    std::tuple<Span<RCC_Line>, Span<RCC_Flag>, Span<RCC_Flag>, Span<RCC_Player>, Span<RCC_Player>,
               Span<RCC_Player>, Span<RCC_Ball>>
        seen_{Sensors::lines,   Sensors::flags, Sensors::goals, Sensors::allies,
              Sensors::enemies, Sensors::neuts, Sensors::balls};
};

// A see that comes while main reads the one before may shrink the vectors under it. What main still
// reads must then be objects (of which the undefined-behaviour sanitizer knows), old or new.
TEST(Sensing, ASeeMayShrinkWhileItIsRead) {
    LinkedAgent agent;
    agent.receive(seeOf(9, 10));
    Reading const reading;
    agent.receive(seeOf(4, 20));
    EXPECT_TRUE(reading.isOf({10, 20}));
    agent.receive("(see 3)");
    EXPECT_TRUE(reading.isOf({10, 20}));
    EXPECT_TRUE(Sensors::lines.empty() && Sensors::neuts.empty() && Sensors::balls.empty());
}

TEST(Sensing, AFloodOfSeesMixesOnlyWhatWasSent) {
    constexpr int SEES = 4000;
    LinkedAgent agent;
    agent.join('l', 7);
    std::array const sees = {seeOf(18, 10), seeOf(1, 20), seeOf(6, 30), std::string("(see 1)")};
    std::atomic<bool> flooding = true;
    std::thread flood([&] {
        for (std::size_t i = 0; i < SEES; ++i) {
            agent.receive(sees[i % sees.size()]);
        }
        flooding = false;
    });
    int readings = 0;
    bool sent = true;
    for (; flooding; ++readings) {
        agent.world.integrateSensorInfo();
        sent &= Reading().isOf({10, 20, 30});
        Sensors::doneReading();
    }
    flood.join();
    EXPECT_TRUE(sent);
    EXPECT_LT(0, readings);
}

} // namespace
