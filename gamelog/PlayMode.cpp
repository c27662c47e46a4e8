#include "gamelog/PlayMode.h"

#include <algorithm>

namespace gamelog {

namespace {

// clang-format off
constexpr std::array<std::string_view, PLAY_MODES> WORDS = {
    "null",                    "before_kick_off",         "time_over",          "play_on",
    "kick_off_l",              "kick_off_r",              "kick_in_l",          "kick_in_r",
    "free_kick_l",             "free_kick_r",             "corner_kick_l",      "corner_kick_r",
    "goal_kick_l",             "goal_kick_r",             "goal_l",             "goal_r",
    "drop_ball",               "offside_l",               "offside_r",          "penalty_kick_l",
    "penalty_kick_r",          "first_half_over",         "pause",              "human_judge",
    "foul_charge_l",           "foul_charge_r",           "foul_push_l",        "foul_push_r",
    "foul_multiple_attack_l",  "foul_multiple_attack_r",  "foul_ballout_l",     "foul_ballout_r",
    "back_pass_l",             "back_pass_r",             "free_kick_fault_l",  "free_kick_fault_r",
    "catch_fault_l",           "catch_fault_r",           "indirect_free_kick_l", "indirect_free_kick_r",
    "penalty_setup_l",         "penalty_setup_r",         "penalty_ready_l",    "penalty_ready_r",
    "penalty_taken_l",         "penalty_taken_r",         "penalty_miss_l",     "penalty_miss_r",
    "penalty_score_l",         "penalty_score_r",         "illegal_defense_l",  "illegal_defense_r",
};
// clang-format on

static_assert(static_cast<int>(PlayMode::illegalDefenseRight) == PLAY_MODES - 1);

} // namespace

std::string_view wordOf(PlayMode mode) {
    return WORDS.at(static_cast<std::size_t>(mode));
}

std::optional<PlayMode> playModeOf(std::string_view word) {
    auto const found = std::ranges::find(WORDS, word);
    if (found == WORDS.end()) return std::nullopt;
    return static_cast<PlayMode>(found - WORDS.begin());
}

std::optional<Side> sideOf(PlayMode mode) {
    if (wordOf(mode).ends_with("_l")) return Side::left;
    if (wordOf(mode).ends_with("_r")) return Side::right;
    return std::nullopt;
}

std::string_view stemOf(PlayMode mode) {
    std::string_view word = wordOf(mode);
    if (sideOf(mode)) word.remove_suffix(2);
    return word;
}

} // namespace gamelog
