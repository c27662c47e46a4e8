#pragma once

#include <array>
#include <cstddef>

#include "geometry/Vector2D.h"
#include "worldmodel/PlayMode.h"

/// The team's fixed formation as constant tables, and the strategic position drawn from them.
/// Frame: the agent's own (own goal at negative x), metres.
namespace Formation {

inline constexpr int PLAYERS = 11;
inline constexpr int GOALIE_NUMBER = 1;
inline constexpr int FIRST_FIELD_PLAYER = 2;

/// By shirt number; index 0 is number 1.
inline constexpr std::array<Vector2D, PLAYERS> homePositions = {{
    {-45.0F, 0.0F, CARTESIAN},
    {-17.0F, -21.0F, CARTESIAN},
    {-18.0F, -5.0F, CARTESIAN},
    {-18.0F, 5.0F, CARTESIAN},
    {-17.0F, 21.0F, CARTESIAN},
    {0.0F, -15.0F, CARTESIAN},
    {0.0F, 0.0F, CARTESIAN},
    {0.0F, 15.0F, CARTESIAN},
    {15.0F, -20.0F, CARTESIAN},
    {20.0F, 0.0F, CARTESIAN},
    {15.0F, 20.0F, CARTESIAN},
}};

/// For the kick-off; index 0 is number 1.
inline constexpr std::array<Vector2D, PLAYERS> initialPositions = {{
    {-50.0F, 0.0F, CARTESIAN},
    {-15.0F, -16.0F, CARTESIAN},
    {-17.0F, -5.0F, CARTESIAN},
    {-17.0F, 5.0F, CARTESIAN},
    {-15.0F, 16.0F, CARTESIAN},
    {-10.0F, -20.0F, CARTESIAN},
    {-10.0F, 0.0F, CARTESIAN},
    {-10.0F, 20.0F, CARTESIAN},
    {-1.0F, -23.0F, CARTESIAN},
    {-2.0F, 0.0F, CARTESIAN},
    {-1.0F, 23.0F, CARTESIAN},
}};

// How far a player follows the ball, the band of x it keeps to, and whether it stays behind the
// ball. Indexed by shirt number; index 0 is not used.
// clang-format off
inline constexpr std::array<float, 16> attractionX =
    {0, 0.1F, 0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 0.5F, 0.6F, 0.6F, 0.6F};
inline constexpr std::array<float, 16> attractionY =
    {0, 0.1F, 0.25F, 0.25F, 0.25F, 0.25F, 0.25F, 0.25F, 0.25F, 0.25F, 0.25F, 0.25F};
inline constexpr std::array<float, 16> maxX =
    {0, -30.0F, -10.0F, -10.0F, -10.0F, -10.0F, 35.0F, 35.0F, 35.0F, 42.0F, 42.0F, 42.0F};
inline constexpr std::array<float, 12> minX =
    {0, -52.5F, -41.0F, -41.0F, -41.0F, -41.0F, -38.0F, -38.0F, -38.0F, -25.0F, -25.0F, -25.0F};
inline constexpr std::array<bool, 12> behindBall =
    {false, true, true, true, true, true, false, false, false, false, false, false};
// clang-format on

/// Play mode in which nobody runs ahead of the ball: the others have it.
inline constexpr PlayMode BEHIND_BALL_MODE = PM_OUR_OFFSIDE;

constexpr bool isShirtNumber(int unum) {
    return unum >= 1 && unum <= PLAYERS;
}

// Table entries by shirt number, 1 to 11.
constexpr Vector2D homePosition(int unum) {
    return homePositions[static_cast<std::size_t>(unum - 1)];
}

constexpr Vector2D initialPosition(int unum) {
    return initialPositions[static_cast<std::size_t>(unum - 1)];
}

/// Where number `unum` (1 to 11) stands without the ball: its home position, pulled towards the
/// ball by its share of `pull` (the way from a reference point to the ball).
Vector2D strategicPosition(int unum, Vector2D pull, Vector2D ball, int playMode);

} // namespace Formation
