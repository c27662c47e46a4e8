// News for the world model: what messages make of it, and in which order.

#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <tuple>

#include "sensing/Sensors.h"
#include "tests/player/Motion.h"
#include "tests/support/AgentHarness.h"
#include "tests/support/Scenes.h"

using std::tuple;
using support::senseBody;

namespace {

/// At the origin of a left-hand agent that faces (and without lines is taken to face) the other
/// goal. Server directions are clockwise with y down, as the frame is: 90 is +y.
class IntegrationTest : public Sweep {
protected:
    IntegrationTest() { agent.join('l', 10); }

    bool integrate(std::string const& message) {
        agent.sense(message);
        return world.integrateSensorInfo();
    }

    support::AgentHarness agent;
    WorldModel& world = agent.world;
    Ball& ball = agent.world.ball();
    Situation& situation = agent.world.situation();
    std::vector<Player> const& mine = agent.world.teammates();
};

TEST_F(IntegrationTest, ASeeReplacesThePlayersAndFindsTheBall) {
    std::array const seen = {&Sensors::allies, &Sensors::enemies, &Sensors::neuts};
    std::array<std::vector<Player> const*, 3> const known = {&mine, &world.opponents(),
                                                             &situation.unknownPlayers};
    auto const show = [this](auto object) {
        bool const told = whole(0, 1) == 0;
        object.distance = number(0, 60);
        object.direction.value = number(-180, 180);
        object.speed = told ? number(-1, 1) : RCC_ABSENT;
        object.speedDirection.value = number(-180, 180);
        return object;
    };
    for (int cycle = 10; cycle < 2010 && !HasFailure(); ++cycle) {
        double const gaze = whole(-89, 89);
        double const neck = whole(-90, 90);
        double const speed = number(0, 1);
        integrate(
            senseBody(cycle, "high normal", std::to_string(speed) + " 0", std::to_string(neck)));
        Complex const place = toComplex(world.myself().position = point());
        Complex const motion = speed / 0.4 * unit(gaze - neck);
        RCC_Line right; // told by the angle that it makes with the gaze
        right.code = 5;
        right.direction.value = static_cast<float>((gaze < 0 ? -90 : 90) - gaze);
        Sensors::lines = {right};
        for (auto* const players : seen) {
            players->assign(static_cast<std::size_t>(whole(0, 2)), {});
            for (RCC_Player& player : *players) {
                player = show(player);
                player.name.unum = whole(0, 11);
                player.name.goalie = whole(0, 1) == 0;
                player.headDirection.value = number(-180, 180);
            }
        }
        RCC_Ball const shown = show(RCC_Ball());
        bool const inSight = whole(0, 2) > 0;
        Sensors::balls.assign(inSight ? 1 : 0, shown);
        int const heard = situation.heardBallTime = cycle - whole(0, 6);
        int const motionSeen = situation.ballVelocitySeenTime = cycle - whole(0, 4);
        agent.placeBall(5, 6, 1, 1);
        Sensors::newVisual = true;
        world.setTimeLastSee();
        ASSERT_TRUE(world.integrateSensorInfo());

        auto const towards = [gaze](double length, RCC_Angle angle) {
            return length * unit(gaze + angle.value);
        };
        EXPECT_TRUE(mine[0].isSamePlayerAs(world.myself()));
        expectMotion(mine[0], place, motion);
        EXPECT_LT(angleBetween(mine[0].headDirection, -gaze), 1e-3);
        EXPECT_LT(angleBetween(mine[0].bodyDirection, neck - gaze), 1e-3);
        Complex last = 0;
        for (std::size_t kind = 0; kind < 3; ++kind) {
            std::size_t const first = kind == 0 ? 1 : 0; // after the agent itself
            ASSERT_EQ(known[kind]->size(), seen[kind]->size() + first);
            for (std::size_t i = 0; i < seen[kind]->size(); ++i) {
                RCC_Player const& there = (*seen[kind])[i];
                Player const& player = (*known[kind])[i + first];
                last = motion;
                if (there.hasSpeed()) last += towards(there.speed / 0.4, there.speedDirection);
                expectMotion(player, place + towards(there.distance, there.direction), last);
                EXPECT_EQ(tuple(player.unum, player.goalie, player.opponent, player.bodyDirection,
                                player.headDirection),
                          tuple(there.name.unum, there.name.goalie, kind > 0, RCC_ABSENT,
                                there.headDirection.value));
            }
        }
        if (!inSight) {
            bool const lost = cycle - heard > 3;
            EXPECT_EQ(ball.position, lost ? at(1e10, 1e10) : at(5, 6));
            EXPECT_EQ(ball.velocity, lost ? at(1e10, 1e10) : at(1, 1));
            continue;
        }
        if (shown.hasSpeed()) {
            last = towards(shown.speed, shown.direction) + motion * 0.4;
        } else if (cycle - motionSeen > 2) { // until then it goes with the last player
            last = 0;
        }
        expectMotion(ball, place + towards(shown.distance, shown.direction), last);
        EXPECT_EQ(tuple(situation.ballSeenTime, situation.ballVelocitySeenTime),
                  tuple(cycle, shown.hasSpeed() ? cycle : motionSeen));
    }
}

TEST_F(IntegrationTest, NewsAreTakenInAFixedOrder) {
    world.setGoalie(true);
    // All of this waits when main comes round; the later of two rules shows what was first.
    agent.receive("(player_type 5 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6)");
    agent.receive("(init r 7 kick_in_r)");
    agent.receive("(hear 30 referee play_on)");
    agent.receive("(hear 30 12 \"vnana0a0a\")");
    agent.sense("(see 30 ((b) 10 0 0 0))");
    agent.sense(senseBody(30, "low wide", "0.4 -30"));
    ServerParamHandler().handle(RCC_Pointer<RCC_ServerParam>::make()); // all zero
    EXPECT_TRUE(world.integrateSensorInfo());

    EXPECT_EQ(30, situation.ballSeenTime);                // body before see
    EXPECT_EQ(0.0F, world.myself().headDirection);        // see before init
    expectMotion(ball, 11, 0.4);                          // by the old parameters
    EXPECT_EQ(Situation::NEVER, situation.heardBallTime); // see before report
    EXPECT_EQ(5, situation.playMode);                     // referee before init, unmapped
    EXPECT_EQ(0.0F, Player::DECAY);                       // parameters last
    EXPECT_EQ(5, Configuration::playerTypesV.back().id);
    EXPECT_FALSE(integrate("(score 9 3 1)"));
    EXPECT_EQ(tuple(situation.ourScore, situation.theirScore), tuple(3, 1));

    BodyInfo const& info = world.myself().bodyInfo;
    EXPECT_EQ(tuple(info.time, info.viewQuality.load(), info.viewWidth.load()), tuple(30, 1, 2));
    EXPECT_EQ(tuple(info.stamina, info.effort, info.speedDirection), tuple(8000.0F, 1.0F, -30.0F));
    EXPECT_EQ(situation.side, FieldSide::right);
    EXPECT_TRUE(mine[0].goalie && mine[0].isSamePlayerAs(world.myself()));
    EXPECT_EQ(tuple(mine[0].unum, mine[0].opponent), tuple(7, false));
    EXPECT_EQ(tuple(mine[0].bodyDirection, mine[0].headDirection), tuple(1e10F, 1e10F));
}

TEST_F(IntegrationTest, StampsOfTheLastMessages) {
    world.setTimeLastSB();
    EXPECT_TRUE(world.waitForNewInfo()); // it came before the wait
    EXPECT_TRUE(world.takeSenseBodyArrived() && !world.takeSenseBodyArrived());
    EXPECT_FALSE(world.seeIsNewerThanSenseBody());
    for (int const sees : {1, 2}) {
        situation.currentTime = sees;
        world.setTimeLastSee();
        EXPECT_EQ(tuple(world.seesSinceLastSB(), world.cycleOfLastSee()), tuple(sees, sees));
        EXPECT_TRUE(world.seeIsNewerThanSenseBody());
    }
    world.setTimeLastSB();
    EXPECT_EQ(tuple(world.seesSinceLastSB(), world.cycleOfLastSB()), tuple(0, 2));
    EXPECT_FALSE(world.seeIsNewerThanSenseBody());
}

TEST_F(IntegrationTest, ASeeBelongsToTheCycleOfTheSenseBodyBeforeItThoughBothWait) {
    agent.sense(senseBody(30));
    agent.sense("(see 30 ((b) 5 5))");
    EXPECT_EQ(world.cycleOfLastSee(), 30);
    EXPECT_TRUE(world.integrateSensorInfo());
    EXPECT_EQ(world.currentTime(), 30);
}

TEST_F(IntegrationTest, PlayModesAreNumberedThroughWithTwoNumbersForAPair) {
    int code = 0;
    for (int mode = 0; mode <= 26; ++mode) {
        bool const pair = (4 <= mode && mode <= 9) || mode == 11 || mode == 12 ||
                          (16 <= mode && mode <= 20) || mode >= 25;
        for (int const side : {1, -1, 0}) {
            situation.setPlayMode({RCC_PlayMode::Mode(mode), side});
            EXPECT_EQ(situation.playMode, pair && side != 1 ? code + 1 : code) << mode;
        }
        code += pair ? 2 : 1;
    }
    for (int const unknown : {-1, 27, 1000000}) {
        situation.setPlayMode({RCC_PlayMode::Mode(unknown), 1});
        EXPECT_EQ(situation.playMode, 41) << unknown;
    }
    integrate("(hear 20 referee corner_kick_l)"); // one's own
    EXPECT_EQ(situation.playMode, 10);
}

TEST_F(IntegrationTest, ABallReportIsBelievedAsFarAsTheBallWasNotSeen) {
    constexpr std::string_view SYMBOLS = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs";
    situation.currentTime = 20;
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        std::array<double, 4> said{}; // position, and velocity in twentieths
        std::string report = "v";
        for (double& value : said) {
            int const symbol = whole(-54, 54);
            value = symbol;
            report += symbol < 0 ? 'y' : 'x';
            report += SYMBOLS[static_cast<std::size_t>(std::abs(symbol))];
        }
        int const seen = situation.ballSeenTime = whole(18, 20);
        int const motionSeen = situation.ballVelocitySeenTime = whole(18, 20);
        situation.heardBallTime = situation.heardBallVelocityTime = 1;
        agent.placeBall(1, 2, 0.2F, 0);
        integrate("(hear 18 -45 \"" + report + "\")");

        Complex const heard = Complex(said[2], said[3]) / 20.0;
        Complex const place = seen < 20 ? Complex(said[0], said[1]) : Complex(1, 2);
        // On a velocity that is news the ball rolls on, no faster than a ball can be.
        bool const rolls = motionSeen < 20;
        expectMotion(ball, rolls ? place + capped(heard, 3) : place, rolls ? heard : 0.2);
        EXPECT_EQ(tuple(situation.heardBallTime, situation.heardBallVelocityTime),
                  tuple(seen < 20 ? 18 : 1, rolls ? 18 : 1));
    }
    situation.heardBallTime = situation.ballSeenTime = 1;
    for (std::string const said :
         {"30 \"wyUxAxAy1\"", "30 \"\"", "30 \"vyUxAxAy\"", "self \"vyUxAxAy1\""}) {
        integrate("(hear 20 " + said + ")");
        EXPECT_EQ(situation.heardBallTime, 1) << said;
    }
}

} // namespace
