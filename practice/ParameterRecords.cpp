#include "practice/ParameterRecords.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "gamelog/Writer.h"
#include "practice/Monitors.h"
#include "practice/Parameters.h"
#include "practice/Text.h"

namespace practice {

namespace {

/// A parameter by the name that game logs have for it.
struct LogParameter {
    std::string_view name;
    double value;
};

// Readers of logs look for all of these. What this server does not have (tackles, cards, penalty
// shoot-outs, coaches) stands here with the usual value of the field.
// clang-format off
constexpr std::array<LogParameter, 173> RULES{{
    {"audio_cut_dist", parameter("audioDist")}, {"auto_mode", 1}, {"back_dash_rate", 1},
    {"back_passes", 1}, {"ball_accel_max", parameter("ballAccelMax")},
    {"ball_decay", parameter("ballDecay")}, {"ball_rand", parameter("ballRandom")},
    {"ball_size", parameter("ballSize")}, {"ball_speed_max", parameter("ballSpeedMax")},
    {"ball_stuck_area", BALL_STUCK_RADIUS}, {"ball_weight", parameter("ballWeight")},
    {"catch_ban_cycle", parameter("catchBanCycle")},
    {"catch_probability", parameter("catchProbability")},
    {"catchable_area_l", parameter("catchAreaLength")},
    {"catchable_area_w", parameter("catchAreaWidth")},
    {"ckick_margin", parameter("cornerKickMargin")},
    {"clang_advice_win", parameter("clangAdviceWin")},
    {"clang_define_win", parameter("clangDefineWin")}, {"clang_del_win", 1},
    {"clang_info_win", parameter("clangInfoWin")},
    {"clang_mess_delay", parameter("clangMessageDelay")},
    {"clang_mess_per_cycle", parameter("clangMessagesPerCycle")},
    {"clang_meta_win", parameter("clangMetaWin")}, {"clang_rule_win", 1},
    {"clang_win_size", parameter("clangWinSize")}, {"coach", parameter("coachMode")},
    {"coach_w_referee", parameter("coachWithRefMode")},
    {"control_radius", parameter("controlRadius")}, {"dash_angle_step", 1},
    {"dash_power_rate", parameter("dashPowerRate")}, {"dist_noise_rate", 0.0125},
    {"drop_ball_time", parameter("dropBallTime")}, {"effort_dec", parameter("effortDec")},
    {"effort_dec_thr", parameter("effortDecThr")}, {"effort_inc", parameter("effortInc")},
    {"effort_inc_thr", parameter("effortIncThr")}, {"effort_init", parameter("effortInit")},
    {"effort_min", parameter("effortMin")}, {"extra_half_time", 100},
    {"extra_stamina", EXTRA_STAMINA}, {"focus_dist_noise_rate", 0.0125},
    {"forbid_kick_off_offside", parameter("kickoffOffside")}, {"foul_cycles", 5},
    {"foul_detect_probability", 0.5}, {"foul_exponent", 10}, {"free_kick_faults", 1},
    {"freeform_send_period", 20}, {"freeform_wait_period", 600},
    {"fullstate_l", parameter("fullstateLeft")}, {"fullstate_r", parameter("fullstateRight")},
    {"game_log_compression", 0}, {"goal_width", parameter("goalWidth")},
    {"goalie_max_moves", parameter("goalieMaxMoves")}, {"golden_goal", 0},
    {"hear_decay", parameter("hearDecay")}, {"hear_inc", parameter("hearInc")},
    {"hear_max", parameter("hearMax")}, {"illegal_defense_dist_x", 16.5},
    {"illegal_defense_duration", 20}, {"illegal_defense_number", 0},
    {"illegal_defense_width", 40.32}, {"inertia_moment", parameter("inertiaMoment")},
    {"keepaway", 0}, {"keepaway_length", 20}, {"keepaway_log_dated", 1}, {"keepaway_log_fixed", 0},
    {"keepaway_logging", 1}, {"keepaway_start", -1}, {"keepaway_width", 20},
    {"kick_power_rate", parameter("kickPowerRate")}, {"kick_rand", parameter("kickRandom")},
    {"kick_rand_factor_l", parameter("kickRandFactorLeft")},
    {"kick_rand_factor_r", parameter("kickRandFactorRight")},
    {"kickable_margin", parameter("kickableMargin")}, {"land_dist_noise_rate", 0.00125},
    {"land_focus_dist_noise_rate", 0.00125}, {"log_times", 0}, {"max_back_tackle_power", 0},
    {"max_catch_angle", MAX_CATCH_ANGLE_DEG}, {"max_dash_angle", 180}, {"max_dash_power", 100},
    {"max_goal_kicks", 3}, {"max_tackle_power", 100}, {"maxmoment", parameter("maxMoment")},
    {"maxneckang", parameter("maxNeckAngle")}, {"maxneckmoment", parameter("maxNeckMoment")},
    {"maxpower", parameter("maxPower")}, {"min_catch_angle", -MAX_CATCH_ANGLE_DEG},
    {"min_dash_angle", -180}, {"min_dash_power", MIN_DASH_POWER},
    {"minmoment", parameter("minMoment")}, {"minneckang", parameter("minNeckAngle")},
    {"minneckmoment", parameter("minNeckMoment")}, {"minpower", parameter("minPower")},
    {"nr_extra_halfs", 0}, {"nr_normal_halfs", 2},
    {"offside_active_area_size", parameter("offsideArea")},
    {"offside_kick_margin", parameter("offsideKickMargin")},
    {"old_coach_hear", parameter("oldHear")}, {"pen_allow_mult_kicks", 1},
    {"pen_before_setup_wait", 10}, {"pen_coach_moves_players", 1}, {"pen_dist_x", 42.5},
    {"pen_max_extra_kicks", 5}, {"pen_max_goalie_dist_x", 14}, {"pen_nr_kicks", 5},
    {"pen_random_winner", 0}, {"pen_ready_wait", 10}, {"pen_setup_wait", 70},
    {"pen_taken_wait", 150}, {"penalty_shoot_outs", 0},
    {"player_accel_max", parameter("playerAccelMax")}, {"player_decay", parameter("playerDecay")},
    {"player_rand", parameter("playerRandom")}, {"player_size", parameter("playerSize")},
    {"player_speed_max", parameter("playerSpeedMax")}, {"player_speed_max_min", 0.75},
    {"player_weight", parameter("playerWeight")}, {"point_to_ban", 5}, {"point_to_duration", 20},
    {"prand_factor_l", parameter("playerRandomFactorLeft")},
    {"prand_factor_r", parameter("playerRandomFactorRight")}, {"profile", 0},
    {"proper_goal_kicks", 0}, {"quantize_step", parameter("distQuantizeStep")},
    {"quantize_step_l", parameter("landQuantizeStep")}, {"record_messages", 0},
    {"recover_dec", parameter("recoverDec")}, {"recover_dec_thr", parameter("recoverDecThr")},
    {"recover_init", parameter("recoverInit")}, {"recover_min", parameter("recoverMin")},
    {"recv_step", parameter("receiveStep")}, {"red_card_probability", 0},
    {"say_coach_cnt_max", parameter("sayCntMax")},
    {"say_coach_msg_size", parameter("sayCoachMsgSize")}, {"say_msg_size", parameter("sayMsgSize")},
    {"send_comms", 0}, {"send_step", parameter("sendStep")},
    {"send_vi_step", parameter("coachSendVisualStep")},
    {"sense_body_step", parameter("senseBodyStep")}, {"side_dash_rate", 1},
    {"simulator_step", parameter("simulatorStep")},
    {"slow_down_factor", parameter("slowDownFactor")}, {"slowness_on_top_for_left_team", 1},
    {"slowness_on_top_for_right_team", 1}, {"stamina_capacity", STAMINA_CAPACITY},
    {"stamina_inc_max", parameter("staminaInc")}, {"stamina_max", parameter("staminaMax")},
    {"start_goal_l", parameter("startGoalLeft")}, {"start_goal_r", parameter("startGoalRight")},
    {"stopped_ball_vel", 0.01}, {"synch_micro_sleep", 1}, {"synch_offset", 60},
    {"synch_see_offset", 0}, {"tackle_back_dist", 0}, {"tackle_cycles", 10}, {"tackle_dist", 2},
    {"tackle_exponent", 6}, {"tackle_power_rate", 0.027}, {"tackle_rand_factor", 2},
    {"tackle_width", 1.25}, {"team_actuator_noise", parameter("teamActuatorNoise")},
    {"text_log_compression", 0}, {"use_offside", parameter("useOffside")}, {"verbose", 0},
    {"visible_angle", parameter("visibleAngle")}, {"visible_distance", parameter("visibleDist")},
    {"wind_ang", parameter("windAngle")}, {"wind_dir", parameter("windDir")},
    {"wind_force", parameter("windForce")}, {"wind_none", 0},
    {"wind_rand", parameter("windRandom")}, {"wind_random", parameter("windRandom")},
}};

constexpr std::array<LogParameter, 28> PLAYER_RULES{{
    {"allow_mult_default_type", 1}, {"catchable_area_l_stretch_max", 1.3},
    {"catchable_area_l_stretch_min", 1}, {"dash_power_rate_delta_max", 0},
    {"dash_power_rate_delta_min", 0}, {"effort_max_delta_factor", -0.004},
    {"effort_min_delta_factor", -0.004}, {"extra_stamina_delta_max", 50},
    {"extra_stamina_delta_min", 0}, {"foul_detect_probability_delta_factor", 0},
    {"inertia_moment_delta_factor", 25}, {"kick_power_rate_delta_max", 0},
    {"kick_power_rate_delta_min", 0}, {"kick_rand_delta_factor", 1},
    {"kickable_margin_delta_max", 0.1}, {"kickable_margin_delta_min", -0.1},
    {"new_dash_power_rate_delta_max", 0.0008}, {"new_dash_power_rate_delta_min", -0.0012},
    {"new_stamina_inc_max_delta_factor", -6000}, {"player_decay_delta_max", 0.1},
    {"player_decay_delta_min", -0.1}, {"player_size_delta_factor", -100},
    {"player_speed_max_delta_max", 0}, {"player_speed_max_delta_min", 0}, {"player_types", 18},
    {"pt_max", 11}, {"stamina_inc_max_delta_factor", 0}, {"subs_max", 3},
}};

/// How far everything on the pitch can be seen.
constexpr double WHOLE_PITCH = 125.096;

/// Readers count on this order.
constexpr std::array<LogParameter, 29> TYPE_RULES{{
    {"player_speed_max", parameter("playerSpeedMax")}, {"stamina_inc_max", parameter("staminaInc")},
    {"player_decay", parameter("playerDecay")}, {"inertia_moment", parameter("inertiaMoment")},
    {"dash_power_rate", parameter("dashPowerRate")}, {"player_size", PLAYER_SIZE},
    {"kickable_margin", parameter("kickableMargin")}, {"kick_rand", parameter("kickRandom")},
    {"extra_stamina", EXTRA_STAMINA}, {"effort_max", parameter("effortInit")},
    {"effort_min", parameter("effortMin")}, {"kick_power_rate", parameter("kickPowerRate")},
    {"foul_detect_probability", 0.5}, {"catchable_area_l_stretch", 1},
    {"unum_far_length", 20}, {"unum_too_far_length", 40},
    {"team_far_length", 40}, {"team_too_far_length", 60},
    {"player_max_observation_length", WHOLE_PITCH},
    {"ball_vel_far_length", 20}, {"ball_vel_too_far_length", 40},
    {"ball_max_observation_length", WHOLE_PITCH},
    {"flag_chg_far_length", 20}, {"flag_chg_too_far_length", 40},
    {"flag_max_observation_length", WHOLE_PITCH},
    {"dist_noise_rate", 0.0125}, {"focus_dist_noise_rate", 0.0125},
    {"land_dist_noise_rate", 0.00125}, {"land_focus_dist_noise_rate", 0.00125},
}};
// clang-format on

/// A folder may be called anything, but the form has no escapes.
std::string quoted(std::string value) {
    for (char& c : value) {
        if (c == '"' || c == '(' || c == ')' || c == '\n') c = '_';
    }
    return text('"', value, '"');
}

/// The texts and what the options decide.
void addSettings(std::vector<gamelog::Parameter>& pairs, Options const& options, int port) {
    LogOptions log;
    if (!options.log.reproducible) log = options.log;
    KickOffRule const& kickOff = options.match.kickOff;
    double const halfSeconds = options.match.halfCycles * parameter("simulatorStep") / 1000.0;
    auto const number = [&pairs](char const* name, auto value) {
        pairs.push_back({name, text(value)});
    };
    auto const word = [&pairs](char const* name, std::string value) {
        pairs.push_back({name, quoted(std::move(value))});
    };
    if (options.log.reproducible) port = Options{}.port;
    number("port", port);
    number("coach_port", port + 1);
    number("olcoach_port", port + 2);
    number("max_monitors", Monitors::MAX_MONITORS);
    number("half_time", halfSeconds);
    number("connect_wait", kickOff.waitSteps);
    number("kick_off_wait", kickOff.readySteps);
    number("game_over_wait", options.lingerSteps);
    number("game_log_version", options.log.version);
    number("synch_mode", options.synchronous ? 1 : 0);
    for (std::string const kind : {"game_log", "text_log"}) {
        number((kind == "game_log" ? "game_logging" : "text_logging"),
               options.log.wanted() ? 1 : 0);
        number((kind + "_dated").c_str(), options.log.dated ? 1 : 0);
        number((kind + "_fixed").c_str(), options.log.dated ? 0 : 1);
        word((kind + "_dir").c_str(), log.folder());
        word((kind + "_fixed_name").c_str(), log.name());
    }
    word("log_date_format", LogOptions::DATE_FORMAT);
    word("keepaway_log_dir", "./");
    word("keepaway_log_fixed_name", "keepaway");
    for (char const* name : {"coach_msg_file", "fixed_teamname_l", "fixed_teamname_r",
                             "landmark_file", "team_l_start", "team_r_start"}) {
        word(name, "");
    }
}

template <typename Record, typename Rules>
Record recordOf(Rules const& rules) {
    Record record;
    for (auto const& [name, value] : rules) {
        record.pairs.push_back({std::string(name), text(value)});
    }
    return record;
}

template <typename Record>
std::string sortedLine(Record record) {
    std::ranges::sort(record.pairs, {}, &gamelog::Parameter::name);
    std::string line;
    gamelog::append(line, record);
    return line;
}

std::string typeLine(int id) {
    auto record = recordOf<gamelog::PlayerType>(TYPE_RULES);
    record.pairs.insert(record.pairs.begin(), {"id", text(id)});
    std::string line;
    gamelog::append(line, record);
    return line;
}

} // namespace

std::vector<std::string> parameterRecords(Options const& options, int port) {
    // Intentional: players are told of one type, but readers of logs expect as many as usual. The
    // others are copies that nobody has.
    constexpr int TYPES = 18;
    auto server = recordOf<gamelog::ServerParam>(RULES);
    addSettings(server.pairs, options, port);
    auto player = recordOf<gamelog::PlayerParam>(PLAYER_RULES);
    player.pairs.push_back({"random_seed", std::to_string(options.match.seed)});
    std::vector<std::string> lines{sortedLine(std::move(server)), sortedLine(std::move(player))};
    for (int id = 0; id < TYPES; ++id) {
        lines.push_back(typeLine(id));
    }
    return lines;
}

} // namespace practice
