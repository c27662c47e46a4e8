// Telling the team-mates about the ball, and asking for sees at a good moment.

#include "skills/SkillPool.h"

#include <array>
#include <cmath>

#include "config/ConfigFile.h"
#include "geometry/Numbers.h"
#include "link/Effectors.h"
#include "worldmodel/SayAlphabet.h"
#include "worldmodel/Timeval.h"
#include "worldmodel/WorldModel.h"

namespace {

char signOf(float v) {
    return v < 0.0F ? 'y' : 'x';
}

} // namespace

char SkillPool::do_ascii(float v) {
    return SayAlphabet::symbolOf(truncateToInt(std::abs(v)));
}

float SkillPool::fit_do_ascii(float v) {
    return 20.0F * v;
}

void SkillPool::reportWorldModelStatus() {
    if (ball->position.isInvalid() || ConfigFile::sayID.empty()) return;
    Vector2D const p = ball->position;
    Vector2D const v = ball->velocity;
    std::array<char, 10> const message = {ConfigFile::sayID[0],
                                          signOf(p.x),
                                          do_ascii(p.x),
                                          signOf(p.y),
                                          do_ascii(p.y),
                                          signOf(v.x),
                                          do_ascii(fit_do_ascii(v.x)),
                                          signOf(v.y),
                                          do_ascii(fit_do_ascii(v.y)),
                                          '\0'};
    effectors->queueSay(message.data());
}

void SkillPool::reportIfClosestToBall() {
    // Only in a cycle that has had its see: a report of an older ball would mislead.
    if (worldModel->beingClosestTeamMateToBall() &&
        worldModel->currentTime() <= worldModel->cycleOfLastSee()) {
        reportWorldModelStatus();
    }
}

bool SkillPool::profileSeeTiming() {
    if (!worldModel->seeIsNewerThanSenseBody() || worldModel->haveOptimalSeeTimes()) return false;
    doSSProfiling();
    return true;
}

void SkillPool::doSSProfiling() {
    constexpr int RIGHT_AFTER_SENSE_BODY = 11; // milliseconds
    int const lateness = Timeval::diffMsec(worldModel->timeLastSee(), worldModel->timeLastSB());

    BodyInfo const& info = myself->bodyInfo;
    if (info.viewWidth == static_cast<int>(ViewMode::narrow) &&
        info.viewQuality == static_cast<int>(ViewQuality::low)) {
        effectors->queueChangeView(ViewMode::narrow, ViewQuality::low);
        return;
    }
    if (worldModel->seesSinceLastSB() == 1 && lateness < RIGHT_AFTER_SENSE_BODY) {
        effectors->sendCommandDirect("(change_view normal high)");
        worldModel->setSeeTimingSettled();
    }
}
