#include <algorithm>
#include <unistd.h>

#include "skills/Utils.h"
#include "tests/geometry/Sweep.h"
#include "tests/player/Point.h"
#include "tests/support/AgentHarness.h"

namespace {

using Players = std::vector<Player const*>;

bool same(Player const* a, Player const* b) {
    return a != nullptr && b != nullptr && a->unum == b->unum && a->opponent == b->opponent;
}

bool isKnown(Player const& p) {
    return p.age >= 0;
}

auto distanceTo(Vector2D point) {
    return [point](Player const& p) { return p.position.getDistanceTo(point); };
}

template <typename Condition>
Players kept(Players players, Condition condition) {
    std::erase_if(players, [&](Player const* p) { return !condition(*p); });
    return players;
}

/// The first of those with the least value, or nobody.
template <typename Value>
Player const* least(Players const& players, Value value) {
    auto const found = std::ranges::min_element(players, {}, [&](auto* p) { return value(*p); });
    return found == players.end() ? nullptr : *found;
}

/// The agent is number 7; everybody else is scattered anew for each scene.
class Queries : public Sweep {
protected:
    Queries() {
        agent.join('l', 7);
        agent.placeMyself(0, 0);
    }

    /// On a half-metre grid, so that bounds and equal distances are hit exactly.
    Vector2D place() {
        auto const offset = [this] { return std::round(number(-spread, spread) * 2) / 2; };
        return focus + at(offset(), offset());
    }
    /// The next scene: the agent, the ball, and up to five more players a side, some of the same
    /// shirt. False after the last one.
    bool scatter() {
        constexpr std::array<double, 6> FOCI{-100, -50, -30, 0, 30, 50};
        focus = at(FOCI.at(static_cast<std::size_t>(number(0, 6))), 30 * std::round(number(-1, 1)));
        spread = number(0, 2) < 1 ? 4 : 40;
        me = place();
        ball = place();
        agent.placeMyself(me.x, me.y, number(0, 360));
        agent.placeBall(ball.x, ball.y, number(-1, 1), number(-1, 1));
        all.clear();
        for (Team* const team : {&world.situation().myTeam, &world.situation().theirTeam}) {
            bool const theirs = !all.empty();
            team->players.resize(theirs ? 0 : 1);
            for (auto i = static_cast<int>(number(0, 6)); i > 0; --i) {
                team->players.emplace_back(place(), Vector2D(), number(0, 360), 0.0F,
                                           static_cast<int>(number(1, 12)), number(0, 4) < 1,
                                           theirs);
                team->players.back().age = std::floor(number(-1, 4));
            }
            for (Player const& p : team->players) {
                all.push_back(&p);
            }
        }
        mates = kept(all, [](Player const& p) { return !p.opponent; });
        opponents = kept(all, [](Player const& p) { return p.opponent; });
        return scenes-- > 0;
    }
    bool isMe(Player const* p) const { return same(p, all[0]); }

    support::AgentHarness agent;
    WorldModel& world = agent.world;
    Vector2D focus, me, ball;
    float spread = 0;
    int scenes = 8000;
    Players all, mates, opponents;
};

TEST_F(Queries, SearchesFindWhatALookAtEverybodyFinds) {
    while (scatter()) {
        Vector2D const p = place();
        auto const near = distanceTo(p);
        ASSERT_EQ(world.closestPlayerToPoint(p), least(kept(all, isKnown), near));
        ASSERT_EQ(world.closestTeamMateToPoint(p), least(mates, near));
        ASSERT_EQ(world.playerWithBall(), least(all, distanceTo(ball)));
        float const nearest = near(*least(mates, near));
        auto const farther = [&](Player const& q) { return mates.size() > 1 && near(q) > nearest; };
        ASSERT_EQ(world.secondClosestTeamMateToPoint(p), least(kept(mates, farther), near));
        ASSERT_EQ(world.secondClosestPlayerToPoint(p), least(kept(all, farther), near));

        auto const x = [](Player const& q) { return q.position.x; };
        auto const other = [](Player const& q) { return isKnown(q) && q.unum != 7; };
        auto const runner = [](Player const& q) { return q.unum != 1; };
        ASSERT_EQ(world.lastMan(), least(kept(mates, other), x));
        ASSERT_EQ(world.closestTeamMateToOwnGoalOutLine(), least(mates, x));
        ASSERT_EQ(world.closestOppFieldPlayerToOppGoalOutLine(),
                  least(kept(opponents, runner), [&](Player const& q) { return -x(q); }));

        auto const within = [&](Player const& q) { return near(q) < spread; };
        ASSERT_EQ(world.numOpponentsWithin(spread, p), kept(opponents, within).size());
        ASSERT_EQ(world.numTeammatesWithin(spread, p), kept(mates, within).size());
    }
}

TEST_F(Queries, PossessionIncludesItsBounds) {
    agent.placeBall(1.085F, 0);
    EXPECT_TRUE(world.isInKickableArea()); // whatever a difference would round to
    agent.placeBall(2, 0, -0.5F, 0);       // comes 0.5 nearer, and the agent 0.6
    EXPECT_FALSE(world.willBeInKickableArea(0, 100) || world.willBeInKickableArea(1, 0));
    EXPECT_TRUE(world.willBeInKickableArea(1, 100) && world.willBeInKickableArea(2, 0));
    Configuration::catchAreaLength = 1.5F;
    while (scatter()) {
        auto const far = distanceTo(ball);
        Player const* const closest = least(kept(all, isKnown), far);
        ASSERT_EQ(world.haveBall(), isMe(closest) && far(*all[0]) <= 3);
        ASSERT_EQ(world.isCatchable(), far(*all[0]) <= 1.5);
        for (Player const* const p : all) {
            ASSERT_EQ(world.hasBall_Player(*p), same(closest, p) && far(*p) <= 3);
            ASSERT_EQ(std::isnan(world.hasBall_PlayerRel(*p)), !isKnown(*p) || far(*p) >= 3);
            ASSERT_EQ(world.beingSpaced(*p), me.getDistanceTo(p->position) < 5);
        }
    }
    agent.addOpponent(4, 21, 0);
    for (float const unknown : {UNDEFINED_FLOAT, INFINITY, NAN}) {
        agent.placeBall(unknown, unknown, unknown, unknown);
        EXPECT_EQ(world.playerWithBall(), nullptr);
        EXPECT_FALSE(world.haveBall() || world.hasBall_Team() || world.isInKickableArea());
        EXPECT_FALSE(world.beingSecondClosestToBall() || world.beingInAttackPosition());
    }
}

TEST_F(Queries, TacticsAgreeWithPlainArithmetic) {
    auto const holds = [](Vector2D corner, Vector2D opposite, Player const* p) {
        return p != nullptr && Rectangle(corner, opposite).isInside(p->position);
    };
    while (scatter()) {
        bool const pressed = holds(me - at(5, 0), me + at(5, 5), least(opponents, distanceTo(me)));
        ASSERT_EQ(world.beingFrontalAttacked(), pressed);
        ASSERT_EQ(world.beingOnField(), std::abs(me.x) <= 52 && std::abs(me.y) <= 34);
        Players const keepers = kept(opponents, [](Player const& q) { return q.goalie; });
        bool const atKeeper = !keepers.empty() && me.getDistanceTo(keepers[0]->position) < 5;
        ASSERT_EQ(world.beingInOptimalPosition(), world.isAGoodPointToScore(me) && !pressed);

        world.myself().homePosition = world.myself().attackPosition = place();
        Vector2D const off = me - world.myself().homePosition;
        Vector2D const advance = world.playerWithBall()->position; // from its own, which is (0, 0)
        ASSERT_EQ(world.beingInDefensePosition(), std::max(std::abs(off.x), std::abs(off.y)) < 3);
        ASSERT_EQ(world.beingInAttackPosition(),
                  std::max(std::abs(off.x - advance.x), std::abs(off.y - advance.y)) < 3);

        Player const* const last = world.closestOppFieldPlayerToOppGoalOutLine();
        for (Player const* const p : all) {
            auto const [x, y] = p->position;
            Player const* const marker = least(opponents, distanceTo(p->position));
            bool const offside = last != nullptr && y > std::max(0.0F, last->position.y);
            ASSERT_EQ(world.isOffside(*p), offside); // judged along y
            ASSERT_NEAR(world.isOffsideRel(*p),
                        offside ? (1 - p->age / 20) * (1 - last->age / 20) : 0, 1e-6);
            ASSERT_EQ(world.isAttackedTeammate(*p), // the second corner is exchanged
                      holds(at(x - 1.5, y - 1.5), at(y + 1.5, x + 1.5), marker));
            ASSERT_EQ(world.isNotMarked(*p), // the name says the reverse
                      marker == nullptr || distanceTo(p->position)(*marker) < 3);
            ASSERT_EQ(world.isAGoodPointToScore(p->position), // the agent is at the keeper, not p
                      distanceTo(at(52, 0))(*p) <= 22 || atKeeper);
            ASSERT_EQ(world.isAtGoodPointToScore(*p), distanceTo(at(52.5, 0))(*p) < 20 && !pressed);
            ASSERT_EQ(world.isCloseToOwnGoalOutLine(*p), x < -32);
            ASSERT_EQ(world.isCloseToOpponentGoalOutLine(*p), x > 32);
        }
    }
}

TEST_F(Queries, PassesAreBlockedInAWedge) {
    auto const direction = [](Vector2D from, Vector2D to) { // clockwise, nearly 0 snapped
        double const angle = degrees(std::conj(toComplex(to) - toComplex(from)));
        return angle < 0 ? angle + 360 : angle < 0.5 ? 0 : angle;
    };
    while (scatter()) {
        for (Player const* const receiver : mates) {
            Vector2D const to = receiver->position;
            if (ball == to) continue;
            Players const blocking = kept(all, [&](Player const& p) {
                bool const counts = p.opponent // also from behind the ball
                                    || (!isMe(&p) && distanceTo(to)(p) < ball.getDistanceTo(to));
                double const off = direction(p.position, to) - direction(ball, to);
                return counts && p.position != to && std::abs(off) <= 2;
            });
            ASSERT_EQ(world.isIntersected(to), !blocking.empty());
        }
        auto const exposure = [&](Player const& p) { // to the last opponent of the list
            return -distanceTo(opponents.back()->position)(p);
        };
        for (bool const best : {true, false}) {
            Player const* const ranked = best                ? least(mates, distanceTo(at(50, 0)))
                                         : opponents.empty() ? nullptr
                                                             : least(mates, exposure);
            Players const passes = kept(mates, [&](Player const& p) {
                return mates.size() > 1 && same(ranked, &p) && !isMe(&p) && world.isNotMarked(p) &&
                       !world.isIntersected(p.position);
            });
            bool const any = !passes.empty() && (best || passes[0]->position.x > -100);
            ASSERT_EQ(world.getPassCand(best), any ? passes[0] : nullptr);
        }
    }
}

TEST_F(Queries, InterceptionIsTheFirstCycleInWhichTheBallIsReached) {
    while (scatter()) {
        bool margin = scenes % 2 == 0;
        auto const inTime = [&](Players const& players, int cycle) {
            Players const quick = kept(players, [&](Player const& p) {
                return p.predictedCyclesToPoint(world.ball().rollingPosition(cycle), margin) <=
                       cycle;
            });
            return quick.empty() ? nullptr : quick[0];
        };
        Player const& one = *all.back();
        int first = 0;
        while (first < 24 && !inTime({&one}, first)) {
            ++first;
        }
        Vector2D point;
        int cycles = -1;
        ASSERT_EQ(world.interceptionPoint(one, point, cycles, margin),
                  inTime({&one}, first) == &one);
        ASSERT_EQ(point, world.ball().rollingPosition(first));
        ASSERT_EQ(cycles, one.predictedCyclesToPoint(point, margin));

        margin = false;
        int last = 24; // decides for the team, if anybody gets there in it
        while (last > 0 && !inTime(mates, last)) {
            --last;
        }
        ASSERT_EQ(world.fastestTeammateInterceptingBall(), inTime(mates, last));
    }
}

TEST_F(Queries, SeesInTheMiddleOfEitherHalfCycleComeAtABadTime) {
    world.myself().bodyInfo.viewWidth = 1;
    world.setTimeLastSB();
    timeval const senseBody = world.timeLastSB();
    for (int late = 0; late < 110; usleep(200)) {
        world.setTimeLastSee();
        timeval const see = world.timeLastSee();
        late = Utils::timerDiffMsec(&see, &senseBody);
        bool const bad = (5 < late && late < 45) || (64 < late && late < 100);
        EXPECT_EQ(world.haveOptimalSeeTimes(), !bad) << late;
    }
    world.myself().bodyInfo.viewQuality = 1;
    EXPECT_FALSE(world.haveOptimalSeeTimes());
    world.setSeeTimingSettled();
    EXPECT_TRUE(world.haveOptimalSeeTimes());
}

} // namespace
