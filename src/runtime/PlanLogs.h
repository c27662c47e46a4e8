#pragma once

#include <memory>

class AgentPlanLogger;
class BeliefLogger;
class WorldModel;

/// The two logs of what an agent draws and believes, for study after the match. They exist only
/// when the environment variable AGENT_PLAN_LOG is set and not empty; without it every call does
/// nothing.
///
/// One, in the main loop; main thread.
class PlanLogs {
public:
    PlanLogs();
    ~PlanLogs();
    PlanLogs(PlanLogs const&) = delete;
    PlanLogs& operator=(PlanLogs const&) = delete;

    /// After a decision. The first call for which the agent knows its shirt number makes the folder
    /// "agentplanlog" and both files.
    void write(WorldModel& world, char const* takenCase);

private:
    void open(WorldModel& world);

    bool wanted_;
    std::unique_ptr<AgentPlanLogger> plan_;
    std::unique_ptr<BeliefLogger> beliefs_;
};
