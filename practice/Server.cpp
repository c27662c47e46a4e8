#include "practice/Server.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "practice/Records.h"
#include "practice/Text.h"

namespace practice {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds pollTime{10};
// A short delay is made up for; after a longer one (a suspended machine) the match just goes on
// from there, because steps in a burst would be lost to the players.
constexpr std::chrono::milliseconds longestCatchUp{100};

bool sameAddress(const Address& a, const Address& b) {
    return a.sin_addr.s_addr == b.sin_addr.s_addr && a.sin_port == b.sin_port;
}

std::string bindProblem(const Options& options) {
    if (errno == EADDRINUSE)
        return text("port ", options.port, " is in use; choose another with --port");
    return text("cannot listen on ", options.address, " port ", options.port, ": ",
                std::strerror(errno));
}

} // namespace

std::unique_ptr<Server> Server::open(const Options& options, std::string& problem) {
    const auto address = makeAddress(options.address, options.port);
    if (!address) {
        problem = text(options.address, " is no IPv4 address");
        return nullptr;
    }
    auto door = Socket::bound(*address);
    if (!door) {
        problem = bindProblem(options);
        return nullptr;
    }
    std::unique_ptr<Server> server(new Server(options, *address, std::move(*door)));
    if (!options.logFile.empty()) {
        server->log_.open(options.logFile);
        if (!server->log_) {
            problem = text("cannot write the log to ", options.logFile, ": ", std::strerror(errno));
            return nullptr;
        }
        server->log_ << logHeader();
    }
    return server;
}

Server::Server(const Options& options, const Address& address, Socket door)
    : options_(options), any_(address), door_(std::move(door)), match_(options.match),
      scoreboard_(options.scoreboard, stdout) {
    any_.sin_port = 0;
}

int Server::run(const volatile int& stop) {
    Clock::time_point next = Clock::now();
    while (stop == 0 && !isOver()) {
        next += pollTime;
        std::this_thread::sleep_until(next);
        if (Clock::now() > next + longestCatchUp) next = Clock::now();
        readDatagrams();
        const bool stepped = match_.poll();
        sendOutbox();
        closeGone();
        if (stepped) afterStep();
    }
    scoreboard_.finish();
    writeResults();
    return 0;
}

// ---- Network

void Server::readDatagrams() {
    readDoor();
    for (int i = 0; i < maxPlayers; ++i)
        readClient(i);
}

void Server::readDoor() {
    Address sender{};
    std::string_view datagram;
    while (door_.receive(buffer_, datagram, sender) == Socket::Arrival::datagram) {
        const int player = playerAt(sender);
        if (player == nobody) {
            admit(datagram, sender);
        } else {
            match_.receive(player, datagram);
        }
    }
}

void Server::readClient(int player) {
    const auto& client = clients_[static_cast<std::size_t>(player)];
    if (!client) return;
    Address sender{};
    std::string_view datagram;
    for (;;) {
        const Socket::Arrival arrival = client->socket.receive(buffer_, datagram, sender);
        if (arrival == Socket::Arrival::nothing) return;
        if (arrival == Socket::Arrival::peerGone) return match_.remove(player);
        match_.receive(player, datagram);
    }
}

// The socket comes first, so that nobody joins who could not be told.
void Server::admit(std::string_view datagram, const Address& sender) {
    auto socket = Socket::bound(any_);
    if (!socket || !socket->connectTo(sender))
        return door_.sendTo("(error connection_failed)", sender);
    const Match::Joined joined = match_.join(datagram);
    if (joined.player == nobody) return door_.sendTo(joined.refusal, sender);
    clients_[static_cast<std::size_t>(joined.player)] = Client{sender, std::move(*socket)};
}

int Server::playerAt(const Address& sender) const {
    for (int i = 0; i < maxPlayers; ++i) {
        const auto& client = clients_[static_cast<std::size_t>(i)];
        if (client && sameAddress(client->address, sender)) return i;
    }
    return nobody;
}

void Server::sendOutbox() {
    for (const Outgoing& message : match_.takeOutbox()) {
        const auto& client = clients_[static_cast<std::size_t>(message.player)];
        if (client && !client->socket.send(message.text)) match_.remove(message.player);
    }
}

void Server::closeGone() {
    for (int i = 0; i < maxPlayers; ++i) {
        if (!match_.world().player(i).active) clients_[static_cast<std::size_t>(i)].reset();
    }
}

// ---- The course of the match

void Server::afterStep() {
    const World& world = match_.world();
    scoreboard_.show(world);
    if (log_.is_open()) log_ << logLine(world);
    if (world.mode != Phase::timeOver) return;
    if (stepsAfterEnd_++ == 0) writeResults();
}

bool Server::isOver() const {
    const World& world = match_.world();
    if (world.mode != Phase::timeOver) return false;
    return stepsAfterEnd_ > options_.lingerSteps || !world.anybodyActive();
}

void Server::writeResults() const {
    if (options_.resultsFile.empty() || writeFile(options_.resultsFile, results(match_))) return;
    const std::string problem =
        text("cannot write the results to ", options_.resultsFile, ": ", std::strerror(errno));
    std::fprintf(stderr, "practice-server: %s\n", problem.c_str());
}

} // namespace practice
