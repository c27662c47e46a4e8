#include "worldmodel/Formation.h"

#include <cmath>

Vector2D Formation::strategicPosition(int unum, Vector2D pull, Vector2D ball, int playMode) {
    constexpr float WING = 24.0F; // beyond it a player follows the ball only half as far
    auto const row = static_cast<std::size_t>(unum);
    Vector2D const home = homePosition(unum);

    float x = home.x + attractionX[row] * pull.x;
    float y = home.y + attractionY[row] * pull.y;
    if (std::abs(y) > WING) y -= attractionY[row] * 0.5F * pull.y;
    if (behindBall[row] && ball.x < x) x = ball.x;
    if (playMode == BEHIND_BALL_MODE) x = ball.x;
    // One after the other, so that a ball of unknown place leaves an unknown place.
    if (x > maxX[row]) x = maxX[row];
    if (x < minX[row]) x = minX[row];
    return {x, y, CARTESIAN};
}
