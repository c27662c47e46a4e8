// How well the agent knows where it is, where it looks and where the ball is, by a recorded match.
//
// usage: localisation TEAM TRANSCRIPT TRUTH
//
// A line of the transcript is a time in milliseconds, a tab and a datagram. A row of the truth
// belongs to each sense_body in order: cycle, x, y, body and head direction, velocity, then the
// ball's position (the server's frame: x right, y down, degrees clockwise).

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "sensing/Sensors.h"
#include "tests/support/AgentHarness.h"

namespace {

struct Truth {
    float x, y, body, head, vx, vy, ballX, ballY;
};

std::vector<Truth> readTruth(char const* path) {
    std::vector<Truth> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        Truth t{};
        if (std::sscanf(line.c_str(), "%*d %f %f %f %f %f %f %f %f", &t.x, &t.y, &t.body, &t.head,
                        &t.vx, &t.vy, &t.ballX, &t.ballY) == 8) {
            rows.push_back(t);
        }
    }
    return rows;
}

class Errors {
public:
    void add(float error) { values_.push_back(error); }
    void print(char const* what, char const* unit) {
        if (values_.empty()) return;
        std::sort(values_.begin(), values_.end());
        std::printf("%-22s %5zu sees, median %.2f %s, 95%% below %.2f %s, worst %.2f %s\n", what,
                    values_.size(), static_cast<double>(at(0.5)), unit,
                    static_cast<double>(at(0.95)), unit, static_cast<double>(values_.back()), unit);
    }

private:
    float at(double fraction) const {
        return values_[static_cast<std::size_t>(fraction *
                                                static_cast<double>(values_.size() - 1))];
    }
    std::vector<float> values_;
};

/// Own position and facing over one kind of sees.
struct OwnErrors {
    Errors position;
    Errors facing;

    void print(char const* kind) {
        std::printf("%s\n", kind);
        position.print("  own position", "m");
        facing.print("  own facing", "deg");
    }
};

bool tellsDistances() {
    return std::any_of(Sensors::flags.begin(), Sensors::flags.end(),
                       [](RCC_Flag const& flag) { return flag.hasDistance(); });
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: localisation TEAM TRANSCRIPT TRUTH\n");
        return 2;
    }
    support::AgentHarness agent(false, argv[1]);
    std::vector<Truth> const truth = readTruth(argv[3]);
    std::ifstream transcript(argv[2]);

    OwnErrors inside;
    OwnErrors lowQuality;
    OwnErrors outside;
    Errors ball;
    Errors nearBall;
    std::size_t senseBodies = 0;
    for (std::string line; std::getline(transcript, line);) {
        std::string_view const message = std::string_view(line).substr(line.find('\t') + 1);
        agent.receive(message);
        bool const see = startsWith(message, "(see ");
        if (startsWith(message, "(sense_body ")) ++senseBodies;
        agent.world.integrateSensorInfo();
        if (!see || senseBodies == 0 || senseBodies > truth.size()) continue;

        Truth const& t = truth[senseBodies - 1];
        auto const side = static_cast<float>(agent.world.situation().side);
        Myself const& me = agent.world.myself();
        bool const beyondTheLines = std::abs(t.x) > 52.5F || std::abs(t.y) > 34.0F;
        OwnErrors& own = beyondTheLines ? outside : tellsDistances() ? inside : lowQuality;
        own.position.add(me.position.getDistanceTo(Vector2D(side * t.x, side * t.y, CARTESIAN)));
        float const trueFacing = -(t.head + (side < 0 ? 180.0F : 0.0F));
        own.facing.add(getAbsAngleDifference(me.headDirection, trueFacing));
        if (Sensors::balls.empty() || !Sensors::balls.front().hasDistance()) continue;
        float const error = agent.world.ball().position.getDistanceTo(
            Vector2D(side * t.ballX, side * t.ballY, CARTESIAN));
        ball.add(error);
        if (Sensors::balls.front().distance <= 20.0F) nearBall.add(error);
    }
    inside.print("on the pitch, high quality");
    lowQuality.print("on the pitch, low quality");
    outside.print("beyond the lines");
    ball.print("ball", "m");
    nearBall.print("ball within 20 m", "m");
}
