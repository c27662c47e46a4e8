#include "practice/Shows.h"

#include "practice/Text.h"

namespace practice {

namespace {

using LogMode = gamelog::PlayMode;

/// In the order of Phase; of a pair the mode for the left side.
constexpr std::array MODES = {
    LogMode::beforeKickOff,
    LogMode::playOn,
    LogMode::timeOver,
    LogMode::dropBall,
    LogMode::pause,
    LogMode::humanJudge,
    LogMode::firstHalfOver,
    LogMode::penaltyKickLeft,
    LogMode::penaltySetupLeft,
    LogMode::penaltyReadyLeft,
    LogMode::penaltyTakenLeft,
    LogMode::penaltyMissLeft,
    LogMode::penaltyScoreLeft,
    LogMode::kickOffLeft,
    LogMode::kickInLeft,
    LogMode::freeKickLeft,
    LogMode::indirectFreeKickLeft,
    LogMode::cornerKickLeft,
    LogMode::goalKickLeft,
    LogMode::goalLeft,
    LogMode::offsideLeft,
    LogMode::backPassLeft,
    LogMode::freeKickFaultLeft,
    LogMode::catchFaultLeft,
    LogMode::foulChargeLeft,
    LogMode::foulPushLeft,
    LogMode::foulMultipleAttackLeft,
    LogMode::foulBalloutLeft,
    LogMode::illegalDefenseLeft,
};

std::uint32_t stateOf(Player const& p) {
    if (p.discarded) return gamelog::state::DISCARDED;
    if (!p.active) return 0;
    return gamelog::state::ON_FIELD | (p.goalie ? gamelog::state::GOALIE : 0U) | p.marks;
}

std::array<int, gamelog::COUNTS> countsOf(Counts const& n) {
    return {n.kick, n.dash, n.turn, n.catches, n.move, n.turnNeck, n.changeView, n.say};
}

void fill(gamelog::Player& out, Player const& p) {
    constexpr std::array<double, 3> WIDTHS{45.0, 90.0, 180.0};
    out.state = stateOf(p);
    Vec const pos = p.active ? p.pos : touchlinePlace(p);
    Vec const vel = p.active ? p.vel : Vec{};
    out.x = pos.x;
    out.y = pos.y;
    out.vx = vel.x;
    out.vy = vel.y;
    out.body = toDeg(p.body);
    out.neck = toDeg(p.neck);
    out.highQuality = p.view.quality == Quality::high;
    out.viewWidth = WIDTHS[static_cast<std::size_t>(p.view.width)];
    out.stamina = p.stamina;
    out.effort = p.effort;
    out.recovery = p.recovery;
    out.capacity = p.capacity;
    out.counts = countsOf(p.counts);
}

std::string const& nameOf(World const& world, Side side) {
    static std::string const absent = "null";
    std::string const& name = world.teamName(side);
    return name.empty() ? absent : name;
}

/// A team without players has no goals to tell.
std::string nameAndGoals(World const& world, Side side) {
    std::string const& name = nameOf(world, side);
    return world.teamName(side).empty() ? name : text(name, '_', world.goals(side));
}

} // namespace

gamelog::PlayMode logMode(PlayMode mode) {
    LogMode const left = MODES[static_cast<std::size_t>(mode.phase)];
    return mode.side == Side::right ? gamelog::forSide(left, gamelog::Side::right) : left;
}

gamelog::Score scoreOf(World const& world) {
    return {
        nameOf(world, Side::left), nameOf(world, Side::right), world.score[0], world.score[1], {}};
}

std::string resultName(World const& world) {
    return text(nameAndGoals(world, Side::left), "-vs-", nameAndGoals(world, Side::right));
}

void fillShow(gamelog::Show& show, World const& world) {
    show.time = world.cycle;
    show.ball = {world.ball.pos.x, world.ball.pos.y, world.ball.vel.x, world.ball.vel.y};
    for (std::size_t i = 0; i < world.players.size(); ++i) {
        fill(show.players[i], world.players.at(i));
    }
}

} // namespace practice
