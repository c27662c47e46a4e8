#include "config/readConfFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iostream>
#include <locale>
#include <sstream>
#include <string>
#include <system_error>
#include <variant>

#include "config/ConfigFile.h"

namespace {

/// The kind of the member is the kind of value that the keyword takes.
struct Keyword {
    std::string_view name;
    std::variant<std::string*, int*, double*> member;
};

// No keyword is the beginning of another, so the first that fits is the longest.
// clang-format off
constexpr std::array<Keyword, 21> KEYWORDS{{
    {"teamname",                  &ConfigFile::teamname},
    {"serverHost",                &ConfigFile::serverHost},
    {"serverPort",                &ConfigFile::serverPort},
    {"noSeeFraction",             &ConfigFile::noSeeFraction},
    {"firstHalfFraction",         &ConfigFile::firstHalfFraction},
    {"lastHalfFraction",          &ConfigFile::lastHalfFraction},
    {"angleWhenToTurn",           &ConfigFile::angleWhenToTurn},
    {"dribbleKickPower",          &ConfigFile::dribbleKickPower},
    {"stopBallPowerThr",          &ConfigFile::stopBallPowerThr},
    {"positioningTolerance",      &ConfigFile::positioningTolerance},
    {"dribbleAreaX",              &ConfigFile::dribbleAreaX},
    {"passAreaX",                 &ConfigFile::passAreaX},
    {"passEndSpeed",              &ConfigFile::passEndSpeed},
    {"passMinDelay",              &ConfigFile::passMinDelay},
    {"passScanDelay",             &ConfigFile::passScanDelay},
    {"walkPower",                 &ConfigFile::walkPower},
    {"stopBallAngleTolerance",    &ConfigFile::stopBallAngleTolerance},
    {"stopBallVelocityThreshold", &ConfigFile::stopBallVelocityThreshold},
    {"stopBallSectorFrom",        &ConfigFile::stopBallSectorFrom},
    {"stopBallSectorTo",          &ConfigFile::stopBallSectorTo},
    {"sayID",                     &ConfigFile::sayID},
}};
// clang-format on

enum class TokenKind { END, KEYWORD, COLON, LONG, DOUBLE, CHARS, ERROR };

std::string_view kindName(TokenKind kind) {
    static constexpr std::array<std::string_view, 7> NAMES{"END",    "KEYWORD", "COLON", "LONG",
                                                           "DOUBLE", "CHARS",   "ERROR"};
    return NAMES.at(static_cast<std::size_t>(kind));
}

struct Token {
    TokenKind kind = TokenKind::END;
    std::string_view text;            ///< as it stands in the file; empty at its end
    Keyword const* keyword = nullptr; ///< for KEYWORD only
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
template <class Test>
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

Keyword const* findKeyword(std::string_view text) {
    auto const* found = std::ranges::find_if(
        KEYWORDS, [text](Keyword const& keyword) { return text.starts_with(keyword.name); });
    return found == KEYWORDS.end() ? nullptr : found;
}

/// Cuts the text into tokens.
class Scanner {
public:
    Scanner(std::string_view text, bool trace) : rest(text), tracing(trace) {}

    Token next() {
        skipSpaceAndComments();
        Token const token = recognise();
        rest.remove_prefix(token.text.size());
        if (token.kind == TokenKind::ERROR) {
            std::cerr << "readConfFile"
                      << ": Tokenizer Error at <" << token.text << ">" << std::endl;
        } else if (tracing && token.kind != TokenKind::END) {
            std::cerr << "--accepting " << kindName(token.kind) << " (\"" << token.text << "\")\n";
        }
        return token;
    }

private:
    void skipSpaceAndComments() {
        rest.remove_prefix(span(rest, isSpace));
        while (rest.starts_with('#')) {
            rest.remove_prefix(span(rest, isComment));
            rest.remove_prefix(span(rest, isSpace));
        }
    }

    Token recognise() const {
        if (rest.empty()) return {TokenKind::END, rest};
        if (Keyword const* keyword = findKeyword(rest)) {
            return {TokenKind::KEYWORD, rest.substr(0, keyword->name.size()), keyword};
        }
        if (rest.front() == ':') return {TokenKind::COLON, rest.substr(0, 1)};
        if (auto const n = doubleLength(rest)) return {TokenKind::DOUBLE, rest.substr(0, n)};
        if (auto const n = longLength(rest)) return {TokenKind::LONG, rest.substr(0, n)};
        if (auto const n = charsLength(rest)) return {TokenKind::CHARS, rest.substr(0, n)};
        return {TokenKind::ERROR, rest.substr(0, 1)};
    }

    std::string_view rest;
    bool tracing;
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
        if (value.kind != TokenKind::CHARS) return SYNTAX;
        *member = value.text.substr(1, value.text.size() - 2);
        return NO_PROBLEM;
    }

    std::string_view operator()(int* member) const {
        if (value.kind != TokenKind::LONG) return SYNTAX;
        return isOutOfRange(value.text, member) ? TOO_LARGE : NO_PROBLEM;
    }

    std::string_view operator()(double* member) const {
        if (value.kind != TokenKind::LONG && value.kind != TokenKind::DOUBLE) return SYNTAX;
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
    Parser(Scanner const& source, bool trace) : scanner(source), tracing(trace) {}

    bool parse() {
        if (tracing) std::cerr << "Starting parse\n";
        Token token = next(State::KEYWORD);
        do {
            if (!parseConfigLine(token)) return false;
            token = next(State::KEYWORD);
        } while (token.kind != TokenKind::END);
        return true;
    }

private:
    enum class State { KEYWORD, COLON, VALUE };

    bool parseConfigLine(Token const& keyword) {
        if (keyword.kind != TokenKind::KEYWORD) return report(SYNTAX, keyword);
        Token const colon = next(State::COLON);
        if (colon.kind != TokenKind::COLON) return report(SYNTAX, colon);
        Token const value = next(State::VALUE);
        std::string_view const problem = std::visit(Assignment{value}, keyword.keyword->member);
        return problem.empty() || report(problem, value);
    }

    Token next(State state) {
        if (tracing) std::cerr << "Entering state " << static_cast<int>(state) << "\n";
        Token const token = scanner.next();
        if (tracing) {
            bool const atEnd = token.kind == TokenKind::END;
            std::cerr << "Reading a token: "
                      << (atEnd ? "Now at end of input." : kindName(token.kind)) << "\n";
        }
        return token;
    }

    /// Always false.
    static bool report(std::string_view problem, Token const& token) {
        std::cerr << "readConfFile"
                  << ": <" << problem << "> occured while parsing <" << token.text << ">"
                  << std::endl;
        return false;
    }

    Scanner scanner;
    bool tracing;
};

} // namespace

bool readConfFile(std::string_view text, bool scannerDebug, bool parserDebug) {
    return Parser(Scanner(text, scannerDebug), parserDebug).parse();
}
