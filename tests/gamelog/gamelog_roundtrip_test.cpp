// What was read is written again byte for byte: real logs, a monitor's datagrams, and shows of
// random values.

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

#include "gamelog/Line.h"
#include "gamelog/Reader.h"
#include "gamelog/Writer.h"
#include "tests/gamelog/Files.h"

namespace {

using namespace gamelog;
using gamelog_test::unpacked;

std::string writtenAgain(Reader& reader) {
    std::string out;
    while (Record const* const record = reader.next()) {
        if (out.empty()) out = header(reader.version());
        append(out, *record, reader.version());
        out += '\n';
    }
    return out;
}

class RealLog : public testing::TestWithParam<int> {};

TEST_P(RealLog, IsWrittenAgainByteForByte) {
    std::string const path = LOGS "match_v" + std::to_string(GetParam()) + ".rcg.gz";
    std::string const plain = unpacked(path);
    ASSERT_GT(plain.size(), 100'000u);
    Reader packed = Reader::ofFile(path);
    EXPECT_EQ(writtenAgain(packed), plain);
    EXPECT_EQ(packed.error(), "");
    EXPECT_EQ(packed.version(), GetParam());
    Reader memory = Reader::ofMemory(plain);
    EXPECT_EQ(writtenAgain(memory), plain);
    EXPECT_EQ(static_cast<std::ptrdiff_t>(memory.line()),
              std::count(plain.begin(), plain.end(), '\n'));
}
INSTANTIATE_TEST_SUITE_P(Versions, RealLog, testing::Values(4, 5, 6));

TEST(Monitor, DatagramsAreWrittenAgainByteForByte) {
    std::istringstream datagrams(unpacked(LOGS "monitor_v5.txt.gz"));
    std::string datagram;
    Record record;
    int shows = 0;
    while (std::getline(datagrams, datagram)) {
        ASSERT_FALSE(readLine(datagram, record)) << datagram;
        std::string again;
        append(again, record, logVersionOfMonitor(5));
        ASSERT_EQ(again, datagram);
        shows += std::holds_alternative<Show>(record) ? 1 : 0;
    }
    EXPECT_GT(shows, 5);
}

/// Values as a match has them, and odd ones. Rounded as a log rounds them, so that they survive.
class RandomShow {
public:
    explicit RandomShow(unsigned seed) : dice_(seed) {}

    Show next(int version) {
        Show show;
        show.time = whole(6000);
        if (whole(3) == 0) show.scoreboard = scoreboard();
        show.ball = {rounded(60, 1e4), rounded(40, 1e4), rounded(3, 1e4), rounded(3, 1e4)};
        for (Player& player : show.players) {
            fill(player, version);
        }
        return show;
    }

private:
    int whole(int below) { return static_cast<int>(dice_() % static_cast<unsigned>(below)); }

    /// A double of what "%.6g" prints: no log can hold more.
    double rounded(double range, double stepsInOne) {
        double const exact = std::uniform_real_distribution(-range, range)(dice_);
        double const value = whole(5) == 0 ? 0.0 : std::rint(exact * stepsInOne) / stepsInOne;
        char text[32];
        std::snprintf(text, sizeof text, "%.6g", value);
        return std::strtod(text, nullptr);
    }

    Scoreboard scoreboard() {
        Scoreboard board;
        board.mode = static_cast<PlayMode>(whole(PLAY_MODES));
        board.score = {"A_b-3", "null", whole(20), whole(20), std::nullopt};
        if (whole(2) == 0) board.score.penalties = {{{whole(9), whole(9)}, {whole(9), whole(9)}}};
        return board;
    }

    void fill(Player& player, int version) {
        player.type = whole(18);
        player.state = whole(4) == 0 ? 0 : dice_() % 0x200000;
        player.x = rounded(150, 1e4);
        player.y = rounded(40, 1e4);
        player.vx = rounded(1, 1e4);
        player.vy = rounded(1, 1e4);
        player.body = rounded(180, 1e3);
        player.neck = rounded(90, 1e3);
        if (whole(3) == 0) player.pointTo = {rounded(60, 1e4), rounded(40, 1e4)};
        if (whole(3) == 0) player.attention = {whole(2) == 0 ? Side::left : Side::right, 7};
        player.highQuality = whole(2) == 0;
        player.viewWidth = 45 * (1 + whole(4));
        player.stamina = rounded(8000, 1e2);
        player.effort = rounded(1, 1e6);
        player.recovery = rounded(1, 1e9);
        if (version >= 5) player.capacity = rounded(130'600, 1);
        if (version >= 6) player.focusDist = rounded(40, 10);
        if (version >= 6) player.focusDir = rounded(90, 1);
        int const counted = version >= 6 ? COUNTS : COUNTS - 1;
        for (int kind = 0; kind < counted; ++kind) {
            player.counts[static_cast<std::size_t>(kind)] = whole(100'000);
        }
    }

    std::mt19937 dice_;
};

TEST(RandomShows, AreReadAsTheyWereWritten) {
    RandomShow shows(1);
    Record record;
    for (int i = 0; i < 3000; ++i) {
        int const version = OLDEST_VERSION + i % 3;
        Show const show = shows.next(version);
        std::string line;
        append(line, show, version);
        LineFault const fault = readLine(line, record);
        ASSERT_FALSE(fault) << describeFault(line, fault);
        ASSERT_EQ(std::get<Show>(record), show) << line;
    }
}

} // namespace
