#include "practice/Results.h"

#include <string_view>
#include <utility>

#include "practice/Text.h"

namespace practice {

namespace {

std::string_view word(bool value) {
    return value ? "true" : "false";
}

/// A team name has no quotes and no control characters, but it may have backslashes.
std::string quoted(std::string const& name) {
    if (name.empty()) return "null";
    std::string out = "\"";
    for (char const c : name) {
        if (c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

void appendPlayer(std::string& out, Player const& p) {
    appendText(out, "{\"side\":\"", letter(p.side), "\",\"unum\":", p.unum,
               ",\"goalie\":", word(p.goalie), ",\"answers\":", p.answers,
               ",\"late\":", p.lateAnswers, ",\"refused\":", p.refused,
               ",\"spare_turn_necks\":", p.spareNeckTurns, ",\"lost\":", word(p.lost));
    auto const& [kick, dash, turn, say, turnNeck, catches, move, changeView] = p.counts;
    appendText(out, ",\"executed\":{\"kick\":", kick, ",\"dash\":", dash, ",\"turn\":", turn,
               ",\"say\":", say, ",\"turn_neck\":", turnNeck, ",\"catch\":", catches,
               ",\"move\":", move, ",\"change_view\":", changeView, "}}");
}

} // namespace

std::string resultsJson(World const& world) {
    bool const finished = world.mode == Phase::timeOver && world.cycle >= 2 * world.halfCycles;
    std::string out = text("{\"cycles\":", world.cycle, ",\"half_cycles\":", world.halfCycles,
                           ",\"finished\":", word(finished), ",\"score\":[", world.score[0], ',',
                           world.score[1], "],\"teams\":[", quoted(world.teamNames[0]), ',',
                           quoted(world.teamNames[1]), "],\"players\":[");
    std::string_view separator = "\n";
    for (Player const& p : world.players) {
        if (!p.joined) continue;
        out += std::exchange(separator, ",\n");
        appendPlayer(out, p);
    }
    return out + "]}\n";
}

} // namespace practice
