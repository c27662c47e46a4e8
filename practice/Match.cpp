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
    const auto first = readFirstDatagram(firstDatagram);
    if (const auto* refusal = std::get_if<Refusal>(&first))
        return {nobody, std::string(refusal->reply)};
    if (const auto* request = std::get_if<JoinRequest>(&first)) return admit(*request);
    // Nobody comes back: a number is used once.
    if (world_.mode == Phase::playOn) return {nobody, "(error cannot_reconnect_while_playon)"};
    return {nobody, "(error no_such_team_or_player)"};
}

Match::Joined Match::admit(const JoinRequest& request) {
    const Side side = sideOf(request.team);
    if (side == Side::none) return {nobody, "(error no_more_team)"};
    const int first = playerId(side, 1);
    int id = first;
    while (id < first + playersPerTeam && world_.player(id).joined)
        ++id;
    const bool full = id == first + playersPerTeam;
    const bool spoken = request.version >= spokenVersion && request.version < spokenVersion + 1;
    if (full || !spoken || (request.goalie && wantsSecondGoalie(side))) {
        return {nobody, "(error no_more_player_or_goalie_or_illegal_client_version)"};
    }
    world_.player(id).goalie = request.goalie;
    enter(world_.player(id));
    return {id, {}};
}

// The side that plays under this name; a new name takes the next free side.
Side Match::sideOf(const std::string& team) {
    for (const Side side : {Side::left, Side::right}) {
        std::string& name = world_.teamNames[static_cast<std::size_t>(index(side))];
        if (name.empty()) name = team;
        if (name == team) return side;
    }
    return Side::none;
}

bool Match::wantsSecondGoalie(Side side) const {
    return std::any_of(world_.players.begin(), world_.players.end(),
                       [side](const Player& p) { return p.joined && p.side == side && p.goalie; });
}

void Match::enter(Player& player) {
    player.joined = player.active = true;
    player.pos = {-3.0 * sign(player.side) * player.unum, -37.0};
    send(player,
         text("(init ", letter(player.side), ' ', player.unum, ' ', world_.mode.word(), ')'));
    send(player, serverParamMessage(world_.halfCycles));
    send(player, playerParamMessage());
    send(player, playerTypeMessage());
}

void Match::remove(int id) {
    Player& p = world_.player(id);
    if (!p.active) return;
    p.active = false;
    p.lost = world_.mode != Phase::timeOver;
    if (world_.ballHolder == id) world_.ballHolder = nobody;
    inbox_[static_cast<std::size_t>(id)].clear();
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
    const std::string message = text("(hear ", world_.cycle, " referee ", word, ')');
    for (const Player& p : world_.players) {
        if (p.active) send(p, message);
    }
}

std::vector<Outgoing> Match::takeOutbox() {
    return std::exchange(outbox_, {});
}

// ---- Commands

void Match::receive(int player, std::string_view datagram) {
    if (world_.player(player).active) {
        inbox_[static_cast<std::size_t>(player)].emplace_back(datagram);
    }
}

void Match::executeReceived() {
    const bool quiet = std::all_of(inbox_.begin(), inbox_.end(),
                                   [](const auto& datagrams) { return datagrams.empty(); });
    if (quiet) return;
    for (const int id : everybodyInRandomOrder(random_)) {
        const auto datagrams = std::exchange(inbox_[static_cast<std::size_t>(id)], {});
        for (const std::string& datagram : datagrams)
            execute(world_.player(id), datagram);
    }
}

void Match::execute(Player& player, std::string_view datagram) {
    CommandReader reader(datagram);
    while (player.active) {
        const auto command = reader.next();
        if (!command) break;
        std::visit([&](const auto& c) { apply(player, c); }, *command);
    }
    if (player.active && reader.failed()) refuse(player, illegalForm);
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
    player.catchBan = static_cast<int>(parameter("catchBanCycle"));
    if (!catchBall(world_, player, command.dir)) return;
    ++player.counts.catches;
    referee_.caught(playerId(player));
}

void Match::apply(Player& player, const Move& command) {
    if (player.bodyUsed) return;
    if (world_.mode == Phase::beforeKickOff || world_.mode == Phase::goal) {
        place(player, command);
    } else if (world_.ballHolder == playerId(player)) {
        moveWithBall(player, command);
    }
}

void Match::place(Player& player, const Move& command) {
    player.bodyUsed = true;
    ++player.counts.move;
    player.pos = cutToRunOff(Vec{command.x, command.y} * sign(player.side));
    player.halt();
    if (world_.mode == Phase::beforeKickOff && command.x >= -playerSize) {
        refuse(player, "(warning moving_to_opponent_field)");
    }
}

void Match::moveWithBall(Player& goalie, const Move& command) {
    if (goalie.goalieMoves < static_cast<int>(parameter("goalieMaxMoves"))) {
        ++goalie.goalieMoves;
        return place(goalie, command);
    }
    goalie.bodyUsed = true;
    ++goalie.counts.move;
    refuse(goalie, "(error too_many_moves)");
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
    if (command.text.size() > static_cast<std::size_t>(parameter("sayMsgSize"))) return;
    ++player.counts.say;
    constexpr int needed = static_cast<int>(parameter("hearDecay"));
    for (Player& listener : world_.players) {
        const Vec way = player.pos - listener.pos;
        if (!listener.active || way.length() > parameter("audioDist")) continue;
        if (&listener == &player) {
            send(player, text("(hear ", world_.cycle, " self \"", command.text, "\")"));
            continue;
        }
        int& capacity = listener.hearing[listener.side == player.side ? 0 : 1];
        if (capacity < needed) continue;
        capacity -= needed;
        const double dir = std::rint(toDeg(normalized(way.angle() - listener.body)));
        send(listener,
             text("(hear ", world_.cycle, ' ', static_cast<int>(dir), " \"", command.text, "\")"));
    }
}

void Match::apply(Player& player, const AskScore& /*command*/) {
    send(player, text("(score ", world_.cycle, ' ', world_.goals(player.side), ' ',
                      world_.goals(other(player.side)), ')'));
}

void Match::apply(Player& player, const AskSenseBody& /*command*/) {
    send(player, senseBodyMessage(world_, player));
}

void Match::apply(Player& player, const AskCompression& /*command*/) {
    refuse(player, "(warning compression_unsupported)");
}

void Match::apply(Player& player, const Bye& /*command*/) {
    remove(playerId(player));
}

void Match::apply(Player& player, const Tackle& /*command*/) {
    player.bodyUsed = true;
}

void Match::apply(Player& /*player*/, const Unsupported& /*command*/) {}

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
    sendSenses();
}

void Match::sendSenses() {
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
