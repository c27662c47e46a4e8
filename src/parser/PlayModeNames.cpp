#include <algorithm>
#include <array>

#include "parser/Names.h"

namespace rcc {

namespace {

using Mode = RCC_PlayMode::Mode;

struct Word {
    std::string_view text;
    Mode mode;
    bool sided; ///< the word ends in _l or _r
};

constexpr bool SIDED = true;
constexpr bool NEUTRAL = false;

// clang-format off
constexpr std::array WORDS = {
    Word{"before_kick_off",       Mode::beforeKickOff,      NEUTRAL},
    Word{"time_over",             Mode::timeOver,           NEUTRAL},
    Word{"play_on",               Mode::playOn,             NEUTRAL},
    Word{"kick_off",              Mode::kickOff,            SIDED},
    Word{"kick_in",               Mode::kickIn,             SIDED},
    Word{"free_kick",             Mode::freeKick,           SIDED},
    Word{"indirect_free_kick",    Mode::freeKick,           SIDED},
    Word{"corner_kick",           Mode::cornerKick,         SIDED},
    Word{"goal_kick",             Mode::goalKick,           SIDED},
    Word{"goal",                  Mode::goal,               SIDED},
    Word{"drop_ball",             Mode::dropBall,           NEUTRAL},
    Word{"offside",               Mode::offside,            SIDED},
    Word{"penalty_kick",          Mode::penaltyKick,        SIDED},
    Word{"first_half_over",       Mode::firstHalfOver,      NEUTRAL},
    Word{"pause",                 Mode::pause,              NEUTRAL},
    Word{"human_judge",           Mode::humanJudge,         NEUTRAL},
    Word{"foul_charge",           Mode::foulCharge,         SIDED},
    Word{"foul_push",             Mode::foulPush,           SIDED},
    Word{"foul_multiple_attack",  Mode::foulMultipleAttack, SIDED},
    Word{"foul_ballout",          Mode::foulBallout,        SIDED},
    Word{"back_pass",             Mode::backPass,           SIDED},
    Word{"time_up",               Mode::timeUp,             NEUTRAL},
    Word{"time_up_without_a_team", Mode::timeUpWithoutATeam, NEUTRAL},
    Word{"time_extended",         Mode::timeExtended,       NEUTRAL},
    Word{"half_time",             Mode::halfTime,           NEUTRAL},
    Word{"goalie_catch_ball",     Mode::goalieCatchBall,    SIDED},
};
// clang-format on

Mode modeOf(std::string_view text, bool sided) {
    auto const* const word = std::ranges::find_if(
        WORDS, [&](Word const& w) { return w.sided == sided && w.text == text; });
    return word == WORDS.end() ? Mode::unknown : word->mode;
}

/// Cuts `_l` or `_r` off and tells which: 1 left, -1 right, 0 neither.
int cutSide(std::string_view& word) {
    int const side = word.ends_with("_l") ? 1 : word.ends_with("_r") ? -1 : 0;
    if (side != 0) word.remove_suffix(2);
    return side;
}

/// Cuts the `_2` of `goal_l_2` off.
bool cutScore(std::string_view& word) {
    auto const lastOther = word.find_last_not_of("0123456789");
    if (lastOther == std::string_view::npos || lastOther + 1 == word.size()) return false;
    if (word[lastOther] != '_') return false;
    word = word.substr(0, lastOther);
    return true;
}

} // namespace

RCC_PlayMode playModeOf(std::string_view word, int ownSide) {
    bool const score = cutScore(word);
    int const side = cutSide(word);
    Mode mode = score ? Mode::unknown : modeOf(word, side != 0);
    if (score && side != 0 && word == "goal") mode = Mode::goalWithScore;
    if (mode == Mode::unknown) return {};
    if (side == 0) return {mode, 0};
    return {mode, side == ownSide ? 1 : -1};
}

} // namespace rcc
