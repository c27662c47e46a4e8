#pragma once

#include <array>
#include <atomic>
#include <cstddef>

#include "link/CommandRecords.h"
#include "link/ServerCommands.h"

class Communicator;

/// Turns decisions into commands: queues them during a cycle and sends them all once.
///
/// Created by `Agent`. The behaviours queue in the main thread. The queue leaves either from there
/// or from the SIGALRM handler, whichever comes first: the send permission, granted once per
/// sense_body, is taken by the first and makes the second do nothing. Nothing here allocates.
///
/// Angles are relative to the body (turn_neck: to the neck), in degrees, with the server's sign,
/// so that they grow clockwise on a picture whose y axis points down. Numbers go out as they come,
/// beyond the server's limits too; a command with an argument that is not finite is dropped.
class Effectors {
public:
    /// Installs the SIGALRM handler. The three outlive the object.
    Effectors(Communicator* link, ServerCommandHistory& commandHistory,
              ServerCommandCounters& commandCounters);
    Effectors(Effectors const&) = delete;
    Effectors& operator=(Effectors const&) = delete;

    /// Introduces the player to the server at once, without the queue. A name too long for the
    /// datagram is cut.
    void init(char const* teamname, bool goalie);

    /// @name Main commands: each replaces the one queued before it in this cycle.
    /// @{
    void queueMove(float x, float y);
    void queueKick(float power, float direction);
    void queueDash(float power);
    /// Turns the body by `angle`, as far as one turn at `speed` (before decay, metres per cycle)
    /// can. A turn too small to be worth a command (moment up to 0.1) is dropped.
    void queueTurn(float angle, float speed);
    void queueGoalieCatch(float direction);
    /// @}

    /// @name Other commands: up to ServerCommands::MAX_OTHERS a cycle, one more is refused.
    /// @{
    void queueTurnNeck(float angle);
    void queueChangeView(ViewMode width, ViewQuality quality);
    void queueSay(char const* message);
    void queueScore();
    /// @}

    /// Allows one sendAllCommands(). Called by the main loop once per sense_body.
    void grantSend() { sendPermission_ = true; }
    /// Empties the queue at the start of a decision.
    void clearQueue() { queue_.clear(); }
    ServerCommands const& commands() const { return queue_; }

    /// Sends the queue, each command in a datagram of its own, if a send is granted; takes the
    /// grant. Async-signal-safe.
    void sendAllCommands();
    /// Answers a server that waits for the commands of the cycle: sendAllCommands(), then "(done)".
    void answerThink();
    /// Sends `message` at once: no queue, no permission, no count.
    void sendCommandDirect(char const* message);
    /// Counts one command of the kind; kinds that are not counted change nothing.
    void incrementCounters(Command kind);

    /// Sends the queue of the one `Effectors` object when the action timer fires.
    static void sigalrmHandler(int signal);

private:
    void queueMainCommand(Command kind, float argument1);
    bool queueOtherCommand(Command kind);
    /// Sends the queue if that is granted, and then `last` if there is one.
    void send(char const* last);

    std::atomic<bool> sendPermission_ = false;
    ServerCommands queue_;
    std::array<char, OTHER_COMMAND_SIZE> formatBuffer_{};
    Communicator* communicator_;
    ServerCommandHistory& history_;
    ServerCommandCounters& counters_;
};
