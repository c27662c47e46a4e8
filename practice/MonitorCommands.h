#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include "practice/World.h"

/// What monitors say to the server, read from the text of a datagram. Any bytes may come: they give
/// a command or nothing.
namespace practice {

struct StartKickOff {};
struct CallFoul {
    Vec spot;
    Side side; ///< that gets the free kick; none: a drop ball
};
struct PlacePlayer {
    int player;
    Vec pos;
    double body; ///< radians
};
struct DiscardPlayer {
    int player;
};
struct Disconnect {};

using MonitorCommand = std::variant<StartKickOff, CallFoul, PlacePlayer, DiscardPlayer, Disconnect>;

/// The command of one datagram; nothing if it makes no sense or the server does not know it.
std::optional<MonitorCommand> readMonitorCommand(std::string_view datagram);

/// Whether a datagram wants to be a monitor's first.
bool isMonitorGreeting(std::string_view datagram);
/// The version that a greeting asks for, its fraction cut; nothing if it makes no sense.
std::optional<int> readMonitorVersion(std::string_view greeting);

} // namespace practice
