#include <sstream>
#include <string>

#include "tests/parser/Listener.h"

namespace {

using Params = Listening;

TEST_F(Params, PositionalFormNeedsTheExactCount) {
    for (int const wrong : {-1, 1}) {
        EXPECT_FALSE(hears("(server_param" + numbersFrom(1, 103 + wrong) + ")"));
        EXPECT_FALSE(hears("(player_param" + numbersFrom(1, 19 + wrong) + ")"));
        EXPECT_FALSE(hears("(player_type" + numbersFrom(1, 12 + wrong) + ")"));
    }
}

TEST_F(Params, NamedFormKnowsTheWireNamesAndSkipsTheRest) {
    ASSERT_TRUE(hears(
        R"((server_param (wind_random 1)(player_size 0.3)(wind_rand 0.25)(ball_size 0.085) )"
        R"((text_log_dir "a (b")(half_time 3e3)(kickable_margin 0.7)(new_thing (1 2) x)(control_radius 2) )"
        R"((maxneckang 90)(audio_cut_dist 50)(Catchable_Area_L 1.2)(stamina_inc_max 45) )"
        R"((recv_step 10)(quantize_step_dist_l_team_r 0.5)(coach_w_referee 1)(empty)))"));
    RCC_ServerParam const& server = serverParam.last;
    EXPECT_EQ((std::vector<double>{1, 0.25, 90, 50, 1.2, 45, 10, 0.5, 1, 3000}),
              (std::vector<double>{double(server.winRandom), server.windRandom, server.maxNeckAngle,
                                   server.audioDist, server.catchAreaLength, server.staminaInc,
                                   double(server.receiveStep), server.landQuantizeStepRight,
                                   double(server.coachWithRefMode), double(server.halfTime)}));
    EXPECT_DOUBLE_EQ(1.085, server.kickableArea);
    EXPECT_DOUBLE_EQ(1.7, server.controlRadiusWidth);
    expectRefused("(server_param ",
                  {"", "(nothing 1) (we 2) (know 3)", "(goal_width 1) 2", "(half_time 300.5)",
                   "(half_time 3e9)", "(goal_width \"wide\")"},
                  ")");
}

TEST_F(Params, NamedFormOfPlayers) {
    ASSERT_TRUE(hears("(player_param (pt_max 1)(kick_rand_delta_factor 0.5))"));
    EXPECT_EQ(0.5, playerParam.last.playerTypesMax * playerParam.last.kickRandomDeltaFactor);
    std::string const type =
        "(player_type (id 3)(player_speed_max 1.05)(stamina_inc_max 45)(player_decay 0.4)"
        "(inertia_moment 5)(dash_power_rate 0.006)(player_size 0.3)(kickable_margin 0.7)"
        "(kick_rand 0.1)(extra_stamina 50)(effort_max 1)";
    EXPECT_FALSE(hears(type + ")"));
    std::ostringstream printed;
    ASSERT_TRUE(hears(type + "(effort_min 0.6)(foul_detect_probability 0.5))"));
    playerType.last.print(printed);
    EXPECT_EQ(" 3 1.05 45 0.4 5 0.006 0.3 0.7 0.1 50 1 0.6 \n", printed.str());
}

} // namespace
