// What the handlers keep of each message, and where.

#include <atomic>
#include <functional>
#include <gtest/gtest.h>

#include "practice/Parameters.h"
#include "sensing/Sensors.h"
#include "support/AgentHarness.h"

namespace {

using support::AgentHarness;

struct Kind {
    std::string first, second; ///< two messages of the kind
    std::atomic<bool>* flag;
    std::function<void const*()> buffer;
};

std::string senseBody(int time) {
    return "(sense_body " + std::to_string(time) +
           " (view_mode high normal) (stamina 8000 1) (speed 0 0) (head_angle 0) (kick 0) (dash 0) "
           "(turn 0) (say 0) (turn_neck 0) (catch 0) (move 0) (change_view 0))";
}

// clang-format off
std::vector<Kind> const KINDS = {
    {senseBody(1), senseBody(2), &Sensors::newSenseBody, [] { return Sensors::senseBody; }},
    {"(hear 1 referee play_on)", "(hear 2 referee half_time)", &Sensors::newRefAudio, [] { return Sensors::refAudio; }},
    {"(hear 1 self \"a\")", "(hear 2 self \"b\")", &Sensors::newSelfAudio, [] { return Sensors::selfAudio; }},
    {"(hear 1 -12 \"a\")", "(hear 2 12 \"b\")", &Sensors::newPlayerAudio, [] { return Sensors::playerAudio; }},
    {"(hear 1 coach \"a\")", "(hear 2 coach \"b\")", &Sensors::newCoachAudio, [] { return Sensors::coachAudio; }},
    {"(score 1 2 3)", "(score 2 2 4)", &Sensors::newScore, [] { return Sensors::score; }},
    {"(change_player_type 1 1)", "(change_player_type 2)", &Sensors::newSubstitution, [] { return Sensors::substitution; }},
    {"(error a)", "(error b)", &Sensors::newError, [] { return Sensors::error; }},
    {"(init l 1 play_on)", "(init r 2 play_on)", &Sensors::newInitMsg, [] { return Sensors::initMsg; }},
    {practice::serverParamMessage(300), practice::serverParamMessage(400), &Sensors::newServerParam, [] { return Sensors::serverParam; }},
    {practice::playerParamMessage(), practice::playerParamMessage(), &Sensors::newPlayerParam, [] { return Sensors::playerParam; }},
    {practice::playerTypeMessage(), practice::playerTypeMessage(), &Sensors::newPlayerType, [] { return Sensors::playerType; }},
    {"(see 1 ((b) 1 1))", "(see 2)", &Sensors::newVisual, [] { return Sensors::balls.data(); }},
};
// clang-format on

void lowerAllFlags() {
    for (Kind const& kind : KINDS) {
        *kind.flag = false;
    }
}

int raisedFlags() {
    return static_cast<int>(
        std::ranges::count_if(KINDS, [](Kind const& k) { return k.flag->load(); }));
}

TEST(Sensing, EachKindRaisesItsOwnFlagAndKeepsItsAddress) {
    AgentHarness agent;
    for (Kind const& kind : KINDS) {
        lowerAllFlags();
        agent.receive(kind.first);
        EXPECT_TRUE(*kind.flag) << kind.first;
        EXPECT_EQ(1, raisedFlags()) << kind.first;
        void const* const address = kind.buffer();
        EXPECT_NE(nullptr, address) << kind.first;
        agent.receive(kind.second);
        EXPECT_EQ(address, kind.buffer()) << kind.second;
        EXPECT_EQ(1, raisedFlags()) << kind.second;
    }
    // Only the newest is kept.
    EXPECT_EQ(2, Sensors::senseBody->time);
    EXPECT_EQ(24, Sensors::refAudio->playMode.mode);
    EXPECT_EQ("b", Sensors::playerAudio->text.view());
    EXPECT_EQ(4, Sensors::score->theirs);
    EXPECT_EQ(-1, Sensors::initMsg->side);
}

TEST(Sensing, WhatHasNoHandlerChangesNothing) {
    AgentHarness agent;
    agent.receive(senseBody(5));
    lowerAllFlags();
    for (char const* message :
         {"(fullstate 46 (pmode kick_off_l) (vmode high normal) (score 0 0) (ball 0 0 0 0))",
          "(ok move)", "(warning x)", "(think)", "(sense_body 9 (view_mode high", "(see 1 ((b)", "",
          "(sense_body 2147483647 (view_mode high normal))"}) {
        agent.receive(message);
        EXPECT_EQ(0, raisedFlags()) << message;
    }
    EXPECT_EQ(5, Sensors::senseBody->time);
}

/// Something of each of the seven vectors, in the order of Sensors.
auto ofAllSeen(auto const& what) {
    return std::array{what(Sensors::lines),  what(Sensors::flags),   what(Sensors::goals),
                      what(Sensors::allies), what(Sensors::enemies), what(Sensors::neuts),
                      what(Sensors::balls)};
}
auto const sizeOf = [](auto const& seen) { return static_cast<int>(seen.size()); };
auto const addressOf = [](auto const& seen) { return static_cast<void const*>(seen.data()); };

TEST(Sensing, ASeeReplacesTheOneBefore) {
    AgentHarness agent;
    agent.receive("(see 1 ((f c) 10 0) ((g r) 60 0) ((b) 5 5) ((p \"Ours\" 2) 3 4 0 0 5 6) "
                  "((p \"Theirs\" 1 goalie) 9 9 0 0 1 1) ((p \"Ours\") 30 1) ((p) 50 2)"
                  "((l r) 60 90))");
    EXPECT_EQ((std::array{1, 1, 1, 2, 1, 1, 1}), ofAllSeen(sizeOf));
    EXPECT_EQ(2, Sensors::allies[0].name.unum);
    EXPECT_EQ(0, Sensors::allies[1].name.unum);
    EXPECT_TRUE(Sensors::enemies[0].name.goalie);
    agent.receive("(see 2 ((l t) 30 90))");
    EXPECT_EQ((std::array{1, 0, 0, 0, 0, 0, 0}), ofAllSeen(sizeOf));
}

/// Main may still be reading a vector while the next see is copied into it.
TEST(Sensing, VectorsNeverMove) {
    AgentHarness agent;
    auto const addresses = ofAllSeen(addressOf);
    std::string see = "(see 1";
    for (std::size_t i = 0; i < RCC_Visual::MAX_OBJECTS; ++i) {
        see += "((l t) 1)((F) 2)((P) 3)";
    }
    agent.receive(see + ")");
    EXPECT_EQ((std::array{128, 128, 0, 0, 0, 128, 0}), ofAllSeen(sizeOf));
    EXPECT_EQ(addresses, ofAllSeen(addressOf));
}

template <class Handler, class T>
void expectNullThrows() {
    try {
        Handler().handle(RCC_Pointer<T>());
        ADD_FAILURE() << "accepted a null handle";
    } catch (RCC_MemoryException const& exception) {
        EXPECT_STREQ("Attempt to dereference a null pointer", exception.what());
    }
}

TEST(Sensing, NullHandlesThrowAndLeaveTheSeeBefore) {
    AgentHarness agent;
    agent.receive("(see 1 ((l t) 30 90) ((b) 5 5))");
    lowerAllFlags();
    expectNullThrows<SenseBodyHandler, RCC_SenseBody>();
    expectNullThrows<ErrorHandler, RCC_Error>();
    expectNullThrows<PlayerTypeHandler, RCC_PlayerType>();
    expectNullThrows<VisualHandler, RCC_Visual>();

    auto see = RCC_Pointer<RCC_Visual>::make();
    see->lines = RCC_Pointer<RCC_Container<RCC_Line>>::make();
    EXPECT_THROW(VisualHandler().handle(see), RCC_MemoryException); // the other containers
    see->lines->append(RCC_Pointer<RCC_Line>());
    EXPECT_THROW(VisualHandler().handle(see), RCC_MemoryException); // the element
    EXPECT_EQ(0, raisedFlags());
    EXPECT_EQ(1U, Sensors::lines.size());
    EXPECT_EQ(1U, Sensors::balls.size());
}

} // namespace
