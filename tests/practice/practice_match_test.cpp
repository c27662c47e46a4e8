#include "practice/Match.h"

#include <gtest/gtest.h>

#include "practice/Parameters.h"

using namespace practice;

namespace {

constexpr int right1 = 11;

// A match whose messages are kept per player.
class Game {
public:
    explicit Game(int players, int readySteps = 0, int halfCycles = 3000, std::uint64_t seed = 1)
        : match({halfCycles, seed, {players, readySteps, 1000}}) {}

    int join(const std::string& team, bool goalie = false) {
        const auto joined =
            match.join("(init " + team + " (version 7.08)" + (goalie ? " (goalie))" : ")"));
        EXPECT_EQ(joined.refusal, "");
        return joined.player;
    }
    // Team-mates of both sides, the first of each a goalie, already in play.
    void start(int perTeam) {
        for (int i = 0; i < perTeam; ++i) {
            join("Alpha", i == 0);
            join("Beta", i == 0);
        }
        while (world.mode == Phase::beforeKickOff)
            step();
        for (Player& p : world.players)
            p.pos = {-sign(p.side) * (30.0 + p.unum), 20.0 - 3.0 * p.unum};
    }
    void step(int n = 1) {
        for (int i = 0; i < 10 * n; ++i)
            poll();
    }
    void poll() {
        match.poll();
        for (const auto& [player, text] : match.takeOutbox())
            told[player].push_back(text);
    }
    void say(int player, std::string_view datagram) { match.receive(player, datagram); }
    void put(int player, Vec pos, double bodyDeg = 0.0) {
        Player& p = world.player(player);
        p.pos = pos;
        p.halt();
        p.body = toRad(bodyDeg);
    }
    void ball(Vec pos, Vec vel = {}) {
        world.ball.pos = pos;
        world.ball.halt();
        world.ball.vel = vel;
    }
    // The player kicks the ball that is put before its feet, in play.
    void playBall(int player, Vec pos, std::string_view command = "(kick 10 0)") {
        world.mode = {Phase::playOn};
        put(player, pos);
        ball(pos + Vec{0.5, 0.0});
        say(player, command);
        poll();
    }
    // Referee words and the times of sense_bodies since the last call: "kick_in_l@3 4 5 ...".
    std::string story(int player = 0) {
        std::string out;
        for (const std::string& m : std::exchange(told[player], {})) {
            if (m.starts_with("(sense_body ")) out += m.substr(12, m.find(' ', 12) - 11);
            const std::size_t word = m.find("referee ");
            if (word == m.npos) continue;
            out += m.substr(word + 8, m.size() - word - 9) + '@' + m.substr(6, m.find(' ', 6) - 6) +
                   ' ';
        }
        return out;
    }
    int count(int player, std::string_view part) const {
        const auto holds = [part](const std::string& m) { return m.find(part) != m.npos; };
        return static_cast<int>(std::ranges::count_if(told[player], holds));
    }

    Match match;
    World& world = match.world();
    Table<std::vector<std::string>, maxPlayers> told;
};

std::string repeated(const std::string& s, int n) {
    std::string out;
    while (n-- > 0)
        out += s;
    return out;
}

} // namespace

TEST(Match, JoiningTellsParametersInOrder) {
    Game g(22, 50, 300);
    EXPECT_EQ(g.join("Alpha", true), 0);
    EXPECT_EQ(g.join("Beta"), right1);
    g.poll();
    const auto& m = g.told[0];
    ASSERT_EQ(m.size(), 4U);
    EXPECT_EQ(m[0], "(init l 1 before_kick_off)");
    EXPECT_EQ(m[1], "(server_param 14.02 5 0.3 0.4 0.1 60 1.05 1 8000 45 1 0.3 0.5 0.002 1 0.3 0.6 "
                    "0.005 0.6 0.01 0.1 "
                    "0 1 1 1 1 0.085 0.94 0.05 0.2 3 2.7 0.006 0.027 0.7 2 1.7 100 -100 180 -180 "
                    "180 -180 90 -90 90 3 "
                    "0 0 0 0 1.085 1.2 1 1 2 1 2.5 0 0 128 128 300 1 1 1 1 50 1 300 100 150 10 100 "
                    "300 10 1 1 1 5 1 1 "
                    "1 9.15 50 0.1 0.01 -1 -1 -1 -1 -1 -1 -1 0 0 0 100 0 0 0 0 100)");
    EXPECT_EQ(m[3], "(player_type 0 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    EXPECT_EQ(g.world.player(right1).pos, (Vec{3.0, -37.0}));
}

TEST(Match, RefusesWhoDoesNotFit) {
    constexpr const char* noMore = "(error no_more_player_or_goalie_or_illegal_client_version)";
    Game g(22);
    for (int i = 0; i < 11; ++i)
        g.join("Alpha", i == 0);
    EXPECT_EQ(g.match.join("(init Alpha (version 7))").refusal, noMore);
    EXPECT_EQ(g.match.join("(init Beta (version 8.1))").refusal,
              noMore); // takes the name all the same
    EXPECT_EQ(g.match.join("(init Beta)").refusal, noMore);
    EXPECT_EQ(g.match.join("(init Gamma (version 7))").refusal, "(error no_more_team)");
    g.join("Beta", true);
    EXPECT_EQ(g.match.join("(init Beta (version 7)(goalie))").refusal, noMore);
    EXPECT_EQ(g.match.join("(reconnect Alpha 3)").refusal, "(error no_such_team_or_player)");
    g.say(3, "(bye)");
    g.poll();
    EXPECT_FALSE(g.world.player(3).active);
    EXPECT_EQ(g.match.join("(init Alpha (version 7))").refusal, noMore); // the number stays used
}

TEST(Match, SightsComeAtTheTicksOfTheEyes) {
    Game g(22);
    const int id = g.join("Alpha");
    std::vector<int> at;
    g.say(id, "(change_view narrow low)");
    for (int poll = 1; poll <= 60; ++poll) {
        const int before = g.count(id, "(see ");
        g.poll();
        if (g.count(id, "(see ") > before) at.push_back(10 * poll);
    }
    EXPECT_EQ(at, (std::vector{40, 80, 120, 150, 190, 230, 270, 300, 340, 380, 420, 450, 490, 530,
                               570, 600}));
    EXPECT_TRUE(g.told[0].back().starts_with("(see ")); // after the sense_body of the same step
    g.say(id, "(change_view wide)");
    const int before = g.count(id, "(see ");
    for (int poll = 0; poll < 60; ++poll)
        g.poll();
    EXPECT_EQ(g.count(id, "(see ") - before, 2);
}

TEST(Match, OneBodyCommandACycleAndOnlyWhatWorksCounts) {
    Game g(22);
    const int id = g.join("Alpha");
    g.say(
        id,
        "(move -10 5)(turn 10)(turn_neck 20)(turn_neck 20)(change_view wide)(change_view narrow)");
    g.say(id, "(say elevenchars)");
    g.say(id, R"((say "tencharsxx")(kick 50 0)(score)(foo)(turn 5))");
    g.step();
    const Player& p = g.world.player(id);
    EXPECT_EQ(p.pos, (Vec{-10.0, 5.0}));
    EXPECT_EQ(g.count(id, "(kick 0) (dash 0) (turn 0) (say 1) (turn_neck 1) (catch 0) (move 1) "
                          "(change_view 2))"),
              1);
    EXPECT_EQ(g.count(id, "(hear 0 self \"tencharsxx\")"), 1);
    EXPECT_EQ(g.count(id, "(score 0 0 0)"), 1);
    EXPECT_EQ(g.count(id, "(error illegal_command_form)"), 1);
    g.say(id, "(move 5 5)");
    g.step();
    EXPECT_EQ(g.count(id, "(warning moving_to_opponent_field)"), 1);
    EXPECT_LT(p.pos.x, 0.0); // moved back by the referee
    EXPECT_EQ(p.refused, 1); // the warning is none
    EXPECT_EQ(p.spareNeckTurns, 1);
}

TEST(Match, HearingIsLimitedPerTeamAndRelativeToTheBody) {
    Game g(22);
    for (int i = 0; i < 3; ++i)
        g.join("Alpha");
    g.join("Beta");
    g.put(0, {-10, 0}, 90.0);
    g.put(1, {-20, 0});
    g.put(2, {-25, 0});
    g.put(right1, {39.9, 0});
    g.say(1, "(say one)");
    g.say(2, "(say two)");
    g.poll();
    EXPECT_EQ(g.count(0, "(hear 0 90 \""), 1); // one of the two team-mates
    EXPECT_EQ(g.count(right1, "(hear 0"), 0);  // too far away
    g.say(right1, "(say far)");
    g.poll();
    EXPECT_EQ(g.count(0, "(hear 0 -90 \"far\")"), 1);
    g.step();
    g.say(2, "(say two)");
    g.poll();
    EXPECT_EQ(g.count(0, "(hear 0 90 \""), 2);
}

TEST(Referee, KickOffsHalvesAndEnd) {
    Game g(2, 2, 4);
    g.join("Alpha");
    g.join("Beta");
    g.step(30);
    EXPECT_EQ(g.story(),
              "0 0 kick_off_l@0 0 1 2 3 half_time@4 before_kick_off@4 4 4 kick_off_r@4 4 5 6 7 "
              "time_up@8 time_over@8 " +
                  repeated("8 ", 18));
    for (int i = 0; i < 2; ++i) { // nothing moves any more, but commands count
        g.say(0, "(dash 100)");
        g.step();
    }
    EXPECT_EQ(g.world.player(0).counts.dash, 2);
    EXPECT_EQ(g.world.player(0).vel, Vec{});
}

TEST(Referee, ASetPieceIsTakenWithTheKick) {
    Game g(2);
    g.join("Alpha");
    g.join("Beta");
    g.step();
    g.put(right1, {0.5, 0.0});
    g.put(0, {-0.4, 0.0});
    g.step();
    EXPECT_NEAR(g.world.player(right1).pos.x, 9.45, 1e-9);
    g.story();
    g.say(0, "(kick 20 0)");
    g.poll();
    EXPECT_EQ(g.story(), "play_on@1 ");
    EXPECT_EQ(g.world.player(0).counts.kick, 1);
}

TEST(Referee, GoalStopsTheClockForFiftySteps) {
    Game g(2);
    g.start(1);
    g.playBall(0, {40.0, 0.0});
    g.ball({51.5, 1.0}, {2.0, 0.0});
    g.put(0, {-40.0, 0.0});
    g.story();
    g.step(52);
    EXPECT_EQ(g.story(), "goal_l_1@1 " + repeated("1 ", 51) + "kick_off_r@1 2 ");
    EXPECT_EQ(g.world.ball.pos, Vec{});
}

TEST(Referee, BallOutOfPlay) {
    struct Case {
        int toucher;
        Vec ball;
        Vec vel;
        std::string mode;
        Vec spot;
    };
    for (const Case& c : {Case{0, {10, 33.5}, {0, 2}, "kick_in_r", {10, 34}},
                          {right1, {10, -33.5}, {0, -2}, "kick_in_l", {10, -34}},
                          {0, {52, 20}, {2, 0}, "goal_kick_r", {47, 9.16}},
                          {right1, {52, -20}, {2, 0}, "corner_kick_l", {51.5, -33}},
                          {0, {-52, 8}, {-2, 0}, "corner_kick_r", {-51.5, 33}}}) {
        Game g(2);
        g.start(1);
        g.playBall(c.toucher, {0, 0});
        g.ball(c.ball, c.vel);
        g.step();
        EXPECT_EQ(g.world.mode.word(), c.mode);
        EXPECT_NEAR(g.world.ball.pos.x, c.spot.x, 0.1) << c.mode;
        EXPECT_NEAR(g.world.ball.pos.y, c.spot.y, 1e-9) << c.mode;
        g.story();
        g.step(100);
        EXPECT_NE(g.story().find("drop_ball@"), std::string::npos); // nobody took it
        EXPECT_TRUE(g.world.mode == Phase::playOn);
    }
}

TEST(Referee, GoalKickLastsUntilTheBallLeavesTheArea) {
    Game g(2);
    g.start(1);
    g.playBall(0, {0, 0});
    g.ball({52.0, 20.0}, {2.0, 0.0});
    g.put(right1, {47.9, 9.16}, 180.0);
    g.put(0, {40.0, 0.0});
    g.step();
    EXPECT_LE(g.world.player(0).pos.x, 36.0 - playerSize + 1e-9);
    g.say(right1, "(kick 60 0)");
    g.poll();
    EXPECT_EQ(g.world.mode.word(), "goal_kick_r");
    g.step(15);
    EXPECT_TRUE(g.world.mode == Phase::playOn);
}

TEST(Referee, CatchesFaultsAndMoves) {
    Game g(2);
    g.start(2);
    auto catchAt = [&g](Vec pos) {
        g.world.player(0).catchBan = 0;
        g.put(0, pos);
        g.ball(pos + Vec{0.8, 0.0});
        g.story();
        g.say(0, "(catch 0)");
        g.poll();
    };
    g.playBall(right1, {-30, 0}); // the opponent had the ball
    catchAt({-45, 5});
    EXPECT_EQ(g.story(), "goalie_catch_ball_l@0 free_kick_l@0 ");
    for (int i = 0; i < 3; ++i) {
        g.step();
        g.say(0, "(move -40 0)");
    }
    g.step();
    EXPECT_EQ(g.count(0, "(error too_many_moves)"), 1);
    EXPECT_EQ(g.world.player(0).counts.move, 3);
    EXPECT_NEAR(distance(g.world.ball.pos, g.world.player(0).pos), 0.385, 1e-9);

    g.story();
    g.playBall(1, {-30, 0}); // a team-mate
    g.step();
    catchAt({-49, 0});
    EXPECT_EQ(g.story(), "goalie_catch_ball_l@5 back_pass_l@5 ");
    EXPECT_NEAR(g.world.ball.pos.x, -47.0, 1e-9);
    g.step(31);
    EXPECT_EQ(g.story(), repeated("5 ", 30) + "indirect_free_kick_r@5 6 ");

    g.playBall(right1, {-30, 0});
    catchAt({-30, 0});
    EXPECT_EQ(g.story(), "goalie_catch_ball_l@6 catch_fault_l@6 ");
    g.step(31);
    EXPECT_EQ(g.story(), repeated("6 ", 30) + "free_kick_r@6 7 ");
}

TEST(Referee, OffsideOfWhoGetsTheBall) {
    Game g(2);
    g.start(3); // 0..2 against 11..13
    g.put(11, {50, 0});
    g.put(12, {20, 20});
    g.put(13, {-20, 20});
    g.put(1, {30, -10});
    g.put(2, {15, 5});
    g.playBall(0, {10, 0});
    EXPECT_TRUE(g.world.mode == Phase::playOn);
    g.step();
    g.story();
    g.ball({30.5, -10});
    g.say(1, "(kick 50 0)");
    g.poll();
    EXPECT_EQ(g.story(), "offside_l@1 ");
    EXPECT_NEAR(g.world.ball.pos.x, 20.0, 0.5); // the second-last opponent's place
    EXPECT_NEAR(g.world.ball.pos.y, -10.0, 0.5);
    g.step(31);
    EXPECT_EQ(g.story(), repeated("1 ", 30) + "free_kick_r@1 2 ");
    EXPECT_LE(g.world.player(1).pos.x, 20.0);

    g.playBall(0, {10, 0}); // now a team-mate who stands level takes it
    g.ball({g.world.player(2).pos + Vec{0.5, 0}});
    g.say(2, "(kick 50 0)");
    g.poll();
    EXPECT_TRUE(g.world.mode == Phase::playOn);
}

TEST(Referee, SecondTouchOfATaker) {
    Game g(2);
    g.start(2);
    g.put(0, {-20, 0});
    g.ball({-19.5, 0});
    g.world.mode = {Phase::freeKick, Side::left};
    g.say(0, "(kick 20 0)");
    g.step();
    g.put(0, {-20, 0});
    g.ball({-19.5, 0});
    g.say(0, "(kick 5 0)"); // without a dash in between this is allowed
    g.step();
    EXPECT_TRUE(g.world.mode == Phase::playOn);
    g.say(0, "(dash 1)");
    g.step();
    g.ball({-19.5, 0});
    g.story();
    g.say(0, "(kick 5 0)");
    g.poll();
    EXPECT_EQ(g.story().substr(0, 18), "free_kick_fault_l@");
}

TEST(Referee, AStuckBallIsDropped) {
    Game g(2);
    g.start(1);
    g.playBall(0, {0, 0}, "(kick 1 0)");
    g.put(0, {-5, 0});
    g.story();
    g.step(99);
    EXPECT_EQ(g.story().find("drop_ball"), std::string::npos);
    g.step(2);
    EXPECT_NE(g.story().find("drop_ball@"), std::string::npos);
    EXPECT_GE(distance(g.world.player(0).pos, g.world.ball.pos), 9.45 - 1e-6);
}

namespace {

std::string chase(const World& world, const Player& p) {
    const Vec to = world.ball.pos - p.pos;
    const double dir = toDeg(normalized(to.angle() - p.body));
    if (to.length() < 1.0) {
        return "(kick 100 " + std::to_string(p.side == Side::left ? dir : -dir) + ")(say hit)";
    }
    if (std::abs(dir) > 10.0) return "(turn " + std::to_string(dir) + ")";
    return p.goalie ? "(catch 0)" : "(dash 80)(turn_neck 5)(change_view wide)";
}

// Twenty-two who chase the ball; what they were told, as one hash.
std::size_t playedHash(std::uint64_t seed) {
    Game g(22, 2, 150, seed);
    g.start(11);
    std::size_t hash = 0;
    for (int i = 0; i < 400; ++i) {
        for (const Player& p : g.world.players)
            g.say(playerId(p), chase(g.world, p));
        g.step();
    }
    for (const auto& messages : g.told) {
        for (const auto& m : messages)
            hash = hash * 31 + std::hash<std::string>{}(m);
    }
    const Statistics& seen = g.match.statistics();
    EXPECT_TRUE(g.world.mode == Phase::timeOver);
    EXPECT_NEAR(seen.possession(Side::left) + seen.possession(Side::right), 100, 1e-9);
    EXPECT_TRUE(results(g.world, g.match.statistics()).starts_with("score\t"));
    return hash;
}

} // namespace

TEST(Match, IsTheSameForTheSameSeed) {
    const std::size_t first = playedHash(1);
    EXPECT_EQ(playedHash(1), first);
    EXPECT_NE(playedHash(2), first);
}
