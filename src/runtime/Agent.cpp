#include "runtime/Agent.h"

#include <poll.h>

#include "link/Communicator.h"
#include "link/Effectors.h"
#include "runtime/PlanLogs.h"
#include "runtime/SenseThread.h"
#include "sensing/Sensors.h"
#include "skills/SkillPool.h"
#include "skills/Utils.h"
#include "worldmodel/WorldModel.h"

bool serverAlive = true;

// The parts are never deleted: threads and signal handlers use them until the process is gone.
Agent::Agent(char const* host, int port, char const* teamname, bool goalie) {
    worldModel = new WorldModel();
    worldModel->setGoalie(goalie);
    worldModel->setTeamname(teamname);
    communicator = new Communicator(host, port);
    effectors = new Effectors(communicator, worldModel->situation().commandHistory,
                              worldModel->queuedCommands());
    sensors = new Sensors(communicator, teamname);
    SkillPool::initialize(worldModel, effectors);
    Utils::initialize(worldModel);
    effectors->init(teamname, goalie);
}

void Agent::run() {
    constexpr int FIRST_MESSAGES_MSEC = 100;
    poll(nullptr, 0, FIRST_MESSAGES_MSEC);
    worldModel->integrateSensorInfo();
    SkillPool::initializePositioning();

    while (serverAlive) {
        bool const isSynchronous = SenseThread::hasHandedOver();
        integrateAndDecide();
        if (isSynchronous) return runSynchronously();
        if (!worldModel->waitForNewInfo()) serverAlive = false;
    }
}

void Agent::integrateAndDecide() {
    static ArmedTimer timerOfCycle;
    ArmedTimer const timer = SenseThread::timer();
    if (!worldModel->integrateSensorInfo()) return;
    if (startCycle()) timerOfCycle = timer;
    if (worldModel->isGoalie()) {
        SkillPool::goalieGeneralBehaviour();
    } else {
        SkillPool::fieldPlayerGeneralBehaviour();
    }
    static PlanLogs planLogs;
    planLogs.write(*worldModel, SkillPool::takenCase());
    // With the see of the cycle there is nothing more to wait for. Else the timer sends, or a
    // server that waits asks for it.
    if (worldModel->seeIsNewerThanSenseBody()) {
        effectors->sendAllCommands();
        SenseThread::callTimerOff(timerOfCycle);
    }
}

void Agent::runSynchronously() {
    do {
        integrateAndDecide();
        if (Sensors::newThink.exchange(false)) effectors->answerThink();
    } while (SenseThread::receiveForMain());
    serverAlive = false;
}

bool Agent::startCycle() {
    // First the queue, then the permission: nothing of the last cycle may leave under it.
    effectors->clearQueue();
    worldModel->situation().commandHistory.reset();
    bool const isNew = worldModel->takeSenseBodyArrived();
    if (isNew) effectors->grantSend();
    // The init reply may have come late; after that this is a few copies.
    SkillPool::initializePositioning();
    return isNew;
}

void Agent::test() {
    SkillPool::goalieGeneralBehaviour();
    SkillPool::fieldPlayerGeneralBehaviour();
}
