#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iostream>
#include <tuple>
#include <vector>

#include "config/ConfigFile.h"
#include "config/readConfFile.h"
#include "tests/geometry/CapturedStream.h"

namespace {

using F = ConfigFile;

/// All settings, to be compared and put back as one.
auto settings() {
    return std::tie(
        F::teamname, F::serverHost, F::serverPort, F::noSeeFraction, F::firstHalfFraction,
        F::lastHalfFraction, F::angleWhenToTurn, F::dribbleKickPower, F::stopBallPowerThr,
        F::positioningTolerance, F::dribbleAreaX, F::passAreaX, F::passEndSpeed, F::passMinDelay,
        F::passScanDelay, F::walkPower, F::stopBallAngleTolerance, F::stopBallVelocityThreshold,
        F::stopBallSectorFrom, F::stopBallSectorTo, F::sayID);
}

/// What the members hold before anything is read.
auto const DEFAULTS = std::apply([](auto const&... s) { return std::tuple(s...); }, settings());

class ConfigFileTest : public testing::Test {
protected:
    ~ConfigFileTest() override { settings() = DEFAULTS; }

    bool parse(std::string const& text) {
        CapturedStream const err(std::cerr);
        bool const ok = readConfFile(text, false, false);
        messages = err.text();
        return ok;
    }

    std::string messages;
};

TEST_F(ConfigFileTest, SampleFileNamesEverySettingAtItsDefault) {
    settings() = std::decay_t<decltype(DEFAULTS)>(); // whatever the sample leaves out shows
    CapturedStream const trace(std::cerr);
    EXPECT_TRUE(F::parseConfigFile(SAMPLE_FILE, true, false));
    EXPECT_EQ(settings(), DEFAULTS);
    EXPECT_TRUE(parse("dribbleAreaX:11 stopBallPowerThr:12")); // of the same default
    EXPECT_EQ(F::dribbleAreaX, 11);
    EXPECT_EQ(std::ranges::count(trace.text(), '\n'), 3 * 21); // a line a token

    CapturedStream const silence(std::cerr);
    EXPECT_FALSE(F::parseConfigFile("no_such_file", true, true));
    EXPECT_FALSE(F::parseConfigFile(".", true, true)); // a folder
    EXPECT_EQ(silence.text(), "");
}

TEST_F(ConfigFileTest, NumbersTextsCommentsAndRepetition) {
    std::pair<char const*, double> const good[] = {
        {"40", 40},      {"40.0", 40},    {"-90.5# aside", -90.5}, {"1.5e-3", 0.0015},
        {"007", 7},      {"1.5E3", 1500}, {"-0.25e2", -25},        {"99999999999999999999", 1e20},
        {"1.0e-999", 0},
    };
    for (auto const& [text, value] : good) {
        EXPECT_TRUE(parse(std::string("walkPower \t:\n ") + text)) << text;
        EXPECT_EQ(F::walkPower, value) << text;
    }
    EXPECT_TRUE(parse("# a comment\n\nteamname: \"Blue_Team-1\"#\nserverHost:\"my host\"\n"
                      "passAreaX: -0 passMinDelay: 1\npassMinDelay: 2 # no line end"));
    EXPECT_FALSE(std::signbit(F::passAreaX));
    EXPECT_EQ(F::teamname + F::serverHost, "Blue_Team-1my host");
    EXPECT_EQ(F::passMinDelay, 2);
}

TEST_F(ConfigFileTest, ErrorsAreReportedWithTheTokenAndEndTheReading) {
    std::pair<std::string, std::vector<char const*>> const bad[] = {
        {"", {"", " \n# only a comment", "walkPower"}},
        {"4", {"walkPower 4", "sayID:\"a\" 4", "sayID: 4"}},
        {"walkPower", {"walkPower: walkPower"}},
        {"\"fast\"", {"walkPower: \"fast\""}},
        {"6100.0", {"6100.0", "serverPort: 6100.0"}},
        // Unknown characters, which the scanner reports too.
        {"x", {"teamnamex: \"a\"", "xteamname: \"a\""}},
        {"W", {"WalkPower: 4"}},
        {"\"", {"sayID: \"\"", "sayID: \"open", "sayID: \"two\nlines\"", "sayID: \"1.0\""}},
        {"+", {"walkPower: +4"}},
        {"-", {"walkPower: -"}},
        {".", {"walkPower: .5", "walkPower: 5."}},
        {"e", {"walkPower: 1e3", "walkPower: 1.5e+3", "walkPower: 1.5e-"}},
        {"\r", {"walkPower: 4\r\n"}},
    };
    for (auto const& [token, texts] : bad) {
        bool const unknown = token.size() == 1 && token != "4";
        std::string const scanners = "readConfFile: Tokenizer Error at <" + token + ">\n";
        std::string const parsers =
            "readConfFile: <parse error> occured while parsing <" + token + ">\n";
        for (char const* const text : texts) {
            EXPECT_FALSE(parse(text)) << text;
            EXPECT_EQ(messages, unknown ? scanners + parsers : parsers);
        }
    }
    for (char const* const setting : {"serverPort: 99999999999", "walkPower: 1.0e999"}) {
        EXPECT_FALSE(parse(setting));
        EXPECT_NE(messages.find("<number too large> occured"), messages.npos) << messages;
    }
    EXPECT_FALSE(parse("passAreaX: 1 walkPower: 5. passEndSpeed: 9"));
    EXPECT_TRUE(F::passAreaX == 1 && F::walkPower == 5 && F::passEndSpeed == 1.2);
}

} // namespace
