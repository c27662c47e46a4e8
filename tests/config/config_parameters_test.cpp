#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <tuple>

#include "config/Configuration.h"
#include "tests/geometry/CapturedStream.h"
#include "tests/parser/Listener.h"

namespace {

using C = Configuration;

// Bound before any message has come, as the constants of other classes are.
float const& boundBallDecay = C::ballDecay;

void expectPrinted(void (*print)(), std::string const& numbers) {
    CapturedStream const out(std::cout);
    print();
    EXPECT_EQ(out.text(), numbers + " \n");
}

/// The parameters' way from the text of a message to the members.
class ConfigurationTest : public testing::Test {
protected:
    ~ConfigurationTest() override {
        C::integrateServerParam({});
        C::integratePlayerParam({});
        C::playerTypesV.clear();
    }

    void receiveServerParam(std::string const& message) {
        ASSERT_TRUE(listener.hears("(server_param" + message + ")"));
        C::integrateServerParam(listener.serverParam.last);
    }

    Listener listener;
};

TEST_F(ConfigurationTest, ParametersKeepTheirPlaces) {
    receiveServerParam(numbersFrom(1, 103));
    expectPrinted(C::printServerParam, numbersFrom(1, 103));
    ASSERT_TRUE(listener.hears("(player_param" + numbersFrom(201, 19) + ")"));
    C::integratePlayerParam(listener.playerParam.last);
    expectPrinted(C::printPlayerParam, numbersFrom(201, 19));
    // Places counted by hand, all through the lists: printing alone would not notice two names
    // swapped on both ways.
    EXPECT_EQ(std::tuple(C::goalWidth, C::playerDecay, C::staminaMax, C::effortDecThr,
                         C::teamActuatorNoise, C::ballSize, boundBallDecay, C::dashPowerRate,
                         C::kickPowerRate, C::kickableMargin, C::controlRadiusWidth),
              std::tuple(1, 4, 9, 16, 22, 27, 28, 33, 34, 35, 37));
    EXPECT_EQ(std::tuple(C::maxPower, C::minPower, C::minMoment, C::minNeckMoment, C::maxNeckAngle,
                         C::visibleAngle, C::visibleDist, C::kickableArea, C::catchAreaLength),
              std::tuple(38, 39, 41, 43, 44, 46, 47, 52, 53));
    EXPECT_EQ(std::tuple(C::halfTime, C::audioDist, C::dirQuantizeStepRight, C::dropBallTime,
                         C::playerTypesMax, C::playerSizeDeltaFactor),
              std::tuple(70, 85, 94, 103, 203, 212));
    receiveServerParam(" (wind_force 0.1)(half_time 2000000001)");
    EXPECT_TRUE(C::windForce == 0.1F && C::halfTime == 2'000'000'001);
    receiveServerParam(" (half_time 1)");
    EXPECT_EQ(C::windForce, 0); // what is absent is reset
}

TEST_F(ConfigurationTest, PlayerTypesAreKeptInOrderOfArrivalWithinBounds) {
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        int const id = 10 + i % 7; // types come again
        ASSERT_TRUE(listener.hears("(player_type" + numbersFrom(id, 12) + ")"));
        C::addPlayerType(listener.playerType.last);
        if (i < 64) expected += numbersFrom(id, 12) + " \n";
    }
    std::ostringstream all;
    C::printPlayerTypes(all);
    EXPECT_EQ(all.str(), expected);
}

} // namespace
