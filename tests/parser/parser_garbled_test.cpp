#include <cmath>
#include <regex>
#include <string>

#include "tests/parser/Messages.h"

namespace {

using Garbled = Listening;

TEST_F(Garbled, NoPrefixOfAMessageIsHeardAndOnlyBlanksMayFollow) {
    Dice dice(3);
    for (std::string const& message : samples(dice)) {
        for (std::size_t length = 0; length < message.size(); ++length) {
            ASSERT_FALSE(hears(message.substr(0, length))) << message.substr(0, length);
        }
        EXPECT_TRUE(hears(message + " \r\n\t" + std::string(1, '\0'))) << message;
        expectRefused(message, {")", "(", " x", "(see 1)", "\"", "\xff"}, "");
    }
}

TEST_F(Garbled, NumbersAreReadAsTheLibraryReadsThem) {
    static std::regex const form(R"(-?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?)");
    static constexpr std::string_view LIKELY = "0123456789012345678900..--eE+x_,\"";
    Dice dice(4);
    int count = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int length = 1 + dice.upTo(5); length > 0; --length) {
            text += dice.of(LIKELY);
        }
        float const value = std::strtof(text.c_str(), nullptr);
        // Too large a number becomes infinite, too small a one zero: both are refused.
        bool const good = std::regex_match(text, form) && std::isfinite(value) &&
                          (value != 0) == (std::strtold(text.c_str(), nullptr) != 0);
        count += good ? 1 : 0;
        std::string const see = row("see", 1) + row("ball", 1, 2, value, 0);
        ASSERT_EQ(good ? see : "dropped", heard("(see 1 ((b) 1 2 " + text + " 0))")) << text;
        bool const whole = good && value >= 0 && value < 2147483648.F && value == std::trunc(value);
        ASSERT_EQ(whole, hears("(score 1 0 " + text + ")")) << text;
        ASSERT_EQ(whole ? std::stod(text) : score.last.theirs, score.last.theirs) << text;
    }
    EXPECT_LT(2000, count);
    expectRefused("(score ", {"nan", "inf", "-inf", "0x10", "infinity", "1e400", "-1", ""},
                  " 0 0)");
}

TEST_F(Garbled, OversizedNestedUnknownAndSilentKinds) {
    std::string const blanks(RCC_String::CAPACITY - 7, ' ');
    EXPECT_TRUE(hears("(see 1)" + blanks));
    EXPECT_FALSE(hears("(see 1)" + blanks + " "));

    for (std::size_t const depth : {8U, 1000U}) {
        std::string const nested = std::string(depth, '(') + "x" + std::string(depth, ')');
        EXPECT_EQ(depth == 8, hears("(fullstate 1 " + nested + ")"));
    }
    expectRefused("",
                  {"", " ", "()", "see", "(seen 1)", "(SEE 1)", "(ok move)", "(warning x)",
                   "(think 1)", "(think", "(unheard_of 1 2)", "((see 1))", "(error)x"},
                  "");
}

/// Rows that a see or a sense_body may become, whatever it was.
std::regex sensible() {
    std::string const real = R"(-?\d+(\.\d+)?(e[-+]\d+)? )";
    std::string const turn = R"(-?(360|([12]?\d?\d|3[0-5]\d)(\.\d+)?(e-\d+)?) )";
    std::string const seen =
        "(inf " + turn + "inf inf |(-0|[^-]\\S*) " + turn + "(inf inf |" + real + real + "))";
    std::string const named = "(ally|enemy|neut) .{0,31} (\\d|10|11) [01] " + seen;
    return std::regex("see \\d+ ((ball |line [2-5] |(flag|goal) [1-9]\\d* )" + seen + "|" + named +
                      "(inf inf |" + turn + turn + "))*|body \\d+ [01] [0-2] " + real + real +
                      real + turn + turn + "(\\d+ ){8}");
}

std::string mutate(std::string message, Dice& dice) {
    static constexpr std::string_view LIKELY = "()\" -.0159ebfglprt_\n";
    auto const upTo = [&](std::size_t most) {
        return static_cast<std::size_t>(dice.upTo(int(most)));
    };
    for (int changes = 1 + dice.upTo(2); changes > 0 && !message.empty(); --changes) {
        char const byte = dice.oneIn(2) ? dice.of(LIKELY) : static_cast<char>(dice.upTo(255));
        message.replace(upTo(message.size() - 1), upTo(3),
                        dice.oneIn(4) ? message.substr(upTo(message.size() - 1), upTo(39))
                                      : std::string(upTo(1), byte));
    }
    return message;
}

TEST_F(Garbled, MutatedMessagesMakeSenseOrLeaveNoTrace) {
    std::regex const sense = sensible();
    Dice dice(7);
    std::string see = heard("(see 1)");
    int dropped = 0;
    constexpr int ROUNDS = 2000;
    for (int round = 0; round < ROUNDS; ++round) {
        for (std::string const& message : samples(dice)) {
            std::string const garbled = mutate(message, dice);
            std::string const now = heard(garbled);
            dropped += now == "dropped" ? 1 : 0;
            if (now.starts_with("see ")) see = now;
            if (!now.starts_with("see ") && !now.starts_with("body ")) continue;
            ASSERT_TRUE(std::regex_match(now, sense)) << garbled << '\n' << now;
        }
        ASSERT_EQ(see, Row::of(visual.last));
    }
    EXPECT_LT(4 * ROUNDS, dropped);
}

} // namespace
