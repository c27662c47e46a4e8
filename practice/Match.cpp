#include "practice/Match.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "practice/Body.h"
#include "practice/Eyes.h"
#include "practice/Parameters.h"
#include "practice/Physics.h"
#include "practice/Placement.h"

namespace practice {

namespace {

constexpr int SPOKEN_VERSION = 7; ///< the only message format this server speaks

/// The internal clock of the eyes ticks every 37.5 ms and is noticed at the next poll.
long ticksAt(long polls) {
    return polls * 4 / 15;
}

std::array<int, MAX_PLAYERS> everybodyInRandomOrder(Random& random) {
    std::array<int, MAX_PLAYERS> order{};
    std::iota(order.begin(), order.end(), 0);
    random.shuffle(std::span<int>(order));
    return order;
}

} // namespace

Match::Match(MatchOptions const& options)
    : random_(options.seed), referee_(world_, random_, options.kickOff,
                                      [this](std::string_view word) { announce(word); }) {
    world_.halfCycles = options.halfCycles;
}

// ---- Joining and leaving

Match::Joined Match::join(std::string_view firstDatagram) {
    Introduction const client = readIntroduction(firstDatagram);
    if (!client.refusal.empty()) return {NOBODY, std::string(client.refusal)};
    if (client.reconnect) { // nobody comes back: a number is used once
        bool const playing = world_.mode == Phase::playOn;
        return {NOBODY, playing ? "(error cannot_reconnect_while_playon)"
                                : "(error no_such_team_or_player)"};
    }
    Side const side = sideOf(client.team);
    if (side == Side::none) return {NOBODY, "(error no_more_team)"};
    int const id = freeNumber(client, side);
    if (id == NOBODY) return {id, "(error no_more_player_or_goalie_or_illegal_client_version)"};
    Player& p = world_.player(id);
    p.joined = p.active = true;
    p.goalie = client.goalie;
    p.pos = touchlinePlace(p);
    for (Observer* const observer : observers_) {
        observer->heardPlayer(world_, p, firstDatagram);
    }
    send(p, "(init ", letter(side), ' ', p.unum, ' ', world_.mode.word(), ')');
    send(p, serverParamMessage(world_.halfCycles));
    send(p, playerParamMessage());
    send(p, playerTypeMessage());
    return {id, {}};
}

/// The side that plays under this name; a new name takes the next free side.
Side Match::sideOf(std::string const& team) {
    for (Side const side : {Side::left, Side::right}) {
        std::string& name = world_.teamNames[index(side)];
        if (name.empty()) name = team;
        if (name == team) return side;
    }
    return Side::none;
}

/// The index of the player that the client becomes; NOBODY if there is no place for it.
int Match::freeNumber(Introduction const& client, Side side) const {
    if (client.version < SPOKEN_VERSION || client.version >= SPOKEN_VERSION + 1) return NOBODY;
    for (int unum = 1; unum <= PLAYERS_PER_TEAM; ++unum) {
        int const id = playerId(side, unum);
        if (!world_.player(id).joined) return id;
        if (client.goalie && world_.player(id).goalie) return NOBODY;
    }
    return NOBODY;
}

void Match::remove(int id) {
    Player& p = world_.player(id);
    if (!p.active) return;
    p.active = false;
    p.lost = world_.mode != Phase::timeOver;
    if (world_.ballHolder == id) world_.ballHolder = NOBODY;
    inbox_[id].clear();
}

// ---- The interventions of a human

void Match::place(int id, Vec pos, double body, Vec vel) {
    Player& p = world_.player(id);
    if (!p.active) return;
    p.pos = cutToRunOff(pos);
    p.body = normalized(body);
    p.halt();
    p.vel = shortenedTo(vel, parameter("playerSpeedMax"));
}

void Match::discard(int id) {
    Player& p = world_.player(id);
    if (!p.active) return;
    remove(id);
    p.lost = false;
    p.discarded = true;
}

// ---- The trainer

void Match::placeBall(Vec pos, Vec vel) {
    world_.ballHolder = NOBODY;
    world_.ball.pos = pos;
    world_.ball.halt();
    world_.ball.vel = shortenedTo(vel, parameter("ballSpeedMax"));
}

void Match::recover() {
    for (Player& p : world_.players) {
        p.restoreStamina();
    }
}

void Match::coachSays(std::string_view said) {
    for (Player const& p : world_.players) {
        if (p.active) send(p, "(hear ", world_.cycle, " coach \"", said, "\")");
    }
}

void Match::note(std::string_view noted) {
    for (Observer* const observer : observers_) {
        observer->noted(world_, noted);
    }
}

// ---- Messages

void Match::announce(std::string_view word) {
    for (Observer* const observer : observers_) {
        observer->heardReferee(world_, word);
    }
    for (Player const& p : world_.players) {
        if (p.active) send(p, "(hear ", world_.cycle, " referee ", word, ')');
    }
}

// ---- Commands

struct Match::Execution {
    Match& match;
    Player& me;
    World& world = match.world_;

    /// The first body command of a cycle wins.
    bool mayUseBody() { return !std::exchange(me.bodyUsed, true); }

    void operator()(Turn const& command) {
        if (!mayUseBody()) return;
        turn(me, command.moment, match.random_);
        ++me.counts.turn;
    }

    void operator()(Dash const& command) {
        if (mayUseBody() && !world.mode.isHeld()) dash(me, command.power, command.dir);
    }

    void operator()(Kick const& command) {
        Referee& referee = match.referee_;
        if (!mayUseBody()) return;
        me.marks |= gamelog::state::KICK | gamelog::state::KICK_FAILED;
        if (!referee.allowsKick()) return;
        int const id = playerId(me);
        if (!kick(world, me, command.power, command.dir, match.random_)) {
            return referee.triedToKick(id);
        }
        me.marks &= ~gamelog::state::KICK_FAILED;
        ++me.counts.kick;
        referee.kicked(id);
    }

    void operator()(Catch const& command) {
        bool const legal = me.goalie && world.mode == Phase::playOn && me.catchBan == 0;
        if (!mayUseBody()) return;
        me.marks |= gamelog::state::CATCH | gamelog::state::CATCH_FAILED;
        if (!legal) return;
        me.catchBan = wholeParameter("catchBanCycle");
        if (!catchBall(world, me, command.dir)) return;
        me.marks &= ~gamelog::state::CATCH_FAILED;
        ++me.counts.catches;
        match.referee_.caught(playerId(me));
    }

    void operator()(Move const& command) {
        bool const anybody = world.mode == Phase::beforeKickOff || world.mode == Phase::goal;
        bool const withBall = !anybody && world.ballHolder == playerId(me);
        if ((!anybody && !withBall) || !mayUseBody()) return;
        ++me.counts.move;
        if (withBall && me.goalieMoves++ >= wholeParameter("goalieMaxMoves")) {
            return match.send(me, "(error too_many_moves)");
        }
        me.pos = cutToRunOff(command.pos * sign(me.side));
        me.halt();
        if (world.mode == Phase::beforeKickOff && command.pos.x >= -PLAYER_SIZE) {
            match.send(me, "(warning moving_to_opponent_field)");
        }
    }

    void operator()(TurnNeck const& command) {
        if (std::exchange(me.neckUsed, true)) {
            ++me.spareNeckTurns;
            return;
        }
        turnNeck(me, command.moment);
        ++me.counts.turnNeck;
    }

    void operator()(ChangeView const& command) {
        me.view = command.view;
        ++me.counts.changeView;
    }

    void operator()(Say const& command) {
        if (std::ssize(command.text) > wholeParameter("sayMsgSize")) return;
        ++me.counts.say;
        for (Observer* const observer : match.observers_) {
            observer->heardSay(world, me, command.text);
        }
        for (Player& listener : world.players) {
            if (listener.active) tell(listener, command.text);
        }
    }

    void tell(Player& listener, std::string_view said) {
        if (&listener == &me) {
            return match.send(me, "(hear ", world.cycle, " self \"", said, "\")");
        }
        constexpr int NEEDED = wholeParameter("hearDecay");
        Vec const way = me.pos - listener.pos;
        int& capacity = listener.hearing[listener.side == me.side ? 0 : 1];
        if (way.length() > parameter("audioDist") || capacity < NEEDED) return;
        capacity -= NEEDED;
        int const dir = wholeDegrees(way.angle() - listener.body);
        match.send(listener, "(hear ", world.cycle, ' ', dir, " \"", said, "\")");
    }

    void operator()(Request request) {
        if (request == Request::score) {
            match.send(me, "(score ", world.cycle, ' ', world.goals(me.side), ' ',
                       world.goals(other(me.side)), ')');
        } else if (request == Request::senseBody) {
            appendSenseBody(match.outbox_.begin(playerId(me)), world, me);
        } else if (request == Request::bye) {
            match.remove(playerId(me));
        }
    }
};

void Match::receive(int player, std::string_view datagram) {
    Player& p = world_.player(player);
    if (!p.active) return;
    Word const word = wordOf(datagram);
    if (word != Word::commands) p.done = true;
    if (word != Word::done) inbox_[player].add() = datagram;
}

void Match::forgetReceived() {
    for (auto& datagrams : inbox_) {
        datagrams.clear();
    }
    for (Player& p : world_.players) {
        p.done = false;
    }
}

bool Match::isAwaited(int player) const {
    Player const& p = world_.player(player);
    return p.active && !p.done;
}

/// A player acts once in a cycle: after its see message or, when half of the cycle has brought
/// none, after its sense_body. What comes earlier, or a second time, was meant for the cycle
/// before.
void Match::noteAnswer(Player& player) const {
    bool const goesOn = player.lastAnswer == polls_ - 1; // the rest of what came at the last poll
    player.lastAnswer = polls_;
    if (goesOn) return;
    ++player.answers;
    bool const early = (polls_ - 1) % POLLS_PER_STEP < POLLS_PER_STEP / 2 - 1 && !player.sightSent;
    if (early || player.answered) ++player.lateAnswers;
    player.answered = true;
}

void Match::executeReceived() {
    if (std::ranges::all_of(inbox_, &Recycled<std::string>::empty)) return;
    for (int const id : everybodyInRandomOrder(random_)) {
        Player& player = world_.player(id);
        if (!inbox_[id].empty()) noteAnswer(player);
        for (std::string const& datagram : inbox_[id].items()) {
            for (Observer* const observer : observers_) {
                observer->heardPlayer(world_, player, datagram);
            }
            CommandReader reader(datagram);
            while (auto const command = player.active ? reader.next() : std::nullopt) {
                std::visit(Execution{*this, player}, *command);
            }
            if (!reader.failed()) continue;
            ++player.refused;
            send(player, ILLEGAL_FORM);
        }
        inbox_[id].clear();
    }
}

// ---- Time

bool Match::poll() {
    if (polls_ % POLLS_PER_STEP == 0) {
        for (Player& p : world_.players) {
            p.marks = 0;
        }
    }
    ++polls_;
    executeReceived();
    bool const stepped = polls_ % POLLS_PER_STEP == 0;
    if (stepped) step();
    if (ticksAt(polls_) != ticksAt(polls_ - 1)) sendSights();
    return stepped;
}

void Match::step() {
    Vec const ballBefore = world_.ball.pos;
    Players const touchers = moveAll(world_, random_);
    referee_.step(ballBefore, touchers);
    recoverAll(world_);
    referee_.startWhenReady();
    for (int const id : everybodyInRandomOrder(random_)) {
        Player const& p = world_.player(id);
        if (p.active) appendSenseBody(outbox_.begin(id), world_, p);
    }
}

void Match::sendSights() {
    for (Player& p : world_.players) {
        if (!p.active || ++p.ticksSinceSee < seeInterval(p.view)) continue;
        p.ticksSinceSee = 0;
        p.sightSent = true;
        appendSee(outbox_.begin(playerId(p)), world_, p, random_);
    }
}

} // namespace practice
