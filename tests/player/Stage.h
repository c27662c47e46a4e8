#pragma once

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "practice/Commands.h"
#include "practice/Physics.h"
#include "tests/player/Point.h"
#include "tests/support/AgentHarness.h"

/// The numbers in a command's text.
inline std::vector<double> numbersIn(std::string_view command) {
    std::vector<double> numbers;
    for (std::size_t i = command.find(' '); i != command.npos; i = command.find(' ', i + 1)) {
        double value = 0.0;
        std::from_chars(command.data() + i + 1, command.data() + command.size(), value);
        numbers.push_back(value);
    }
    return numbers;
}

inline std::string wordOf(std::string const& command) {
    return command.empty() ? "" : command.substr(1, command.find_first_of(" )") - 1);
}

/// Degrees in [-180, 180], by another way than the program's.
inline double turned(double degrees) {
    return std::remainder(degrees, 360.0);
}

/// An agent that knows everything exactly, on a pitch whose physics carry out what it queues. It
/// plays from the left, so that its frame is the pitch's.
class Stage : public support::LinkedAgent {
public:
    explicit Stage(int unum = 10, bool keeper = false) : LinkedAgent(keeper) {
        join('l', unum);
        startCycle();
        world.situation().playMode = PM_PLAY_ON;
        pitch.mode.phase = practice::Phase::playOn;
        body().active = true;
        body().goalie = keeper;
        body().stamina = 8000.0;
        body().effort = 1.0;
        pitch.ball.pos = {0.0, 30.0};
    }

    practice::Player& body() { return pitch.player(0); }

    /// Puts the player there, standing; `bodyDeg` in the server's sense.
    void put(double x, double y, double bodyDeg, double neckDeg = 0.0) {
        body().pos = {x, y};
        body().halt();
        body().body = practice::toRad(bodyDeg);
        body().neck = practice::toRad(neckDeg);
    }
    void putBall(double x, double y, double vx = 0.0, double vy = 0.0) {
        pitch.ball.pos = {x, y};
        pitch.ball.halt();
        pitch.ball.vel = {vx, vy};
    }

    /// Tells the agent the truth and starts its cycle.
    void perceive() {
        practice::Player const& me = body();
        auto const clockwise = [](double radians) {
            return normalizeTo360Deg(static_cast<float>(-practice::toDeg(radians)));
        };
        Vector2D const pos = at(me.pos.x, me.pos.y);
        placeMyself(pos.x, pos.y, clockwise(me.body));
        Myself& self = world.myself();
        self.headDirection = clockwise(me.gaze());
        self.bodyInfo.headAngle = static_cast<float>(-practice::toDeg(me.neck));
        self.bodyInfo.speedAmount = static_cast<float>(me.vel.length());
        self.velocity = at(me.vel.x, me.vel.y) / Player::DECAY;
        world.ball().position = at(pitch.ball.pos.x, pitch.ball.pos.y);
        world.ball().velocity = at(pitch.ball.vel.x, pitch.ball.vel.y);
        startCycle();
    }

    /// Puts the player and the ball there and tells the agent.
    void show(double x, double y, double bodyDeg, double ballX, double ballY, double vx = 0.0,
              double vy = 0.0) {
        put(x, y, bodyDeg);
        putBall(ballX, ballY, vx, vy);
        perceive();
    }

    /// The first word and the numbers of the main command.
    std::string word() const { return wordOf(mainCommand()); }
    double number(std::size_t i) const {
        std::vector<double> const numbers = numbersIn(mainCommand());
        return i < numbers.size() ? numbers[i] : NAN;
    }

    /// Carries out what is queued and lets a cycle pass.
    void perform() {
        for (std::string const& text : allCommands()) {
            auto const command = practice::CommandReader(text).next();
            if (command) std::visit([this](auto const& c) { apply(c); }, *command);
        }
        practice::moveAll(pitch, random);
        practice::recoverAll(pitch);
    }

    bool caught = false;
    practice::World pitch;
    practice::Random random{7};

private:
    void apply(practice::Turn const& c) { practice::turn(body(), c.moment, random); }
    void apply(practice::TurnNeck const& c) { practice::turnNeck(body(), c.moment); }
    /// Backwards too, which only older servers obey.
    void apply(practice::Dash const& c) {
        body().dashing = true;
        body().dashPower = c.power;
    }
    void apply(practice::Kick const& c) { practice::kick(pitch, body(), c.power, c.dir, random); }
    void apply(practice::Catch const& c) { caught = practice::catchBall(pitch, body(), c.dir); }
    template <typename Other>
    void apply(Other const& /*no movement*/) {}
};

/// Uniform numbers from a fixed seed.
class Draw {
public:
    double operator()(double low, double high) { return random_.uniform(low, high); }
    float real(double low, double high) { return static_cast<float>(random_.uniform(low, high)); }

private:
    practice::Random random_{11};
};
