#include "practice/Match.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "practice/Body.h"
#include "practice/Eyes.h"
#include "practice/Parameters.h"
#include "practice/Physics.h"
#include "practice/Placement.h"
#include "practice/Text.h"

namespace practice {

namespace {

constexpr long pollsPerStep = 10;
constexpr int spokenVersion = 7; // the only message format this server speaks

// The internal clock of the eyes ticks every 37.5 ms and is noticed at the next poll.
long ticksAt(long polls) {
    return polls * 4 / 15;
}

std::array<int, maxPlayers> everybodyInRandomOrder(Random& random) {
    std::array<int, maxPlayers> order{};
    std::iota(order.begin(), order.end(), 0);
    random.shuffle(std::span<int>(order));
    return order;
}

// The first body command of a cycle wins.
bool mayUseBody(Player& p) {
    return !std::exchange(p.bodyUsed, true);
}

} // namespace

Match::Match(const MatchOptions& options)
    : random_(options.seed), referee_(world_, random_, options.kickOff,
                                      [this](std::string_view word) { announce(word); }) {
    world_.halfCycles = options.halfCycles;
}

// ---- Joining and leaving

Match::Joined Match::join(std::string_view firstDatagram) {
    const Introduction client = readIntroduction(firstDatagram);
    if (!client.refusal.empty()) return {nobody, std::string(client.refusal)};
    if (client.reconnect) { // nobody comes back: a number is used once
        const bool playing = world_.mode == Phase::playOn;
        return {nobody, playing ? "(error cannot_reconnect_while_playon)"
                                : "(error no_such_team_or_player)"};
    }
    const Side side = sideOf(client.team);
    if (side == Side::none) return {nobody, "(error no_more_team)"};
    const int id = freeNumber(client, side);
    if (id == nobody) return {id, "(error no_more_player_or_goalie_or_illegal_client_version)"};
    Player& p = world_.player(id);
    p.joined = p.active = true;
    p.goalie = client.goalie;
    p.pos = {-3.0 * sign(side) * p.unum, -37.0};
    send(p, text("(init ", letter(side), ' ', p.unum, ' ', world_.mode.word(), ')'));
    send(p, serverParamMessage(world_.halfCycles));
    send(p, playerParamMessage());
    send(p, playerTypeMessage());
    return {id, {}};
}

// The side that plays under this name; a new name takes the next free side.
Side Match::sideOf(const std::string& team) {
    for (const Side side : {Side::left, Side::right}) {
        std::string& name = world_.teamNames[index(side)];
        if (name.empty()) name = team;
        if (name == team) return side;
    }
    return Side::none;
}

// The index of the player that the client may be; nobody if it may be none.
int Match::freeNumber(const Introduction& client, Side side) const {
    if (client.version < spokenVersion || client.version >= spokenVersion + 1) return nobody;
    for (int unum = 1; unum <= playersPerTeam; ++unum) {
        const int id = playerId(side, unum);
        if (!world_.player(id).joined) return id;
        if (client.goalie && world_.player(id).goalie) return nobody;
    }
    return nobody;
}

void Match::remove(int id) {
    Player& p = world_.player(id);
    if (!p.active) return;
    p.active = false;
    p.lost = world_.mode != Phase::timeOver;
    if (world_.ballHolder == id) world_.ballHolder = nobody;
    inbox_[id].clear();
}

// ---- Messages

void Match::send(const Player& player, std::string text) {
    outbox_.push_back({playerId(player), std::move(text)});
}

void Match::refuse(Player& player, std::string_view reply) {
    ++player.refused;
    send(player, std::string(reply));
}

void Match::announce(std::string_view word) {
    for (const Player& p : world_.players)
        if (p.active) send(p, text("(hear ", world_.cycle, " referee ", word, ')'));
}

std::vector<Outgoing> Match::takeOutbox() {
    return std::exchange(outbox_, {});
}

// ---- Commands

void Match::receive(int player, std::string_view datagram) {
    if (world_.player(player).active) inbox_[player].emplace_back(datagram);
}

void Match::executeReceived() {
    const bool quiet = std::all_of(inbox_.begin(), inbox_.end(),
                                   [](const auto& datagrams) { return datagrams.empty(); });
    if (quiet) return;
    for (const int id : everybodyInRandomOrder(random_))
        for (const std::string& datagram : std::exchange(inbox_[id], {}))
            execute(world_.player(id), datagram);
}

void Match::execute(Player& player, std::string_view datagram) {
    CommandReader reader(datagram);
    while (player.active) {
        const auto command = reader.next();
        if (!command) break;
        std::visit([&](const auto& c) { apply(player, c); }, *command);
    }
    if (reader.failed()) refuse(player, illegalForm);
}

void Match::apply(Player& player, const Turn& command) {
    if (!mayUseBody(player)) return;
    turn(player, command.moment, random_);
    ++player.counts.turn;
}

void Match::apply(Player& player, const Dash& command) {
    if (mayUseBody(player)) dash(player, command.power);
}

void Match::apply(Player& player, const Kick& command) {
    if (!mayUseBody(player) || !referee_.allowsKick()) return;
    const int id = playerId(player);
    if (!kick(world_, player, command.power, command.dir, random_)) return referee_.triedToKick(id);
    ++player.counts.kick;
    referee_.kicked(id);
    if (referee_.allowsKick()) statistics_.kicked(world_, id);
}

void Match::apply(Player& player, const Catch& command) {
    const bool legal = player.goalie && world_.mode == Phase::playOn && player.catchBan == 0;
    if (!mayUseBody(player) || !legal) return;
    player.catchBan = wholeParameter("catchBanCycle");
    if (!catchBall(world_, player, command.dir)) return;
    ++player.counts.catches;
    referee_.caught(playerId(player));
}

void Match::apply(Player& player, const Move& command) {
    const bool anybody = world_.mode == Phase::beforeKickOff || world_.mode == Phase::goal;
    const bool withBall = !anybody && world_.ballHolder == playerId(player);
    if ((!anybody && !withBall) || !mayUseBody(player)) return;
    ++player.counts.move;
    if (withBall && player.goalieMoves == wholeParameter("goalieMaxMoves"))
        return refuse(player, "(error too_many_moves)");
    if (withBall) ++player.goalieMoves;
    place(player, command.pos);
}

void Match::place(Player& player, Vec pos) {
    player.pos = cutToRunOff(pos * sign(player.side));
    player.halt();
    if (world_.mode == Phase::beforeKickOff && pos.x >= -playerSize)
        refuse(player, "(warning moving_to_opponent_field)");
}

void Match::apply(Player& player, const TurnNeck& command) {
    if (std::exchange(player.neckUsed, true)) return;
    turnNeck(player, command.moment);
    ++player.counts.turnNeck;
}

void Match::apply(Player& player, const ChangeView& command) {
    player.view = command.view;
    ++player.counts.changeView;
}

void Match::apply(Player& player, const Say& command) {
    if (command.text.size() > wholeParameter("sayMsgSize")) return;
    ++player.counts.say;
    for (Player& listener : world_.players)
        if (listener.active) hear(listener, player, command.text);
}

void Match::hear(Player& listener, const Player& speaker, std::string_view said) {
    if (&listener == &speaker)
        return send(listener, text("(hear ", world_.cycle, " self \"", said, "\")"));
    constexpr int needed = wholeParameter("hearDecay");
    const Vec way = speaker.pos - listener.pos;
    int& capacity = listener.hearing[listener.side == speaker.side ? 0 : 1];
    if (way.length() > parameter("audioDist") || capacity < needed) return;
    capacity -= needed;
    const int dir = wholeDegrees(way.angle() - listener.body);
    send(listener, text("(hear ", world_.cycle, ' ', dir, " \"", said, "\")"));
}

void Match::apply(Player& player, Request request) {
    switch (request) {
    case Request::score:
        return send(player, text("(score ", world_.cycle, ' ', world_.goals(player.side), ' ',
                                 world_.goals(other(player.side)), ')'));
    case Request::senseBody:
        return send(player, senseBodyMessage(world_, player));
    case Request::bye:
        return remove(playerId(player));
    case Request::nothing:
        return;
    }
}

// ---- Time

bool Match::poll() {
    ++polls_;
    executeReceived();
    const bool stepped = polls_ % pollsPerStep == 0;
    if (stepped) step();
    if (ticksAt(polls_) != ticksAt(polls_ - 1)) sendSights();
    return stepped;
}

void Match::step() {
    const Vec ballBefore = world_.ball.pos;
    const std::vector<int> touchers = moveAll(world_, random_);
    referee_.step(ballBefore, touchers);
    statistics_.stepped(world_);
    recoverAll(world_);
    referee_.startWhenReady();
    for (const int id : everybodyInRandomOrder(random_)) {
        const Player& p = world_.player(id);
        if (p.active) send(p, senseBodyMessage(world_, p));
    }
}

void Match::sendSights() {
    for (Player& p : world_.players) {
        if (!p.active || ++p.ticksSinceSee < seeInterval(p.view)) continue;
        p.ticksSinceSee = 0;
        send(p, seeMessage(world_, p, random_));
    }
}

} // namespace practice
