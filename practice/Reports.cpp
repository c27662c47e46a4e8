#include "practice/Reports.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <utility>

#include "practice/Parameters.h"
#include "practice/Text.h"

namespace practice {

namespace {

/// Rolling freely the ball ends `speed / (1 - decay)` farther on.
bool isShot(World const& world, Side side) {
    constexpr double margin = 2.0;
    Movable const& ball = world.ball;
    Vec const vel = shortenedTo(ball.vel + shortenedTo(ball.acc, parameter("ballAccelMax")),
                                parameter("ballSpeedMax"));
    Vec const path = vel * (1.0 / (1.0 - parameter("ballDecay")));
    double const toLine = sign(side) * PITCH_HALF_LENGTH - ball.pos.x;
    if (sign(side) * path.x < sign(side) * toLine || path.x == 0.0) return false;
    return std::abs(ball.pos.y + path.y * toLine / path.x) <= GOAL_HALF_WIDTH + margin;
}

template <typename First, typename... Rest>
void appendRow(std::string& out, First const& first, Rest const&... rest) {
    appendText(out, first);
    (appendText(out, '\t', rest), ...);
    out += '\n';
}

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

// ---- Statistics

void Statistics::kicked(World const& world, int id) {
    Side const side = world.player(id).side;
    TeamStatistics& mine = teams_[index(side)];
    bool const received = lastKicker_ != NOBODY && lastKicker_ != id;
    if (received && world.player(lastKicker_).side == side) ++mine.passesArrived;
    bool const shot = isShot(world, side);
    if (shot && !(shooting_ && lastKicker_ == id)) ++mine.shots;
    shooting_ = shot;
    lastKicker_ = id;
}

void Statistics::stepped(World const& world) {
    if (world.mode != Phase::playOn && world.mode != Phase::goalKick) {
        lastKicker_ = NOBODY;
        shooting_ = false;
    } else if (lastKicker_ != NOBODY) {
        ++teams_[index(world.player(lastKicker_).side)].stepsWithBall;
    }
}

double Statistics::possession(Side side) const {
    int const mine = team(side).stepsWithBall;
    int const all = mine + team(other(side)).stepsWithBall;
    return all == 0 ? 0.0 : 100.0 * mine / all;
}

// ---- Files

std::string logHeader() {
    return "# cycle mode score_l score_r ball_x ball_y ball_vx ball_vy"
           " then per player: side unum x y body neck stamina\n";
}

std::string logLine(World const& world) {
    auto const& [pos, vel, acc] = world.ball;
    std::string out = text(world.cycle, ' ', world.mode.word(), ' ', world.score[0], ' ',
                           world.score[1], ' ', pos.x, ' ', pos.y, ' ', vel.x, ' ', vel.y);
    for (Player const& p : world.players) {
        if (!p.active) continue;
        appendText(out, ' ', letter(p.side), ' ', p.unum, ' ', p.pos.x, ' ', p.pos.y, ' ',
                   toDeg(p.body), ' ', toDeg(p.neck), ' ', p.stamina);
    }
    return out + '\n';
}

std::string results(World const& world, Statistics const& statistics) {
    std::string out;
    appendRow(out, "score", world.score[0], world.score[1]);
    appendRow(out, "cycles", world.cycle);
    for (Side const side : {Side::left, Side::right}) {
        TeamStatistics const& team = statistics.team(side);
        appendRow(out, "team", letter(side), world.teamName(side), world.goals(side),
                  statistics.possession(side), team.shots, team.passesArrived);
    }
    for (Player const& p : world.players) {
        if (!p.joined) continue;
        auto const& [kick, dash, turn, say, turnNeck, catches, move, changeView] = p.counts;
        appendRow(out, "player", letter(p.side), p.unum, kick, dash, turn, say, turnNeck, catches,
                  move, changeView, p.refused, p.lost ? 1 : 0, p.spareNeckTurns, p.answers,
                  p.lateAnswers);
    }
    return out;
}

bool writeFile(std::string const& path, std::string const& content) {
    std::string const draft = path + ".new";
    std::ofstream file(draft, std::ios::binary);
    file << content;
    file.close();
    return file && std::rename(draft.c_str(), path.c_str()) == 0;
}

// ---- The scoreboard

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
