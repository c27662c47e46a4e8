#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "practice/Match.h"

namespace practice_test {

using namespace practice;

constexpr int RIGHT_1 = 11;

/// A match whose messages are kept per player.
struct Game {
    Match match;
    World& world = match.world();
    Table<std::vector<std::string>, MAX_PLAYERS> told;
    std::function<void()> afterStep; ///< if any

    explicit Game(int players, int readySteps = 0, int halfCycles = 3000, std::uint64_t seed = 1)
        : match({halfCycles, seed, {players, readySteps, 1000}}) {}

    void join(std::string const& team, bool goalie = false) {
        auto const joined =
            match.join("(init " + team + " (version 7.08)" + (goalie ? "(goalie))" : ")"));
        EXPECT_EQ(joined.refusal, "");
    }
    /// Team-mates of both sides, the first of each a goalie: in play, out of each other's way.
    void start(int perTeam) {
        for (int i = 0; i < perTeam; ++i) {
            join("Alpha", i == 0);
            join("Beta", i == 0);
        }
        while (world.mode == Phase::beforeKickOff) {
            step();
        }
        for (Player& p : world.players) {
            p.pos = {-sign(p.side) * (30.0 + p.unum), 20.0 - 3.0 * p.unum};
        }
    }
    /// Time goes on. Returns the story of player 0: referee words and the times of sense_bodies,
    /// "kick_in_l@3 4 5 ".
    std::string poll(int n = 1) {
        std::string story;
        while (n-- > 0) {
            bool const stepped = match.poll();
            for (auto const& [player, text] : match.outbox().messages()) {
                told[player].push_back(text);
                if (player == 0) story += event(text);
            }
            match.outbox().clear();
            if (stepped && afterStep) afterStep();
        }
        return story;
    }
    std::string step(int n = 1) { return poll(10 * n); }
    std::string execute(int player, std::string_view datagram) {
        match.receive(player, datagram);
        return poll();
    }
    static std::string event(std::string const& message) {
        std::istringstream in(message);
        std::string kind, time, from, word;
        in >> kind >> time >> from >> word;
        if (kind == "(sense_body") return time + ' ';
        if (from != "referee") return {};
        word.back() = '@'; // was the parenthesis
        return word + time + ' ';
    }
    void put(int player, Vec pos, double bodyDeg = 0.0) {
        static_cast<Movable&>(world.player(player)) = {pos, {}, {}};
        world.player(player).body = toRad(bodyDeg);
    }
    void ball(Vec pos, Vec vel = {}) { world.ball = {pos, vel, {}}; }
    /// The player kicks the ball that is put before its feet.
    std::string playBall(int player, Vec pos, std::string_view command = "(kick 10 0)",
                         PlayMode mode = {Phase::playOn}) {
        world.mode = mode;
        put(player, pos);
        ball(pos + Vec{0.5, 0.0});
        return execute(player, command);
    }
    long count(int player, std::string_view part) const {
        auto const holds = [part](std::string const& m) { return m.find(part) != m.npos; };
        return std::ranges::count_if(told[player], holds);
    }
};

/// Nobody waits for more than the first two.
struct InPlay : Game {
    explicit InPlay(int perTeam) : Game(2) { start(perTeam); }
};

} // namespace practice_test
