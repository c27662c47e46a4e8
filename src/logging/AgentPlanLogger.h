#pragma once

#include <fstream>

class WorldModel;

/// Writes what an agent is about as drawing records, for a viewer to lay over the match: a circle
/// where it believes itself to be, a line in its body's direction and a shorter one in its head's.
///
/// Created only when a match is to be studied, by `PlanLogs`. Without the directory "agentplanlog",
/// which is not made, or with a file that cannot be written, every call does nothing and says
/// nothing.
class AgentPlanLogger {
public:
    /// Takes the shirt number from the world model, so not before the server has told it.
    explicit AgentPlanLogger(WorldModel* wm);

    /// Opens "./agentplanlog/player<shirt number>.log", emptied.
    void openFile();
    /// Appends the three records of the present cycle and flushes.
    void writeAgentPlan();

private:
    WorldModel* worldModel_;
    std::ofstream file_;
    int number_;
};
