#pragma once

#include "gamelog/Records.h"

/// The form of each record, told once for both directions: `io` is the reader of a line
/// (LineReader) or its writer (LineWriter). `Io::Ref<T>` is `T&` to the one and `T const&` to the
/// other. An item (integer, number, word) stands behind a blank; literals stand as they are.
///
/// `follows(wanted, literal)` and `itemFollows(wanted)` decide about what is optional: the writer
/// takes its wish, the reader looks at what comes next.
namespace gamelog::forms {

template <typename Io>
void describe(Io& io, typename Io::template Ref<Parameters> parameters, std::string_view name) {
    io.literal("(");
    io.literal(name);
    io.literal(" ");
    io.pairs(parameters.pairs);
    io.literal(")");
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<ServerParam> record) {
    describe(io, record, ServerParam::NAME);
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<PlayerParam> record) {
    describe(io, record, PlayerParam::NAME);
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<PlayerType> record) {
    describe(io, record, PlayerType::NAME);
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<PlayModeChange> record) {
    io.literal("(playmode");
    io.integer(record.time);
    io.modeWord(record.mode);
    io.literal(")");
}

template <typename Io>
void describeScore(Io& io, typename Io::template Ref<Score> score) {
    io.word(score.left);
    io.word(score.right);
    io.integer(score.goalsLeft);
    io.integer(score.goalsRight);
    if (io.itemFollows(score.penalties)) {
        for (auto& side : *score.penalties) {
            io.integer(side.scored);
            io.integer(side.missed);
        }
    }
    io.literal(")");
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<Team> record) {
    io.literal("(team");
    io.integer(record.time);
    describeScore(io, record.score);
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<Msg> record) {
    io.literal("(msg");
    io.integer(record.time);
    io.integer(record.board);
    io.quotedRest(record.text);
}

template <typename Io>
void describeView(Io& io, typename Io::template Ref<Player> player) {
    io.literal(" (v");
    io.choice(player.highQuality, 'h', 'l');
    io.number(player.viewWidth);
    io.literal(")");
    if (io.follows(io.version() >= 6, " (fp")) {
        io.number(player.focusDist);
        io.number(player.focusDir);
        io.literal(")");
    }
}

template <typename Io>
void describeStamina(Io& io, typename Io::template Ref<Player> player) {
    io.literal(" (s");
    io.number(player.stamina);
    io.number(player.effort);
    io.number(player.recovery);
    if (io.itemFollows(io.version() >= 5)) io.number(player.capacity);
    io.literal(")");
}

template <typename Io>
void describeCounts(Io& io, typename Io::template Ref<std::array<int, COUNTS>> counts) {
    io.literal(" (c");
    for (std::size_t kind = 0; kind < COUNTS - 1; ++kind) {
        io.integer(counts[kind]);
    }
    if (io.itemFollows(io.version() >= 6)) io.integer(counts[COUNTS - 1]);
    io.literal(")");
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<Player> player) {
    io.integer(player.type);
    io.state(player.state);
    io.position(player.x);
    io.position(player.y);
    io.position(player.vx);
    io.position(player.vy);
    io.angle(player.body);
    io.angle(player.neck);
    if (io.itemFollows(player.pointTo)) {
        io.position(player.pointTo->x);
        io.position(player.pointTo->y);
    }
    describeView(io, player);
    describeStamina(io, player);
    if (io.follows(player.attention, " (f")) {
        io.choice(player.attention->side, 'l', 'r');
        io.integer(player.attention->unum);
        io.literal(")");
    }
    describeCounts(io, player.counts);
    io.literal(")");
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<Scoreboard> scoreboard) {
    io.modeNumber(scoreboard.mode);
    io.literal(") (tm");
    describeScore(io, scoreboard.score);
}

template <typename Io>
void describe(Io& io, typename Io::template Ref<Show> show) {
    // Side and number are part of the form: readers count on all 22 in this order.
    static constexpr std::array<std::string_view, PLAYERS> WHO = {
        " ((l 1)", " ((l 2)",  " ((l 3)",  " ((l 4)", " ((l 5)",  " ((l 6)", " ((l 7)", " ((l 8)",
        " ((l 9)", " ((l 10)", " ((l 11)", " ((r 1)", " ((r 2)",  " ((r 3)", " ((r 4)", " ((r 5)",
        " ((r 6)", " ((r 7)",  " ((r 8)",  " ((r 9)", " ((r 10)", " ((r 11)"};
    io.literal("(show");
    io.integer(show.time);
    if (io.follows(show.scoreboard, " (pm")) describe(io, *show.scoreboard);
    io.literal(" ((b)");
    io.position(show.ball.x);
    io.position(show.ball.y);
    io.position(show.ball.vx);
    io.position(show.ball.vy);
    io.literal(")");
    for (std::size_t i = 0; i < PLAYERS; ++i) {
        io.literal(WHO[i]);
        describe(io, show.players[i]);
    }
    io.literal(")");
}

} // namespace gamelog::forms
