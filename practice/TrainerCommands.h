#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include "practice/World.h"

/// What a trainer says to the server, read from the text of a datagram. Any bytes may come: they
/// give a command or a refusal. Texts are views into the datagram; angles are degrees.
namespace practice {

/// What cannot be done, as the answer that says so.
struct Refusal {
    std::string_view text;
};
struct StartMatch {};
struct ChangeMode {
    PlayMode mode;
};
/// Who is meant by "(player TEAM UNUM)"; perhaps nobody.
struct PlayerName {
    std::string_view team;
    int unum; ///< at most 11
};
struct MoveObject {
    std::optional<PlayerName> player; ///< none: the ball
    Vec pos;
    std::optional<double> dir;
    Vec vel{};
};
struct Look {};
struct SwitchEye {
    bool on;
};
struct SwitchEar {
    bool on;
};
struct CoachSay {
    std::string_view text;
};
struct CheckBall {};
struct AskTeamNames {};
struct RecoverAll {};
struct Done {};
struct Chapter {
    std::string_view title;
};

using TrainerCommand =
    std::variant<Refusal, StartMatch, ChangeMode, MoveObject, Look, SwitchEye, SwitchEar, CoachSay,
                 CheckBall, AskTeamNames, RecoverAll, Done, Chapter>;

/// The first command of a datagram; what follows it is not read.
TrainerCommand readTrainerCommand(std::string_view datagram);

/// The version that "(init ...)" asks for: 3 if it does not say. Negative if it makes no sense;
/// nothing for a datagram that is no introduction.
std::optional<double> readTrainerVersion(std::string_view datagram);

} // namespace practice
