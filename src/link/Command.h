#pragma once

#include <cstddef>

#include "geometry/Angles.h"

/// The kinds of command the server accepts. At most one of `move` to `catch` counts per cycle.
enum class Command : int {
    none = 0,
    move = 1,
    kick = 2,
    dash = 3,
    turn = 4,
    goalieCatch = 5,
    turnNeck = 6,
    changeView = 7,
    score = 8,
    say = 9,
};

/// Width of the view cone, numbered as the history records it.
enum class ViewMode : int { narrow = 0, normal = 1, wide = 2 };
/// Quality of what is seen; low leaves out the distances.
enum class ViewQuality : int { high = 0, low = 1 };

/// Marks a command argument that has no value in this cycle.
inline constexpr float NO_ARGUMENT = UNDEFINED_FLOAT;

/// Room for the text of a main command and of any other one, with the closing NUL.
inline constexpr std::size_t MAIN_COMMAND_SIZE = 64;
inline constexpr std::size_t OTHER_COMMAND_SIZE = 512;
