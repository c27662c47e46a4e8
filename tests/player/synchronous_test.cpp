// The agent on a server that waits for it: what it answers depends on the messages alone.

#include "tests/player/AgentProcess.h"

namespace {

using Texts = std::vector<std::string>;

/// Before a message comes, so that the agent is fast or slow compared with the server.
using Pause = void (*)();

class SynchronousTest : public ProcessTest {
protected:
    /// Sends that, and what has come when the agent says that it is done.
    Texts think() {
        server.send("(think)");
        Texts texts;
        while (auto const text = server.receive(3000)) {
            if (text == "(done)") return texts;
            texts.push_back(*text);
        }
        ADD_FAILURE() << "no (done)";
        return texts;
    }

    /// A ball that wanders about before the agent, seen in two of three cycles, late every fifth.
    Texts playCycles(int cycles, Pause pause) {
        Texts all;
        auto const add = [&](Texts const& texts) {
            all.insert(all.end(), texts.begin(), texts.end());
        };
        for (int i = 1; i <= cycles; ++i) {
            std::string const see = "(see " + std::to_string(i) + " ((f c) 40 0) ((b) " +
                                    std::to_string(i * 7 % 20) + " " + std::to_string(i % 60 - 30) +
                                    " 0.1 2) ((l r) 90 90))";
            bool const late = i % 5 == 0;
            server.send(support::senseBody(i));
            pause();
            if (i % 3 != 0 && !late) server.send(see);
            pause();
            if (i % 4 == 0) server.send("(hear " + std::to_string(i) + " 20 \"vxAy1x0y1\")");
            add(think());
            if (late) server.send(see);
            pause();
        }
        return all;
    }

    Texts playMatch(Pause pause) {
        AgentProcess const agent({}, conf().c_str());
        server.receive(5000);
        server.send("(init l 5 before_kick_off)");
        server.send(practice::serverParamMessage(3000));
        EXPECT_EQ(think(), Texts()); // knows nothing yet
        Texts all = playCycles(10, pause);
        server.send("(hear 10 referee play_on)");
        Texts const later = playCycles(150, pause);
        all.insert(all.end(), later.begin(), later.end());
        return all;
    }
};

TEST_F(SynchronousTest, TheSameMessagesGiveTheSameCommands) {
    Texts const fast = playMatch([] {});
    Texts const slow = playMatch([] { poll(nullptr, 0, 1); });
    EXPECT_EQ(fast, slow);
    EXPECT_GT(fast.size(), 200U);
}

TEST_F(SynchronousTest, SendsOnceInACycleWithTheSeeOrWhenAsked) {
    // In real time commands would leave at once by these fractions.
    AgentProcess const agent(
        {}, (conf() + "noSeeFraction: 0\nfirstHalfFraction: 0\nlastHalfFraction: 0\n").c_str());
    server.receive(5000);
    server.send("(init l 5 before_kick_off)");
    server.send("(hear 0 referee play_on)");
    server.send(practice::serverParamMessage(3000));
    think();
    for (int i = 1; i <= 5; ++i) {
        server.send(support::senseBody(i));
        EXPECT_FALSE(server.receive(30)); // no timer
        Texts const asked = think();
        EXPECT_FALSE(asked.empty()) << i;
        EXPECT_TRUE(think().empty()); // asked once more, it has nothing to add
        server.send("(see " + std::to_string(i) + " ((f c) 40 0) ((b) 20 30) ((l r) 90 90))");
        EXPECT_TRUE(think().empty()); // too late for this cycle
        server.send(support::senseBody(++i));
        server.send("(see " + std::to_string(i) + " ((f c) 40 0) ((b) 20 30) ((l r) 90 90))");
        EXPECT_TRUE(server.receive(3000)); // the see lets them go
        collect(10);
        EXPECT_TRUE(think().empty());
    }
}

TEST_F(SynchronousTest, LeavesASilentServerAndPrintsItsStatistics) {
    AgentProcess silent({}, conf().c_str());
    server.receive(5000);
    think();
    EXPECT_EQ(0, silent.waitForEnd());
    EXPECT_EQ("", silent.output() + silent.errors());

    AgentProcess agent({}, conf().c_str());
    server.receive(5000);
    think();
    server.send(support::senseBody(1));
    think();
    agent.interrupt();
    EXPECT_EQ(0, agent.waitForEnd());
    EXPECT_NE(agent.output().find("dashes       queued: 0  \t server received: 22\n"),
              std::string::npos);
}

} // namespace
