// Prints one number for the way the agent plays: all commands of a field player and of a goalkeeper
// in fixed in-process matches, hashed.
//
// usage: signature [--events | --check FILE | --renew FILE]
//
//   --events   tells on standard error what the matches were made of
//   --check    compares with the number in the file: status 1 when it differs
//   --renew    writes the file
//
// The same sources give the same number with any compiler and any of its usual options. On another
// system the sines and logarithms of the C library may round differently, and a match soon takes
// another course. So the file also holds a hash of such roundings; when that is not this system's,
// --check cannot tell and ends with status 77.

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "practice/Text.h"
#include "tests/support/MatchDriver.h"

namespace {

constexpr int HALF_CYCLES = 1000;
constexpr int LAST_CYCLES = 20; ///< after the end

/// FNV-1a.
class Hash {
public:
    void add(std::string_view text) {
        for (char const c : text) {
            value_ = (value_ ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
        }
    }
    std::string hexadecimal() const {
        std::array<char, 17> digits{};
        std::snprintf(digits.data(), digits.size(), "%016llx",
                      static_cast<unsigned long long>(value_));
        return digits.data();
    }

private:
    std::uint64_t value_ = 14695981039346656037ULL;
};

/// What happened, by the referee's last word.
class Events {
public:
    /// A word with the side as the agent sees it: "kick_in_l" as "kick_in ours".
    void announce(std::string word, char ownSide = 'l') {
        word.resize(word.find_last_not_of("0123456789_") + 1);
        if (word.ends_with("_l") || word.ends_with("_r")) {
            bool const ours = word.back() == ownSide;
            word.replace(word.size() - 2, 2, ours ? " ours" : " theirs");
        }
        current_ = &rows_[word];
        ++current_->times;
    }
    void step() {
        ++current_->steps;
        ++all_.steps;
    }
    void command(std::string const& text) {
        std::string const kind = text.substr(1, text.find_first_of(" )") - 1);
        ++current_->commands[kind];
        ++all_.commands[kind];
    }

    void print() const {
        std::fprintf(stderr, "%-26s %6s %6s", "referee's word", "times", "steps");
        for (char const* const kind : KINDS) {
            std::fprintf(stderr, "%10s", kind);
        }
        for (auto const& [word, row] : rows_) {
            std::fprintf(stderr, "\n%-26s %6d %6d", word.c_str(), row.times, row.steps);
            for (char const* const kind : KINDS) {
                auto const entry = row.commands.find(kind);
                std::fprintf(stderr, "%10d", entry == row.commands.end() ? 0 : entry->second);
            }
        }
        std::fprintf(stderr, "\n");
    }

    /// Names what should have come up and has not, so that the matches are worth hashing.
    void complain() const {
        auto const require = [&](std::string const& word, std::string const& kind = {}) {
            auto const row = rows_.find(word);
            if (row != rows_.end() && (kind.empty() || row->second.commands.contains(kind))) return;
            std::fprintf(stderr, "signature: no %s %s, so the number tells less\n", word.c_str(),
                         kind.c_str());
        };
        for (char const* const word :
             {"before_kick_off", "play_on", "drop_ball", "half_time", "time_over"}) {
            require(word);
        }
        for (std::string const word :
             {"kick_off", "kick_in", "free_kick", "corner_kick", "goal_kick", "indirect_free_kick",
              "goal", "goalie_catch_ball", "offside", "back_pass", "free_kick_fault"}) {
            require(word + " ours");
            require(word + " theirs");
        }
        for (char const* const taken : {"kick_off ours", "kick_in ours", "free_kick ours",
                                        "corner_kick ours", "goal_kick ours"}) {
            require(taken, "kick");
        }
        require("free_kick ours", "move");
        require("play_on", "catch");
        require("play_on", "say");
    }

private:
    static constexpr std::array KINDS = {"kick", "dash",  "turn", "turn_neck",
                                         "say",  "catch", "move"};
    struct Row {
        int times = 0;
        int steps = 0;
        std::map<std::string, int> commands;
    };
    std::map<std::string, Row> rows_;
    Row* current_ = nullptr;
    Row& all_ = rows_["all"];
};

/// All commands of some matches, a field player's and a goalkeeper's on both sides.
Hash playAll(Events& events) {
    struct Part {
        bool goalie, right;
        int unum;
    };
    constexpr std::array PARTS = {Part{false, false, 10}, Part{false, true, 9},
                                  Part{false, false, 11}, Part{false, true, 3},
                                  Part{true, false, 1},   Part{true, true, 1}};
    srandom(1); // the kick-off goes to either side by random()
    Hash hash;
    unsigned seed = 0;
    for (Part const& part : PARTS) {
        support::MatchDriver driver({.goalie = part.goalie,
                                     .right = part.right,
                                     .unum = part.unum,
                                     .halfCycles = HALF_CYCLES,
                                     .seed = ++seed,
                                     .scripted = true});
        practice::PlayMode const& mode = driver.match.world().mode;
        events.announce("join");
        for (int rest = LAST_CYCLES; rest > 0; rest -= mode == practice::Phase::timeOver ? 1 : 0) {
            for (std::string const& command : driver.step()) {
                hash.add(command);
                events.command(command);
            }
            hash.add("\n");
            events.step();
            for (std::string const& word : driver.announced) {
                events.announce(word, part.right ? 'r' : 'l');
            }
        }
    }
    return hash;
}

/// The last digits of the mathematical library.
Hash mathematics() {
    Hash hash;
    for (int i = 1; i <= 20000; ++i) {
        double const x = i * 0.0123;
        for (double const y : {std::sin(x), std::cos(x), std::tan(x), std::asin(x / 250.0),
                               std::acos(x / 250.0), std::atan2(x, 99.0 - x), std::exp(-x / 9.0),
                               std::log(x), std::pow(0.94, x), std::hypot(x, 7.0)}) {
            std::array<char, sizeof y> bytes{};
            std::memcpy(bytes.data(), &y, sizeof y);
            hash.add({bytes.data(), bytes.size()});
        }
    }
    return hash;
}

int check(std::string const& number, std::string const& library, char const* file) {
    constexpr int SKIPPED = 77;
    std::string expected;
    std::string itsLibrary;
    std::ifstream(file) >> expected >> itsLibrary;
    if (number == expected) return 0;
    if (!expected.empty() && library != itsLibrary) {
        std::fprintf(stderr, "signature: not compared, %s is of another mathematical library\n",
                     file);
        return SKIPPED;
    }
    std::fprintf(stderr,
                 "signature: %s, but %s has '%s': the agent plays differently. If that is meant, "
                 "build the target renew-signature\n",
                 number.c_str(), file, expected.c_str());
    return 1;
}

} // namespace

int main(int argc, char* argv[]) {
    std::vector<std::string_view> const arguments(argv + 1, argv + argc);
    bool const tell = arguments.size() == 1 && arguments[0] == "--events";
    bool const compare = arguments.size() == 2 && arguments[0] == "--check";
    bool const renew = arguments.size() == 2 && arguments[0] == "--renew";
    if (!arguments.empty() && !tell && !compare && !renew) {
        std::fprintf(stderr, "usage: signature [--events | --check FILE | --renew FILE]\n");
        return 2;
    }
    Events events;
    std::string const number = playAll(events).hexadecimal();
    std::string const library = mathematics().hexadecimal();
    std::printf("%s\n", number.c_str());
    if (tell) events.print();
    if (compare) return check(number, library, argv[2]);
    events.complain();
    if (renew && !(std::ofstream(argv[2]) << number << ' ' << library << '\n')) return 1;
    return 0;
}
