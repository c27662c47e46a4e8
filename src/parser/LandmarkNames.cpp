#include <array>
#include <cstddef>
#include <cstdint>

#include "parser/Names.h"

namespace rcc {

namespace {

struct Entry {
    std::string_view name;
    NamedObject object;
};

constexpr auto LINE = NamedObject::Kind::line;
constexpr auto FLAG = NamedObject::Kind::flag;
constexpr auto GOAL = NamedObject::Kind::goal;
constexpr auto BALL = NamedObject::Kind::ball;
constexpr int CLOSE_BY = RCC_Flag::CLOSE_BY;

// RCC_Flag tells what the digits of the codes mean.
// clang-format off
constexpr std::array ENTRIES = {
    Entry{"g l",     {GOAL, 48}},   Entry{"g r",     {GOAL, 58}},
    Entry{"f c",     {FLAG, 6}},    Entry{"f c t",   {FLAG, 26}},   Entry{"f c b",   {FLAG, 36}},
    Entry{"f l t",   {FLAG, 24}},   Entry{"f l b",   {FLAG, 34}},
    Entry{"f r t",   {FLAG, 25}},   Entry{"f r b",   {FLAG, 35}},
    Entry{"f p l t", {FLAG, 247}},  Entry{"f p l c", {FLAG, 647}},  Entry{"f p l b", {FLAG, 347}},
    Entry{"f p r t", {FLAG, 257}},  Entry{"f p r c", {FLAG, 657}},  Entry{"f p r b", {FLAG, 357}},
    Entry{"f g l t", {FLAG, 248}},  Entry{"f g l b", {FLAG, 348}},
    Entry{"f g r t", {FLAG, 258}},  Entry{"f g r b", {FLAG, 358}},

    Entry{"f t 0",   {FLAG, 2}},    Entry{"f b 0",   {FLAG, 3}},
    Entry{"f t l 10", {FLAG, 1042}}, Entry{"f t r 10", {FLAG, 1052}},
    Entry{"f t l 20", {FLAG, 2042}}, Entry{"f t r 20", {FLAG, 2052}},
    Entry{"f t l 30", {FLAG, 3042}}, Entry{"f t r 30", {FLAG, 3052}},
    Entry{"f t l 40", {FLAG, 4042}}, Entry{"f t r 40", {FLAG, 4052}},
    Entry{"f t l 50", {FLAG, 5042}}, Entry{"f t r 50", {FLAG, 5052}},
    Entry{"f b l 10", {FLAG, 1043}}, Entry{"f b r 10", {FLAG, 1053}},
    Entry{"f b l 20", {FLAG, 2043}}, Entry{"f b r 20", {FLAG, 2053}},
    Entry{"f b l 30", {FLAG, 3043}}, Entry{"f b r 30", {FLAG, 3053}},
    Entry{"f b l 40", {FLAG, 4043}}, Entry{"f b r 40", {FLAG, 4053}},
    Entry{"f b l 50", {FLAG, 5043}}, Entry{"f b r 50", {FLAG, 5053}},

    Entry{"f l 0",   {FLAG, 4}},    Entry{"f r 0",   {FLAG, 5}},
    Entry{"f l t 10", {FLAG, 1024}}, Entry{"f r t 10", {FLAG, 1025}},
    Entry{"f l t 20", {FLAG, 2024}}, Entry{"f r t 20", {FLAG, 2025}},
    Entry{"f l t 30", {FLAG, 3024}}, Entry{"f r t 30", {FLAG, 3025}},
    Entry{"f l b 10", {FLAG, 1034}}, Entry{"f r b 10", {FLAG, 1035}},
    Entry{"f l b 20", {FLAG, 2034}}, Entry{"f r b 20", {FLAG, 2035}},
    Entry{"f l b 30", {FLAG, 3034}}, Entry{"f r b 30", {FLAG, 3035}},

    Entry{"l t",     {LINE, 2}},    Entry{"l b",     {LINE, 3}},
    Entry{"l l",     {LINE, 4}},    Entry{"l r",     {LINE, 5}},

    Entry{"F",       {FLAG, CLOSE_BY}}, Entry{"G",   {GOAL, CLOSE_BY}},
    Entry{"b",       {BALL, 0}},        Entry{"B",   {BALL, 0}},
};
// clang-format on

/// No name is longer than eight characters, so a name is a number, and 0 is none.
constexpr std::uint64_t pack(std::string_view name) {
    std::uint64_t key = 0;
    for (char const c : name) {
        key = key << 8U | static_cast<unsigned char>(c);
    }
    return key;
}

struct Row {
    std::uint64_t key = 0;
    NamedObject object;
};

/// A perfect hash: one multiply, one load, one compare; no unpredictable branch.
class NameTable {
public:
    /// Searches for a multiplier that gives every name a row of its own.
    constexpr NameTable() {
        while (!fill()) {
            multiplier_ += 2;
        }
    }

    constexpr NamedObject find(std::uint64_t key) const {
        Row const& row = rows_[rowOf(key)];
        return row.key == key ? row.object : NamedObject{};
    }

private:
    static constexpr unsigned BITS = 9;

    constexpr std::size_t rowOf(std::uint64_t key) const {
        return key * multiplier_ >> (64 - BITS);
    }

    /// False when two names fall into one row with this multiplier.
    constexpr bool fill() {
        rows_ = {};
        for (Entry const& entry : ENTRIES) {
            std::uint64_t const key = pack(entry.name);
            Row& row = rows_[rowOf(key)];
            if (row.key != 0) return false;
            row = {key, entry.object};
        }
        return true;
    }

    std::uint64_t multiplier_ =
        0x9E3779B97F4A7C15; // any odd number with well-mixed bits to start from
    std::array<Row, std::size_t{1} << BITS> rows_{};
};

constexpr NameTable TABLE;

} // namespace

NamedObject findNamedObject(std::string_view name) {
    return name.size() <= sizeof(Row::key) ? TABLE.find(pack(name)) : NamedObject{};
}

} // namespace rcc
