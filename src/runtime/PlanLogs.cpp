#include "runtime/PlanLogs.h"

#include <cstdlib>
#include <sys/stat.h>

#include "logging/AgentPlanLogger.h"
#include "logging/BeliefLogger.h"
#include "worldmodel/WorldModel.h"

namespace {

bool isSet(char const* variable) {
    char const* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

} // namespace

PlanLogs::PlanLogs() : wanted_(isSet("AGENT_PLAN_LOG")) {}

PlanLogs::~PlanLogs() = default;

void PlanLogs::open(WorldModel& world) {
    mkdir("agentplanlog", 0777); // most often another player of the team has made it
    plan_ = std::make_unique<AgentPlanLogger>(&world);
    beliefs_ = std::make_unique<BeliefLogger>(world);
}

void PlanLogs::write(WorldModel& world, char const* takenCase) {
    if (!wanted_ || world.myself().unum == 0) return;
    if (!plan_) open(world);
    plan_->writeAgentPlan();
    beliefs_->write(takenCase);
}
