#include "practice/Commands.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace practice {

namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isSmallLetter(char c) {
    return c >= 'a' && c <= 'z';
}
bool isWordLetter(char c) {
    return isSmallLetter(c) || c == '_';
}
bool isTeamLetter(char c) {
    return isSmallLetter(c) || (c >= '+' && c <= '_');
}
bool isSayable(char c) {
    constexpr std::string_view marks = " ().+-*/?<>_";
    return isDigit(c) || isSmallLetter(c) || (c >= 'A' && c <= 'Z') || marks.find(c) != marks.npos;
}

std::string_view withoutEnding(std::string_view s) {
    while (!s.empty() && (s.back() == '\0' || blanks.find(s.back()) != blanks.npos))
        s.remove_suffix(1);
    return s;
}

void skipBlanks(std::string_view& s) {
    s.remove_prefix(std::min(s.find_first_not_of(blanks), s.size()));
}

// Takes the character, after any blanks, if it comes next.
bool take(std::string_view& s, char c) {
    skipBlanks(s);
    if (!s.starts_with(c)) return false;
    s.remove_prefix(1);
    return true;
}

std::string_view takeWhile(std::string_view& s, bool (*belongs)(char)) {
    skipBlanks(s);
    const auto length = std::find_if_not(s.begin(), s.end(), belongs) - s.begin();
    const std::string_view taken = s.substr(0, static_cast<std::size_t>(length));
    s.remove_prefix(taken.size());
    return taken;
}

// [+-]digits or [+-][digits].digits, either with an exponent: no "5.", "nan" or "0x1".
std::optional<double> takeNumber(std::string_view& s) {
    skipBlanks(s);
    if (s.starts_with('+') && !s.starts_with("+-")) s.remove_prefix(1); // from_chars takes none
    double value = 0.0;
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    const std::string_view taken = s.substr(0, static_cast<std::size_t>(end - s.data()));
    const std::size_t dot = taken.find('.');
    const bool openDot = dot != taken.npos && (dot + 1 == taken.size() || !isDigit(taken[dot + 1]));
    const bool foreign = taken.find_first_not_of("0123456789+-.eE") != taken.npos;
    if (error != std::errc{} || openDot || foreign) return std::nullopt;
    s.remove_prefix(taken.size());
    return value;
}

std::optional<Command> readChangeView(std::string_view& s) {
    constexpr std::array<std::string_view, 3> widths{"narrow", "normal", "wide"};
    const auto width = std::find(widths.begin(), widths.end(), takeWhile(s, isWordLetter));
    const std::string_view quality = takeWhile(s, isWordLetter);
    const bool low = quality == "low";
    const bool known = width != widths.end() && (low || quality == "high" || quality.empty());
    if (!known || !take(s, ')')) return std::nullopt;
    return ChangeView{
        {static_cast<Width>(width - widths.begin()), low ? Quality::low : Quality::high}};
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
    if (said.empty() || !std::all_of(said.begin(), said.end(), isSayable)) return std::nullopt;
    return Say{said};
}

// Whatever follows, to the parenthesis that closes the command.
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

// Most commands are a word and up to two numbers.
struct NumericForm {
    std::string_view word;
    int numbers;
    Command (*make)(double a, double b);
};

// clang-format off
constexpr std::array<NumericForm, 9> numericForms{{
    {"turn",       1, [](double a, double  ) -> Command { return Turn{a}; }},
    {"dash",       1, [](double a, double  ) -> Command { return Dash{a}; }},
    {"kick",       2, [](double a, double b) -> Command { return Kick{a, b}; }},
    {"catch",      1, [](double a, double  ) -> Command { return Catch{a}; }},
    {"move",       2, [](double a, double b) -> Command { return Move{{a, b}}; }},
    {"turn_neck",  1, [](double a, double  ) -> Command { return TurnNeck{a}; }},
    {"score",      0, [](double  , double  ) -> Command { return Request::score; }},
    {"sense_body", 0, [](double  , double  ) -> Command { return Request::senseBody; }},
    {"bye",        0, [](double  , double  ) -> Command { return Request::bye; }},
}};

// Players of newer versions know them; nobody needs them here.
constexpr std::array<std::string_view, 10> ignoredWords{
    "tackle", "done", "clang", "ear", "attentionto", "pointto", "change_focus", "synch_see",
    "gaussian_see", "compression"};
// clang-format on

std::optional<Command> readNumeric(std::string_view& s, const NumericForm& form) {
    std::array<double, 2> values{};
    for (int i = 0; i < form.numbers; ++i) {
        const auto value = takeNumber(s);
        if (!value) return std::nullopt;
        values[i] = *value;
    }
    if (!take(s, ')')) return std::nullopt;
    return form.make(values[0], values[1]);
}

std::optional<Command> readCommand(std::string_view& s) {
    if (!take(s, '(')) return std::nullopt;
    const std::string_view word = takeWhile(s, isWordLetter);
    if (word == "say") return readSay(s);
    if (word == "change_view") return readChangeView(s);
    for (const NumericForm& form : numericForms)
        if (form.word == word) return readNumeric(s, form);
    const bool ignored =
        std::find(ignoredWords.begin(), ignoredWords.end(), word) != ignoredWords.end();
    return ignored ? skipCommand(s) : std::nullopt;
}

bool takeOption(std::string_view& s, Introduction& introduction) {
    if (!take(s, '(')) return false;
    const std::string_view word = takeWhile(s, isWordLetter);
    if (word == "goalie") {
        introduction.goalie = true;
    } else if (const auto version = takeNumber(s); word == "version" && version) {
        introduction.version = *version;
    } else {
        return false;
    }
    return take(s, ')');
}

Introduction readInit(std::string_view s) {
    constexpr std::size_t longestName = 15;
    Introduction result;
    result.team = takeWhile(s, isTeamLetter);
    if (result.team.empty()) return {"(error illegal_teamname)"};
    const bool ended = !s.empty() && (blanks.find(s.front()) != blanks.npos || s.front() == '(' ||
                                      s.front() == ')');
    if (result.team.size() > longestName || !ended)
        return {"(error illegal_teamname_or_too_long_teamname)"};
    while (!take(s, ')'))
        if (!takeOption(s, result)) return {illegalForm};
    return result;
}

Introduction readReconnect(std::string_view s) {
    const bool named = !takeWhile(s, isTeamLetter).empty();
    if (!named || !takeNumber(s) || !take(s, ')')) return {illegalForm};
    return {.refusal = {}, .reconnect = true};
}

} // namespace

CommandReader::CommandReader(std::string_view datagram) : rest_(withoutEnding(datagram)) {}

std::optional<Command> CommandReader::next() {
    skipBlanks(rest_);
    if (rest_.empty() || failed_) return std::nullopt;
    const auto command = readCommand(rest_);
    failed_ = !command;
    return command;
}

Introduction readIntroduction(std::string_view datagram) {
    constexpr std::string_view init = "(init ";
    constexpr std::string_view reconnect = "(reconnect ";
    const std::string_view s = withoutEnding(datagram);
    if (s.starts_with(init)) return readInit(s.substr(init.size()));
    if (s.starts_with(reconnect)) return readReconnect(s.substr(reconnect.size()));
    return {"(error unknown_command)"};
}

} // namespace practice
