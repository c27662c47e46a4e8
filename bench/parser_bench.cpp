// What it takes to parse the largest see, beside a floor: the conversion of its numbers alone.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <charconv>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "bench/AllocationCount.h"
#include "parser/RCC_Parser.h"
#include "tests/support/AgentHarness.h"
#include "tests/support/Scenes.h"

namespace {

/// Converts every number of the text and does nothing else: no parser that reads numbers by
/// std::from_chars can do with less.
[[gnu::noinline]] void readNumbers(std::string_view text) {
    char const* cursor = text.data();
    char const* const end = cursor + text.size();
    while (cursor != end) {
        if ((*cursor >= '0' && *cursor <= '9') || *cursor == '-') {
            float value = 0;
            cursor = std::from_chars(cursor, end, value).ptr;
            benchmark::DoNotOptimize(value);
        } else {
            ++cursor;
        }
    }
}

/// A parser without handlers, and the message.
struct Parsing {
    RCC_Parser parser{0, support::AgentHarness::TEAM, 0};
    RCC_String message{support::largestSee()};

    void parse() { RCC_Memory::remove(parser.parse(message)); }
};

void floorOfSee(benchmark::State& state) {
    std::string const text = support::largestSee();
    for ([[maybe_unused]] auto _ : state) {
        readNumbers(text);
    }
}
BENCHMARK(floorOfSee);

void parseSee(benchmark::State& state) {
    Parsing parsing;
    AllocationCount const count(state);
    for ([[maybe_unused]] auto _ : state) {
        parsing.parse();
    }
}
BENCHMARK(parseSee);

/// Both in turns, so that a busy machine disturbs them alike. Shows how many times the floor the
/// parser takes: in the quickest turns of both, and in the turn in the middle.
void parseSeeToFloor(benchmark::State& state) {
    constexpr int SEES_OF_A_TURN = 20;
    using Clock = std::chrono::steady_clock;
    auto const secondsOf = [](auto work) {
        auto const start = Clock::now();
        for (int i = 0; i < SEES_OF_A_TURN; ++i) {
            work();
        }
        return std::chrono::duration<double>(Clock::now() - start).count();
    };

    Parsing parsing;
    std::vector<double> floors;
    std::vector<double> parses;
    std::vector<double> ratios;
    for ([[maybe_unused]] auto _ : state) {
        floors.push_back(secondsOf([&] { readNumbers(parsing.message.view()); }));
        parses.push_back(secondsOf([&] { parsing.parse(); }));
        ratios.push_back(parses.back() / floors.back());
    }
    auto const middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    state.counters["median_ratio"] = *middle;
    state.counters["best_ratio"] = std::ranges::min(parses) / std::ranges::min(floors);
}
BENCHMARK(parseSeeToFloor)->Iterations(2000);

} // namespace
