#include "Listener.h"
#include "Samples.h"

#include <cmath>
#include <random>
#include <sstream>
#include <string>

namespace {

using Garbled = Listening;

TEST_F(Garbled, NoPrefixOfAMessageIsHeard) {
    for (auto const message : SAMPLES) {
        for (std::size_t length = 0; length < message.size(); ++length) {
            ASSERT_FALSE(hears(message.substr(0, length))) << message.substr(0, length);
        }
        EXPECT_TRUE(hears(message)) << message;
    }
}

TEST_F(Garbled, OnlyBlanksMayFollow) {
    for (auto const sample : SAMPLES) {
        std::string const message(sample);
        EXPECT_TRUE(hears(message + " \r\n\t" + std::string(1, '\0')));
        expectRefused(message, {")", "(", " x", "(see 1)", "\"", "\xff"}, "");
    }
}

TEST_F(Garbled, NumbersThatAreNone) {
    std::vector<std::string> const wrong = {"nan", "inf", "-inf",     "0x10", "1e99", "1e400",
                                            "-",   ".",   "1.2.3",    "1e",   "--1",  "1,5",
                                            "+-1", "1\"", "infinity", "1_0",  ""};
    expectRefused("(see 1 ((b) 1 ", wrong, " 0 0))");
    expectRefused("(score ", wrong, " 0 0)");
    EXPECT_TRUE(hears("(see -0 ((b) 5.2e-05 -0 .5 -.5))"));
}

TEST_F(Garbled, OversizedNestedUnknownAndSilentKinds) {
    std::string const see(SEE);
    std::string const blanks(RCC_String::CAPACITY - see.size(), ' ');
    EXPECT_TRUE(hears(see + blanks));
    EXPECT_FALSE(hears(see + blanks + " "));

    auto const nested = [](std::size_t depth) {
        return "(fullstate 1 " + std::string(depth, '(') + "x" + std::string(depth, ')') + ")";
    };
    EXPECT_TRUE(hears(nested(8)));
    EXPECT_FALSE(hears(nested(1000)));

    expectRefused("",
                  {"", " ", "()", "see", "(seen 1)", "(SEE 1)", "(ok move)", "(warning x)",
                   "(think)", "(unheard_of 1 2)", "((see 1))", "(error)x"},
                  "");
}

template <class Visit>
void visitObjects(RCC_Visual const& see, Visit visit) {
    auto const visitEach = [&](auto const& container) {
        for (std::size_t i = 0; i < container->size(); ++i) {
            visit(*(*container)[i]);
        }
    };
    visitEach(see.lines);
    visitEach(see.flags);
    visitEach(see.goals);
    visitEach(see.allies);
    visitEach(see.enemies);
    visitEach(see.neuts);
    visitEach(see.balls);
}

bool isAngle(RCC_Angle const& angle) {
    return std::abs(angle.degrees()) <= 360;
}

void expectSense(RCC_Visual const& see) {
    EXPECT_GE(see.time, 0);
    visitObjects(see, [](auto const& object) {
        EXPECT_TRUE(isAngle(object.direction));
        EXPECT_FALSE(object.distance < 0 || std::isnan(object.distance));
        EXPECT_EQ(object.hasSpeed(), std::isfinite(object.speedDirection.value));
        EXPECT_TRUE(object.hasDistance() || !object.hasSpeed());
        if constexpr (requires { object.code; }) {
            EXPECT_GT(object.code, 0);
        }
        if constexpr (requires { object.name; }) {
            EXPECT_TRUE(object.name.unum >= 0 && object.name.unum <= 11);
            EXPECT_EQ(object.bodyDirection.isAbsent(), object.headDirection.isAbsent());
        }
    });
}

void expectSense(RCC_SenseBody const& body) {
    EXPECT_TRUE(isAngle(body.speedDirection) && isAngle(body.headAngle));
    EXPECT_TRUE(std::isfinite(body.stamina) && std::isfinite(body.effort));
    EXPECT_TRUE(body.viewQuality >= 0 && body.viewQuality <= 1);
    EXPECT_TRUE(body.viewWidth >= 0 && body.viewWidth <= 2);
    EXPECT_TRUE(body.time >= 0 && body.kicks >= 0 && body.changeViews >= 0);
}

/// What a see tells, to notice any change of it.
std::string dump(RCC_Visual const& see) {
    std::ostringstream text;
    text << see.time;
    visitObjects(see, [&](RCC_SeenObject const& object) {
        text << ' ' << object.distance << ' ' << object.direction.value << ' ' << object.speed;
    });
    return text.str();
}

std::string mutate(std::string message, std::mt19937& random) {
    static constexpr std::string_view LIKELY = "()\" -.0159ebfglprt_\n";
    auto const below = [&](std::size_t limit) { return random() % limit; };
    for (std::size_t changes = 1 + below(3); changes > 0 && !message.empty(); --changes) {
        char const byte =
            below(2) == 0 ? LIKELY[below(LIKELY.size())] : static_cast<char>(below(256));
        std::string const piece = below(4) == 0 ? message.substr(below(message.size()), below(40))
                                                : std::string(below(2), byte);
        message.replace(below(message.size()), below(4), piece);
    }
    return message;
}

TEST_F(Garbled, MutatedMessagesMakeSenseOrLeaveNoTrace) {
    std::mt19937 random(7);
    ASSERT_TRUE(hears(SEE) && hears(SENSE_BODY));
    std::string before = dump(visual.last);
    int dropped = 0;
    constexpr int ROUNDS = 3000;
    for (int round = 0; round < ROUNDS; ++round) {
        for (auto const sample : SAMPLES) {
            int const sees = visual.calls;
            dropped += hears(mutate(std::string(sample), random)) ? 0 : 1;
            if (sample != SEE) continue;
            std::string const now = dump(visual.last);
            if (sees == visual.calls) {
                ASSERT_EQ(before, now);
            }
            before = now;
            expectSense(visual.last);
            expectSense(senseBody.last);
        }
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(dropped, ROUNDS * static_cast<int>(SAMPLES.size()) / 4);
}

} // namespace
