// Nanoseconds and heap allocations of the road of one cycle: keep a see, integrate it, decide, and
// all of it together. The situations are those that cost most among many random ones.

#include <benchmark/benchmark.h>
#include <string>

#include "bench/AllocationCount.h"
#include "sensing/Sensors.h"
#include "tests/support/AgentHarness.h"
#include "tests/support/Scenes.h"

namespace {

/// A player on a crowded pitch: number 10, or the goalkeeper.
class PlayingAgent : public support::AgentHarness {
public:
    explicit PlayingAgent(bool goalie) : AgentHarness(goalie) {
        join('l', goalie ? 1 : 10, "play_on");
        world.setSeeTimingSettled();
        hearSenseBody();
        see();
    }

    void hearSenseBody() {
        sense(senseBody);
        world.integrateSensorInfo();
    }

    void see() {
        sense(largestSee);
        world.integrateSensorInfo();
    }

    /// The words of what is queued, to tell what was decided.
    std::string decision() const {
        std::string words;
        for (std::string const& command : allCommands()) {
            words += command.substr(0, command.find(' ')) + ") ";
        }
        return words;
    }

private:
    std::string const senseBody = support::senseBody(0, "high wide", "0.2 3");
    std::string const largestSee = support::largestSee();
};

/// Sets up what the messages alone do not lead to.
using Situation = void (*)(support::AgentHarness&);

constexpr bool FIELD_PLAYER = false;
constexpr bool GOALIE = true;

void asSeen(support::AgentHarness& /*agent*/) {}

void ballAtFoot(support::AgentHarness& agent) {
    agent.placeBall(agent.world.myself().position.x + 0.5F, agent.world.myself().position.y);
}

/// Nearer to the agent than to its team-mates, and gone before it arrives: the search for a place
/// to intercept it looks at all cycles.
void ballRollsAway(support::AgentHarness& agent) {
    agent.placeMyself(-40.0F, 0.0F, 90.0F);
    agent.placeBall(-42.0F, 4.0F, -1.9F, 1.9F);
}

/// The same before the goal, where the goalkeeper searches twice.
void ballRollsThroughTheArea(support::AgentHarness& agent) {
    agent.placeMyself(-45.0F, 0.0F, 90.0F);
    agent.placeBall(-42.0F, 4.0F, -1.9F, 1.9F);
}

/// The string, the parser and the copies of the handler.
void keepSee(benchmark::State& state) {
    PlayingAgent agent(FIELD_PLAYER);
    std::string const text = support::largestSee();
    AllocationCount const count(state);
    for ([[maybe_unused]] auto _ : state) {
        agent.receive(text);
    }
}
BENCHMARK(keepSee);

void integrateSee(benchmark::State& state) {
    PlayingAgent agent(FIELD_PLAYER);
    AllocationCount const count(state);
    for ([[maybe_unused]] auto _ : state) {
        Sensors::newVisual = true;
        Sensors::arrivals.stamp(Arrivals::SEE);
        benchmark::DoNotOptimize(agent.world.integrateSensorInfo());
    }
}
BENCHMARK(integrateSee);

void decide(benchmark::State& state, bool goalie, Situation prepare) {
    PlayingAgent agent(goalie);
    prepare(agent);
    {
        AllocationCount const count(state);
        for ([[maybe_unused]] auto _ : state) {
            agent.decide();
        }
    }
    state.SetLabel(agent.decision());
}
BENCHMARK_CAPTURE(decide, playerInPosition, FIELD_PLAYER, asSeen);
BENCHMARK_CAPTURE(decide, playerAtBall, FIELD_PLAYER, ballAtFoot);
BENCHMARK_CAPTURE(decide, playerChasing, FIELD_PLAYER, ballRollsAway);
BENCHMARK_CAPTURE(decide, goalieGuarding, GOALIE, asSeen);
BENCHMARK_CAPTURE(decide, goalieChasing, GOALIE, ballRollsThroughTheArea);

/// All of a cycle but the system calls: a sense_body and the largest see from the datagrams to the
/// queued commands, decided upon twice.
void cycle(benchmark::State& state, bool goalie, Situation prepare) {
    PlayingAgent agent(goalie);
    AllocationCount const count(state);
    for ([[maybe_unused]] auto _ : state) {
        agent.hearSenseBody();
        agent.decide();
        agent.see();
        prepare(agent);
        agent.decide();
    }
}
BENCHMARK_CAPTURE(cycle, playerAtBall, FIELD_PLAYER, ballAtFoot);
BENCHMARK_CAPTURE(cycle, playerChasing, FIELD_PLAYER, ballRollsAway);
BENCHMARK_CAPTURE(cycle, goalieChasing, GOALIE, ballRollsThroughTheArea);

} // namespace
