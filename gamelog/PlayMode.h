#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace gamelog {

/// The team that defends the left goal, or the one that defends the right goal.
enum class Side : std::uint8_t { left, right };

constexpr Side opponentOf(Side side) {
    return side == Side::left ? Side::right : Side::left;
}

/// `l` or `r`, as logs write it.
constexpr std::string_view letterOf(Side side) {
    return side == Side::left ? "l" : "r";
}

/// What is going on. The value is the number that monitors are told; logs write the word. Of a pair
/// the left side comes first: it is kick-off of the left team, goal of the left team, offside of
/// the left team (so that the right one gets the free kick).
enum class PlayMode : std::uint8_t {
    none,
    beforeKickOff,
    timeOver,
    playOn,
    kickOffLeft,
    kickOffRight,
    kickInLeft,
    kickInRight,
    freeKickLeft,
    freeKickRight,
    cornerKickLeft,
    cornerKickRight,
    goalKickLeft,
    goalKickRight,
    goalLeft,
    goalRight,
    dropBall,
    offsideLeft,
    offsideRight,
    penaltyKickLeft,
    penaltyKickRight,
    firstHalfOver,
    pause,
    humanJudge,
    foulChargeLeft,
    foulChargeRight,
    foulPushLeft,
    foulPushRight,
    foulMultipleAttackLeft,
    foulMultipleAttackRight,
    foulBalloutLeft,
    foulBalloutRight,
    backPassLeft,
    backPassRight,
    freeKickFaultLeft,
    freeKickFaultRight,
    catchFaultLeft,
    catchFaultRight,
    indirectFreeKickLeft,
    indirectFreeKickRight,
    penaltySetupLeft,
    penaltySetupRight,
    penaltyReadyLeft,
    penaltyReadyRight,
    penaltyTakenLeft,
    penaltyTakenRight,
    penaltyMissLeft,
    penaltyMissRight,
    penaltyScoreLeft,
    penaltyScoreRight,
    illegalDefenseLeft,
    illegalDefenseRight,
};

constexpr int PLAY_MODES = 52;

/// The word of a mode: "kick_off_l".
std::string_view wordOf(PlayMode mode);

/// The mode of a word; nothing for a word that is none.
std::optional<PlayMode> playModeOf(std::string_view word);

/// The side that the mode's word ends in; nothing for the others.
std::optional<Side> sideOf(PlayMode mode);

/// The word without its side: "kick_off" for both kick-offs.
std::string_view stemOf(PlayMode mode);

/// The mode for `side`, given the one for the left side: forSide(kickOffLeft, Side::right).
constexpr PlayMode forSide(PlayMode left, Side side) {
    return static_cast<PlayMode>(static_cast<int>(left) + (side == Side::right ? 1 : 0));
}

} // namespace gamelog
