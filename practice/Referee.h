#pragma once

#include <array>
#include <functional>
#include <string_view>
#include <vector>

#include "practice/Offside.h"
#include "practice/Random.h"
#include "practice/World.h"

namespace practice {

// When a half starts without a human: all counts are steps.
struct KickOffRule {
    int players = maxPlayers; // that must have joined
    int readySteps = 50;      // from then until the kick-off; also the break at half time
    int waitSteps = 600;      // since the first player joined, then whoever is there plays
};

// Watches the ball and the players, decides on the play mode, keeps clock and score, and puts ball
// and players where the rules want them. Every decision is announced with its word at the moment it
// falls; the world's cycle is then still the one of the announcement.
class Referee {
public:
    using Announce = std::function<void(std::string_view word)>;

    Referee(World& world, Random& random, const KickOffRule& rule, Announce announce);

    // Does the ball move if a player kicks it now?
    bool allowsKick() const;
    // Between two steps: a kick that moved the ball, one that did not reach it, a successful catch.
    void kicked(int id);
    void triedToKick(int id);
    void caught(int id);
    // After the movement of a step; `touchers` are the players the ball ran into.
    void step(Vec ballBefore, const std::vector<int>& touchers);
    // At the end of a step.
    void startWhenReady();

private:
    void changeMode(PlayMode mode);
    void forgetPlay();
    void placeBall(Vec spot);
    void startSetPiece(PlayMode mode, Vec spot);
    void startHalf();
    void dropBall();
    void startOffence(PlayMode mode, Vec spot);
    void callOffside(int id);
    void callFreeKickFault(int id);
    void scoreGoal(Side side);

    bool isSecondTouch(int id) const;
    bool isBackPassTo(int id) const;
    void noteKicker(int id);
    // The rules that hold for kicks and touches alike; false when one of them stopped the game.
    bool played(int id);
    void touched(int id);
    void take(int id);

    void endHalf();
    void runStoppage();
    void endStoppage();
    void superviseSetPiece();
    void superviseGoalKick();
    void keepDistance();
    void watchBall(Vec before);
    void ballOverGoalLine(Vec before);
    bool crossedBetweenPosts(Vec before) const;
    bool isBallStuck();

    World& world_;
    Random& random_;
    KickOffRule rule_;
    Announce announce_;

    int half_ = 1;
    int stepsInMode_ = 0;
    int waitedSteps_ = 0; // since the first player joined
    int readySteps_ = 0;  // since all were there, or since half time

    // What happened since the last stoppage.
    Side lastTouch_ = Side::none;
    int taker_ = nobody; // of the set piece, until somebody else plays the ball
    int takerDashes_ = 0;
    bool indirect_ = false; // a goal does not count yet
    int lastKicker_ = nobody;
    int kickerBefore_ = nobody;
    std::array<bool, 2> kickedThisCycle_{};
    Offside offside_;
    double offsideLine_ = 0.0; // of the offence that is being punished
    Vec stuckSpot_;
    int stuckSteps_ = 0;
};

} // namespace practice
