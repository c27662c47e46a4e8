#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "practice/Commands.h"
#include "practice/Random.h"
#include "practice/Referee.h"
#include "practice/Reports.h"
#include "practice/World.h"

namespace practice {

struct MatchOptions {
    int halfCycles = 3000;
    std::uint64_t seed = 1;
    KickOffRule kickOff;
};

/// A message for one player.
struct Outgoing {
    int player = NOBODY;
    std::string text; ///< without the NUL that ends the datagram
};

/// A whole match without sockets and wall clock: players join, their datagrams are delivered, time
/// goes on poll by poll (10 ms of match time), and what the players are to be told collects in the
/// outbox. The same seed and the same calls give the same match.
class Match {
public:
    explicit Match(MatchOptions const& options);
    Match(Match const&) = delete; ///< the parts refer to each other
    Match& operator=(Match const&) = delete;

    /// `refusal` is the reply for a client that is not let in; else the messages are in the outbox.
    struct Joined {
        int player = NOBODY;
        std::string refusal;
    };
    Joined join(std::string_view firstDatagram);
    /// The player is gone: it leaves the pitch, its number stays used.
    void remove(int player);

    /// The datagram is executed at the next poll.
    void receive(int player, std::string_view datagram);
    /// Executes what was received; every tenth poll is a step of the world. Returns whether it was.
    bool poll();
    /// Takes the messages since the last call, in the order they are to be sent.
    std::vector<Outgoing> takeOutbox();

    World const& world() const { return world_; }
    World& world() { return world_; } ///< to set up a scene
    Statistics const& statistics() const { return statistics_; }

private:
    struct Execution; ///< of the commands of one player

    Side sideOf(std::string const& team);
    int freeNumber(Introduction const& client, Side side) const;
    void send(Player const& player, std::string text);
    void noteAnswer(Player& player) const;
    void executeReceived();
    void step();
    void sendSights();

    World world_;
    Random random_;
    Referee referee_;
    Statistics statistics_;
    Table<std::vector<std::string>, MAX_PLAYERS> inbox_;
    std::vector<Outgoing> outbox_;
    long polls_ = 0;
};

} // namespace practice
