// The link and the command queue: exact texts, one send per permission, and what the socket does.

#include <cerrno>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "config/Configuration.h"
#include "support/AgentHarness.h"

namespace {

using Texts = std::vector<std::string>;

class LinkTest : public testing::Test {
protected:
    /// What reaches the server; ends when nothing more comes.
    Texts received() {
        Texts texts;
        while (auto text = agent.server.receive(20)) {
            texts.push_back(*text);
        }
        return texts;
    }

    support::LinkedAgent agent;
    Effectors& effectors = agent.effectors;
    ServerCommandHistory& history = agent.world.situation().commandHistory;
    ServerCommandCounters& counters = agent.world.queuedCommands();
};

TEST_F(LinkTest, TextsHistoryAndCounterOfEachCommand) {
    using Counters = ServerCommandCounters;
    using enum Command;
    constexpr float NO = NO_ARGUMENT;
    struct Case {
        char const* text;
        std::function<void(Effectors&)> queue;
        std::array<Command, 3> kinds; ///< main, other, say
        std::array<float, 4> arguments;
        std::atomic<int> Counters::*counter;
    };
    // clang-format off
    std::vector<Case> const cases = {
        {"(move -10.500000 3.250000)",   [](auto& e) { e.queueMove(-10.5F, 3.25F); },   {move},              {-10.5F, 3.25F, NO, NO}, &Counters::move},
        {"(kick 100.000000 -45.500000)", [](auto& e) { e.queueKick(100.0F, -45.5F); },  {kick},              {100, -45.5F, NO, NO},   &Counters::kick},
        {"(dash -0.125000)",             [](auto& e) { e.queueDash(-0.125F); },         {dash},              {-0.125F, NO, NO, NO},   &Counters::dash},
        {"(turn 3.000000)",              [](auto& e) { e.queueTurn(3.0F, 0.0F); },      {turn},              {3, NO, NO, NO},         &Counters::turn},
        {"(catch 12.000000)",            [](auto& e) { e.queueGoalieCatch(12.0F); },    {goalieCatch},       {12, NO, NO, NO},        &Counters::goalieCatch},
        {"(turn_neck 361.000000)",       [](auto& e) { e.queueTurnNeck(361.0F); },      {none, turnNeck},    {NO, NO, 361, NO},       &Counters::turnNeck},
        {"(change_view narrow high)",    [](auto& e) { e.queueChangeView(ViewMode::narrow, ViewQuality::high); }, {none, changeView}, {NO, NO, 0, 0}, &Counters::changeView},
        {"(change_view wide low)",       [](auto& e) { e.queueChangeView(ViewMode::wide, ViewQuality::low); },    {none, changeView}, {NO, NO, 2, 1}, &Counters::changeView},
        {"(change_view normal low)",     [](auto& e) { e.queueChangeView(ViewMode::normal, ViewQuality::low); },  {none, changeView}, {NO, NO, 1, 1}, &Counters::changeView},
        {"(say \"abc\")",                [](auto& e) { e.queueSay("abc"); },            {none, none, say},   {NO, NO, NO, NO},        &Counters::say},
        {"(score)",                      [](auto& e) { e.queueScore(); },               {none, score, none}, {NO, NO, NO, NO},        nullptr},
    };
    // clang-format on
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text);
        agent.startCycle();
        c.queue(effectors);
        EXPECT_EQ(c.kinds, (std::array{history.mainKind, history.otherKind, history.sayKind}));
        EXPECT_EQ(c.arguments, (std::array{history.mainArgument1, history.mainArgument2,
                                           history.otherArgument1, history.otherArgument2}));
        EXPECT_STREQ(c.kinds[2] == say ? "abc" : "", history.sayText.data());
        auto const count = [&] { return c.counter == nullptr ? -1 : (counters.*c.counter).load(); };
        int const before = count();
        effectors.grantSend();
        effectors.sendAllCommands();
        EXPECT_EQ(c.text, agent.server.receive());
        EXPECT_EQ(c.counter == nullptr ? -1 : before + 1, count());
    }
}

TEST_F(LinkTest, TurnsSendTheMomentAndRecordTheAngle) {
    constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        float angle, speed, minMoment, maxMoment;
        char const* text;
        float expectedAngle = NO_ARGUMENT;
    };
    // Inertia 5 and decay 0.4 make the moment three times the angle at speed 1.
    // clang-format off
    for (Case const& c : {
        Case{   30, 1, -180, 180, "(turn 90.000000)",      30},
        Case{   90, 1, -180, 180, "(turn 180.000000)",     60},
        Case{  -90, 1, -180, 180, "(turn -180.000000)",   -60},
        Case{   10, 1,   50,  40, "(turn 40.000000)",  40/3.F},
        Case{  -90, 1, -210, 200, "(turn -180.000000)",   -70},
        Case{  200, 0, -180, 180, "(turn 180.000000)",    200},
        Case{0.03F, 1, -180, 180, ""},
        Case{-0.1F, 0, -180, 180, ""},
        Case{0.11F, 0, -180, 180, "(turn 0.110000)",    0.11F},
        Case{NOT_A_NUMBER, 0, -180, 180, ""},
        Case{   10, NOT_A_NUMBER, -180, 180, ""}}) {
        // clang-format on
        agent.startCycle();
        Configuration::minMoment = c.minMoment;
        Configuration::maxMoment = c.maxMoment;
        effectors.queueTurn(c.angle, c.speed);
        EXPECT_EQ(c.text, agent.mainCommand()) << c.angle;
        EXPECT_FLOAT_EQ(c.expectedAngle, history.mainArgument1) << c.angle;
    }
}

TEST_F(LinkTest, OneSendPerPermission) {
    effectors.queueDash(50.0F);
    effectors.queueTurnNeck(1.0F);
    effectors.queueKick(10.0F, 0.0F);
    effectors.queueTurnNeck(2.0F);
    effectors.sendAllCommands();
    EXPECT_EQ(Texts{}, received());

    effectors.grantSend();
    effectors.sendAllCommands();
    effectors.sendAllCommands();
    effectors.grantSend();
    effectors.sendAllCommands(); // all is sent already
    EXPECT_EQ((Texts{"(kick 10.000000 0.000000)", "(turn_neck 1.000000)", "(turn_neck 2.000000)"}),
              received());
    EXPECT_EQ(0, counters.dash);

    // The timer's signal sends as well.
    effectors.clearQueue();
    effectors.queueSay("x");
    std::raise(SIGALRM);
    EXPECT_EQ(Texts{}, received());
    effectors.grantSend();
    std::raise(SIGALRM);
    effectors.sendAllCommands();
    effectors.sendCommandDirect("(direct)");
    EXPECT_EQ((Texts{"(say \"x\")", "(direct)"}), received());
}

TEST_F(LinkTest, FullQueueAndLongTexts) {
    effectors.queueSay(std::string(600, 'a').c_str());
    for (int i = 1; i <= 6; ++i) {
        effectors.queueTurnNeck(static_cast<float>(i));
    }
    effectors.queueSay("seventh");
    EXPECT_EQ(5.0F, history.otherArgument1);
    EXPECT_EQ(std::string(511, 'a'), history.sayText.data());
    effectors.queueMove(-std::numeric_limits<float>::max(), std::numeric_limits<float>::max());
    effectors.grantSend();
    effectors.sendAllCommands();
    Texts const texts = received();
    ASSERT_EQ(7U, texts.size());
    EXPECT_EQ(63U, texts[0].size());
    EXPECT_EQ("(say \"" + std::string(505, 'a'), texts[1]);
    EXPECT_EQ("(turn_neck 5.000000)", texts[6]);
}

TEST_F(LinkTest, FollowsTheServerToAnotherPortAndCutsLongDatagrams) {
    std::array<char, Communicator::MESSAGE_BUFFER_SIZE> buffer{};
    agent.link.sendMessage("(hello)");
    ASSERT_EQ("(hello)", agent.server.receive());

    support::ServerEnd player;
    player.takeOverFrom(agent.server);
    player.send("(a)");
    EXPECT_EQ(3, agent.link.getNextMessage(buffer.data()));
    agent.link.sendMessage("(b)");
    EXPECT_EQ("(b)", player.receive());
    EXPECT_EQ(std::nullopt, agent.server.receive(20));

    for (std::size_t const size : {4095U, 4096U, 8000U, 5U}) {
        player.send(std::string(size, 'x'));
        std::size_t const kept = std::min<std::size_t>(size, 4095);
        EXPECT_EQ(static_cast<int>(kept), agent.link.getNextMessage(buffer.data()));
        EXPECT_EQ(std::string(kept, 'x'), buffer.data());
    }
}

TEST_F(LinkTest, AFailedSendIsReportedAndIgnored) {
    Communicator const broken("127.0.0.1", 0); // nobody can be at port 0
    effectors.queueDash(1.0F);
    effectors.grantSend();
    testing::internal::CaptureStderr();
    errno = EDOM;
    std::raise(SIGALRM);
    EXPECT_EQ(EDOM, errno); // the code that was interrupted may look at its own
    EXPECT_EQ("sending failed: : Invalid argument\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ(1, counters.dash);
}

} // namespace
