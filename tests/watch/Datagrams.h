#pragma once

#include <string>
#include <vector>

#include "gamelog/Reader.h"
#include "gamelog/Writer.h"

namespace watch_test {

using gamelog::PlayMode;

/// A monitor's show of version 5 with all players absent and the ball somewhere.
inline std::string showOf(int time, PlayMode mode, gamelog::Score const& score = {},
                          double ballX = 0) {
    gamelog::Show show;
    show.time = time;
    show.ball.x = ballX;
    show.scoreboard = gamelog::Scoreboard{mode, score};
    std::string out;
    gamelog::append(out, show, gamelog::logVersionOfMonitor(5));
    return out;
}

/// The datagrams of a small server; `seed` makes its parameters its own.
inline std::vector<std::string> parametersOf(int seed = 1) {
    return {"(server_param (half_time 300)(simulator_step 100))",
            "(player_param (player_types 1)(random_seed " + std::to_string(seed) + "))",
            "(player_type (id 0)(player_speed_max 1.05))"};
}

/// What a server would have sent to a monitor in the match of a game log.
inline std::vector<std::string> datagramsOf(std::string const& log) {
    std::vector<std::string> out;
    gamelog::Reader reader = gamelog::Reader::ofMemory(log);
    gamelog::Scoreboard now{PlayMode::beforeKickOff, {}};
    while (gamelog::Record const* const record = reader.next()) {
        if (auto const* const mode = std::get_if<gamelog::PlayModeChange>(record)) {
            now.mode = mode->mode;
        } else if (auto const* const team = std::get_if<gamelog::Team>(record)) {
            now.score = team->score;
        } else {
            gamelog::Record copy = *record;
            if (auto* const show = std::get_if<gamelog::Show>(&copy)) show->scoreboard = now;
            gamelog::append(out.emplace_back(), copy, reader.version());
        }
    }
    return out;
}

} // namespace watch_test
