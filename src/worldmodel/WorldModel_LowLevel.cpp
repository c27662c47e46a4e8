// News for the world model: the wake-up of the main thread and the integration of the messages.

#include "worldmodel/WorldModel.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>

#include "config/Configuration.h"
#include "sensing/Sensors.h"

namespace {

constexpr std::int64_t MICROSECONDS_PER_SECOND = 1000000;
constexpr int SILENCE_SECONDS = 3; ///< counted from the start of the current second

/// Whether the flag was raised; lowers it. To be called before the record is read, so that a
/// message arriving meanwhile raises it again.
bool take(std::atomic<bool>& flag) {
    return flag.exchange(false);
}

} // namespace

void TimeStamp::set(timeval const& time) {
    microseconds_ = time.tv_sec * MICROSECONDS_PER_SECOND + time.tv_usec;
}

timeval TimeStamp::get() const {
    std::int64_t const value = microseconds_;
    return {value / MICROSECONDS_PER_SECOND, value % MICROSECONDS_PER_SECOND};
}

WorldModel::WorldModel() {
    pthread_mutex_init(&mutex_, nullptr);
    pthread_cond_init(&condition_, nullptr);
}

void WorldModel::setTeamname(char const* name) {
    std::snprintf(teamname_.data(), teamname_.size(), "%s", name);
}

bool WorldModel::waitForNewInfo() {
    if (newInfo_.exchange(false)) return true;

    static timeval now;
    static timespec timeout;
    gettimeofday(&now, nullptr);
    timeout.tv_sec = now.tv_sec + SILENCE_SECONDS;
    timeout.tv_nsec = 0;

    pthread_mutex_lock(&mutex_);
    int result = 0;
    // The flag may have been set since the look above; the signal is then past.
    if (!newInfo_) {
        do {
            result = pthread_cond_timedwait(&condition_, &mutex_, &timeout);
        } while (result == EINTR);
    }
    newInfo_ = false;
    pthread_mutex_unlock(&mutex_);
    return result != ETIMEDOUT;
}

void WorldModel::signalNewInfo() {
    pthread_mutex_lock(&mutex_);
    newInfo_ = true;
    pthread_cond_signal(&condition_);
    pthread_mutex_unlock(&mutex_);
}

void WorldModel::setTimeLastSee() {
    lastSee_.set(clock_.see());
    ++seesSinceSenseBody_;
    // Main may not have taken the sense_body before it yet, and then still has the time before.
    lastSeeCycle_ = std::max(currentTime(), newestSenseBody_);
    Sensors::arrivals.stamp(Arrivals::SEE);
    signalNewInfo();
}

void WorldModel::setTimeLastSB() {
    lastSenseBody_.set(clock_.senseBody());
    senseBodyArrived_ = true;
    seesSinceSenseBody_ = 0;
    lastSenseBodyCycle_ = currentTime();
    if (Sensors::newSenseBody) newestSenseBody_ = Sensors::senseBody->time;
    Sensors::arrivals.stamp(Arrivals::SENSE_BODY);
    signalNewInfo();
}

bool WorldModel::integrateSensorInfo() {
    unsigned const arrived = Sensors::arrivals.take();
    if ((arrived & Arrivals::SENSE_BODY) != 0) integrateSenseBody(*Sensors::senseBody);
    if ((arrived & Arrivals::SEE) != 0) integrateSee();
    if (take(Sensors::newRefAudio)) situation_.setPlayMode(Sensors::refAudio->playMode);
    if (take(Sensors::newSelfAudio)) situation_.integrateSelfAudio(*Sensors::selfAudio);
    if (take(Sensors::newPlayerAudio)) situation_.integratePlayerAudio(*Sensors::playerAudio);
    if (take(Sensors::newCoachAudio)) situation_.integrateCoachAudio(*Sensors::coachAudio);
    if (take(Sensors::newScore)) {
        situation_.ourScore = Sensors::score->ours;
        situation_.theirScore = Sensors::score->theirs;
    }
    take(Sensors::newSubstitution); // nothing depends on these two
    take(Sensors::newError);
    if (take(Sensors::newInitMsg)) integrateInitMsg(*Sensors::initMsg);
    if (take(Sensors::newServerParam)) Configuration::integrateServerParam(*Sensors::serverParam);
    if (take(Sensors::newPlayerParam)) Configuration::integratePlayerParam(*Sensors::playerParam);
    if (take(Sensors::newPlayerType)) Configuration::addPlayerType(*Sensors::playerType);
    Sensors::doneReading();
    return arrived != Arrivals::NOTHING;
}

void WorldModel::integrateSenseBody(RCC_SenseBody const& report) {
    BodyInfo& info = myself().bodyInfo;
    info.time = report.time;
    info.viewQuality = report.viewQuality;
    info.viewWidth = report.viewWidth;
    info.stamina = report.stamina;
    info.effort = report.effort;
    info.speedAmount = report.speed;
    info.speedDirection = report.speedDirection.degrees();
    info.headAngle = -report.headAngle.degrees();
    info.executed.kick = report.kicks;
    info.executed.dash = report.dashes;
    info.executed.turn = report.turns;
    info.executed.say = report.says;
    info.executed.turnNeck = report.turnNecks;
    info.executed.goalieCatch = report.catches;
    info.executed.move = report.moves;
    info.executed.changeView = report.changeViews;
    situation_.currentTime = report.time;
    estimateCurrentState();
}

void WorldModel::integrateSee() {
    performSelfLoc(Sensors::lines, Sensors::flags);

    Myself& me = myself();
    me.velocity = Vector2D(me.bodyInfo.speedAmount, me.bodyDirection, POLAR) / Player::DECAY;

    Vector2D const lastPlayerVelocity = integratePlayers();

    if (!Sensors::balls.empty()) {
        integrateSeenBall(Sensors::balls.front(), lastPlayerVelocity);
    } else if (currentTime() - situation_.heardBallTime > BALL_MEMORY) {
        // Intentional: counts from when it was last heard of, not seen.
        Vector2D const unknown(UNDEFINED_FLOAT, UNDEFINED_FLOAT, CARTESIAN);
        ball().position = unknown;
        ball().velocity = unknown;
    }
}

/// Replaces all players by those seen. Returns the velocity of the last one, zero if there is none.
Vector2D WorldModel::integratePlayers() {
    Myself const& me = myself();
    Vector2D lastVelocity;
    auto const append = [&](std::vector<Player>& players, std::vector<RCC_Player> const& seen,
                            bool opponent) {
        for (RCC_Player const& player : seen) {
            players.push_back(playerFromSee(player, opponent));
            lastVelocity = players.back().velocity;
        }
    };

    std::vector<Player>& mine = situation_.myTeam.players;
    mine.resize(1);
    mine[0].position = me.position;
    mine[0].velocity = me.velocity;
    mine[0].bodyDirection = me.bodyDirection;
    mine[0].headDirection = me.headDirection;
    append(mine, Sensors::allies, false);

    situation_.theirTeam.players.clear();
    append(situation_.theirTeam.players, Sensors::enemies, true);

    // A player whose team is not known counts as an opponent.
    situation_.unknownPlayers.clear();
    append(situation_.unknownPlayers, Sensors::neuts, true);
    return lastVelocity;
}

Player WorldModel::playerFromSee(RCC_Player const& seen, bool opponent) const {
    Myself const& me = myself();
    Vector2D const position =
        me.position + Vector2D(seen.distance, me.headDirection - seen.direction.degrees(), POLAR);
    // A motion that is not told, from far away, adds nothing to the agent's own.
    Vector2D velocity = me.velocity;
    if (seen.hasSpeed()) {
        velocity += Vector2D(seen.speed, me.headDirection - seen.speedDirection.degrees(), POLAR) /
                    Player::DECAY;
    }
    return {position,
            velocity,
            seen.bodyDirection.degrees(),
            seen.headDirection.degrees(),
            seen.name.unum,
            seen.name.goalie,
            opponent};
}

void WorldModel::integrateSeenBall(RCC_Ball const& seen, Vector2D const& lastPlayerVelocity) {
    Myself const& me = myself();
    float const direction = me.headDirection - seen.direction.degrees();
    situation_.ballSeenTime = currentTime();
    ball().position = me.position + Vector2D(seen.distance, direction, POLAR);
    if (seen.hasSpeed()) {
        situation_.ballVelocitySeenTime = currentTime();
        ball().velocity = Vector2D(seen.speed, direction, POLAR) + me.velocity * Player::DECAY;
    } else if (currentTime() - situation_.ballVelocitySeenTime > BALL_VELOCITY_MEMORY) {
        ball().velocity = Vector2D();
    } else {
        // Intentional: too far to tell, it gets the velocity of the player seen last, not its own
        // old one.
        ball().velocity = lastPlayerVelocity;
    }
}

void WorldModel::integrateInitMsg(RCC_InitMsg const& msg) {
    myself().unum = msg.unum;
    situation_.side = static_cast<FieldSide>(msg.side);
    // Intentional: the parser's number as it is, not mapped to ours or theirs.
    situation_.playMode = static_cast<int>(msg.playMode.mode);

    Player& mirror = situation_.myTeam.players.front();
    mirror.unum = msg.unum;
    mirror.goalie = isGoalie();
    mirror.bodyDirection = UNDEFINED_FLOAT;
    mirror.headDirection = UNDEFINED_FLOAT;
    mirror.opponent = false;
}
