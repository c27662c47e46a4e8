#pragma once

#include <string>

#include "gamelog/Reader.h"
#include "gamelog/Writer.h"
#include "stats/Analysis.h"

namespace stats_test {

using namespace gamelog;
using namespace stats;

/// Makes a game log show by show. All 22 players stand on the field; the ball moves by its speed.
class Film {
public:
    Film() {
        for (std::size_t i = 0; i < PLAYERS; ++i) {
            Player& player = show_.players[i];
            player.state = state::ON_FIELD;
            player.x = i < TEAM_SIZE ? -20 : 20;
            player.y = static_cast<double>(i % TEAM_SIZE) * 3;
            player.capacity = 130'600;
        }
        add(Team{1, {"Alpha", "Beta", 0, 0, std::nullopt}});
        mode(PlayMode::kickOffLeft);
        roll();
        mode(PlayMode::playOn);
    }

    void mode(PlayMode mode) { add(PlayModeChange{show_.time + 1, mode}); }
    void add(Record const& record) {
        append(log, record, USUAL_VERSION);
        log += '\n';
    }

    /// Shows as many steps, in which nobody touches the ball.
    void roll(int steps = 1) {
        for (int i = 0; i < steps; ++i) {
            ++show_.time;
            show_.ball.x += show_.ball.vx;
            show_.ball.y += show_.ball.vy;
            add(show_);
            for (Player& player : show_.players) {
                player.state &= LASTING;
            }
        }
    }

    void mark(Side side, int unum, std::uint32_t bits) { show_.player(side, unum).state |= bits; }

    /// The player touches the ball, which then rolls `dx`, `dy` in each of the steps; the speed is
    /// not slowed down, to keep sums simple.
    void kick(Side side, int unum, double dx, double dy, int steps = 1,
              std::uint32_t bit = state::KICK) {
        mark(side, unum, bit);
        show_.ball.vx = dx;
        show_.ball.vy = dy;
        roll(steps);
    }

    void put(double x, double y) { show_.ball = {x, y, 0, 0}; }
    Show& show() { return show_; }

    /// Figures of what the log says.
    MatchFigures figures() const {
        Reader reader = Reader::ofMemory(log);
        Analysis analysis;
        while (Record const* const record = reader.next()) {
            analysis.take(*record);
        }
        return analysis.finish();
    }

    std::string log = header(USUAL_VERSION);

private:
    static constexpr std::uint32_t LASTING =
        state::ON_FIELD | state::GOALIE | state::YELLOW_CARD | state::RED_CARD;
    Show show_;
};

/// The events of one name, as "l10>9 arrived".
inline std::vector<std::string> told(MatchFigures const& figures, std::string_view name) {
    std::vector<std::string> out;
    for (Event const& event : figures.events) {
        if (event.name != name) continue;
        std::string text(event.side ? letterOf(*event.side) : "-");
        text.append(std::to_string(event.unum));
        if (event.to > 0) text.append(">").append(std::to_string(event.to));
        if (!event.detail.empty()) text.append(" ").append(event.detail);
        out.push_back(text);
    }
    return out;
}

} // namespace stats_test
