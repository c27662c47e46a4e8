// The team's formation as the agent asks for it.

#include "worldmodel/WorldModel.h"

#include "worldmodel/Formation.h"

Vector2D WorldModel::calcSBSPPosition(int unum) const {
    // Drawn from the home position, while a player on its way draws from where it is.
    Vector2D const pull = ball().position - Formation::homePosition(unum);
    return Formation::strategicPosition(unum, pull, ball().position, situation_.playMode);
}

bool WorldModel::isMyHomePosClosestToPos(Vector2D pos) const {
    constexpr int NOBODY = 0; ///< an agent without a number has this one
    int closest = NOBODY;
    float closestDistance = UNDEFINED_FLOAT;
    for (int unum = Formation::FIRST_FIELD_PLAYER; unum <= Formation::PLAYERS; ++unum) {
        float const distance = Formation::homePosition(unum).getDistanceTo(pos);
        if (distance < closestDistance) {
            closestDistance = distance;
            closest = unum;
        }
    }
    return closest != NOBODY && closest == myself().unum;
}
