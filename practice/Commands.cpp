#include "practice/Commands.h"

#include <algorithm>
#include <array>

#include "practice/Scanner.h"

namespace practice {

namespace {

using namespace scan;

// clang-format off
constexpr std::string_view SAYABLE = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ().+-*/?<>_";
// clang-format on

std::optional<Command> readChangeView(std::string_view& s) {
    constexpr std::array<std::string_view, 3> WIDTHS{"narrow", "normal", "wide"};
    auto const width = std::ranges::find(WIDTHS, takeWord(s));
    std::string_view const quality = takeWord(s);
    bool const low = quality == "low";
    bool const known = width != WIDTHS.end() && (low || quality == "high" || quality.empty());
    if (!known || !take(s, ')')) return std::nullopt;
    return ChangeView{
        {static_cast<Width>(width - WIDTHS.begin()), low ? Quality::low : Quality::high}};
}

std::optional<Command> readSay(std::string_view& s) {
    std::string_view said;
    if (std::string_view t = s; take(t, '"')) {
        said = t.substr(0, t.find('"'));
        s = t.substr(said.size());
        if (!take(s, '"') || !take(s, ')')) return std::nullopt;
    } else { // without quotes everything up to the last parenthesis of the datagram is said
        if (s.size() < 2 || s.front() != ' ' || s.back() != ')') return std::nullopt;
        said = s.substr(1, s.size() - 2);
        s = {};
    }
    if (said.empty() || said.find_first_not_of(SAYABLE) != said.npos) return std::nullopt;
    return Say{said};
}

/// Skips everything up to the parenthesis that closes the command.
std::optional<Command> skipCommand(std::string_view& s) {
    int depth = 1;
    for (std::size_t i = 0; i < s.size(); ++i) {
        depth += s[i] == '(' ? 1 : s[i] == ')' ? -1 : 0;
        if (depth > 0) continue;
        s.remove_prefix(i + 1);
        return Request::nothing;
    }
    return std::nullopt;
}

/// Most commands are a word and up to two numbers.
struct NumericForm {
    std::string_view word;
    int numbers;
    Command (*make)(double a, double b);
};

// clang-format off
constexpr std::array<NumericForm, 11> NUMERIC_FORMS{{
    {"turn",       1, [](double a, double  ) -> Command { return Turn{a}; }},
    {"dash",       1, [](double a, double  ) -> Command { return Dash{a, 0.0}; }},
    {"dash",       2, [](double a, double b) -> Command { return Dash{a, b}; }},
    {"kick",       2, [](double a, double b) -> Command { return Kick{a, b}; }},
    {"catch",      1, [](double a, double  ) -> Command { return Catch{a}; }},
    {"move",       2, [](double a, double b) -> Command { return Move{{a, b}}; }},
    {"turn_neck",  1, [](double a, double  ) -> Command { return TurnNeck{a}; }},
    {"score",      0, [](double  , double  ) -> Command { return Request::score; }},
    {"sense_body", 0, [](double  , double  ) -> Command { return Request::senseBody; }},
    {"bye",        0, [](double  , double  ) -> Command { return Request::bye; }},
    {"done",       0, [](double  , double  ) -> Command { return Request::done; }},
}};

/// Commands of newer protocol versions: accepted without effect.
constexpr std::array<std::string_view, 10> IGNORED_WORDS{
    "tackle", "done", "clang", "ear", "attentionto", "pointto", "change_focus", "synch_see",
    "gaussian_see", "compression"};
// clang-format on

std::optional<Command> readNumeric(std::string_view& s, NumericForm const& form) {
    auto const a = form.numbers > 0 ? takeNumber(s) : 0.0;
    auto const b = a && form.numbers > 1 ? takeNumber(s) : 0.0;
    if (!a || !b || !take(s, ')')) return std::nullopt;
    return form.make(*a, *b);
}

std::optional<Command> readCommand(std::string_view& s) {
    if (!take(s, '(')) return std::nullopt;
    std::string_view const word = takeWord(s);
    if (word == "say") return readSay(s);
    if (word == "change_view") return readChangeView(s);
    for (NumericForm const& form : NUMERIC_FORMS) {
        if (form.word != word) continue;
        std::string_view rest = s;
        if (auto const command = readNumeric(rest, form)) {
            s = rest;
            return command;
        }
    }
    return std::ranges::count(IGNORED_WORDS, word) > 0 ? skipCommand(s) : std::nullopt;
}

bool takeOption(std::string_view& s, Introduction& introduction) {
    if (!take(s, '(')) return false;
    std::string_view const word = takeWord(s);
    if (word == "goalie") {
        introduction.goalie = true;
    } else if (auto const version = takeNumber(s); word == "version" && version) {
        introduction.version = *version;
    } else {
        return false;
    }
    return take(s, ')');
}

Introduction readInit(std::string_view s) {
    constexpr std::size_t LONGEST_NAME = 15;
    Introduction result;
    result.team = takeWord(s, TEAM_LETTERS);
    if (result.team.empty()) return {"(error illegal_teamname)"};
    bool const ended = s.find_first_of(" \t\r\n()") == 0;
    if (result.team.size() > LONGEST_NAME || !ended) {
        return {"(error illegal_teamname_or_too_long_teamname)"};
    }
    while (!take(s, ')')) {
        if (!takeOption(s, result)) return {ILLEGAL_FORM};
    }
    return result;
}

Introduction readReconnect(std::string_view s) {
    bool const named = !takeWord(s, TEAM_LETTERS).empty();
    if (!named || !takeNumber(s) || !take(s, ')')) return {ILLEGAL_FORM};
    return {.refusal = {}, .reconnect = true};
}

} // namespace

CommandReader::CommandReader(std::string_view datagram) : rest_(withoutEnding(datagram)) {}

std::optional<Command> CommandReader::next() {
    takeAll(rest_, BLANKS);
    if (rest_.empty() || failed_) return std::nullopt;
    auto const command = readCommand(rest_);
    failed_ = !command;
    return command;
}

Word wordOf(std::string_view datagram) {
    if (withoutEnding(datagram) == "(done)") return Word::done;
    if (datagram.find("done") == datagram.npos && datagram.find("bye") == datagram.npos) {
        return Word::commands;
    }
    CommandReader reader(datagram);
    while (auto const command = reader.next()) {
        auto const* const request = std::get_if<Request>(&*command);
        if (request == nullptr) continue;
        if (*request == Request::done || *request == Request::bye) return Word::last;
    }
    return Word::commands;
}

Introduction readIntroduction(std::string_view datagram) {
    constexpr std::string_view INIT = "(init ";
    constexpr std::string_view RECONNECT = "(reconnect ";
    std::string_view const s = withoutEnding(datagram);
    if (s.starts_with(INIT)) return readInit(s.substr(INIT.size()));
    if (s.starts_with(RECONNECT)) return readReconnect(s.substr(RECONNECT.size()));
    return {"(error unknown_command)"};
}

} // namespace practice
