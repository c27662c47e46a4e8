#include "practice/World.h"

#include "practice/Parameters.h"

namespace practice {

std::string PlayMode::word() const {
    // clang-format off
    static constexpr std::array WORDS{
        "before_kick_off", "play_on", "time_over", "drop_ball",
        "kick_off", "kick_in", "free_kick", "indirect_free_kick", "corner_kick", "goal_kick",
        "goal", "offside", "back_pass", "free_kick_fault", "catch_fault"};
    // clang-format on
    std::string out = WORDS[static_cast<std::size_t>(phase)];
    if (side != Side::none) out.append({'_', letter(side)});
    return out;
}

bool PlayMode::isStopped() const {
    return isOffence() || phase == Phase::goal || phase == Phase::beforeKickOff ||
           phase == Phase::timeOver;
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
