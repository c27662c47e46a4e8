// The decision of a field player for one cycle.

#include "skills/SkillPool.h"

#include <cstdlib>

#include "config/ConfigFile.h"
#include "geometry/Numbers.h"
#include "worldmodel/Situation.h"
#include "worldmodel/WorldModel.h"

namespace {

// Decisions spent in the current set piece, of which a cycle has one or more; reset in play on
// only.
int kickInMinDelay = 0;
int kickInScanDelay = 0;

constexpr Vector2D penShootPoint(40.0F, 0.0F, CARTESIAN);
constexpr Vector2D opponent_goal_mid = Field::OPP_GOAL_CENTER;

float walkPower() {
    static int const power = truncateToInt(ConfigFile::walkPower);
    return static_cast<float>(power);
}

/// One more cycle of a set piece of ours, with a pass that arrives at `endSpeed`.
bool prepareSetPiece(float endSpeed) {
    static int const passMinDelay = truncateToInt(ConfigFile::passMinDelay);
    static int const passScanDelay = truncateToInt(ConfigFile::passScanDelay);
    return SkillPool::performKickIn(true, passMinDelay, passScanDelay, endSpeed);
}

/// The field player whose home is nearest takes the set piece, the others take up their places.
/// What to do when nobody can be passed to is the fallback.
template <typename Fallback>
void setPiece(WorldModel const& world, float endSpeed, Fallback fallback) {
    if (!world.isMyHomePosClosestToPos(world.ball().position)) {
        SkillPool::take("keep_place");
        SkillPool::doPositioning();
        return;
    }
    SkillPool::take("walk_to_ball");
    if (!SkillPool::getBall(walkPower(), false, WALK_TO_BALL)) return;
    if (!SkillPool::faceOnlyBodyToPoint(opponent_goal_mid)) return;
    SkillPool::take("look_for_receiver");
    if (!prepareSetPiece(endSpeed)) fallback();
}

void clearTheBall() {
    SkillPool::take("clear");
    SkillPool::kickAway(false);
}

void shoot() {
    SkillPool::take("shoot");
    SkillPool::scoreGoal();
}

void kickOff(WorldModel const& world) {
    static Vector2D const opponent_rc = Field::landmark(Field::OPP_RIGHT_CORNER);
    static Vector2D const opponent_lc = Field::landmark(Field::OPP_LEFT_CORNER);
    SkillPool::take("kick_off");
    if (world.ball().position.isInvalid()) {
        SkillPool::scanFieldWithBody();
    } else if (world.beingClosestTeamMateToBall() &&
               SkillPool::getBall(walkPower(), false, WALK_TO_BALL)) {
        SkillPool::kickToPoint(random() % 2 == 0 ? opponent_rc : opponent_lc, SkillPool::FULL_POWER,
                               false);
    }
}

bool ourGoalieHasTheBall(WorldModel const& world) {
    Vector2D const ball = world.ball().position;
    Player const* const goalie = world.situation().myTeam.getGoalie();
    return goalie != nullptr && goalie->position.getDistanceTo(ball) < SkillPool::AT_HAND &&
           Field::OWN_PENALTY_AREA.isInside(ball);
}

void ourCornerKick(WorldModel const& world) {
    if (!world.isMyHomePosClosestToPos(world.ball().position)) {
        SkillPool::take("corner_place");
        if (SkillPool::goToPositionOurCKick()) SkillPool::faceNeckAndBodyToBall();
        return;
    }
    SkillPool::take("walk_to_ball");
    if (!SkillPool::getBall(walkPower(), false, WALK_TO_BALL)) return;
    if (!SkillPool::faceOnlyBodyToPoint(penShootPoint)) return;
    SkillPool::take("take_corner");
    if (!prepareSetPiece(SkillPool::LONG_PASS_END_SPEED)) {
        SkillPool::kickToPoint(penShootPoint, SkillPool::FULL_POWER, false);
    }
}

} // namespace

void SkillPool::fieldPlayerGeneralBehaviour() {
    take("none");
    switch (worldModel->situation().playMode) {
    case PM_BEFORE_KICK_OFF:
        take("settle_sees");
        if (profileSeeTiming()) return; // the whole cycle, without a report
        take("initial_place");
        if (!takeInitialPosition()) break;
        if (ball->position.isInvalid()) {
            scanFieldWithBody();
        } else {
            faceNeckAndBodyToBall();
        }
        break;
    case PM_PLAY_ON:
        kickInMinDelay = 0;
        kickInScanDelay = 0;
        playOnBehavior();
        break;
    case PM_OUR_KICK_OFF:
        kickOff(*worldModel);
        break;
    case PM_THEIR_KICK_OFF:
        take("initial_place");
        if (takeInitialPosition()) faceNeckAndBodyToBall();
        break;
    case PM_OUR_KICK_IN:
        setPiece(*worldModel, SET_PIECE_END_SPEED, clearTheBall);
        break;
    case PM_OUR_FREE_KICK:
        if (!ourGoalieHasTheBall(*worldModel)) {
            setPiece(*worldModel, SET_PIECE_END_SPEED, clearTheBall);
        }
        break;
    case PM_OUR_CORNER_KICK:
        ourCornerKick(*worldModel);
        break;
    case PM_THEIR_CORNER_KICK:
        take("corner_place");
        if (goToPositionTheirCKick()) faceNeckAndBodyToBall();
        break;
    case PM_OUR_GOAL_KICK:
        setPiece(*worldModel, LONG_PASS_END_SPEED, clearTheBall);
        break;
    case PM_OUR_GOAL:
    case PM_THEIR_GOAL:
        take("initial_place");
        if (takeInitialPosition()) faceNeckAndBodyToPoint(opponent_goal_mid);
        break;
    case PM_OUR_PENALTY_KICK:
        setPiece(*worldModel, SET_PIECE_END_SPEED, shoot);
        break;
    case PM_THEIR_KICK_IN:
    case PM_THEIR_FREE_KICK:
    case PM_THEIR_GOAL_KICK:
    case PM_OUR_OFFSIDE:
    case PM_THEIR_OFFSIDE:
    case PM_THEIR_PENALTY_KICK:
    case PM_OUR_BACK_PASS:
    case PM_THEIR_BACK_PASS:
        take("keep_place");
        doPositioning();
        break;
    case PM_OUR_GOAL_SCORED:
    case PM_THEIR_GOAL_SCORED:
        take("initial_place");
        takeInitialPosition();
        break;
    default:
        break;
    }
    reportIfClosestToBall();
}

namespace {

constexpr Vector2D dribblePoint = penShootPoint;
constexpr int UNUM_MIDDLEATTACKER = 10;

float dribbleAreaX() {
    static auto const x = static_cast<float>(ConfigFile::dribbleAreaX);
    return x;
}

/// Plays the ball to where the middle attacker is about to run.
void passAheadOfMiddleAttacker(WorldModel const& world) {
    constexpr float FRACTION = 0.85F; // of the way to where it dribbles
    constexpr float END_SPEED = 1.0F; // metres per cycle
    Vector2D const attacker = world.calcSBSPPosition(UNUM_MIDDLEATTACKER);
    SkillPool::passBallToPos(attacker + FRACTION * (dribblePoint - attacker), END_SPEED);
}

/// Shoot, pass, dribble or play forward, the first that applies. False when nothing did and the
/// ball is just sent towards their goal.
bool playKickableBall(WorldModel const& world) {
    static auto const passAreaX = static_cast<float>(ConfigFile::passAreaX);
    static auto const passEndSpeed = static_cast<float>(ConfigFile::passEndSpeed);
    float const x = world.ball().position.x;

    if (world.beingAtGoodPointToScore()) {
        SkillPool::take("shoot");
        SkillPool::scoreGoal();
        return true;
    }
    SkillPool::take("pass");
    if (SkillPool::passIfHaveACandidate(true, passEndSpeed)) return true;
    if (!world.beingFrontalAttacked() && x > dribbleAreaX()) {
        SkillPool::take("dribble");
        SkillPool::simpleDribbleToPoint(dribblePoint, 100);
        return true;
    }
    if (world.myself().unum != UNUM_MIDDLEATTACKER && passAreaX <= x && x <= dribbleAreaX()) {
        SkillPool::take("pass_ahead");
        passAheadOfMiddleAttacker(world);
        return true;
    }
    SkillPool::take("kick_forward");
    SkillPool::scoreGoal();
    return false;
}

} // namespace

void SkillPool::playOnBehavior() {
    if (ball->position.isInvalid()) {
        take("look_for_ball");
        scanFieldWithBody();
        return;
    }
    if (worldModel->isInKickableArea()) {
        if (playKickableBall(*worldModel)) return;
    } else if (!worldModel->beingClosestTeamMateToBall()) {
        take("keep_place");
        doPositioning();
        return;
    } else {
        take("get_ball");
        if (getBall(FULL_POWER, false, RUN_TO_BALL)) {
            faceNeckAndBodyToBall();
            return;
        }
    }
    faceOnlyNeckToBall();
}

bool SkillPool::performKickIn(bool wellPositioned, int minDelay, int scanDelay, float endSpeed) {
    scanFieldWithNeck();
    if (kickInMinDelay++ < minDelay) return true;
    if (kickInScanDelay++ >= scanDelay) return false;
    // Intentional: false right after a pass too, so that the caller's fallback replaces the pass.
    return !passIfHaveACandidate(wellPositioned, endSpeed);
}
