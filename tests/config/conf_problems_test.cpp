#include <gtest/gtest.h>
#include <iostream>
#include <string>

#include "config/ConfProblems.h"
#include "config/ConfigFile.h"
#include "tests/geometry/CapturedStream.h"

namespace {

/// All problems of a text, a line each: "E" or "W", the line number, the message.
std::string problems(std::string const& text) {
    CapturedStream const unused(std::cerr);
    std::string all;
    for (ConfProblem const& p : findConfProblems(text)) {
        all += p.isError ? 'E' : 'W';
        all += std::to_string(p.line);
        all.append(" ").append(p.message).append("\n");
    }
    return all;
}

TEST(ConfProblemsTest, ErrorsNameLineKeywordAndWhatIsAllowed) {
    std::pair<char const*, char const*> const cases[] = {
        {"passAreaX: 1\nwalkpower: 4", "E2 unknown keyword 'walkpower'; did you mean 'walkPower'?"},
        {"teamnamex: \"a\"", "E1 unknown keyword 'teamnamex'; did you mean 'teamname'?"},
        {"bananas: 4", "E1 unknown keyword 'bananas'; allowed are teamname, serverHost"},
        {"walkPower: 4 km", "E1 unknown keyword 'km'; allowed"},
        {"\n\nwalkPower 4", "E3 walkPower: a colon is missing"},
        {"walkPower=4", "E1 walkPower: a colon is missing"},
        {"passAreaX: 0,5\n", "E1 passAreaX: takes a number such as 4 or 0.5"},
        {"passAreaX: 1e3\n", "E1 passAreaX: takes a number such as 4 or 0.5"},
        {"passAreaX:", "E1 passAreaX: takes a number"},
        {"sayID: v", "E1 sayID: takes a text between double quotes"},
        {"sayID: \"1.0\"", "E1 sayID: takes a text between double quotes"},
        {"serverPort: 60.0", "E1 serverPort: takes a whole number from 1 to 65535, not '60.0'"},
        {"# a\r\nwalkPower: 4\r\n", "E2 the line ends with a carriage return"},
        {"\xEF\xBB\xBFwalkPower: 4", "E1 begins with a byte order mark"},
        {"walkPower: 4\n: 5", "E2 a keyword is expected here, not ': 5'"},
        {"# nothing\n", "E2 no setting stands in the file"},
    };
    for (auto const& [text, start] : cases) {
        std::string const found = problems(text);
        EXPECT_TRUE(found.starts_with(start)) << text << "\n-> " << found;
    }
}

TEST(ConfProblemsTest, ValuesOutOfSenseAreWarnedOfAndTaken) {
    auto const defaults = std::tuple(ConfigFile::teamname, ConfigFile::serverPort,
                                     ConfigFile::noSeeFraction, ConfigFile::sayID);
    EXPECT_EQ(problems("serverPort: 0\nnoSeeFraction: 50\nnoSeeFraction: 2.5\n"
                       "sayID: \"_\"\nteamname: \"two words\"\nwalkPower: 100"),
              "W1 serverPort: makes sense from 1 to 65535, not 0\n"
              "W2 noSeeFraction: stands again in line 3, which counts\n"
              "W3 noSeeFraction: makes sense from 0 to 1, not 2.5\n"
              "W4 sayID: should be one letter or digit, not \"_\"\n"
              "W5 teamname: should have up to 15 letters, digits, - or _: servers refuse others, "
              "not \"two words\"\n");
    EXPECT_EQ(ConfigFile::noSeeFraction, 2.5);
    std::tie(ConfigFile::teamname, ConfigFile::serverPort, ConfigFile::noSeeFraction,
             ConfigFile::sayID) = defaults;
}

} // namespace
