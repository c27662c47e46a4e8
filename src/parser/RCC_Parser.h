#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>

#include "parser/RCC_Parameters.h"
#include "parser/RCC_Records.h"

/// The text of one message, copied into storage of its own. A text of more than CAPACITY bytes is
/// not kept: it is remembered as oversized, its view is empty, and the parser drops it.
class RCC_String : public RCC_Object {
public:
    static constexpr std::size_t CAPACITY = 4096;

    explicit RCC_String(std::string_view text);

    std::string_view view() const { return {storage_.data(), length_}; }
    bool oversized() const { return oversized_; }

private:
    bool oversized_;
    std::size_t length_;
    std::array<char, CAPACITY> storage_; // left unset beyond the length
};

/// Receives the records of one kind, as RCC_Handler<RCC_Pointer<RCC_Visual>>. Called inside
/// RCC_Parser::parse on its thread; what the handle refers to is good until the next message of the
/// same kind, so a handler copies what it wants to keep.
template <typename T>
class RCC_Handler {
public:
    RCC_Handler() = default;
    RCC_Handler(RCC_Handler const&) = default;
    RCC_Handler& operator=(RCC_Handler const&) = default;
    virtual ~RCC_Handler() = default;

    virtual void handle(T const& record) = 0;
};

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

    template <typename T>
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
    Handlers<RCC_Think> thinkHandlers;
    Handlers<RCC_ServerParam> serverParamHandlers;
    Handlers<RCC_PlayerParam> playerParamHandlers;
    Handlers<RCC_PlayerType> playerTypeHandlers;
    Handlers<RCC_FullState> fullStateHandlers;

private:
    class Reader;
    std::unique_ptr<Reader> reader_;
};
