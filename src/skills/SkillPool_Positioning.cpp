// Where to stand without the ball.

#include "skills/SkillPool.h"

#include <array>
#include <cstddef>

#include "config/ConfigFile.h"
#include "link/Effectors.h"
#include "worldmodel/Situation.h"
#include "worldmodel/WorldModel.h"

namespace {

constexpr float ATTACK_ADVANCE = 30.0F; ///< from home to attack position, metres

using CornerPositions = std::array<Vector2D, Formation::PLAYERS - 1>; ///< from number 2 on

constexpr CornerPositions OUR_CORNER_KICK = {{
    {30.0F, -15.0F, CARTESIAN},
    {30.0F, -6.0F, CARTESIAN},
    {30.0F, 6.0F, CARTESIAN},
    {30.0F, 15.0F, CARTESIAN},
    {42.0F, -20.0F, CARTESIAN},
    {42.0F, 0.0F, CARTESIAN},
    {42.0F, 20.0F, CARTESIAN},
    {45.0F, -9.0F, CARTESIAN},
    {45.0F, 0.0F, CARTESIAN},
    {45.0F, 9.0F, CARTESIAN},
}};

constexpr CornerPositions THEIR_CORNER_KICK = {{
    {-45.0F, -15.0F, CARTESIAN},
    {-51.0F, -6.0F, CARTESIAN},
    {-51.0F, 6.0F, CARTESIAN},
    {-45.0F, 15.0F, CARTESIAN},
    {-45.0F, -25.0F, CARTESIAN},
    {-40.0F, 0.0F, CARTESIAN},
    {-45.0F, 25.0F, CARTESIAN},
    {-35.0F, -20.0F, CARTESIAN},
    {-35.0F, 0.0F, CARTESIAN},
    {-35.0F, 20.0F, CARTESIAN},
}};

bool goToCornerPosition(CornerPositions const& positions, int unum) {
    constexpr float TOLERANCE = 1.0F;
    constexpr float POWER = 60.0F;
    if (unum < Formation::FIRST_FIELD_PLAYER || unum > Formation::PLAYERS) return unum != 0;
    auto const place = static_cast<std::size_t>(unum - Formation::FIRST_FIELD_PLAYER);
    return SkillPool::goToPoint(positions[place], TOLERANCE, POWER);
}

} // namespace

void SkillPool::initializePositioning() {
    int const unum = myself->unum;
    if (!Formation::isShirtNumber(unum)) return;
    float const advance = unum == Formation::GOALIE_NUMBER ? 0.0F : ATTACK_ADVANCE;
    myself->homePosition = Formation::homePosition(unum);
    myself->attackPosition = myself->homePosition + Vector2D(advance, 0.0F, CARTESIAN);
    myself->initialPosition = Formation::initialPosition(unum);
}

bool SkillPool::goToStrategicPosition() {
    static auto const posTolerance = static_cast<float>(ConfigFile::positioningTolerance);
    if (!Formation::isShirtNumber(myself->unum)) return false;
    // Intentional: drawn from where the player is, unlike WorldModel::calcSBSPPosition.
    Vector2D const pull = ball->position - myself->position;
    Vector2D const target = Formation::strategicPosition(myself->unum, pull, ball->position,
                                                         worldModel->situation().playMode);
    return goToPoint(target, posTolerance, FULL_POWER);
}

bool SkillPool::doPositioning() {
    if (ball->position.isInvalid()) {
        scanFieldWithBody();
        return false;
    }
    // The neck follows the ball in any case, the body only when it has nowhere to go.
    return goToStrategicPosition() ? faceNeckAndBodyToBall() : faceOnlyNeckToBall();
}

bool SkillPool::goToPositionOurCKick() {
    return goToCornerPosition(OUR_CORNER_KICK, myself->unum);
}

bool SkillPool::goToPositionTheirCKick() {
    return goToCornerPosition(THEIR_CORNER_KICK, myself->unum);
}

void SkillPool::moveToInitialPosition() {
    effectors->queueMove(myself->initialPosition.x, myself->initialPosition.y);
}

bool SkillPool::takeInitialPosition() {
    if (atInitialPosition()) return true;
    moveToInitialPosition();
    return false;
}

bool SkillPool::atInitialPosition() {
    constexpr float TOLERANCE = 1.0F;
    return myself->position.getDistanceTo(myself->initialPosition) <= TOLERANCE;
}
