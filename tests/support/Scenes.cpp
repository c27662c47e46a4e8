#include "tests/support/Scenes.h"

#include "practice/Eyes.h"
#include "practice/World.h"
#include "tests/support/AgentHarness.h"

namespace support {

namespace {

constexpr int VIEWER = practice::playerId(practice::Side::left, 10);

practice::World fullPitch() {
    practice::World world;
    world.teamNames = {AgentHarness::TEAM, AgentHarness::OTHER_TEAM};
    world.ball.pos = {-20.0, 3.0};
    world.ball.vel = {1.2, -0.4};
    for (practice::Side const side : {practice::Side::left, practice::Side::right}) {
        for (int unum = 1; unum <= practice::PLAYERS_PER_TEAM; ++unum) {
            practice::Player& player = world.player(practice::playerId(side, unum));
            player.joined = player.active = true;
            player.goalie = unum == 1;
            // Rows in front of the viewer, near enough for numbers to be told.
            player.pos = {-30.0 + 2.5 * unum, practice::sign(side) * (1.0 + 1.4 * unum)};
            player.vel = {0.3, 0.1 * practice::sign(side)};
            player.body = unum * 0.5;
        }
    }
    practice::Player& viewer = world.player(VIEWER);
    viewer.pos = {-40.0, 0.0};
    viewer.body = 0.0;
    viewer.view.width = practice::Width::wide;
    return world;
}

} // namespace

std::string senseBody(int time, std::string const& view, std::string const& speed,
                      std::string const& headAngle) {
    return "(sense_body " + std::to_string(time) + " (view_mode " + view +
           ") (stamina 8000 1) (speed " + speed + ") (head_angle " + headAngle +
           ") (kick 1) (dash 22) (turn 333) (say 4) (turn_neck 5) (catch 6) (move 7) "
           "(change_view 8))";
}

std::string largestSee() {
    practice::Random random(1);
    practice::World const world = fullPitch();
    std::string message;
    practice::appendSee(message, world, world.player(VIEWER), random);
    return message;
}

} // namespace support
