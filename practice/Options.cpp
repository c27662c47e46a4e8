#include "practice/Options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <variant>

#include "practice/Text.h"

namespace practice {

namespace {

using Style = Scoreboard::Style;

struct Option {
    std::string_view name;
    std::string_view value; // what the help calls it; empty: takes none
    std::string_view help;
    std::variant<int*, std::uint64_t*, std::string*, Style*, bool*> target;
    int least = 0, most = 0; // of an int
};

std::array<Option, 12> tableFor(Options& o) {
    constexpr int many = 1'000'000;
    MatchOptions& m = o.match;
    // clang-format off
    return {{
        {"--port", "N", "UDP port where players introduce themselves (6000; 0: any free port)", &o.port, 0, 65535},
        {"--address", "A", "IPv4 address to listen on (127.0.0.1: this machine only)", &o.address},
        {"--half-cycles", "N", "cycles of a half, ten a second (3000)", &m.halfCycles, 1, many},
        {"--seed", "N", "seed of all chance in the match (1)", &m.seed},
        {"--log", "FILE", "write the positions of every cycle, one line each", &o.logFile},
        {"--results", "FILE", "write score and statistics at the end", &o.resultsFile},
        {"--players", "N", "players that must have joined before the kick-off (22)", &m.kickOff.players, 1, maxPlayers},
        {"--ready-cycles", "N", "steps from then to the kick-off, and the break at half time (50)", &m.kickOff.readySteps, 0, many},
        {"--wait", "N", "steps after the first player joined when whoever is there kicks off (600)", &m.kickOff.waitSteps, 0, many},
        {"--linger", "N", "steps to go on after the match while players are there (50)", &o.lingerSteps, 0, many},
        {"--scoreboard", "HOW", "auto, line (redrawn), plain (a line per event) or off (auto)", &o.scoreboard},
        {"--help", "", "print this text", &o.help},
    }};
    // clang-format on
}

template <typename Number>
bool readNumber(std::string_view text, Number& number) {
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    return error == std::errc{} && end == last;
}

bool assign(const Option& option, std::string_view text, int* target) {
    return readNumber(text, *target) && *target >= option.least && *target <= option.most;
}
bool assign(const Option& /*option*/, std::string_view text, std::uint64_t* target) {
    return readNumber(text, *target);
}
bool assign(const Option& /*option*/, std::string_view text, std::string* target) {
    *target = text;
    return !text.empty();
}
bool assign(const Option& /*option*/, std::string_view text, Style* target) {
    constexpr std::array<std::string_view, 4> names{"auto", "line", "plain", "off"};
    const auto name = std::find(names.begin(), names.end(), text);
    *target = static_cast<Style>(name - names.begin());
    return name != names.end();
}
bool assign(const Option& /*option*/, std::string_view /*text*/, bool* target) {
    return *target = true;
}

} // namespace

std::string readOptions(std::span<const char* const> arguments, Options& options) {
    const auto table = tableFor(options);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view name = arguments[i];
        const auto option = std::find_if(table.begin(), table.end(),
                                         [name](const Option& o) { return o.name == name; });
        if (option == table.end()) return text("unknown option ", name, "; --help lists them all");
        const bool needsValue = !option->value.empty();
        if (needsValue && i + 1 == arguments.size())
            return text(name, " needs a value: ", option->help);
        const std::string_view value = needsValue ? arguments[++i] : "";
        const auto read = [&](auto target) { return assign(*option, value, target); };
        if (!std::visit(read, option->target))
            return text(name, " cannot be '", value, "': ", option->help);
    }
    return {};
}

std::string helpText() {
    std::string out =
        "practice-server: a small soccer server to practise against\n\nOptions (defaults):\n";
    Options options;
    for (const Option& option : tableFor(options)) {
        std::string left = text("  ", option.name, ' ', option.value);
        left.resize(22, ' ');
        appendText(out, left, option.help, '\n');
    }
    return out;
}

} // namespace practice
