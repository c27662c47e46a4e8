#include "stats/BallChain.h"

#include <cmath>

namespace stats {

namespace {

constexpr double PASS_DISTANCE = 3;    // metres; what rolls less is lost in a duel or handed over
constexpr double DRIBBLE_DISTANCE = 3; // metres between a player's first and last touch
constexpr double NARROW_MISS = 3;      // metres beside a post that still make a shot

double distance(Point const& a, Point const& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

/// The direction of play: 1 for the left team, which attacks to the right.
double attackOf(Side side) {
    return side == Side::left ? 1 : -1;
}

} // namespace

template <typename Change>
void BallChain::forBoth(Side side, int unum, Change change) {
    change(static_cast<BallFigures&>(figures_.team(side)));
    change(static_cast<BallFigures&>(figures_.player(side, unum)));
}

void BallChain::touch(Touch const& touch) {
    bool const same = last_ && last_->side == touch.side && last_->unum == touch.unum;
    if (last_ && !same) closeBy(touch);
    if (!same) dribbleFrom_ = touch.moment.place;
    switch (touch.kind) {
    case TouchKind::kick:
        ++figures_.player(touch.side, touch.unum).kicks;
        break;
    case TouchKind::tackle:
        forBoth(touch.side, touch.unum, [](BallFigures& f) { ++f.tackles; });
        break;
    case TouchKind::catchBall:
        forBoth(touch.side, touch.unum, [](BallFigures& f) { ++f.catches; });
        event("catch", touch.side, touch.unum, touch.moment);
        break;
    }
    last_ = touch;
    owner_ = touch.side;
}

void BallChain::duel() {
    if (last_) endDribble();
    last_.reset();
}

void BallChain::goal(Side side, Moment const& moment) {
    bool const own = last_ && last_->side != side;
    int const scorer = last_ && !own ? last_->unum : 0;
    if (scorer > 0) {
        shot(true);
        ++figures_.player(side, scorer).goals;
    }
    event("goal", side, scorer, moment).detail = own ? "own_goal" : "";
    stop();
}

void BallChain::ballOut(Moment const& moment) {
    Event out{moment.show, moment.cycle, "ball_out", {}, 0, 0, moment.place, {}};
    if (last_) {
        lost(moment.place);
        out.side = last_->side;
        out.unum = last_->unum;
    }
    figures_.events.push_back(out);
    stop();
}

void BallChain::offside(Side offender, Moment const& moment) {
    if (last_ && last_->side == offender) pass(moment.place, 0);
    stop();
}

void BallChain::stop() {
    duel();
    owner_.reset();
}

void BallChain::closeBy(Touch const& next) {
    endDribble();
    Point const& to = next.moment.place;
    if (next.side == last_->side) {
        pass(to, next.unum);
    } else if (lost(to)) {
        forBoth(next.side, next.unum, [](BallFigures& f) { ++f.interceptions; });
        event("interception", next.side, next.unum, next.moment);
    }
}

bool BallChain::lost(Point const& to) {
    if (last_->kind == TouchKind::catchBall) return false;
    Aim const aim = aimOf(*last_);
    if (aim == Aim::elsewhere) return pass(to, 0);
    shot(aim == Aim::onTarget);
    return false;
}

bool BallChain::pass(Point const& to, int receiver) {
    Touch const& kick = *last_;
    Point const& from = kick.moment.place;
    if (kick.kind == TouchKind::catchBall || distance(from, to) < PASS_DISTANCE) return false;
    bool const arrived = receiver > 0;
    forBoth(kick.side, kick.unum, [arrived](BallFigures& f) {
        ++f.passes;
        f.passesArrived += arrived ? 1 : 0;
    });
    if (arrived) ++figures_.player(kick.side, receiver).passesReceived;

    TeamFigures& team = figures_.team(kick.side);
    double const ahead = attackOf(kick.side) * (to.x - from.x);
    double const aside = attackOf(kick.side) * (to.y - from.y); // to the right hand
    if (std::abs(ahead) >= std::abs(aside)) {
        ++(ahead > 0 ? team.passesForward : team.passesBack);
    } else {
        ++(aside > 0 ? team.passesRight : team.passesLeft);
    }
    Event& told = event("pass", kick.side, kick.unum, kick.moment);
    told.to = receiver;
    told.detail = arrived ? "arrived" : "lost";
    return true;
}

void BallChain::shot(bool onTarget) {
    forBoth(last_->side, last_->unum, [onTarget](BallFigures& f) {
        ++f.shots;
        f.shotsOnTarget += onTarget ? 1 : 0;
    });
    event("shot", last_->side, last_->unum, last_->moment).detail =
        onTarget ? "on_target" : "off_target";
}

void BallChain::endDribble() {
    if (distance(dribbleFrom_, last_->moment.place) < DRIBBLE_DISTANCE) return;
    forBoth(last_->side, last_->unum, [](BallFigures& f) { ++f.dribbles; });
}

Event& BallChain::event(std::string_view name, Side side, int unum, Moment const& moment) {
    return figures_.events.emplace_back(
        Event{moment.show, moment.cycle, name, side, unum, 0, moment.place, {}});
}

BallChain::Aim BallChain::aimOf(Touch const& touch) const {
    double const attack = attackOf(touch.side);
    double const toGo = pitch_.halfLength - attack * touch.ball.x;
    double const speed = attack * touch.ball.vx;
    if (speed <= 0 || toGo < 0) return Aim::elsewhere;
    // A ball left alone rolls v + v d + v d^2 + ...
    bool const reaches = speed >= toGo * (1 - pitch_.ballDecay);
    double const miss =
        std::abs(touch.ball.y + touch.ball.vy * toGo / speed) - pitch_.goalHalfWidth;
    if (!reaches || miss > NARROW_MISS) return Aim::elsewhere;
    return miss > 0 ? Aim::wide : Aim::onTarget;
}

} // namespace stats
