#pragma once

#include "parser/RCC_Object.h"
#include "parser/RCC_PlayMode.h"
#include "parser/RCC_Text.h"

/// The answer to a score command.
struct RCC_Score : RCC_Object {
    int time = 0; ///< cycle
    int ours = 0;
    int theirs = 0;
};

/// A player's type has changed.
struct RCC_Substitution : RCC_Object {
    static constexpr int NOT_REVEALED = -1;

    int unum = 0;            ///< 1 to 11
    int type = NOT_REVEALED; ///< known for the own team only
};

/// The server has refused something.
struct RCC_Error : RCC_Object {
    RCC_Text text;
};

/// The server has accepted the agent.
struct RCC_InitMsg : RCC_Object {
    int side = 0; ///< 1 left, -1 right
    int unum = 0; ///< 1 to 11
    RCC_PlayMode playMode;
};

/// The server's own view of the match; only the time is kept.
struct RCC_FullState : RCC_Object {
    int time = 0; ///< cycle
};
