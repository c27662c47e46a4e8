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
    appendText(out, R"({"side":")", letter(p.side), R"(","unum":)", p.unum, R"(,"goalie":)",
               word(p.goalie), R"(,"answers":)", p.answers, R"(,"late":)", p.lateAnswers,
               R"(,"refused":)", p.refused, R"(,"spare_turn_necks":)", p.spareNeckTurns,
               R"(,"missed":)", p.missed, R"(,"lost":)", word(p.lost));
    auto const& [kick, dash, turn, say, turnNeck, catches, move, changeView] = p.counts;
    appendText(out, R"(,"executed":{"kick":)", kick, R"(,"dash":)", dash, R"(,"turn":)", turn,
               R"(,"say":)", say, R"(,"turn_neck":)", turnNeck, R"(,"catch":)", catches,
               R"(,"move":)", move, R"(,"change_view":)", changeView, "}}");
}

} // namespace

std::string resultsJson(World const& world, Course const& course) {
    bool const finished = world.mode == Phase::timeOver && world.cycle >= 2 * world.halfCycles;
    std::string out = text(R"({"cycles":)", world.cycle, R"(,"half_cycles":)", world.halfCycles,
                           R"(,"finished":)", word(finished), R"(,"score":[)", world.score[0], ',',
                           world.score[1], R"(],"teams":[)", quoted(world.teamNames[0]), ',',
                           quoted(world.teamNames[1]), "],");
    if (course.steps > 0) {
        appendText(out, R"("steps":)", course.steps, R"(,"seconds":)", course.seconds, ',');
    }
    out += R"("players":[)";
    std::string_view separator = "\n";
    for (Player const& p : world.players) {
        if (!p.joined) continue;
        out += std::exchange(separator, ",\n");
        appendPlayer(out, p);
    }
    return out + "]}\n";
}

} // namespace practice
