#pragma once

#include <atomic>
#include <vector>

#include "link/CommandRecords.h"
#include "parser/RCC_Parser.h"
#include "worldmodel/Ball.h"
#include "worldmodel/Field.h"
#include "worldmodel/Myself.h"
#include "worldmodel/Team.h"

/// The program's play modes. Of a pair the first is the one in which the agent's own team has the
/// ball; for offences it is the one that the agent's own team committed.
enum PlayMode : int {
    PM_NONE = 0,
    PM_BEFORE_KICK_OFF = 1,
    PM_TIME_OVER = 2,
    PM_PLAY_ON = 3,
    PM_OUR_KICK_OFF = 4,
    PM_THEIR_KICK_OFF = 5,
    PM_OUR_KICK_IN = 6,
    PM_THEIR_KICK_IN = 7,
    PM_OUR_FREE_KICK = 8,
    PM_THEIR_FREE_KICK = 9,
    PM_OUR_CORNER_KICK = 10,
    PM_THEIR_CORNER_KICK = 11,
    PM_OUR_GOAL_KICK = 12,
    PM_THEIR_GOAL_KICK = 13,
    PM_OUR_GOAL = 14,
    PM_THEIR_GOAL = 15,
    PM_DROP_BALL = 16,
    PM_OUR_OFFSIDE = 17,
    PM_THEIR_OFFSIDE = 18,
    PM_OUR_PENALTY_KICK = 19,
    PM_THEIR_PENALTY_KICK = 20,
    PM_FIRST_HALF_OVER = 21,
    PM_PAUSE = 22,
    PM_HUMAN_JUDGE = 23,
    PM_OUR_FOUL_CHARGE = 24,
    PM_THEIR_FOUL_CHARGE = 25,
    PM_OUR_FOUL_PUSH = 26,
    PM_THEIR_FOUL_PUSH = 27,
    PM_OUR_FOUL_MULTIPLE_ATTACK = 28,
    PM_THEIR_FOUL_MULTIPLE_ATTACK = 29,
    PM_OUR_FOUL_BALLOUT = 30,
    PM_THEIR_FOUL_BALLOUT = 31,
    PM_OUR_BACK_PASS = 32,
    PM_THEIR_BACK_PASS = 33,
    PM_TIME_UP = 34,
    PM_TIME_UP_WITHOUT_A_TEAM = 35,
    PM_TIME_EXTENDED = 36,
    PM_HALF_TIME = 37,
    PM_OUR_GOALIE_CATCH = 38,
    PM_THEIR_GOALIE_CATCH = 39,
    PM_OUR_GOAL_SCORED = 40,
    PM_THEIR_GOAL_SCORED = 41,
};

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

    /// Takes over the referee's word; a word the program does not know changes nothing.
    void setPlayMode(RCC_PlayMode const& mode);
    /// Takes over the ball report of a team-mate, told by the team's say identifier; any other
    /// message is ignored.
    void integratePlayerAudio(RCC_PlayerAudio const& audio);
    /// Both do nothing: there is no protocol with the coach, and one's own reports hold no news.
    void integrateSelfAudio(RCC_SelfAudio const& /*audio*/) {}
    void integrateCoachAudio(RCC_CoachAudio const& /*audio*/) {}
};
