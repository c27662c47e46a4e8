// Searches among the players, and interception of the ball.

#include "worldmodel/WorldModel.h"

#include <algorithm>

#include "worldmodel/Formation.h"
#include "worldmodel/Timeval.h"

namespace {

/// How far ahead an interception is looked for.
constexpr int INTERCEPTION_CYCLES = 24;

/// Whole milliseconds, both ends included.
struct Span {
    int first;
    int last;

    constexpr bool holds(int msec) const { return first <= msec && msec <= last; }
};

// How long after its sense_body a see must not come, to be acted upon in the same half of the
// cycle.
constexpr Span TOO_LATE_FOR_THE_FIRST_HALF = {6, 44};
constexpr Span TOO_LATE_FOR_THE_SECOND_HALF = {65, 99};

/// The best so far of a search for the least value; the first of equal ones stays.
struct Least {
    Player const* player = nullptr;
    float value = UNDEFINED_FLOAT;

    void offer(Player const& candidate, float candidateValue) {
        if (candidateValue < value) {
            player = &candidate;
            value = candidateValue;
        }
    }
};

bool always(Player const& /*player*/) {
    return true;
}
bool ofKnownAge(Player const& player) {
    return player.age >= 0.0F;
}

template <typename Condition>
void offerDistances(Least& least, std::vector<Player> const& players, Vector2D point,
                    Condition condition) {
    for (Player const& player : players) {
        if (condition(player)) least.offer(player, player.position.getDistanceTo(point));
    }
}

template <typename Condition>
int count(std::vector<Player> const& players, Condition condition) {
    return static_cast<int>(
        std::count_if(players.begin(), players.end(), [&condition](Player const& player) {
            return !player.position.isInvalid() && condition(player);
        }));
}

} // namespace

Player const* WorldModel::closestPlayerToPoint(Vector2D point) const {
    Least closest;
    offerDistances(closest, teammates(), point, ofKnownAge);
    offerDistances(closest, opponents(), point, ofKnownAge);
    return closest.player;
}

Player const* WorldModel::closestTeamMateToPoint(Vector2D point) const {
    Least closest;
    offerDistances(closest, teammates(), point, always);
    return closest.player;
}

Player const* WorldModel::closestOpponentToPoint(Vector2D point) const {
    Least closest;
    offerDistances(closest, opponents(), point, always);
    return closest.player;
}

Player const* WorldModel::closestOpponentToMe() const {
    return closestOpponentToPoint(myself().position);
}

Player const* WorldModel::closestTeammateToMe() const {
    return closestTeamMateToPoint(myself().position);
}

Player const* WorldModel::closestOpponentToTeammate(Player const& p) const {
    return closestOpponentToPoint(p.position);
}

Player WorldModel::closestPlayerToPlayer(Player const& p) const {
    Least closest;
    offerDistances(closest, teammates(), p.position, always);
    offerDistances(closest, opponents(), p.position, always);
    return closest.player != nullptr ? *closest.player : Player();
}

Player const* WorldModel::playerWithBall() const {
    Least closest;
    offerDistances(closest, teammates(), ball().position, always);
    offerDistances(closest, opponents(), ball().position, always);
    return closest.player;
}

Player const* WorldModel::secondClosest(Vector2D point, bool amongOpponentsToo) const {
    if (teammates().size() < 2) return nullptr;
    Player const* const first = closestTeamMateToPoint(point);
    if (first == nullptr) return nullptr;
    float const firstDistance = first->position.getDistanceTo(point);
    auto const farther = [&](Player const& player) {
        return firstDistance < player.position.getDistanceTo(point);
    };
    Least second;
    offerDistances(second, teammates(), point, farther);
    if (amongOpponentsToo) offerDistances(second, opponents(), point, farther);
    return second.player;
}

Player const* WorldModel::secondClosestPlayerToPoint(Vector2D point) const {
    return secondClosest(point, true);
}

Player const* WorldModel::secondClosestTeamMateToPoint(Vector2D point) const {
    return secondClosest(point, false);
}

Player const* WorldModel::lastMan() const {
    Least last;
    for (Player const& player : teammates()) {
        if (!ofKnownAge(player) || player.unum == myself().unum) continue;
        last.offer(player, player.position.x - Field::OWN_GOAL_OUTLINE);
    }
    return last.player;
}

Player const* WorldModel::closestTeamMateToOwnGoalOutLine() const {
    Least closest;
    for (Player const& player : teammates()) {
        closest.offer(player, player.position.x - Field::OWN_GOAL_OUTLINE);
    }
    return closest.player;
}

Player const* WorldModel::closestOppFieldPlayerToOppGoalOutLine() const {
    Least closest;
    for (Player const& player : opponents()) {
        if (player.unum == Formation::GOALIE_NUMBER) continue;
        closest.offer(player, Field::OPP_GOAL_OUTLINE - player.position.x);
    }
    return closest.player;
}

Player const* WorldModel::wellPositionedPlayer() const {
    constexpr Vector2D BEFORE_THEIR_GOAL(50.0F, 0.0F, CARTESIAN);
    return closestTeamMateToPoint(BEFORE_THEIR_GOAL);
}

Player const* WorldModel::mostUnvulnerablePlayer() const {
    // Intentional: only the last opponent of the list counts.
    if (opponents().empty()) return nullptr;
    Player const& opponent = opponents().back();
    float farthest = -2.0F;
    Player const* result = nullptr;
    for (Player const& player : teammates()) {
        float const distance = player.position.getDistanceTo(opponent.position);
        if (distance > farthest) {
            farthest = distance;
            result = &player;
        }
    }
    return result;
}

Player const* WorldModel::getPassCand(bool wellPositioned) const {
    constexpr float ANYWHERE_X = -100.0F;
    if (teammates().size() < 2) return nullptr;
    for (Player const& player : teammates()) {
        bool const qualifies =
            (wellPositioned ? isWellPositioned(player) : isUnvulnerable(player)) &&
            isNotMarked(player) && !isIntersected(player.position) && !isMe(&player);
        if (!qualifies) continue;
        return wellPositioned || player.position.x > ANYWHERE_X ? &player : nullptr;
    }
    return nullptr;
}

bool WorldModel::interceptionPoint(Player const& p, Vector2D& point, int& cycles,
                                   bool useKickableMargin) const {
    RollingBall rolling(ball());
    for (int i = 0; i <= INTERCEPTION_CYCLES; ++i, rolling.roll()) {
        point = rolling.position();
        cycles = p.predictedCyclesToPoint(point, useKickableMargin);
        if (cycles <= i) return true;
    }
    return false;
}

Player const* WorldModel::fastestTeammateInterceptingBall() const {
    Player const* result = nullptr;
    // Intentional: the last cycle in which anybody gets there decides, not the first.
    RollingBall rolling(ball());
    for (int i = 0; i <= INTERCEPTION_CYCLES; ++i, rolling.roll()) {
        Vector2D const point = rolling.position();
        auto const found =
            std::find_if(teammates().begin(), teammates().end(), [&](Player const& player) {
                return player.predictedCyclesToPoint(point, false) <= i;
            });
        if (found != teammates().end()) result = &*found;
    }
    return result;
}

int WorldModel::numOpponentsWithinRectangle(Rectangle const& r) const {
    return count(opponents(), [&](Player const& player) {
        return r.isInside(player.position) && !isMe(&player);
    });
}

int WorldModel::numTeammatesWithinRectangle(Rectangle const& r) const {
    return count(teammates(), [&](Player const& player) { return r.isInside(player.position); });
}

int WorldModel::numOpponentsWithin(float const& radius, Vector2D centre) const {
    return count(opponents(), [&](Player const& player) {
        return player.position.getDistanceTo(centre) < radius;
    });
}

int WorldModel::numTeammatesWithin(float const& radius, Vector2D centre) const {
    return count(teammates(), [&](Player const& player) {
        return player.position.getDistanceTo(centre) < radius;
    });
}

bool WorldModel::haveOptimalSeeTimes() const {
    if (seeTimingSettled()) return true;
    BodyInfo const& info = myself().bodyInfo;
    if (info.viewQuality != static_cast<int>(ViewQuality::high) ||
        info.viewWidth != static_cast<int>(ViewMode::normal)) {
        return false;
    }
    int const lateness = Timeval::diffMsec(timeLastSee(), timeLastSB());
    return !TOO_LATE_FOR_THE_FIRST_HALF.holds(lateness) &&
           !TOO_LATE_FOR_THE_SECOND_HALF.holds(lateness);
}
