#include "config/readConfFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iostream>
#include <locale>
#include <sstream>
#include <system_error>

#include "config/ConfigFile.h"

namespace {

// No keyword is the beginning of another, so the first that fits is the longest.
// clang-format off
constexpr std::array<ConfKeyword, 21> KEYWORDS{{
    {"teamname",                  &ConfigFile::teamname},
    {"serverHost",                &ConfigFile::serverHost},
    {"serverPort",                &ConfigFile::serverPort, 1, 65535},
    {"noSeeFraction",             &ConfigFile::noSeeFraction, 0, 1},
    {"firstHalfFraction",         &ConfigFile::firstHalfFraction, 0, 1},
    {"lastHalfFraction",          &ConfigFile::lastHalfFraction, 0, 1},
    {"angleWhenToTurn",           &ConfigFile::angleWhenToTurn, 0, 180},
    {"dribbleKickPower",          &ConfigFile::dribbleKickPower, 0, 100},
    {"stopBallPowerThr",          &ConfigFile::stopBallPowerThr, 0, 100},
    {"positioningTolerance",      &ConfigFile::positioningTolerance, 0, 105},
    {"dribbleAreaX",              &ConfigFile::dribbleAreaX, -52.5, 52.5},
    {"passAreaX",                 &ConfigFile::passAreaX, -52.5, 52.5},
    {"passEndSpeed",              &ConfigFile::passEndSpeed, 0, 3},
    {"passMinDelay",              &ConfigFile::passMinDelay, 0, 200},
    {"passScanDelay",             &ConfigFile::passScanDelay, 0, 200},
    {"walkPower",                 &ConfigFile::walkPower, 0, 100},
    {"stopBallAngleTolerance",    &ConfigFile::stopBallAngleTolerance, 0, 180},
    {"stopBallVelocityThreshold", &ConfigFile::stopBallVelocityThreshold, 0, 3},
    {"stopBallSectorFrom",        &ConfigFile::stopBallSectorFrom, -180, 180},
    {"stopBallSectorTo",          &ConfigFile::stopBallSectorTo, -180, 180},
    {"sayID",                     &ConfigFile::sayID},
}};
// clang-format on

enum class TokenKind { end, keyword, colon, whole, real, chars, error };

std::string_view kindName(TokenKind kind) {
    static constexpr std::array<std::string_view, 7> NAMES{"END",    "KEYWORD", "COLON", "LONG",
                                                           "DOUBLE", "CHARS",   "ERROR"};
    return NAMES.at(static_cast<std::size_t>(kind));
}

struct Token {
    TokenKind kind = TokenKind::end;
    std::string_view text;                ///< as it stands in the file; empty at its end
    ConfKeyword const* keyword = nullptr; ///< of a keyword only
};

// Characters are tested by value: the language of the file does not follow the locale.

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

constexpr bool isCharsCharacter(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == ' ' || c == '-' ||
           c == '_';
}

constexpr bool isComment(char c) {
    return c != '\n';
}

/// How many characters at the beginning of text satisfy the test.
template <typename Test>
std::size_t span(std::string_view text, Test test) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, test) - text.begin());
}

// The lengths of the tokens at the beginning of text; 0 when there is none of the kind.

std::size_t longLength(std::string_view text) {
    std::size_t const sign = text.starts_with('-') ? 1 : 0;
    std::size_t const digits = span(text.substr(sign), isDigit);
    return digits == 0 ? 0 : sign + digits;
}

std::size_t exponentLength(std::string_view text) {
    if (!text.starts_with('e') && !text.starts_with('E')) return 0;
    std::size_t const number = longLength(text.substr(1));
    return number == 0 ? 0 : 1 + number;
}

std::size_t doubleLength(std::string_view text) {
    std::size_t const whole = longLength(text);
    if (whole == 0 || !text.substr(whole).starts_with('.')) return 0;
    std::size_t const decimals = span(text.substr(whole + 1), isDigit);
    if (decimals == 0) return 0;
    std::size_t const mantissa = whole + 1 + decimals;
    return mantissa + exponentLength(text.substr(mantissa));
}

std::size_t charsLength(std::string_view text) {
    if (!text.starts_with('"')) return 0;
    std::size_t const inside = span(text.substr(1), isCharsCharacter);
    bool const closed = text.substr(1 + inside).starts_with('"');
    return inside > 0 && closed ? inside + 2 : 0;
}

ConfKeyword const* findKeyword(std::string_view text) {
    auto const* found = std::ranges::find_if(
        KEYWORDS, [text](ConfKeyword const& keyword) { return text.starts_with(keyword.name); });
    return found == KEYWORDS.end() ? nullptr : found;
}

/// Cuts the text into tokens.
class Scanner {
public:
    Scanner(std::string_view text, bool trace) : rest_(text), tracing_(trace) {}

    Token next() {
        skipSpaceAndComments();
        Token const token = recognise();
        rest_.remove_prefix(token.text.size());
        if (token.kind == TokenKind::error) {
            std::cerr << "readConfFile"
                      << ": Tokenizer Error at <" << token.text << ">" << std::endl;
        } else if (tracing_ && token.kind != TokenKind::end) {
            std::cerr << "--accepting " << kindName(token.kind) << " (\"" << token.text << "\")\n";
        }
        return token;
    }

private:
    void skipSpaceAndComments() {
        rest_.remove_prefix(span(rest_, isSpace));
        while (rest_.starts_with('#')) {
            rest_.remove_prefix(span(rest_, isComment));
            rest_.remove_prefix(span(rest_, isSpace));
        }
    }

    Token recognise() const {
        if (rest_.empty()) return {TokenKind::end, rest_};
        if (ConfKeyword const* keyword = findKeyword(rest_)) {
            return {TokenKind::keyword, rest_.substr(0, keyword->name.size()), keyword};
        }
        if (rest_.front() == ':') return {TokenKind::colon, rest_.substr(0, 1)};
        if (auto const n = doubleLength(rest_)) return {TokenKind::real, rest_.substr(0, n)};
        if (auto const n = longLength(rest_)) return {TokenKind::whole, rest_.substr(0, n)};
        if (auto const n = charsLength(rest_)) return {TokenKind::chars, rest_.substr(0, n)};
        return {TokenKind::error, rest_.substr(0, 1)};
    }

    std::string_view rest_;
    bool tracing_;
};

constexpr std::string_view NO_PROBLEM;
constexpr std::string_view SYNTAX = "parse error";
constexpr std::string_view TOO_LARGE = "number too large";

template <typename Number>
bool isOutOfRange(std::string_view text, Number* number) {
    return std::from_chars(text.data(), text.data() + text.size(), *number).ec ==
           std::errc::result_out_of_range;
}

/// Of a number beyond the range of double: too large, and not just too near to zero. A stream tells
/// the two apart.
bool isTooLarge(std::string_view text) {
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double number = 0.0;
    return !(stream >> number);
}

/// Puts the value of a token into the member of a keyword. Returns what is wrong with it.
struct Assignment {
    Token const& value;

    std::string_view operator()(std::string* member) const {
        if (value.kind != TokenKind::chars) return SYNTAX;
        *member = value.text.substr(1, value.text.size() - 2);
        return NO_PROBLEM;
    }

    std::string_view operator()(int* member) const {
        if (value.kind != TokenKind::whole) return SYNTAX;
        return isOutOfRange(value.text, member) ? TOO_LARGE : NO_PROBLEM;
    }

    std::string_view operator()(double* member) const {
        if (value.kind != TokenKind::whole && value.kind != TokenKind::real) return SYNTAX;
        if (isOutOfRange(value.text, member)) {
            if (isTooLarge(value.text)) return TOO_LARGE;
            *member = 0.0;
        }
        *member += 0.0; // "-0" is a whole number, and that has no negative zero
        return NO_PROBLEM;
    }
};

/// Reads the grammar token by token; what it expects next is its state.
class Parser {
public:
    /// The report may be missing.
    Parser(std::string_view text, bool traceScanner, bool traceParser, ConfReport* report)
        : scanner_(text, traceScanner), tracing_(traceParser), report_(report) {}

    bool parse() {
        if (tracing_) std::cerr << "Starting parse\n";
        Token token = next(ConfPlace::keyword);
        do {
            if (!parseConfigLine(token)) return false;
            token = next(ConfPlace::keyword);
        } while (token.kind != TokenKind::end);
        return true;
    }

private:
    bool parseConfigLine(Token const& keyword) {
        if (keyword.kind != TokenKind::keyword) return stop(SYNTAX, ConfPlace::keyword, keyword);
        if (report_ != nullptr) report_->settings.push_back({keyword.keyword, keyword.text, {}});
        Token const colon = next(ConfPlace::colon);
        if (colon.kind != TokenKind::colon) return stop(SYNTAX, ConfPlace::colon, colon);
        Token const value = next(ConfPlace::value);
        if (report_ != nullptr) report_->settings.back().value = value.text;
        std::string_view const problem = std::visit(Assignment{value}, keyword.keyword->member);
        return problem.empty() || stop(problem, ConfPlace::value, value);
    }

    Token next(ConfPlace place) {
        if (tracing_) std::cerr << "Entering state " << static_cast<int>(place) << "\n";
        Token const token = scanner_.next();
        if (tracing_) {
            bool const atEnd = token.kind == TokenKind::end;
            std::cerr << "Reading a token: "
                      << (atEnd ? "Now at end of input." : kindName(token.kind)) << "\n";
        }
        return token;
    }

    /// Always false.
    bool stop(std::string_view problem, ConfPlace place, Token const& token) {
        if (report_ != nullptr) report_->stop = {place, token.text};
        std::cerr << "readConfFile"
                  << ": <" << problem << "> occured while parsing <" << token.text << ">"
                  << std::endl;
        return false;
    }

    Scanner scanner_;
    bool tracing_;
    ConfReport* report_;
};

} // namespace

std::span<ConfKeyword const> confKeywords() {
    return KEYWORDS;
}

bool readConfFile(std::string_view text, bool scannerDebug, bool parserDebug, ConfReport* report) {
    return Parser(text, scannerDebug, parserDebug, report).parse();
}
