#pragma once

#include <cstdio>
#include <string>

#include "practice/World.h"

namespace practice {

// Shows the match to whoever started the server: teams, score, play mode, cycle and progress.
class Scoreboard {
public:
    enum class Style { automatic, line, plain, off };

    // Automatic: a line that is redrawn on a terminal, plain lines elsewhere.
    Scoreboard(Style style, std::FILE* out);

    // After every step.
    void show(const World& world);
    // Leaves the redrawn line standing.
    void finish();

    static std::string text(const World& world);

private:
    bool isNews(const World& world);

    Style style_;
    std::FILE* out_;
    std::string shown_;
    std::array<int, 2> lastScore_{0, 0};
    PlayMode lastMode_{Phase::timeOver, Side::none};
    int lastTenth_ = 0;
};

} // namespace practice
