// The decision of the goalkeeper for one cycle.

#include "skills/SkillPool.h"

#include <algorithm>

#include "config/Configuration.h"
#include "geometry/Numbers.h"
#include "link/Effectors.h"
#include "skills/Utils.h"
#include "worldmodel/Situation.h"
#include "worldmodel/WorldModel.h"

namespace {

/// Decisions spent in the goalkeeper's own free kick, of which a cycle has one or more; reset in
/// play on only.
int freeKickCounter = 0;

/// For how many of them it stands with the ball in its hands.
constexpr int FREE_KICK_WAIT = 50;
/// Cycles after its kick in which the goalkeeper does not catch.
constexpr int OWN_KICK_CYCLES = 5;

/// On the circle before the goal, on the line from its centre to where the ball is going.
/// Intentional: (0, 0) when that line leaves the field on both ends.
Vector2D guardingPoint(Ball const& ball) {
    float const distance = Field::GOAL_CENTER.getDistanceTo(ball.position);
    // Without the server's parameters there is no speed to divide by. The limit keeps a ball that
    // is told to be a million metres away from taking a million steps.
    constexpr int MAX_CYCLES = 1000;
    int const cycles =
        Configuration::ballSpeedMax > 0.0F
            ? std::min(truncateToInt(distance / Configuration::ballSpeedMax), MAX_CYCLES)
            : 0;
    Vector2D const comingBall = ball.MovingObject::predictedPosition(cycles);

    Vector2D p1;
    Vector2D p2;
    Line::makeLineFromTwoPoints(comingBall, Field::GOAL_CENTER)
        .getCircleIntersectionPoints(Field::GOALIE_POSITIONING_CIRCLE, &p1, &p2);
    bool const firstInside = Field::FIELD.isInside(p1);
    bool const secondInside = Field::FIELD.isInside(p2);
    if (firstInside && secondInside) {
        bool const secondIsNearer =
            p2.getDistanceTo(ball.position) <= p1.getDistanceTo(ball.position);
        return secondIsNearer ? p2 : p1;
    }
    if (firstInside) return p1;
    return secondInside ? p2 : Vector2D();
}

} // namespace

void SkillPool::goalieGeneralBehaviour() {
    take("none");
    if (worldModel->currentTime() - kickedTime >= OWN_KICK_CYCLES) PERFORMED_GOALIE_KICK = false;

    switch (worldModel->situation().playMode) {
    case PM_BEFORE_KICK_OFF:
        take("settle_sees");
        if (profileSeeTiming()) return; // the whole cycle, without a report
        take("initial_place");
        takeInitialPosition();
        break;
    case PM_PLAY_ON:
        goaliePlayOn();
        freeKickCounter = 0;
        break;
    case PM_OUR_KICK_IN:
    case PM_THEIR_KICK_IN:
    case PM_THEIR_FREE_KICK:
    case PM_OUR_CORNER_KICK:
    case PM_THEIR_CORNER_KICK:
    case PM_THEIR_GOAL_KICK:
        if (ball->position.isInvalid()) {
            take("look_for_ball");
            scanFieldWithBody();
        } else {
            goaliePositioning();
            faceOnlyNeckToBall();
        }
        break;
    case PM_OUR_FREE_KICK:
        if (ball->position.isInvalid()) {
            take("look_for_ball");
            scanFieldWithBody();
        } else if (myself->position.getDistanceTo(ball->position) <= AT_HAND) {
            performGoalieFreeKick();
        } else {
            goaliePositioning();
        }
        break;
    case PM_OUR_BACK_PASS:
        break;
    case PM_HALF_TIME:
        resetGoalieFlags();
        break;
    case PM_OUR_GOAL_SCORED:
    case PM_THEIR_GOAL_SCORED:
        take("initial_place");
        takeInitialPosition();
        break;
    default:
        // Intentional: it runs to its guard here; after a goal it is put back instead.
        if (!atInitialPosition()) goaliePositioning();
        break;
    }
    reportIfClosestToBall();
}

void SkillPool::goaliePlayOn() {
    int const now = worldModel->currentTime();
    if (worldModel->isCatchable() && !PERFORMED_GOALIE_KICK) {
        bool const banned =
            catchTime != now &&
            static_cast<float>(now - catchTime) < static_cast<float>(Configuration::catchBanCycle);
        take(banned ? "clear" : "catch");
        if (banned) {
            kickAway(false);
        } else {
            catchBall();
            catchTime = now;
        }
        return;
    }
    if (ball->position.isInvalid()) {
        take("look_for_ball");
        scanFieldWithBody();
        return;
    }
    Vector2D interception;
    int cycles = 0;
    bool const reachable = worldModel->interceptionPoint(*myself, interception, cycles, true);
    if (Field::OWN_PENALTY_AREA.isInside(ball->position) ||
        (reachable && Field::OWN_PENALTY_AREA.isInside(interception))) {
        take("get_ball");
        getBall(FULL_POWER, true, WALK_TO_BALL);
        faceOnlyNeckToBall();
    } else {
        goaliePositioning();
    }
}

void SkillPool::goaliePositioning() {
    take("guard");
    constexpr float BACKWARDS_FROM = 100.0F; // degrees between ball and target
    constexpr float TOLERANCE = 1.0F;
    Vector2D const target = guardingPoint(*ball);
    float const angle =
        getAbsAngleDifference(Utils::calcAngleToBall(), Utils::calcAngleToPoint(target));
    // Backs off when the way leads away from the ball, so as to keep facing it.
    goToPoint(target, TOLERANCE, angle <= BACKWARDS_FROM ? FULL_POWER : -FULL_POWER);
    faceOnlyNeckToBall();
}

bool SkillPool::performGoalieFreeKick() {
    take("free_kick");
    [[maybe_unused]] static int timeReset = 1; // set after each kick; no rule reads it yet
    if (freeKickCounter++ < FREE_KICK_WAIT) return false;

    constexpr float FACING = 10.0F; // degrees to either side
    bool const facesTheirGoal =
        myself->bodyDirection >= 360.0F - FACING || myself->bodyDirection <= FACING;
    if (!facesTheirGoal) {
        faceNeckAndBodyToPoint({Field::OPP_GOAL_OUTLINE, myself->position.y, CARTESIAN});
        return false;
    }
    constexpr float AT_POINT = 3.0F;
    Vector2D const point = findGoalieKickOffPoint();
    if (myself->position.getDistanceTo(point) > AT_POINT) {
        effectors->queueMove(point.x, point.y);
        return false;
    }
    PERFORMED_GOALIE_KICK = true;
    kickedTime = worldModel->currentTime();
    if (!passIfHaveACandidate(true, LONG_PASS_END_SPEED)) kickAway(false);
    timeReset = 1;
    return true;
}

Vector2D SkillPool::findGoalieKickOffPoint() {
    int const opponentsLeft =
        worldModel->numOpponentsWithinRectangle(Field::GOALIE_KICK_OFF_RECT_LEFT);
    int const opponentsRight =
        worldModel->numOpponentsWithinRectangle(Field::GOALIE_KICK_OFF_RECT_RIGHT);
    int const teammatesLeft =
        worldModel->numTeammatesWithinRectangle(Field::GOALIE_KICK_OFF_RECT_LEFT);
    int const teammatesRight =
        worldModel->numTeammatesWithinRectangle(Field::GOALIE_KICK_OFF_RECT_RIGHT);

    if (opponentsLeft == 0) return Field::GOALIE_KICK_OFF_POINT_LEFT;
    if (opponentsRight == 0) return Field::GOALIE_KICK_OFF_POINT_RIGHT;
    constexpr int SCALE = 1000; // so that the whole-number ratios can be compared
    int const ratioLeft = teammatesLeft * SCALE / opponentsLeft;
    int const ratioRight = teammatesRight * SCALE / opponentsRight;
    bool const right =
        ratioLeft < ratioRight || (ratioLeft == ratioRight && teammatesRight <= teammatesLeft);
    return right ? Field::GOALIE_KICK_OFF_POINT_RIGHT : Field::GOALIE_KICK_OFF_POINT_LEFT;
}

void SkillPool::resetGoalieFlags() {
    kickedTime = 0;
    PERFORMED_GOALIE_KICK = false;
    catchTime = 0;
}
