// The trainer over the loopback, without a clock: every answer as the field has it, what its
// commands do to the match, and that it cannot disturb it.

#include <gtest/gtest.h>
#include <random>

#include "gamelog/PlayMode.h"
#include "practice/GameLog.h"
#include "practice/Parameters.h"
#include "practice/Shows.h"
#include "practice/Text.h"
#include "practice/Trainer.h"
#include "tests/gamelog/Files.h"
#include "tests/practice/Game.h"
#include "tests/practice/Guest.h"

using namespace practice;
using namespace practice_test;
using namespace std::string_view_literals;

namespace {

using Texts = std::vector<std::string>;

Texts const ILLEGAL{"(error illegal_command_form)"};

struct Trained : Game {
    net::Address own = *net::makeAddress("127.0.0.1", 0);
    net::Address doorAddress{};
    std::unique_ptr<Trainer> trainer;
    Guest client;

    Trained() : Game(22, 1000) {
        auto door = net::Socket::bound(own);
        doorAddress = *net::makeAddress("127.0.0.1", door->port());
        trainer = std::make_unique<Trainer>(own, std::move(*door), 3000);
        match.addObserver(*trainer);
        afterStep = [this] { trainer->show(world); };
    }
    Texts atDoor(Guest& who, std::string_view text) {
        who.send(text, doorAddress);
        trainer->poll(match);
        return who.received();
    }
    /// The trainer comes, and the first team has a goalkeeper and another player.
    void begin(std::string_view greeting = "(init (version 7.08))") {
        ASSERT_FALSE(atDoor(client, greeting).empty());
        join("A", true);
        join("A");
    }
    /// Says it on its own port; returns what comes back.
    Texts say(std::string_view text) {
        client.send(text);
        trainer->poll(match);
        return client.received();
    }
};

} // namespace

TEST(Trainer, IsGreetedWithTheParameters) {
    Trained g;
    Texts const greeting = g.atDoor(g.client, "(init (version 7.08))");
    ASSERT_EQ(greeting.size(), 4U);
    EXPECT_EQ(greeting[0], "(init ok)");
    EXPECT_TRUE(greeting[1].starts_with("(server_param 14.02 5 0.3"));
    EXPECT_TRUE(greeting[2].starts_with("(player_param "));
    EXPECT_TRUE(greeting[3].starts_with("(player_type 0 "));
    EXPECT_NE(g.client.server.sin_port, g.doorAddress.sin_port);

    Guest second;
    EXPECT_EQ(g.atDoor(second, "(init (version 7.08))"),
              Texts{"(error already_have_offline_coach)"});
    EXPECT_EQ(g.atDoor(second, "(start)"), Texts{"(error already_have_offline_coach)"});
    EXPECT_TRUE(g.world.mode == Phase::beforeKickOff);
    // It may go on at the port of the introductions; the answer comes from its own.
    EXPECT_EQ(g.atDoor(g.client, "(check_ball)"), Texts{"(ok check_ball 0 in_field)"});
}

TEST(Trainer, RefusesIntroductionsThatMakeNoSense) {
    for (auto const& [greeting, answer] :
         {std::pair{"(init (version 8))", "(error illegal_client_version)"},
          {"(init (version 0))", "(error illegal_client_version)"},
          {"(init (version x))", "(error illegal_command_form)"},
          {"(init", "(error illegal_command_form)"}}) {
        Trained g;
        EXPECT_EQ(g.atDoor(g.client, greeting), Texts{answer}) << greeting;
    }
}

TEST(Trainer, OfAnOldProtocolSeesLongNames) {
    Trained g;
    EXPECT_EQ(g.atDoor(g.client, "(init (version 6))"), Texts{"(init ok)"});
    g.join("A", true);
    EXPECT_EQ(g.say("(look)"), Texts{"(ok look 0 ((goal r) 52.5 0) ((goal l) -52.5 0) "
                                     "((ball) 0 0 0 0) ((player \"A\" 1 goalie) -3 -37 0 0 0 0))"});
    g.say("(eye on)");
    g.step();
    EXPECT_TRUE(g.client.received().at(0).starts_with("(see 0 ((goal r) 52.5 0)"));
}

TEST(Trainer, WhoIsNotIntroducedStartsTheMatchAndHearsNothing) {
    Trained g;
    g.join("A");
    EXPECT_EQ(g.atDoor(g.client, "(move (ball) 10 5)"), Texts{});
    EXPECT_EQ(g.world.mode, (PlayMode{Phase::kickOff, Side::left}));
    EXPECT_EQ(g.world.ball.pos, (Vec{10.0, 5.0}));
    EXPECT_EQ(g.atDoor(g.client, "(eye on)"), Texts{});
    EXPECT_FALSE(g.trainer->isAwaited());
    EXPECT_EQ(g.atDoor(g.client, "(init (version 7))").size(), 4U);
    g.step();
    EXPECT_EQ(g.client.received(), Texts{}); // the eye is shut at first
}

TEST(Trainer, AnswersEveryCommand) {
    Trained g;
    g.begin();
    EXPECT_EQ(g.say("(team_names)"), Texts{"(ok team_names (team l A))\n"});
    g.join("B");
    for (auto const& [command, answer] : std::vector<std::pair<std::string_view, std::string>>{
             {"(team_names)", "(ok team_names (team l A) (team r B))\n"},
             {"(look)", "(ok look 0 ((g r) 52.5 0) ((g l) -52.5 0) ((b) 0 0 0 0) "
                        "((p \"A\" 1 goalie) -3 -37 0 0 0 0) ((p \"A\" 2) -6 -37 0 0 0 0) "
                        "((p \"B\" 1) 3 -37 0 0 0 0))"},
             {"(eye on)", "(ok eye on)"},
             {"(eye off)", "(ok eye off)"},
             {"(ear on)", "(ok ear on)"},
             {"(ear off)", "(ok ear off)"},
             {"(recover)", "(ok recover)\n"},
             {"(say any text (so)!)", "(ok say)"},
             {"(chapter corner 3)", "(ok chapter)"},
             {"(start)", "(ok start)"},
             {"(start)", "(ok start)"},
             {"(change_mode goal_kick_r)", "(ok change_mode)"},
             {"(move (ball) 1 2)", "(ok move)"},
             {" ( move(player A 2)\t-1.5e1 .5 )", "(ok move)"},
             {"(move (player Nobody 2) 1 2)", "(ok move)"},
             {"(move (player A 11) 1 2)", "(ok move)"},
             {"(check_ball)(start)", "(ok check_ball 0 in_field)"},
             {"(bye)", "(error unknown_command)"},
             {"(change_player_type A 2 5)", "(error unknown_command)"},
             {"(change_mode kick_off)", "(error illegal_mode)"},
             {"(change_mode play_on_l)", "(error illegal_mode)"},
             {"(change_mode none)", "(error illegal_mode)"},
             {"(move (ball) 1)", "(error illegal_object_form)"},
             {"(move (ball))", "(error illegal_object_form)"},
             {"(move (player A 12) 1 2)", "(error illegal_object_form)"},
             {"(move (player A) 1 2)", "(error illegal_object_form)"},
             {"(move (flag) 1 2)", "(error illegal_object_form)"},
             {"(move ball 1 2)", "(error illegal_object_form)"},
             {"(move (ball) 1 2 3 4)", "(error illegal_command_form)"},
             {"(move (ball) 1 2 3 4 5 6)", "(error illegal_command_form)"},
             {"(eye)", "(error illegal_command_form)"},
             {"(eye maybe)", "(error illegal_command_form)"},
             {"(look", "(error illegal_command_form)"},
             {"(say)", "(error illegal_command_form)"},
             {"(say \"quoted\")", "(error illegal_command_form)"},
             {"hello", "(error illegal_command_form)"},
             {"", "(error illegal_command_form)"}}) {
        EXPECT_EQ(g.say(command), Texts{answer}) << command;
    }
    EXPECT_EQ(g.say("(say " + std::string(128, 'x') + ')'), Texts{"(ok say)"});
    EXPECT_EQ(g.say("(say " + std::string(129, 'x') + ')'), ILLEGAL);
    EXPECT_EQ(g.say("(done)"), Texts{});
}

TEST(Trainer, MovesBallAndPlayersAtOnce) {
    Trained g;
    g.begin();
    Player const& p = g.world.player(1);
    g.world.player(1).vel = {0.3, 0.3};
    g.world.ballHolder = 0;
    g.say("(move (ball) 10 -5 0 1.5 -1)");
    EXPECT_EQ(g.world.ball.pos, (Vec{10.0, -5.0}));
    EXPECT_EQ(g.world.ball.vel, (Vec{1.5, -1.0}));
    EXPECT_EQ(g.world.ballHolder, NOBODY);
    g.say("(move (ball) 12 -5)");
    EXPECT_EQ(g.world.ball.vel, Vec{});

    g.say("(move (player A 2) 10 5 90)");
    EXPECT_EQ(p.pos, (Vec{10.0, 5.0}));
    EXPECT_EQ(p.vel, Vec{});
    EXPECT_NEAR(toDeg(p.body), 90.0, 1e-9);
    g.say("(move (player A 2) -10 5)"); // turns as it was
    EXPECT_NEAR(toDeg(p.body), 90.0, 1e-9);
    g.say("(move (player A 2) -10 5 -300 0.5 0)");
    EXPECT_NEAR(toDeg(p.body), -180.0, 1e-9);
    EXPECT_EQ(p.vel, (Vec{0.5, 0.0}));
    g.say("(move (ball) 1e300 -1e300 0 1e300 0)"); // goes nowhere near infinity
    EXPECT_EQ(g.world.ball.pos, (Vec{1000.0, -1000.0}));
    EXPECT_DOUBLE_EQ(g.world.ball.vel.length(), parameter("ballSpeedMax"));

    g.world.player(1).stamina = 10.0;
    g.say("(recover)");
    EXPECT_EQ(p.stamina, 8000.0);
}

TEST(Trainer, TellsWhereTheBallIs) {
    Trained g;
    g.begin();
    g.say("(change_mode pause)");
    for (auto const& [spot, where] : {std::pair{"52.5 7", "in_field"},
                                      {"52.6 7", "goal_r"},
                                      {"-52.6 -7", "goal_l"},
                                      {"52.6 7.1", "out_of_field"},
                                      {"0 -34.08", "in_field"},
                                      {"0 34.09", "out_of_field"}}) {
        g.say(text("(move (ball) ", spot, ')'));
        EXPECT_EQ(g.say("(check_ball)"), Texts{text("(ok check_ball 0 ", where, ')')}) << spot;
    }
}

/// Oddity of the field: before the kick-off a ball that is put into a goal counts.
TEST(Trainer, ABallPutIntoTheGoalBeforeTheKickOffCounts) {
    Trained g;
    g.begin();
    g.say("(move (ball) 53 0)");
    g.step();
    EXPECT_EQ(g.world.score[0], 1);
    EXPECT_EQ(g.count(0, "referee goal_l_1"), 1);
    g.step(51);
    EXPECT_EQ(g.world.mode, (PlayMode{Phase::kickOff, Side::right}));
}

/// Every mode of the field can be set, is announced, and is told to log and monitors as what it is.
TEST(Trainer, SetsAnyMode) {
    for (int number = 1; number < gamelog::PLAY_MODES; ++number) {
        auto const wanted = static_cast<gamelog::PlayMode>(number);
        std::string const word(gamelog::wordOf(wanted));
        Trained g;
        g.begin();
        g.say("(move (ball) 10 5 0 1 0)");
        EXPECT_EQ(g.say("(change_mode " + word + ')'), Texts{"(ok change_mode)"}) << word;
        bool const isDropped = wanted == gamelog::PlayMode::dropBall; // and play goes on at once
        EXPECT_EQ(logMode(g.world.mode), isDropped ? gamelog::PlayMode::playOn : wanted);
        g.step();
        EXPECT_EQ(g.count(0, "(hear 0 referee " + word + ')'), 1);
        bool const rolls = wanted == gamelog::PlayMode::playOn;
        if (wanted == gamelog::PlayMode::beforeKickOff) continue;
        EXPECT_NEAR(g.world.ball.pos.x, rolls ? 11.0 : 10.0, rolls ? 0.1 : 0.0) << word;
    }
}

TEST(Trainer, PlayGoesOnFromAMode) {
    Trained g;
    g.begin();
    g.join("B");
    g.say("(move (player A 2) 5 0)");
    g.say("(change_mode pause)");
    g.execute(1, "(dash 100)");
    g.step(3); // held: the clock stands, and nobody leaves his place
    EXPECT_EQ(g.world.cycle, 0);
    EXPECT_EQ(g.world.player(1).pos, (Vec{5.0, 0.0}));

    g.say("(move (ball) 51.5 33)");
    g.say("(move (player B 1) 50 30)");
    g.say("(change_mode corner_kick_l)");
    EXPECT_NEAR(distance(g.world.player(RIGHT_1).pos, g.world.ball.pos), 9.45, 1e-9);
    g.say("(move (player A 2) 51.5 33)");
    g.execute(1, "(kick 50 180)");
    EXPECT_TRUE(g.world.mode == Phase::playOn);
    // The free kick of an offence follows by itself.
    g.say("(change_mode foul_charge_l)");
    g.step(31);
    EXPECT_EQ(g.world.mode, (PlayMode{Phase::freeKick, Side::right}));
}

TEST(Trainer, SeesAndHears) {
    Trained g;
    g.begin();
    g.say("(change_mode play_on)");
    g.say("(ear on)");
    g.say("(eye on)");
    g.say("(move (ball) 1 2 0 1 0)");
    g.say("(move (player A 1) -50 0 -45)");
    g.say("(move (player A 2) -9.327551 5.002064 90)");
    g.execute(1, "(turn_neck 30)(say hallo)");
    EXPECT_EQ(g.client.received(), Texts{R"x((hear 0 (p "A" 2) "hallo"))x"});
    g.step();
    EXPECT_EQ(g.client.received(), Texts{"(see_global 1 ((g r) 52.5 0) ((g l) -52.5 0) ((b) " +
                                         text(g.world.ball.pos.x, ' ', g.world.ball.pos.y, ' ',
                                              g.world.ball.vel.x, ' ', g.world.ball.vel.y) +
                                         ") ((p \"A\" 1 goalie) -50 0 0 0 -45 0) "
                                         "((p \"A\" 2) -9.32755 5.00206 0 0 90 30))"});
    EXPECT_EQ(g.say("(change_mode kick_in_r)"),
              (Texts{"(hear 1 referee kick_in_r)", "(ok change_mode)"}));
    EXPECT_EQ(g.say("(say go (on))"), (Texts{R"x((hear 1 referee "go (on)"))x", "(ok say)"}));
    g.poll();
    EXPECT_EQ(g.count(0, "(hear 1 coach \"go (on)\")"), 1);
    g.say("(ear off)");
    EXPECT_EQ(g.say("(say again)"), Texts{"(ok say)"});
}

TEST(Trainer, ThinksOnlyWithItsEyeOn) {
    Trained g;
    EXPECT_FALSE(g.trainer->isAwaited());
    g.begin();
    EXPECT_FALSE(g.trainer->isAwaited());
    g.trainer->askToThink();
    EXPECT_EQ(g.client.received(), Texts{});
    g.say("(eye on)");
    g.trainer->askToThink();
    EXPECT_EQ(g.client.received(), Texts{"(think)"});
    EXPECT_TRUE(g.trainer->isAwaited());
    g.say("(done)");
    EXPECT_FALSE(g.trainer->isAwaited());
    g.step(); // the next cycle waits again
    EXPECT_TRUE(g.trainer->isAwaited());
    g.trainer->doNotAwait(); // it was too slow
    g.step();
    EXPECT_FALSE(g.trainer->isAwaited());
    g.say("(done)");
    g.step();
    EXPECT_TRUE(g.trainer->isAwaited());
    g.client = Guest{}; // gone
    g.step(3);
    EXPECT_FALSE(g.trainer->isAwaited());
    EXPECT_EQ(g.atDoor(g.client, "(init (version 7))").size(), 4U);
}

TEST(Trainer, ChaptersStandInTheLog) {
    Trained g;
    g.begin();
    LogOptions options;
    options.directory = testing::TempDir();
    options.stem = "practice_trainer_test";
    std::string problem;
    auto const log = GameLog::open(options, {}, problem);
    ASSERT_NE(log, nullptr) << problem;
    g.match.addObserver(*log);
    g.say("(change_mode play_on)");
    g.say("(chapter breakaway 17)");
    g.step();
    log->step(g.world);
    std::string const path = options.folder() + options.name();
    std::string const written = gamelog_test::bytesOf(path + ".rcg");
    EXPECT_NE(written.find("(msg 0 1 \"(chapter breakaway 17)\")\n(playmode 1 play_on)"),
              written.npos)
        << written.substr(0, 500);
    for (char const* const ending : {".rcg", ".rcl"}) {
        std::remove((path + ending).c_str());
    }
}

/// Whatever arrives, nothing is read beyond the datagram (run with sanitizers to see it), and the
/// world stays one of finite numbers.
TEST(Trainer, HostileDatagramsDoNoHarm) {
    Trained g;
    g.begin();
    std::mt19937 bits(1);
    constexpr std::array STARTS{
        "(move (ball) "sv,  "(move (player A 1"sv,  "(change_mode "sv, "(say "sv, "("sv,
        "(init (version"sv, "(move (player A 2) "sv};
    constexpr std::string_view ALPHABET = "() -.1690e+ball_rkickoff\xff\n\0"sv;
    for (int i = 0; i < 20000; ++i) {
        std::string datagram(STARTS.at(bits() % STARTS.size()));
        for (auto n = bits() % 40; n > 0; --n) {
            datagram += ALPHABET[bits() % ALPHABET.size()];
        }
        (void)readTrainerVersion(datagram);
        g.client.send(datagram);
        if (i % 50 != 0) continue;
        g.trainer->poll(g.match);
        g.client.received();
        g.step();
    }
    EXPECT_LT(std::abs(g.world.ball.pos.x), 2000.0);
    EXPECT_LT(std::abs(g.world.player(0).pos.x), 100.0);
    // A flood waits: a poll reads a hundred datagrams of it.
    g.say("(change_mode play_on)");
    for (int i = 0; i < 150; ++i) {
        g.client.send("(check_ball)");
    }
    g.trainer->poll(g.match);
    EXPECT_EQ(g.client.received().size(), 100U);
    g.trainer->poll(g.match);
    EXPECT_EQ(g.client.received().size(), 50U);
}
