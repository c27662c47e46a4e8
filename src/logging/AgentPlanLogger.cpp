#include "logging/AgentPlanLogger.h"

#include <string>

#include "geometry/Numbers.h"
#include "worldmodel/WorldModel.h"

AgentPlanLogger::AgentPlanLogger(WorldModel* wm) : worldModel_(wm), number_(wm->myself().unum) {
    openFile();
}

void AgentPlanLogger::openFile() {
    file_.close();
    file_.open("./agentplanlog/player" + std::to_string(number_) + ".log");
}

void AgentPlanLogger::writeAgentPlan() {
    if (!file_.is_open()) return;
    Myself const& me = worldModel_->myself();
    Vector2D const from = me.position;

    auto const startRecord = [&](char const* shape) -> std::ostream& {
        constexpr int LEVEL = 8; // the same for all that an agent draws
        return file_ << worldModel_->currentTime() << ' ' << number_ << ' ' << LEVEL << ' '
                     << shape;
    };
    auto const writeLine = [&](float length, float direction) {
        Vector2D const to = from + Vector2D(length, direction, POLAR);
        startRecord("line") << " (" << from.x << ',' << from.y << ") (" << to.x << ',' << to.y
                            << ")\n";
    };
    startRecord("ellipse") << " (" << from.x - 1 << ',' << from.y - 1 << ") 2 2\n";
    writeLine(1.5F, me.bodyDirection);
    writeLine(1.0F, static_cast<float>(truncateToInt(me.headDirection)));
    file_.flush();
}
