#include "sensing/RCCParserSupport.h"

#include "sensing/Sensors.h"

namespace {

/// Where the newest record of one kind is kept.
template <typename Record, typename Flag = std::atomic<bool>>
struct Slot {
    Record*& buffer;
    Flag& isNew;
};

// clang-format off
Slot<RCC_SenseBody, ArrivalFlag> slotOf(RCC_SenseBody const&) { return {Sensors::senseBody,    Sensors::newSenseBody}; }
Slot<RCC_RefAudio>     slotOf(RCC_RefAudio const&)     { return {Sensors::refAudio,     Sensors::newRefAudio}; }
Slot<RCC_SelfAudio>    slotOf(RCC_SelfAudio const&)    { return {Sensors::selfAudio,    Sensors::newSelfAudio}; }
Slot<RCC_PlayerAudio>  slotOf(RCC_PlayerAudio const&)  { return {Sensors::playerAudio,  Sensors::newPlayerAudio}; }
Slot<RCC_CoachAudio>   slotOf(RCC_CoachAudio const&)   { return {Sensors::coachAudio,   Sensors::newCoachAudio}; }
Slot<RCC_Score>        slotOf(RCC_Score const&)        { return {Sensors::score,        Sensors::newScore}; }
Slot<RCC_Substitution> slotOf(RCC_Substitution const&) { return {Sensors::substitution, Sensors::newSubstitution}; }
Slot<RCC_Error>        slotOf(RCC_Error const&)        { return {Sensors::error,        Sensors::newError}; }
Slot<RCC_InitMsg>      slotOf(RCC_InitMsg const&)      { return {Sensors::initMsg,      Sensors::newInitMsg}; }
Slot<RCC_Think>        slotOf(RCC_Think const&)        { return {Sensors::think,        Sensors::newThink}; }
Slot<RCC_ServerParam>  slotOf(RCC_ServerParam const&)  { return {Sensors::serverParam,  Sensors::newServerParam}; }
Slot<RCC_PlayerParam>  slotOf(RCC_PlayerParam const&)  { return {Sensors::playerParam,  Sensors::newPlayerParam}; }
Slot<RCC_PlayerType>   slotOf(RCC_PlayerType const&)   { return {Sensors::playerType,   Sensors::newPlayerType}; }
// clang-format on

/// Replaces `seen` by copies of what the container holds.
template <typename T>
void copyAll(RCC_Pointer<RCC_Container<T>> const& container, std::vector<T>& seen,
             char const* boundsMessage) {
    seen.clear();
    for (std::size_t i = 1; i <= container->size(); ++i) {
        std::size_t const index = i - 1;
        if (index >= container->size()) throw RCC_BoundsException(boundsMessage);
        seen.push_back(*(*container)[index]);
    }
}

} // namespace

void VisualHandler::handle(RCC_Pointer<RCC_Visual> const& p) {
    static auto Lines = roomForOneSee<RCC_Line>();
    static auto Flags = roomForOneSee<RCC_Flag>();
    static auto Goals = roomForOneSee<RCC_Flag>();
    static auto Allies = roomForOneSee<RCC_Player>();
    static auto Enemies = roomForOneSee<RCC_Player>();
    static auto Neuts = roomForOneSee<RCC_Player>();
    static auto Balls = roomForOneSee<RCC_Ball>();

    // All of the message first, so that Sensors never holds a part of one.
    copyAll(p->lines, Lines, "Line idx out of bounds");
    copyAll(p->flags, Flags, "Flag idx out of bounds");
    copyAll(p->goals, Goals, "Goal idx out of bounds");
    copyAll(p->allies, Allies, "Ally idx out of bounds");
    copyAll(p->enemies, Enemies, "Enemy idx out of bounds");
    copyAll(p->neuts, Neuts, "Neut idx out of bounds");
    copyAll(p->balls, Balls, "Ball idx out of bounds");

    Sensors::lines = Lines;
    Sensors::flags = Flags;
    Sensors::goals = Goals;
    Sensors::allies = Allies;
    Sensors::enemies = Enemies;
    Sensors::neuts = Neuts;
    Sensors::balls = Balls;
    Sensors::newVisual = true;
}

template <typename Record>
void RecordHandler<Record>::handle(RCC_Pointer<Record> const& p) {
    Record const& record = *p;
    auto [buffer, isNew] = slotOf(record);
    if (buffer == nullptr) {
        buffer = new Record(record); // for the life of the process
    } else {
        *buffer = record;
    }
    isNew = true;
}

template class RecordHandler<RCC_SenseBody>;
template class RecordHandler<RCC_RefAudio>;
template class RecordHandler<RCC_SelfAudio>;
template class RecordHandler<RCC_PlayerAudio>;
template class RecordHandler<RCC_CoachAudio>;
template class RecordHandler<RCC_Score>;
template class RecordHandler<RCC_Substitution>;
template class RecordHandler<RCC_Error>;
template class RecordHandler<RCC_InitMsg>;
template class RecordHandler<RCC_Think>;
template class RecordHandler<RCC_ServerParam>;
template class RecordHandler<RCC_PlayerParam>;
template class RecordHandler<RCC_PlayerType>;
