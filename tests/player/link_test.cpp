// The link and the command queue: exact texts, one send per permission, and what the socket does.

#include <cerrno>
#include <concepts>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>
#include <tuple>

#include "config/Configuration.h"
#include "tests/support/AgentHarness.h"

namespace {

class LinkTest : public testing::Test {
protected:
    support::LinkedAgent agent;
    Effectors& effectors = agent.effectors;
    ServerCommandHistory& history = agent.world.situation().commandHistory;
    ServerCommandCounters& counters = agent.world.queuedCommands();
};

std::string text(char const* word, std::same_as<float> auto... numbers) {
    std::string written = std::string("(") + word;
    (written.append(" ").append(std::to_string(numbers)), ...);
    return written + ")";
}

/// What the queue and the history have to hold.
struct Model {
    void add(Command kind, std::string const& command, float first = NO_ARGUMENT,
             float second = NO_ARGUMENT) {
        auto& h = history;
        bool const isMain = kind < Command::turnNeck;
        if (!isMain && ++others > 6) return;
        queue[isMain ? 0 : others] = {command.substr(0, isMain ? 63 : 511), kind};
        (isMain ? h.mainKind : kind == Command::say ? h.sayKind : h.otherKind) = kind;
        if (first != NO_ARGUMENT) (isMain ? h.mainArgument1 : h.otherArgument1) = first;
        if (second != NO_ARGUMENT) (isMain ? h.mainArgument2 : h.otherArgument2) = second;
        if (kind == Command::say) command.copy(h.sayText.data(), 511, 6);
        if (kind == Command::say) h.sayText[std::min<std::size_t>(511, command.size() - 8)] = '\0';
    }

    ServerCommandHistory history;
    int others = 0;
    std::map<int, std::pair<std::string, Command>> queue; ///< the main command first
};

auto all(ServerCommandHistory const& h) {
    return std::tuple(h.mainKind, h.otherKind, h.sayKind, h.mainArgument1, h.mainArgument2,
                      h.otherArgument1, h.otherArgument2, std::string(h.sayText.data()));
}

TEST_F(LinkTest, SendsWhatWasQueuedOnceForEachPermission) {
    using enum Command;
    using C = ServerCommandCounters;
    Effectors& e = effectors;
    Model model;
    float a = 0;
    float b = 0;
    std::string said;
    // clang-format off
    std::array<std::function<void()>, 11> const calls = {
        [&] { e.queueMove(a, b);      model.add(move, text("move", a, b), a, b); },
        [&] { e.queueKick(a, b);      model.add(kick, text("kick", a, b), a, b); },
        [&] { e.queueDash(a);         model.add(dash, text("dash", a), a); },
        [&] { e.queueTurn(a, 0);      model.add(turn, text("turn", a), a); },
        [&] { e.queueGoalieCatch(a);  model.add(goalieCatch, text("catch", a), a); },
        [&] { e.queueTurnNeck(a);     model.add(turnNeck, text("turn_neck", a), a); },
        [&] { e.queueChangeView(ViewMode::narrow, ViewQuality::high); model.add(changeView, "(change_view narrow high)", 0, 0); },
        [&] { e.queueChangeView(ViewMode::normal, ViewQuality::low);  model.add(changeView, "(change_view normal low)", 1, 1); },
        [&] { e.queueChangeView(ViewMode::wide, ViewQuality::low);    model.add(changeView, "(change_view wide low)", 2, 1); },
        [&] { e.queueSay(said.c_str()); model.add(say, "(say \"" + said + "\")"); },
        [&] { e.queueScore();         model.add(score, "(score)"); },
    };
    std::map<Command, SharedInt C::*> const counter = {
        {move, &C::move}, {kick, &C::kick}, {dash, &C::dash}, {turn, &C::turn}, {say, &C::say},
        {goalieCatch, &C::goalieCatch}, {turnNeck, &C::turnNeck}, {changeView, &C::changeView},
    };
    // clang-format on
    std::mt19937 random(1);
    auto const below = [&](std::size_t limit) { return random() % limit; };
    std::map<Command, int> counted;
    for (int cycle = 0; cycle < 500; ++cycle) {
        agent.startCycle();
        model = {};
        for (std::size_t number = below(12); number > 0; --number) {
            a = static_cast<float>(below(9000)) / 64 - 70.1F;
            b = below(9) == 0 ? -1e38F : a + 0.5F;
            said.assign(below(9) == 0 ? 600 : below(9), 'x');
            calls[below(calls.size())]();
        }
        ASSERT_EQ(all(model.history), all(history));

        if (below(4) == 0) {
            model.queue.clear(); // stays unsent
        } else {
            effectors.grantSend();
        }
        below(2) == 0 ? effectors.sendAllCommands() : static_cast<void>(std::raise(SIGALRM));
        effectors.sendAllCommands(); // without a permission
        if (!model.queue.empty()) effectors.grantSend();
        std::raise(SIGALRM); // all is sent already
        effectors.sendCommandDirect("(end)");
        for (auto const& [slot, command] : model.queue) {
            ASSERT_EQ(command.first, agent.server.receive());
            ++counted[command.second];
        }
        ASSERT_EQ("(end)", agent.server.receive());
    }
    for (auto const& [kind, member] : counter) {
        EXPECT_EQ(counted[kind], counters.*member) << static_cast<int>(kind);
    }
}

TEST_F(LinkTest, WhatIsNoNumberIsNoCommand) {
    constexpr float INF = std::numeric_limits<float>::infinity();
    agent.startCycle();
    effectors.queueDash(50);
    ServerCommandHistory const before = history;
    for (float const bad : {INF, -INF, std::numeric_limits<float>::quiet_NaN()}) {
        effectors.queueMove(bad, 1);
        effectors.queueMove(1, bad);
        effectors.queueKick(bad, 1);
        effectors.queueKick(1, bad);
        effectors.queueDash(bad);
        effectors.queueGoalieCatch(bad);
        effectors.queueTurnNeck(bad);
    }
    EXPECT_EQ(agent.allCommands(), std::vector<std::string>{"(dash 50.000000)"});
    EXPECT_EQ(all(before), all(history));
}

TEST_F(LinkTest, ALongTeamNameIsCutAndTheFormKept) {
    for (bool const goalie : {false, true}) {
        effectors.init(std::string(600, 'x').c_str(), goalie);
        std::string const sent = agent.server.receive().value_or("");
        std::string const end = goalie ? " (version 7.08)(goalie))" : " (version 7.08))";
        EXPECT_TRUE(sent.ends_with("x" + end)) << sent;
        EXPECT_EQ(sent.size(), 511U);
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
