#pragma once

#include <cstdint>
#include <numbers>
#include <random>
#include <span>
#include <utility>

namespace practice {

/// The only source of chance in a match. Numbers are computed here from the engine's bits, because
/// the standard distributions differ between libraries and a seed must give the same match
/// everywhere. For the same reason draw only one number in an argument list: compilers differ in
/// the order in which they work one out.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    /// Uniform in [lo, hi).
    double uniform(double lo, double hi) {
        constexpr double ULP = 0x1.0p-53;
        return lo + (hi - lo) * (static_cast<double>(engine_() >> 11U) * ULP);
    }
    double direction() { return uniform(-std::numbers::pi, std::numbers::pi); }
    bool happens(double probability) { return uniform(0.0, 1.0) < probability; }

    template <typename T>
    void shuffle(std::span<T> items) {
        for (std::size_t i = items.size(); i > 1; --i) {
            auto const j = static_cast<std::size_t>(uniform(0.0, static_cast<double>(i)));
            std::swap(items[i - 1], items[j]);
        }
    }

private:
    std::mt19937_64 engine_;
};

} // namespace practice
