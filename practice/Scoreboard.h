#pragma once

#include <cstdio>
#include <string>

#include "practice/World.h"

namespace practice {

/// Shows the match to the person who started the server: teams, score, play mode and cycle.
class Scoreboard {
public:
    enum class Style { automatic, line, plain, off };

    /// Automatic: a line that is redrawn on a terminal, plain lines elsewhere.
    Scoreboard(Style style, std::FILE* out);

    /// After every step.
    void show(World const& world);
    /// Ends the redrawn line.
    void finish();

private:
    bool isNews(World const& world);

    Style style_;
    std::FILE* out_;
    std::string shown_;
    Table<int, 2> lastScore_{};
    PlayMode lastMode_{Phase::timeOver, Side::none};
    int lastTenth_ = 0;
};

} // namespace practice
