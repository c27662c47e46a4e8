#include "config/ConfigFile.h"
#include "config/readConfFile.h"
#include "tests/geometry/CapturedStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <tuple>
#include <vector>

namespace {

/// All settings, to be compared and put back as one.
auto settings() {
    return std::tie(
        ConfigFile::teamname, ConfigFile::serverHost, ConfigFile::serverPort,
        ConfigFile::noSeeFraction, ConfigFile::firstHalfFraction, ConfigFile::lastHalfFraction,
        ConfigFile::angleWhenToTurn, ConfigFile::dribbleKickPower, ConfigFile::stopBallPowerThr,
        ConfigFile::positioningTolerance, ConfigFile::dribbleAreaX, ConfigFile::passAreaX,
        ConfigFile::passEndSpeed, ConfigFile::passMinDelay, ConfigFile::passScanDelay,
        ConfigFile::walkPower, ConfigFile::stopBallAngleTolerance,
        ConfigFile::stopBallVelocityThreshold, ConfigFile::stopBallSectorFrom,
        ConfigFile::stopBallSectorTo, ConfigFile::sayID);
}

using Settings = std::tuple<std::string, std::string, int, double, double, double, double, double,
                            double, double, double, double, double, double, double, double, double,
                            double, double, double, std::string>;

/// What the members hold before anything is read.
Settings const DEFAULTS = settings();

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

std::string syntaxError(std::string const& token) {
    return "readConfFile: <parse error> occured while parsing <" + token + ">\n";
}

TEST_F(ConfigFileTest, SampleFileNamesEverySettingAtItsDefault) {
    settings() = Settings(); // whatever the sample leaves out shows
    EXPECT_TRUE(ConfigFile::parseConfigFile(SAMPLE_FILE, false, false));
    EXPECT_EQ(settings(), DEFAULTS);
}

TEST_F(ConfigFileTest, EveryKeywordSetsItsOwnMember) {
    EXPECT_TRUE(parse("teamname:\"a\" serverHost:\"b\" serverPort:3 noSeeFraction:4\n"
                      "firstHalfFraction:5 lastHalfFraction:6 angleWhenToTurn:7\n"
                      "dribbleKickPower:8 stopBallPowerThr:9 positioningTolerance:10\n"
                      "dribbleAreaX:11 passAreaX:12 passEndSpeed:13 passMinDelay:14\n"
                      "passScanDelay:15 walkPower:16 stopBallAngleTolerance:17\n"
                      "stopBallVelocityThreshold:18 stopBallSectorFrom:19\n"
                      "stopBallSectorTo:20 sayID:\"u\""));
    EXPECT_EQ(settings(), Settings("a", "b", 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17,
                                   18, 19, 20, "u"));
    EXPECT_EQ(messages, "");
}

TEST_F(ConfigFileTest, FilesThatCannotBeReadFailInSilence) {
    CapturedStream const err(std::cerr);
    for (std::string const& path : {testing::TempDir() + "no_such_file", testing::TempDir()}) {
        EXPECT_FALSE(ConfigFile::parseConfigFile(path.c_str(), true, true)) << path;
    }
    EXPECT_EQ(err.text(), "");
}

TEST_F(ConfigFileTest, Numbers) {
    std::pair<char const*, double> const good[] = {
        {"40", 40}, {"40.0", 40},    {"-90.5# aside", -90.5}, {"1.5e-3", 0.0015},
        {"007", 7}, {"1.5E3", 1500}, {"-0.25e2", -25},        {"99999999999999999999", 1e20},
    };
    for (auto const& [text, value] : good) {
        EXPECT_TRUE(parse(std::string("walkPower \t:\n ") + text)) << text;
        EXPECT_EQ(ConfigFile::walkPower, value) << text;
    }
    EXPECT_TRUE(parse("passAreaX: -0"));
    EXPECT_FALSE(std::signbit(ConfigFile::passAreaX));
}

TEST_F(ConfigFileTest, TextsCommentsAndRepetition) {
    EXPECT_TRUE(parse("# a comment\n\nteamname: \"Blue_Team-1\"#\nserverHost:\"my host\"\n"
                      "passMinDelay: 1\npassMinDelay: 2 # no line end"));
    EXPECT_EQ(ConfigFile::teamname, "Blue_Team-1");
    EXPECT_EQ(ConfigFile::serverHost, "my host");
    EXPECT_EQ(ConfigFile::passMinDelay, 2);
    EXPECT_EQ(messages, "");
}

TEST_F(ConfigFileTest, MisplacedTokensAreQuoted) {
    std::pair<char const*, std::string> const bad[] = {
        {"", ""},
        {" \n# only a comment", ""},
        {"walkPower", ""},
        {"walkPower 4", "4"},
        {"walkPower: walkPower", "walkPower"},
        {"walkPower: \"fast\"", "\"fast\""},
        {"walkPower: 4 5", "5"},
        {"4.5", "4.5"},
        {"serverPort: 6100.0", "6100.0"},
        {"serverPort: 99999999999", "99999999999"},
        {"walkPower: 1.0e999", "1.0e999"},
        {"sayID: 5", "5"},
    };
    for (auto const& [text, token] : bad) {
        EXPECT_FALSE(parse(text)) << text;
        EXPECT_EQ(messages, syntaxError(token));
    }
}

TEST_F(ConfigFileTest, UnknownCharactersAreReportedTwice) {
    std::pair<char const*, std::vector<std::string>> const bad[] = {
        {"x", {"teamnamex: \"a\"", "xteamname: \"a\""}},
        {"W", {"WalkPower: 4"}},
        {"\"", {"sayID: \"\"", "sayID: \"open", "sayID: \"two\nlines\"", "sayID: \"1.0\""}},
        {"+", {"walkPower: +4"}},
        {"-", {"walkPower: -"}},
        {".", {"walkPower: .5", "walkPower: 5."}},
        {"e", {"walkPower: 1e3", "walkPower: 1.5e+3"}},
        {"\r", {"walkPower: 4\r\n"}},
    };
    for (auto const& [character, texts] : bad) {
        for (std::string const& text : texts) {
            EXPECT_FALSE(parse(text)) << text;
            EXPECT_EQ(messages, std::string("readConfFile: Tokenizer Error at <") + character +
                                    ">\n" + syntaxError(character));
        }
    }
}

TEST_F(ConfigFileTest, WhatStoodBeforeAnErrorStaysInForce) {
    EXPECT_FALSE(parse("passAreaX: 1 walkPower: 5. passEndSpeed: 9"));
    EXPECT_EQ(ConfigFile::passAreaX, 1);
    EXPECT_EQ(ConfigFile::walkPower, 5);
    EXPECT_EQ(ConfigFile::passEndSpeed, 1.2);
}

TEST_F(ConfigFileTest, TracesOnRequest) {
    CapturedStream const scanned(std::cerr);
    EXPECT_TRUE(ConfigFile::parseConfigFile(SAMPLE_FILE, true, false));
    EXPECT_EQ(std::ranges::count(scanned.text(), '\n'), 3 * 21); // a line a token
    CapturedStream const parsed(std::cerr);
    EXPECT_TRUE(ConfigFile::parseConfigFile(SAMPLE_FILE, false, true));
    EXPECT_TRUE(parsed.text().starts_with("Starting parse\nEntering state 0\nReading a token: "));
    EXPECT_TRUE(parsed.text().ends_with("Now at end of input.\n"));
}

} // namespace
