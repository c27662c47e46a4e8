// Every browser gets the whole match, whenever it comes and however slowly it reads.

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <thread>

#include "tests/watch/EventReader.h"
#include "watch/Cursor.h"
#include "watch/History.h"

using namespace watch;
using namespace watch_test;

namespace {

constexpr std::chrono::milliseconds AT_ONCE{0}, LONG{10'000};
std::string const PREAMBLE = "ULG6\n(server_param (a 1))\n";

/// A browser and what it knows.
struct Browser {
    EventReader page;
    std::unique_ptr<Cursor> cursor;

    explicit Browser(History& history) : cursor(std::make_unique<Cursor>(history, "")) {}

    /// Loses its connection and comes back.
    void reconnect(History& history) { cursor = std::make_unique<Cursor>(history, page.lastId); }
    bool readOnce(std::chrono::milliseconds patience = AT_ONCE) {
        std::string stream;
        bool const open = cursor->next(stream, patience);
        page.take(stream);
        EXPECT_TRUE(page.complete());
        return open && !stream.empty();
    }
    void readAll() {
        while (readOnce()) {
        }
    }
};

std::string randomStep(std::mt19937& dice, int number) {
    return "(show " + std::to_string(number) + " " + std::string(dice() % 3000, 'x') + ")\n";
}

TEST(History, GivesEveryBrowserTheWholeMatchAtItsOwnPace) {
    std::mt19937 dice(1);
    History history(100'000'000);
    std::vector<Browser> browsers;
    std::string text = PREAMBLE;
    history.begin(PREAMBLE);
    for (int step = 0; step < 2000; ++step) {
        if (step % 200 == 0) browsers.emplace_back(history);
        std::string const line = randomStep(dice, step);
        history.append(line, step == 0 ? "" : "(playmode 0 play_on)\n");
        text += line;
        Browser& one = browsers[dice() % browsers.size()];
        if (dice() % 4 == 0) one.reconnect(history);
        if (dice() % 2 == 0) one.readOnce();
    }
    for (Browser& browser : browsers) {
        browser.readAll();
        EXPECT_TRUE(browser.page.log == text);
        EXPECT_EQ(browser.page.resets, 0);
    }
    Browser late(history);
    late.readAll();
    EXPECT_TRUE(late.page.log == text);
    EXPECT_LT(late.page.logEvents, 20); // in large pieces
}

TEST(History, ForgetsTheOldestPartWhenItGrowsTooLong) {
    constexpr std::size_t LIMIT = 100'000;
    std::mt19937 dice(2);
    History history(LIMIT);
    history.begin(PREAMBLE);
    Browser fast(history), slow(history);
    slow.readAll();
    std::string text, standing;
    for (int step = 0; step < 500; ++step) {
        std::string const line = randomStep(dice, step);
        history.append(line, standing);
        text += line;
        standing = "(playmode " + std::to_string(step) + " play_on)\n";
        fast.readAll();
        ASSERT_LE(history.size(), LIMIT);
    }
    EXPECT_GT(history.size(), LIMIT / 2);
    EXPECT_TRUE(fast.page.log == PREAMBLE + text); // nothing happens to who is there
    EXPECT_EQ(fast.page.resets, 0);

    Browser late(history), back(history);
    back.page = fast.page;
    back.reconnect(history);
    for (Browser* const browser : {&slow, &late, &back}) {
        browser->readAll();
    }
    EXPECT_EQ(slow.page.resets, 1); // it has missed what is gone
    EXPECT_EQ(back.page.resets, 0);
    EXPECT_TRUE(back.page.log == fast.page.log);
    EXPECT_TRUE(slow.page.log == late.page.log);
    ASSERT_TRUE(late.page.log.starts_with(PREAMBLE + "(playmode "));
    std::size_t const rest = late.page.log.find('\n', PREAMBLE.size()) + 1;
    std::string const kept = late.page.log.substr(rest);
    EXPECT_EQ(kept.size(), history.size());
    EXPECT_TRUE(text.ends_with(kept));
    int const first = std::stoi(kept.substr(6));
    EXPECT_EQ(late.page.log.substr(PREAMBLE.size(), rest - PREAMBLE.size()),
              "(playmode " + std::to_string(first - 1) + " play_on)\n");
}

TEST(History, AnIdOfAnotherMatchOrRunMeansAReset) {
    History history(1'000'000, "run");
    history.begin(PREAMBLE);
    history.append("(show 1)\n", "");
    for (char const* const id : {"run-2-0", "run-1-10", "other-1-9", "run-1-9x", "run-1--1",
                                 "run-1", "x", "run-1-99999999999999999999", "run-0-0"}) {
        EventReader page;
        Cursor cursor(history, id);
        std::string stream;
        EXPECT_TRUE(cursor.next(stream, AT_ONCE));
        page.take(stream);
        EXPECT_EQ(page.resets, 1) << id;
        EXPECT_EQ(page.log, PREAMBLE + "(show 1)\n") << id;
    }
    Cursor current(history, "run-1-9");
    std::string stream;
    EXPECT_TRUE(current.next(stream, AT_ONCE));
    EXPECT_EQ(stream, "");
}

TEST(History, ANewMatchResetsWhoeverSawTheOldOne) {
    History history(1'000'000);
    Browser early(history);
    early.readAll();
    for (int match = 0; match < 3; ++match) {
        history.begin(PREAMBLE);
        history.setPresent("(playmode 0 before_kick_off)\n", "(show 0)\n");
        early.readAll();
        EXPECT_EQ(early.page.log, PREAMBLE + "(playmode 0 before_kick_off)\n(show 0)\n");
        history.append("(show 1)\n", "");
    }
    EXPECT_EQ(early.page.resets, 2); // before the first match there is nothing to forget
}

TEST(History, IsReadWhileItIsWritten) {
    constexpr int STEPS = 3000;
    History history(50'000'000);
    history.begin(PREAMBLE);
    std::string text = PREAMBLE;
    std::vector<std::unique_ptr<Browser>> browsers;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        browsers.push_back(std::make_unique<Browser>(history));
        threads.emplace_back([&browser = *browsers.back()] {
            while (browser.page.log.find("(end)") == std::string::npos) {
                if (!browser.readOnce(LONG)) return;
            }
        });
    }
    std::mt19937 dice(3);
    for (int step = 0; step < STEPS; ++step) {
        std::string const line = step + 1 == STEPS ? "(end)\n" : randomStep(dice, step);
        history.append(line, "");
        text += line;
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (auto const& browser : browsers) {
        EXPECT_TRUE(browser->page.log == text);
    }
}

TEST(History, ClosingEndsEveryWait) {
    History history(1'000'000);
    std::thread waiting([&history] {
        std::string stream;
        Cursor cursor(history, "");
        EXPECT_FALSE(cursor.next(stream, LONG));
    });
    history.close();
    waiting.join();
}

} // namespace
