#include "practice/World.h"

#include "practice/Parameters.h"

namespace practice {

namespace {

// clang-format off
/// In the order of Phase.
constexpr std::array<std::string_view, 29> WORDS{
    "before_kick_off", "play_on", "time_over", "drop_ball",
    "pause", "human_judge", "first_half_over",
    "penalty_kick", "penalty_setup", "penalty_ready", "penalty_taken", "penalty_miss", "penalty_score",
    "kick_off", "kick_in", "free_kick", "indirect_free_kick", "corner_kick", "goal_kick",
    "goal", "offside", "back_pass", "free_kick_fault", "catch_fault",
    "foul_charge", "foul_push", "foul_multiple_attack", "foul_ballout", "illegal_defense"};
// clang-format on

} // namespace

std::string PlayMode::word() const {
    std::string out(WORDS[static_cast<std::size_t>(phase)]);
    if (side != Side::none) out.append({'_', letter(side)});
    return out;
}

bool PlayMode::isStopped() const {
    return isOffence() || isHeld() || phase == Phase::goal || phase == Phase::beforeKickOff ||
           phase == Phase::timeOver;
}

std::optional<PlayMode> playModeOf(std::string_view word) {
    constexpr auto FIRST_WITH_SIDE = static_cast<std::size_t>(Phase::penaltyKick);
    for (std::size_t i = 0; i < WORDS.size(); ++i) {
        auto const phase = static_cast<Phase>(i);
        if (i < FIRST_WITH_SIDE && word == WORDS[i]) return PlayMode{phase, Side::none};
        if (i < FIRST_WITH_SIDE || !word.starts_with(WORDS[i])) continue;
        std::string_view const side = word.substr(WORDS[i].size());
        if (side == "_l") return PlayMode{phase, Side::left};
        if (side == "_r") return PlayMode{phase, Side::right};
    }
    return std::nullopt;
}

void Player::restoreStamina() {
    stamina = parameter("staminaMax");
    effort = parameter("effortInit");
    recovery = parameter("recoverInit");
    extra = EXTRA_STAMINA;
    capacity = STAMINA_CAPACITY;
}

World::World() {
    for (int id = 0; id < MAX_PLAYERS; ++id) {
        Player& p = player(id);
        p.side = id < PLAYERS_PER_TEAM ? Side::left : Side::right;
        p.unum = id % PLAYERS_PER_TEAM + 1;
        p.restoreStamina();
    }
}

} // namespace practice
