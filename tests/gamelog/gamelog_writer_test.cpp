// The forms byte for byte, by samples, and the numbers against the C library.

#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "gamelog/Writer.h"

namespace {

using namespace gamelog;

template <typename R, typename... Version>
std::string line(R const& record, Version... version) {
    std::string out;
    append(out, record, version...);
    return out;
}

/// The n-th player (from 0) in a written show.
std::string writtenPlayer(Show const& show, std::size_t n, int version) {
    std::string const text = line(show, version);
    std::size_t begin = text.find("((b)");
    for (std::size_t i = 0; i <= n; ++i) {
        begin = text.find(" ((", begin) + 1;
    }
    std::size_t const next = text.find(" ((", begin);
    return text.substr(begin, next == text.npos ? text.size() - begin - 1 : next - begin);
}

TEST(Writer, WritesAPlayerInEveryVersion) {
    Show show;
    Player& player = show.player(Side::left, 3);
    player.type = 2;
    player.state = state::ON_FIELD | state::TACKLE_FAILED;
    player.x = -4.89451;
    player.y = 5.58494;
    player.vx = 0.0104;
    player.vy = 0.05638;
    player.body = 79.6824;
    player.neck = 90;
    player.pointTo = {-14.88732, 6.4973};
    player.viewWidth = 120;
    player.focusDist = 40;
    player.focusDir = 60;
    player.stamina = 8000;
    player.effort = 0.8347991;
    player.capacity = 130520;
    player.attention = {Side::left, 2};
    player.counts = {0, 4, 4, 0, 1, 10, 0, 1, 4, 5, 10, 10};
    std::string const head = "((l 3) 2 0x2001 -4.8945 5.5849 0.0104 0.0564 79.682 90 -14.8873 "
                             "6.4973 (v h 120) ";
    EXPECT_EQ(writtenPlayer(show, 2, 4),
              head + "(s 8000 0.834799 1) (f l 2) (c 0 4 4 0 1 10 0 1 4 5 10))");
    EXPECT_EQ(writtenPlayer(show, 2, 5),
              head + "(s 8000 0.834799 1 130520) (f l 2) (c 0 4 4 0 1 10 0 1 4 5 10))");
    EXPECT_EQ(writtenPlayer(show, 2, 6), head + "(fp 40 60) (s 8000 0.834799 1 130520) (f l 2) "
                                                "(c 0 4 4 0 1 10 0 1 4 5 10 10))");
}

TEST(Writer, WritesTheOtherRecords) {
    EXPECT_EQ(header(5), "ULG5\n");
    EXPECT_EQ(line(PlayModeChange{192, PlayMode::goalLeft}), "(playmode 192 goal_l)");
    Team team{369, {"Alpha", "null", 0, 2, std::nullopt}};
    EXPECT_EQ(line(team), "(team 369 Alpha null 0 2)");
    team.score.penalties = {{{0, 3}, {1, 4}}};
    EXPECT_EQ(line(team), "(team 369 Alpha null 0 2 0 3 1 4)");
    EXPECT_EQ(line(Msg{5, 1, "say \"a\"\nb"}), "(msg 5 1 \"say \"a\" b\")");
    ServerParam server;
    server.pairs = {{"half_time", "300"}, {"coach_msg_file", "\"\""}};
    EXPECT_EQ(line(server), "(server_param (half_time 300)(coach_msg_file \"\"))");
    Show show;
    show.scoreboard = {PlayMode::beforeKickOff, {}};
    EXPECT_TRUE(
        line(show, 6).starts_with("(show 0 (pm 1) (tm null null 0 0) ((b) 0 0 0 0) ((l 1)"));
}

TEST(Writer, PrintsNumbersAsTheCLibraryDoes) {
    std::mt19937 dice(7);
    std::string expected, written;
    for (int i = 0; i < 20'000; ++i) {
        double const scale = std::pow(10.0, static_cast<int>(dice() % 12) - 5);
        double value = std::uniform_real_distribution(-scale, scale)(dice);
        if (i % 7 == 0) value = std::trunc(value); // negative zero among them
        Show show;
        show.ball.x = value;
        show.players[0].stamina = value;
        char text[80];
        std::snprintf(text, sizeof text, "((b) %.6g 0 0 0)", std::rint(value / 0.0001) * 0.0001);
        std::string const out = line(show, 4);
        ASSERT_NE(out.find(text), out.npos) << text << " is not in " << out.substr(0, 60);
        std::snprintf(text, sizeof text, "(s %.6g 1 1)", value);
        ASSERT_NE(out.find(text), out.npos) << text << " is not in " << out.substr(0, 200);
    }
}

TEST(Writer, AllocatesNothingOnceGrown) {
    std::string out;
    Show show;
    append(out, show, 6);
    std::size_t const capacity = out.capacity();
    char const* const place = out.data();
    out.clear();
    append(out, show, 6);
    EXPECT_EQ(out.capacity(), capacity);
    EXPECT_EQ(out.data(), place);
}

TEST(PlayModes, HaveTheWordOfTheirNumber) {
    std::pair<int, std::string_view> const samples[] = {
        {1, "before_kick_off"},  {3, "play_on"},           {5, "kick_off_r"},
        {14, "goal_l"},          {16, "drop_ball"},        {21, "first_half_over"},
        {24, "foul_charge_l"},   {32, "back_pass_l"},      {39, "indirect_free_kick_r"},
        {44, "penalty_taken_l"}, {51, "illegal_defense_r"}};
    for (auto const& [number, word] : samples) {
        EXPECT_EQ(wordOf(static_cast<PlayMode>(number)), word);
    }
    for (int number = 0; number < PLAY_MODES; ++number) {
        auto const mode = static_cast<PlayMode>(number);
        EXPECT_EQ(playModeOf(wordOf(mode)), mode);
        if (auto const side = sideOf(mode)) {
            EXPECT_EQ(std::string(stemOf(mode)) + "_" + std::string(letterOf(*side)), wordOf(mode));
        }
    }
    EXPECT_FALSE(playModeOf("kick_off"));
}

} // namespace
