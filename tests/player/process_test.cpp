// The agent as a process: how it starts, how it ends, and what it survives.

#include <algorithm>
#include <random>

#include "tests/player/AgentProcess.h"

namespace {

TEST_F(ProcessTest, RefusedStarts) {
    struct Case {
        std::vector<std::string> arguments;
        char const* conf;
        char const* errors; ///< with which what is said must end
    };
    char const* const none = "Unable to parse <player.conf>!\n";
    for (Case const& c : {
             Case{{"localhost", "Team", "-Goalie"}, nullptr, ""},
             Case{{"localhost", "Team", "-goalie "}, nullptr, ""},
             Case{{"localhost", "Team", "-goalie", "x"}, nullptr, ""},
             Case{{}, nullptr, none},
             Case{{"localhost", "Team", "-goalie"}, nullptr, none},
             Case{{}, "no keyword\n", none},
             Case{{"255.255.255.255"}, "serverPort: 6000\n", "Can't find the host: : Success\n"},
         }) {
        AgentProcess agent(c.arguments, c.conf);
        EXPECT_EQ(255, agent.waitForEnd());
        EXPECT_EQ("", agent.output());
        std::string const errors = agent.errors();
        EXPECT_EQ(*c.errors == '\0', errors.empty());
        EXPECT_TRUE(errors.ends_with(c.errors)) << errors;
    }
}

TEST_F(ProcessTest, CommandLineOverConfigurationThenSilence) {
    using Arguments = std::vector<std::string>;
    for (auto const& [arguments, init] :
         {std::pair(Arguments{"127.0.0.1"}, "(init FromFile (version 7.08))"),
          std::pair(Arguments{"127.0.0.1", "Mine"}, "(init Mine (version 7.08))"),
          std::pair(Arguments{"127.0.0.1", "Mine", "-goalie"},
                    "(init Mine (version 7.08)(goalie))")}) {
        AgentProcess const agent(arguments, conf().c_str());
        EXPECT_EQ(init, server.receive(5000));
    }
    AgentProcess agent({}, conf().c_str());
    welcome();
    server.send(support::senseBody(1));
    auto const lastMessage = Clock::now();
    EXPECT_EQ(0, agent.waitForEnd());
    EXPECT_GT(Clock::now() - lastMessage, milliseconds(1990));
    EXPECT_LT(Clock::now() - lastMessage, milliseconds(4500));
    EXPECT_EQ("", agent.output());
}

TEST_F(ProcessTest, InterruptPrintsTheStatistics) {
    // No timer takes such delays: it must be the see that lets the commands go.
    std::string const delays = "noSeeFraction: 20\nfirstHalfFraction: 20\nlastHalfFraction: 20\n";
    AgentProcess agent({}, (conf() + delays).c_str());
    welcome();
    EXPECT_TRUE(play("move", 1));
    server.send("(hear 2 referee play_on)");
    EXPECT_TRUE(play("say", 8)); // more than fit into a queue that is not emptied
    agent.interrupt();
    EXPECT_EQ(0, agent.waitForEnd());
    collect(0);

    std::string const rule(62, '*');
    std::ostringstream expected;
    auto const row = [&](char const* label, char const* command, int executed) {
        expected << label << sent[command] << "  \t server received: " << executed << "\n";
    };
    expected << "\n\nSIGINT caught \n" << rule << "\n";
    row("kicks        queued: ", "kick", 1);
    row("dashes       queued: ", "dash", 22);
    row("turns        queued: ", "turn", 333);
    row("says         queued: ", "say", 4);
    row("turn_necks   queued: ", "turn_neck", 5);
    row("catches      queued: ", "catch", 6);
    row("moves        queued: ", "move", 7);
    row("change_views queued: ", "change_view", 8);
    expected << rule << "\n\n";
    EXPECT_EQ(expected.str(), agent.output());
}

TEST_F(ProcessTest, AnswersASeeRightBehindItsSenseBodyInTheSameCycle) {
    std::string const delays = "noSeeFraction: 20\nfirstHalfFraction: 20\nlastHalfFraction: 20\n";
    AgentProcess const agent({}, (conf() + delays).c_str());
    welcome();
    EXPECT_TRUE(play("move", 1));
    server.send("(hear 1 referee play_on)");
    // Without a timer only the see lets commands go: a turn_neck or more in each cycle.
    constexpr int CYCLES = 40;
    for (int answered = 0; answered < CYCLES; ++answered) {
        ++cycle;
        server.send(support::senseBody(cycle));
        for (int left = answered % 3 * 50; left > 0; --left) {
            std::atomic_signal_fence(std::memory_order_seq_cst); // a few of the gaps a little wider
        }
        server.send("(see " + std::to_string(cycle) + " ((f c) 40 0) ((b) 20 30) ((l r) 90 90))");
        ASSERT_TRUE(server.receive(2000)) << "cycle " << cycle;
        collect(20);
    }
}

TEST_F(ProcessTest, BearsAServerThatIsSlowRepeatsItselfMovesAndFloods) {
    int const nobody = support::ServerEnd().port();
    AgentProcess lonely({"localhost"}, ("serverPort: " + std::to_string(nobody) + "\n").c_str());
    AgentProcess agent({}, conf().c_str());
    ASSERT_TRUE(server.receive(5000));
    poll(nullptr, 0, 1000);
    answerInit();
    answerInit();
    EXPECT_TRUE(play("move", 1));
    server.send("(hear 1 referee play_on)");
    EXPECT_TRUE(play("say", 2));
    server.changePort();
    EXPECT_TRUE(play("say", 2));
    EXPECT_TRUE(play("say", 2, 500)); // of each message, in every cycle
    EXPECT_TRUE(play("say", 2));
    EXPECT_TRUE(agent.isRunning());
    EXPECT_EQ(0, lonely.waitForEnd());
    EXPECT_EQ("", lonely.output() + lonely.errors());
}

TEST_F(ProcessTest, SurvivesAFloodButNoEmptyDatagram) {
    AgentProcess agent({}, conf().c_str());
    welcome();
    server.send(support::senseBody(1));
    std::mt19937 random(1);
    for (int i = 0; i < 3000; ++i) {
        std::string junk(1 + random() % 300, ' ');
        std::ranges::generate(junk, [&] { return static_cast<char>(random()); });
        server.send(junk);
        if (i % 100 == 0) server.send("(sense_body 7 (view_mode high" + std::string(5000, '('));
    }
    collect(100);

    server.send("(hear 1 referee play_on)");
    // Doubled messages are taken twice; when they cease for a while, it plays on afterwards.
    EXPECT_TRUE(play("say", 4, 2));
    poll(nullptr, 0, 1000);
    EXPECT_TRUE(play("say", 2));

    EXPECT_TRUE(agent.isRunning());
    server.send("");
    EXPECT_EQ(255, agent.waitForEnd());
    EXPECT_EQ(0U, agent.errors().rfind("reading failed: : ", 0));
    EXPECT_EQ("", agent.output());
}

} // namespace
