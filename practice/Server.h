#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "practice/GameLog.h"
#include "practice/Match.h"
#include "practice/Monitors.h"
#include "practice/Options.h"
#include "practice/Scoreboard.h"
#include "practice/Socket.h"
#include "practice/Trainer.h"

namespace practice {

/// The match on the network: one socket where players and monitors introduce themselves, one for
/// each of them, a poll every 10 ms of the steady clock, and the files the options ask for. All in
/// one thread.
class Server {
public:
    /// Nothing, with the reason in `problem`, if the port or a file cannot be used.
    static std::unique_ptr<Server> open(Options const& options, std::string& problem);

    /// Runs until the match is over or `stop` becomes non-zero (a signal handler writes it).
    /// Returns the exit status.
    int run(int const volatile& stop);
    int port() const { return door_.port(); }

private:
    struct Client {
        Address address;
        Socket socket;
    };

    Server(Options const& options, Address const& address, Socket door,
           std::vector<std::string> const& parameters);

    bool openTrainer(std::string& problem);
    bool openLog(std::vector<std::string> const& parameters, std::string& problem);
    void readDoor();
    void readClient(int player);
    void admit(std::string_view datagram, Address const& sender);
    int playerAt(Address const& sender) const;
    void sendOutbox();
    void afterStep();
    bool isOver() const;
    void writeResults() const;

    Options options_;
    Address any_; ///< our address, any port
    Socket door_;
    Match match_;
    Table<std::optional<Client>, MAX_PLAYERS> clients_;
    Monitors monitors_;
    std::unique_ptr<Trainer> trainer_; ///< null: none may come
    std::unique_ptr<GameLog> log_;     ///< null: none
    Scoreboard scoreboard_;
    int stepsAfterEnd_ = 0;
    std::array<char, 8192> buffer_{};
};

} // namespace practice
