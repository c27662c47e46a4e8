// The logs that the server writes, read again and compared with the match, and their forms with
// those of the field's server.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "gamelog/Reader.h"
#include "practice/GameLog.h"
#include "practice/ParameterRecords.h"
#include "practice/Results.h"
#include "tests/gamelog/Files.h"
#include "tests/practice/Game.h"
#include "tests/practice/Skeleton.h"

using namespace practice;
using namespace practice_test;
using gamelog_test::bytesOf;

namespace {

namespace state = gamelog::state;

/// A temporary folder; the destructor removes it.
struct Folder {
    std::string path = "/tmp/practice-log-XXXXXX";

    Folder() { EXPECT_NE(mkdtemp(path.data()), nullptr); }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;
    ~Folder() { std::filesystem::remove_all(path); }

    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (auto const& entry : std::filesystem::directory_iterator(path)) {
            names.push_back(entry.path().filename());
        }
        std::ranges::sort(names);
        return names;
    }
};

LogOptions named(std::string const& stem, int version = 5) {
    LogOptions options;
    options.stem = stem;
    options.version = version;
    return options;
}

LogOptions inFolder(std::string const& directory, bool dated = false) {
    LogOptions options;
    options.directory = directory;
    options.dated = dated;
    return options;
}

std::unique_ptr<GameLog> openLog(LogOptions const& options) {
    std::string problem;
    auto log = GameLog::open(options, parameterRecords({}, 6000), problem);
    EXPECT_NE(log, nullptr) << problem;
    return log;
}

/// A match that writes its log and keeps the world at the end of every step.
struct LoggedGame : Game {
    std::unique_ptr<GameLog> log;
    std::vector<World> steps;

    LoggedGame(LogOptions const& options, int halfCycles, int players = 22)
        : Game(players, 2, halfCycles) {
        log = openLog(options);
        match.addObserver(*log);
        afterStep = [this] {
            log->step(world);
            steps.push_back(world);
        };
    }
};

std::vector<std::string> linesOf(std::string const& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// The kinds of records without the parameters, each with its time: "playmode 1".
std::vector<std::string> storyOf(std::string const& log) {
    std::vector<std::string> story;
    for (std::string const& line : linesOf(log)) {
        std::istringstream in(line);
        std::string kind, time;
        in >> kind >> time;
        if (kind.ends_with("_param") || kind.ends_with("_type") || !kind.starts_with('(')) continue;
        story.push_back(kind.substr(1) + ' ' + time);
    }
    return story;
}

void expectSame(gamelog::Player const& logged, Player const& p, int version) {
    Counts const& n = p.counts;
    EXPECT_EQ(logged.state, state::ON_FIELD | (p.goalie ? state::GOALIE : 0U) | p.marks);
    EXPECT_NEAR(logged.x, p.pos.x, 0.000051);
    EXPECT_NEAR(logged.y, p.pos.y, 0.000051);
    EXPECT_NEAR(logged.vx, p.vel.x, 0.000051);
    EXPECT_NEAR(logged.body, toDeg(p.body), 0.00051);
    EXPECT_NEAR(logged.neck, toDeg(p.neck), 0.00051);
    EXPECT_NEAR(logged.stamina, p.stamina, 0.006);
    EXPECT_NEAR(logged.capacity, version == 4 ? -1.0 : p.capacity, 0.6); // six digits
    EXPECT_EQ(logged.counts, (std::array<int, 12>{n.kick, n.dash, n.turn, n.catches, n.move,
                                                  n.turnNeck, n.changeView, n.say}));
}

/// Everything of a show against the world of its step.
void expectSame(gamelog::Show const& show, World const& world, int version) {
    EXPECT_EQ(show.time, world.cycle);
    EXPECT_NEAR(show.ball.x, world.ball.pos.x, 0.000051);
    EXPECT_NEAR(show.ball.vy, world.ball.vel.y, 0.000051);
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        expectSame(show.players[static_cast<std::size_t>(i)], world.player(i), version);
    }
}

/// The names of all pairs of a record: "(player_param a b c".
std::string namesOf(std::string const& record) {
    std::string out = record.substr(0, record.find(' '));
    for (std::size_t at = record.find('(', 1); at != record.npos; at = record.find('(', at + 1)) {
        out += ' ' + record.substr(at + 1, record.find(' ', at) - at - 1);
    }
    return out;
}

/// The first line that starts so, of one of the field's own logs.
std::string fieldLine(std::string const& file, std::string const& start) {
    for (std::string const& line : linesOf(gamelog_test::unpacked(LOGS + file))) {
        if (line.starts_with(start)) return line;
    }
    return "none";
}

} // namespace

TEST(GameLog, ReadAgainIsTheMatch) {
    Folder const folder;
    for (int const version : {4, 5, 6}) {
        LoggedGame g(named(folder.path + "/m", version), 40);
        g.start(11);
        while (g.world.mode != Phase::timeOver) {
            for (int id = 0; id < MAX_PLAYERS; ++id) {
                g.match.receive(id, id % 2 == 0 ? "(kick 100 20)(say hit)" : "(dash 80)");
                g.match.receive(id, "(turn_neck 20)(turn 40)");
            }
            g.step();
        }
        g.log->finish(g.world);
        std::string const bytes = bytesOf(folder.path + "/m.rcg");
        gamelog::Reader reader = gamelog::Reader::ofMemory(bytes);
        auto world = g.steps.begin();
        int shows = 0, types = 0;
        while (gamelog::Record const* record = reader.next()) {
            types += std::holds_alternative<gamelog::PlayerType>(*record) ? 1 : 0;
            EXPECT_FALSE(std::holds_alternative<gamelog::Unknown>(*record));
            auto const* const show = std::get_if<gamelog::Show>(&*record);
            if (show == nullptr) continue;
            ++shows;
            while (world->mode == Phase::beforeKickOff || world->cycle != show->time) {
                ++world;
            }
            expectSame(*show, *world++, version);
        }
        EXPECT_EQ(reader.error(), "");
        EXPECT_EQ(reader.version(), version);
        EXPECT_EQ(types, 18);
        EXPECT_GE(shows, 79); // all of 80 cycles but the one that ends the first half
    }
}

TEST(GameLog, RecordsComeInTheirOrderOnTheirOccasions) {
    Folder const folder;
    LoggedGame g(named(folder.path + "/m.rcg"), 8);
    g.start(1);
    EXPECT_EQ(storyOf(bytesOf(folder.path + "/m.rcg")), std::vector<std::string>{}); // time 0
    g.playBall(0, {51.5, 0}, "(kick 100 0)");
    g.step(55);
    std::vector<std::string> expected{"playmode 1", "team 1"};
    expected.insert(expected.end(), 51, "show 1");
    for (char const* const record : {"playmode 2", "show 2", "show 3", "show 4", "show 5"}) {
        expected.emplace_back(record);
    }
    std::string log = bytesOf(folder.path + "/m.rcg"); // grows from step to step
    EXPECT_EQ(storyOf(log), expected);
    EXPECT_NE(log.find("\n(playmode 1 goal_l)\n(team 1 Alpha Beta 1 0)\n(show 1 "), log.npos);

    g.step(50); // the goal kick, the break, the second half and the end
    g.log->finish(g.world);
    log = bytesOf(folder.path + "/m.rcg");
    auto const story = storyOf(log);
    std::vector<std::string> const end(story.end() - 5, story.end());
    EXPECT_EQ(end,
              (std::vector<std::string>{"show 15", "playmode 16", "show 16", "msg 16", "team 16"}));
    EXPECT_EQ(std::ranges::count(story, "show 8"), 0); // the step that ends the half
    auto const lines = linesOf(log);
    EXPECT_EQ(lines.back(), "(team 16 Alpha Beta 1 0)");
    EXPECT_TRUE(lines[lines.size() - 2].ends_with(" Alpha_1-vs-Beta_0)\")"));
    EXPECT_EQ(skeletonOf(lines[lines.size() - 2]), "(msg N N \"(result N Alpha_1-vs-Beta_0)\")");
}

TEST(GameLog, TextLogTellsWhatWasSaidAndWhen) {
    Folder const folder;
    LoggedGame g(inFolder(folder.path), 3000, 2);
    g.start(1);
    g.match.receive(0, std::string("(turn 5)\n(say \"a b\")\n\0", 21));
    g.match.receive(RIGHT_1, "(nonsense\r\n");
    g.step();
    g.playBall(0, {51.5, 0}, "(kick 100 0)");
    g.step(52);
    std::string const text = bytesOf(folder.path + "/match.rcl");
    EXPECT_TRUE(text.starts_with("0,0\tRecv Alpha_1: (init Alpha (version 7.08)(goalie))\n"
                                 "0,0\tRecv Beta_1: (init Beta (version 7.08)(goalie))\n"))
        << text;
    for (char const* const line :
         {"0,3\tRecv Alpha_1: (turn 5) (say \"a b\")\n", "0,3\tRecv Beta_1: (nonsense \n",
          "\t(referee kick_off_l)\n", "1,0\tRecv Alpha_1: (kick 100 0)\n",
          "2,0\t(referee goal_l_1)\n", "2,51\t(referee kick_off_r)\n"}) {
        EXPECT_NE(text.find(line), text.npos) << line << text;
    }
}

TEST(GameLog, TakesTheFormsOfTheField) {
    auto const ours = parameterRecords({}, 6000);
    ASSERT_EQ(ours.size(), 20U);
    for (int const i : {0, 1, 2}) {
        std::string const& line = ours[static_cast<std::size_t>(i)];
        std::string const theirs = fieldLine("match_v5.rcg.gz", line.substr(0, line.find(' ')));
        EXPECT_EQ(namesOf(line), namesOf(theirs));
        // Numbers where it has numbers, texts where it has texts.
        EXPECT_EQ(std::ranges::count(line, '"'), std::ranges::count(theirs, '"'));
    }
    Folder const folder;
    for (int const version : {4, 5, 6}) {
        std::string const name = "match_v" + std::to_string(version) + ".rcg.gz";
        LoggedGame g(named(folder.path + "/m", version), 3000);
        g.start(11);
        g.step(2);
        std::string const log = bytesOf(folder.path + "/m.rcg");
        auto const lines = linesOf(log);
        EXPECT_EQ(lines[0], "ULG" + std::to_string(version));
        for (char const* const kind : {"(show 1 ", "(playmode 1 ", "(team 1 "}) {
            auto const mine = std::ranges::find_if(
                lines, [kind](std::string const& line) { return line.starts_with(kind); });
            ASSERT_NE(mine, lines.end()) << kind;
            // The field's states have digits and letters: 0x1, 0x9.
            EXPECT_EQ(skeletonOf(*mine), skeletonOf(fieldLine(name, kind)).c_str()) << kind;
        }
    }
}

TEST(GameLog, StatesTellWhatHappenedInTheStep) {
    InPlay g(2);
    std::map<int, std::uint32_t> marks;
    g.afterStep = [&] {
        for (int const id : {0, 1, RIGHT_1}) {
            marks[id] |= g.world.player(id).marks;
        }
    };
    auto const next = [&] {
        marks.clear();
        g.step();
    };
    g.playBall(0, {-20, 0});
    g.match.receive(1, "(kick 100 0)"); // out of reach
    g.match.receive(RIGHT_1, "(catch 0)");
    next();
    EXPECT_EQ(marks[0], state::KICK);
    EXPECT_EQ(marks[1], state::KICK | state::KICK_FAILED);
    EXPECT_EQ(marks[RIGHT_1], state::CATCH | state::CATCH_FAILED);
    next();
    EXPECT_EQ(marks[0] | marks[1] | marks[RIGHT_1], 0U); // of that step only
    g.put(1, g.world.player(0).pos + Vec{0.3, 0.0});
    g.ball(g.world.player(RIGHT_1).pos + Vec{0.1, 0.0});
    next();
    EXPECT_EQ(marks[0], state::COLLIDED_PLAYER);
    EXPECT_EQ(marks[1], state::COLLIDED_PLAYER);
    EXPECT_EQ(marks[RIGHT_1], state::COLLIDED_BALL | state::BALL_TO_PLAYER);
    g.ball({0, 20});
    g.put(0, {51.9, 7.07});
    g.world.player(0).vel = {0.5, 0.0};
    next();
    EXPECT_EQ(marks[0], state::HIT_POST);

    g.playBall(1, {-30, 0}); // to the own goalie
    g.step();
    g.put(0, {-49, 0});
    g.ball({-48.2, 0});
    g.execute(0, "(catch 0)");
    next();
    EXPECT_EQ(marks[0], state::CATCH | state::BACK_PASS);
    g.step(40);
    g.playBall(1, {0, 0}, "(kick 1 0)", {Phase::kickIn, Side::left});
    g.step();
    g.execute(1, "(dash 1)");
    g.step();
    g.playBall(1, {0, 0});
    next();
    EXPECT_EQ(marks[1], state::KICK | state::FREE_KICK_FAULT);
}

TEST(GameLog, NamesAreThoseOfTheField) {
    Folder const folder;
    LogOptions const options = inFolder(folder.path, true);
    Game g(22);
    {
        auto const log = openLog(options);
        EXPECT_EQ(folder.files(), (std::vector<std::string>{"incomplete.rcg", "incomplete.rcl"}));
        std::string problem;
        EXPECT_EQ(GameLog::open(options, {}, problem), nullptr); // two matches, one name
        EXPECT_NE(problem.find("another program writes the log"), problem.npos) << problem;
        g.join("../A/b"); // a name that must not lead out of the folder
        log->finish(g.world);
    }
    auto const files = folder.files();
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].substr(files[0].find('-')), "-.._A_b_0-vs-null.rcg");
    EXPECT_EQ(files[0].find('-'), 14U); // year to second
    EXPECT_EQ(files[1].substr(0, files[1].size() - 1) + 'g', files[0]);
    std::string problem;
    EXPECT_EQ(GameLog::open(named(folder.path + "/none/m"), {}, problem), nullptr);
    EXPECT_EQ(problem,
              "cannot write the log " + folder.path + "/none/m.rcg: No such file or directory");
}

/// The program itself, stopped by a signal in the middle of a match.
TEST(GameLog, IsWholeWhenASignalEndsTheMatch) {
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        Folder const folder;
        std::string const stem = folder.path + "/m", results = folder.path + "/results.json";
        pid_t const server = fork();
        ASSERT_GE(server, 0);
        if (server == 0) {
            execl(PRACTICE_SERVER, "practice-server", "--port", "0", "--scoreboard", "off", "--log",
                  stem.c_str(), "--results", results.c_str(), nullptr);
            _exit(127);
        }
        for (int i = 0; i < 500 && bytesOf(stem + ".rcg").empty(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        kill(server, signal);
        int status = -1;
        waitpid(server, &status, 0);
        EXPECT_EQ(status, 0);
        auto const lines = linesOf(bytesOf(stem + ".rcg"));
        ASSERT_EQ(lines.size(), 23U);
        EXPECT_TRUE(lines[21].ends_with(" null-vs-null)\")")) << lines[21];
        EXPECT_EQ(lines[22], "(team 0 null null 0 0)");
        EXPECT_TRUE(bytesOf(results).starts_with("{\"cycles\":0,"));
    }
}

TEST(Results, TellWhatOnlyTheServerKnows) {
    Game g(22);
    g.join("A\\b", true);
    g.join("A\\b");
    g.match.remove(1);
    g.world.score = {2, 1};
    Player& p = g.world.player(0);
    p.answers = 5;
    p.lateAnswers = 1;
    p.refused = 2;
    p.spareNeckTurns = 3;
    p.counts = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(
        resultsJson(g.world),
        R"({"cycles":0,"half_cycles":3000,"finished":false,"score":[2,1],"teams":["A\\b",null],"players":[
{"side":"l","unum":1,"goalie":true,"answers":5,"late":1,"refused":2,"spare_turn_necks":3,"missed":0,"lost":false,"executed":{"kick":1,"dash":2,"turn":3,"say":4,"turn_neck":5,"catch":6,"move":7,"change_view":8}},
{"side":"l","unum":2,"goalie":false,"answers":0,"late":0,"refused":0,"spare_turn_necks":0,"missed":0,"lost":true,"executed":{"kick":0,"dash":0,"turn":0,"say":0,"turn_neck":0,"catch":0,"move":0,"change_view":0}}]}
)");
}
