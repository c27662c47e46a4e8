#pragma once

#include "parser/RCC_Angle.h"
#include "parser/RCC_Object.h"

/// The agent's sense of its own body, sent once a cycle.
struct RCC_SenseBody : RCC_Object {
    int time = 0;        ///< cycle
    int viewQuality = 0; ///< 0 high, 1 low
    int viewWidth = 1;   ///< 0 narrow, 1 normal, 2 wide

    float stamina = 0;
    float effort = 0;
    float speed = 0;          ///< metres per cycle, after decay
    RCC_Angle speedDirection; ///< of the motion relative to the gaze, clockwise, whole degrees
    RCC_Angle headAngle;      ///< of the neck relative to the body, clockwise, whole degrees

    // How many commands of each kind the server has carried out since the agent joined.
    int kicks = 0;
    int dashes = 0;
    int turns = 0;
    int says = 0;
    int turnNecks = 0;
    int catches = 0;
    int moves = 0;
    int changeViews = 0;
};
