#pragma once

#include <vector>

#include "worldmodel/Player.h"

/// The players of one team that the agent knows of.
class Team {
public:
    int number = 0; ///< nothing sets or reads it yet
    std::vector<Player> players;

    virtual ~Team() = default;

    /// The first player known to be the goalkeeper, or null.
    Player const* getGoalie() const;
};
