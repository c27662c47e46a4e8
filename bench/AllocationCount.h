#pragma once

#include <benchmark/benchmark.h>

#include "tests/support/Allocations.h"

/// Counts what is allocated while it lives and shows it per iteration.
class AllocationCount {
public:
    explicit AllocationCount(benchmark::State& benchState)
        : state_(benchState), before_(support::allocationCount()) {}
    ~AllocationCount() {
        state_.counters["allocations"] =
            benchmark::Counter(static_cast<double>(support::allocationCount() - before_),
                               benchmark::Counter::kAvgIterations);
    }
    AllocationCount(AllocationCount const&) = delete;
    AllocationCount& operator=(AllocationCount const&) = delete;

private:
    benchmark::State& state_;
    long before_;
};
