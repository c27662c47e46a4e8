#pragma once

#include "parser/RCC_Angle.h"
#include "parser/RCC_Object.h"
#include "parser/RCC_PlayMode.h"
#include "parser/RCC_Text.h"

// What the agent hears. `time` is the cycle in which the server sent the message on.

struct RCC_RefAudio : RCC_Object {
    int time = 0;
    RCC_PlayMode playMode;
};

/// The echo of the agent's own say.
struct RCC_SelfAudio : RCC_Object {
    int time = 0;
    RCC_Text text;
};

/// Some player of either team; the server does not tell which one.
struct RCC_PlayerAudio : RCC_Object {
    int time = 0;
    RCC_Angle direction; ///< relative to the body, clockwise
    RCC_Text text;
};

/// The trainer or an online coach. A message in the coach language is kept as it stands,
/// parentheses included; a quoted one without its quotes.
struct RCC_CoachAudio : RCC_Object {
    int time = 0;
    RCC_Text text;
};
