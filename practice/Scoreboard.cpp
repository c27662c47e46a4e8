#include "practice/Scoreboard.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

#include "practice/Text.h"

namespace practice {

namespace {

/// How much of the match is over, in `parts` parts.
int progress(World const& world, int parts) {
    return std::min(parts, parts * world.cycle / (2 * world.halfCycles));
}

std::string scoreboardLine(World const& world) {
    constexpr int WIDTH = 20;
    auto const name = [&world](Side side) {
        return world.teamName(side).empty() ? "(nobody yet)" : world.teamName(side);
    };
    std::string mode = world.mode.word();
    mode.resize(std::max<std::size_t>(mode.size(), WIDTH + 1), ' ');
    std::string bar(WIDTH, '.');
    std::fill_n(bar.begin(), progress(world, WIDTH), '#');
    return text(name(Side::left), ' ', world.score[0], " : ", world.score[1], ' ',
                name(Side::right), "  ", mode, " [", bar, "] cycle ", world.cycle);
}

} // namespace

Scoreboard::Scoreboard(Style style, std::FILE* out) : style_(style), out_(out) {
    if (style_ == Style::automatic) style_ = isatty(fileno(out)) != 0 ? Style::line : Style::plain;
}

/// Set pieces come and go: goals, kick-offs, breaks and every tenth of the match are worth a line.
bool Scoreboard::isNews(World const& world) {
    PlayMode const mode = world.mode;
    bool const milestone =
        mode == Phase::beforeKickOff || mode == Phase::kickOff || mode == Phase::timeOver;
    int const tenth = progress(world, 10);
    bool const news = (mode != std::exchange(lastMode_, mode) && milestone) ||
                      world.score != lastScore_ || tenth != lastTenth_;
    lastScore_ = world.score;
    lastTenth_ = tenth;
    return news;
}

void Scoreboard::show(World const& world) {
    if (style_ == Style::plain && isNews(world)) {
        std::fprintf(out_, "%s\n", scoreboardLine(world).c_str());
    } else if (style_ == Style::line) {
        std::string now = scoreboardLine(world);
        now.resize(std::max(now.size(), shown_.size()), ' '); // wipes what was longer
        if (now == shown_) return;
        std::fprintf(out_, "\r%s", now.c_str());
        shown_ = now;
    }
    std::fflush(out_);
}

void Scoreboard::finish() {
    if (style_ == Style::line && !shown_.empty()) std::fputc('\n', out_);
    std::fflush(out_);
}

} // namespace practice
