#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace watch {

/// The longest body of a command, in bytes.
constexpr std::size_t LONGEST_COMMAND = 1024;

/// A command of the page as the datagram for the server, without its NUL, or what is wrong with it.
struct Command {
    std::string datagram;
    std::string wrong; ///< empty: nothing
};

/// Reads the body of a request:
/// `{"command": "kick_off"}`,
/// `{"command": "drop_ball", "x": 0, "y": 0}`,
/// `{"command": "free_kick", "side": "l", "x": 0, "y": 0}`,
/// `{"command": "move_player", "side": "l", "unum": 7, "x": 0, "y": 0, "angle": 0}`;
/// metres and degrees, members in any order. The server is told whole sixteenths of a metre.
Command readCommand(std::string_view body);

} // namespace watch
