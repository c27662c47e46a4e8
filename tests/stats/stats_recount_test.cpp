// Counts figures again from the rows of --cycles, in a plain way, for real logs and random ones.

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

#include "stats/Output.h"
#include "tests/stats/Film.h"

namespace {

using namespace stats_test;

using Row = std::map<std::string, std::string, std::less<>>;

std::vector<std::string> cells(std::string const& line) {
    std::vector<std::string> out;
    std::istringstream stream(line);
    for (std::string cell; std::getline(stream, cell, ',');) {
        out.push_back(cell);
    }
    return out;
}

std::vector<Row> rowsOf(std::string const& header, std::string const& body) {
    auto const names = cells(header.substr(0, header.size() - 1));
    std::vector<Row> rows;
    std::istringstream stream(body);
    for (std::string line; std::getline(stream, line);) {
        auto const values = cells(line);
        Row& row = rows.emplace_back();
        for (std::size_t i = 0; i < values.size(); ++i) {
            row[names.at(i)] = values[i];
        }
    }
    return rows;
}

double number(Row const& row, std::string const& name) {
    auto const found = row.find(name);
    if (found == row.end() || found->second.empty()) return -1;
    return std::strtod(found->second.c_str(), nullptr);
}

struct Recount {
    std::map<std::string, double> figures;

    void player(Row const& now, Row const& before, std::string const& side, int unum) {
        std::string const p = side + std::to_string(unum) + "_";
        auto const bits = static_cast<unsigned>(number(now, p + "state"));
        auto const old = static_cast<unsigned>(number(before, p + "state"));
        if ((bits & 6u) == 2u) ++figures[side + "kicks"];
        if ((bits & 1u) == 0 || (old & 1u) == 0) return;
        double const x = number(now, p + "x") - number(before, p + "x");
        double const y = number(now, p + "y") - number(before, p + "y");
        bool const moved = number(now, p + "move") != number(before, p + "move");
        if (!moved && x * x + y * y <= 4) figures[side + "metres"] += std::sqrt(x * x + y * y);
        double const spent = number(before, p + "stamina") + number(before, p + "capacity") -
                             number(now, p + "stamina") - number(now, p + "capacity");
        if (spent > 0) figures[side + "stamina"] += spent;
    }
};

/// Possession, domination, entries, kicks in play, metres and stamina, straight from the rows.
std::map<std::string, double> recounted(std::vector<Row> const& rows) {
    Recount count;
    std::string owner;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        Row const& now = rows[i];
        Row const& before = rows[i - 1];
        bool const play = now.at("playmode") == "play_on";
        bool const wasPlay = before.at("playmode") == "play_on";
        if (wasPlay && !play) owner.clear();
        std::string touching;
        for (std::string const side : {"l", "r"}) {
            for (int unum = 1; unum <= TEAM_SIZE; ++unum) {
                auto const bits =
                    static_cast<unsigned>(number(now, side + std::to_string(unum) + "_state"));
                if ((bits & 6u) == 2u && !touching.ends_with(side)) touching += side;
                count.player(now, before, side, unum);
            }
        }
        if (!play) continue;
        if (touching.size() == 1) owner = touching;
        double const x = number(now, "ball_x");
        if (x > 0) ++count.figures["l domination"];
        if (x < 0) ++count.figures["r domination"];
        if (owner.empty()) continue;
        ++count.figures[owner + " possession"];
        double const ahead = owner == "l" ? 1 : -1;
        auto const inArea = [ahead](Row const& row) {
            double const depth = ahead * number(row, "ball_x");
            return depth > 36 && depth <= 52.5 && std::abs(number(row, "ball_y")) < 20.16;
        };
        if (inArea(now) && !inArea(before)) ++count.figures[owner + " entries"];
    }
    return count.figures;
}

void compare(MatchFigures const& figures, std::map<std::string, double> counted,
             double roundingOfStamina) {
    for (Side const side : {Side::left, Side::right}) {
        std::string const s(letterOf(side));
        TeamFigures const& team = figures.team(side);
        int kicks = 0;
        for (int unum = 1; unum <= TEAM_SIZE; ++unum) {
            kicks += figures.players[Show::indexOf(side, unum)].kicks;
        }
        EXPECT_LE(kicks, counted[s + "kicks"]); // of a duel nobody's is counted
        EXPECT_NEAR(team.metres, counted[s + "metres"], 1e-6);
        EXPECT_NEAR(team.staminaSpent, counted[s + "stamina"], roundingOfStamina);
        EXPECT_EQ(team.possessionShows, counted[s + " possession"]);
        EXPECT_EQ(team.dominationShows, counted[s + " domination"]);
        EXPECT_EQ(team.areaEntries, counted[s + " entries"]);
    }
}

std::vector<Row> cyclesOf(std::string const& file) {
    Options options;
    options.rows = Rows::cycles;
    FileOutput const output = outputOf(file, options);
    EXPECT_EQ(output.error, "");
    return rowsOf(csvHeader(Rows::cycles), output.text);
}

MatchFigures figuresOf(std::string const& file) {
    Reader reader = Reader::ofFile(file);
    Analysis analysis;
    while (Record const* const record = reader.next()) {
        analysis.take(*record);
    }
    return analysis.finish();
}

TEST(Recount, OfRealLogs) {
    for (std::string const name : {"match_v5.rcg.gz", "match_v6.rcg.gz"}) {
        SCOPED_TRACE(name);
        compare(figuresOf(LOGS + name), recounted(cyclesOf(LOGS + name)), 1e-6);
    }
}

/// Touches by anybody anywhere, a ball that flies about, and stops that come as they like.
std::string randomLog(unsigned seed) {
    std::mt19937 dice(seed);
    auto const number = [&](double range) {
        return std::uniform_real_distribution(-range, range)(dice);
    };
    Film film;
    for (int i = 0; i < 300; ++i) {
        if (dice() % 40 == 0) {
            PlayMode const modes[] = {PlayMode::kickInLeft, PlayMode::goalRight, PlayMode::dropBall,
                                      PlayMode::cornerKickRight};
            film.mode(modes[dice() % 4]);
            film.roll(static_cast<int>(dice() % 4) + 1);
            film.mode(PlayMode::playOn);
        }
        for (Player& player : film.show().players) {
            if (dice() % 60 == 0) player.state |= state::KICK;
            if (dice() % 60 == 0) player.state |= state::KICK | state::KICK_FAILED;
            if (dice() % 90 == 0) player.state ^= state::ON_FIELD;
            if (dice() % 50 == 0) ++player.counts[static_cast<std::size_t>(Count::move)];
            player.x += number(1.6);
            player.y += number(1.6);
            player.stamina = 4000 + std::floor(number(3000));
        }
        film.show().ball = {number(56), number(36), 0, 0};
        film.roll();
    }
    return film.log;
}

TEST(Recount, OfRandomLogs) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::string const file = testing::TempDir() + "recount-" + std::to_string(seed) + ".rcg";
        std::ofstream(file) << randomLog(seed);
        compare(figuresOf(file), recounted(cyclesOf(file)), 1e-6);
        std::remove(file.c_str());
    }
}

TEST(RealLogs, HaveTheGoalTheOffsideAndThePassesThatWereSeen) {
    MatchFigures figures = figuresOf(LOGS "match_v5.rcg.gz");
    EXPECT_EQ(figures.date, "2026-11-21T16:50");
    EXPECT_EQ(figures.team(Side::right).name, "Beta");
    EXPECT_EQ(figures.team(Side::right).goals, 1);
    EXPECT_EQ(figures.team(Side::left).offsides, 1);
    EXPECT_EQ(told(figures, "shot"), (std::vector<std::string>{"r7 on_target"}));
    EXPECT_EQ(told(figures, "goal"), (std::vector<std::string>{"r7"}));
    EXPECT_EQ(told(figures, "free_kick"), (std::vector<std::string>{"r4"}));
    EXPECT_EQ(figures.cycles, 399); // the step that ended the first half left no show
}

TEST(RealLogs, OfVersion4SpendAboutAsMuchStamina) {
    // The same team in another match: within a third for each metre.
    MatchFigures const v4 = figuresOf(LOGS "match_v4.rcg.gz");
    MatchFigures const v6 = figuresOf(LOGS "match_v6.rcg.gz");
    auto const perMetre = [](MatchFigures const& f) {
        return (f.teams[0].staminaSpent + f.teams[1].staminaSpent) /
               (f.teams[0].metres + f.teams[1].metres);
    };
    EXPECT_NEAR(perMetre(v4) / perMetre(v6), 1, 0.33);
}

} // namespace
