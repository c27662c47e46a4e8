#include "parser/RCC_Parser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "parser/Readers.h"

namespace {

using rcc::Scanner;

/// The record of one kind: `draft` is filled while a message is read, `record` is what the handlers
/// see.
template <typename T>
struct Slot {
    RCC_Parser::Handlers<T> const& handlers;
    T draft{};
    RCC_Pointer<T> record = RCC_Pointer<T>::make();

    void clear() { draft = T{}; }
    void publish() { *record = draft; }
};

/// The containers change places instead of being copied. Reading a see clears those of the draft.
template <>
struct Slot<RCC_Visual> {
    RCC_Parser::Handlers<RCC_Visual> const& handlers;
    RCC_Visual draft = rcc::makeEmptySee();
    RCC_Pointer<RCC_Visual> record = RCC_Pointer<RCC_Visual>::make(rcc::makeEmptySee());

    void clear() {}
    void publish() { std::swap(*record, draft); }
};

/// Reads the rest of a message by `read(scanner, draft)`. When all of it is good, publishes the
/// record, calls the handlers and returns what is counted, with one more reference.
template <typename T, typename Read>
RCC_Object* readInto(Slot<T>& slot, Scanner& scanner, Read const& read) {
    slot.clear();
    if (!read(scanner, slot.draft) || !scanner.finish()) return nullptr;
    slot.publish();
    for (auto* const handler : slot.handlers) {
        handler->handle(slot.record);
    }
    RCC_Memory::retain(slot.record.object());
    return slot.record.object();
}

} // namespace

/// Reads messages into the records.
class RCC_Parser::Reader {
public:
    explicit Reader(RCC_Parser& owner) : parser_(owner) {}

    /// Returns what RCC_Parser::parse returns.
    RCC_Object* read(std::string_view message);

private:
    /// Reads what follows the first word of a message and returns what read() returns.
    using Operation = RCC_Object* (Reader::*)(Scanner&);

    struct Kind {
        std::string_view word;
        Operation operation;
    };

    static std::array<Kind, 13> const KINDS;

    /// The operation of a kind whose text says all there is to know.
    template <auto SLOT, auto READ>
    RCC_Object* plain(Scanner& scanner) {
        return readInto(this->*SLOT, scanner, READ);
    }

    /// A hear from one kind of speaker, whose words `read(scanner, draft)` reads.
    template <typename T, typename Read>
    RCC_Object* heard(Slot<T>& slot, int time, Scanner& scanner, Read const& read) {
        return readInto(slot, scanner, [&](Scanner& words, T& draft) {
            draft.time = time;
            return read(words, draft);
        });
    }

    RCC_Object* see(Scanner& scanner);
    RCC_Object* hear(Scanner& scanner);
    RCC_Object* init(Scanner& scanner);
    RCC_Object* reconnect(Scanner& scanner);

    RCC_Parser& parser_;
    int ownSide_ = 0; ///< 1 left, -1 right, 0 until the server has told it

    Slot<RCC_Visual> visual_{parser_.visualHandlers};
    Slot<RCC_SenseBody> senseBody_{parser_.senseBodyHandlers};
    Slot<RCC_RefAudio> refAudio_{parser_.refAudioHandlers};
    Slot<RCC_SelfAudio> selfAudio_{parser_.selfAudioHandlers};
    Slot<RCC_PlayerAudio> playerAudio_{parser_.playerAudioHandlers};
    Slot<RCC_CoachAudio> coachAudio_{parser_.coachAudioHandlers};
    Slot<RCC_Score> score_{parser_.scoreHandlers};
    Slot<RCC_Substitution> substitution_{parser_.substitutionHandlers};
    Slot<RCC_Error> error_{parser_.errorHandlers};
    Slot<RCC_InitMsg> initMsg_{parser_.initMsgHandlers};
    Slot<RCC_ServerParam> serverParam_{parser_.serverParamHandlers};
    Slot<RCC_PlayerParam> playerParam_{parser_.playerParamHandlers};
    Slot<RCC_PlayerType> playerType_{parser_.playerTypeHandlers};
    Slot<RCC_Think> think_{parser_.thinkHandlers};
    Slot<RCC_FullState> fullState_{parser_.fullStateHandlers};
};

// The frequent kinds first. What else the server says (ok, warning) needs no answer.
// clang-format off
std::array<RCC_Parser::Reader::Kind, 13> const RCC_Parser::Reader::KINDS = {{
    {"see",                &Reader::see},
    {"sense_body",         &Reader::plain<&Reader::senseBody_, rcc::readSenseBody>},
    {"hear",               &Reader::hear},
    {"think",              &Reader::plain<&Reader::think_, rcc::readThink>},
    {"score",              &Reader::plain<&Reader::score_, rcc::readScore>},
    {"change_player_type", &Reader::plain<&Reader::substitution_, rcc::readSubstitution>},
    {"error",              &Reader::plain<&Reader::error_, rcc::readError>},
    {"init",               &Reader::init},
    {"reconnect",          &Reader::reconnect},
    {"server_param",       &Reader::plain<&Reader::serverParam_, rcc::readServerParam>},
    {"player_param",       &Reader::plain<&Reader::playerParam_, rcc::readPlayerParam>},
    {"player_type",        &Reader::plain<&Reader::playerType_, rcc::readPlayerType>},
    {"fullstate",          &Reader::plain<&Reader::fullState_, rcc::readFullState>},
}};
// clang-format on

RCC_Object* RCC_Parser::Reader::read(std::string_view message) {
    Scanner scanner(message);
    if (!scanner.open()) return nullptr;
    auto const* const kind = std::ranges::find(KINDS, scanner.word(), &Kind::word);
    return kind == KINDS.end() ? nullptr : (this->*kind->operation)(scanner);
}

RCC_Object* RCC_Parser::Reader::see(Scanner& scanner) {
    return readInto(visual_, scanner, [this](Scanner& objects, RCC_Visual& draft) {
        return rcc::readSee(objects, parser_.teamName, draft);
    });
}

RCC_Object* RCC_Parser::Reader::hear(Scanner& scanner) {
    int time = 0;
    if (!scanner.cycle(time)) return nullptr;
    if (scanner.atNumber()) return heard(playerAudio_, time, scanner, rcc::readPlayerAudio);
    std::string_view const speaker = scanner.word();
    if (speaker == "referee") {
        return heard(refAudio_, time, scanner, [this](Scanner& words, RCC_RefAudio& audio) {
            return rcc::readRefAudio(words, ownSide_, audio);
        });
    }
    if (speaker == "self") return heard(selfAudio_, time, scanner, rcc::readSelfAudio);
    if (speaker == "coach" || speaker == "online_coach_left" || speaker == "online_coach_right") {
        return heard(coachAudio_, time, scanner, rcc::readCoachAudio);
    }
    return nullptr;
}

RCC_Object* RCC_Parser::Reader::init(Scanner& scanner) {
    RCC_Object* const record = readInto(initMsg_, scanner, rcc::readInit);
    if (record != nullptr) ownSide_ = initMsg_.draft.side;
    return record;
}

RCC_Object* RCC_Parser::Reader::reconnect(Scanner& scanner) {
    int side = 0;
    if (rcc::readReconnect(scanner, side) && scanner.finish()) ownSide_ = side;
    return nullptr;
}

// A reference is what the callers of this constructor are written for.
// NOLINTNEXTLINE(modernize-pass-by-value)
RCC_Parser::RCC_Parser(mode_t const&, std::string const& team, int const&)
    : teamName(team), reader_(std::make_unique<Reader>(*this)) {}

RCC_Parser::~RCC_Parser() = default;

RCC_Object* RCC_Parser::parse(RCC_String const& message) {
    return message.oversized() ? nullptr : reader_->read(message.view());
}

// The storage beyond the text is never read, so it is not worth clearing for each message.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
RCC_String::RCC_String(std::string_view text)
    : oversized_(text.size() > CAPACITY), length_(oversized_ ? 0 : text.size()) {
    std::copy_n(text.data(), length_, storage_.begin());
}
