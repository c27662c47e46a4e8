#include "Listener.h"
#include "Samples.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <sstream>
#include <string>

namespace {

TEST(Garbled, NoPrefixOfAMessageIsHeard) {
    Listener listener;
    for (auto const message : SAMPLES) {
        for (std::size_t length = 0; length < message.size(); ++length) {
            ASSERT_FALSE(listener.hears(message.substr(0, length))) << message.substr(0, length);
        }
        EXPECT_TRUE(listener.hears(message)) << message;
    }
}

TEST(Garbled, OnlyBlanksMayFollow) {
    Listener listener;
    for (auto const sample : SAMPLES) {
        std::string const message(sample);
        EXPECT_TRUE(listener.hears(message + " \r\n\t" + std::string(1, '\0')));
        for (std::string const junk : {")", "(", " x", "(see 1)", "\"", "\xff"}) {
            EXPECT_FALSE(listener.hears(message + junk)) << message << junk;
        }
    }
}

TEST(Garbled, NumbersThatAreNone) {
    Listener listener;
    for (std::string const number :
         {"nan", "inf", "-inf", "0x10", "1e99", "1e400", "-", ".", "1.2.3", "1e", "--1", "1,5",
          "+-1", "1\"", "infinity", "1_0", ""}) {
        EXPECT_FALSE(listener.hears("(see 1 ((b) 1 " + number + " 0 0))")) << number;
        EXPECT_FALSE(listener.hears("(score " + number + " 0 0)")) << number;
    }
    EXPECT_TRUE(listener.hears("(see -0 ((b) 5.2e-05 -0 .5 -.5))"));
}

TEST(Garbled, OversizedUnknownAndSilentKinds) {
    Listener listener;
    std::string const see(SEE);
    EXPECT_TRUE(listener.hears(see + std::string(RCC_String::CAPACITY - see.size(), ' ')));
    EXPECT_FALSE(listener.hears(see + std::string(RCC_String::CAPACITY - see.size() + 1, ' ')));
    for (std::string const message :
         {"", " ", "()", "see", "(seen 1)", "(SEE 1)", "(ok move)", "(warning x)", "(think)",
          "(unheard_of 1 2)", "((see 1))", "(error)x"}) {
        EXPECT_FALSE(listener.hears(message)) << message;
    }
}

TEST(Garbled, DeepNestingIsRefused) {
    Listener listener;
    auto const nested = [](std::size_t depth) {
        return "(fullstate 1 " + std::string(depth, '(') + "x" + std::string(depth, ')') + ")";
    };
    EXPECT_TRUE(listener.hears(nested(8)));
    EXPECT_FALSE(listener.hears(nested(1000)));
    EXPECT_FALSE(listener.hears(std::string(RCC_String::CAPACITY, '(')));
}

bool isAngle(RCC_Angle const& angle) {
    return std::abs(angle.degrees()) <= 360;
}

void expectSense(RCC_SeenObject const& object) {
    EXPECT_TRUE(isAngle(object.direction));
    EXPECT_FALSE(object.distance < 0 || std::isnan(object.distance));
    EXPECT_EQ(object.hasSpeed(), std::isfinite(object.speedDirection.value));
    EXPECT_TRUE(object.hasDistance() || !object.hasSpeed());
}

void expectSense(RCC_Visual const& see) {
    auto const each = [](auto const& container, auto const& check) {
        for (std::size_t i = 0; i < container->size(); ++i) {
            expectSense(*(*container)[i]);
            check(*(*container)[i]);
        }
    };
    auto const coded = [](auto const& landmark) { EXPECT_GT(landmark.code, 0); };
    auto const player = [](RCC_Player const& p) {
        EXPECT_TRUE(p.name.unum >= 0 && p.name.unum <= 11);
        EXPECT_EQ(p.bodyDirection.isAbsent(), p.headDirection.isAbsent());
    };
    EXPECT_GE(see.time, 0);
    each(see.lines, coded);
    each(see.flags, coded);
    each(see.goals, coded);
    each(see.allies, player);
    each(see.enemies, player);
    each(see.neuts, player);
    each(see.balls, [](RCC_Ball const&) {});
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
    auto const each = [&](auto const& container) {
        for (std::size_t i = 0; i < container->size(); ++i) {
            auto const& object = *(*container)[i];
            text << ' ' << object.distance << ' ' << object.direction.value << ' ' << object.speed;
        }
        text << " |";
    };
    each(see.lines);
    each(see.flags);
    each(see.goals);
    each(see.allies);
    each(see.enemies);
    each(see.neuts);
    each(see.balls);
    return text.str();
}

std::string mutate(std::string message, std::mt19937& random) {
    static constexpr std::string_view LIKELY = "()\" -.0159ebfglprt_\n";
    auto const below = [&](std::size_t limit) { return random() % limit; };
    for (std::size_t changes = 1 + below(3); changes > 0 && !message.empty(); --changes) {
        std::size_t const at = below(message.size());
        char const byte =
            below(2) == 0 ? LIKELY[below(LIKELY.size())] : static_cast<char>(below(256));
        switch (below(4)) {
        case 0:
            message[at] = byte;
            break;
        case 1:
            message.insert(at, 1, byte);
            break;
        case 2:
            message.erase(at, 1 + below(4));
            break;
        default:
            message.insert(at, message.substr(below(message.size()), below(40)));
        }
    }
    return message;
}

TEST(Garbled, MutatedMessagesMakeSenseOrLeaveNoTrace) {
    std::mt19937 random(7);
    Listener listener;
    ASSERT_TRUE(listener.hears(SEE));
    ASSERT_TRUE(listener.hears(SENSE_BODY));
    std::string before = dump(listener.visual.last);
    int dropped = 0;
    constexpr int ROUNDS = 3000;
    for (int round = 0; round < ROUNDS; ++round) {
        for (auto const sample : SAMPLES) {
            int const sees = listener.visual.calls;
            dropped += listener.hears(mutate(std::string(sample), random)) ? 0 : 1;
            if (sample != SEE) continue;
            std::string const now = dump(listener.visual.last);
            if (sees == listener.visual.calls) {
                ASSERT_EQ(before, now);
            }
            before = now;
            expectSense(listener.visual.last);
            expectSense(listener.senseBody.last);
        }
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(dropped, ROUNDS * static_cast<int>(SAMPLES.size()) / 4);
}

} // namespace
