#include "stats/Output.h"

#include <utility>

#include "gamelog/Reader.h"
#include "stats/Analysis.h"
#include "stats/Sinks.h"

namespace stats {

namespace {

using namespace gamelog;

constexpr std::string_view JSON_BETWEEN = ",\n ";

double rounded(double value, double stepsInOne) {
    return std::round(value * stepsInOne) / stepsInOne;
}

std::optional<double> percent(int part, int other) {
    if (part + other == 0) return std::nullopt;
    return rounded(100.0 * part / (part + other), 10);
}

std::optional<std::string_view> unlessEmpty(std::string_view text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

std::optional<int> unlessZero(int number) {
    return number == 0 ? std::nullopt : std::optional(number);
}

template <typename Sink>
void describeWork(Sink& sink, BallFigures const& figures) {
    sink.field("yellow_cards", figures.yellowCards);
    sink.field("red_cards", figures.redCards);
    sink.field("metres", rounded(figures.metres, 10));
    sink.field("stamina_spent", std::llround(figures.staminaSpent));
}

template <typename Sink>
void describeTeam(Sink& sink, TeamFigures const& team, TeamFigures const& other) {
    int const points = team.goals > other.goals ? 3 : team.goals == other.goals ? 1 : 0;
    sink.field("name", team.name);
    sink.field("goals", team.goals);
    sink.field("points", points);
    sink.field("penalties_scored", team.penalties.scored);
    sink.field("penalties_missed", team.penalties.missed);
    sink.field("possession", percent(team.possessionShows, other.possessionShows));
    sink.field("domination", percent(team.dominationShows, other.dominationShows));
    sink.field("passes", team.passes);
    sink.field("passes_arrived", team.passesArrived);
    sink.field("passes_forward", team.passesForward);
    sink.field("passes_back", team.passesBack);
    sink.field("passes_left", team.passesLeft);
    sink.field("passes_right", team.passesRight);
    sink.field("shots", team.shots);
    sink.field("shots_on_target", team.shotsOnTarget);
    sink.field("interceptions", team.interceptions);
    sink.field("tackles", team.tackles);
    sink.field("dribbles", team.dribbles);
    sink.field("area_entries", team.areaEntries);
    sink.field("catches", team.catches);
    sink.field("offsides", team.offsides);
    sink.field("fouls", team.fouls);
    sink.field("set_pieces", team.setPieces());
    sink.field("kick_ins", team.kickIns);
    sink.field("corner_kicks", team.cornerKicks);
    sink.field("free_kicks", team.freeKicks);
    sink.field("goal_kicks", team.goalKicks);
    describeWork(sink, team);
    sink.field("disconnected", team.disconnected);
}

template <typename Sink>
void describeMatch(Sink& sink, std::string_view file, MatchFigures const& match) {
    auto const& [left, right] = match.teams;
    sink.field("file", file);
    sink.field("date", unlessEmpty(match.date));
    sink.field("cycles", match.cycles);
    sink.field("play_cycles", match.playCycles);
    sink.open("left");
    describeTeam(sink, left, right);
    sink.close();
    sink.open("right");
    describeTeam(sink, right, left);
    sink.close();
}

template <typename Sink>
void describePlayer(Sink& sink, MatchFigures const& match, std::size_t index) {
    Side const side = index < TEAM_SIZE ? Side::left : Side::right;
    PlayerFigures const& player = match.players[index];
    sink.field("side", letterOf(side));
    sink.field("unum", static_cast<int>(index % TEAM_SIZE) + 1);
    sink.field("team", match.team(side).name);
    sink.field("type", player.type);
    sink.field("cycles", player.cycles);
    sink.field("goals", player.goals);
    sink.field("kicks", player.kicks);
    sink.field("passes", player.passes);
    sink.field("passes_arrived", player.passesArrived);
    sink.field("passes_received", player.passesReceived);
    sink.field("shots", player.shots);
    sink.field("shots_on_target", player.shotsOnTarget);
    sink.field("interceptions", player.interceptions);
    sink.field("tackles", player.tackles);
    sink.field("dribbles", player.dribbles);
    sink.field("catches", player.catches);
    describeWork(sink, player);
    sink.open("commands");
    for (std::size_t kind = 0; kind < COUNTS; ++kind) {
        sink.field(COUNT_NAMES[kind], player.commands[kind]);
    }
    sink.close();
}

template <typename Sink>
void describeEvent(Sink& sink, std::string_view file, Event const& event) {
    auto const side = event.side ? std::optional(letterOf(*event.side)) : std::nullopt;
    sink.field("file", file);
    sink.field("cycle", event.cycle);
    sink.field("event", event.name);
    sink.field("side", side);
    sink.field("unum", unlessZero(event.unum));
    sink.field("to", unlessZero(event.to));
    sink.field("x", event.place.x);
    sink.field("y", event.place.y);
    sink.field("detail", unlessEmpty(event.detail));
}

/// One show with what the records before it said.
struct Scene {
    Show const& show;
    PlayMode mode;
    Score const& score;
    int version;
};

template <typename Sink>
void describeShownPlayer(Sink& sink, Player const& player, int version) {
    sink.field("type", player.type);
    sink.field("state", player.state);
    sink.field("x", player.x);
    sink.field("y", player.y);
    sink.field("vx", player.vx);
    sink.field("vy", player.vy);
    sink.field("body", player.body);
    sink.field("neck", player.neck);
    sink.field("view_quality", std::string_view(player.highQuality ? "h" : "l"));
    sink.field("view_width", player.viewWidth);
    sink.field("stamina", player.stamina);
    sink.field("effort", player.effort);
    sink.field("recovery", player.recovery);
    sink.field("capacity", version >= 5 ? std::optional(player.capacity) : std::nullopt);
    for (std::size_t kind = 0; kind < COUNTS; ++kind) {
        bool const told = kind < COUNTS - 1 || version >= 6;
        sink.field(COUNT_NAMES[kind], told ? std::optional(player.counts[kind]) : std::nullopt);
    }
}

/// The columns that analysers of this field use, in their order; `file` comes last for that reason.
template <typename Sink>
void describeScene(Sink& sink, std::string_view file, Scene const& scene) {
    sink.field("show_time", scene.show.time);
    sink.field("playmode", wordOf(scene.mode));
    sink.field("left_name", scene.score.left);
    sink.field("right_name", scene.score.right);
    sink.field("left_score", scene.score.goalsLeft);
    sink.field("right_score", scene.score.goalsRight);
    sink.open("ball");
    sink.field("x", scene.show.ball.x);
    sink.field("y", scene.show.ball.y);
    sink.field("vx", scene.show.ball.vx);
    sink.field("vy", scene.show.ball.vy);
    sink.close();
    for (int index = 0; index < PLAYERS; ++index) {
        std::string_view const side = letterOf(index < TEAM_SIZE ? Side::left : Side::right);
        int const unum = index % TEAM_SIZE + 1;
        sink.open(std::string(side) + std::to_string(unum));
        sink.field("side", side);
        sink.field("unum", unum);
        describeShownPlayer(sink, scene.show.players[static_cast<std::size_t>(index)],
                            scene.version);
        sink.close();
    }
    sink.field("file", file);
}

/// Collects rows, each described to a sink.
class Table {
public:
    explicit Table(bool json) : json_(json) {}

    template <typename Describe>
    void row(Describe const& describe) {
        if (json_) {
            if (!text.empty()) text += JSON_BETWEEN;
            JsonObject sink(text);
            describe(sink);
        } else {
            CsvRow sink(text);
            describe(sink);
            text += '\n';
        }
    }

    std::string text;

private:
    bool json_;
};

void tellMatchWithPlayers(JsonObject& sink, std::string const& file, MatchFigures const& match) {
    describeMatch(sink, file, match);
    std::string players;
    for (std::size_t i = 0; i < PLAYERS; ++i) {
        if (i > 0) players += ",\n   ";
        JsonObject player(players);
        describePlayer(player, match, i);
    }
    sink.raw("players", "[" + players + "]");
}

std::string figuresText(std::string const& file, MatchFigures const& match,
                        Options const& options) {
    Table table(options.json);
    if (options.rows == Rows::matches) {
        table.row([&](auto& sink) { describeMatch(sink, file, match); });
    } else if (options.rows == Rows::events) {
        for (Event const& event : match.events) {
            table.row([&](auto& sink) { describeEvent(sink, file, event); });
        }
    } else if (options.json) {
        JsonObject sink(table.text);
        tellMatchWithPlayers(sink, file, match);
    } else {
        for (std::size_t i = 0; i < PLAYERS; ++i) {
            table.row([&](auto& sink) {
                sink.field("file", file);
                describePlayer(sink, match, i);
            });
        }
    }
    return std::move(table.text);
}

std::string scenesText(Reader& reader, std::string const& file, Options const& options) {
    Table table(options.json);
    PlayMode mode = PlayMode::none;
    Score score;
    while (Record const* const record = reader.next()) {
        if (auto const* const change = std::get_if<PlayModeChange>(record)) mode = change->mode;
        if (auto const* const team = std::get_if<Team>(record)) score = team->score;
        if (auto const* const show = std::get_if<Show>(record)) {
            Scene const scene{*show, mode, score, reader.version()};
            table.row([&](auto& sink) { describeScene(sink, file, scene); });
        }
    }
    return std::move(table.text);
}

} // namespace

FileOutput outputOf(std::string const& file, Options const& options) {
    Reader reader = Reader::ofFile(file);
    FileOutput output;
    if (options.rows == Rows::cycles) {
        output.text = scenesText(reader, file, options);
    } else {
        Analysis analysis;
        while (Record const* const record = reader.next()) {
            analysis.take(*record);
        }
        output.text = figuresText(file, analysis.finish(), options);
    }
    output.error = reader.error();
    if (!output.error.empty()) output.text.clear();
    return output;
}

std::string csvHeader(Rows rows) {
    std::string out;
    CsvHeader sink(out);
    MatchFigures const match;
    switch (rows) {
    case Rows::matches:
        describeMatch(sink, "", match);
        break;
    case Rows::players:
        sink.field("file", "");
        describePlayer(sink, match, 0);
        break;
    case Rows::events:
        describeEvent(sink, "", Event{});
        break;
    case Rows::cycles:
        describeScene(sink, "", {Show{}, PlayMode::none, Score{}, USUAL_VERSION});
        break;
    }
    return out + "\n";
}

} // namespace stats
