#pragma once

#include "parser/RCC_Angle.h"
#include "parser/RCC_Container.h"
#include "parser/RCC_Text.h"

#include <cstddef>

/// What a see tells of any object. Directions are relative to the gaze (head) direction, clockwise.
/// With low view quality there is a direction only.
struct RCC_SeenObject : RCC_Object {
    float distance = RCC_ABSENT; ///< metres
    RCC_Angle direction;
    float speed = RCC_ABSENT; ///< change of distance, metres per cycle
    RCC_Angle speedDirection; ///< change of direction per cycle

    bool hasDistance() const { return distance != RCC_ABSENT; }
    bool hasSpeed() const { return speed != RCC_ABSENT; }
};

/// A side line; code 2 top, 3 bottom, 4 left, 5 right.
struct RCC_Line : RCC_SeenObject {
    int code = 0;
};

/// A flag or a goal. The code is written with the digits 2 top, 3 bottom, 4 left, 5 right,
/// 6 centre, 7 penalty area, 8 goal; thousands give tens of metres along an outer row. CLOSE_BY is
/// an object felt outside the view cone, of which only the kind is known.
struct RCC_Flag : RCC_SeenObject {
    static constexpr int CLOSE_BY = 1;
    int code = 0;
};

struct RCC_Ball : RCC_SeenObject {};

/// What was recognised of a player: an empty team or a zero uniform number is unknown.
struct RCC_PlayerName {
    RCC_FixedText<31> team;
    int unum = 0;
    bool goalie = false;
};

/// A player; body and head direction are relative to the observer's gaze, absent when too far.
struct RCC_Player : RCC_SeenObject {
    RCC_PlayerName name;
    RCC_Angle bodyDirection;
    RCC_Angle headDirection;
};

/// One see message, its objects sorted by kind in the order of the message. The parser reuses the
/// record, its containers and their elements for the next see.
struct RCC_Visual : RCC_Object {
    /// A see with more objects than this in one container is dropped whole.
    static constexpr std::size_t MAX_OBJECTS = 128;

    int time = 0; ///< cycle
    RCC_Pointer<RCC_Container<RCC_Line>> lines;
    RCC_Pointer<RCC_Container<RCC_Flag>> flags;
    RCC_Pointer<RCC_Container<RCC_Flag>> goals;
    RCC_Pointer<RCC_Container<RCC_Player>> allies;
    RCC_Pointer<RCC_Container<RCC_Player>> enemies;
    RCC_Pointer<RCC_Container<RCC_Player>> neuts; ///< team not recognised
    RCC_Pointer<RCC_Container<RCC_Ball>> balls;   ///< none or one
};
