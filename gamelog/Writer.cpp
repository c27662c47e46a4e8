#include "gamelog/Writer.h"

#include <charconv>
#include <cmath>

#include "gamelog/Forms.h"

namespace gamelog {

namespace {

constexpr double POSITION_STEP = 0.0001; // metres
constexpr double ANGLE_STEP = 0.001;     // degrees
constexpr int SIGNIFICANT_DIGITS = 6;

class LineWriter {
public:
    template <typename T>
    using Ref = T const&;

    LineWriter(std::string& target, int version) : out_(target), version_(version) {}

    int version() const { return version_; }

    void literal(std::string_view text) { out_ += text; }

    template <typename Wish>
    bool itemFollows(Wish const& wanted) const {
        return static_cast<bool>(wanted);
    }

    template <typename Wish>
    bool follows(Wish const& wanted, std::string_view text) {
        if (wanted) literal(text);
        return static_cast<bool>(wanted);
    }

    void integer(int value) { print(value); }
    void position(double metres) { number(rounded(metres, POSITION_STEP)); }
    void angle(double degrees) { number(rounded(degrees, ANGLE_STEP)); }

    /// Whole numbers, the most frequent ones, print faster as integers.
    void number(double value) {
        constexpr double WHOLE_LIMIT = 1e6; // from here on exponents appear
        auto const whole = static_cast<int>(std::abs(value) < WHOLE_LIMIT ? value : 0.5);
        if (whole == value && (whole != 0 || !std::signbit(value))) {
            print(whole);
        } else {
            print(value, std::chars_format::general, SIGNIFICANT_DIGITS);
        }
    }

    void state(std::uint32_t bits) {
        if (bits == 0) return literal(" 0");
        char digits[16];
        out_ += " 0x";
        out_.append(digits, std::to_chars(digits, digits + sizeof digits, bits, 16).ptr);
    }

    void word(std::string_view text) {
        out_ += ' ';
        out_ += text;
    }
    void modeWord(PlayMode mode) { word(wordOf(mode)); }
    void modeNumber(PlayMode mode) { integer(static_cast<int>(mode)); }
    void choice(bool value, char ifTrue, char ifFalse) {
        out_ += ' ';
        out_ += value ? ifTrue : ifFalse;
    }
    void choice(Side value, char left, char right) { choice(value == Side::left, left, right); }

    /// Line ends become blanks: no record goes on in the next line.
    void quotedRest(std::string_view text) {
        out_ += " \"";
        for (char const c : text) {
            out_ += c == '\n' ? ' ' : c;
        }
        out_ += "\")";
    }

    void pairs(std::vector<Parameter> const& parameters) {
        for (auto const& [name, value] : parameters) {
            out_ += '(';
            out_ += name;
            word(value);
            out_ += ')';
        }
    }

private:
    static double rounded(double value, double step) { return std::rint(value / step) * step; }

    template <typename Number, typename... Format>
    void print(Number value, Format... format) {
        char digits[32];
        digits[0] = ' ';
        out_.append(digits,
                    std::to_chars(digits + 1, digits + sizeof digits, value, format...).ptr);
    }

    std::string& out_;
    int version_;
};

template <typename R>
void appendForm(std::string& out, R const& record, int version = USUAL_VERSION) {
    LineWriter writer(out, version);
    forms::describe(writer, record);
}

} // namespace

std::string header(int version) {
    return "ULG" + std::to_string(version) + "\n";
}

void append(std::string& out, ServerParam const& record) {
    appendForm(out, record);
}
void append(std::string& out, PlayerParam const& record) {
    appendForm(out, record);
}
void append(std::string& out, PlayerType const& record) {
    appendForm(out, record);
}
void append(std::string& out, PlayModeChange const& record) {
    appendForm(out, record);
}
void append(std::string& out, Team const& record) {
    appendForm(out, record);
}
void append(std::string& out, Msg const& record) {
    appendForm(out, record);
}
void append(std::string& out, Unknown const& record) {
    out += record.line;
}
void append(std::string& out, Show const& record, int version) {
    appendForm(out, record, version);
}

void append(std::string& out, Record const& record, int version) {
    std::visit(
        [&]<typename R>(R const& known) {
            if constexpr (std::is_same_v<R, Show>) {
                append(out, known, version);
            } else {
                append(out, known);
            }
        },
        record);
}

} // namespace gamelog
