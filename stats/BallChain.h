#pragma once

#include <optional>

#include "stats/Figures.h"

namespace stats {

/// Lengths of the pitch in metres, and what decides about the ball's way.
struct Pitch {
    double halfLength = 52.5;
    double areaLength = 16.5, areaHalfWidth = 20.16; ///< of a penalty area
    double goalHalfWidth = 7.01;
    double ballDecay = 0.94; ///< speed that is left after a cycle
};

/// When and where something happens.
struct Moment {
    std::size_t show = 0;
    int cycle = 0;
    Point place; ///< of the ball before it
};

/// A touch moves or takes the ball; a touch that failed is none.
enum class TouchKind : std::uint8_t { kick, tackle, catchBall };

struct Touch {
    TouchKind kind = TouchKind::kick;
    Side side = Side::left;
    int unum = 1;
    Moment moment;
    gamelog::Ball ball; ///< after it
};

/// Follows the ball from touch to touch. What a touch was shows only when the next one comes or
/// the play stops: that closes it as a pass, a shot, a part of a dribble, or nothing.
class BallChain {
public:
    BallChain(MatchFigures& figures, Pitch const& pitch) : figures_(figures), pitch_(pitch) {}

    void touch(Touch const& touch);
    /// Both teams touch the ball in one step: nobody knows whose it is.
    void duel();

    /// The play stops. Names the team that gets a goal.
    void goal(Side side, Moment const& moment);
    void ballOut(Moment const& moment);
    void offside(Side offender, Moment const& moment);
    /// For any other reason.
    void stop();

    /// Whose the ball is; nobody's before the first touch.
    std::optional<Side> owner() const { return owner_; }
    std::optional<Touch> const& last() const { return last_; }

    /// Whether the ball rolls over the goal line into the goal, or past it narrowly.
    enum class Aim : std::uint8_t { elsewhere, wide, onTarget };
    Aim aimOf(Touch const& touch) const;

private:
    void closeBy(Touch const& next);
    /// A ball that went to nobody of the team, `to` where it was lost. True for a pass.
    bool lost(Point const& to);
    bool pass(Point const& to, int receiver);
    void shot(bool onTarget);
    void endDribble();
    Event& event(std::string_view name, Side side, int unum, Moment const& moment);
    template <typename Change>
    void forBoth(Side side, int unum, Change change);

    MatchFigures& figures_;
    Pitch const& pitch_;
    std::optional<Touch> last_;
    std::optional<Side> owner_;
    Point dribbleFrom_; ///< where the last player's own touches began
};

} // namespace stats
