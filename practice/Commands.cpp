#include "practice/Commands.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace practice {

namespace {

// clang-format off
constexpr std::string_view BLANKS = " \t\r\n";
constexpr std::string_view DIGITS = "0123456789";
constexpr std::string_view WORD_LETTERS = "abcdefghijklmnopqrstuvwxyz_";
constexpr std::string_view TEAM_LETTERS = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+,-./:;<=>?@[\\]^_";
constexpr std::string_view SAYABLE = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ().+-*/?<>_";
// clang-format on

/// Takes the letters that come next.
std::string_view takeAll(std::string_view& s, std::string_view letters) {
    std::string_view const taken = s.substr(0, s.find_first_not_of(letters));
    s.remove_prefix(taken.size());
    return taken;
}

/// Blanks before a character, word or number are free.
bool take(std::string_view& s, char c) {
    takeAll(s, BLANKS);
    if (!s.starts_with(c)) return false;
    s.remove_prefix(1);
    return true;
}

std::string_view takeWord(std::string_view& s, std::string_view letters = WORD_LETTERS) {
    takeAll(s, BLANKS);
    return takeAll(s, letters);
}

/// [+-]digits or [+-][digits].digits, either with an exponent: no "5.", "nan" or "0x1".
std::optional<double> takeNumber(std::string_view& s) {
    takeAll(s, BLANKS);
    if (s.starts_with('+') && !s.starts_with("+-")) s.remove_prefix(1); // from_chars takes none
    double value = 0.0;
    auto const [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    std::string_view const taken = s.substr(0, static_cast<std::size_t>(end - s.data()));
    std::size_t const dot = taken.find('.');
    bool const openDot = dot != taken.npos && taken.find_first_of(DIGITS, dot) != dot + 1;
    bool const foreign = taken.find_first_not_of("0123456789+-.eE") != taken.npos;
    if (error != std::errc{} || openDot || foreign) return std::nullopt;
    s.remove_prefix(taken.size());
    return value;
}

/// NUL and blanks at the end of a datagram mean nothing.
std::string_view withoutEnding(std::string_view datagram) {
    constexpr std::string_view ENDINGS(" \t\r\n\0", 5);
    return datagram.substr(0, datagram.find_last_not_of(ENDINGS) + 1);
}

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
constexpr std::array<NumericForm, 10> NUMERIC_FORMS{{
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

Introduction readIntroduction(std::string_view datagram) {
    constexpr std::string_view INIT = "(init ";
    constexpr std::string_view RECONNECT = "(reconnect ";
    std::string_view const s = withoutEnding(datagram);
    if (s.starts_with(INIT)) return readInit(s.substr(INIT.size()));
    if (s.starts_with(RECONNECT)) return readReconnect(s.substr(RECONNECT.size()));
    return {"(error unknown_command)"};
}

} // namespace practice
