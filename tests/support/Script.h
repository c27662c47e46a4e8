#pragma once

#include <string>

#include "practice/Match.h"

namespace support {

/// Plays for everybody but the agent. It knows the true positions, since it reads the practice
/// server's world. The nearest player of a team goes to the ball, the others stay near their
/// places. A schedule says where the ball is kicked, so that everything that can interrupt a match
/// happens in it. Goalkeepers catch, a team-mate says where the ball is, opponents say random
/// words. The same match always gets the same commands. A cycle, for example:
///   opponent 9, at the ball   (kick 85.3 -12)
///   team-mate 4, far from it  (turn 40.2)
///   team-mate 3               (say "vxAxByCxD")
class Script {
public:
    Script(practice::Match& played, int agent);

    /// Everybody's commands of one cycle.
    void act();

private:
    void send(practice::Player const& p, std::string const& command);
    void play(practice::Player const& p, int nextAtBall);
    void playBall(practice::Player const& p);
    void runTo(practice::Player const& p, practice::Vec target);
    practice::Vec placeOf(practice::Player const& p) const;
    practice::Vec aim(practice::Player const& p);
    int nextAtBall(practice::Side side) const;
    double wing() const;
    void talk();

    practice::Match& match_;
    practice::World const& world_;
    practice::Player const& agent_;
    practice::Random random_{1};
    int cycle_ = 0;
    practice::PlayMode mode_;
    int cyclesInMode_ = 0;
    int setPieces_ = 0;
    practice::Table<practice::Table<int, 3>, 2> kicks_{}; ///< by team and third of the pitch
};

} // namespace support
