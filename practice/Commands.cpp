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
bool isWordLetter(char c) {
    return (c >= 'a' && c <= 'z') || c == '_';
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
    if (s.empty() || s.front() != c) return false;
    s.remove_prefix(1);
    return true;
}

template <typename Predicate>
std::string_view takeWhile(std::string_view& s, Predicate belongs) {
    const auto end = std::find_if_not(s.begin(), s.end(), belongs);
    const auto length = static_cast<std::size_t>(end - s.begin());
    const std::string_view taken = s.substr(0, length);
    s.remove_prefix(length);
    return taken;
}

std::string_view takeWord(std::string_view& s) {
    skipBlanks(s);
    return takeWhile(s, isWordLetter);
}

// [+-]digits or [+-][digits].digits, either with an exponent: no "5.", "nan" or "0x1".
std::optional<double> takeNumber(std::string_view& s) {
    skipBlanks(s);
    std::string_view t = s;
    if (!t.empty() && t.front() == '+') t.remove_prefix(1);
    std::string_view scan = t;
    if (t.size() == s.size() && !scan.empty() && scan.front() == '-') scan.remove_prefix(1);
    const bool whole = !takeWhile(scan, isDigit).empty();
    if (!scan.empty() && scan.front() == '.') {
        scan.remove_prefix(1);
        if (takeWhile(scan, isDigit).empty()) return std::nullopt;
    } else if (!whole) {
        return std::nullopt;
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(t.data(), t.data() + t.size(), value);
    if (error != std::errc{}) return std::nullopt;
    s = t.substr(static_cast<std::size_t>(end - t.data()));
    return value;
}

template <typename T>
std::optional<Command> readOne(std::string_view& s) {
    const auto value = takeNumber(s);
    if (!value || !take(s, ')')) return std::nullopt;
    return T{*value};
}

template <typename T>
std::optional<Command> readTwo(std::string_view& s) {
    const auto first = takeNumber(s);
    if (!first) return std::nullopt;
    const auto second = takeNumber(s);
    if (!second || !take(s, ')')) return std::nullopt;
    return T{*first, *second};
}

template <typename T>
std::optional<Command> readPlain(std::string_view& s) {
    if (!take(s, ')')) return std::nullopt;
    return T{};
}

// The newer form names a direction; only straight dashes exist here.
std::optional<Command> readDash(std::string_view& s) {
    std::string_view t = s;
    if (auto straight = readOne<Dash>(t)) {
        s = t;
        return straight;
    }
    const auto power = takeNumber(s);
    const auto dir = power ? takeNumber(s) : std::nullopt;
    if (!dir || !take(s, ')')) return std::nullopt;
    return *dir == 0.0 ? Command{Dash{*power}} : Command{Tackle{}};
}

std::optional<Command> readChangeView(std::string_view& s) {
    constexpr std::array<std::string_view, 3> widths{"narrow", "normal", "wide"};
    const auto width = std::find(widths.begin(), widths.end(), takeWord(s));
    const std::string_view quality = takeWord(s);
    const bool low = quality == "low";
    if (width == widths.end() || !(low || quality == "high" || quality.empty()))
        return std::nullopt;
    if (!take(s, ')')) return std::nullopt;
    return ChangeView{
        {static_cast<Width>(width - widths.begin()), low ? Quality::low : Quality::high}};
}

bool isSayable(char c) {
    constexpr std::string_view marks = " ().+-*/?<>_";
    return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           marks.find(c) != marks.npos;
}

std::optional<Command> readSay(std::string_view& s) {
    std::string_view said;
    if (std::string_view t = s; take(t, '"')) {
        const std::size_t end = t.find('"');
        if (end == t.npos) return std::nullopt;
        said = t.substr(0, end);
        s = t.substr(end + 1);
        if (!take(s, ')')) return std::nullopt;
    } else { // without quotes everything up to the last parenthesis of the datagram is said
        if (s.size() < 2 || s.front() != ' ' || s.back() != ')') return std::nullopt;
        said = s.substr(1, s.size() - 2);
        s = {};
    }
    if (said.empty() || !std::all_of(said.begin(), said.end(), isSayable)) return std::nullopt;
    return Say{said};
}

// Whatever follows, to the parenthesis that closes the command.
template <typename T>
std::optional<Command> readAnything(std::string_view& s) {
    int depth = 1;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '(') ++depth;
        if (s[i] == ')' && --depth == 0) {
            s.remove_prefix(i + 1);
            return T{};
        }
    }
    return std::nullopt;
}

struct Form {
    std::string_view word;
    std::optional<Command> (*read)(std::string_view&);
};

// clang-format off
constexpr std::array<Form, 21> forms{{
    {"turn",         readOne<Turn>},
    {"dash",         readDash},
    {"kick",         readTwo<Kick>},
    {"catch",        readOne<Catch>},
    {"move",         readTwo<Move>},
    {"turn_neck",    readOne<TurnNeck>},
    {"change_view",  readChangeView},
    {"say",          readSay},
    {"score",        readPlain<AskScore>},
    {"sense_body",   readPlain<AskSenseBody>},
    {"bye",          readPlain<Bye>},
    {"compression",  readAnything<AskCompression>},
    {"tackle",       readAnything<Tackle>},
    {"done",         readPlain<Unsupported>},
    {"clang",        readAnything<Unsupported>},
    {"ear",          readAnything<Unsupported>},
    {"attentionto",  readAnything<Unsupported>},
    {"pointto",      readAnything<Unsupported>},
    {"change_focus", readAnything<Unsupported>},
    {"synch_see",    readPlain<Unsupported>},
    {"gaussian_see", readPlain<Unsupported>},
}};
// clang-format on

bool isTeamLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '+' && c <= '_');
}

constexpr std::size_t longestTeamName = 15;

bool takeOption(std::string_view& s, JoinRequest& request) {
    if (!take(s, '(')) return false;
    const std::string_view word = takeWord(s);
    if (word == "goalie") {
        request.goalie = true;
    } else if (word == "version") {
        const auto version = takeNumber(s);
        if (!version) return false;
        request.version = *version;
    } else {
        return false;
    }
    return take(s, ')');
}

std::variant<JoinRequest, ReconnectRequest, Refusal> readInit(std::string_view s) {
    skipBlanks(s);
    JoinRequest request;
    request.team = takeWhile(s, isTeamLetter);
    if (request.team.empty()) return Refusal{"(error illegal_teamname)"};
    const bool ended = !s.empty() && (s.front() == '(' || s.front() == ')' ||
                                      blanks.find(s.front()) != blanks.npos);
    if (request.team.size() > longestTeamName || !ended) {
        return Refusal{"(error illegal_teamname_or_too_long_teamname)"};
    }
    while (!take(s, ')')) {
        if (!takeOption(s, request)) return Refusal{illegalForm};
    }
    return request;
}

std::variant<JoinRequest, ReconnectRequest, Refusal> readReconnect(std::string_view s) {
    skipBlanks(s);
    const bool named = !takeWhile(s, isTeamLetter).empty();
    if (!named || !takeNumber(s) || !take(s, ')')) return Refusal{illegalForm};
    return ReconnectRequest{};
}

} // namespace

CommandReader::CommandReader(std::string_view datagram) : rest_(withoutEnding(datagram)) {}

std::optional<Command> CommandReader::next() {
    skipBlanks(rest_);
    if (rest_.empty() || failed_) return std::nullopt;
    auto command = read();
    failed_ = !command;
    return command;
}

std::optional<Command> CommandReader::read() {
    if (!take(rest_, '(')) return std::nullopt;
    const std::string_view word = takeWord(rest_);
    const auto form =
        std::find_if(forms.begin(), forms.end(), [word](const Form& f) { return f.word == word; });
    return form == forms.end() ? std::nullopt : form->read(rest_);
}

std::variant<JoinRequest, ReconnectRequest, Refusal> readFirstDatagram(std::string_view datagram) {
    constexpr std::string_view init = "(init ";
    constexpr std::string_view reconnect = "(reconnect ";
    const std::string_view s = withoutEnding(datagram);
    if (s.starts_with(init)) return readInit(s.substr(init.size()));
    if (s.starts_with(reconnect)) return readReconnect(s.substr(reconnect.size()));
    return Refusal{"(error unknown_command)"};
}

} // namespace practice
