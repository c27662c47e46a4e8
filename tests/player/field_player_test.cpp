#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

#include "skills/SkillPool.h"
#include "skills/Utils.h"
#include "tests/player/Stage.h"

namespace {

/// What one decision queues, such as "turn+turn_neck", in a cycle without a see to report from.
std::string decided(Stage& stage, int mode) {
    stage.world.situation().currentTime = stage.world.cycleOfLastSee() + 1;
    stage.world.situation().playMode = mode;
    stage.decide();
    std::string words = stage.word();
    for (std::string const& other : stage.otherCommands()) {
        words += '+' + wordOf(other);
    }
    return words;
}

/// Number 10 with the ball at its foot, in front of its home, facing their goal; set pieces start
/// afresh.
void atSetPiece(Stage& stage, double x = 20) {
    decided(stage, PM_PLAY_ON);
    stage.show(x, 0, 0, x + 0.4, 0);
}

} // namespace

TEST(FieldPlayer, DoesWhatThePlayModeAsks) {
    // Away from its initial position and facing another way: it is put back, goes to its place at a
    // corner, or takes up its place with an eye on the ball.
    std::string const none;
    std::string const back = "move";
    std::string const corner = "turn";
    std::string const place = "turn+turn_neck";
    // clang-format off
    std::string const byMode[] = {
        none,   back,   none,  place, none, back, place, place, place, place, // 0 to 9
        corner, corner, place, place, back, back, none,  place, place, place, place};
    // clang-format on
    Stage stage(7); // initial position (-10, 0)
    stage.addTeammate(4, -30, 20);
    for (int mode = 0; mode <= 45; ++mode) {
        auto const play = [&](double x) {
            stage.show(x, 0, 100, -30, 20);
            return decided(stage, mode);
        };
        bool const backPass = mode == 32 || mode == 33;
        bool const afterGoal = mode == 40 || mode == 41;
        std::string const expected = mode <= 20  ? byMode[mode]
                                     : backPass  ? place
                                     : afterGoal ? back
                                                 : none;
        EXPECT_EQ(play(-11.1), expected) << mode;

        // And at it: it faces the ball, or their goal, or does nothing.
        if (expected != back) continue;
        EXPECT_EQ(play(-10.9), afterGoal ? none : "turn") << mode;
        if (afterGoal) continue;
        bool const facesGoal = mode == 14 || mode == 15;
        double const target = facesGoal ? 0 : practice::toDeg(std::atan2(20, -19.1));
        EXPECT_NEAR(stage.number(0), turned(target - 100), 0.01);
    }
}

TEST(FieldPlayer, TakesSetPieces) {
    struct Case {
        int mode;
        double x, power, direction; // where, and the kick when nobody can be passed to
    };
    for (Case const& c : {Case{PM_OUR_KICK_IN, 14, 100, std::atan2(-29, 38.5)},
                          Case{PM_OUR_FREE_KICK, 20, 100, 0}, Case{PM_OUR_GOAL_KICK, 20, 100, 0},
                          Case{PM_OUR_PENALTY_KICK, 25, 200, std::atan2(5.51, 27)},
                          Case{PM_OUR_CORNER_KICK, 25, 100, 0}}) {
        Stage stage(10);
        for (int round = 0; round < 2; ++round) {
            atSetPiece(stage, c.x);
            for (int cycle = 1; cycle <= 35 + 20; ++cycle) {
                EXPECT_EQ(decided(stage, c.mode), "+turn_neck") << c.mode << ' ' << cycle;
            }
            // Not reset by another set piece, but by play on.
            EXPECT_EQ(decided(stage, c.mode), "kick+turn_neck") << c.mode;
            EXPECT_EQ(decided(stage, PM_OUR_KICK_IN), "kick+turn_neck");
            EXPECT_EQ(decided(stage, c.mode), "kick+turn_neck");
            EXPECT_NEAR(stage.number(0), c.power, 0.1) << c.mode;
            EXPECT_NEAR(stage.number(1), practice::toDeg(c.direction), 0.2) << c.mode;
        }
    }
}

TEST(FieldPlayer, PassesFromSetPiecesAndLeavesThemToOthers) {
    Stage passer(10);
    atSetPiece(passer);
    passer.addTeammate(11, 40, 20);
    for (int cycle = 1; cycle <= 36; ++cycle) {
        decided(passer, PM_OUR_FREE_KICK);
    }
    // The cycle of the pass is the fallback's as well.
    EXPECT_NEAR(passer.number(1), 0, 0.1);

    for (double const goalieX : {-45.5, -48.7}) { // with the ball at hand, and too far off
        Stage stage(3);
        atSetPiece(stage, -47);
        stage.addTeammate(1, static_cast<float>(goalieX), 0);
        stage.world.situation().myTeam.players.back().goalie = true;
        EXPECT_EQ(decided(stage, PM_OUR_FREE_KICK), goalieX > -48 ? "" : "+turn_neck");
    }
}

TEST(FieldPlayer, KicksOffToEitherCorner) {
    Stage stage(10);
    for (unsigned seed = 0; seed < 20; ++seed) {
        atSetPiece(stage, 0);
        srandom(seed);
        double const corner = random() % 2 == 0 ? 34 : -34;
        srandom(seed);
        decided(stage, PM_OUR_KICK_OFF);
        EXPECT_NEAR(stage.number(1), practice::toDeg(std::atan2(corner, 52)), 0.1);
    }
    stage.show(-9, 0, 0, 0, 0);
    decided(stage, PM_OUR_KICK_OFF);
    EXPECT_EQ(stage.mainCommand(), "(dash 50.000000)"); // walks to the ball
}

TEST(FieldPlayer, PlaysOnByTheFirstThingThatApplies) {
    Draw draw;
    std::map<std::string, int> done;
    for (int i = 0; i < 1500; ++i) {
        Stage stage(i % 2 == 0 ? 10 : 7);
        double const x = std::rint(draw(-3, 40)); // whole metres, so as to meet the limits
        stage.show(x - 0.4, draw(-20, 20), draw(-180, 180), x, 0);
        stage.putBall(x, stage.body().pos.y);
        stage.perceive();
        stage.world.myself().headDirection = 100; // so that the neck has something to do
        if (i % 3 == 0) stage.addTeammate(9, draw.real(30, 50), draw.real(-20, 20));
        for (int n = 2; n < 4; ++n) {
            stage.addOpponent(n, draw.real(-3, 50), draw.real(-20, 20));
        }
        if (i % 4 == 0) {
            stage.addOpponent(4, static_cast<float>(x), stage.world.ball().position.y + 2);
        }

        Vector2D const ahead = at(34, 0) + 0.15F * stage.world.calcSBSPPosition(10);
        Player const* const mate = stage.world.getPassCand(true);
        std::string what = "just shoots";
        if (stage.world.beingAtGoodPointToScore()) {
            what = "shoots";
        } else if (mate != nullptr) {
            what = "passes";
            SkillPool::passBallToPos(mate->position, 1.2F);
        } else if (x > 15 && !stage.world.beingFrontalAttacked()) {
            what = "dribbles";
            SkillPool::simpleDribbleToPoint(at(40, 0), 100);
        } else if (x >= 0 && x <= 15 && i % 2 == 1) {
            what = "plays to number 10";
            SkillPool::passBallToPos(ahead, 1);
        }
        if (stage.mainCommand().empty()) SkillPool::scoreGoal();
        std::vector<double> const kick = numbersIn(stage.mainCommand());
        EXPECT_EQ(decided(stage, PM_PLAY_ON), what == "just shoots" ? "kick+turn_neck" : "kick");
        EXPECT_NEAR(stage.number(0), kick[0], 1e-3) << what << ' ' << x;
        EXPECT_NEAR(stage.number(1), kick[1], 1e-3) << what << ' ' << x;
        ++done[what];
    }
    EXPECT_EQ(done.size(), 5U);
}

TEST(FieldPlayer, PlaysOnWithoutTheBall) {
    Stage stage(7);
    stage.show(0, 0, 0, 15, -1);
    EXPECT_EQ(decided(stage, PM_PLAY_ON), "dash+turn_neck"); // for the ball
    EXPECT_EQ(stage.number(0), 100);
    stage.show(0, 0, 0, 15, -3);
    EXPECT_EQ(decided(stage, PM_PLAY_ON), "turn");
    EXPECT_NEAR(stage.number(0), practice::toDeg(std::atan2(-3, 15)), 0.1);
    stage.addTeammate(8, 15, 1); // nearer to it, so to its own place, with an eye on the ball
    EXPECT_EQ(decided(stage, PM_PLAY_ON), "dash+turn_neck");
    stage.world.ball().position.x = UNDEFINED_FLOAT;
    EXPECT_EQ(decided(stage, PM_PLAY_ON), "turn");
}

TEST(FieldPlayer, ReportsTheBallInACycleThatHasHadItsSee) {
    Stage stage(10);
    stage.show(0, 0, 0, 20, 0);
    auto const reports = [&stage](int cycle) {
        stage.world.situation().currentTime = cycle;
        stage.decide();
        return std::ranges::count(stage.otherCommands(), "(say \"vxKx0x0x0\")");
    };
    stage.world.situation().currentTime = 12;
    stage.world.setTimeLastSee();
    EXPECT_EQ(reports(12), 1);
    EXPECT_EQ(reports(13), 0);
    stage.addTeammate(9, 20, 1);
    EXPECT_EQ(reports(12), 0);
}

TEST(FieldPlayer, AsksForWellTimedSeesBeforeTheKickOff) {
    Stage stage(7);
    stage.put(-30, 0, 0);
    stage.perceive();
    BodyInfo& info = stage.world.myself().bodyInfo;
    info.viewWidth = static_cast<int>(ViewMode::narrow);
    info.viewQuality = static_cast<int>(ViewQuality::low);
    stage.world.setTimeLastSB();
    EXPECT_EQ(decided(stage, PM_BEFORE_KICK_OFF), "move"); // no see yet
    auto const seeRightAfterSenseBody = [&stage] {
        timeval see{};
        timeval senseBody{};
        do { // again, should the machine have been busy in between
            stage.world.setTimeLastSB();
            stage.world.setTimeLastSee();
            see = stage.world.timeLastSee();
            senseBody = stage.world.timeLastSB();
        } while (!stage.world.seeIsNewerThanSenseBody() ||
                 Utils::timerDiffMsec(&see, &senseBody) > 5);
    };
    seeRightAfterSenseBody();
    EXPECT_EQ(decided(stage, PM_BEFORE_KICK_OFF), "+change_view");
    info.viewWidth = static_cast<int>(ViewMode::wide);
    stage.world.setTimeLastSee(); // too many in one cycle
    EXPECT_EQ(decided(stage, PM_BEFORE_KICK_OFF), "");
    stage.world.setTimeLastSB();
    usleep(12000);
    stage.world.setTimeLastSee(); // too late in the cycle
    EXPECT_EQ(decided(stage, PM_BEFORE_KICK_OFF), "");
    EXPECT_EQ(stage.server.receive(20), std::nullopt);
    seeRightAfterSenseBody();
    EXPECT_EQ(decided(stage, PM_BEFORE_KICK_OFF), "");
    EXPECT_EQ(stage.server.receive().value_or("").substr(0, 25), "(change_view normal high)");
    EXPECT_EQ(decided(stage, PM_BEFORE_KICK_OFF), "move"); // settled
}
