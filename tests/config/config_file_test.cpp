#include "config/ConfigFile.h"
#include "tests/geometry/CapturedStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <tuple>

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

const Settings DEFAULTS{"Tallowmere2002",
                        "localhost",
                        6000,
                        0.5,
                        0.7,
                        0.8,
                        8.0,
                        30.0,
                        15.0,
                        3.0,
                        15.0,
                        0.0,
                        1.2,
                        35.0,
                        20.0,
                        50.0,
                        60.0,
                        1.0,
                        -120.0,
                        120.0,
                        "v"};

/// What the members hold before anything is read.
const Settings COMPILED_IN = settings();

class ConfigFileTest : public testing::Test {
protected:
    ~ConfigFileTest() override {
        settings() = COMPILED_IN;
        std::filesystem::remove(path);
    }

    bool parse(const std::string& text, bool scannerDebug = false, bool parserDebug = false) {
        std::ofstream(path, std::ios::binary) << text;
        const CapturedStream err(std::cerr);
        const bool ok = ConfigFile::parseConfigFile(path.c_str(), scannerDebug, parserDebug);
        messages = err.text();
        return ok;
    }

    std::string path = testing::TempDir() + "config_file_test." +
                       testing::UnitTest::GetInstance()->current_test_info()->name();
    std::string messages;
};

std::string unknown(const std::string& character) {
    return "readConfFile: Tokenizer Error at <" + character + ">\n";
}

std::string syntaxError(const std::string& token) {
    return "readConfFile: <parse error> occured while parsing <" + token + ">\n";
}

TEST_F(ConfigFileTest, SampleFileNamesEverySettingAtItsDefault) {
    EXPECT_EQ(COMPILED_IN, DEFAULTS);
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
    const CapturedStream err(std::cerr);
    EXPECT_FALSE(ConfigFile::parseConfigFile((path + ".missing").c_str(), true, true));
    EXPECT_FALSE(ConfigFile::parseConfigFile(testing::TempDir().c_str(), false, false));
    EXPECT_EQ(err.text(), "");
    EXPECT_EQ(settings(), DEFAULTS);
}

TEST_F(ConfigFileTest, Numbers) {
    const std::pair<const char*, double> good[] = {
        {"40", 40},
        {"40.0", 40},
        {"-90.5# aside", -90.5},
        {"007", 7},
        {"1.5e-3", 0.0015},
        {"1.5E3", 1500},
        {"-0.25e2", -25},
        {"99999999999999999999", 1e20},
    };
    for (const auto& [text, value] : good) {
        EXPECT_TRUE(parse(std::string("walkPower \t:\n ") + text)) << text;
        EXPECT_EQ(ConfigFile::walkPower, value) << text;
    }
    EXPECT_TRUE(parse("serverPort: -0 passAreaX: -0"));
    EXPECT_EQ(ConfigFile::serverPort, 0);
    EXPECT_FALSE(std::signbit(ConfigFile::passAreaX));
}

TEST_F(ConfigFileTest, TextsAndRepetition) {
    EXPECT_TRUE(parse("# a comment\n\nteamname: \"Blue_Team-1\"#\nserverHost:\"my host\"\n"
                      "passMinDelay: 1\npassMinDelay: 2 # no line end"));
    EXPECT_EQ(ConfigFile::teamname, "Blue_Team-1");
    EXPECT_EQ(ConfigFile::serverHost, "my host");
    EXPECT_EQ(ConfigFile::passMinDelay, 2);
    EXPECT_EQ(messages, "");
}

TEST_F(ConfigFileTest, BadFilesSayWhere) {
    const std::pair<const char*, std::string> bad[] = {
        {"", syntaxError("")},
        {" \n# only a comment", syntaxError("")},
        {"walkPower", syntaxError("")},
        {"walkPower 4", syntaxError("4")},
        {"walkPower: walkPower", syntaxError("walkPower")},
        {"walkPower: \"fast\"", syntaxError("\"fast\"")},
        {"walkPower: 4 5", syntaxError("5")},
        {"4.5", syntaxError("4.5")},
        {"serverPort: 6100.0", syntaxError("6100.0")},
        {"serverPort: 99999999999", syntaxError("99999999999")},
        {"walkPower: 1.0e999", syntaxError("1.0e999")},
        {"sayID: 5", syntaxError("5")},
        {"teamnamex: \"a\"", unknown("x") + syntaxError("x")},
        {"WalkPower: 4", unknown("W") + syntaxError("W")},
        {"teamname: \"\"", unknown("\"") + syntaxError("\"")},
        {"teamname: \"open", unknown("\"") + syntaxError("\"")},
        {"teamname: \"two\nlines\"", unknown("\"") + syntaxError("\"")},
        {"serverHost: \"127.0.0.1\"", unknown("\"") + syntaxError("\"")},
        {"walkPower: +4", unknown("+") + syntaxError("+")},
        {"walkPower: -", unknown("-") + syntaxError("-")},
        {"walkPower: .5", unknown(".") + syntaxError(".")},
        {"walkPower: 5.", unknown(".") + syntaxError(".")},
        {"walkPower: 1e3", unknown("e") + syntaxError("e")},
        {"walkPower: 1.5e+3", unknown("e") + syntaxError("e")},
        {"walkPower: 4\r\n", unknown("\r") + syntaxError("\r")},
    };
    for (const auto& [text, expected] : bad) {
        EXPECT_FALSE(parse(text)) << text;
        EXPECT_EQ(messages, expected) << text;
    }
}

TEST_F(ConfigFileTest, WhatStoodBeforeAnErrorStaysInForce) {
    EXPECT_FALSE(parse("passAreaX: 1 walkPower: 5. passEndSpeed: 9"));
    EXPECT_EQ(ConfigFile::passAreaX, 1);
    EXPECT_EQ(ConfigFile::walkPower, 5);
    EXPECT_EQ(ConfigFile::passEndSpeed, 1.2);
}

TEST_F(ConfigFileTest, TracesOnRequest) {
    EXPECT_TRUE(parse("walkPower: 4", true, false));
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 3); // a line a token
    EXPECT_TRUE(parse("walkPower: 4", false, true));
    EXPECT_TRUE(messages.starts_with("Starting parse\nEntering state 0\nReading a token: "));
    EXPECT_TRUE(messages.ends_with("Now at end of input.\n"));
}

} // namespace
