// The link and the command queue: exact texts, one send per permission, and what the socket does.

#include <cerrno>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>
#include <tuple>

#include "config/Configuration.h"
#include "support/AgentHarness.h"

namespace {

using Texts = std::vector<std::string>;

class LinkTest : public testing::Test {
protected:
    support::LinkedAgent agent;
    Effectors& effectors = agent.effectors;
    ServerCommandHistory& history = agent.world.situation().commandHistory;
    ServerCommandCounters& counters = agent.world.queuedCommands();
};

struct Kind {
    Command command;
    char const* word;
    std::size_t numbers;
    SharedInt ServerCommandCounters::*counter;
    std::function<void(float a, float b)> queue;
};

TEST_F(LinkTest, SendsWhatWasQueuedOnceForEachPermission) {
    using Counters = ServerCommandCounters;
    std::string said;
    // clang-format off
    std::array<Kind, 9> const kinds = {{
        {Command::move,        "move",        2, &Counters::move,        [&](float a, float b) { effectors.queueMove(a, b); }},
        {Command::kick,        "kick",        2, &Counters::kick,        [&](float a, float b) { effectors.queueKick(a, b); }},
        {Command::dash,        "dash",        1, &Counters::dash,        [&](float a, float) { effectors.queueDash(a); }},
        {Command::turn,        "turn",        1, &Counters::turn,        [&](float a, float) { effectors.queueTurn(a, 0); }},
        {Command::goalieCatch, "catch",       1, &Counters::goalieCatch, [&](float a, float) { effectors.queueGoalieCatch(a); }},
        {Command::turnNeck,    "turn_neck",   1, &Counters::turnNeck,    [&](float a, float) { effectors.queueTurnNeck(a); }},
        {Command::changeView,  "change_view", 2, &Counters::changeView,  [&](float a, float b) { effectors.queueChangeView(ViewMode(int(a)), ViewQuality(int(b))); }},
        {Command::say,         "say",         0, &Counters::say,         [&](float, float) { effectors.queueSay(said.c_str()); }},
        {Command::score,       "score",       0, nullptr,                [&](float, float) { effectors.queueScore(); }},
    }};
    // clang-format on
    std::array const widths = {" narrow", " normal", " wide"};
    std::array const qualities = {" high", " low"};
    std::mt19937 random(1);
    auto const below = [&](std::size_t limit) { return random() % limit; };
    std::array<int, 9> counted{};
    for (int cycle = 0; cycle < 500; ++cycle) {
        agent.startCycle();
        ServerCommandHistory expected;
        std::map<std::size_t, std::pair<std::string, std::size_t>>
            queue; // main first, and its kind
        std::size_t others = 0;
        for (std::size_t calls = below(12); calls > 0; --calls) {
            std::size_t const number = below(kinds.size());
            Kind const& kind = kinds[number];
            std::size_t const width = below(3);
            std::size_t const quality = below(2);
            std::array values = {static_cast<float>(below(9000)) / 64 - 70.1F,
                                 quality == 0 ? -1e38F : 0.5F};
            said.assign(below(9) == 0 ? 600 : below(9), 'x');
            std::string text = std::string("(") + kind.word;
            if (kind.command == Command::changeView) {
                values = {static_cast<float>(width), static_cast<float>(quality)};
                text.append(widths[width]).append(qualities[quality]);
            } else {
                for (std::size_t i = 0; i < kind.numbers; ++i)
                    text.append(" ").append(std::to_string(values[i]));
            }
            bool const isSay = kind.command == Command::say;
            if (isSay) text += " \"" + said + "\"";
            kind.queue(values[0], values[1]);

            bool const isMain = kind.command < Command::turnNeck;
            if (!isMain && ++others > 6) continue;
            queue[isMain ? 0 : others] = {(text + ")").substr(0, isMain ? 63 : 511), number};
            if (isSay) std::snprintf(expected.sayText.data(), 512, "%s", said.c_str());
            (isMain  ? expected.mainKind
             : isSay ? expected.sayKind
                     : expected.otherKind) = kind.command;
            if (kind.numbers > 0)
                (isMain ? expected.mainArgument1 : expected.otherArgument1) = values[0];
            if (kind.numbers > 1)
                (isMain ? expected.mainArgument2 : expected.otherArgument2) = values[1];
        }
        auto const all = [](ServerCommandHistory const& h) {
            return std::tuple(h.mainKind, h.otherKind, h.sayKind, h.mainArgument1, h.mainArgument2,
                              h.otherArgument1, h.otherArgument2, std::string(h.sayText.data()));
        };
        ASSERT_EQ(all(expected), all(history));

        Texts sent;
        if (below(4) > 0) {
            effectors.grantSend();
            for (auto const& [slot, command] : queue) {
                sent.push_back(command.first);
                ++counted[command.second];
            }
        }
        below(2) == 0 ? effectors.sendAllCommands() : static_cast<void>(std::raise(SIGALRM));
        effectors.sendAllCommands(); // without a permission
        if (!sent.empty()) effectors.grantSend();
        std::raise(SIGALRM); // all is sent already
        effectors.sendCommandDirect("(end)");
        sent.emplace_back("(end)");
        for (std::string const& text : sent)
            ASSERT_EQ(text, agent.server.receive());
    }
    for (std::size_t i = 0; kinds[i].counter != nullptr; ++i) {
        EXPECT_EQ(counted[i], counters.*kinds[i].counter) << kinds[i].word;
    }
}

TEST_F(LinkTest, TurnsSendTheMomentAndRecordTheAngle) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> share(-1, 1);
    for (int round = 0; round < 5000; ++round) {
        float const angle = share(random) * (round % 4 == 0 ? 0.2F : 220.0F);
        float const speed = std::max(0.0F, share(random));
        float const least = Configuration::minMoment = 210 * share(random);
        float const most = Configuration::maxMoment = 210 * share(random);
        double const effort = 1 + 5 * 0.4 * speed; // inertia and decay
        double const wanted = angle * effort;
        double const limited =
            speed > 0 ? std::min<double>(std::max<double>(wanted, least), most) : wanted;
        double const moment = std::min(180.0, std::max(-180.0, limited));
        agent.startCycle();
        effectors.queueTurn(angle, speed);
        std::string const text = agent.mainCommand();
        bool const sent = std::abs(moment) > 0.1;
        ASSERT_EQ(sent, !text.empty()) << angle << ' ' << speed;
        ASSERT_NEAR(sent ? moment : 0, sent ? std::stod(text.substr(6)) : 0, 1e-4);
        ASSERT_NEAR(sent ? limited / effort : NO_ARGUMENT, history.mainArgument1, 1e-4);
    }
    float const none = std::numeric_limits<float>::quiet_NaN();
    for (auto const& [angle, speed] :
         {std::pair(-0.1F, 0.0F), {0.1F, 0.0F}, {none, 0.0F}, {9.0F, none}}) {
        agent.startCycle();
        effectors.queueTurn(angle, speed);
        EXPECT_EQ("", agent.mainCommand()) << angle;
        EXPECT_EQ(Command::none, history.mainKind);
    }
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
