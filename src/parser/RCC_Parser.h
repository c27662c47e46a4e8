#pragma once

#include "parser/RCC_Audio.h"
#include "parser/RCC_Handler.h"
#include "parser/RCC_Param.h"
#include "parser/RCC_SenseBody.h"
#include "parser/RCC_Status.h"
#include "parser/RCC_String.h"
#include "parser/RCC_Visual.h"

#include <list>
#include <memory>
#include <string>

/// Turns the server's messages into records and hands them to the registered handlers.
///
/// A message that is cut off, garbled, oversized or of an unknown kind calls no handler and changes
/// nothing. Records are reused: each kind has one, at a fixed address, which a message overwrites
/// only when all of it has been read. Neither parsing nor delivery allocates memory.
///
/// Not thread-safe; parse and the handlers run on the caller's thread.
class RCC_Parser {
public:
    using mode_t = int;

    template <class T>
    using Handlers = std::list<RCC_Handler<RCC_Pointer<T>>*>;

    /// There is one mode, 0; the number is for the caller's use and has no effect.
    RCC_Parser(mode_t const& mode, std::string const& teamName, int const& n);
    RCC_Parser(RCC_Parser const&) = delete;
    RCC_Parser& operator=(RCC_Parser const&) = delete;
    ~RCC_Parser();

    /// Parses one message and calls the handlers of its kind, in the order of their list. Returns
    /// the record, to be given back with RCC_Memory::remove, or null when there is none.
    RCC_Object* parse(RCC_String const& message);

    /// The agent's own team: tells team-mates from opponents in what is seen.
    std::string teamName;

    // Not owned; a handler must live as long as it is listed.
    Handlers<RCC_Visual> visualHandlers;
    Handlers<RCC_SenseBody> senseBodyHandlers;
    Handlers<RCC_RefAudio> refAudioHandlers;
    Handlers<RCC_SelfAudio> selfAudioHandlers;
    Handlers<RCC_PlayerAudio> playerAudioHandlers;
    Handlers<RCC_CoachAudio> coachAudioHandlers;
    Handlers<RCC_Score> scoreHandlers;
    Handlers<RCC_Substitution> substitutionHandlers;
    Handlers<RCC_Error> errorHandlers;
    Handlers<RCC_InitMsg> initMsgHandlers;
    Handlers<RCC_ServerParam> serverParamHandlers;
    Handlers<RCC_PlayerParam> playerParamHandlers;
    Handlers<RCC_PlayerType> playerTypeHandlers;
    Handlers<RCC_FullState> fullStateHandlers;

private:
    class Reader;
    std::unique_ptr<Reader> reader;
};
