// What the reader tolerates, what it refuses and in which words, and that hostile input ends well.

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "gamelog/Line.h"
#include "gamelog/Reader.h"
#include "gamelog/Writer.h"
#include "tests/gamelog/Files.h"

namespace {

using namespace gamelog;
using namespace gamelog_test;

std::vector<Record> recordsOf(std::string const& bytes, std::string* error = nullptr) {
    Reader reader = Reader::ofMemory(bytes);
    std::vector<Record> records;
    while (Record const* const record = reader.next()) {
        records.push_back(*record);
    }
    if (error != nullptr) {
        *error = reader.error();
    } else {
        EXPECT_EQ(reader.error(), "");
    }
    return records;
}

std::string errorOf(std::string const& bytes) {
    std::string error;
    recordsOf(bytes, &error);
    return error;
}

std::string packed(std::string const& text) {
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, text.size()) + 100, '\0');
    std::string input = text;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

TEST(Reader, KeepsWhatItDoesNotKnow) {
    auto const records = recordsOf("ULG5\n(weather 3 (rain 0.5))\n\n(msg 1 2 \"cut\n");
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(std::get<Unknown>(records[0]).line, "(weather 3 (rain 0.5))");
    EXPECT_EQ(std::get<Unknown>(records[1]).line, "");
    EXPECT_EQ(std::get<Unknown>(records[2]).line, "(msg 1 2 \"cut");
}

TEST(Reader, TakesAMessageUpToTheLastQuote) {
    auto const records = recordsOf("ULG5\n(msg 3 2 \"Recv A_1: (say \"x\") \xe4\xff\x01\")5\")\n");
    EXPECT_EQ(std::get<Msg>(records.at(0)).text, "Recv A_1: (say \"x\") \xe4\xff\x01\")5");
}

TEST(Reader, ReadsParametersWithAnythingInQuotes) {
    auto const records = recordsOf("ULG4\n(server_param (a 0.5)(b \"x (y) %z\")(c -1))\n");
    auto const& server = std::get<ServerParam>(records.at(0));
    EXPECT_EQ(*server.find("b"), "\"x (y) %z\"");
    EXPECT_EQ(server.number("a", 9), 0.5);
    EXPECT_EQ(server.number("b", 9), 9);
    EXPECT_EQ(server.number("d", 9), 9);
}

TEST(Reader, ReadsOtherBlanks) {
    std::string text;
    append(text, Show{}, 6);
    text.insert(text.find("(v h"), "  ");
    Record record;
    ASSERT_FALSE(readLine(text, record));
    EXPECT_EQ(std::get<Show>(record), [] {
        Show show;
        for (Player& player : show.players) {
            player.capacity = -1;
        }
        return show;
    }());
}

TEST(Reader, LeavesACutOffLineAsRemainder) {
    std::string const log = "ULG5\n(playmode 1 kick_off_l)\n(team 1 Al";
    Reader reader = Reader::ofMemory(log);
    EXPECT_NE(reader.next(), nullptr);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_EQ(reader.error(), "");
    EXPECT_EQ(reader.remainder(), "(team 1 Al");
}

TEST(Reader, FollowsAFileThatGrows) {
    TemporaryFile const file("ULG5\n(playmode 1 kick_off_l)\n(team 1 Al");
    Reader reader = Reader::ofFile(file.path);
    EXPECT_NE(reader.next(), nullptr);
    EXPECT_EQ(reader.next(), nullptr);
    file.add("pha Beta 0 1)\n");
    Record const* const record = reader.next();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(std::get<Team>(*record).score.left, "Alpha");
}

TEST(Reader, SaysWhereAndWhatItDidNotUnderstand) {
    std::string const start = "ULG5\n(playmode 1 kick_off_l)\n";
    EXPECT_EQ(errorOf(start + "(playmode 2 kick_on)\n"),
              "line 3, column 13: expected a play mode, found 'kick_on)'");
    EXPECT_EQ(errorOf(start + "(team 2 A B 0 x)\n"),
              "line 3, column 15: expected a whole number, found 'x)'");
    EXPECT_EQ(errorOf(start + "(team 2 A B 0 99999999999)\n"),
              "line 3, column 15: expected a whole number, found '99999999999)'");
    EXPECT_EQ(errorOf(start + "(team 2 A B 0 0) \n"),
              "line 3, column 17: expected the end of the line, found ' '");
    EXPECT_EQ(errorOf(start + "hello\x01\n"),
              "line 3, column 1: expected a record in parentheses, found 'hello?'");
    EXPECT_EQ(errorOf(start + "(show 3 ((b) 0 0 nan 0))\n"),
              "line 3, column 18: expected a number, found 'nan 0))'");
    EXPECT_EQ(errorOf(start + "(show 3 ((b) 0 0 0 0))\n"),
              "line 3, column 22: expected ((l 1), found ')'");
}

TEST(Reader, RefusesWhatIsNoLogOfItsVersions) {
    EXPECT_NE(errorOf("").find("it is empty"), std::string::npos);
    EXPECT_NE(errorOf("<html>\n").find("expected ULG4, ULG5 or ULG6"), std::string::npos);
    EXPECT_NE(errorOf("[\n{}\n").find("JSON"), std::string::npos);
    EXPECT_NE(errorOf("ULG\3 binary").find("another version"), std::string::npos);
    EXPECT_NE(errorOf("ULG7\n").find("another version"), std::string::npos);
    EXPECT_NE(errorOf(std::string(3'000'000, 'x')).find("a line of more than"), std::string::npos);
    EXPECT_NE(errorOf("ULG5\n(" + std::string(3'000'000, ' ')).find("line 2: a line of more than"),
              std::string::npos);
    Reader missing = Reader::ofFile("/nowhere/match.rcg");
    EXPECT_EQ(missing.next(), nullptr);
    EXPECT_EQ(missing.error(), "No such file or directory");
}

TEST(Gzip, MayBeOfSeveralParts) {
    auto const records = recordsOf(packed("ULG5\n(playmode 1 kick") + packed("_off_l)\n"));
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(std::get<PlayModeChange>(records[0]).mode, PlayMode::kickOffLeft);
}

TEST(Gzip, MayEndEarlyButNotBeDamaged) {
    std::string const whole = bytesOf(LOGS "match_v4.rcg.gz");
    EXPECT_GT(recordsOf(whole.substr(0, whole.size() / 2)).size(), 20u);
    std::string damaged = whole;
    damaged[whole.size() / 2] = static_cast<char>(~damaged[whole.size() / 2]);
    damaged[whole.size() / 2 + 1] = 0;
    EXPECT_NE(errorOf(damaged), "");
}

TEST(Numbers, AreThoseOfTheCLibrary) {
    std::mt19937 dice(3);
    Record record;
    char const* const formats[] = {"%.6g", "%.17g", "%.3f", "%.10e", "%.0f"};
    for (int i = 0; i < 20'000; ++i) {
        double const scale = std::pow(10.0, static_cast<int>(dice() % 24) - 13);
        char text[64];
        std::snprintf(text, sizeof text, formats[i % 5],
                      std::uniform_real_distribution(-scale, scale)(dice));
        std::string line;
        append(line, Show{}, 4);
        line.replace(line.find("((b) 0") + 5, 1, text);
        ASSERT_FALSE(readLine(line, record)) << text;
        double const value = std::get<Show>(record).ball.x;
        double const expected = std::strtod(text, nullptr);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected))
            << text;
    }
}

TEST(Lines, MayBeCutAnywhereOrGarbled) {
    std::string const log = unpacked(LOGS "match_v6.rcg.gz");
    std::size_t const begin = log.find("(show 40 ");
    std::string const show = log.substr(begin, log.find('\n', begin) - begin);
    Record record;
    for (std::size_t length = std::strlen("(show"); length < show.size(); ++length) {
        ASSERT_TRUE(readLine(show.substr(0, length), record)) << length;
    }
    std::mt19937 dice(5);
    for (int i = 0; i < 20'000; ++i) {
        std::string garbled = show;
        garbled[dice() % garbled.size()] = static_cast<char>(dice());
        if (LineFault const fault = readLine(garbled, record)) {
            EXPECT_LE(fault.column, garbled.size() + 1);
            EXPECT_FALSE(describeFault(garbled, fault).empty());
        }
    }
}

} // namespace
