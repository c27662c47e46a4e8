#include "practice/Scoreboard.h"

#include <unistd.h>

#include <algorithm>

#include "practice/Text.h"

namespace practice {

namespace {

constexpr int parts = 10;

int tenthOf(const World& world) {
    return std::min(parts, parts * world.cycle / (2 * world.halfCycles));
}

std::string progressBar(const World& world) {
    constexpr int width = 2 * parts;
    const auto filled =
        static_cast<std::size_t>(std::min(width, width * world.cycle / (2 * world.halfCycles)));
    return '[' + std::string(filled, '#') + std::string(width - filled, '.') + ']';
}

std::string nameOf(const World& world, Side side) {
    return world.teamName(side).empty() ? "(nobody yet)" : world.teamName(side);
}

// Set pieces come and go; these are worth a line of their own.
bool isMilestone(PlayMode mode) {
    return mode == Phase::beforeKickOff || mode == Phase::kickOff || mode == Phase::timeOver;
}

} // namespace

Scoreboard::Scoreboard(Style style, std::FILE* out) : style_(style), out_(out) {
    if (style_ == Style::automatic) style_ = isatty(fileno(out)) != 0 ? Style::line : Style::plain;
}

std::string Scoreboard::text(const World& world) {
    std::string mode = world.mode.word();
    mode.resize(std::max<std::size_t>(mode.size(), 21), ' ');
    return practice::text(nameOf(world, Side::left), ' ', world.goals(Side::left), " : ",
                          world.goals(Side::right), ' ', nameOf(world, Side::right), "  ", mode,
                          ' ', progressBar(world), " cycle ", world.cycle);
}

bool Scoreboard::isNews(const World& world) {
    const bool modeChanged = world.mode != lastMode_ && isMilestone(world.mode);
    const bool news = modeChanged || world.score != lastScore_ || tenthOf(world) != lastTenth_;
    lastMode_ = world.mode;
    lastScore_ = world.score;
    lastTenth_ = tenthOf(world);
    return news;
}

void Scoreboard::show(const World& world) {
    if (style_ == Style::plain && isNews(world)) {
        std::fprintf(out_, "%s\n", text(world).c_str());
        std::fflush(out_);
    } else if (style_ == Style::line) {
        const std::string now = text(world);
        if (now == shown_) return;
        const std::size_t width = std::max(now.size(), shown_.size()); // wipes what was longer
        std::fprintf(out_, "\r%-*s", static_cast<int>(width), now.c_str());
        std::fflush(out_);
        shown_ = now;
    }
}

void Scoreboard::finish() {
    if (style_ == Style::line && !shown_.empty()) std::fputc('\n', out_);
    shown_.clear();
    std::fflush(out_);
}

} // namespace practice
