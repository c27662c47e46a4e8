#include "practice/Commands.h"

#include <gtest/gtest.h>

#include <random>

using namespace practice;

namespace {

struct Read {
    std::vector<Command> commands;
    bool failed = false;
};

Read read(std::string_view datagram) {
    Read out;
    CommandReader reader(datagram);
    while (auto const command = reader.next())
        out.commands.push_back(*command);
    out.failed = reader.failed();
    return out;
}

// The only command of a datagram; throws if it is another.
template <typename T>
T only(std::string_view datagram) {
    std::vector<Command> const commands = read(datagram).commands;
    EXPECT_EQ(commands.size(), 1U) << datagram;
    return std::get<T>(commands.at(0));
}

} // namespace

TEST(Commands, NumbersInAllTheirForms) {
    EXPECT_EQ(only<Turn>("(turn 10)").moment, 10.0);
    EXPECT_EQ(only<Turn>("( turn\t+.5 )\n").moment, 0.5);
    EXPECT_EQ(only<Dash>("(dash -1.5e1)").power, -15.0);
    EXPECT_EQ(only<Dash>("(dash 50 -90)").dir, -90.0);
    EXPECT_EQ(only<Kick>("(kick 100 -30.000000)").dir, -30.0);
    EXPECT_EQ(only<Move>("(move -10 5)").pos, (Vec{-10.0, 5.0}));
}

TEST(Commands, SayWithAndWithoutQuotes) {
    EXPECT_EQ(only<Say>("(say \"a(b) c\")").text, "a(b) c");
    EXPECT_EQ(only<Say>("(say  go)(turn 5)").text, " go)(turn 5");
    EXPECT_EQ(read("(say \"x\")(turn 5)").commands.size(), 2U);
}

TEST(Commands, SeveralInADatagramUpToTheFirstBadOne) {
    using namespace std::string_view_literals;
    Read const good = read("(turn 10)(turn_neck 5) \n(change_view narrow low)\0"sv);
    EXPECT_EQ(good.commands.size(), 3U);
    EXPECT_FALSE(good.failed);
    Read const bad = read("(dash 50)(fly 3)(turn 10)");
    EXPECT_EQ(bad.commands.size(), 1U);
    EXPECT_TRUE(bad.failed);
    EXPECT_EQ(only<ChangeView>("(change_view wide)").view.quality, Quality::high);
    EXPECT_EQ(only<Request>("(attentionto (our) 5)"), Request::nothing);
    EXPECT_TRUE(read("").commands.empty());
    EXPECT_FALSE(read("").failed);
}

TEST(Commands, NonsenseIsRefused) {
    for (char const* bad : {"(turn 5.)", "(turn nan)", "(turn inf)", "(turn 0x10)", "(turn +-5)",
                            "(turn)", "(turn 1 2)", "(kick 1)", "(turn 1", "turn 1)", "(turn 1e)",
                            "(turn 1e999)", "(change_view huge)", "(say \"\")", "(say )",
                            "(say \"a,b\")", "(say \"open)", "(say a\"b)", "(say \"\xC3\xA4\")"}) {
        EXPECT_TRUE(read(bad).failed) << bad;
    }
}

// Whatever arrives, reading ends and stays inside the datagram (run with sanitizers to see the
// latter).
TEST(Commands, HostileBytesOnlyFail) {
    std::mt19937 bits(1);
    std::string alphabet = "()\" -.e5turndashsayinit_\xff\n";
    alphabet.push_back('\0');
    for (int i = 0; i < 20000; ++i) {
        std::string datagram = i % 2 == 0 ? "(say \"" : "(init ";
        for (auto n = bits() % 60; n > 0; --n)
            datagram += alphabet[bits() % alphabet.size()];
        EXPECT_LE(read(datagram).commands.size(), datagram.size());
        (void)readIntroduction(datagram);
    }
    EXPECT_TRUE(read(std::string(8192, '(')).failed);
    EXPECT_TRUE(read("(turn " + std::string(8000, '9') + ")").failed);
}

TEST(Commands, InitInAnyOrderOrRefusedWithItsText) {
    Introduction const client = readIntroduction("(init Team_A-1(goalie) (version 7.08))\n");
    EXPECT_EQ(client.team, "Team_A-1");
    EXPECT_TRUE(client.goalie);
    EXPECT_DOUBLE_EQ(client.version, 7.08);
    using Texts = std::vector<std::string_view>;
    for (auto const& [refusal, datagrams] :
         {std::pair{"(error unknown_command)", Texts{"(hello)", "(init)"}},
          {"(error illegal_teamname)", {"(init \"A\")", "(init )"}},
          {"", {"(init ABCDEFGHIJKLMNO)"}},
          {"(error illegal_teamname_or_too_long_teamname)",
           {"(init ABCDEFGHIJKLMNOP)", "(init A*)"}},
          {"(error illegal_command_form)",
           {"(init A (version x))", "(init A (captain))", "(reconnect A)"}}})
        for (std::string_view const datagram : datagrams)
            EXPECT_EQ(readIntroduction(datagram).refusal, refusal) << datagram;
}
