#include "practice/Body.h"

#include <array>
#include <string_view>

#include "practice/Text.h"

namespace practice {

void appendSenseBody(std::string& out, World const& world, Player const& player) {
    constexpr std::array<std::string_view, 3> WIDTHS{"narrow", "normal", "wide"};
    std::string_view const quality = player.view.quality == Quality::high ? "high" : "low";
    double const direction = normalized(player.vel.angle() - player.body - player.neck);
    Counts const& n = player.counts;
    // Both angles are cut, not rounded: part of the protocol.
    appendText(out, "(sense_body ", world.cycle, " (view_mode ", quality, ' ',
               WIDTHS[static_cast<std::size_t>(player.view.width)], ") (stamina ", player.stamina,
               ' ', player.effort, ") (speed ", quantized(player.vel.length(), 0.01), ' ',
               static_cast<int>(toDeg(direction)), ") (head_angle ",
               static_cast<int>(toDeg(player.neck)), ") (kick ", n.kick, ") (dash ", n.dash,
               ") (turn ", n.turn, ") (say ", n.say, ") (turn_neck ", n.turnNeck, ") (catch ",
               n.catches, ") (move ", n.move, ") (change_view ", n.changeView, "))");
}

} // namespace practice
