#include "worldmodel/Team.h"

#include <algorithm>

Player const* Team::getGoalie() const {
    auto const found = std::find_if(players.begin(), players.end(),
                                    [](Player const& player) { return player.isGoalie(); });
    return found == players.end() ? nullptr : &*found;
}
