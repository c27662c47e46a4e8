#include <gtest/gtest.h>
#include <random>

#include "practice/Commands.h"

using namespace practice;
using namespace std::string_view_literals;

namespace {

/// How many commands are read of a datagram, and whether it ends in nonsense.
using Read = std::pair<int, bool>;

Read read(std::string_view datagram) {
    CommandReader reader(datagram);
    int commands = 0;
    while (reader.next()) {
        ++commands;
    }
    return {commands, reader.failed()};
}

/// The first command of a datagram; throws if it is another.
template <typename T>
T first(std::string_view datagram) {
    return std::get<T>(CommandReader(datagram).next().value());
}

} // namespace

TEST(Commands, AreReadInAllTheirForms) {
    EXPECT_EQ(first<Turn>("(turn 10)").moment, 10.0);
    EXPECT_EQ(first<Turn>("( turn\t+.5 )\n").moment, 0.5);
    EXPECT_EQ(first<Dash>("(dash -1.5e1)").power, -15.0);
    EXPECT_EQ(first<Dash>("(dash 50 -90)").dir, -90.0);
    EXPECT_EQ(first<Kick>("(kick 100 -30.000000)").dir, -30.0);
    EXPECT_EQ(first<Move>("(move -10 5)").pos, (Vec{-10.0, 5.0}));
    EXPECT_EQ(first<Say>("(say \"a(b) c\")").text, "a(b) c");
    EXPECT_EQ(first<Say>("(say  go)(turn 5)").text, " go)(turn 5");
    EXPECT_EQ(first<ChangeView>("(change_view wide)").view.quality, Quality::high);
    EXPECT_EQ(first<Request>("(attentionto (our) 5)"), Request::nothing);
    for (auto const& [datagram, expected] :
         {std::pair{"(turn 10)(turn_neck 5) \n(change_view narrow low)\0"sv, Read(3, false)},
          {R"((say "x")(turn 5))"sv, Read(2, false)},
          {"(dash 50)(fly 3)(turn 10)"sv, Read(1, true)}, // up to the first bad one
          {""sv, Read(0, false)}}) {
        EXPECT_EQ(read(datagram), expected) << datagram;
    }
}

TEST(Commands, NonsenseIsRefused) {
    for (char const* bad : {"(turn 5.)", "(turn nan)", "(turn inf)", "(turn 0x10)", "(turn +-5)",
                            "(turn)", "(turn 1 2)", "(kick 1)", "(turn 1", "turn 1)", "(turn 1e)",
                            "(turn 1e999)", "(change_view huge)", "(say \"\")", "(say )",
                            "(say \"a,b\")", "(say \"open)", "(say a\"b)", "(say \"\xC3\xA4\")"}) {
        EXPECT_EQ(read(bad), Read(0, true)) << bad;
    }
}

// Whatever arrives, reading ends and stays inside the datagram (run with sanitizers to see the
// latter).
TEST(Commands, HostileBytesOnlyFail) {
    std::mt19937 bits(1);
    constexpr std::string_view ALPHABET = "()\" -.e5turndashsayinit_\xff\n\0"sv;
    for (int i = 0; i < 20000; ++i) {
        std::string datagram = i % 2 == 0 ? "(say \"" : "(init ";
        for (auto n = bits() % 60; n > 0; --n) {
            datagram += ALPHABET[bits() % ALPHABET.size()];
        }
        (void)read(datagram);
        (void)readIntroduction(datagram);
    }
    EXPECT_EQ(read(std::string(8192, '(')), Read(0, true));
    EXPECT_EQ(read("(turn " + std::string(8000, '9') + ")"), Read(0, true));
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
           {"(init A (version x))", "(init A (captain))", "(reconnect A)"}}}) {
        for (std::string_view const datagram : datagrams) {
            EXPECT_EQ(readIntroduction(datagram).refusal, refusal) << datagram;
        }
    }
}
