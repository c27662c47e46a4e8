#include "practice/Referee.h"

#include <cmath>

#include "practice/Parameters.h"
#include "practice/Placement.h"
#include "practice/Text.h"

namespace practice {

namespace {

constexpr int goalStoppage = 50;
constexpr int offenceStoppage = 30;
constexpr int offenceClearing = 5; // the last steps of the stoppage, when opponents must make room
constexpr int dropBallSteps = static_cast<int>(parameter("dropBallTime"));
constexpr double freeCircle = parameter("offsideKickMargin") + playerSize;
constexpr double stuckRadius = 3.0;
constexpr double goalLine = pitchHalfLength + ballSize; // the ball is fully over
constexpr double touchLine = pitchHalfWidth + ballSize;

Side sideOfHalf(double x) {
    return x < 0.0 ? Side::left : Side::right;
}

// In these the ball may go to anybody, wherever he stands.
bool isFreeOfOffside(PlayMode mode) {
    return mode == Phase::goalKick || mode == Phase::kickIn || mode == Phase::cornerKick;
}

} // namespace

Referee::Referee(World& world, Random& random, const KickOffRule& rule, Announce announce)
    : world_(world), random_(random), rule_(rule), announce_(std::move(announce)) {}

// ---- Decisions

void Referee::changeMode(PlayMode mode) {
    world_.mode = mode;
    stepsInMode_ = 0;
    if (mode != Phase::goal) announce_(mode.word());
}

void Referee::forgetPlay() {
    lastTouch_ = Side::none;
    taker_ = lastKicker_ = kickerBefore_ = nobody;
    indirect_ = false;
    offside_.clear();
    stuckSteps_ = 0;
}

void Referee::placeBall(Vec spot) {
    forgetPlay();
    world_.ballHolder = nobody;
    world_.ball.pos = spot;
    world_.ball.halt();
}

void Referee::startSetPiece(PlayMode mode, Vec spot) {
    placeBall(spot);
    changeMode(mode);
    bringBackFromOutside(world_);
    keepDistance();
}

void Referee::startHalf() {
    for (Player& p : world_.players)
        p.restoreStamina();
    startSetPiece({Phase::kickOff, half_ == 1 ? Side::left : Side::right}, {});
}

void Referee::dropBall() {
    Vec spot = cutToPitch(world_.ball.pos);
    spot = outOfPenaltyArea(spot, sideOfHalf(spot.x));
    startSetPiece({Phase::dropBall}, spot);
    changeMode({Phase::playOn});
}

void Referee::startOffence(PlayMode mode, Vec spot) {
    placeBall(spot);
    changeMode(mode);
    bringBackFromOutside(world_);
}

void Referee::callOffside(int id) {
    const Offside::Mark mark = *offside_.mark(id);
    offsideLine_ = mark.line;
    startOffence({Phase::offside, world_.player(id).side}, mark.spot);
}

void Referee::callFreeKickFault(int id) {
    const Side side = world_.player(id).side;
    startOffence({Phase::freeKickFault, side}, outOfPenaltyArea(cutToPitch(world_.ball.pos), side));
}

void Referee::scoreGoal(Side side) {
    int& goals = world_.score[static_cast<std::size_t>(index(side))];
    ++goals;
    announce_(text("goal_", letter(side), '_', goals));
    placeBall(world_.ball.pos);
    changeMode({Phase::goal, side});
}

// ---- Kicks, touches and catches

bool Referee::allowsKick() const {
    return world_.mode == Phase::playOn || world_.mode.isSetPiece();
}

bool Referee::isSecondTouch(int id) const {
    return id == taker_ && world_.player(id).counts.dash > takerDashes_;
}

bool Referee::isBackPassTo(int id) const {
    if (lastKicker_ == nobody) return false;
    const Side side = world_.player(id).side;
    if (lastKicker_ != id) return world_.player(lastKicker_).side == side;
    return kickerBefore_ == nobody || world_.player(kickerBefore_).side == side;
}

void Referee::noteKicker(int id) {
    const Side side = world_.player(id).side;
    kickedThisCycle_[static_cast<std::size_t>(index(side))] = true;
    if (kickedThisCycle_[0] && kickedThisCycle_[1]) {
        lastKicker_ = kickerBefore_ = nobody;
    } else if (id != lastKicker_) {
        kickerBefore_ = lastKicker_;
        lastKicker_ = id;
    }
}

bool Referee::played(int id) {
    if (world_.mode == Phase::goalKick && world_.player(id).side != world_.mode.side) {
        startSetPiece(world_.mode, goalKickSpot(world_.ball.pos));
        return false;
    }
    if (offside_.mark(id)) {
        callOffside(id);
        return false;
    }
    if (isSecondTouch(id)) {
        callFreeKickFault(id);
        return false;
    }
    if (id != taker_) {
        taker_ = nobody;
        indirect_ = false;
    }
    lastTouch_ = world_.player(id).side;
    if (isFreeOfOffside(world_.mode)) {
        offside_.clear();
    } else {
        offside_.markTeamMatesOf(world_, id);
    }
    return true;
}

void Referee::take(int id) {
    taker_ = id;
    takerDashes_ = world_.player(id).counts.dash;
    indirect_ = world_.mode == Phase::indirectFreeKick;
    world_.ballHolder = nobody;
    if (world_.mode != Phase::goalKick) changeMode({Phase::playOn});
}

void Referee::kicked(int id) {
    if (!played(id)) return;
    noteKicker(id);
    if (world_.mode.isSetPiece()) take(id);
}

void Referee::touched(int id) {
    const bool ballIsFree =
        world_.mode == Phase::playOn || (world_.mode == Phase::goalKick && taker_ != nobody);
    if (ballIsFree) played(id);
}

void Referee::triedToKick(int id) {
    if (world_.mode != Phase::playOn || !offside_.mark(id)) return;
    const double gap = distance(world_.player(id).pos, world_.ball.pos);
    if (gap <= parameter("offsideArea")) callOffside(id);
}

void Referee::caught(int id) {
    Player& goalie = world_.player(id);
    const Vec spot = outOfGoalArea(cutToPitch(world_.ball.pos), goalie.side);
    announce_(text("goalie_catch_ball_", letter(goalie.side)));
    if (!isInPenaltyArea(world_.ball.pos, goalie.side)) {
        startOffence({Phase::catchFault, goalie.side}, spot);
    } else if (isBackPassTo(id)) {
        startOffence({Phase::backPass, goalie.side}, spot);
    } else {
        startSetPiece({Phase::freeKick, goalie.side}, world_.ball.pos);
        world_.ballHolder = id;
        goalie.goalieMoves = 0;
    }
}

// ---- The step

void Referee::step(Vec ballBefore, const std::vector<int>& touchers) {
    kickedThisCycle_ = {};
    ++stepsInMode_;
    if (!world_.mode.isStopped()) ++world_.cycle;
    for (const int id : touchers)
        touched(id);
    if (world_.mode == Phase::goal || world_.mode.isOffence()) runStoppage();
    const bool inPlay = !world_.mode.isStopped();
    if (inPlay && !world_.anybodyActive()) {
        announce_("time_up_without_a_team");
        changeMode({Phase::timeOver});
    } else if (inPlay && world_.cycle >= half_ * world_.halfCycles) {
        endHalf();
    } else if (world_.mode == Phase::beforeKickOff) {
        sendToOwnHalf(world_, &random_);
        clearCircle(world_, half_ == 1 ? Side::right : Side::left, {}, freeCircle);
    } else {
        if (world_.mode.isSetPiece()) superviseSetPiece();
        if (world_.mode == Phase::playOn) watchBall(ballBefore);
    }
}

void Referee::endHalf() {
    if (half_ == 2) {
        announce_("time_up");
        changeMode({Phase::timeOver});
        return;
    }
    half_ = 2;
    readySteps_ = 0;
    announce_("half_time");
    placeBall({});
    changeMode({Phase::beforeKickOff});
}

void Referee::runStoppage() {
    const int length = world_.mode == Phase::goal ? goalStoppage : offenceStoppage;
    if (stepsInMode_ > length) {
        endStoppage();
    } else if (world_.mode == Phase::goal) {
        return;
    } else if (world_.mode == Phase::offside) {
        clearBeyondOffsideLine(world_, world_.mode.side, offsideLine_);
    }
    if (stepsInMode_ > length - offenceClearing) keepDistance();
}

// The word still carries the time of the stoppage, the sense_body of the step the next one.
void Referee::endStoppage() {
    const Side side = other(world_.mode.side);
    const Vec spot = world_.ball.pos;
    if (world_.mode == Phase::goal) {
        startSetPiece({Phase::kickOff, side}, {});
    } else if (world_.mode == Phase::backPass) {
        startSetPiece({Phase::indirectFreeKick, side}, spot);
    } else {
        startSetPiece({Phase::freeKick, side}, spot);
    }
    ++world_.cycle;
}

void Referee::superviseSetPiece() {
    if (world_.mode == Phase::goalKick) {
        superviseGoalKick();
    } else if (world_.ball.vel != Vec{}) {
        changeMode({Phase::playOn});
        return;
    }
    const int holder = world_.ballHolder;
    if (!world_.mode.isSetPiece()) return;
    if (holder != nobody && !isInPenaltyArea(world_.ball.pos, world_.player(holder).side)) {
        const Side side = world_.player(holder).side;
        startOffence({Phase::catchFault, side}, outOfGoalArea(cutToPitch(world_.ball.pos), side));
    } else if (stepsInMode_ >= dropBallSteps) {
        dropBall();
    } else {
        keepDistance();
    }
}

void Referee::superviseGoalKick() {
    if (!isInPenaltyArea(world_.ball.pos, world_.mode.side, ballSize)) changeMode({Phase::playOn});
}

void Referee::keepDistance() {
    const PlayMode mode = world_.mode;
    const Vec ball = world_.ball.pos;
    const Side away = mode.isOffence() ? mode.side : other(mode.side);
    if (mode == Phase::dropBall) {
        clearCircle(world_, Side::none, ball, freeCircle);
    } else if (mode == Phase::kickOff) {
        sendToOwnHalf(world_);
        clearCircle(world_, away, ball, freeCircle);
    } else if (mode == Phase::goalKick) {
        clearPenaltyArea(world_, mode.side);
    } else if (mode == Phase::indirectFreeKick || mode == Phase::backPass) {
        clearCircleButGoalLine(world_, away, ball, freeCircle);
    } else {
        clearCircle(world_, away, ball, freeCircle);
    }
}

void Referee::watchBall(Vec before) {
    const Vec ball = world_.ball.pos;
    if (std::abs(ball.x) > goalLine) {
        ballOverGoalLine(before);
    } else if (std::abs(ball.y) > touchLine) {
        if (lastTouch_ == Side::none) return dropBall();
        startSetPiece({Phase::kickIn, other(lastTouch_)}, cutToPitch(ball));
    } else if (isBallStuck()) {
        dropBall();
    }
}

void Referee::ballOverGoalLine(Vec before) {
    const Vec ball = world_.ball.pos;
    const Side defender = sideOfHalf(ball.x);
    if (crossedBetweenPosts(before) && !indirect_) {
        scoreGoal(other(defender));
    } else if (lastTouch_ == defender) {
        startSetPiece({Phase::cornerKick, other(defender)}, cornerSpot(ball));
    } else {
        startSetPiece({Phase::goalKick, defender}, goalKickSpot(ball));
    }
}

bool Referee::crossedBetweenPosts(Vec before) const {
    const Vec ball = world_.ball.pos;
    const double from = std::abs(before.x);
    const double to = std::abs(ball.x);
    if (from > goalLine) return false;
    const double share = (goalLine - from) / (to - from);
    const double y = before.y + (ball.y - before.y) * share;
    return std::abs(y) <= goalHalfWidth + postRadius;
}

bool Referee::isBallStuck() {
    if (stuckSteps_ == 0 || distance(world_.ball.pos, stuckSpot_) > stuckRadius) {
        stuckSpot_ = world_.ball.pos;
        stuckSteps_ = 0;
    }
    return ++stuckSteps_ > dropBallSteps;
}

void Referee::startWhenReady() {
    if (world_.mode != Phase::beforeKickOff) return;
    const int joined = world_.joinedCount();
    if (joined > 0) ++waitedSteps_;
    if (half_ == 2 || joined >= rule_.players) ++readySteps_;
    const bool waitedEnough = half_ == 1 && joined > 0 && waitedSteps_ >= rule_.waitSteps;
    if (waitedEnough || readySteps_ > rule_.readySteps) startHalf();
}

} // namespace practice
