#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "net/Socket.h"
#include "practice/Match.h"
#include "practice/TrainerCommands.h"

namespace practice {

/// The program that sets up scenes: on a port of its own it moves ball and players, sets the play
/// mode, and sees and hears everything. There is at most one. The referee stays at work.
///
/// Oddity of the field: whoever says something else than "(init ...)" while there is no trainer
/// starts the match and is obeyed, but not answered.
class Trainer : public Observer {
public:
    /// `own` is the server's address, with any port; `door` is where a trainer introduces itself.
    /// `halfCycles` is for the messages after that.
    Trainer(net::Address const& own, net::Socket door, int halfCycles);
    Trainer(Trainer const&) = delete; ///< the match knows where it is
    Trainer& operator=(Trainer const&) = delete;

    /// Executes what has come, at once. Reads little of a flood.
    void poll(Match& match);
    /// At the end of every step, after the messages of the players.
    void show(World const& world);

    // Synchronous mode: a trainer with its eye on thinks in every cycle, as the players do.
    /// Tells it that it is time to think.
    void askToThink();
    /// Whether the cycle waits for it. What it has said is forgotten at the end of every step.
    bool isAwaited() const { return client_ && eye_ && !done_ && !silent_; }
    /// It is not waited for until it says (done) again.
    void doNotAwait() { silent_ = true; }
    /// Returns when something has come or the milliseconds are over.
    void waitForDatagram(int milliseconds) const;

    void heardPlayer(World const& /*world*/, Player const& /*player*/,
                     std::string_view /*datagram*/) override {}
    void heardReferee(World const& world, std::string_view word) override;
    void heardSay(World const& world, Player const& player, std::string_view text) override;

private:
    struct Client {
        net::Address address;
        net::Socket socket;
        bool longNames; ///< of an old protocol
    };
    struct Execution;

    void readDoor(Match& match);
    void readClient(Match& match);
    void receiveAtDoor(net::Address const& sender, std::string_view datagram, Match& match);
    std::string_view admit(net::Address const& sender, double version);
    void execute(std::string_view datagram, Match& match);
    void answer(std::string const& text);
    std::string sight(World const& world) const;
    std::string nameOf(World const& world, Player const& player) const;

    net::Address own_;
    net::Socket door_;
    int halfCycles_;
    std::optional<Client> client_;
    bool obeysStrangers_ = false; ///< and has started the match for the first of them
    bool eye_ = false, ear_ = false, done_ = false, silent_ = false;
    std::array<char, 8192> buffer_{};
};

} // namespace practice
