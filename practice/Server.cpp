#include "practice/Server.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <thread>
#include <utility>

#include "practice/OutputFile.h"
#include "practice/ParameterRecords.h"
#include "practice/Results.h"
#include "practice/Text.h"

namespace practice {

using std::chrono::milliseconds;
using namespace std::string_view_literals;

namespace {

constexpr std::chrono::milliseconds POLL_TIME{10};
/// A short delay is made up for; after a longer one (a suspended machine) the match just goes on
/// from there, because steps in a burst would be lost to the players.
constexpr std::chrono::milliseconds LONGEST_CATCH_UP{100};
/// Datagrams read at one poll: far more than a match needs, and a flood cannot stop the clock.
constexpr int MOST_AT_THE_DOOR = 500;

std::string bindProblem(Options const& options) {
    if (errno == EADDRINUSE) {
        return text("port ", options.port, " is in use; choose another with --port");
    }
    return text("cannot listen on ", options.address, " port ", options.port, ": ",
                std::strerror(errno));
}

} // namespace

std::unique_ptr<Server> Server::open(Options const& options, std::string& problem) {
    auto const address = net::makeAddress(options.address, options.port);
    auto door = address ? net::Socket::bound(*address) : std::nullopt;
    if (!door) {
        problem = address ? bindProblem(options) : text(options.address, " is no IPv4 address");
        return nullptr;
    }
    auto const parameters = parameterRecords(options, door->port());
    std::unique_ptr<Server> server(new Server(options, *address, std::move(*door), parameters));
    bool const complete = server->openTrainer(problem) && server->openLog(parameters, problem);
    return complete ? std::move(server) : nullptr;
}

bool Server::openTrainer(std::string& problem) {
    if (!options_.trainer) return true;
    auto door = net::makeAddress(options_.address, door_.port() + 1);
    auto socket = door ? net::Socket::bound(*door) : std::nullopt;
    if (!socket) {
        problem =
            text("the trainer's port ", door_.port() + 1, " cannot be used: ", std::strerror(errno),
                 "; choose another pair with --port");
        return false;
    }
    trainer_ = std::make_unique<Trainer>(any_, std::move(*socket), options_.match.halfCycles);
    match_.addObserver(*trainer_);
    return true;
}

bool Server::openLog(std::vector<std::string> const& parameters, std::string& problem) {
    if (!options_.log.wanted()) return true;
    log_ = GameLog::open(options_.log, parameters, problem);
    if (!log_) return false;
    match_.addObserver(*log_);
    return true;
}

Server::Server(Options const& options, net::Address const& address, net::Socket door,
               std::vector<std::string> const& parameters)
    : options_(options), any_(address), door_(std::move(door)), match_(options.match),
      monitors_(address, parameters), scoreboard_(options.scoreboard, stdout) {
    any_.sin_port = 0;
}

int Server::run(int const volatile& stop) {
    if (options_.synchronous) {
        runSynchronously(stop);
    } else {
        runInRealTime(stop);
    }
    scoreboard_.finish();
    if (log_) log_->finish(match_.world());
    writeResults();
    return 0;
}

void Server::runInRealTime(Stop& stop) {
    Clock::time_point next = Clock::now();
    while (stop == 0 && !isOver()) {
        next += POLL_TIME;
        std::this_thread::sleep_until(next);
        if (Clock::now() > next + LONGEST_CATCH_UP) next = Clock::now();
        readClients(milliseconds::zero());
        monitors_.poll(match_);
        if (trainer_) trainer_->poll(match_);
        bool const stepped = match_.poll();
        sendOutbox();
        if (stepped) afterStep();
    }
}

// ---- Network

void Server::readDoor() {
    net::Address sender{};
    std::string_view datagram;
    for (int i = 0; i < MOST_AT_THE_DOOR; ++i) {
        if (door_.receive(buffer_, datagram, sender) != net::Socket::Arrival::datagram) return;
        if (int const player = playerAt(sender); player != NOBODY) {
            hear(player, datagram);
        } else if (!monitors_.receiveAtDoor(door_, sender, datagram)) {
            admit(datagram, sender);
        }
    }
}

/// Of the door and the players' sockets those where something waits, or comes within the patience:
/// to read all of them in vain costs more.
void Server::readClients(milliseconds patience) {
    Table<pollfd, MAX_PLAYERS + 1> inputs{};
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        // A descriptor below zero is passed over.
        inputs[i] = {clients_[i] ? clients_[i]->socket.descriptor() : -1, POLLIN, 0};
    }
    inputs.back() = {door_.descriptor(), POLLIN, 0};
    if (::poll(inputs.data(), inputs.size(), static_cast<int>(patience.count())) < 1) return;
    if (inputs.back().revents != 0) readDoor();
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        if (inputs[i].revents != 0) readClient(i);
    }
}

void Server::readClient(int player) {
    for (std::size_t read = 0; read < MOST_OF_A_CLIENT && clients_[player]; read += inbox_.size) {
        net::Socket::Arrival const arrival = clients_[player]->socket.receiveSome(inbox_);
        if (arrival == net::Socket::Arrival::nothing) return;
        if (arrival == net::Socket::Arrival::peerGone) return match_.remove(player);
        for (std::string_view const datagram : inbox_.items()) {
            hear(player, datagram);
        }
        if (inbox_.size < net::Inbox::CAPACITY) return;
    }
}

/// Where the clock waits a flood must end too, since nothing else ends the cycle.
void Server::hear(int player, std::string_view datagram) {
    if (options_.synchronous && ++clients_[player]->heard > MOST_OF_A_CLIENT) return;
    match_.receive(player, datagram);
}

/// Opens the socket first: a player that cannot be answered must not join.
void Server::admit(std::string_view datagram, net::Address const& sender) {
    auto socket = net::Socket::bound(any_);
    bool const connected = socket && socket->connectTo(sender);
    Match::Joined const joined =
        connected ? match_.join(datagram) : Match::Joined{NOBODY, "(error connection_failed)"};
    if (joined.player == NOBODY) {
        door_.send(joined.refusal, &sender);
    } else {
        clients_[joined.player] = Client{sender, std::move(*socket)};
    }
}

int Server::playerAt(net::Address const& sender) const {
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        if (clients_[i] && net::sameAddress(clients_[i]->address, sender)) return i;
    }
    return NOBODY;
}

/// Each player's messages go together, so that it is woken once. With `asking` a (think) goes last,
/// to each player that owes no answer.
void Server::sendOutbox(bool asking) {
    sendingOrder_.clear();
    for (auto const& [player, message] : match_.outbox().messages()) {
        queue(player, {message.data(), message.size() + 1}); // a string always ends with a NUL
    }
    for (int i = 0; i < MAX_PLAYERS && asking; ++i) {
        constexpr std::string_view THINK = "(think)\0"sv; // the NUL is sent too
        if (clients_[i] && !std::exchange(clients_[i]->asked, true)) queue(i, THINK);
    }
    for (int const player : sendingOrder_.items()) {
        flush(player);
    }
    match_.outbox().clear();
    for (int i = 0; i < MAX_PLAYERS; ++i) {
        if (!match_.world().player(i).active) clients_[i].reset();
    }
}

void Server::queue(int player, std::string_view datagram) {
    if (!clients_[player]) return;
    Batch& batch = clients_[player]->batch;
    if (batch.size == batch.datagrams.size()) flush(player);
    if (std::ranges::find(sendingOrder_.items(), player) == sendingOrder_.items().end()) {
        sendingOrder_.add() = player;
    }
    batch.datagrams[batch.size++] = datagram;
}

void Server::flush(int player) {
    Batch& batch = clients_[player]->batch;
    std::span const datagrams(batch.datagrams.data(), std::exchange(batch.size, 0));
    if (!clients_[player]->socket.sendAll(datagrams)) match_.remove(player);
}

// ---- The course of the match

void Server::afterStep() {
    World const& world = match_.world();
    if (trainer_) trainer_->show(world);
    monitors_.show(world); // after the players' messages, which are in more of a hurry
    if (log_) log_->step(world);
    scoreboard_.show(world);
    if (world.mode == Phase::timeOver && stepsAfterEnd_++ == 0) writeResults();
}

bool Server::isOver() const {
    World const& world = match_.world();
    if (world.mode != Phase::timeOver) return false;
    return stepsAfterEnd_ > options_.lingerSteps || !world.anybodyActive();
}

void Server::writeResults() const {
    std::string const& file = options_.resultsFile;
    if (file.empty() || replaceFile(file, resultsJson(match_.world(), course_))) return;
    std::fprintf(stderr, "practice-server: cannot write the results to %s: %s\n", file.c_str(),
                 std::strerror(errno));
}

} // namespace practice
