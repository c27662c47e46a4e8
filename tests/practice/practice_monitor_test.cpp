// Monitors over the loopback, without a clock: what they are sent, what their commands do, and that
// none of them can disturb the match.

#include <gtest/gtest.h>
#include <random>

#include "gamelog/Reader.h"
#include "practice/GameLog.h"
#include "practice/Monitors.h"
#include "practice/ParameterRecords.h"
#include "tests/gamelog/Files.h"
#include "tests/practice/Game.h"
#include "tests/practice/Guest.h"
#include "tests/practice/Skeleton.h"
#include "tests/support/Allocations.h"

using namespace practice;
using namespace practice_test;
using namespace std::string_view_literals;

namespace {

/// A match with monitors and the port where they introduce themselves.
struct Watched : Game {
    net::Address own = *net::makeAddress("127.0.0.1", 0);
    net::Socket door = *net::Socket::bound(own);
    net::Address doorAddress = *net::makeAddress("127.0.0.1", door.port());
    Monitors monitors{own, parameterRecords({}, 6000)};

    Watched() : Game(2) {
        afterStep = [this] { monitors.show(world); };
    }

    void readDoor() {
        std::array<char, 8192> buffer{};
        net::Address sender{};
        std::string_view text;
        while (door.receive(buffer, text, sender) == net::Socket::Arrival::datagram) {
            EXPECT_TRUE(monitors.receiveAtDoor(door, sender, text));
        }
    }
    /// Says it at the door and returns what comes back.
    std::vector<std::string> introduce(Guest& watcher, std::string_view text) {
        watcher.send(text, doorAddress);
        readDoor();
        return watcher.received();
    }
    /// A monitor's command; returns the answers.
    std::vector<std::string> command(Guest& watcher, std::string_view text) {
        watcher.send(text);
        monitors.poll(match);
        return watcher.received();
    }
};

gamelog::Show readShow(std::string const& message, int logVersion) {
    std::string const log = "ULG" + std::to_string(logVersion) + "\n" + message + "\n";
    gamelog::Reader reader = gamelog::Reader::ofMemory(log);
    gamelog::Record const* const record = reader.next();
    EXPECT_NE(record, nullptr) << reader.error();
    return record == nullptr ? gamelog::Show{} : std::get<gamelog::Show>(*record);
}

using Texts = std::vector<std::string>;

} // namespace

TEST(Monitors, AreGreetedAndShownTheMatch) {
    Watched g;
    g.start(11);
    std::array<Guest, 3> watchers;
    for (int version = 3; version <= 5; ++version) {
        Guest& watcher = watchers.at(static_cast<std::size_t>(version - 3));
        auto const greeting =
            g.introduce(watcher, "(dispinit version " + std::to_string(version) + ".9)");
        EXPECT_EQ(greeting, parameterRecords({}, 6000));
        EXPECT_NE(watcher.server.sin_port, g.doorAddress.sin_port);
    }
    g.world.score = {3, 2};
    g.step(2);
    for (int version = 3; version <= 5; ++version) {
        auto const shows = watchers.at(static_cast<std::size_t>(version - 3)).received();
        ASSERT_EQ(shows.size(), 2U);
        gamelog::Show const show = readShow(shows[1], version + 1);
        ASSERT_TRUE(show.scoreboard);
        EXPECT_EQ(show.scoreboard->mode, gamelog::PlayMode::kickOffLeft);
        EXPECT_EQ(show.scoreboard->score, (gamelog::Score{"Alpha", "Beta", 3, 2, {}}));
        EXPECT_EQ(show.time, g.world.cycle);
        EXPECT_NEAR(show.players[15].x, g.world.player(15).pos.x, 0.000051);
        if (version < 5) continue;
        std::istringstream field(gamelog_test::unpacked(LOGS "monitor_v5.txt.gz"));
        std::string line;
        while (std::getline(field, line) && line.find("(show ") == line.npos) {
        }
        EXPECT_EQ(skeletonOf(shows[1]), skeletonOf(line.substr(line.find("(show "))));
    }
}

TEST(Monitors, AreShownAnEmptyPitchToo) {
    Watched g;
    Guest watcher;
    g.introduce(watcher, "(dispinit version 5)");
    g.step();
    auto const shows = watcher.received();
    ASSERT_EQ(shows.size(), 1U);
    EXPECT_TRUE(shows[0].starts_with("(show 0 (pm 1) (tm null null 0 0) ((b) 0 0 0 0) "
                                     "((l 1) 0 0 -3 -37 0 0 0 0 (v h 90) (fp 0 0) "
                                     "(s 8000 1 1 130600) (c 0 0 0 0 0 0 0 0 0 0 0 0)) "))
        << shows[0];
    EXPECT_EQ(shows[0].size(), 2103U); // and a NUL
}

TEST(Monitors, TheDoorIsForIntroductionsOnly) {
    Watched g;
    for (auto const& [text, answer] : {std::pair{"(dispinit)", "(error illegal_client_version)"},
                                       {"(dispinit version 2)", "(error illegal_client_version)"},
                                       {"(dispinit version -1)", "(error illegal_client_version)"},
                                       {"(dispinit version 6)", "(error illegal_client_version)"},
                                       {"(dispinit version 1e300)", "(error illegal_command_form)"},
                                       {"(dispinit version)", "(error illegal_command_form)"},
                                       {"(dispinit version 5", "(error illegal_command_form)"}}) {
        Guest watcher;
        EXPECT_EQ(g.introduce(watcher, text), Texts{answer}) << text;
        EXPECT_EQ(watcher.server.sin_port, g.doorAddress.sin_port);
    }
    Guest first;
    g.introduce(first, "(dispinit version 5)");
    for (char const* const again : {"(dispinit version 5)", "(dispstart)"}) {
        EXPECT_EQ(g.introduce(first, again), Texts{"(error only_init_allowed_on_init_port)"});
    }
    std::vector<Guest> others(Monitors::MAX_MONITORS);
    for (Guest& watcher : others) {
        auto const answer = g.introduce(watcher, "(dispinit version 4)");
        ASSERT_FALSE(answer.empty());
        if (&watcher != &others.back()) continue;
        EXPECT_EQ(answer, Texts{"(error no_more_monitor)"});
    }
    EXPECT_EQ(g.monitors.count(), std::size_t{Monitors::MAX_MONITORS});
    EXPECT_FALSE(g.monitors.receiveAtDoor(g.door, *net::makeAddress("127.0.0.1", 9), "(init A)"));
}

TEST(Monitors, CommandsActLikeAReferee) {
    Watched g;
    Guest watcher;
    g.introduce(watcher, "(dispinit version 5)");
    g.join("Alpha");
    EXPECT_EQ(g.command(watcher, "(dispstart)"), Texts{});
    EXPECT_EQ(g.world.mode, (PlayMode{Phase::kickOff, Side::left}));
    g.step();
    watcher.received();
    EXPECT_EQ(g.command(watcher, "(dispstart)"), Texts{}); // it is running
    EXPECT_EQ(g.world.mode, (PlayMode{Phase::kickOff, Side::left}));

    EXPECT_EQ(g.command(watcher, "(dispplayer 1 1 -160 72 -90)"), Texts{});
    EXPECT_EQ(g.world.player(0).pos, (Vec{-10.0, 4.5}));
    EXPECT_NEAR(toDeg(g.world.player(0).body), -90.0, 1e-9);
    g.command(watcher, "(dispplayer 1 1 2000000000 -2000000000 2000000000)");
    EXPECT_EQ(g.world.player(0).pos, (Vec{57.5, -39.0}));

    g.command(watcher, "(dispfoul 160 -80 1)");
    EXPECT_EQ(g.world.mode, (PlayMode{Phase::freeKick, Side::left}));
    EXPECT_EQ(g.world.ball.pos, (Vec{10.0, -5.0}));
    g.poll();
    auto const& told = g.told[0];
    ASSERT_GE(told.size(), 2U);
    EXPECT_EQ(told[told.size() - 2], "(hear 1 referee foul_r)");
    EXPECT_EQ(told[told.size() - 1], "(hear 1 referee free_kick_l)");
    g.command(watcher, "(dispfoul 800 0 -1)"); // in the offenders' own penalty area
    EXPECT_EQ(g.world.ball.pos, (Vec{50.0, 0.0}));
    g.command(watcher, "(dispfoul -800 16 -1)");
    EXPECT_EQ(g.world.ball.pos, (Vec{-36.0, 20.16}));
    g.command(watcher, "(dispfoul 0 16 0)");
    EXPECT_TRUE(g.world.mode == Phase::playOn);
    EXPECT_EQ(g.world.ball.pos, (Vec{0.0, 1.0}));

    EXPECT_EQ(g.command(watcher, "(dispdiscard 1 1)"), Texts{});
    EXPECT_FALSE(g.world.player(0).active);
    EXPECT_FALSE(g.world.player(0).lost);
    g.step();
    EXPECT_EQ(readShow(watcher.received().back(), 6).players[0].state, gamelog::state::DISCARDED);

    g.command(watcher, "(dispbye)");
    EXPECT_EQ(g.monitors.count(), 0U);
}

TEST(Monitors, WhatIsNotUnderstoodIsAnsweredInTheMatchsTime) {
    Watched g;
    Guest watcher;
    g.introduce(watcher, "(dispinit version 5)");
    Texts const refused{R"x((msg 0 1 "(error illegal_command_form)"))x"};
    for (char const* const bad :
         {"(compression 3)", "(dispcard 1 2 red)", "(start)", "(dispplayer 1 12 0 0 0)",
          "(dispplayer 0 1 0 0 0)", "(dispplayer 1 1 0 0)", "(dispfoul 1 2 3)",
          "(dispfoul 1.5 2 1)", "(dispfoul 1 99999999999 1)", "(dispstart", "(dispstart) x", "",
          "(change_player_type l 2 3)"}) {
        EXPECT_EQ(g.command(watcher, bad), refused) << bad;
    }
    // Without the NUL at its end a command is executed after a warning.
    watcher.socket.sendBytes("(dispbye)", &watcher.server);
    g.monitors.poll(g.match);
    EXPECT_EQ(watcher.received(), Texts{R"x((msg 0 1 "(warning message_not_null_terminated)"))x"});
    EXPECT_EQ(g.monitors.count(), 0U);
}

/// For any bytes, nothing is read beyond the datagram (run with sanitizers to see it).
TEST(Monitors, HostileBytesOnlyFail) {
    std::mt19937 bits(1);
    constexpr std::string_view ALPHABET = "() -.1690dispfoulplayerversion\xff\n\0"sv;
    for (int i = 0; i < 20000; ++i) {
        std::string datagram = i % 2 == 0 ? "(disp" : "(dispinit ";
        for (auto n = bits() % 40; n > 0; --n) {
            datagram += ALPHABET[bits() % ALPHABET.size()];
        }
        (void)readMonitorCommand(datagram);
        (void)readMonitorVersion(i % 2 == 0 ? "(dispinit" : datagram);
    }
    EXPECT_FALSE(readMonitorCommand("(dispplayer 1 1 " + std::string(8000, '9')));
}

TEST(Monitors, NoneCanDisturbTheMatch) {
    Watched g;
    g.start(11);
    Guest deaf, flooding, good;
    g.introduce(deaf, "(dispinit version 5)");
    g.introduce(flooding, "(dispinit version 5)");
    g.introduce(good, "(dispinit version 3)");
    {
        Guest gone;
        g.introduce(gone, "(dispinit version 4)");
        EXPECT_EQ(g.monitors.count(), 4U);
    }
    g.step(3); // the system tells at one of the next sends
    EXPECT_EQ(g.monitors.count(), 3U);
    for (int i = 0; i < 1000; ++i) {
        g.monitors.show(g.world); // far more than the deaf one's buffer holds
        flooding.send("(dispplayer 1 1 0 0 0)");
        EXPECT_FALSE(good.received().empty());
    }
    // Of a flood a poll reads a little; the next polls read on.
    g.match.place(0, {-30, 0}, 0.0);
    g.monitors.poll(g.match);
    EXPECT_EQ(g.world.player(0).pos, Vec{});
    g.match.place(0, {-30, 0}, 0.0);
    g.monitors.poll(g.match);
    EXPECT_EQ(g.world.player(0).pos, Vec{});
    EXPECT_EQ(g.monitors.count(), 3U);
}

/// Logging and showing a step takes no memory once the buffers have grown.
TEST(Monitors, AStepAllocatesNothing) {
    Watched g;
    g.start(11);
    std::array<Guest, 3> watchers;
    for (char const version : {'3', '4', '5'}) {
        std::string const text = std::string("(dispinit version ") + version + ')';
        g.introduce(watchers.at(static_cast<std::size_t>(version - '3')), text);
    }
    std::string problem;
    LogOptions options;
    options.directory = testing::TempDir();
    options.stem = "practice_monitor_test";
    auto const log = GameLog::open(options, {}, problem);
    ASSERT_NE(log, nullptr) << problem;
    g.step(5);
    auto const tell = [&] {
        for (int i = 0; i < 50; ++i) {
            log->heardPlayer(g.world, g.world.player(i % MAX_PLAYERS), "(dash 50)(turn_neck 20)");
        }
        log->step(g.world);
        g.monitors.show(g.world);
    };
    tell();
    long const before = support::allocationCount();
    tell();
    EXPECT_EQ(support::allocationCount() - before, 0);
    for (char const* const ending : {".rcg", ".rcl"}) {
        std::remove((options.folder() + options.name() + ending).c_str());
    }
}
