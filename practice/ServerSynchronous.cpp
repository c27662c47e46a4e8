// The course of a match whose clock waits for the players.

#include <algorithm>
#include <cstdio>
#include <poll.h>
#include <thread>
#include <utility>

#include "practice/Server.h"
#include "practice/Text.h"

namespace practice {

namespace {

using std::chrono::milliseconds;

/// A player that takes longer is named, and not waited for until it answers again.
constexpr milliseconds PATIENCE{1250};
/// The same before the clock starts, when programs are still being loaded.
constexpr milliseconds START_PATIENCE{5000};
constexpr milliseconds STEP_TIME{100};

} // namespace

void Server::runSynchronously(Stop& stop) {
    auto const start = [this] {
        Phase const phase = match_.world().mode.phase;
        return phase != Phase::beforeKickOff || isEverybodyReady();
    };
    holdClock(stop, start);
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        if (clients_[i] && !clients_[i]->ready) noteSilence(i);
    }
    Clock::time_point const begin = Clock::now();
    while (stop == 0 && match_.world().mode != Phase::timeOver) {
        bool stepped = false;
        while (!stepped) {
            stepped = match_.poll();
            if (match_.isThinkTime()) think(stop);
        }
        ++course_.steps;
        course_.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        afterStep();
        if (options_.speed > 0) {
            std::this_thread::sleep_until(begin + course_.steps * STEP_TIME / options_.speed);
        }
    }
    holdClock(stop, [this] { return isOver(); });
}

// ---- The clock is held

/// Nothing moves. Ten times a second each player is asked to think, which shows it that the server
/// is synchronous and alive, and the monitors see who is there. What players send is forgotten, so
/// that it makes no difference when somebody joined.
void Server::holdClock(Stop& stop, std::function<bool()> const& isOver) {
    while (stop == 0 && !isOver()) {
        sendOutbox(true);
        monitors_.show(match_.world());
        spendHeldTime(stop, isOver);
        if (match_.world().mode == Phase::timeOver) {
            ++stepsAfterEnd_;
        } else if (match_.world().anybodyActive()) {
            ++heldSteps_;
        }
    }
}

void Server::spendHeldTime(Stop& stop, std::function<bool()> const& isOver) {
    constexpr milliseconds REST{5};
    auto const end = Clock::now() + STEP_TIME;
    while (stop == 0 && !isOver() && Clock::now() < end) {
        long const before = match_.world().joinedCount();
        readClients(REST);
        for (int i = 0; i < MAX_PLAYERS; ++i) {
            noteAnswer(i);
            if (clients_[i]) clients_[i]->heard = 0;
        }
        monitors_.poll(match_);
        if (trainer_) trainer_->poll(match_);
        match_.forgetReceived();
        sendOutbox();
        if (match_.world().joinedCount() == before) continue;
        lastJoin_ = Clock::now();
        monitors_.show(match_.world());
    }
}

/// Enough players are there, and no answer is under way that would count for the first cycle.
bool Server::isEverybodyReady() const {
    KickOffRule const& rule = options_.match.kickOff;
    bool const enough = match_.world().joinedCount() >= rule.players;
    if (!enough && heldSteps_ < rule.waitSteps) return false;
    return Clock::now() > lastJoin_ + START_PATIENCE ||
           std::ranges::all_of(clients_, [](std::optional<Client> const& client) {
               return !client || (client->ready && !client->asked);
           });
}

// ---- The clock waits

/// Lets the players think. The network is read here and nowhere else.
void Server::think(Stop& stop) {
    for (auto& client : clients_) {
        if (!client) continue;
        client->asked = false;
        client->heard = 0;
    }
    sendOutbox(true);
    auto const deadline = Clock::now() + PATIENCE;
    monitors_.poll(match_);
    readDoor();
    // The last one asked is waited for first: then most of the others have answered already, and
    // we are woken seldom.
    auto const order = sendingOrder_.items();
    // clang 14 cannot compile std::views::reverse. NOLINTNEXTLINE(modernize-loop-convert)
    for (auto player = order.rbegin(); player != order.rend(); ++player) {
        awaitCommands(*player, deadline, stop);
    }
    if (trainer_) awaitTrainer(deadline, stop);
}

/// After the players, whose commands wait for the next poll: what a trainer does, it does at once.
void Server::awaitTrainer(Clock::time_point deadline, Stop& stop) {
    trainer_->askToThink();
    trainer_->poll(match_);
    while (trainer_->isAwaited() && stop == 0) {
        auto const left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        if (left <= milliseconds::zero()) {
            trainer_->doNotAwait();
            std::fprintf(stderr,
                         "practice-server: the trainer has not said (done) in cycle %d; the match "
                         "goes on without waiting for it until it does\n",
                         match_.world().cycle);
            return;
        }
        trainer_->waitForDatagram(static_cast<int>(left.count()));
        trainer_->poll(match_);
    }
}

void Server::awaitCommands(int player, Clock::time_point deadline, Stop& stop) {
    readClient(player);
    while (clients_[player] && clients_[player]->asked && !clients_[player]->silent &&
           match_.isAwaited(player) && clients_[player]->heard < MOST_OF_A_CLIENT && stop == 0) {
        auto const left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        if (left <= milliseconds::zero()) return noteSilence(player);
        std::array<pollfd, 2> inputs{
            {{clients_[player]->socket.descriptor(), POLLIN, 0}, {door_.descriptor(), POLLIN, 0}}};
        ::poll(inputs.data(), inputs.size(), static_cast<int>(left.count()));
        readDoor();
        readClient(player);
    }
    noteAnswer(player);
}

void Server::noteAnswer(int player) {
    if (!clients_[player] || match_.isAwaited(player)) return;
    Client& client = *clients_[player];
    client.asked = client.silent = false;
    client.ready = true;
}

void Server::noteSilence(int player) {
    Player& p = match_.world().player(player);
    ++p.missed;
    clients_[player]->silent = true;
    std::fprintf(stderr,
                 "practice-server: %s %d has not said (done) in cycle %d; the match goes on "
                 "without waiting for it until it does\n",
                 match_.world().teamName(p.side).c_str(), p.unum, match_.world().cycle);
}

} // namespace practice
