#include "practice/Referee.h"

#include <cmath>

#include "practice/Parameters.h"
#include "practice/Text.h"

namespace practice {

namespace {

constexpr int GOAL_STOPPAGE = 50;
constexpr int OFFENCE_STOPPAGE = 30;
constexpr int OFFENCE_CLEARING =
    5; ///< the last steps of the stoppage, when opponents must make room
constexpr int DROP_BALL_STEPS = wholeParameter("dropBallTime");
constexpr double FREE_CIRCLE = parameter("offsideKickMargin") + PLAYER_SIZE;
constexpr double GOAL_LINE = PITCH_HALF_LENGTH + BALL_SIZE; ///< the ball is fully over
constexpr double TOUCH_LINE = PITCH_HALF_WIDTH + BALL_SIZE;

Side sideOfHalf(double x) {
    return x < 0.0 ? Side::left : Side::right;
}

/// Whether nobody can be offside when the ball is played from this set piece.
bool isFreeOfOffside(PlayMode mode) {
    return mode == Phase::goalKick || mode == Phase::kickIn || mode == Phase::cornerKick;
}

/// What the other side gets after a goal or an offence.
Phase restartAfter(PlayMode mode) {
    if (mode == Phase::goal) return Phase::kickOff;
    return mode == Phase::backPass ? Phase::indirectFreeKick : Phase::freeKick;
}

bool crossedBetweenPosts(Vec before, Vec ball) {
    double const from = std::abs(before.x);
    if (from > GOAL_LINE) return false;
    double const share = (GOAL_LINE - from) / (std::abs(ball.x) - from);
    return std::abs(before.y + (ball.y - before.y) * share) <= GOAL_HALF_WIDTH + POST_RADIUS;
}

} // namespace

Referee::Referee(World& world, Random& random, KickOffRule const& rule, Announce announce)
    : world_(world), random_(random), rule_(rule), announce_(std::move(announce)) {}

// ---- Decisions

void Referee::changeMode(PlayMode mode) {
    world_.mode = mode;
    stepsInMode_ = 0;
    if (mode != Phase::goal) announce_(mode.word());
}

void Referee::placeBall(Vec spot) {
    play_ = {};
    world_.ballHolder = NOBODY;
    world_.ball.pos = spot;
    world_.ball.halt();
}

/// A set piece or an offence; the opponents of an offender make room later.
void Referee::interrupt(PlayMode mode, Vec spot) {
    placeBall(spot);
    changeMode(mode);
    bringBackFromOutside(world_);
    if (!mode.isOffence()) keepDistance();
}

void Referee::dropBall() {
    Vec const spot = cutToPitch(world_.ball.pos);
    interrupt({Phase::dropBall}, outOfPenaltyArea(spot, sideOfHalf(spot.x)));
    changeMode({Phase::playOn});
}

void Referee::callFoul(Vec spot, Side side) {
    if (world_.mode == Phase::beforeKickOff || world_.mode == Phase::timeOver) return;
    world_.ball.pos = cutToPitch(spot);
    if (side == Side::none) return dropBall();
    announce_(text("foul_", letter(other(side))));
    interrupt({Phase::freeKick, side}, outOfPenaltyArea(world_.ball.pos, other(side)));
}

void Referee::setMode(PlayMode mode) {
    Vec const ball = world_.ball.pos;
    readySteps_ = 0;
    offsideLine_ = ball.x * sign(mode.side);
    if (mode == Phase::dropBall) return dropBall();
    if (mode.isSetPiece() || mode.isOffence()) return interrupt(mode, ball);
    if (mode == Phase::playOn) {
        play_ = {};
        world_.ballHolder = NOBODY;
    } else {
        placeBall(ball);
    }
    changeMode(mode);
    if (mode == Phase::goal) announce_(mode.word()); // which nobody does after a goal
}

void Referee::callOffside(int id) {
    OffsideMark const mark = *play_.offside[id];
    offsideLine_ = mark.line;
    interrupt({Phase::offside, world_.player(id).side}, mark.spot);
}

void Referee::callCatchFault(Side side) {
    interrupt({Phase::catchFault, side}, outOfGoalArea(cutToPitch(world_.ball.pos), side));
}

// ---- Kicks, touches and catches

bool Referee::allowsKick() const {
    return world_.mode == Phase::playOn || world_.mode.isSetPiece();
}

bool Referee::isBackPassTo(int id) const {
    Side const side = world_.player(id).side;
    int const from = play_.lastKicker == id ? play_.kickerBefore : play_.lastKicker;
    if (from == NOBODY) return play_.lastKicker != NOBODY;
    return world_.player(from).side == side;
}

/// The rules that hold for kicks and touches alike; false when one of them stopped the game.
bool Referee::played(int id) {
    Player& p = world_.player(id);
    bool const secondTouch = id == play_.taker && p.counts.dash > play_.takerDashes;
    if (world_.mode == Phase::goalKick && p.side != world_.mode.side) {
        interrupt(world_.mode, goalKickSpot(world_.ball.pos));
    } else if (play_.offside[id]) {
        callOffside(id);
    } else if (secondTouch) {
        Vec const spot = outOfPenaltyArea(cutToPitch(world_.ball.pos), p.side);
        p.marks |= gamelog::state::FREE_KICK_FAULT;
        interrupt({Phase::freeKickFault, p.side}, spot);
    } else {
        play_.indirect = play_.indirect && id == play_.taker;
        if (id != play_.taker) play_.taker = NOBODY;
        play_.lastTouch = p.side;
        play_.offside = isFreeOfOffside(world_.mode) ? OffsideMarks{} : offsideMarks(world_, id);
        return true;
    }
    return false;
}

void Referee::kicked(int id) {
    if (!played(id)) return;
    kickedThisCycle_[index(world_.player(id).side)] = true;
    if (kickedThisCycle_[0] && kickedThisCycle_[1]) {
        play_.lastKicker = play_.kickerBefore = NOBODY;
    } else if (id != play_.lastKicker) {
        play_.kickerBefore = std::exchange(play_.lastKicker, id);
    }
    if (world_.mode.isSetPiece()) take(id);
}

void Referee::take(int id) {
    play_.taker = id;
    play_.takerDashes = world_.player(id).counts.dash;
    play_.indirect = world_.mode == Phase::indirectFreeKick;
    world_.ballHolder = NOBODY;
    if (world_.mode != Phase::goalKick) changeMode({Phase::playOn});
}

void Referee::triedToKick(int id) {
    double const gap = distance(world_.player(id).pos, world_.ball.pos);
    bool const disturbs = play_.offside[id] && gap <= parameter("offsideArea");
    if (world_.mode == Phase::playOn && disturbs) callOffside(id);
}

void Referee::caught(int id) {
    Vec const ball = world_.ball.pos;
    Side const side = world_.player(id).side;
    announce_(text("goalie_catch_ball_", letter(side)));
    if (!isInPenaltyArea(ball, side)) return callCatchFault(side);
    if (isBackPassTo(id)) {
        world_.player(id).marks |= gamelog::state::BACK_PASS;
        return interrupt({Phase::backPass, side}, outOfGoalArea(cutToPitch(ball), side));
    }
    interrupt({Phase::freeKick, side}, ball);
    world_.ballHolder = id;
    world_.player(id).goalieMoves = 0;
}

// ---- The step

void Referee::step(Vec ballBefore, std::span<int const> touchers) {
    kickedThisCycle_ = {};
    ++stepsInMode_;
    if (world_.mode.isStopped()) {
        ++world_.stoppedSteps;
    } else {
        advanceClock();
    }
    for (int const id : touchers) { // a ball that waits to be kicked touches nobody
        if (world_.mode == Phase::playOn || play_.taker != NOBODY) played(id);
    }
    if (world_.mode == Phase::goal || world_.mode.isOffence()) runStoppage();
    bool const inPlay = !world_.mode.isStopped();
    if (inPlay && !world_.anybodyActive()) {
        announce_("time_up_without_a_team");
        changeMode({Phase::timeOver});
    } else if (inPlay && world_.cycle >= half_ * world_.halfCycles) {
        endHalf();
    } else if (world_.mode == Phase::beforeKickOff && isInGoal(world_.ball.pos)) {
        goalOf(other(sideOfHalf(world_.ball.pos.x))); // only a trainer puts it there
    } else if (world_.mode == Phase::beforeKickOff) {
        sendToOwnHalf(world_, &random_);
        clearBall(world_, half_ == 1 ? Side::right : Side::left, FREE_CIRCLE);
    } else {
        if (world_.mode.isSetPiece()) superviseSetPiece();
        if (world_.mode == Phase::playOn) watchBall(ballBefore);
    }
}

void Referee::advanceClock() {
    ++world_.cycle;
    world_.stoppedSteps = 0;
}

void Referee::endHalf() {
    announce_(half_ == 1 ? "half_time" : "time_up");
    if (half_ == 1) placeBall({});
    changeMode({half_ == 1 ? Phase::beforeKickOff : Phase::timeOver});
    half_ = 2;
    readySteps_ = 0;
}

void Referee::runStoppage() {
    PlayMode const mode = world_.mode;
    int const length = mode == Phase::goal ? GOAL_STOPPAGE : OFFENCE_STOPPAGE;
    if (stepsInMode_ > length) {
        interrupt({restartAfter(mode), other(mode.side)},
                  mode == Phase::goal ? Vec{} : world_.ball.pos);
        advanceClock(); // the word still carries the time of the stoppage
        return;
    }
    if (mode == Phase::offside) clearBeyondOffsideLine(world_, mode.side, offsideLine_);
    if (mode.isOffence() && stepsInMode_ > length - OFFENCE_CLEARING) keepDistance();
}

void Referee::superviseSetPiece() {
    Vec const ball = world_.ball.pos;
    PlayMode const mode = world_.mode;
    int const holder = world_.ballHolder;
    bool const taken = mode == Phase::goalKick ? !isInPenaltyArea(ball, mode.side, BALL_SIZE)
                                               : world_.ball.vel != Vec{};
    if (taken) {
        changeMode({Phase::playOn});
    } else if (holder != NOBODY && !isInPenaltyArea(ball, world_.player(holder).side)) {
        callCatchFault(world_.player(holder).side);
    } else if (stepsInMode_ >= DROP_BALL_STEPS) {
        dropBall();
    } else {
        keepDistance();
    }
}

void Referee::keepDistance() {
    PlayMode const mode = world_.mode;
    if (mode == Phase::goalKick) return clearPenaltyArea(world_, mode.side);
    if (mode == Phase::dropBall) return clearBall(world_, Side::none, FREE_CIRCLE);
    if (mode == Phase::kickOff) sendToOwnHalf(world_);
    bool const indirect = mode == Phase::indirectFreeKick || mode == Phase::backPass;
    clearBall(world_, mode.isOffence() ? mode.side : other(mode.side), FREE_CIRCLE, indirect);
}

void Referee::watchBall(Vec before) {
    Vec const ball = world_.ball.pos;
    if (std::abs(ball.x) > GOAL_LINE) {
        ballOverGoalLine(before);
    } else if (std::abs(ball.y) > TOUCH_LINE) {
        if (play_.lastTouch == Side::none) return dropBall();
        interrupt({Phase::kickIn, other(play_.lastTouch)}, cutToPitch(ball));
    } else if (isBallStuck()) {
        dropBall();
    }
}

void Referee::ballOverGoalLine(Vec before) {
    Vec const ball = world_.ball.pos;
    Side const defender = sideOfHalf(ball.x);
    Side const attacker = other(defender);
    if (crossedBetweenPosts(before, ball) && !play_.indirect) {
        goalOf(attacker);
    } else if (play_.lastTouch == defender) {
        interrupt({Phase::cornerKick, attacker}, cornerSpot(ball));
    } else {
        interrupt({Phase::goalKick, defender}, goalKickSpot(ball));
    }
}

void Referee::goalOf(Side attacker) {
    announce_(text("goal_", letter(attacker), '_', ++world_.score[index(attacker)]));
    placeBall(world_.ball.pos);
    changeMode({Phase::goal, attacker});
}

bool Referee::isBallStuck() {
    if (play_.stuckSteps == 0 || distance(world_.ball.pos, play_.stuckSpot) > BALL_STUCK_RADIUS) {
        play_.stuckSpot = world_.ball.pos;
        play_.stuckSteps = 0;
    }
    return ++play_.stuckSteps > DROP_BALL_STEPS;
}

void Referee::startWhenReady() {
    if (world_.mode != Phase::beforeKickOff) return;
    long const joined = world_.joinedCount();
    if (joined > 0) ++waitedSteps_;
    if (half_ == 2 || joined >= rule_.players) ++readySteps_;
    bool const waitedEnough = half_ == 1 && joined > 0 && waitedSteps_ >= rule_.waitSteps;
    if (waitedEnough || readySteps_ > rule_.readySteps) kickOff();
}

void Referee::kickOff() {
    if (world_.mode != Phase::beforeKickOff) return;
    for (Player& p : world_.players) {
        p.restoreStamina();
    }
    interrupt({Phase::kickOff, half_ == 1 ? Side::left : Side::right}, {});
}

} // namespace practice
