#include "practice/World.h"

#include <algorithm>

#include "practice/Parameters.h"

namespace practice {

std::string PlayMode::word() const {
    // clang-format off
    static constexpr std::array words{
        "before_kick_off", "play_on", "time_over", "drop_ball",
        "kick_off", "kick_in", "free_kick", "indirect_free_kick", "corner_kick", "goal_kick",
        "goal", "offside", "back_pass", "free_kick_fault", "catch_fault"};
    // clang-format on
    std::string out = words[static_cast<int>(phase)];
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
    extra = extraStamina;
    capacity = staminaCapacity;
}

World::World() {
    for (const Side side : {Side::left, Side::right}) {
        for (int unum = 1; unum <= playersPerTeam; ++unum) {
            Player& p = player(playerId(side, unum));
            p.side = side;
            p.unum = unum;
            p.restoreStamina();
        }
    }
}

bool World::anybodyActive() const {
    return std::any_of(players.begin(), players.end(), [](const Player& p) { return p.active; });
}

int World::joinedCount() const {
    return static_cast<int>(
        std::count_if(players.begin(), players.end(), [](const Player& p) { return p.joined; }));
}

bool isKickable(const World& world, const Player& player) {
    return distance(player.pos, world.ball.pos) <= kickableArea;
}

} // namespace practice
