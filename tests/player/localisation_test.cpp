// Where the agent takes itself and the ball to be: by landmarks at a see, by its commands between.

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/player/Motion.h"
#include "tests/support/AgentHarness.h"

using std::tuple;

namespace {

template <typename Landmark>
Landmark seen(int code, float distance, float direction) {
    Landmark landmark;
    landmark.code = code;
    landmark.distance = distance;
    landmark.direction.value = direction;
    return landmark;
}
RCC_Line line(int code, float distance, float direction) {
    return seen<RCC_Line>(code, distance, direction);
}
RCC_Flag flag(int code, float distance, float direction) {
    return seen<RCC_Flag>(code, distance, direction);
}

/// Where the digits of a code say that a landmark is; in the middle by any others.
Complex landmark(int code) {
    std::string const digits = std::to_string(code % 1000);
    auto const has = [&](char digit) { return digits.find(digit) != digits.npos ? 1.0 : 0.0; };
    double const x = has('5') - has('4');
    double const y = has('3') - has('2');
    int const along = code / 1000 * 10;
    bool const row = code < 6 || code > 1000;
    if (row && digits.back() <= '3') return {along * x, 39 * y};
    if (row) return {57 * x, along * y};
    if (has('7') > 0) return {35.5 * x, 20.16 * y};
    return {52 * x, (has('8') > 0 ? 7.01 : 34) * y};
}

class Localisation : public Sweep {
protected:
    Localisation() { agent.join('l', 7); }

    support::AgentHarness agent;
    Myself& me = agent.world.myself();
};

// Angles are the server's here: clockwise with y down, as the frame is, so that d is unit(d).
TEST_F(Localisation, LinesTellTheFacingAndTheNearestFlagsThePlace) {
    std::vector<int> codes = {6, 99, RCC_Flag::CLOSE_BY};
    for (int code = 2; code < 6000; ++code) {
        if (Field::landmark(code) != Vector2D()) codes.push_back(code);
    }
    ASSERT_EQ(codes.size(), 2 + 55);
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        int const sign = i % 2 == 0 ? 1 : -1;
        agent.world.situation().side = FieldSide{sign};
        float const gaze = number(-180, 180); // on the pitch
        // Of the lines, whose normals are these, a player inside looks at one or two.
        std::vector<RCC_Line> lines;
        for (auto const& [code, normal] : {std::array{2, -90}, {3, 90}, {4, 180}, {5, 0}}) {
            double const angle = std::remainder(normal - double{gaze}, 360.0);
            if (std::abs(angle) > 89.9) continue;
            lines.push_back(line(code, 9, static_cast<float>(angle > 0 ? angle - 90 : angle + 90)));
        }
        // Of two lines the farther counts, and of equally far ones the second.
        RCC_Line const wrong = line(whole(2, 5), static_cast<float>(whole(8, 9)), number(-90, 90));
        lines.resize(1);
        lines.insert(wrong.distance > 8 || i % 3 == 0 ? lines.begin() : lines.end(), wrong);
        lines.push_back(line(2, 99, 45));
        me.bodyInfo.headAngle = number(-90, 90);
        double const facing = gaze + (sign == 1 ? 0 : 180);

        me.position = point();
        std::vector<RCC_Flag> flags;
        std::vector<std::pair<double, Complex>> places; // by distance
        for (int n = whole(0, 6); n > 0; --n) {
            int const code = codes[static_cast<std::size_t>(whole(0, 56))];
            auto const distance = static_cast<float>(5 * whole(0, 6));
            float const direction = number(-180, 180);
            float const useless = whole(0, 1) == 0 ? RCC_ABSENT : NAN;
            bool const told = whole(0, 9) > 0;
            flags.push_back(flag(code, told ? distance : useless, direction));
            if (!told || code == RCC_Flag::CLOSE_BY) continue;
            Complex const way = double{distance} * unit(facing + direction);
            // Nearest is a flag that the agent stands on.
            places.insert(places.begin(),
                          {std::max(distance, 0.001F), double(sign) * landmark(code) - way});
        }
        // Of equally near ones the later counts.
        std::stable_sort(places.begin(), places.end(),
                         [](auto const& a, auto const& b) { return a.first < b.first; });
        Complex sum = places.empty() ? toComplex(me.position) : 0;
        double weights = places.empty() ? 1 : 0;
        if (places.size() > 3) places.resize(3);
        for (auto const& [distance, place] : places) {
            sum += place / distance;
            weights += 1 / distance;
        }

        agent.world.performSelfLoc(lines, flags);
        EXPECT_LT(std::abs(toComplex(me.position) - sum / weights), 1e-3);
        EXPECT_LT(angleBetween(me.headDirection, -facing), 1e-3);
        EXPECT_LT(angleBetween(me.bodyDirection, -facing - me.bodyInfo.headAngle), 1e-3);
    }
}

TEST_F(Localisation, LinesAtTheirBounds) {
    struct Case {
        int code;
        float direction, left, right; // the facing for a team that plays from there
    };
    // Along the line, on the border of two rules, and the angles that are not reduced.
    for (Case const& c : {Case{2, 0, 0, 180}, Case{3, 0, 360, 180}, Case{4, 0, 0, 180},
                          Case{5, 0, 0, 180}, Case{5, 95, 365, 185}, Case{9, -30, -30, 150}}) {
        std::array const lines = {line(c.code, 10, c.direction)};
        agent.world.performSelfLoc(lines, {});
        EXPECT_EQ(me.headDirection, c.left) << c.code;
        EXPECT_EQ(Field::computeFaceDirection(lines, FieldSide::right), c.right) << c.code;
    }
    EXPECT_EQ(Field::computeFaceDirection({}, FieldSide::left), 0);
    EXPECT_EQ(Field::computeFaceDirection({}, FieldSide::right), 180);
}

TEST_F(Localisation, BetweenSeesTheCommandsCarryOn) {
    Ball& ball = agent.world.ball();
    for (int i = 0; i < 5000 && !HasFailure(); ++i) {
        agent.placeMyself(number(-50, 50), number(-30, 30), number(0, 360));
        Vector2D const before = me.position;
        Complex place = toComplex(before);
        double body = -me.bodyDirection;
        double const distance = number(0.4F, 1.7F);
        double const bearing = number(-180, 180);
        if (std::abs(distance - 1.085) < 1e-3) continue; // at the end of the reach
        Complex const lying = place + distance * unit(body + bearing);
        ball.position = toVector(lying);
        ball.velocity = point() / 30;
        Complex motion = toComplex(ball.velocity);
        float const angle = number(1, 180) * (whole(0, 1) == 0 ? -1 : 1);
        float const power = number(1, 100);
        agent.startCycle();
        int const command = whole(0, 4);
        if (command == 0) agent.effectors.queueDash(power); // shows in the speed
        if (command == 1) {
            agent.effectors.queueTurn(angle, 0);
            body += angle;
        }
        if (command == 2) {
            agent.effectors.queueMove(angle / 4, power / 4);
            place = Complex(angle, power) / 4.0;
        }
        if (command == 3) agent.effectors.queueKick(power, angle);
        if (command == 3 && distance < 1.085) {
            double const rate = 1 - std::abs(bearing) / 720 - (distance - 0.385) / 2.8;
            motion = capped(motion + 0.027 * power * rate * unit(body + angle), 3);
        }
        float const speed = me.bodyInfo.speedAmount = number(0, 1);
        float const neck = me.bodyInfo.headAngle = number(-90, 90);
        agent.world.estimateCurrentState();

        Complex const step = speed / 0.4 * unit(body);
        expectMotion(me, place + step, step);
        EXPECT_LT(angleBetween(me.bodyDirection, -body), 1e-3);
        EXPECT_LT(angleBetween(me.headDirection, -body + neck), 1e-3);
        expectMotion(ball, lying + motion, motion * 0.94);
        EXPECT_EQ(agent.world.teammates().front().position, before); // until the next see
    }
    for (auto const& [x, vx, nextVx] : {std::array{1e10F, 2.0F, 1.88F}, {1, 1e10F, 1e10F}}) {
        agent.placeBall(x, 0, vx, 0);
        agent.world.estimateCurrentState();
        EXPECT_EQ(tuple(ball.position.x, ball.velocity.x), tuple(x, nextVx));
    }
}

} // namespace
