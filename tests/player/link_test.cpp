// The link and the command queue: exact texts, one send per permission, and what the socket does.

#include <cerrno>
#include <cmath>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "config/Configuration.h"
#include "support/AgentHarness.h"

using support::AgentHarness;
using support::ServerEnd;

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

    AgentHarness agent;
    Effectors& effectors = agent.effectors;
    ServerCommandHistory& history = agent.world.situation().commandHistory;
    ServerCommandCounters& counters = agent.world.queuedCommands();
};

TEST_F(LinkTest, TextsAndHistoryOfEachCommand) {
    struct Case {
        char const* text;
        std::function<void()> queue;
        Command main, other, say;
        std::array<float, 4> arguments;
    };
    constexpr float NO = NO_ARGUMENT;
    constexpr Command none = Command::none;
    // clang-format off
    std::vector<Case> const cases = {
        {"(move -10.500000 3.250000)", [&] { effectors.queueMove(-10.5F, 3.25F); },
         Command::move, none, none, {-10.5F, 3.25F, NO, NO}},
        {"(kick 100.000000 -45.500000)", [&] { effectors.queueKick(100.0F, -45.5F); },
         Command::kick, none, none, {100.0F, -45.5F, NO, NO}},
        {"(dash -0.125000)", [&] { effectors.queueDash(-0.125F); },
         Command::dash, none, none, {-0.125F, NO, NO, NO}},
        {"(catch 12.000000)", [&] { effectors.queueGoalieCatch(12.0F); },
         Command::goalieCatch, none, none, {12.0F, NO, NO, NO}},
        {"(turn_neck 361.000000)", [&] { effectors.queueTurnNeck(361.0F); },
         none, Command::turnNeck, none, {NO, NO, 361.0F, NO}},
        {"(change_view narrow high)", [&] { effectors.queueChangeView(ViewMode::narrow, ViewQuality::high); },
         none, Command::changeView, none, {NO, NO, 0.0F, 0.0F}},
        {"(change_view wide low)", [&] { effectors.queueChangeView(ViewMode::wide, ViewQuality::low); },
         none, Command::changeView, none, {NO, NO, 2.0F, 1.0F}},
        {"(change_view normal low)", [&] { effectors.queueChangeView(ViewMode::normal, ViewQuality::low); },
         none, Command::changeView, none, {NO, NO, 1.0F, 1.0F}},
        {"(say \"abc\")", [&] { effectors.queueSay("abc"); },
         none, none, Command::say, {NO, NO, NO, NO}},
        {"(score)", [&] { effectors.queueScore(); },
         none, Command::score, none, {NO, NO, NO, NO}},
    };
    // clang-format on
    for (Case const& c : cases) {
        agent.startCycle();
        EXPECT_STREQ("", history.sayText.data());
        c.queue();
        EXPECT_EQ(Texts{c.text}, agent.allCommands());
        EXPECT_EQ(c.main, history.mainKind) << c.text;
        EXPECT_EQ(c.other, history.otherKind) << c.text;
        EXPECT_EQ(c.say, history.sayKind) << c.text;
        EXPECT_STREQ(c.say == none ? "" : "abc", history.sayText.data());
        EXPECT_EQ(c.arguments, (std::array{history.mainArgument1, history.mainArgument2,
                                           history.otherArgument1, history.otherArgument2}))
            << c.text;
    }
}

TEST_F(LinkTest, TurnsSendTheMomentAndRecordTheAngle) {
    constexpr float NONE = NO_ARGUMENT;
    constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        float angle, speed, minMoment, maxMoment;
        char const* text;
        float expectedAngle;
    };
    // Inertia 5 and decay 0.4 make the moment three times the angle at speed 1.
    // clang-format off
    constexpr std::array CASES = {
        Case{   30, 1, -180, 180, "(turn 90.000000)",      30},
        Case{   90, 1, -180, 180, "(turn 180.000000)",     60},
        Case{  -90, 1, -180, 180, "(turn -180.000000)",   -60},
        Case{   10, 1,   50,  40, "(turn 40.000000)",  40/3.F},
        Case{   90, 1, -200, 210, "(turn 180.000000)",     70},
        Case{  -90, 1, -210, 200, "(turn -180.000000)",   -70},
        Case{  200, 0, -180, 180, "(turn 180.000000)",    200},
        Case{ -200, 0,  -90,  90, "(turn -180.000000)",  -200},
        Case{0.05F, 1, -180, 180, "(turn 0.150000)",    0.05F},
        Case{0.03F, 1, -180, 180, "", NONE},
        Case{ 0.1F, 0, -180, 180, "", NONE},
        Case{-0.1F, 0, -180, 180, "", NONE},
        Case{0.11F, 0, -180, 180, "(turn 0.110000)",    0.11F},
        Case{NOT_A_NUMBER, 0, -180, 180, "", NONE},
        Case{   10, NOT_A_NUMBER, -180, 180, "", NONE},
        Case{   10, 1,    0,   0, "", NONE},
    };
    // clang-format on
    for (Case const& c : CASES) {
        agent.startCycle();
        Configuration::minMoment = c.minMoment;
        Configuration::maxMoment = c.maxMoment;
        effectors.queueTurn(c.angle, c.speed);
        EXPECT_EQ(c.text, agent.mainCommand()) << c.angle;
        EXPECT_FLOAT_EQ(c.expectedAngle, history.mainArgument1) << c.angle;
        EXPECT_EQ(*c.text != '\0', history.mainKind == Command::turn) << c.angle;
    }
}

TEST_F(LinkTest, OneSendPerPermission) {
    effectors.queueDash(50.0F);
    effectors.queueTurnNeck(1.0F);
    effectors.queueKick(10.0F, 0.0F);
    effectors.queueTurnNeck(2.0F);
    effectors.queueScore();
    effectors.sendAllCommands();
    EXPECT_EQ(Texts{}, received());

    effectors.grantSend();
    effectors.sendAllCommands();
    effectors.sendAllCommands();
    effectors.grantSend();
    effectors.sendAllCommands(); // all is sent already
    EXPECT_EQ((Texts{"(kick 10.000000 0.000000)", "(turn_neck 1.000000)", "(turn_neck 2.000000)",
                     "(score)"}),
              received());
    EXPECT_EQ(0, counters.dash);
    EXPECT_EQ(1, counters.kick);
    EXPECT_EQ(2, counters.turnNeck);

    // The timer's signal sends as well, and leaves the code that it interrupted its errno.
    effectors.clearQueue();
    effectors.queueSay("x");
    effectors.queueChangeView(ViewMode::wide, ViewQuality::high);
    errno = EDOM;
    std::raise(SIGALRM);
    EXPECT_EQ(Texts{}, received());
    effectors.grantSend();
    errno = EDOM;
    std::raise(SIGALRM);
    EXPECT_EQ(EDOM, errno);
    effectors.sendCommandDirect("(direct)");
    EXPECT_EQ((Texts{"(say \"x\")", "(change_view wide high)", "(direct)"}), received());
    EXPECT_EQ(1, counters.say);
    EXPECT_EQ(1, counters.changeView);
}

TEST_F(LinkTest, EachKindHasItsCounter) {
    std::array<std::atomic<int> ServerCommandCounters::*, 10> constexpr COUNTER = {
        nullptr,
        &ServerCommandCounters::move,
        &ServerCommandCounters::kick,
        &ServerCommandCounters::dash,
        &ServerCommandCounters::turn,
        &ServerCommandCounters::goalieCatch,
        &ServerCommandCounters::turnNeck,
        &ServerCommandCounters::changeView,
        nullptr,
        &ServerCommandCounters::say};
    int total = 0;
    for (std::size_t kind = 0; kind < COUNTER.size(); ++kind) {
        effectors.incrementCounters(static_cast<Command>(kind));
        if (COUNTER[kind] == nullptr) continue;
        EXPECT_EQ(1, counters.*COUNTER[kind]) << kind;
        ++total;
    }
    EXPECT_EQ(8, total);
}

TEST_F(LinkTest, FullQueueAndLongTexts) {
    effectors.queueSay(std::string(600, 'a').c_str());
    for (int i = 1; i <= 6; ++i) {
        effectors.queueTurnNeck(static_cast<float>(i));
    }
    effectors.queueSay("seventh");
    EXPECT_EQ(5.0F, history.otherArgument1);
    EXPECT_EQ(511U, std::string(history.sayText.data()).size());
    effectors.queueMove(-std::numeric_limits<float>::max(), std::numeric_limits<float>::max());
    effectors.grantSend();
    effectors.sendAllCommands();
    Texts const texts = received();
    ASSERT_EQ(7U, texts.size());
    EXPECT_EQ(63U, texts[0].size());
    EXPECT_EQ("(say \"" + std::string(505, 'a'), texts[1]);
    EXPECT_EQ("(turn_neck 5.000000)", texts[6]);
}

TEST_F(LinkTest, InitIntroducesThePlayer) {
    effectors.init("Tallowmere2002", false);
    effectors.init("Tallowmere2002", true);
    EXPECT_EQ((Texts{"(init Tallowmere2002 (version 7.08))",
                     "(init Tallowmere2002 (version 7.08)(goalie))"}),
              received());
}

TEST_F(LinkTest, FollowsTheServerToAnotherPortAndCutsLongDatagrams) {
    std::array<char, Communicator::MESSAGE_BUFFER_SIZE> buffer{};
    agent.link.sendMessage("(hello)");
    ASSERT_EQ("(hello)", agent.server.receive());

    ServerEnd player;
    player.takeOverFrom(agent.server);
    player.send("(a)");
    EXPECT_EQ(3, agent.link.getNextMessage(buffer.data()));
    agent.link.sendMessage("(b)");
    EXPECT_EQ("(b)", player.receive());
    EXPECT_EQ(std::nullopt, agent.server.receive(20));

    for (std::size_t const size : {4094U, 4095U, 4096U, 8000U}) {
        buffer.fill('#');
        player.send(std::string(size, 'x'));
        std::size_t const kept = std::min<std::size_t>(size, 4095);
        EXPECT_EQ(static_cast<int>(kept), agent.link.getNextMessage(buffer.data()));
        EXPECT_EQ(std::string(kept, 'x'), buffer.data());
    }
    player.send("(short)");
    agent.link.getNextMessage(buffer.data());
    EXPECT_STREQ("(short)", buffer.data());
}

using LinkDeathTest = LinkTest;

TEST_F(LinkDeathTest, EmptyDatagramsAndBadHostsEndTheProcess) {
    using testing::ExitedWithCode;
    std::array<char, Communicator::MESSAGE_BUFFER_SIZE> buffer{};
    agent.link.sendMessage("(hello)");
    agent.server.receive();
    agent.server.send("");
    EXPECT_EXIT(agent.link.getNextMessage(buffer.data()), ExitedWithCode(255), "reading failed: ");
    EXPECT_EXIT(Communicator("255.255.255.255", 6000), ExitedWithCode(255), "Can't find the host:");
    EXPECT_EXIT(Communicator("no/such host", 6000), ExitedWithCode(255), "Can't find the host: ");
}

TEST_F(LinkTest, AFailedSendIsReportedAndIgnored) {
    Communicator const broken("127.0.0.1", 0); // nobody can be at port 0
    testing::internal::CaptureStderr();
    broken.sendMessage("(x)");
    EXPECT_EQ("sending failed: : Invalid argument\n", testing::internal::GetCapturedStderr());
}

TEST_F(LinkTest, ListsItsContent) {
    effectors.queueTurnNeck(1.0F);
    testing::internal::CaptureStdout();
    effectors.commands().listContent();
    effectors.queueDash(2.0F);
    effectors.commands().listContent();
    EXPECT_EQ("others: \n(turn_neck 1.000000)\n"
              "main: \n(dash 2.000000)\n\nothers: \n(turn_neck 1.000000)\n",
              testing::internal::GetCapturedStdout());
}

} // namespace
