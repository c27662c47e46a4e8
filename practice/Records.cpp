#include "practice/Records.h"

#include <cstdio>
#include <fstream>

#include "practice/Text.h"

namespace practice {

namespace {

template <typename First, typename... Rest>
void appendRow(std::string& out, const First& first, const Rest&... rest) {
    appendText(out, first);
    (appendText(out, '\t', rest), ...);
    out += '\n';
}

void appendTeam(std::string& out, const Match& match, Side side) {
    const World& world = match.world();
    const TeamStatistics& team = match.statistics().team(side);
    appendRow(out, "team", letter(side), world.teamName(side), world.goals(side),
              match.statistics().possession(side), team.shots, team.passesArrived);
}

void appendPlayer(std::string& out, const Player& p) {
    const Counts& n = p.counts;
    appendRow(out, "player", letter(p.side), p.unum, n.kick, n.dash, n.turn, n.say, n.turnNeck,
              n.catches, n.move, n.changeView, p.refused, p.lost ? 1 : 0);
}

} // namespace

std::string logHeader() {
    return "# cycle mode score_l score_r ball_x ball_y ball_vx ball_vy"
           " then per player: side unum x y body neck stamina\n";
}

std::string logLine(const World& world) {
    std::string out =
        text(world.cycle, ' ', world.mode.word(), ' ', world.score[0], ' ', world.score[1], ' ',
             world.ball.pos.x, ' ', world.ball.pos.y, ' ', world.ball.vel.x, ' ', world.ball.vel.y);
    for (const Player& p : world.players) {
        if (!p.active) continue;
        appendText(out, ' ', letter(p.side), ' ', p.unum, ' ', p.pos.x, ' ', p.pos.y, ' ',
                   toDeg(p.body), ' ', toDeg(p.neck), ' ', p.stamina);
    }
    return out + '\n';
}

std::string results(const Match& match) {
    const World& world = match.world();
    std::string out;
    appendRow(out, "score", world.score[0], world.score[1]);
    appendRow(out, "cycles", world.cycle);
    appendTeam(out, match, Side::left);
    appendTeam(out, match, Side::right);
    for (const Player& p : world.players) {
        if (p.joined) appendPlayer(out, p);
    }
    return out;
}

bool writeFile(const std::string& path, const std::string& content) {
    const std::string draft = path + ".new";
    {
        std::ofstream file(draft, std::ios::binary);
        file << content;
        if (!file.flush()) return false;
    }
    return std::rename(draft.c_str(), path.c_str()) == 0;
}

} // namespace practice
