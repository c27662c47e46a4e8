#include "logging/BeliefLogger.h"

#include <string>
#include <vector>

#include "worldmodel/WorldModel.h"

namespace {

/// In the form (x,y).
struct Pair {
    Vector2D vector;

    friend std::ostream& operator<<(std::ostream& os, Pair const& pair) {
        return os << '(' << pair.vector.x << ',' << pair.vector.y << ')';
    }
};

} // namespace

BeliefLogger::BeliefLogger(WorldModel const& world)
    : world_(world), number_(world.myself().unum),
      file_("./agentplanlog/beliefs" + std::to_string(number_) + ".log") {}

std::ostream& BeliefLogger::startRecord() {
    constexpr int LEVEL = 9; // drawing records have 8
    return file_ << world_.currentTime() << ' ' << number_ << ' ' << LEVEL << ' ';
}

void BeliefLogger::write(std::string_view takenCase) {
    if (!file_.is_open()) return;
    Myself const& me = world_.myself();
    startRecord() << "self " << Pair{me.position} << ' ' << me.bodyDirection << ' '
                  << me.headDirection << '\n';
    Ball const& ball = world_.ball();
    if (!ball.position.isInvalid()) {
        startRecord() << "ball " << Pair{ball.position} << ' '
                      << Pair{ball.velocity.isInvalid() ? Vector2D() : ball.velocity} << '\n';
    }
    auto const writePlayers = [this](char const* kind, std::vector<Player> const& players,
                                     std::size_t first) {
        for (std::size_t i = first; i < players.size(); ++i) {
            startRecord() << kind << ' ' << players[i].unum << ' ' << Pair{players[i].position}
                          << '\n';
        }
    };
    writePlayers("mate", world_.teammates(), 1); // the first is the agent itself
    writePlayers("opponent", world_.opponents(), 0);
    writePlayers("unknown", world_.situation().unknownPlayers, 0);
    startRecord() << "case " << takenCase << '\n';
    file_.flush();
}
