#include "parser/RCC_Parser.h"

#include "parser/ParseAudio.h"
#include "parser/ParseBody.h"
#include "parser/ParseParam.h"
#include "parser/ParseStatus.h"
#include "parser/ParseVisual.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

/// The record of one kind: `draft` is filled while a message is read, `record` is what the handlers
/// see and stays at its address.
template <class T>
struct Slot {
    T draft;
    RCC_Pointer<T> record = RCC_Pointer<T>::make();

    void publish() { *record = draft; }
};

/// A container and the elements it can be filled with.
template <class T>
class SeenPool {
public:
    SeenPool() {
        container->reserve(elements.size());
        std::ranges::generate(elements, [] { return RCC_Pointer<T>::make(); });
    }

    void publish(rcc::SeenList<T> const& seen) {
        container->clear();
        for (std::size_t i = 0; T const& object : seen.objects()) {
            *elements[i] = object;
            container->append(elements[i++]);
        }
    }

    RCC_Pointer<RCC_Container<T>> container = RCC_Pointer<RCC_Container<T>>::make();

private:
    std::array<RCC_Pointer<T>, RCC_Visual::MAX_OBJECTS> elements;
};

struct VisualSlot {
    rcc::VisualDraft draft;
    RCC_Pointer<RCC_Visual> record = RCC_Pointer<RCC_Visual>::make();

    VisualSlot() {
        record->lines = lines.container;
        record->flags = flags.container;
        record->goals = goals.container;
        record->allies = allies.container;
        record->enemies = enemies.container;
        record->neuts = neuts.container;
        record->balls = balls.container;
    }

    void publish() {
        record->time = draft.time;
        lines.publish(draft.lines);
        flags.publish(draft.flags);
        goals.publish(draft.goals);
        allies.publish(draft.allies);
        enemies.publish(draft.enemies);
        neuts.publish(draft.neuts);
        balls.publish(draft.balls);
    }

private:
    SeenPool<RCC_Line> lines;
    SeenPool<RCC_Flag> flags;
    SeenPool<RCC_Flag> goals;
    SeenPool<RCC_Player> allies;
    SeenPool<RCC_Player> enemies;
    SeenPool<RCC_Player> neuts;
    SeenPool<RCC_Ball> balls;
};

/// Calls the handlers; the reference added here is the one that parse returns.
template <class T>
RCC_Object* deliver(RCC_Pointer<T> const& record, RCC_Parser::Handlers<T> const& handlers) {
    for (auto* const handler : handlers) {
        handler->handle(record);
    }
    RCC_Memory::retain(record.get());
    return record.get();
}

} // namespace

/// Reads messages into the records. Each of the private operations reads what follows the first
/// word of its kind and returns what parse returns.
class RCC_Parser::Reader {
public:
    explicit Reader(RCC_Parser& owner) : parser(owner) {}

    RCC_Object* read(std::string_view message);

private:
    using Operation = RCC_Object* (Reader::*)(RCC_Scanner&);

    struct Kind {
        std::string_view word;
        Operation operation;
    };

    static std::array<Kind, 12> const KINDS;

    /// A kind whose body `parse(scanner, draft)` reads.
    template <class T, class Parse>
    RCC_Object* readInto(RCC_Scanner& scanner, Slot<T>& slot, Handlers<T> const& handlers,
                         Parse parse) {
        slot.draft = T{};
        if (!parse(scanner, slot.draft) || !scanner.finish()) return nullptr;
        slot.publish();
        return deliver(slot.record, handlers);
    }

    /// A hear from one kind of speaker, whose words `parse(scanner, draft)` reads.
    template <class T, class Parse>
    RCC_Object* readHeard(RCC_Scanner& scanner, int time, Slot<T>& slot,
                          Handlers<T> const& handlers, Parse parse) {
        return readInto(scanner, slot, handlers, [&](RCC_Scanner& body, T& draft) {
            draft.time = time;
            return parse(body, draft);
        });
    }

    RCC_Object* see(RCC_Scanner& scanner) {
        if (!rcc::parseVisual(scanner, parser.teamName, visual.draft) || !scanner.finish()) {
            return nullptr;
        }
        visual.publish();
        return deliver(visual.record, parser.visualHandlers);
    }

    RCC_Object* hear(RCC_Scanner& scanner);
    RCC_Object* init(RCC_Scanner& scanner);
    RCC_Object* reconnect(RCC_Scanner& scanner);

    RCC_Object* senseBodyMessage(RCC_Scanner& scanner) {
        return readInto(scanner, senseBody, parser.senseBodyHandlers, rcc::parseSenseBody);
    }
    RCC_Object* scoreMessage(RCC_Scanner& scanner) {
        return readInto(scanner, score, parser.scoreHandlers, rcc::parseScore);
    }
    RCC_Object* changePlayerType(RCC_Scanner& scanner) {
        return readInto(scanner, substitution, parser.substitutionHandlers, rcc::parseSubstitution);
    }
    RCC_Object* errorMessage(RCC_Scanner& scanner) {
        return readInto(scanner, error, parser.errorHandlers, rcc::parseError);
    }
    RCC_Object* serverParamMessage(RCC_Scanner& scanner) {
        return readInto(scanner, serverParam, parser.serverParamHandlers, rcc::parseServerParam);
    }
    RCC_Object* playerParamMessage(RCC_Scanner& scanner) {
        return readInto(scanner, playerParam, parser.playerParamHandlers, rcc::parsePlayerParam);
    }
    RCC_Object* playerTypeMessage(RCC_Scanner& scanner) {
        return readInto(scanner, playerType, parser.playerTypeHandlers, rcc::parsePlayerType);
    }
    RCC_Object* fullStateMessage(RCC_Scanner& scanner) {
        return readInto(scanner, fullState, parser.fullStateHandlers, rcc::parseFullState);
    }

    RCC_Parser& parser;
    int ownSide = 0; ///< 1 left, -1 right, 0 until the server has told it

    VisualSlot visual;
    Slot<RCC_SenseBody> senseBody;
    Slot<RCC_RefAudio> refAudio;
    Slot<RCC_SelfAudio> selfAudio;
    Slot<RCC_PlayerAudio> playerAudio;
    Slot<RCC_CoachAudio> coachAudio;
    Slot<RCC_Score> score;
    Slot<RCC_Substitution> substitution;
    Slot<RCC_Error> error;
    Slot<RCC_InitMsg> initMsg;
    Slot<RCC_ServerParam> serverParam;
    Slot<RCC_PlayerParam> playerParam;
    Slot<RCC_PlayerType> playerType;
    Slot<RCC_FullState> fullState;
};

// The frequent kinds first. What else the server says (ok, warning, think) needs no answer.
// clang-format off
std::array<RCC_Parser::Reader::Kind, 12> const RCC_Parser::Reader::KINDS = {{
    {"see",                &Reader::see},
    {"sense_body",         &Reader::senseBodyMessage},
    {"hear",               &Reader::hear},
    {"score",              &Reader::scoreMessage},
    {"change_player_type", &Reader::changePlayerType},
    {"error",              &Reader::errorMessage},
    {"init",               &Reader::init},
    {"reconnect",          &Reader::reconnect},
    {"server_param",       &Reader::serverParamMessage},
    {"player_param",       &Reader::playerParamMessage},
    {"player_type",        &Reader::playerTypeMessage},
    {"fullstate",          &Reader::fullStateMessage},
}};
// clang-format on

RCC_Object* RCC_Parser::Reader::read(std::string_view message) {
    RCC_Scanner scanner(message);
    if (!scanner.open()) return nullptr;
    auto const* const kind = std::ranges::find(KINDS, scanner.word(), &Kind::word);
    return kind == KINDS.end() ? nullptr : (this->*kind->operation)(scanner);
}

RCC_Object* RCC_Parser::Reader::hear(RCC_Scanner& scanner) {
    int time = 0;
    if (!scanner.cycle(time)) return nullptr;
    if (scanner.atNumber()) {
        return readHeard(scanner, time, playerAudio, parser.playerAudioHandlers,
                         rcc::parsePlayerAudio);
    }
    std::string_view const speaker = scanner.word();
    if (speaker == "referee") {
        return readHeard(scanner, time, refAudio, parser.refAudioHandlers,
                         [this](RCC_Scanner& body, RCC_RefAudio& audio) {
                             return rcc::parseRefAudio(body, ownSide, audio);
                         });
    }
    if (speaker == "self") {
        return readHeard(scanner, time, selfAudio, parser.selfAudioHandlers, rcc::parseSelfAudio);
    }
    if (speaker == "coach" || speaker == "online_coach_left" || speaker == "online_coach_right") {
        return readHeard(scanner, time, coachAudio, parser.coachAudioHandlers,
                         rcc::parseCoachAudio);
    }
    return nullptr;
}

RCC_Object* RCC_Parser::Reader::init(RCC_Scanner& scanner) {
    initMsg.draft = {};
    if (!rcc::parseInit(scanner, initMsg.draft) || !scanner.finish()) return nullptr;
    ownSide = initMsg.draft.side;
    initMsg.publish();
    return deliver(initMsg.record, parser.initMsgHandlers);
}

RCC_Object* RCC_Parser::Reader::reconnect(RCC_Scanner& scanner) {
    int side = 0;
    if (rcc::parseReconnect(scanner, side) && scanner.finish()) ownSide = side;
    return nullptr;
}

// A reference is what the callers of this constructor are written for.
// NOLINTNEXTLINE(modernize-pass-by-value)
RCC_Parser::RCC_Parser(mode_t const&, std::string const& team, int const&)
    : teamName(team), reader(std::make_unique<Reader>(*this)) {}

RCC_Parser::~RCC_Parser() = default;

RCC_Object* RCC_Parser::parse(RCC_String const& message) {
    return message.oversized() ? nullptr : reader->read(message.view());
}
