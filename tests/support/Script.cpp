#include "tests/support/Script.h"

#include <algorithm>
#include <limits>

#include "config/ConfigFile.h"
#include "practice/Parameters.h"
#include "practice/Placement.h"
#include "practice/Text.h"
#include "skills/SkillPool.h"
#include "worldmodel/Formation.h"

namespace support {

using practice::Phase;
using practice::Player;
using practice::Side;
using practice::text;
using practice::Vec;

namespace {

constexpr int WAIT = 20;   // steps before somebody takes a set piece
constexpr int FORGET = 7;  // every so many of them nobody does
constexpr int SELFISH = 8; // and every so many the taker plays on to himself
constexpr int KEEPER = 1;
constexpr int LURKER = 11; // does not care about offside
constexpr int ANYBODY = -1;

/// A team-mate, or a point in the own frame with y on the agent's wing.
struct Aim {
    int mate;
    double x = 0.0, y = 0.0;
};
constexpr Aim PASS{ANYBODY}, BACK{KEEPER}, LONG{LURKER}, SHOT{0, 60.0, 5.0}, MIDDLE{0, 60.0, 0.0},
    WIDE{0, 60.0, 12.0}, OUT{0, 0.0, 60.0}, CORNER{0, -80.0, 20.0};
// What is done with the ball in the own third, in the middle and in theirs, kick after kick. The
// first row, for example: the first kick in the own third goes back to the goalkeeper, the second
// to the corner, the third to any team-mate, the fourth out; after the eighth it starts anew.
constexpr Aim SCHEDULE[3][8] = {
    {BACK, CORNER, PASS, OUT, CORNER, PASS, CORNER, OUT},
    {PASS, OUT, PASS, PASS, LONG, PASS, OUT, PASS},
    {SHOT, PASS, MIDDLE, WIDE, SHOT, PASS, MIDDLE, SHOT},
};

Vec turned(Vec v, Side side) {
    return v * practice::sign(side);
}
Vec turned(Vector2D v, Side side) {
    return turned(Vec{static_cast<double>(v.x), static_cast<double>(v.y)}, side);
}
Vec homeOf(Player const& p) {
    return turned(Formation::homePosition(p.unum), p.side);
}
double bearing(Player const& p, Vec target) {
    return practice::toDeg(practice::normalized((target - p.pos).angle() - p.body));
}

/// A team-mate's words about the ball.
std::string ballReport(practice::Movable const& ball, Side side) {
    Vec const pos = turned(ball.pos, side);
    Vec const vel = turned(ball.vel, side) * 20.0;
    std::string report = ConfigFile::sayID.substr(0, 1);
    for (double const number : {pos.x, pos.y, vel.x, vel.y}) {
        report += {number < 0.0 ? 'y' : 'x', SkillPool::do_ascii(static_cast<float>(number))};
    }
    return report;
}

} // namespace

Script::Script(practice::Match& played, int agentId)
    : match_(played), world_(played.world()), agent_(world_.player(agentId)) {}

void Script::act() {
    bool const changed = !(world_.mode == mode_);
    cyclesInMode_ = changed ? 0 : cyclesInMode_ + 1;
    mode_ = world_.mode;
    if (changed && mode_.isSetPiece()) ++setPieces_;
    practice::Table<int, 2> const next{nextAtBall(Side::left), nextAtBall(Side::right)};
    for (Player const& p : world_.players) {
        // The view with the fewest sees, since nobody reads them.
        if (cycle_ == 0) send(p, "(change_view wide high)");
        play(p, next[index(p.side)]);
    }
    talk();
    ++cycle_;
}

void Script::send(Player const& p, std::string const& command) {
    if (&p != &agent_) match_.receive(playerId(p), command);
}

void Script::play(Player const& p, int nextAtBall) {
    if (mode_ == Phase::beforeKickOff || mode_ == Phase::goal) {
        Vec const place = turned(Formation::initialPosition(p.unum), Side::left);
        if (distance(p.pos, turned(place, p.side)) > 1.0) {
            send(p, text("(move ", place.x, ' ', place.y, ')'));
        }
    } else if (nextAtBall == playerId(p)) {
        playBall(p);
    } else if (Vec const place = placeOf(p); distance(p.pos, place) > 3.0) {
        runTo(p, place);
    }
}

void Script::playBall(Player const& p) {
    bool const waits = mode_.isSetPiece() && (cyclesInMode_ < WAIT || setPieces_ % FORGET == 0);
    double const gap = distance(p.pos, world_.ball.pos);
    if (p.goalie && mode_ == Phase::playOn && gap < practice::parameter("catchAreaLength")) {
        send(p, text("(catch ", bearing(p, world_.ball.pos), ')'));
    } else if (gap > practice::KICKABLE_AREA) {
        runTo(p, world_.ball.pos + world_.ball.vel * 3.0);
    } else if (!waits) {
        bool const selfish = mode_.isSetPiece() && setPieces_ % SELFISH == 0;
        Vec const target = selfish ? p.pos + turned(Vec{2.0, 0.0}, p.side) : aim(p);
        double const power = 6.0 * distance(p.pos, target) + 15.0; // rolls there and a bit on
        send(p, text("(kick ", power, ' ', bearing(p, target), ')'));
    }
}

void Script::runTo(Player const& p, Vec target) {
    double const angle = bearing(p, target);
    send(p, std::abs(angle) > 15.0 ? text("(turn ", angle, ')') : "(dash 70)");
}

Vec Script::placeOf(Player const& p) const {
    if (p.unum == LURKER) return {practice::sign(p.side) * 43.0, wing() * 8.0};
    if (p.unum != KEEPER) return practice::cutToPitch(homeOf(p) + world_.ball.pos * 0.4);
    return {practice::sign(p.side) * -50.0, std::clamp(world_.ball.pos.y * 0.2, -6.0, 6.0)};
}

/// The half of the pitch, +1 or -1, where the agent has its home: set pieces that it is to take
/// must be near it.
double Script::wing() const {
    double const y = homeOf(agent_).y;
    return std::copysign(1.0, y != 0.0 ? y : setPieces_ % 2 - 0.5);
}

/// Where the next kick goes.
Vec Script::aim(Player const& p) {
    double const x = turned(p.pos, p.side).x;
    int const third = x < -20.0 ? 0 : x < 20.0 ? 1 : 2;
    int const kick = kicks_[index(p.side)][third]++;
    auto const at = [&](Aim const& a) { return Vec{practice::sign(p.side) * a.x, wing() * a.y}; };
    // The agent only walks to a corner: when it is near one it gets one.
    bool const cornerNow = third == 0 && distance(agent_.pos, at({0, -52.0, 33.0})) < 30.0;
    Aim const aim = cornerNow ? CORNER : SCHEDULE[third][kick % 8];
    if (aim.mate == 0) return at(aim);
    // Half of the passes are the agent's; a goalkeeper gets those of the opponents.
    bool const ours = p.side == agent_.side;
    bool const agents = agent_.goalie ? !ours : ours && kick % 4 < 2;
    if (aim.mate == ANYBODY && agents) return agent_.pos;
    int const forward = p.unum < 6 ? 6 + kick % 3 : 9 + kick % 2;
    return world_.player(playerId(p.side, aim.mate == ANYBODY ? forward : aim.mate)).pos;
}

/// Who of the team is to go to the ball: in set pieces, as the agent chooses, the field player with
/// the nearest home.
int Script::nextAtBall(Side side) const {
    bool const setPiece = mode_.isSetPiece();
    if ((setPiece && mode_.side != side) || mode_.isStopped()) return practice::NOBODY;
    if (world_.ballHolder != practice::NOBODY) return world_.ballHolder;
    for (Side const owner : {Side::left, Side::right}) { // in its area the ball is the keeper's
        if (!setPiece && practice::isInPenaltyArea(world_.ball.pos, owner)) {
            return owner == side ? playerId(side, KEEPER) : practice::NOBODY;
        }
    }
    // Nobody helps a goalkeeper whose play is to be seen.
    bool const alone =
        agent_.goalie && side == agent_.side && turned(world_.ball.pos, side).x < 0.0;
    if (!setPiece && alone) return practice::NOBODY;
    bool const byHome = setPiece && !(mode_ == Phase::kickOff);
    auto const gap = [&](Player const& p) {
        if (p.side != side || (byHome && p.unum == KEEPER)) {
            return std::numeric_limits<double>::max();
        }
        return distance(byHome ? homeOf(p) : p.pos, world_.ball.pos);
    };
    return playerId(*std::ranges::min_element(world_.players, {}, gap));
}

void Script::talk() {
    constexpr std::string_view LETTERS = "vxyXY019aszZ ().+-*/?<>_";
    int const unum = 2 + cycle_ / 10 % 10;
    std::string words = ballReport(world_.ball, agent_.side);
    if (cycle_ % 10 == 0) {
        send(world_.player(playerId(agent_.side, unum)), "(say \"" + words + "\")");
    } else if (cycle_ % 10 == 5) {
        for (char& c : std::span(words).subspan(1)) {
            c = LETTERS[static_cast<std::size_t>(random_.uniform(0.0, std::ssize(LETTERS)))];
        }
        send(world_.player(playerId(other(agent_.side), unum)), "(say \"" + words + "\")");
    }
}

} // namespace support
