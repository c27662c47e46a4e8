#pragma once

#include <optional>
#include <vector>

#include "stats/BallChain.h"
#include "stats/Figures.h"

namespace stats {

/// Takes the records of one log in their order and works out the figures of the match.
class Analysis {
public:
    Analysis();
    Analysis(Analysis const&) = delete;
    Analysis& operator=(Analysis const&) = delete;

    void take(gamelog::Record const& record);
    /// The figures, once all records were taken.
    MatchFigures const& finish();

private:
    void take(gamelog::Unknown const&) {}
    void take(gamelog::PlayerParam const&) {}
    void take(gamelog::ServerParam const& parameters);
    void take(gamelog::PlayerType const& parameters);
    void take(gamelog::PlayModeChange const& change);
    void take(gamelog::Team const& team);
    void take(gamelog::Msg const& message);
    void take(gamelog::Show const& show);

    void followPlayers(gamelog::Show const& show);
    void followPlayer(gamelog::Player const& now, gamelog::Player const& before, Side side,
                      PlayerFigures& figures);
    double staminaSpent(gamelog::Player const& now, gamelog::Player const& before) const;
    void followBall(gamelog::Show const& show);
    std::vector<Touch> const& touchesIn(gamelog::Show const& show);
    void countPlay(gamelog::Show const& show);
    void changeMode(gamelog::PlayMode mode, gamelog::Ball const& ball);
    void stopPlay(gamelog::PlayMode mode);
    void award(gamelog::PlayMode mode, gamelog::Ball const& ball);
    bool inArea(gamelog::Ball const& ball, Side attacker) const;
    Moment momentAt(gamelog::Ball const& ball) const;

    MatchFigures figures_;
    Pitch pitch_;
    BallChain chain_;
    std::vector<double> staminaIncrease_; ///< a cycle, for each player type
    std::optional<gamelog::Show> before_; ///< the last show
    gamelog::PlayMode mode_ = gamelog::PlayMode::none;
    std::vector<gamelog::PlayModeChange> changes_; ///< since the last show
    std::vector<Touch> touches_;                   ///< of the show at hand
    std::optional<Side> caught_;         ///< who caught the ball in this show or the last one
    std::optional<std::size_t> untaken_; ///< the event of a set piece that nobody has taken yet
    std::size_t shows_ = 0;
    int cycle_ = -1;
};

} // namespace stats
