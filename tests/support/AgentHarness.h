#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "link/Communicator.h"
#include "link/Effectors.h"
#include "tests/support/ServerEnd.h"
#include "worldmodel/WorldModel.h"

namespace support {

/// An agent without threads, timer and wall clock: messages go in as texts, decisions come out as
/// the commands queued. The server's parameters are integrated from the start.
///
/// The agent's classes keep their state in statics, so there can be one at a time; each new one
/// starts with a fresh world model and queue.
class AgentHarness {
public:
    static constexpr char const* TEAM = "Ours";
    static constexpr char const* OTHER_TEAM = "Theirs";

    /// Without a link nothing can be sent or received.
    explicit AgentHarness(bool goalie = false, char const* team = TEAM,
                          Communicator* link = nullptr);

    /// Parses one message and lets its handler keep it, as the sense thread does.
    void receive(std::string_view message);
    /// receive(), and stamps what waits, so that the world model may integrate it.
    void sense(std::string_view message);
    /// The init reply and all formation points: `side` is 'l' or 'r'.
    void join(char side, int unum, std::string_view playMode = "before_kick_off");

    /// Empties queue and history, as at the start of each decision.
    void startCycle();
    /// startCycle() and the behaviour of one cycle.
    void decide();

    /// The queued commands as texts: the main one (empty if there is none) and the others.
    std::string mainCommand() const;
    std::vector<std::string> otherCommands() const;
    std::vector<std::string> allCommands() const;

    /// Puts the agent (and its mirror in the team) somewhere: degrees clockwise, neck straight.
    void placeMyself(float x, float y, float bodyDirection = 0.0F);
    void placeBall(float x, float y, float vx = 0.0F, float vy = 0.0F);
    void addTeammate(int unum, float x, float y);
    void addOpponent(int unum, float x, float y, bool goalie = false);

    WorldModel world;
    Effectors effectors;
};

/// A link on loopback with both its ends.
struct Wire {
    ServerEnd server;
    Communicator link{"127.0.0.1", server.port()};
};

/// An agent with a server's end to send to and to receive from.
class LinkedAgent : public Wire, public AgentHarness {
public:
    explicit LinkedAgent(bool goalie = false) : AgentHarness(goalie, TEAM, &link) {}
};

} // namespace support
