#pragma once

#include <span>

#include "geometry/Shapes.h"
#include "parser/RCC_Records.h"

/// The side that the agent's team plays from.
enum class FieldSide : int { right = -1, unknown = 0, left = 1 };

/// The fixed geometry of the pitch, and the agent's place and facing from what it sees of it.
///
/// The frame is the agent's own: x from the own goal to the opponents', y from the top touch line
/// to the bottom one, metres. Goal lines, goals and corner flags are kept at x = +-52, and the
/// flags outside at x = +-57; other parts of the program rely on these numbers. One `Field` belongs
/// to the world model; it is constant, so any thread may read it.
class Field {
public:
    static constexpr float GOAL_WIDTH = 14.02F;
    static constexpr int LENGTH = 105;
    static constexpr int WIDTH = 68;
    static constexpr float PENALTY_AREA_LENGTH = 16.5F;
    static constexpr float PENALTY_AREA_WIDTH = 40.32F;
    static constexpr float KICKOFF_CIRCLE_RADIUS = 9.15F;
    static constexpr float OWN_GOAL_OUTLINE = -52.0F;
    static constexpr float OPP_GOAL_OUTLINE = 52.0F;
    static constexpr float R_SIDE_OUTLINE = 34.0F;
    static constexpr float L_SIDE_OUTLINE = -34.0F;

    static constexpr Rectangle OWN_PENALTY_AREA{{-52.0F, -20.16F, CARTESIAN},
                                                {-35.5F, 20.16F, CARTESIAN}};
    static constexpr Rectangle OPP_PENALTY_AREA{{52.0F, -20.16F, CARTESIAN},
                                                {35.5F, 20.16F, CARTESIAN}};
    static constexpr Rectangle FIELD{{-52.0F, -34.0F, CARTESIAN}, {52.0F, 34.0F, CARTESIAN}};
    static constexpr Vector2D GOAL_CENTER{-52.0F, 0.0F, CARTESIAN};
    static constexpr Circle GOALIE_POSITIONING_CIRCLE{GOAL_CENTER, 7.01F};
    static constexpr Vector2D OPP_GOAL_CENTER{52.0F, 0.0F, CARTESIAN};
    /// Where the server has the opponents' goal line, half a metre behind ours.
    static constexpr float SERVER_OPP_GOAL_LINE = 52.5F;
    /// Where the goalkeeper takes its free kicks from, and the space in front of either point.
    static constexpr Vector2D GOALIE_KICK_OFF_POINT_LEFT{-38.0F, -12.0F, CARTESIAN};
    static constexpr Vector2D GOALIE_KICK_OFF_POINT_RIGHT{-38.0F, 12.0F, CARTESIAN};
    static constexpr Rectangle GOALIE_KICK_OFF_RECT_LEFT{
        GOALIE_KICK_OFF_POINT_LEFT + Vector2D{0.0F, 15.0F, CARTESIAN},
        GOALIE_KICK_OFF_POINT_LEFT + Vector2D{25.0F, -15.0F, CARTESIAN}};
    static constexpr Rectangle GOALIE_KICK_OFF_RECT_RIGHT{
        GOALIE_KICK_OFF_POINT_RIGHT + Vector2D{0.0F, 15.0F, CARTESIAN},
        GOALIE_KICK_OFF_POINT_RIGHT + Vector2D{25.0F, -15.0F, CARTESIAN}};

    // Codes of the landmarks that the behaviours aim at.
    static constexpr int OPP_GOAL_LEFT_POST = 258;
    static constexpr int OPP_GOAL_RIGHT_POST = 358;
    static constexpr int OPP_LEFT_CORNER = 25;
    static constexpr int OPP_RIGHT_CORNER = 35;

    virtual ~Field() = default;

    /// Where a team that plays from the left has the landmark; (0, 0) for an unknown code.
    static Vector2D landmark(int code);

    /// The agent's head direction (clockwise degrees) from the lines of one see: the farther of the
    /// first two decides. Not always reduced to [0, 360). Without a line 0, on the right side 180.
    static float computeFaceDirection(std::span<RCC_Line const> lines, FieldSide side);

    /// The agent's position as one seen flag implies it; (0, 0) when the side is not known. A flag
    /// without distance gives an infinite position.
    static Vector2D computePosFromFlag(RCC_Flag const& flag, float faceDirection, FieldSide side);
};
