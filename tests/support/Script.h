#pragma once

#include <string>

#include "practice/Match.h"

namespace support {

/// Plays for everybody but the agent, by the truth of the practice server's world: whoever of a
/// team is next goes to the ball, the others keep near their places. Where the ball is kicked is on
/// a schedule, so that all that can interrupt a match comes up. Goalkeepers catch, a team-mate says
/// where the ball is, opponents babble. The same match always hears the same commands.
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

    practice::Match& match;
    practice::World const& world;
    practice::Player const& agent;
    practice::Random random{1};
    int cycle = 0;
    practice::PlayMode mode;
    int cyclesInMode = 0;
    int setPieces = 0;
    practice::Table<practice::Table<int, 3>, 2> kicks{}; ///< by team and third of the pitch
};

} // namespace support
