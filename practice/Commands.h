#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "practice/World.h"

/// The commands of players, read from the text of a datagram. Any bytes may come: they give either
/// commands or a refusal. Angles are degrees.
namespace practice {

struct Turn {
    double moment;
};
struct Dash {
    double power, dir;
};
struct Kick {
    double power, dir;
};
struct Catch {
    double dir;
};
struct Move {
    Vec pos; ///< in the team's own frame, own half negative
};
struct TurnNeck {
    double moment;
};
struct ChangeView {
    View view;
};
struct Say {
    std::string_view text; ///< of the datagram
};
/// done and nothing: understood, without effect on the world.
enum class Request { score, senseBody, bye, done, nothing };

using Command = std::variant<Turn, Dash, Kick, Catch, Move, TurnNeck, ChangeView, Say, Request>;

/// The commands of one datagram, one after the other.
class CommandReader {
public:
    /// `datagram` must outlive the reader and the Say commands it returns.
    explicit CommandReader(std::string_view datagram);

    /// The next command; none at the end of the datagram or at the first one that makes no sense.
    std::optional<Command> next();
    bool failed() const { return failed_; }

private:
    std::string_view rest_;
    bool failed_ = false;
};

/// What a datagram says to a server that waits for its player's commands.
enum class Word {
    commands, ///< more may come
    done,     ///< nothing but that it has thought
    last      ///< commands, and that they were the last ones: (done) or (bye) is among them
};
Word wordOf(std::string_view datagram);

inline constexpr std::string_view ILLEGAL_FORM = "(error illegal_command_form)";

/// The first datagram of a client.
struct Introduction {
    std::string_view refusal; ///< the reply to one that makes no sense; else empty
    bool reconnect = false;
    std::string team{};
    double version = 3.0; ///< when the client does not tell it
    bool goalie = false;
};
Introduction readIntroduction(std::string_view datagram);

} // namespace practice
