#include "Listener.h"
#include "Samples.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

std::string join(std::string const& kind, int count) {
    std::string message("(");
    message.append(kind);
    for (int i = 1; i <= count; ++i) {
        message.append(" ").append(std::to_string(i));
    }
    return message.append(")");
}

TEST(Params, PositionalValuesGoToTheirNames) {
    Listener listener;
    ASSERT_TRUE(listener.hears(join("server_param", 103)));
    RCC_ServerParam const& server = listener.serverParam.last;
    EXPECT_EQ(1, server.goalWidth);
    EXPECT_EQ(22, server.teamActuatorNoise);
    EXPECT_EQ(27, server.ballSize);
    EXPECT_EQ(37, server.controlRadiusWidth);
    EXPECT_EQ(47, server.visibleDist);
    EXPECT_EQ(52, server.kickableArea);
    EXPECT_EQ(70, server.halfTime);
    EXPECT_EQ(85, server.audioDist);
    EXPECT_EQ(94, server.dirQuantizeStepRight);
    EXPECT_EQ(103, server.dropBallTime);

    ASSERT_TRUE(listener.hears(join("player_param", 19)));
    EXPECT_EQ(3, listener.playerParam.last.playerTypesMax);
    EXPECT_EQ(4, listener.playerParam.last.playerSpeedMaxDeltaMin);
    EXPECT_EQ(19, listener.playerParam.last.effortMinDeltaFactor);

    ASSERT_TRUE(listener.hears(PLAYER_TYPE));
    EXPECT_EQ(1, listener.playerType.last.id);
    EXPECT_EQ(1.05, listener.playerType.last.playerSpeedMax);
    EXPECT_EQ(0.00603338, listener.playerType.last.dashPowerRate);
    EXPECT_EQ(0.469186, listener.playerType.last.effortMin);
}

TEST(Params, PositionalFormNeedsTheExactCount) {
    Listener listener;
    for (int const wrong : {-1, 1}) {
        EXPECT_FALSE(listener.hears(join("server_param", 103 + wrong)));
        EXPECT_FALSE(listener.hears(join("player_param", 19 + wrong)));
        EXPECT_FALSE(listener.hears(join("player_type", 12 + wrong)));
    }
}

TEST(Params, WholeNumbersMayLookLikeReals) {
    Listener listener;
    EXPECT_TRUE(listener.hears("(server_param (half_time 3e3)(hear_max 2.0)(goal_width 52e-1))"));
    EXPECT_EQ(3000, listener.serverParam.last.halfTime);
    EXPECT_EQ(2, listener.serverParam.last.hearMax);
    EXPECT_EQ(5.2, listener.serverParam.last.goalWidth);
    EXPECT_FALSE(listener.hears("(server_param (half_time 300.5))"));
    EXPECT_FALSE(listener.hears("(server_param (half_time 3e9))"));
    EXPECT_FALSE(listener.hears("(server_param (goal_width \"wide\"))"));
}

TEST(Params, NamedFormKnowsTheWireNamesAndSkipsTheRest) {
    Listener listener;
    ASSERT_TRUE(listener.hears(
        R"((server_param (wind_random 1)(player_size 0.3)(wind_rand 0.25)(ball_size 0.085) )"
        R"((text_log_dir "a (b")(kickable_margin 0.7)(new_thing (1 2) x)(control_radius 2) )"
        R"((maxneckang 90)(audio_cut_dist 50)(Catchable_Area_L 1.2)(stamina_inc_max 45) )"
        R"((recv_step 10)(quantize_step_dist_l_team_r 0.5)(coach_w_referee 1)(empty)))"));
    RCC_ServerParam const& server = listener.serverParam.last;
    EXPECT_EQ(1, server.winRandom);
    EXPECT_EQ(0.25, server.windRandom);
    EXPECT_EQ(90, server.maxNeckAngle);
    EXPECT_EQ(50, server.audioDist);
    EXPECT_EQ(1.2, server.catchAreaLength);
    EXPECT_EQ(45, server.staminaInc);
    EXPECT_EQ(10, server.receiveStep);
    EXPECT_EQ(0.5, server.landQuantizeStepRight);
    EXPECT_EQ(1, server.coachWithRefMode);
    EXPECT_DOUBLE_EQ(1.085, server.kickableArea);
    EXPECT_DOUBLE_EQ(1.7, server.controlRadiusWidth);
    EXPECT_FALSE(listener.hears("(server_param)"));
    EXPECT_FALSE(listener.hears("(server_param (nothing 1) (we 2) (know 3))"));
    EXPECT_FALSE(listener.hears("(server_param (goal_width 1) 2)"));
}

TEST(Params, NamedFormOfPlayers) {
    Listener listener;
    ASSERT_TRUE(listener.hears("(player_param (pt_max 1)(kick_rand_delta_factor 0.5))"));
    EXPECT_EQ(1, listener.playerParam.last.playerTypesMax);
    EXPECT_EQ(0.5, listener.playerParam.last.kickRandomDeltaFactor);

    std::string const type =
        "(player_type (id 3)(player_speed_max 1.05)(stamina_inc_max 45)(player_decay 0.4)"
        "(inertia_moment 5)(dash_power_rate 0.006)(player_size 0.3)(kickable_margin 0.7)"
        "(kick_rand 0.1)(extra_stamina 50)(effort_max 1)";
    EXPECT_FALSE(listener.hears(type + ")"));
    ASSERT_TRUE(listener.hears(type + "(effort_min 0.6)(foul_detect_probability 0.5))"));
    std::ostringstream printed;
    listener.playerType.last.print(printed);
    EXPECT_EQ(" 3 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6 \n", printed.str());
}

} // namespace
