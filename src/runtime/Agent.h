#pragma once

class Communicator;
class Effectors;
class Sensors;
class WorldModel;

/// Cleared when the server has been silent for too long; ends the main loop.
extern bool serverAlive;

/// The player as a whole: builds its parts in order and runs the main loop.
///
/// Created by main(), once; the object carries nothing, its parts are class-level and live until
/// the process ends. Main thread.
class Agent {
public:
    inline static WorldModel* worldModel = nullptr;
    inline static Communicator* communicator = nullptr;
    inline static Effectors* effectors = nullptr;
    inline static Sensors* sensors = nullptr;

    /// Opens the link and introduces the player to the server.
    Agent(char const* host, int port, char const* teamname, bool goalie);

    /// Integrates, decides and acts whenever there is news; returns when the server has fallen
    /// silent.
    static void run();

    /// Runs both behaviours once. For trials by hand.
    static void test();

private:
    /// Integrates what is new; decides when a sense_body or a see was among it.
    static void integrateAndDecide();
    /// Whether a sense_body was among what is new.
    static bool startCycle();
    /// The loop of run() on a server in synchronous mode.
    static void runSynchronously();
};
