#include "practice/Eyes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "practice/Parameters.h"
#include "practice/Text.h"

namespace practice {

namespace {

constexpr double LAND_STEP = parameter("landQuantizeStep");
constexpr double MOVABLE_STEP = parameter("distQuantizeStep");
constexpr double HALF_NORMAL = parameter("visibleAngle") / 2.0;
constexpr std::array<double, 3> HALF_CONES_DEG{HALF_NORMAL / 2.0, HALF_NORMAL, HALF_NORMAL * 2.0};

struct Landmark {
    std::string_view name;
    Vec pos;
};

// clang-format off
constexpr std::array<Landmark, 55> LANDMARKS{{
    {"f c",     {0, 0}},         {"f c t",   {0, -34}},       {"f c b",   {0, 34}},        {"f r t",   {52.5, -34}},
    {"f r b",   {52.5, 34}},     {"f l t",   {-52.5, -34}},   {"f l b",   {-52.5, 34}},    {"f g r b", {52.5, 7.01}},
    {"g r",     {52.5, 0}},      {"f g r t", {52.5, -7.01}},  {"f g l b", {-52.5, 7.01}},  {"g l",     {-52.5, 0}},
    {"f g l t", {-52.5, -7.01}}, {"f p r b", {36, 20.16}},    {"f p r c", {36, 0}},        {"f p r t", {36, -20.16}},
    {"f p l b", {-36, 20.16}},   {"f p l c", {-36, 0}},       {"f p l t", {-36, -20.16}},  {"f t 0",   {0, -39}},
    {"f t r 10",{10, -39}},      {"f t r 20",{20, -39}},      {"f t r 30",{30, -39}},      {"f t r 40",{40, -39}},
    {"f t r 50",{50, -39}},      {"f t l 10",{-10, -39}},     {"f t l 20",{-20, -39}},     {"f t l 30",{-30, -39}},
    {"f t l 40",{-40, -39}},     {"f t l 50",{-50, -39}},     {"f b 0",   {0, 39}},        {"f b r 10",{10, 39}},
    {"f b r 20",{20, 39}},       {"f b r 30",{30, 39}},       {"f b r 40",{40, 39}},       {"f b r 50",{50, 39}},
    {"f b l 10",{-10, 39}},      {"f b l 20",{-20, 39}},      {"f b l 30",{-30, 39}},      {"f b l 40",{-40, 39}},
    {"f b l 50",{-50, 39}},      {"f r 0",   {57.5, 0}},      {"f r t 10",{57.5, -10}},    {"f r t 20",{57.5, -20}},
    {"f r t 30",{57.5, -30}},    {"f r b 10",{57.5, 10}},     {"f r b 20",{57.5, 20}},     {"f r b 30",{57.5, 30}},
    {"f l 0",   {-57.5, 0}},     {"f l t 10",{-57.5, -10}},   {"f l t 20",{-57.5, -20}},   {"f l t 30",{-57.5, -30}},
    {"f l b 10",{-57.5, 10}},    {"f l b 20",{-57.5, 20}},    {"f l b 30",{-57.5, 30}},
}};

/// A line lies at `offset` along its normal and reaches `halfLength` to both sides of the axis.
struct Line {
    char name;
    double normalDeg, offset, halfLength;
};
constexpr std::array<Line, 4> LINES{{
    {'l', 180.0, PITCH_HALF_LENGTH, PITCH_HALF_WIDTH},
    {'r',   0.0, PITCH_HALF_LENGTH, PITCH_HALF_WIDTH},
    {'t', -90.0, PITCH_HALF_WIDTH,  PITCH_HALF_LENGTH},
    {'b',  90.0, PITCH_HALF_WIDTH,  PITCH_HALF_LENGTH},
}};
// clang-format on

/// 0 up to `from`, then growing to 1 at `to`.
double fading(double dist, double from, double to) {
    return std::clamp((dist - from) / (to - from), 0.0, 1.0);
}

class Eyes {
public:
    Eyes(std::string& out, World const& world, Player const& viewer, Random& random)
        : out_(out), world_(world), me_(viewer), random_(random), gaze_(viewer.gaze()),
          high_(viewer.view.quality == Quality::high),
          halfCone_(toRad(HALF_CONES_DEG[static_cast<std::size_t>(viewer.view.width)])),
          ahead_(polar(1.0, gaze_)), leastCosine_(std::cos(halfCone_ + MARGIN)) {}

    void look() {
        appendText(out_, "(see ", world_.cycle);
        for (auto const& [name, pos] : LANDMARKS) {
            seeThing(name, name.front() == 'g' ? 'G' : 'F', pos, LAND_STEP, {});
        }
        seeThing("b", 'B', world_.ball.pos, MOVABLE_STEP, world_.ball.vel);
        for (Player const& p : world_.players) {
            if (p.active && &p != &me_) seePlayer(p);
        }
        bool const inside =
            std::abs(me_.pos.x) < PITCH_HALF_LENGTH && std::abs(me_.pos.y) < PITCH_HALF_WIDTH;
        int left = inside ? 1 : 2; // from outside two lines are in sight
        for (Line const& line : LINES) {
            if (left > 0 && seeLine(line)) --left;
        }
        out_ += ')';
    }

private:
    struct Seen {
        bool inCone = false;
        double trueDistance = 0.0;
        double distance = 0.0; ///< as seen
        Vec to{};              ///< the way to the object
        int dir = 0;           ///< degrees
    };

    /// Nothing for what is outside the view cone, unless it is close enough to be felt.
    std::optional<Seen> lookAt(Vec pos, double step) const {
        Vec const to = pos - me_.pos;
        double const length = to.length();
        bool const near = length <= parameter("visibleDist");
        // Most are far outside; for them an angle need not be worked out.
        if (!near && dot(to, ahead_) < length * leastCosine_) return std::nullopt;
        double const rel = normalized(to.angle() - gaze_);
        bool const inCone = std::abs(rel) < halfCone_;
        if (!inCone && !near) return std::nullopt;
        return Seen{inCone, length, seenDistance(length, step), to, wholeDegrees(rel)};
    }

    template <typename... Name>
    void open(Name const&... name) {
        appendText(out_, " ((", name..., ')');
    }

    void place(Seen const& seen) {
        if (high_) appendText(out_, ' ', seen.distance);
        appendText(out_, ' ', seen.dir);
    }

    void changes(Seen const& seen, Vec velocity) {
        Vec const w = velocity - me_.vel;
        Vec const unit = polar(1.0, seen.to.angle());
        double const d = std::max(seen.trueDistance, 1e-10); // two objects on one spot
        double const along = quantized(dot(w, unit) / d, 0.02);
        double const across = toDeg((w.y * unit.x - w.x * unit.y) / d);
        appendText(out_, ' ', seen.distance * along, ' ', quantized(across, 0.1));
    }

    /// Ball or landmark: the changes are recognised from near only.
    void seeThing(std::string_view name, char closeName, Vec pos, double step, Vec velocity) {
        auto const seen = lookAt(pos, step);
        if (!seen) return;
        if (seen->inCone) {
            open(name);
        } else {
            open(closeName);
        }
        place(*seen);
        if (high_ && seen->inCone && !random_.happens(fading(seen->distance, 20.0, 40.0))) {
            changes(*seen, velocity);
        }
        out_ += ')';
    }

    void seePlayer(Player const& p) {
        auto const seen = lookAt(p.pos, MOVABLE_STEP);
        if (!seen) return;
        bool number = false;
        if (seen->inCone) {
            number = openPlayer(p, *seen);
        } else {
            open('P');
        }
        place(*seen);
        if (number && high_) {
            changes(*seen, p.vel);
            appendText(out_, ' ', wholeDegrees(p.body - gaze_), ' ',
                       wholeDegrees(p.body + p.neck - gaze_));
        }
        out_ += ')';
    }

    /// Far away the team's name fades, and before it the number; returns whether that was seen.
    bool openPlayer(Player const& p, Seen const& seen) {
        bool const team = !random_.happens(fading(seen.distance, 40.0, 60.0));
        bool const number = team && !random_.happens(fading(seen.distance, 20.0, 40.0));
        out_ += " ((p";
        if (team) appendText(out_, " \"", world_.teamName(p.side), '"');
        if (number) appendText(out_, ' ', p.unum, p.goalie ? " goalie" : "");
        out_ += ')';
        return number;
    }

    /// Whether the line of sight hits the line. Its direction is the angle between the two, not the
    /// bearing of a point.
    bool seeLine(Line const& line) {
        Vec const outward = polar(1.0, toRad(line.normalDeg));
        double const toLine = line.offset - dot(me_.pos, outward);
        double const normal = toRad(toLine < 0.0 ? line.normalDeg + 180.0 : line.normalDeg);
        double const a = normalized(normal - gaze_);
        if (std::abs(a) >= std::numbers::pi / 2.0) return false;
        double const length = std::abs(toLine) / std::cos(a);
        Vec const hit = me_.pos + polar(length, gaze_);
        bool const upright = line.name == 'l' || line.name == 'r';
        if (std::abs(upright ? hit.y : hit.x) > line.halfLength) return false;
        int const dir = static_cast<int>(std::rint(toDeg(a) + (a > 0.0 ? -90.0 : 90.0)));
        open("l ", line.name);
        place({.distance = seenDistance(length, LAND_STEP), .dir = dir});
        out_ += ')';
        return true;
    }

    static constexpr double MARGIN = 1e-6; ///< far more than rounding can do

    std::string& out_;
    World const& world_;
    Player const& me_;
    Random& random_;
    double gaze_;
    bool high_;
    double halfCone_;
    Vec ahead_;          ///< the unit vector of the gaze
    double leastCosine_; ///< of the angle between it and what may be in the cone
};

} // namespace

void appendSee(std::string& out, World const& world, Player const& viewer, Random& random) {
    Eyes(out, world, viewer, random).look();
}

int seeInterval(View view) {
    constexpr std::array<int, 3> HIGH_TICKS{2, 4, 8};
    int const ticks = HIGH_TICKS[static_cast<std::size_t>(view.width)];
    return view.quality == Quality::high ? ticks : ticks / 2;
}

double seenDistance(double metres, double step) {
    return quantized(std::exp(quantized(std::log(metres + 1e-10), step)), 0.1);
}

} // namespace practice
