#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "practice/Commands.h"
#include "practice/Outbox.h"
#include "practice/Random.h"
#include "practice/Referee.h"
#include "practice/Text.h"
#include "practice/World.h"

namespace practice {

struct MatchOptions {
    int halfCycles = 3000;
    std::uint64_t seed = 1;
    KickOffRule kickOff;
};

/// Is told what is said in a match at the moment it is said.
class Observer {
public:
    virtual ~Observer() = default;
    /// A player's datagram, when its commands are executed; the first one is its introduction.
    virtual void heardPlayer(World const& world, Player const& player,
                             std::string_view datagram) = 0;
    virtual void heardReferee(World const& world, std::string_view word) = 0;
    /// What a player says aloud, when it does.
    virtual void heardSay(World const& /*world*/, Player const& /*player*/,
                          std::string_view /*text*/) {}
    /// A trainer has something to say to those who will read the log.
    virtual void noted(World const& /*world*/, std::string_view /*text*/) {}
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
    /// The observer must outlive the match.
    void addObserver(Observer& observer) { observers_.push_back(&observer); }

    /// The datagram is executed at the next poll. Notes in the player whether it was its last.
    void receive(int player, std::string_view datagram);
    /// Drops what was received since the last poll: nobody acts while the clock is held.
    void forgetReceived();
    /// Executes what was received; every tenth poll is a step of the world. Returns whether it was.
    bool poll();
    /// In synchronous mode: this poll is the one after which the server waits for the players.
    bool isThinkTime() const { return polls_ % POLLS_PER_STEP == THINK_POLL; }
    /// Whether the player is on the pitch and may still send commands for this cycle.
    bool isAwaited(int player) const;
    /// The messages since it was cleared.
    Outbox& outbox() { return outbox_; }

    // What a human may do at any time. See Referee for kickOff and callFoul.
    void kickOff() { referee_.kickOff(); }
    void callFoul(Vec spot, Side side) { referee_.callFoul(spot, side); }
    /// Puts a player who is on the pitch somewhere; `body` in radians.
    void place(int player, Vec pos, double body, Vec vel = {});
    /// Takes a player off the pitch for good. It does not count as lost.
    void discard(int player);

    // What a trainer may do besides. See Referee for setMode.
    void setMode(PlayMode mode) { referee_.setMode(mode); }
    /// Anywhere; who holds the ball loses it.
    void placeBall(Vec pos, Vec vel);
    /// Gives everybody their stamina back.
    void recover();
    /// Everybody hears it from the coach.
    void coachSays(std::string_view text);
    /// For the observers alone.
    void note(std::string_view text);

    World const& world() const { return world_; }
    World& world() { return world_; } ///< to set up a scene

private:
    static constexpr long POLLS_PER_STEP = 10;
    static constexpr long THINK_POLL = 6; ///< with the sights of most cycles, and time to spare

    struct Execution; ///< of the commands of one player

    Side sideOf(std::string const& team);
    int freeNumber(Introduction const& client, Side side) const;
    void announce(std::string_view word);
    template <typename... Parts>
    void send(Player const& player, Parts const&... parts) {
        appendText(outbox_.begin(playerId(player)), parts...);
    }
    void noteAnswer(Player& player) const;
    void executeReceived();
    void step();
    void sendSights();

    World world_;
    Random random_;
    Referee referee_;
    Table<Recycled<std::string>, MAX_PLAYERS> inbox_;
    Outbox outbox_;
    std::vector<Observer*> observers_;
    long polls_ = 0;
};

} // namespace practice
