#include "practice/Options.h"

#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

#include "practice/Socket.h"
#include "practice/Text.h"

namespace practice {

namespace {

template <typename T>
bool readNumber(std::string_view text, T least, T most, T& value) {
    T read{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
    if (error != std::errc{} || end != text.data() + text.size() || read < least || read > most) {
        return false;
    }
    value = read;
    return true;
}

constexpr int manySteps = 1'000'000;

bool readStyle(std::string_view text, Scoreboard::Style& style) {
    constexpr std::array<std::string_view, 4> names{"auto", "line", "plain", "off"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] != text) continue;
        style = static_cast<Scoreboard::Style>(i);
        return true;
    }
    return false;
}

struct Option {
    std::string_view name;
    std::string_view value;
    std::string_view help;
    bool (*read)(std::string_view text, Options& options);
};

// clang-format off
const std::array<Option, 12> table{{
    {"--port", "N", "UDP port where players introduce themselves (6000; 0: any free port)",
     [](std::string_view t, Options& o) { return readNumber(t, 0, 65535, o.port); }},
    {"--address", "A", "IPv4 address to listen on (127.0.0.1: this machine only)",
     [](std::string_view t, Options& o) { o.address = t; return makeAddress(o.address, 0).has_value(); }},
    {"--half-cycles", "N", "cycles of a half, ten a second (3000)",
     [](std::string_view t, Options& o) { return readNumber(t, 1, manySteps, o.match.halfCycles); }},
    {"--seed", "N", "seed of all chance in the match (1)",
     [](std::string_view t, Options& o) {
         return readNumber<std::uint64_t>(t, 0, std::numeric_limits<std::uint64_t>::max(), o.match.seed); }},
    {"--log", "FILE", "write the positions of every cycle, one line each",
     [](std::string_view t, Options& o) { o.logFile = t; return !t.empty(); }},
    {"--results", "FILE", "write score and statistics at the end",
     [](std::string_view t, Options& o) { o.resultsFile = t; return !t.empty(); }},
    {"--players", "N", "players that must have joined before the kick-off (22)",
     [](std::string_view t, Options& o) { return readNumber(t, 1, maxPlayers, o.match.kickOff.players); }},
    {"--ready-cycles", "N", "steps from then to the kick-off, and the break at half time (50)",
     [](std::string_view t, Options& o) { return readNumber(t, 0, manySteps, o.match.kickOff.readySteps); }},
    {"--wait", "N", "steps after the first player joined when whoever is there kicks off (600)",
     [](std::string_view t, Options& o) { return readNumber(t, 0, manySteps, o.match.kickOff.waitSteps); }},
    {"--linger", "N", "steps to go on after the match while players are there (50)",
     [](std::string_view t, Options& o) { return readNumber(t, 0, manySteps, o.lingerSteps); }},
    {"--scoreboard", "HOW", "auto, line (redrawn), plain (a line per event) or off (auto)",
     [](std::string_view t, Options& o) { return readStyle(t, o.scoreboard); }},
    {"--help", "", "print this text",
     [](std::string_view /*t*/, Options& o) { return o.help = true; }},
}};
// clang-format on

const Option* find(std::string_view name) {
    for (const Option& option : table) {
        if (option.name == name) return &option;
    }
    return nullptr;
}

} // namespace

bool readOptions(std::span<const char* const> arguments, Options& options, std::string& problem) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view name = arguments[i];
        const Option* option = find(name);
        if (option == nullptr) {
            problem = text("unknown option ", name, "; --help lists them all");
            return false;
        }
        const bool needsValue = !option->value.empty();
        if (needsValue && i + 1 == arguments.size()) {
            problem = text(name, " needs a value: ", option->help);
            return false;
        }
        const std::string_view value = needsValue ? arguments[++i] : "";
        if (!option->read(value, options)) {
            problem = text(name, " cannot be '", value, "': ", option->help);
            return false;
        }
    }
    return true;
}

std::string helpText() {
    std::string out =
        "practice-server: a small soccer server to practise against\n\nOptions (defaults):\n";
    for (const Option& option : table) {
        std::string left = text("  ", option.name, ' ', option.value);
        left.resize(22, ' ');
        appendText(out, left, option.help, '\n');
    }
    return out;
}

} // namespace practice
