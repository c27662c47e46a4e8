#include "tests/support/AgentHarness.h"

#include <algorithm>

#include "practice/Parameters.h"
#include "sensing/Sensors.h"
#include "skills/SkillPool.h"
#include "skills/Utils.h"

namespace support {

AgentHarness::AgentHarness(bool goalie, char const* team, Communicator* link)
    : effectors(link, world.situation().commandHistory, world.queuedCommands()) {
    world.setGoalie(goalie);
    world.setTeamname(team);
    // Registers its handlers once. It keeps the first agent's link; any does, they share one
    // socket.
    static Sensors const sensors(link, team);
    Sensors::parser.teamName = team;
    Sensors::newSenseBody = Sensors::newVisual = Sensors::newRefAudio = false;
    SkillPool::initialize(&world, &effectors);
    Utils::initialize(&world);
    receive(practice::serverParamMessage(3000));
    world.integrateSensorInfo();
}

void AgentHarness::receive(std::string_view message) {
    RCC_Memory::remove(Sensors::parser.parse(RCC_String(message)));
}

void AgentHarness::sense(std::string_view message) {
    receive(message);
    unsigned const waiting = Sensors::arrivals.claim();
    if ((waiting & Arrivals::SENSE_BODY) != 0) world.setTimeLastSB();
    if ((waiting & Arrivals::SEE) != 0) world.setTimeLastSee();
}

void AgentHarness::join(char side, int unum, std::string_view playMode) {
    receive("(init " + std::string(1, side) + " " + std::to_string(unum) + " " +
            std::string(playMode) + ")");
    world.integrateSensorInfo();
    SkillPool::initializePositioning();
}

void AgentHarness::startCycle() {
    effectors.clearQueue();
    world.situation().commandHistory.reset();
    SkillPool::initializePositioning();
}

void AgentHarness::decide() {
    startCycle();
    if (world.isGoalie()) {
        SkillPool::goalieGeneralBehaviour();
    } else {
        SkillPool::fieldPlayerGeneralBehaviour();
    }
}

std::string AgentHarness::mainCommand() const {
    ServerCommands const& queue = effectors.commands();
    return queue.mainQueued ? queue.mainCommand.data() : "";
}

std::vector<std::string> AgentHarness::otherCommands() const {
    ServerCommands const& queue = effectors.commands();
    auto const number = queue.numberOfOthers.load();
    std::vector<std::string> texts(static_cast<std::size_t>(number));
    std::transform(queue.otherCommands.begin(), queue.otherCommands.begin() + number, texts.begin(),
                   [](auto const& text) { return text.data(); });
    return texts;
}

std::vector<std::string> AgentHarness::allCommands() const {
    std::vector<std::string> texts = otherCommands();
    if (std::string const main = mainCommand(); !main.empty()) texts.insert(texts.begin(), main);
    return texts;
}

void AgentHarness::placeMyself(float x, float y, float bodyDirection) {
    Myself& me = world.myself();
    me.position = Vector2D(x, y, CARTESIAN);
    me.velocity = Vector2D();
    me.bodyDirection = me.headDirection = bodyDirection;
    me.bodyInfo.stamina = 8000.0F;
    me.bodyInfo.effort = 1.0F;
    Player& mirror = world.situation().myTeam.players.front();
    mirror.position = me.position;
    mirror.velocity = me.velocity;
    mirror.bodyDirection = mirror.headDirection = bodyDirection;
}

void AgentHarness::placeBall(float x, float y, float vx, float vy) {
    world.ball().position = Vector2D(x, y, CARTESIAN);
    world.ball().velocity = Vector2D(vx, vy, CARTESIAN);
}

void AgentHarness::addTeammate(int unum, float x, float y) {
    world.situation().myTeam.players.emplace_back(Vector2D(x, y, CARTESIAN), Vector2D(), 0.0F, 0.0F,
                                                  unum, false, false);
}

void AgentHarness::addOpponent(int unum, float x, float y, bool goalie) {
    world.situation().theirTeam.players.emplace_back(Vector2D(x, y, CARTESIAN), Vector2D(), 0.0F,
                                                     0.0F, unum, goalie, true);
}

} // namespace support
