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

std::string printed(void (*print)()) {
    CapturedStream const out(std::cout);
    print();
    return out.text();
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
        ASSERT_TRUE(listener.hears(message));
        C::integrateServerParam(listener.serverParam.last);
    }

    void receivePlayerType(int id) {
        ASSERT_TRUE(listener.hears("(player_type" + numbersFrom(id, 12) + ")"));
        C::addPlayerType(listener.playerType.last);
    }

    Listener listener;
};

TEST_F(ConfigurationTest, ServerParametersKeepTheirPlaces) {
    EXPECT_EQ(printed(C::printServerParam).find_first_not_of("0 \n"), std::string::npos);
    receiveServerParam("(server_param" + numbersFrom(1, 103) + ")");
    EXPECT_EQ(printed(C::printServerParam), numbersFrom(1, 103) + " \n");
    // Places counted by hand, all through the list: printing alone would not notice two names
    // swapped on both ways.
    std::pair<double, int> const places[] = {
        {C::goalWidth, 1},       {C::playerDecay, 4},         {C::staminaMax, 9},
        {C::effortDecThr, 16},   {C::teamActuatorNoise, 22},  {C::ballSize, 27},
        {BOUND_BALL_DECAY, 28},  {C::dashPowerRate, 33},      {C::kickPowerRate, 34},
        {C::kickableMargin, 35}, {C::controlRadiusWidth, 37}, {C::maxPower, 38},
        {C::minPower, 39},       {C::minMoment, 41},          {C::minNeckMoment, 43},
        {C::maxNeckAngle, 44},   {C::visibleAngle, 46},       {C::visibleDist, 47},
        {C::kickableArea, 52},   {C::catchAreaLength, 53},    {C::halfTime, 70},
        {C::audioDist, 85},      {C::dropBallTime, 103},      {C::dirQuantizeStepRight, 94},
    };
    for (auto const& [value, place] : places) {
        EXPECT_EQ(value, place);
    }
}

TEST_F(ConfigurationTest, WholeNumbersStayExactAndAbsentOnesAreReset) {
    receiveServerParam("(server_param (wind_force 0.1)(half_time 2000000001))");
    EXPECT_EQ(C::windForce, 0.1F);
    EXPECT_EQ(C::halfTime, 2'000'000'001);
    receiveServerParam("(server_param (half_time 1))");
    EXPECT_EQ(C::windForce, 0);
}

TEST_F(ConfigurationTest, PlayerParametersKeepTheirPlaces) {
    ASSERT_TRUE(listener.hears("(player_param" + numbersFrom(1, 19) + ")"));
    C::integratePlayerParam(listener.playerParam.last);
    EXPECT_EQ(printed(C::printPlayerParam), numbersFrom(1, 19) + " \n");
    EXPECT_EQ(C::playerTypesMax, 3);
    EXPECT_EQ(C::playerSpeedMaxDeltaMin, 4);
    EXPECT_EQ(C::effortMinDeltaFactor, 19);
}

TEST_F(ConfigurationTest, PlayerTypesAreKeptInOrderOfArrivalWithinBounds) {
    for (int const id : {7, 8, 7}) {
        receivePlayerType(id);
    }
    std::ostringstream all;
    C::printPlayerTypes(all);
    EXPECT_EQ(all.str(),
              numbersFrom(7, 12) + " \n" + numbersFrom(8, 12) + " \n" + numbersFrom(7, 12) + " \n");
    for (int i = 0; i < 100; ++i) {
        receivePlayerType(i);
    }
    EXPECT_EQ(C::playerTypesV.size(), C::MAX_PLAYER_TYPES);
}

} // namespace
