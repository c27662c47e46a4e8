#pragma once

#include <array>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "practice/Placement.h"
#include "practice/Random.h"
#include "practice/World.h"

namespace practice {

/// When a half starts without a human: all counts are steps.
struct KickOffRule {
    int players = MAX_PLAYERS; ///< that must have joined
    int readySteps = 50;       ///< from then until the kick-off; also the break at half time
    int waitSteps = 600;       ///< since the first player joined; then the match starts
};

/// Watches the ball and the players, decides on the play mode, keeps clock and score, and puts ball
/// and players where the rules want them. Every decision is announced with its word at the moment
/// it falls; the world's cycle is then still the one of the announcement.
class Referee {
public:
    using Announce = std::function<void(std::string_view word)>;

    Referee(World& world, Random& random, KickOffRule const& rule, Announce announce);

    /// Whether a kick moves the ball in the present play mode.
    bool allowsKick() const;
    /// Between two steps: a kick that moved the ball, one that did not reach it, a successful
    /// catch.
    void kicked(int id);
    void triedToKick(int id);
    void caught(int id);
    /// After the movement of a step; `touchers` are the players the ball ran into.
    void step(Vec ballBefore, std::span<int const> touchers);
    /// At the end of a step.
    void startWhenReady();

    /// A human starts the half; without effect while it is being played.
    void kickOff();
    /// A human gives a free kick to `side`, or a drop ball when it is none; without effect before
    /// the kick-off and after the match.
    void callFoul(Vec spot, Side side);
    /// A trainer says what is being played, at any time. The ball stays where it is, and rests
    /// unless play goes on; what happened before is forgotten.
    void setMode(PlayMode mode);

private:
    void changeMode(PlayMode mode);
    void placeBall(Vec spot);
    void interrupt(PlayMode mode, Vec spot);
    void dropBall();
    void callOffside(int id);
    void callCatchFault(Side side);

    bool isBackPassTo(int id) const;
    bool played(int id);
    void take(int id);

    void advanceClock();
    void endHalf();
    void runStoppage();
    void superviseSetPiece();
    void keepDistance();
    void watchBall(Vec before);
    void ballOverGoalLine(Vec before);
    void goalOf(Side attacker);
    bool isBallStuck();

    World& world_;
    Random& random_;
    KickOffRule rule_;
    Announce announce_;

    int half_ = 1;
    int stepsInMode_ = 0;
    int waitedSteps_ = 0;      ///< since the first player joined
    int readySteps_ = 0;       ///< since all were there, or since half time
    double offsideLine_ = 0.0; ///< of the offence that is being punished
    Table<bool, 2> kickedThisCycle_{};

    /// What happened since the last stoppage.
    struct Play {
        Side lastTouch = Side::none;
        int taker = NOBODY; ///< of the set piece, until somebody else plays the ball
        int takerDashes = 0;
        bool indirect = false; ///< a goal does not count yet
        int lastKicker = NOBODY;
        int kickerBefore = NOBODY;
        OffsideMarks offside{}; ///< who stood there when the ball was last played
        Vec stuckSpot{};
        int stuckSteps = 0;
    } play_;
};

} // namespace practice
