// The tools for debugging and for study: checks of the world model, and the two log writers.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <regex>
#include <sstream>
#include <unistd.h>
#include <vector>

#include "logging/AgentPlanLogger.h"
#include "logging/Logger.h"
#include "runtime/PlanLogs.h"
#include "skills/SkillPool.h"
#include "tests/player/Point.h"
#include "tests/support/AgentHarness.h"

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();

class Checks : public testing::Test {
protected:
    Checks() { agent.join('l', 7); }

    /// The report that `check` ends the program with.
    static void expectReport(std::function<void()> const& check, std::string const& line,
                             std::string const& function, std::string const& condition) {
        EXPECT_DEATH(check(), literally("WorldModel_LowLevel.cpp:" + line + ": void WorldModel::" +
                                        function + ": Assertion `" + condition + "' failed.\n"));
    }
    /// As a regular expression.
    static std::string literally(std::string const& text) {
        return std::regex_replace(text, std::regex(R"([|()*+.])"), R"(\$&)");
    }

    support::AgentHarness agent;
    WorldModel& world = agent.world;
    std::vector<Player>& mine = world.situation().myTeam.players;
};

TEST_F(Checks, TheBallStaysNearThePitchAndBelowItsSpeed) {
    world.ball().velocity = Vector2D(3.2F, 0.9F, CARTESIAN);
    auto const check = [&] { world.checkBall(); };
    Vector2D const out[] = {at(60, 0), at(-60, 0), at(0, 40), at(0, -40)};
    for (Vector2D const& position : out) {
        world.ball().position = position;
        expectReport(check, "673", "checkBall()",
                     "bPos.isInvalid() || ((bPos.getX() < 60 && bPos.getX() > -60) && "
                     "(bPos.getY() < 40 && bPos.getY() > -40))");
    }
    for (Vector2D const& position : {at(59.9F, -39.9F), at(UNDEFINED_FLOAT, 99)}) {
        world.ball().position = position;
        expectReport(check, "676", "checkBall()",
                     "bVel.isInvalid() || ((bVel.getLength() <= 3.3 && bVel.getLength() >= 0) && "
                     "(bVel.getDirection() <= 180 && bVel.getDirection() >=-180 ))");
    }
    world.ball().velocity = at(2.9F, -1.5F);
    world.checkBall();
}

TEST_F(Checks, EachValueOfAPlayerHasItsCondition) {
    Player const good(at(1, 2), at(3, 0), 360, INF, 0, false, false);
    auto const check = [&](auto change) {
        Player player = good;
        change(player);
        return [this, player] { world.checkPlayer(player); };
    };
    constexpr char const* FUNCTION = "checkPlayer(const Player&) const";
    expectReport(check([](Player& p) { p.position.y = 40; }), "690", FUNCTION,
                 "pPos.isInvalid() || ((pPos.getX() < 60 && pPos.getX() > -60) && "
                 "(pPos.getY() < 40 && pPos.getY() > -40))");
    expectReport(check([](Player& p) { p.velocity.y = 0.1F; }), "693", FUNCTION,
                 "pVel.isInvalid() || ((pVel.getLength() <= 3 && pVel.getLength() >= 0) && "
                 "(pVel.getDirection() <= 180 && pVel.getDirection() >=-180 ))");
    expectReport(check([](Player& p) { p.headDirection = 360.1F; }), "694", FUNCTION,
                 "isinf(hDir) || hDir == UNDEFINED_FLOAT || (hDir >= 0 && hDir <= 360)");
    expectReport(check([](Player& p) { p.bodyDirection = -10; }), "695", FUNCTION,
                 "isinf(bDir) || bDir == UNDEFINED_FLOAT || (bDir >= 0 && bDir <= 360)");
    for (int const unum : {12, -1}) {
        expectReport(check([&](Player& p) { p.unum = unum; }), "696", FUNCTION,
                     "unum <= 11 && unum >= 0");
    }
    for (float const direction : {0.0F, UNDEFINED_FLOAT, -INF}) {
        check([&](Player& p) { p.bodyDirection = p.headDirection = direction; })();
    }
}

TEST_F(Checks, TeamsAreCountedAndThenLookedThrough) {
    Player const mate(at(1, 2), at(0, 0), 0, 0, 3, false, false);
    Player opponent = mate;
    opponent.opponent = true;
    Player lost = mate;
    lost.unum = 12;

    world.checkMyself();
    world.myself().opponent = true;
    expectReport([&] { world.checkMyself(); }, "700", "checkTeammate(const Player&) const",
                 "!p.isOpponent()");
    expectReport([&] { world.checkOpponent(mate); }, "704", "checkOpponent(const Player&) const",
                 "p.isOpponent()");

    mine.assign(11, mate);
    world.checkMyTeam();
    mine[0] = opponent;
    expectReport([&] { world.checkMyTeam(); }, "700", "checkTeammate(const Player&) const",
                 "!p.isOpponent()");
    mine.push_back(lost);
    expectReport([&] { world.checkMyTeam(); }, "709", "checkMyTeam()", "guysCount<=11");

    std::vector<Player>& theirs = world.situation().theirTeam.players;
    theirs.assign(11, opponent);
    world.checkTheirTeam();
    theirs[5] = mate;
    expectReport([&] { world.checkTheirTeam(); }, "704", "checkOpponent(const Player&) const",
                 "p.isOpponent()");
    theirs.push_back(mate);
    expectReport([&] { world.checkTheirTeam(); }, "716", "checkTheirTeam()", "guysCount<=11");

    std::vector<Player>& unknown = world.situation().unknownPlayers;
    unknown = std::vector<Player>(21, mate);
    world.checkUnknownPlayers();
    unknown[20] = lost;
    expectReport([&] { world.checkUnknownPlayers(); }, "696", "checkPlayer(const Player&) const",
                 "unum <= 11 && unum >= 0");
    unknown.push_back(lost);
    expectReport([&] { world.checkUnknownPlayers(); }, "723", "checkUnknownPlayers()",
                 "guysCount<=21");
}

/// In a directory of its own, since the writers use the working directory.
class Logs : public testing::Test {
protected:
    Logs() {
        std::filesystem::remove_all(directory);
        std::filesystem::create_directory(directory);
        std::filesystem::current_path(directory);
    }
    ~Logs() override {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(directory);
    }
    static std::string contents(char const* file) {
        std::ostringstream text;
        text << std::ifstream(file, std::ios::binary).rdbuf();
        return text.str();
    }

    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("agent-logs-" + std::to_string(getpid()));
    support::AgentHarness agent;
};

TEST_F(Logs, TheWorldModelLogIsAHeadAndMarkers) {
    for (int run = 0; run < 2; ++run) { // the second one empties the file again
        Logger logger(&agent.world);
        EXPECT_EQ(contents("logfile######"), "ULG\3");
        logger.writeWorldModel();
        logger.writeWorldModel();
        EXPECT_EQ(contents("logfile######"), "ULG\3hallohallo") << "not flushed";
        logger.game_log_write("a\0b", 3);
    }
    EXPECT_EQ(contents("logfile######"), std::string("ULG\3hallohalloa\0b", 17));
}

TEST_F(Logs, ThePlanLogDrawsTheAgentAndItsDirections) {
    agent.join('r', 3);
    agent.world.situation().currentTime = 120;
    agent.placeMyself(10, -5);
    agent.world.myself().headDirection = 90.7F;
    {
        AgentPlanLogger nowhere(&agent.world);
        nowhere.writeAgentPlan();
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
    std::filesystem::create_directory("agentplanlog");
    for (int run = 0; run < 2; ++run) {
        AgentPlanLogger logger(&agent.world);
        logger.writeAgentPlan();
        EXPECT_EQ(contents("agentplanlog/player3.log"), "120 3 8 ellipse (9,-6) 2 2\n"
                                                        "120 3 8 line (10,-5) (11.5,-5)\n"
                                                        "120 3 8 line (10,-5) (10,-6)\n");
    }
}

TEST_F(Logs, TheBeliefLogTellsWhatWasKnownAndTheCaseTaken) {
    agent.join('l', 7);
    agent.world.situation().currentTime = 30;
    agent.world.situation().playMode = PM_PLAY_ON;
    agent.placeMyself(10, -5, 90);
    agent.addTeammate(4, 1, 2);
    agent.addOpponent(0, 20.5, -3);
    PlanLogs unasked;
    unasked.write(agent.world, "none");
    EXPECT_TRUE(std::filesystem::is_empty("."));

    setenv("AGENT_PLAN_LOG", "1", 1);
    PlanLogs logs;
    unsetenv("AGENT_PLAN_LOG");
    agent.placeBall(UNDEFINED_FLOAT, UNDEFINED_FLOAT);
    agent.decide();
    logs.write(agent.world, SkillPool::takenCase());
    agent.placeBall(10.5, -5, 1, 0.5);
    agent.decide();
    logs.write(agent.world, SkillPool::takenCase());
    std::string const self = "30 7 9 self (10,-5) 90 90\n";
    std::string const players = "30 7 9 mate 4 (1,2)\n30 7 9 opponent 0 (20.5,-3)\n";
    EXPECT_EQ(contents("agentplanlog/beliefs7.log"),
              self + players + "30 7 9 case look_for_ball\n" + self +
                  "30 7 9 ball (10.5,-5) (1,0.5)\n" + players + "30 7 9 case pass_ahead\n");
    EXPECT_EQ(std::ranges::count(contents("agentplanlog/player7.log"), '\n'), 6);
}

} // namespace
