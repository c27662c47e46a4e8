#include "practice/Physics.h"

#include <algorithm>
#include <numeric>
#include <optional>

#include "practice/Parameters.h"

namespace practice {

namespace {

constexpr double CONTACT_DISTANCE = PLAYER_SIZE + BALL_SIZE;
constexpr int THE_BALL = MAX_PLAYERS; ///< its index among the objects, after the players

struct Motion {
    double size, decay, noise, accelMax, speedMax;
};

constexpr Motion BALL_MOTION{BALL_SIZE, parameter("ballDecay"), parameter("ballRandom"),
                             parameter("ballAccelMax"), parameter("ballSpeedMax")};
constexpr Motion PLAYER_MOTION{PLAYER_SIZE, parameter("playerDecay"), parameter("playerRandom"),
                               parameter("playerAccelMax"), parameter("playerSpeedMax")};

Vec nearestPost(Vec pos) {
    return {std::copysign(PITCH_HALF_LENGTH - POST_RADIUS, pos.x),
            std::copysign(GOAL_HALF_WIDTH + POST_RADIUS, pos.y)};
}

Vec mirrored(Vec v, Vec normal) {
    return v - normal * (2.0 * dot(v, normal));
}

/// The share of the path, 0 to 1, after which it enters the circle around `centre`.
std::optional<double> entry(Vec from, Vec path, Vec centre, double radius) {
    Vec const rel = from - centre;
    double const a = dot(path, path);
    double const b = dot(rel, path);
    double const root = b * b - a * (dot(rel, rel) - radius * radius);
    if (a == 0.0 || b >= 0.0 || root <= 0.0) return std::nullopt;
    double const share = (-b - std::sqrt(root)) / a;
    return share >= 0.0 && share <= 1.0 ? std::optional(share) : std::nullopt;
}

void applyDash(Player& p) {
    if (!p.dashing) return;
    ++p.counts.dash;
    bool const backwards = p.dashPower < 0.0;
    double const wanted = backwards ? -2.0 * p.dashPower : p.dashPower;
    double const spent = std::min(wanted, p.stamina + p.extra);
    p.extra = std::min(p.extra, p.stamina + p.extra - spent);
    p.stamina = std::max(0.0, p.stamina - spent);
    double const power = backwards ? -spent / 2.0 : spent;
    p.acc += polar(p.effort * power * parameter("dashPowerRate"), p.body + p.dashDir);
}

void applyTurns(Player& p) {
    p.body = normalized(p.body + p.pendingTurn);
    p.neck = std::clamp(p.neck + p.pendingNeck, toRad(parameter("minNeckAngle")),
                        toRad(parameter("maxNeckAngle")));
    p.pendingTurn = p.pendingNeck = 0.0;
}

/// Returns whether it hit a goal post.
bool moveOne(Movable& m, Motion const& motion, Random& random) {
    if (m.acc != Vec{}) {
        m.vel = shortenedTo(m.vel + shortenedTo(m.acc, motion.accelMax), motion.speedMax);
    }
    double const noise = random.uniform(0.0, motion.noise * m.vel.length());
    m.vel += polar(noise, random.direction());
    Vec const wanted = m.vel;
    m.pos = moveAlong(m.pos, m.vel, motion.size);
    bool const hitPost = m.vel != wanted;
    m.vel *= motion.decay;
    m.acc = Vec{};
    return hitPost;
}

void moveEverything(World& world, Random& random) {
    std::array<int, MAX_PLAYERS + 1> order{};
    std::iota(order.begin(), order.end(), 0);
    random.shuffle(std::span<int>(order));
    for (int const i : order) {
        if (i == THE_BALL) {
            moveOne(world.ball, BALL_MOTION, random);
        } else if (Player& p = world.player(i); p.active) {
            applyTurns(p);
            if (moveOne(p, PLAYER_MOTION, random)) p.marks |= gamelog::state::HIT_POST;
        }
    }
}

/// Objects that overlap after the movement are pushed apart, in rounds because that may push them
/// into others; whoever was in it bounces back once.
class Collisions {
public:
    Collisions(World& world, Random& random) : world_(world), random_(random) {}

    /// Returns the players that the ball ran into.
    Players resolve() {
        constexpr int MAX_ROUNDS = 10;
        for (int round = 0; round < MAX_ROUNDS && separateAll(); ++round) {
            moveToMeans();
        }
        constexpr double DAMPING = -0.1;
        Players touchers;
        for (int i = 0; i <= THE_BALL; ++i) {
            if (collided_[i]) object(i).vel *= DAMPING;
            if (touchedBall_[i]) touchers.add(i);
        }
        return touchers;
    }

private:
    using Marks = Table<bool, MAX_PLAYERS + 1>;
    struct Mean {
        Vec sum;
        int count = 0;
        void add(Vec v) {
            sum += v;
            ++count;
        }
    };

    Movable& object(int i) { return i == THE_BALL ? world_.ball : world_.player(i); }

    bool separateAll() {
        bool any = false;
        for (int i = 0; i < MAX_PLAYERS; ++i) {
            if (!world_.player(i).active) continue;
            if (i != world_.ballHolder && separate(THE_BALL, i)) any = touchedBall_[i] = true;
            for (int j = i + 1; j < MAX_PLAYERS; ++j) {
                any |= world_.player(j).active && separate(i, j);
            }
        }
        return any;
    }

    bool separate(int i, int j) {
        constexpr double ROUNDING = 1e-10; // two that just touch do not collide again
        double const reach = i == THE_BALL ? CONTACT_DISTANCE : 2.0 * PLAYER_SIZE;
        Vec const a = object(i).pos;
        Vec const b = object(j).pos;
        double const gap = distance(a, b);
        if (gap >= reach - ROUNDING) return false;
        Vec const unit = gap > 0.0 ? (b - a) * (1.0 / gap) : polar(1.0, random_.direction());
        mark(i, j);
        if (i == THE_BALL && world_.mode != Phase::playOn) { // it waits there for its set piece
            means_[j].add(a + unit * reach);
        } else {
            Vec const middle = (a + b) * 0.5;
            means_[i].add(middle - unit * (reach / 2.0));
            means_[j].add(middle + unit * (reach / 2.0));
        }
        return collided_[i] = collided_[j] = true;
    }

    /// The first of the two may be the ball.
    void mark(int i, int j) {
        namespace state = gamelog::state;
        if (i == THE_BALL) {
            world_.player(j).marks |= state::COLLIDED_BALL | state::BALL_TO_PLAYER;
        } else {
            world_.player(i).marks |= state::COLLIDED_PLAYER;
            world_.player(j).marks |= state::COLLIDED_PLAYER;
        }
    }

    void moveToMeans() {
        for (int i = 0; i <= THE_BALL; ++i) {
            auto const [sum, count] = std::exchange(means_[i], {});
            if (count > 0) object(i).pos = sum * (1.0 / count);
        }
    }

    World& world_;
    Random& random_;
    Table<Mean, MAX_PLAYERS + 1> means_{}; ///< where the running round sends each object
    Marks collided_{};
    Marks touchedBall_{};
};

void recoverStamina(Player& p) {
    constexpr double MOST = parameter("staminaMax");
    if (p.stamina <= parameter("recoverDecThr") * MOST) {
        p.recovery = std::max(parameter("recoverMin"), p.recovery - parameter("recoverDec"));
    }
    if (p.stamina <= parameter("effortDecThr") * MOST) {
        p.effort = std::max(parameter("effortMin"), p.effort - parameter("effortDec"));
    }
    if (p.stamina >= parameter("effortIncThr") * MOST) {
        p.effort = std::min(parameter("effortInit"), p.effort + parameter("effortInc"));
    }
    double const gain =
        std::min({p.recovery * parameter("staminaInc"), MOST - p.stamina, p.capacity});
    p.stamina += gain;
    p.capacity -= gain;
}

} // namespace

void turn(Player& player, double momentDeg, Random& random) {
    constexpr double NOISE = parameter("playerRandom");
    double const moment = std::clamp(momentDeg, parameter("minMoment"), parameter("maxMoment")) *
                          (1.0 + random.uniform(-NOISE, NOISE));
    player.pendingTurn = toRad(moment) / (1.0 + parameter("inertiaMoment") * player.vel.length());
}

void turnNeck(Player& player, double momentDeg) {
    player.pendingNeck =
        toRad(std::clamp(momentDeg, parameter("minNeckMoment"), parameter("maxNeckMoment")));
}

void dash(Player& player, double power, double dirDeg) {
    player.dashing = true;
    player.dashDir = toRad(dirDeg);
    player.dashPower = std::clamp(power, MIN_DASH_POWER, parameter("maxPower"));
}

bool kick(World& world, Player const& player, double power, double dirDeg, Random& random) {
    Vec const toBall = world.ball.pos - player.pos;
    if (toBall.length() > KICKABLE_AREA) return false;
    constexpr double MAX_POWER = parameter("maxPower");
    double const p = std::clamp(power, parameter("minPower"), MAX_POWER);
    double const dir = toRad(std::clamp(dirDeg, -180.0, 180.0));
    double const side = std::abs(normalized(toBall.angle() - player.body)) / std::numbers::pi;
    double const gap = (toBall.length() - CONTACT_DISTANCE) / parameter("kickableMargin");

    double const strength = p * parameter("kickPowerRate") * (1.0 - 0.25 * side - 0.25 * gap);
    double const awkwardness = 0.5 + 0.25 * (side + gap);
    double const ballRush =
        0.5 + 0.5 * world.ball.vel.length() / (parameter("ballSpeedMax") * parameter("ballDecay"));
    double const noise = parameter("kickRandom") * (p / MAX_POWER) * (awkwardness + ballRush);
    world.ball.acc += polar(strength, player.body + dir);
    double const jolt = random.uniform(0.0, noise);
    world.ball.acc += polar(jolt, random.direction());
    return true;
}

bool catchBall(World& world, Player& goalie, double dirDeg) {
    double const dir =
        goalie.body + toRad(std::clamp(dirDeg, -MAX_CATCH_ANGLE_DEG, MAX_CATCH_ANGLE_DEG));
    Vec const toBall = world.ball.pos - goalie.pos;
    double const along = dot(toBall, polar(1.0, dir));
    double const across = dot(toBall, polar(1.0, dir + std::numbers::pi / 2.0));
    if (along < 0.0 || along > parameter("catchAreaLength") ||
        std::abs(across) > parameter("catchAreaWidth") / 2.0) {
        return false;
    }
    goalie.body = toBall.angle();
    goalie.pos = world.ball.pos - polar(CONTACT_DISTANCE, goalie.body);
    goalie.pendingTurn = 0.0;
    goalie.halt();
    world.ball.halt();
    return true;
}

Players moveAll(World& world, Random& random) {
    for (Player& p : world.players) {
        applyDash(p);
    }
    if (world.mode == Phase::timeOver) return {}; // dashes cost stamina but move nobody
    if (world.mode == Phase::beforeKickOff) {
        world.ball.halt();
        for (Player& p : world.players) {
            applyTurns(p);
            p.halt();
        }
        return {};
    }
    moveEverything(world, random);
    Players touchers = Collisions(world, random).resolve();
    if (world.ballHolder != NOBODY) {
        Player const& goalie = world.player(world.ballHolder);
        world.ball.pos = goalie.pos + polar(CONTACT_DISTANCE, goalie.body);
        world.ball.halt();
    }
    return touchers;
}

void recoverAll(World& world) {
    for (Player& p : world.players) {
        if (!p.active) continue;
        recoverStamina(p);
        for (int& capacity : p.hearing) {
            capacity = std::min(capacity + wholeParameter("hearInc"), wholeParameter("hearMax"));
        }
        p.catchBan = std::max(0, p.catchBan - 1);
        p.answered = p.sightSent = p.done = p.bodyUsed = p.neckUsed = p.dashing = false;
    }
}

Vec moveAlong(Vec pos, Vec& vel, double size) {
    double const radius = POST_RADIUS + size;
    Vec const post = nearestPost(pos);
    if (double const d = distance(pos, post); d > 0.0 && d < radius) {
        Vec const normal = (pos - post) * (1.0 / d);
        pos = post + normal * radius;
        if (dot(vel, normal) < 0.0) vel = mirrored(vel, normal);
    }
    Vec const postAhead = nearestPost(pos + vel);
    std::optional<double> const share = entry(pos, vel, postAhead, radius);
    if (!share) return pos + vel;
    Vec const contact = pos + vel * *share;
    vel = mirrored(vel, (contact - postAhead) * (1.0 / radius));
    return contact + vel * (1.0 - *share);
}

} // namespace practice
