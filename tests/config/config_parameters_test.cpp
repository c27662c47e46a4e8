#include "config/Configuration.h"
#include "tests/geometry/CapturedStream.h"
#include "tests/parser/Listener.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace {

using C = Configuration;

// Bound before any message has come, as the constants of other classes are.
float const& BOUND_BALL_DECAY = C::ballDecay;

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
    std::pair<double, int> const places[] = {
        {C::goalWidth, 1},           {C::playerDecay, 4},
        {C::staminaMax, 9},          {C::effortDecThr, 16},
        {C::teamActuatorNoise, 22},  {C::ballSize, 27},
        {BOUND_BALL_DECAY, 28},      {C::dashPowerRate, 33},
        {C::kickPowerRate, 34},      {C::kickableMargin, 35},
        {C::controlRadiusWidth, 37}, {C::maxPower, 38},
        {C::minPower, 39},           {C::minMoment, 41},
        {C::minNeckMoment, 43},      {C::maxNeckAngle, 44},
        {C::visibleAngle, 46},       {C::visibleDist, 47},
        {C::kickableArea, 52},       {C::catchAreaLength, 53},
        {C::halfTime, 70},           {C::audioDist, 85},
        {C::dropBallTime, 103},      {C::dirQuantizeStepRight, 94},
        {C::playerTypesMax, 203},    {C::playerSizeDeltaFactor, 212},
    };
    for (auto const& [value, place] : places) {
        EXPECT_EQ(value, place);
    }
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
