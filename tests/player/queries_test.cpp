#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <unistd.h>

#include "player/Point.h"
#include "support/AgentHarness.h"

namespace {

/// The agent is number 7, in the middle, alone with the ball; a test adds the others.
class Queries : public testing::Test {
protected:
    Queries() {
        agent.join('l', 7);
        agent.placeMyself(0, 0);
        agent.placeBall(0, 0);
    }
    void clear() {
        world.situation().myTeam.players.resize(1);
        world.situation().theirTeam.players.clear();
    }
    Player& mate(int i) { return world.situation().myTeam.players.at(static_cast<std::size_t>(i)); }
    Player& opponent(int i) {
        return world.situation().theirTeam.players.at(static_cast<std::size_t>(i));
    }
    static int number(Player const* found) { return found == nullptr ? 0 : found->unum; }

    support::AgentHarness agent;
    WorldModel& world = agent.world;
};

TEST_F(Queries, PossessionAndReachIncludeTheirBounds) {
    agent.addOpponent(4, 3, 3);
    agent.placeBall(3, 0); // as far from both
    EXPECT_TRUE(world.haveBall() && world.hasBall_Player(mate(0)) && world.hasBall_Team());
    EXPECT_FALSE(world.hasBall_Player(opponent(0))); // team-mates come first
    EXPECT_TRUE(std::isnan(world.hasBall_PlayerRel(mate(0))));
    agent.placeBall(3.01F, -0.1F);
    EXPECT_FALSE(world.haveBall());
    agent.placeBall(2, 2);
    EXPECT_FALSE(world.haveBall() || world.hasBall_Team());

    agent.placeBall(1.085F, 0);
    EXPECT_TRUE(world.isInKickableArea());
    agent.placeBall(1.2F, 0);
    EXPECT_TRUE(world.isCatchable() && !world.isInKickableArea());
    agent.placeBall(1.201F, 0);
    EXPECT_FALSE(world.isCatchable());
    agent.placeBall(2, 0, -0.5F, 0); // comes 0.5 nearer, and the agent 0.6
    EXPECT_FALSE(world.willBeInKickableArea(0, 100) || world.willBeInKickableArea(1, 0));
    EXPECT_TRUE(world.willBeInKickableArea(1, 100) && world.willBeInKickableArea(2, 0));
}

TEST_F(Queries, SecondClosestIsCountedFromTheClosestTeamMate) {
    agent.placeBall(10, 0);
    EXPECT_TRUE(world.beingClosestToBall() && !world.beingSecondClosestToBall());
    agent.addTeammate(3, 8, 0);
    agent.addTeammate(4, 12, 0); // as far as number 3
    agent.addOpponent(5, 9, 0);  // nearer than all
    EXPECT_EQ(number(world.closestTeamMateToPoint(at(10, 0))), 3);
    EXPECT_EQ(number(world.closestPlayerToPoint(at(10, 0))), 5);
    EXPECT_EQ(number(world.secondClosestTeamMateToPoint(at(10, 0))), 7);
    EXPECT_EQ(number(world.secondClosestPlayerToPoint(at(10, 0))), 7);
    agent.addOpponent(6, 10, 5);
    EXPECT_EQ(number(world.secondClosestPlayerToPoint(at(10, 0))), 6);
    // Only one search asks for the age.
    opponent(0).age = -1;
    EXPECT_EQ(number(world.closestPlayerToPoint(at(10, 0))), 3);
    EXPECT_EQ(number(world.playerWithBall()), 5);
    // The same shirt in the other team is somebody else.
    agent.addOpponent(7, 10, 0);
    EXPECT_FALSE(world.beingClosestToBall());
}

TEST_F(Queries, ABallNobodyKnowsBelongsToNobody) {
    agent.addOpponent(4, 21, 0);
    for (float const unknown : {UNDEFINED_FLOAT, std::numeric_limits<float>::infinity(), NAN}) {
        agent.placeBall(unknown, unknown, unknown, unknown);
        EXPECT_EQ(world.playerWithBall(), nullptr);
        EXPECT_FALSE(world.haveBall() || world.hasBall_Team() || world.isInKickableArea());
        EXPECT_FALSE(world.beingSecondClosestToBall() || world.beingInAttackPosition());
    }
}

TEST_F(Queries, FieldAndOffsideAndLastMen) {
    EXPECT_TRUE(world.isOnField(at(52, 34)) && world.isOnField(at(-52, -34)));
    EXPECT_FALSE(world.isOnField(at(52.1, 0)) || world.isOnField(at(-52.1, 0)));
    EXPECT_FALSE(world.isOnField(at(0, 34.1)) || world.isOnField(at(0, -34.1)));

    agent.addOpponent(1, 51, 20);
    EXPECT_FALSE(world.isOffside(at(52, 30))); // only a goalie
    agent.addOpponent(2, 30, 5);
    agent.addOpponent(3, 20, 30);
    EXPECT_TRUE(world.isOffside(at(-10, 5.1))); // judged along y
    EXPECT_FALSE(world.isOffside(at(50, 5)));
    opponent(1).position = at(30, -20);
    EXPECT_FALSE(world.isOffside(at(50, 0)));
    opponent(1).age = 4;
    Player forward(at(50, 1), {}, 0, 0, 9, false, false);
    forward.age = 10;
    EXPECT_NEAR(world.isOffsideRel(forward), 0.4, 1e-6);

    agent.placeMyself(-50, 0);
    EXPECT_EQ(number(world.lastMan()), 0);
    agent.addTeammate(2, -20, 0);
    agent.addTeammate(3, -30, 0);
    mate(2).age = -1;
    EXPECT_EQ(number(world.lastMan()), 2);
    EXPECT_EQ(number(world.closestTeamMateToOwnGoalOutLine()), 7);
}

TEST_F(Queries, AreasAroundPlayers) {
    struct Case {
        Vector2D me, opponent;
        bool frontal, attacked, unmarked; // unmarked is near: the name says the reverse
    };
    // clang-format off
    for (Case const& c : {
        Case{at(0, 0), at(4.9, 0.1),   true,  false, false}, Case{at(0, 0), at(-4.9, 4.9),  true,  false, false},
        Case{at(0, 0), at(0, -0.1),    false, true,  true},  Case{at(0, 0), at(1.4, 1.4),   true,  true,  true},
        Case{at(0, 0), at(-1.6, 0.1),  true,  false, true},  Case{at(0, 0), at(5, 1),       false, false, false},
        Case{at(0, 0), at(0, 3),       true,  false, false}, Case{at(0, 0), at(2.9, 0),     false, false, true},
        // the second corner of an attack is (y + 1.5, x + 1.5)
        Case{at(10, 0), at(10, 0.5),   true,  false, true},  Case{at(10, 0), at(8, 11),     false, true,  false}}) {
        // clang-format on
        clear();
        agent.placeMyself(c.me.x, c.me.y);
        agent.addOpponent(4, c.opponent.x, c.opponent.y);
        agent.addOpponent(5, -40, -30);
        EXPECT_EQ(world.beingFrontalAttacked(), c.frontal) << c.opponent.x;
        EXPECT_EQ(world.beingAttacked(), c.attacked) << c.opponent.x;
        EXPECT_EQ(world.isAttackedTeammate(mate(0)), c.attacked) << c.opponent.x;
        EXPECT_EQ(world.isNotMarked(mate(0)), c.unmarked) << c.opponent.x;
    }
    clear();
    EXPECT_TRUE(world.isNotMarked(mate(0)));
    EXPECT_FALSE(world.beingAttacked() || world.beingFrontalAttacked());
}

TEST_F(Queries, PlacesToShootAndToStandAt) {
    EXPECT_TRUE(world.isAGoodPointToScore(at(30, 0)));
    EXPECT_FALSE(world.isAGoodPointToScore(at(29.9, 0)));
    agent.addTeammate(3, 32.6F, 0);
    EXPECT_TRUE(world.isAtGoodPointToScore(mate(1)));
    mate(1).position = at(32.5, 0);
    EXPECT_FALSE(world.isAtGoodPointToScore(mate(1)));
    agent.addOpponent(1, 4.9F, 0, true); // within reach of the agent, wherever the point is
    EXPECT_TRUE(world.isAGoodPointToScore(at(-50, 0)) && world.beingInOptimalPosition());
    opponent(0).position = at(5, 0);
    EXPECT_FALSE(world.isAGoodPointToScore(at(-50, 0)));

    world.myself().homePosition = at(2.9, -2.9);
    EXPECT_TRUE(world.beingInDefensePosition());
    world.myself().homePosition = at(3, 0);
    EXPECT_FALSE(world.beingInDefensePosition());
}

TEST_F(Queries, PassLinesAreBlockedInAWedge) {
    Vector2D const from = at(0, -20);
    Vector2D const to = at(0, 0); // a line along 270 degrees
    auto const blocked = [&](double x, double y, bool byMate) {
        clear();
        agent.placeMyself(0, -5); // the agent itself is in nobody's way
        EXPECT_FALSE(world.isIntersected(from, to));
        auto& team = byMate ? world.situation().myTeam : world.situation().theirTeam;
        team.players.emplace_back(at(x, y), Vector2D(), 0.0F, 0.0F, 3, false, !byMate);
        return world.isIntersected(from, to);
    };
    for (bool const byMate : {false, true}) {
        EXPECT_TRUE(blocked(0.3, -10, byMate) && blocked(-0.3, -10, byMate));
        EXPECT_FALSE(blocked(0.4, -10, byMate) || blocked(-0.4, -10, byMate));
        EXPECT_FALSE(blocked(0, 10, byMate));
        EXPECT_EQ(blocked(0, -30, byMate), !byMate); // an opponent behind the ball, too
    }
}

TEST_F(Queries, PassCandidates) {
    agent.placeBall(0, -10);
    EXPECT_EQ(world.getPassCand(true), nullptr);
    agent.addTeammate(3, 30, 10);
    agent.addTeammate(4, -40, 10);
    EXPECT_EQ(number(world.getPassCand(true)), 3);
    EXPECT_EQ(world.getPassCand(false), nullptr); // without opponents nobody is exposed least
    agent.addOpponent(5, -42, 10);
    agent.addOpponent(6, 32, 11);
    EXPECT_EQ(number(world.getPassCand(true)), 3);  // an opponent near: "not marked"
    EXPECT_EQ(number(world.getPassCand(false)), 4); // the last of the list counts
    mate(2).position.x = -100;
    opponent(0).position.x = -99;
    EXPECT_EQ(world.getPassCand(false), nullptr);
    opponent(1).position = at(20, 30);
    EXPECT_EQ(world.getPassCand(true), nullptr);
    opponent(1).position = at(28.5, 9); // near, and on the line
    EXPECT_EQ(world.getPassCand(true), nullptr);
    agent.placeMyself(50, 0);
    opponent(1).position = at(50, 2);
    EXPECT_EQ(world.getPassCand(true), nullptr); // best placed is the agent itself
}

TEST_F(Queries, InterceptionWaitsForTheBall) {
    Vector2D point;
    int cycles = -1;
    agent.addTeammate(3, 0.5F, 0);
    EXPECT_TRUE(world.interceptionPoint(mate(0), point, cycles, true));
    EXPECT_EQ(cycles, 0);
    EXPECT_TRUE(world.interceptionPoint(mate(0), point, cycles, false));
    EXPECT_EQ(cycles, 1); // to get going
    agent.placeBall(20, 0, -1, 0);
    EXPECT_TRUE(world.interceptionPoint(mate(0), point, cycles, false));
    double meeting = 20;
    for (int i = 0; static_cast<int>(meeting / 1.05) + 1 > i; ++i) {
        meeting -= std::pow(0.94, i);
    }
    EXPECT_NEAR(point.x, meeting, 1e-3);
    // The last cycle decides, in which the first of the list gets there too.
    EXPECT_EQ(number(world.fastestTeammateInterceptingBall()), 7);
    mate(0).position = at(-30, 0);
    EXPECT_EQ(number(world.fastestTeammateInterceptingBall()), 3);
    agent.placeBall(40, 0, 1, 0);
    EXPECT_FALSE(world.interceptionPoint(mate(0), point, cycles, false));
    EXPECT_NEAR(point.x, 40 + (1 - std::pow(0.94, 24)) / 0.06, 1e-3);
}

TEST_F(Queries, SeesInTheMiddleOfEitherHalfCycleComeAtABadTime) {
    world.myself().bodyInfo.viewWidth = 1;
    for (int const wait : {0, 15, 50, 75, 101}) {
        world.setTimeLastSB();
        usleep(static_cast<useconds_t>(wait) * 1000);
        world.setTimeLastSee();
        timeval const see = world.timeLastSee();
        timeval const senseBody = world.timeLastSB();
        auto const late = // by the clock, which may oversleep
            ((see.tv_sec - senseBody.tv_sec) * 1000000 + see.tv_usec - senseBody.tv_usec) / 1000;
        bool const bad = (5 < late && late < 45) || (64 < late && late < 100);
        EXPECT_EQ(world.haveOptimalSeeTimes(), !bad) << late;
    }
    world.myself().bodyInfo.viewQuality = 1;
    EXPECT_FALSE(world.haveOptimalSeeTimes());
    world.setSeeTimingSettled();
    EXPECT_TRUE(world.haveOptimalSeeTimes());
}

} // namespace
