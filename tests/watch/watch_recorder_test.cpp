// Datagrams become the game log that the server itself would write.

#include <gtest/gtest.h>

#include "tests/gamelog/Files.h"
#include "tests/watch/Datagrams.h"
#include "tests/watch/EventReader.h"
#include "watch/Cursor.h"
#include "watch/Recorder.h"

using namespace watch;
using namespace watch_test;
using Taken = Recorder::Taken;

namespace {

constexpr std::size_t ENOUGH = 100'000'000;

struct Recording : testing::Test {
    History history{ENOUGH};
    Recorder recorder{history};
    EventReader page;
    Cursor cursor{history, {}};

    /// Connects as the server's monitor of version 5.
    void connect(int seed = 1) {
        recorder.connect(5);
        for (std::string const& datagram : parametersOf(seed)) {
            EXPECT_EQ(recorder.take(datagram), Taken::record);
        }
    }
    void show(int time, PlayMode mode, gamelog::Score const& score = {}, double ballX = 0) {
        EXPECT_EQ(recorder.take(showOf(time, mode, score, ballX)), Taken::record);
    }
    /// All that there is now for a page that has been there from the beginning.
    void catchUp() { read(cursor, page); }
    /// What somebody gets who comes now.
    EventReader lateComer() {
        EventReader late;
        Cursor own(history, {});
        read(own, late);
        return late;
    }
    static void read(Cursor& from, EventReader& to) {
        for (std::string stream = " "; !stream.empty();) {
            stream.clear();
            EXPECT_TRUE(from.next(stream, std::chrono::milliseconds(0)));
            to.take(stream);
        }
    }
};

class RealMatch : public Recording, public testing::WithParamInterface<int> {};

TEST_P(RealMatch, BecomesTheLogThatTheServerWrote) {
    int const version = GetParam();
    std::string log = gamelog_test::unpacked(LOGS "match_v" + std::to_string(version) + ".rcg.gz");
    recorder.connect(version - 1);
    bool playing = false;
    for (std::string const& datagram : datagramsOf(log)) {
        if (!playing && !datagram.starts_with("(server_") && !datagram.starts_with("(player_")) {
            show(0, PlayMode::beforeKickOff);
            playing = true;
        }
        ASSERT_EQ(recorder.take(datagram), Taken::record) << datagram;
    }
    // The server repeats the score when it ends.
    std::size_t const lastLine = log.rfind('\n', log.size() - 2) + 1;
    if (log.substr(lastLine).starts_with("(team ")) log.erase(lastLine);
    EXPECT_GT(log.size(), 100'000u);
    EXPECT_TRUE(lateComer().log == log);
    EXPECT_EQ(lateComer().resets, 0);
}
INSTANTIATE_TEST_SUITE_P(Versions, RealMatch, testing::Values(4, 5, 6));

TEST_F(Recording, StepsBeforeTheKickOffAreSeenButNotKept) {
    connect();
    for (int i = 0; i < 3000; ++i) {
        int const tenth = i / 10; // of the shows every ten are the same
        show(0, PlayMode::beforeKickOff, {}, tenth);
        catchUp();
    }
    EXPECT_EQ(history.size(), 0u);
    EXPECT_EQ(countOf(page.log, "(show 0"), 300); // one for each that differs
    EXPECT_EQ(countOf(page.log, "(playmode"), 1);
    EXPECT_EQ(countOf(page.log, "(team"), 1);
    EventReader const late = lateComer();
    EXPECT_EQ(countOf(late.log, "(show"), 1);
    EXPECT_NE(
        late.log.find("(playmode 0 before_kick_off)\n(team 0 null null 0 0)\n(show 0 ((b) 299 "),
        std::string::npos);

    show(1, PlayMode::kickOffLeft);
    catchUp();
    EXPECT_TRUE(page.log.find("(playmode 1 kick_off_l)\n(team 1 null null 0 0)\n(show 1 ") !=
                std::string::npos);
    EXPECT_EQ(countOf(lateComer().log, "before_kick_off"), 0);
}

TEST_F(Recording, HalfTimeIsSeenButNotKept) {
    connect();
    show(2999, PlayMode::playOn);
    show(3000, PlayMode::beforeKickOff);
    EXPECT_EQ(countOf(lateComer().log, "(playmode 3000 before_kick_off)\n"), 1);
    show(3001, PlayMode::kickOffRight);
    EventReader const late = lateComer();
    EXPECT_EQ(countOf(late.log, "(show 3000"), 0);
    EXPECT_EQ(countOf(late.log, "(playmode 3001 kick_off_r)\n(show 3001"), 1);
}

TEST_F(Recording, TimeOverIsKeptOnce) {
    connect();
    show(5999, PlayMode::playOn);
    for (int i = 0; i < 100; ++i) {
        show(6000, PlayMode::timeOver);
    }
    EXPECT_EQ(countOf(lateComer().log, "(playmode 6000 time_over)\n(show 6000 "), 1);
    EXPECT_EQ(countOf(lateComer().log, "(show 6000"), 1);
}

TEST_F(Recording, TheSameMatchGoesOnAfterAGap) {
    connect();
    show(10, PlayMode::playOn, {"A", "null", 0, 0, {}});
    connect();
    show(14, PlayMode::playOn, {"A", "B", 1, 0, {}});
    catchUp();
    EXPECT_EQ(page.resets, 0);
    EXPECT_EQ(countOf(page.log, "(show"), 2);
    EXPECT_EQ(countOf(page.log, "ULG6"), 1);
}

TEST_F(Recording, AnotherMatchIsTold) {
    struct Case {
        char const* what;
        int seed, time;
        gamelog::Score score;
    };
    Case const cases[] = {{"time", 1, 5, {"A", "B", 1, 0, {}}},
                          {"parameters", 2, 20, {"A", "B", 1, 0, {}}},
                          {"team", 1, 20, {"A", "C", 1, 0, {}}},
                          {"goals", 1, 20, {"A", "B", 0, 0, {}}}};
    int resets = 0;
    for (Case const& other : cases) {
        connect(1);
        show(1, PlayMode::kickOffLeft); // the first of them is another match than the last one
        show(10, PlayMode::playOn, {"A", "B", 1, 0, {}});
        catchUp();
        resets = page.resets;
        connect(other.seed);
        show(other.time, PlayMode::playOn, other.score);
        catchUp();
        EXPECT_EQ(page.resets, resets + 1) << other.what;
        EXPECT_EQ(countOf(page.log, "(show"), 1) << other.what;
        EXPECT_TRUE(page.log.starts_with("ULG6\n(server_param")) << other.what;
    }
    show(1, PlayMode::kickOffLeft); // time goes back without a new connection
    catchUp();
    EXPECT_EQ(page.resets, resets + 2);
    EXPECT_EQ(page.log, lateComer().log);
}

TEST_F(Recording, ComplaintsAreNoPartOfTheMatch) {
    connect();
    show(10, PlayMode::playOn);
    std::size_t const before = history.size();
    EXPECT_EQ(recorder.take("(msg 10 1 \"(error illegal_command_form)\")"), Taken::complaint);
    EXPECT_EQ(recorder.complaint(), "(error illegal_command_form)");
    EXPECT_EQ(recorder.take("(warning what\never)"), Taken::complaint);
    EXPECT_EQ(recorder.complaint(), "(warning what ever)");
    EXPECT_EQ(history.size(), before);
}

TEST_F(Recording, HostileTextsStayOneLine) {
    connect();
    show(10, PlayMode::playOn);
    using namespace std::string_view_literals;
    recorder.take("(msg 10 1 \"a\nevent: reset\ndata: x\r\n\0\n\")"sv);
    catchUp();
    EXPECT_EQ(page.resets, 0);
    EXPECT_TRUE(page.log.ends_with("(msg 10 1 \"a event: reset data: x    \")\n"));
    std::size_t const before = history.size();
    for (auto const& bad :
         {"(show 11 ((b) 0 0 0 0))"sv, "(show"sv, ""sv, "\0"sv, "(unknown 1)"sv,
          "(playmode 11 play_on"sv, "(player_type (id 0)(\rplayer_size 0.3))"sv}) {
        EXPECT_EQ(recorder.take(bad), Taken::unreadable) << bad;
    }
    EXPECT_EQ(history.size(), before);
}

} // namespace
