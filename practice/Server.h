#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "net/Socket.h"
#include "practice/GameLog.h"
#include "practice/Match.h"
#include "practice/Monitors.h"
#include "practice/Options.h"
#include "practice/Results.h"
#include "practice/Scoreboard.h"
#include "practice/Trainer.h"

namespace practice {

/// The match on the network: one socket where players and monitors introduce themselves, one for
/// each of them, and the files the options ask for. A poll comes every 10 ms of the steady clock,
/// or in synchronous mode as soon as every player has thought. All in one thread.
class Server {
public:
    /// Nothing, with the reason in `problem`, if the port or a file cannot be used.
    static std::unique_ptr<Server> open(Options const& options, std::string& problem);

    /// Runs until the match is over or `stop` becomes non-zero (a signal handler writes it).
    /// Returns the exit status.
    int run(int const volatile& stop);
    int port() const { return door_.port(); }

private:
    using Clock = std::chrono::steady_clock;
    using Stop = int const volatile;

    /// Datagrams of a player that are read at one poll, or in synchronous mode in one cycle: far
    /// more than a match needs.
    static constexpr int MOST_OF_A_CLIENT = 50;

    /// Datagrams that are sent together.
    struct Batch {
        std::array<std::string_view, net::Socket::MOST_AT_ONCE> datagrams;
        std::size_t size = 0;
    };
    struct Client {
        net::Address address;
        net::Socket socket;
        Batch batch{};
        // In synchronous mode:
        bool asked = false;  ///< a (think) is out to which there has been no answer
        bool ready = false;  ///< it has answered one
        bool silent = false; ///< not waited for until it answers again
        int heard = 0;       ///< datagrams in this cycle
    };

    Server(Options const& options, net::Address const& address, net::Socket door,
           std::vector<std::string> const& parameters);

    bool openTrainer(std::string& problem);
    bool openLog(std::vector<std::string> const& parameters, std::string& problem);
    void runInRealTime(Stop& stop);
    void runSynchronously(Stop& stop);
    void holdClock(Stop& stop, std::function<bool()> const& isOver);
    void spendHeldTime(Stop& stop, std::function<bool()> const& isOver);
    bool isEverybodyReady() const;
    void think(Stop& stop);
    void awaitTrainer(Clock::time_point deadline, Stop& stop);
    void awaitCommands(int player, Clock::time_point deadline, Stop& stop);
    void noteAnswer(int player);
    void noteSilence(int player);

    void readDoor();
    void readClients(std::chrono::milliseconds patience);
    void readClient(int player);
    void hear(int player, std::string_view datagram);
    void admit(std::string_view datagram, net::Address const& sender);
    int playerAt(net::Address const& sender) const;
    void sendOutbox(bool asking = false);
    void queue(int player, std::string_view datagram);
    void flush(int player);
    void afterStep();
    bool isOver() const;
    void writeResults() const;

    Options options_;
    net::Address any_; ///< our address, any port
    net::Socket door_;
    Match match_;
    Table<std::optional<Client>, MAX_PLAYERS> clients_;
    Monitors monitors_;
    std::unique_ptr<Trainer> trainer_; ///< null: none may come
    std::unique_ptr<GameLog> log_;     ///< null: none
    Scoreboard scoreboard_;
    int stepsAfterEnd_ = 0;
    Recycled<int> sendingOrder_;   ///< of the last sendOutbox()
    int heldSteps_ = 0;            ///< tenths of a second since the first player joined
    Clock::time_point lastJoin_{}; ///< while the clock was held
    Course course_;
    std::array<char, net::Inbox::LONGEST> buffer_{}; ///< of the door
    net::Inbox inbox_;                               ///< of the players' sockets
};

} // namespace practice
