#pragma once

#include <type_traits>
#include <vector>

#include "parser/RCC_Parser.h"

/// The handlers that the parser calls, one for each kind of message. They hold no data of their
/// own: each keeps the newest record of its kind in `Sensors` and raises that kind's flag. Nothing
/// is filtered, merged or signalled here. Constructed with `Sensors`, called on the sense thread.
/// A null handle throws RCC_MemoryException, which nobody catches.

/// An empty vector that never has to move: it has room for the largest see. Its elements are bytes
/// that are copied over, so a thread that still reads the see before never meets one that has ended
/// or has only begun.
template <typename T>
std::vector<T> roomForOneSee() {
    static_assert(std::is_trivially_copyable_v<T> && !std::is_polymorphic_v<T>);
    std::vector<T> seen;
    seen.reserve(RCC_Visual::MAX_OBJECTS);
    return seen;
}

/// Sorts a see into the seven vectors of `Sensors`.
class VisualHandler final : public RCC_Handler<RCC_Pointer<RCC_Visual>> {
public:
    /// Also throws RCC_BoundsException when a container shrinks under it. After a throw `Sensors`
    /// still holds the see before.
    void handle(RCC_Pointer<RCC_Visual> const& p) override;
};

/// Keeps one record: the first message of the kind makes the buffer, later ones overwrite it in
/// place, so that its address never changes.
template <typename Record>
class RecordHandler : public RCC_Handler<RCC_Pointer<Record>> {
    // Overwritten while it is read, a record that owns nothing only mixes two messages. A player
    // type is numbers too, beside a virtual function.
    static_assert(std::is_trivially_copyable_v<Record> || std::is_same_v<Record, RCC_PlayerType>);

public:
    void handle(RCC_Pointer<Record> const& p) override;
};

class SenseBodyHandler final : public RecordHandler<RCC_SenseBody> {};
class RefAudioHandler final : public RecordHandler<RCC_RefAudio> {};
class SelfAudioHandler final : public RecordHandler<RCC_SelfAudio> {};
class PlayerAudioHandler final : public RecordHandler<RCC_PlayerAudio> {};
class CoachAudioHandler final : public RecordHandler<RCC_CoachAudio> {};
class ScoreHandler final : public RecordHandler<RCC_Score> {};
class SubstitutionHandler final : public RecordHandler<RCC_Substitution> {};
class ErrorHandler final : public RecordHandler<RCC_Error> {};
class InitMsgHandler final : public RecordHandler<RCC_InitMsg> {};
class ThinkHandler final : public RecordHandler<RCC_Think> {};
class ServerParamHandler final : public RecordHandler<RCC_ServerParam> {};
class PlayerParamHandler final : public RecordHandler<RCC_PlayerParam> {};
class PlayerTypeHandler final : public RecordHandler<RCC_PlayerType> {};
