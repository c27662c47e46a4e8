#pragma once

#include <vector>

#include "parser/RCC_Parser.h"

/// The handlers that the parser calls, one for each kind of message. They hold no data of their
/// own: each keeps the newest record of its kind in `Sensors` and raises that kind's flag. Nothing
/// is filtered, merged or signalled here. Constructed with `Sensors`, called on the sense thread.
/// A null handle throws RCC_MemoryException, which nobody catches.

/// An empty vector that never has to move: it has room for the largest see.
template <class T>
std::vector<T> roomForOneSee() {
    std::vector<T> seen;
    seen.reserve(RCC_Visual::MAX_OBJECTS);
    return seen;
}

/// Sorts a see into the seven vectors of `Sensors`.
class VisualHandler : public RCC_Handler<RCC_Pointer<RCC_Visual>> {
public:
    /// Also throws RCC_BoundsException when a container shrinks under it. After a throw `Sensors`
    /// still holds the see before.
    void handle(RCC_Pointer<RCC_Visual> const& p) override;
};

/// Keeps one record: the first message of the kind makes the buffer, later ones overwrite it in
/// place, so that its address never changes.
template <class Record>
class RecordHandler : public RCC_Handler<RCC_Pointer<Record>> {
public:
    void handle(RCC_Pointer<Record> const& p) override;
};

using SenseBodyHandler = RecordHandler<RCC_SenseBody>;
using RefAudioHandler = RecordHandler<RCC_RefAudio>;
using SelfAudioHandler = RecordHandler<RCC_SelfAudio>;
using PlayerAudioHandler = RecordHandler<RCC_PlayerAudio>;
using CoachAudioHandler = RecordHandler<RCC_CoachAudio>;
using ScoreHandler = RecordHandler<RCC_Score>;
using SubstitutionHandler = RecordHandler<RCC_Substitution>;
using ErrorHandler = RecordHandler<RCC_Error>;
using InitMsgHandler = RecordHandler<RCC_InitMsg>;
using ServerParamHandler = RecordHandler<RCC_ServerParam>;
using PlayerParamHandler = RecordHandler<RCC_PlayerParam>;
using PlayerTypeHandler = RecordHandler<RCC_PlayerType>;
