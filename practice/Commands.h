#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "practice/World.h"

// What players say to the server, read from the text of a datagram. Nothing here is trusted: any
// bytes give either commands or a refusal.
namespace practice {

struct Turn {
    double moment;
};
struct Dash {
    double power;
};
struct Kick {
    double power;
    double dir;
};
struct Catch {
    double dir;
};
struct Move {
    double x; // in the team's own frame, own half negative
    double y;
};
struct TurnNeck {
    double moment;
};
struct ChangeView {
    View view;
};
struct Say {
    std::string_view text; // of the datagram
};
struct AskScore {};
struct AskSenseBody {};
struct AskCompression {};
struct Bye {};
struct Tackle {};      // understood, but nobody tackles here: it only costs the cycle
struct Unsupported {}; // understood, without effect

using Command = std::variant<Turn, Dash, Kick, Catch, Move, TurnNeck, ChangeView, Say, AskScore,
                             AskSenseBody, AskCompression, Bye, Tackle, Unsupported>;

// The commands of one datagram, one after the other.
class CommandReader {
public:
    // `datagram` must outlive the reader and the Say commands it returns. NUL and blanks at the end
    // are ignored.
    explicit CommandReader(std::string_view datagram);

    // The next command; none at the end of the datagram or at the first one that makes no sense.
    std::optional<Command> next();
    bool failed() const { return failed_; }

private:
    std::optional<Command> read();

    std::string_view rest_;
    bool failed_ = false;
};

struct JoinRequest {
    std::string team;
    double version = 3.0; // of a client that does not tell
    bool goalie = false;
};
struct ReconnectRequest {};
struct Refusal {
    std::string_view reply;
};

inline constexpr std::string_view illegalForm = "(error illegal_command_form)";

// The first datagram of a client.
std::variant<JoinRequest, ReconnectRequest, Refusal> readFirstDatagram(std::string_view datagram);

} // namespace practice
