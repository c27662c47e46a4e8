#include "practice/Options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>
#include <variant>

#include "practice/Text.h"

namespace practice {

namespace {

using Style = Scoreboard::Style;

struct Option {
    std::string_view name;
    std::string_view value; ///< what the help calls it; empty: takes none
    std::string_view help;
    std::variant<int*, std::uint64_t*, std::string*, Style*, bool*> target;
    std::uint64_t least = 0, most = std::numeric_limits<std::uint64_t>::max(); ///< of a number
};

std::array<Option, 18> tableFor(Options& o) {
    constexpr std::uint64_t MANY = 1'000'000;
    MatchOptions& m = o.match;
    // clang-format off
    return {{
        {"--port", "N", "UDP port where players introduce themselves (6000; 0: any free port)", &o.port, 0, 65534},
        {"--address", "A", "IPv4 address to listen on (127.0.0.1: this machine only)", &o.address},
        {"--half-cycles", "N", "cycles of a half, ten a second (3000)", &m.halfCycles, 1, MANY},
        {"--seed", "N", "seed of all chance in the match (1)", &m.seed},
        {"--log", "NAME", "write the game log NAME.rcg and the text log NAME.rcl (no logs)", &o.log.stem},
        {"--log-dir", "DIR", "folder of the logs; NAME is match if --log does not say it", &o.log.directory},
        {"--log-dated", "", "name the logs after date, teams and score; incomplete.* until the end", &o.log.dated},
        {"--log-version", "N", "version of the game log: 4, 5 or 6 (5)", &o.log.version, gamelog::OLDEST_VERSION, gamelog::NEWEST_VERSION},
        {"--results", "FILE", "write at the end, as JSON, what no log can tell of the players", &o.resultsFile},
        {"--players", "N", "players that must have joined before the kick-off (22)", &m.kickOff.players, 1, MAX_PLAYERS},
        {"--ready-cycles", "N", "steps from then to the kick-off, and the break at half time (50)", &m.kickOff.readySteps, 0, MANY},
        {"--wait", "N", "steps from the first player on; then the match starts without the others (600)", &m.kickOff.waitSteps, 0, MANY},
        {"--linger", "N", "steps to go on after the match while players are there (50)", &o.lingerSteps, 0, MANY},
        {"--trainer", "", "take a trainer on the port above the one of the players", &o.trainer},
        {"--synchronous", "", "wait for every player's commands instead of keeping time (see docs)", &o.synchronous},
        {"--speed", "X", "with --synchronous: at most X times as fast as in real time (no limit)", &o.speed, 1, 10000},
        {"--scoreboard", "HOW", "auto, line (redrawn), plain (a line per event) or off (auto)", &o.scoreboard},
        {"--help", "", "print this text", &o.help},
    }};
    // clang-format on
}

/// Reads what an option says; false when it makes no sense.
struct Assignment {
    Option const& option;
    std::string_view text;

    template <typename Number>
    bool operator()(Number* target) const {
        char const* end = text.data() + text.size();
        auto const read = std::from_chars(text.data(), end, *target);
        if (read.ec != std::errc{} || read.ptr != end) return false;
        return std::cmp_greater_equal(*target, option.least) &&
               std::cmp_less_equal(*target, option.most);
    }
    bool operator()(std::string* target) const {
        *target = text;
        return !text.empty();
    }
    bool operator()(Style* target) const {
        constexpr std::array<std::string_view, 4> NAMES{"auto", "line", "plain", "off"};
        auto const name = std::ranges::find(NAMES, text);
        *target = static_cast<Style>(name - NAMES.begin());
        return name != NAMES.end();
    }
    bool operator()(bool* target) const { return *target = true; }
};

} // namespace

std::string readOptions(std::span<char const* const> arguments, Options& options) {
    auto const table = tableFor(options);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string_view const name = arguments[i];
        auto const option = std::ranges::find(table, name, &Option::name);
        if (option == table.end()) return text("unknown option ", name, "; --help lists them all");
        bool const needsValue = !option->value.empty();
        if (needsValue && i + 1 == arguments.size()) {
            return text(name, " needs a value: ", option->help);
        }
        std::string_view const value = needsValue ? arguments[++i] : "";
        if (!std::visit(Assignment{*option, value}, option->target)) {
            return text(name, " cannot be '", value, "': ", option->help);
        }
    }
    options.log.reproducible = options.synchronous;
    if (options.speed > 0 && !options.synchronous) return "--speed needs --synchronous";
    return {};
}

std::string helpText() {
    std::string out =
        "practice-server: a small soccer server to practise against\n\nOptions (defaults):\n";
    Options options;
    for (Option const& option : tableFor(options)) {
        std::string left = text("  ", option.name, ' ', option.value);
        left.resize(22, ' ');
        appendText(out, left, option.help, '\n');
    }
    return out;
}

} // namespace practice
