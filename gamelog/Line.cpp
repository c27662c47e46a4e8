#include "gamelog/Line.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "gamelog/Forms.h"

namespace gamelog {

namespace {

constexpr std::string_view A_NUMBER = "a number";
constexpr std::string_view A_WORD = "a word";

/// Powers of ten that a double holds exactly.
constexpr std::array<double, 16> POWERS_OF_TEN = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr std::ptrdiff_t EXACT_DIGITS = 15; // what a double holds of a whole number
constexpr double LARGEST_NUMBER = 1e12;     // nothing on a pitch comes near

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

class LineReader {
public:
    template <typename T>
    using Ref = T&;

    explicit LineReader(std::string_view line)
        : begin_(line.data()), at_(begin_), end_(begin_ + line.size()) {}

    /// The reader takes what is there; version 0 makes no wish.
    static constexpr int version() { return 0; }

    LineFault fault() const { return fault_; }

    void literal(std::string_view text) {
        if (startsWith(text)) {
            at_ += text.size();
        } else {
            spacedLiteral(text);
        }
    }

    bool itemFollows(bool /*wanted*/) const { return anItemFollows(); }

    template <typename T>
    bool itemFollows(std::optional<T>& value) const {
        return settle(value, anItemFollows());
    }

    bool follows(bool /*wanted*/, std::string_view text) { return skip(text); }

    template <typename T>
    bool follows(std::optional<T>& value, std::string_view text) {
        return settle(value, skip(text));
    }

    void integer(int& value) {
        blank();
        char const* const start = at_;
        bool const negative = at_ != end_ && *at_ == '-';
        char const* digit = at_ + negative;
        int magnitude = 0;
        while (digit != end_ && isDigit(*digit) && digit - at_ < 9) {
            magnitude = 10 * magnitude + (*digit++ - '0');
        }
        if (digit == at_ + negative || (digit != end_ && isDigit(*digit))) {
            auto const read = std::from_chars(start, end_, value);
            if (read.ec != std::errc{}) return fail("a whole number");
            at_ = read.ptr;
            return;
        }
        value = negative ? -magnitude : magnitude;
        at_ = digit;
    }

    void position(double& metres) { number(metres); }
    void angle(double& degrees) { number(degrees); }

    /// The short way gives the same double as std::from_chars: both parts of the one division are
    /// exact.
    void number(double& value) {
        blank();
        bool const negative = at_ != end_ && *at_ == '-';
        char const* const first = at_ + negative;
        char const* digit = first;
        std::int64_t digits = 0;
        while (digit != end_ && isDigit(*digit) && digit - first < EXACT_DIGITS) {
            digits = 10 * digits + (*digit++ - '0');
        }
        std::ptrdiff_t decimals = 0;
        if (digit != first && digit != end_ && *digit == '.') {
            char const* const point = digit++;
            while (digit != end_ && isDigit(*digit) && digit - first < EXACT_DIGITS) {
                digits = 10 * digits + (*digit++ - '0');
            }
            decimals = digit - point - 1;
        }
        bool const ended = digit != end_ && (*digit == ' ' || *digit == ')');
        if (digit == first || !ended) return longNumber(value);
        double const magnitude =
            static_cast<double>(digits) / POWERS_OF_TEN[static_cast<std::size_t>(decimals)];
        if (magnitude > LARGEST_NUMBER) return longNumber(value);
        value = negative ? -magnitude : magnitude;
        at_ = digit;
    }

    void state(std::uint32_t& bits) {
        blank();
        int const base = skip("0x") ? 16 : 10;
        auto const read = std::from_chars(at_, end_, bits, base);
        if (read.ec != std::errc{}) return fail("the state of a player");
        at_ = read.ptr;
    }

    void word(std::string& text) { text = nextWord(); }

    void modeWord(PlayMode& mode) {
        blank();
        char const* const start = at_;
        auto const known = playModeOf(nextUnspacedWord());
        if (!known) {
            at_ = start;
            return fail("a play mode");
        }
        mode = *known;
    }

    void modeNumber(PlayMode& mode) {
        int number = 0;
        integer(number);
        if (number < 0 || number >= PLAY_MODES) return fail("the number of a play mode");
        mode = static_cast<PlayMode>(number);
    }

    void choice(bool& value, char ifTrue, char ifFalse) {
        blank();
        if (at_ == end_ || (*at_ != ifTrue && *at_ != ifFalse)) return fail("one of two letters");
        value = *at_++ == ifTrue;
    }

    void choice(Side& value, char left, char right) {
        bool isLeft = true;
        choice(isLeft, left, right);
        value = isLeft ? Side::left : Side::right;
    }

    /// The text may have quotes in it: it ends at the last one of the line.
    void quotedRest(std::string& text) {
        literal(" \"");
        std::string_view const rest(at_, static_cast<std::size_t>(end_ - at_));
        if (!rest.ends_with("\")")) return fail("a text that ends in \")");
        text = rest.substr(0, rest.size() - 2);
        at_ = end_;
    }

    void pairs(std::vector<Parameter>& parameters) {
        parameters.clear();
        while (skip("(")) {
            Parameter& pair = parameters.emplace_back();
            pair.name = nextUnspacedWord();
            blank();
            pair.value = parameterValue();
            literal(")");
            if (fault_) return;
        }
    }

    void lineEnd() {
        if (at_ != end_) fail("the end of the line");
    }

private:
    bool startsWith(std::string_view text) const {
        return static_cast<std::size_t>(end_ - at_) >= text.size() &&
               std::memcmp(at_, text.data(), text.size()) == 0;
    }

    bool skip(std::string_view text) {
        bool const there = startsWith(text);
        if (there) at_ += text.size();
        return there;
    }

    /// The same text with other blanks, as foreign writers may set them.
    void spacedLiteral(std::string_view text) {
        char const* at = at_;
        for (char const c : text) {
            if (c == ' ') continue;
            while (at != end_ && *at == ' ') {
                ++at;
            }
            if (at == end_ || *at != c) return fail(text.substr(text.find_first_not_of(' ')));
            ++at;
        }
        at_ = at;
    }

    void blank() {
        while (at_ != end_ && *at_ == ' ') {
            ++at_;
        }
    }

    bool anItemFollows() const {
        return end_ - at_ >= 2 && at_[0] == ' ' && at_[1] != '(' && at_[1] != ' ' && at_[1] != ')';
    }

    template <typename T>
    static bool settle(std::optional<T>& value, bool there) {
        if (there) {
            value.emplace();
        } else {
            value.reset();
        }
        return there;
    }

    void longNumber(double& value) {
        auto const read = std::from_chars(at_, end_, value);
        if (read.ec != std::errc{} || !(std::abs(value) <= LARGEST_NUMBER)) return fail(A_NUMBER);
        at_ = read.ptr;
    }

    std::string_view nextWord() {
        blank();
        return nextUnspacedWord();
    }

    std::string_view nextUnspacedWord() {
        char const* const start = at_;
        while (at_ != end_ && *at_ != ' ' && *at_ != ')' && *at_ != '(') {
            ++at_;
        }
        if (at_ == start) fail(A_WORD);
        return {start, static_cast<std::size_t>(at_ - start)};
    }

    /// A text in quotes may hold anything but a quote before a closing parenthesis.
    std::string_view parameterValue() {
        std::string_view const rest(at_, static_cast<std::size_t>(end_ - at_));
        bool const quoted = rest.starts_with('"');
        std::size_t const found = quoted ? rest.find("\")", 1) : rest.find(')');
        if (found == std::string_view::npos) {
            fail("the end of a parameter");
            return {};
        }
        std::size_t const size = quoted ? found + 1 : found;
        at_ += size;
        return rest.substr(0, size);
    }

    /// Keeps the first fault, and leaves nothing to read.
    void fail(std::string_view expected) {
        if (!fault_) fault_ = {static_cast<std::size_t>(at_ - begin_) + 1, expected};
        at_ = end_;
    }

    char const* begin_;
    char const* at_;
    char const* end_;
    LineFault fault_;
};

template <typename R>
R& held(Record& record) {
    if (R* const same = std::get_if<R>(&record)) return *same;
    return record.emplace<R>();
}

void keepWhole(std::string_view line, Record& record) {
    held<Unknown>(record).line = line;
}

/// Reads the line as an R if it has R's name; false if it has not.
template <typename R>
bool readAs(std::string_view name, std::string_view line, Record& record, LineFault& fault) {
    if (name != R::NAME) return false;
    R& target = held<R>(record);
    if constexpr (std::is_same_v<R, Show>) target = Show{};
    LineReader reader(line);
    forms::describe(reader, target);
    reader.lineEnd();
    fault = reader.fault();
    return true;
}

template <typename... Known>
LineFault readKnown(std::variant<Unknown, Known...>& record, std::string_view line) {
    std::string_view const name = line.substr(1, line.find_first_of(" ()", 1) - 1);
    LineFault fault;
    bool const known = (readAs<Known>(name, line, record, fault) || ...);
    // Servers have printed what they received with rubbish behind it: such a line spoils nothing.
    if (!known || (fault && name == Msg::NAME)) {
        keepWhole(line, record);
        return {};
    }
    return fault;
}

} // namespace

LineFault readLine(std::string_view line, Record& record) {
    if (line.size() > LONGEST_LINE) return {LONGEST_LINE, "the end of the line"};
    if (line.empty()) {
        keepWhole(line, record);
        return {};
    }
    if (line.front() != '(') return {1, "a record in parentheses"};
    return readKnown(record, line);
}

std::string describeFault(std::string_view line, LineFault const& fault) {
    constexpr std::size_t QUOTED = 24;
    std::string found(line.substr(std::min(fault.column - 1, line.size()), QUOTED));
    std::ranges::replace_if(
        found, [](char c) { return c < ' ' || c > '~'; }, '?');
    std::string out = "column " + std::to_string(fault.column) + ": expected ";
    out += fault.expected;
    return out + (found.empty() ? ", but the line ends" : ", found '" + found + "'");
}

} // namespace gamelog
