#pragma once

#include <string_view>

#include "parser/RCC_Parameters.h"
#include "parser/RCC_Records.h"
#include "parser/Scanner.h"

// The bodies of the messages. Each function reads what follows the first word (of a hear: what
// follows the speaker) up to the closing of the message, which is not read. False when that is not
// what a server writes; the record then holds rubbish.

namespace rcc {

/// A see with seven empty containers that have room for the largest one.
RCC_Visual makeEmptySee();

/// Replaces what `see`, made by makeEmptySee(), holds.
bool readSee(Scanner& scanner, std::string_view ownTeam, RCC_Visual& see);

bool readSenseBody(Scanner& scanner, RCC_SenseBody& body);

/// `ownSide` is 1 left, -1 right, 0 not known.
bool readRefAudio(Scanner& scanner, int ownSide, RCC_RefAudio& audio);
bool readSelfAudio(Scanner& scanner, RCC_SelfAudio& audio);
bool readCoachAudio(Scanner& scanner, RCC_CoachAudio& audio);

/// A player is named by the direction, which is read here too.
bool readPlayerAudio(Scanner& scanner, RCC_PlayerAudio& audio);

bool readThink(Scanner& scanner, RCC_Think& think);
bool readScore(Scanner& scanner, RCC_Score& score);
bool readSubstitution(Scanner& scanner, RCC_Substitution& substitution);
bool readError(Scanner& scanner, RCC_Error& error);
bool readInit(Scanner& scanner, RCC_InitMsg& init);
bool readFullState(Scanner& scanner, RCC_FullState& state);

/// The answer to a reconnect tells the side only: 1 left, -1 right.
bool readReconnect(Scanner& scanner, int& side);

// Parameters come either all in their order, `14.02 5 0.3 ...`, or named, `(goal_width 14.02)...`,
// in any order. Names are compared without regard to case and underscores; unknown ones are
// skipped.
bool readServerParam(Scanner& scanner, RCC_ServerParam& param);
bool readPlayerParam(Scanner& scanner, RCC_PlayerParam& param);

/// All values must be there in the named form too.
bool readPlayerType(Scanner& scanner, RCC_PlayerType& type);

} // namespace rcc
