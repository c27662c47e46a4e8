// Nanoseconds and heap allocations of the road of one cycle: parse a see, integrate it, decide.

#include <benchmark/benchmark.h>

#include "AllocationCount.h"
#include "sensing/Sensors.h"
#include "support/AgentHarness.h"
#include "support/Scenes.h"

namespace {

/// Number 10 in the middle of a crowded pitch, with all of it integrated.
class PlayingAgent : public support::AgentHarness {
public:
    PlayingAgent() {
        join('l', 10, "play_on");
        receiveSenseBody("(sense_body 100 (view_mode high wide) (stamina 8000 1) (speed 0.2 3) "
                         "(head_angle 0) (kick 0) (dash 0) (turn 0) (say 0) (turn_neck 0) "
                         "(catch 0) (move 0) (change_view 0))");
        receiveSee(support::largestSee());
        world.integrateSensorInfo();
    }
};

support::AgentHarness& playingAgent() {
    static PlayingAgent agent;
    return agent;
}

void integrateSee(benchmark::State& state) {
    support::AgentHarness& agent = playingAgent();
    AllocationCount const count(state);
    for ([[maybe_unused]] auto _ : state) {
        Sensors::newVisual = true;
        benchmark::DoNotOptimize(agent.world.integrateSensorInfo());
    }
}
BENCHMARK(integrateSee);

/// The whole behaviour of a cycle of play with the ball out of reach (positioning).
void decideCycle(benchmark::State& state) {
    support::AgentHarness& agent = playingAgent();
    AllocationCount const count(state);
    for ([[maybe_unused]] auto _ : state) {
        agent.decide();
    }
}
BENCHMARK(decideCycle);

/// The same with the ball at the foot: shoot, pass or dribble, with its look at every pass line.
void decideWithBall(benchmark::State& state) {
    support::AgentHarness& agent = playingAgent();
    Vector2D const me = agent.world.myself().position;
    Vector2D const before = agent.world.ball().position;
    agent.placeBall(me.x + 0.5F, me.y);
    {
        AllocationCount const count(state);
        for ([[maybe_unused]] auto _ : state) {
            agent.decide();
        }
    }
    agent.placeBall(before.x, before.y);
}
BENCHMARK(decideWithBall);

} // namespace
