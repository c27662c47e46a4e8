#include "parser/PlayModeWords.h"

#include <algorithm>
#include <array>

namespace rcc {

namespace {

struct Word {
    std::string_view text;
    int mode;
    bool sided; ///< the word ends in _l or _r
};

constexpr bool SIDED = true;
constexpr bool NEUTRAL = false;
constexpr int GOAL_WITH_SCORE = 26;

// clang-format off
constexpr std::array WORDS = {
    Word{"before_kick_off",         1, NEUTRAL},
    Word{"time_over",               2, NEUTRAL},
    Word{"play_on",                 3, NEUTRAL},
    Word{"kick_off",                4, SIDED},
    Word{"kick_in",                 5, SIDED},
    Word{"free_kick",               6, SIDED},
    Word{"indirect_free_kick",      6, SIDED},
    Word{"corner_kick",             7, SIDED},
    Word{"goal_kick",               8, SIDED},
    Word{"goal",                    9, SIDED},
    Word{"drop_ball",              10, NEUTRAL},
    Word{"offside",                11, SIDED},
    Word{"penalty_kick",           12, SIDED},
    Word{"first_half_over",        13, NEUTRAL},
    Word{"pause",                  14, NEUTRAL},
    Word{"human_judge",            15, NEUTRAL},
    Word{"foul_charge",            16, SIDED},
    Word{"foul_push",              17, SIDED},
    Word{"foul_multiple_attack",   18, SIDED},
    Word{"foul_ballout",           19, SIDED},
    Word{"back_pass",              20, SIDED},
    Word{"time_up",                21, NEUTRAL},
    Word{"time_up_without_a_team", 22, NEUTRAL},
    Word{"time_extended",          23, NEUTRAL},
    Word{"half_time",              24, NEUTRAL},
    Word{"goalie_catch_ball",      25, SIDED},
};
// clang-format on

int modeOf(std::string_view text, bool sided) {
    auto const* const word = std::ranges::find_if(
        WORDS, [&](Word const& w) { return w.sided == sided && w.text == text; });
    return word == WORDS.end() ? RCC_PlayMode::UNKNOWN : word->mode;
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
    int mode = score ? RCC_PlayMode::UNKNOWN : modeOf(word, side != 0);
    if (score && side != 0 && word == "goal") mode = GOAL_WITH_SCORE;
    if (mode == RCC_PlayMode::UNKNOWN) return {};
    if (side == 0) return {mode, 0};
    return {mode, side == ownSide ? 1 : -1};
}

} // namespace rcc
