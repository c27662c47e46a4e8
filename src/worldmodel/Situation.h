#pragma once

#include <atomic>
#include <vector>

#include "link/CommandRecords.h"
#include "parser/RCC_Records.h"
#include "worldmodel/Ball.h"
#include "worldmodel/Field.h"
#include "worldmodel/Myself.h"
#include "worldmodel/PlayMode.h"
#include "worldmodel/Team.h"

/// The state of the match: play mode, side, score, the objects on the pitch and how fresh the ball
/// is. One, in the world model; main thread only, except for the clock.
class Situation {
public:
    /// Before any message of its kind.
    static constexpr int NEVER = -1000;

    int playMode = PM_BEFORE_KICK_OFF;
    FieldSide side = FieldSide::unknown;
    Ball ball;
    Myself myself;
    int ourScore = 0;
    int theirScore = 0;
    Team myTeam; ///< entry 0 mirrors the agent; the team-mates of the last see follow
    Team theirTeam;
    std::vector<Player> unknownPlayers;
    /// The server's cycle. Written by main, read by the sense thread when it stamps a message.
    std::atomic<int> currentTime = 0;
    ServerCommandHistory commandHistory;
    // Cycles: the ball heard of from a team-mate, and seen, with or without its velocity.
    int heardBallTime = NEVER;
    int heardBallVelocityTime = NEVER;
    int ballSeenTime = NEVER;
    int ballVelocitySeenTime = NEVER;

    Situation();
    virtual ~Situation() = default;

    /// Takes over what the referee says; a word the program does not know changes nothing.
    void setPlayMode(RCC_PlayMode const& mode);
    /// Takes over the ball report of a team-mate, told by the team's say identifier; any other
    /// message is ignored.
    void integratePlayerAudio(RCC_PlayerAudio const& audio);
    /// Both do nothing: there is no protocol with the coach, and one's own reports hold no news.
    void integrateSelfAudio(RCC_SelfAudio const& /*audio*/) {}
    void integrateCoachAudio(RCC_CoachAudio const& /*audio*/) {}
};
