#include "config/Configuration.h"
#include "tests/geometry/CapturedStream.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace {

using C = Configuration;

// Bound before any message has come, as the constants of other classes are.
const float& BOUND_BALL_DECAY = C::ballDecay;

/// " first first+1 ...", count numbers: with it, each value names its place in the message.
std::string numbers(int first, int count) {
    std::ostringstream text;
    for (int i = first; i < first + count; ++i) {
        text << ' ' << i;
    }
    return text.str();
}

std::string printed(void (*print)()) {
    const CapturedStream out(std::cout);
    print();
    return out.text();
}

template <class Record>
struct Receiver : RCC_Handler<RCC_Pointer<Record>> {
    explicit Receiver(void (*receive)(const Record&)) : integrate(receive) {}
    void handle(const RCC_Pointer<Record>& record) override { integrate(*record); }

    void (*integrate)(const Record&);
};

/// The parameters' way from the text of a message to the members.
class ConfigurationTest : public testing::Test {
protected:
    ConfigurationTest() {
        parser.serverParamHandlers.push_back(&server);
        parser.playerParamHandlers.push_back(&player);
        parser.playerTypeHandlers.push_back(&type);
    }
    ~ConfigurationTest() override {
        C::integrateServerParam({});
        C::integratePlayerParam({});
        C::playerTypesV.clear();
    }

    void receive(const std::string& message) {
        RCC_Memory::remove(parser.parse(RCC_String(message)));
    }

    RCC_Parser parser{0, "Us", 1};
    Receiver<RCC_ServerParam> server{C::integrateServerParam};
    Receiver<RCC_PlayerParam> player{C::integratePlayerParam};
    Receiver<RCC_PlayerType> type{C::addPlayerType};
};

TEST_F(ConfigurationTest, PrintsZerosBeforeAnyMessage) {
    std::string zeros = " ";
    for (int i = 0; i < 103; ++i) {
        zeros += "0 ";
    }
    EXPECT_EQ(printed(C::printServerParam), zeros + "\n");
}

TEST_F(ConfigurationTest, ServerParametersKeepTheirPlaces) {
    receive(std::string("(server_param") + numbers(1, 103) + ")");
    EXPECT_EQ(printed(C::printServerParam), numbers(1, 103) + " \n");
    // Places counted by hand, all through the list: printing alone would not notice two names
    // swapped on both ways.
    const std::pair<float, float> places[] = {
        {C::goalWidth, 1},      {C::playerDecay, 4},      {C::staminaMax, 9},
        {C::effortDecThr, 16},  {C::ballSize, 27},        {BOUND_BALL_DECAY, 28},
        {C::dashPowerRate, 33}, {C::kickPowerRate, 34},   {C::kickableMargin, 35},
        {C::maxPower, 38},      {C::minPower, 39},        {C::minMoment, 41},
        {C::minNeckMoment, 43}, {C::maxNeckAngle, 44},    {C::visibleAngle, 46},
        {C::kickableArea, 52},  {C::catchAreaLength, 53},
    };
    for (const auto& [value, place] : places) {
        EXPECT_EQ(value, place);
    }
    EXPECT_EQ(C::teamActuatorNoise, 22);
    EXPECT_EQ(C::dropBallTime, 103);
}

TEST_F(ConfigurationTest, PlayerParametersKeepTheirPlaces) {
    receive(std::string("(player_param") + numbers(1, 19) + ")");
    EXPECT_EQ(printed(C::printPlayerParam), numbers(1, 19) + " \n");
    EXPECT_EQ(C::playerTypes, 1);
    EXPECT_EQ(C::playerSpeedMaxDeltaMin, 4);
    EXPECT_EQ(C::effortMinDeltaFactor, 19);
}

TEST_F(ConfigurationTest, RealValuesAreNarrowedAndOverwritten) {
    RCC_ServerParam p;
    p.windForce = 0.0000001;
    p.halfTime = 2'000'000'001;
    C::integrateServerParam(p);
    EXPECT_EQ(C::windForce, 0.0000001F);
    EXPECT_EQ(C::halfTime, 2'000'000'001);
    C::integrateServerParam({});
    EXPECT_EQ(C::windForce, 0);
}

TEST_F(ConfigurationTest, PlayerTypesAreKeptInOrderOfArrivalWithinBounds) {
    std::ostringstream none;
    C::printPlayerTypes(none);
    EXPECT_EQ(none.str(), "");

    const std::string message = std::string("(player_type") + numbers(7, 12) + ")";
    receive(message);
    receive(std::string("(player_type") + numbers(8, 12) + ")");
    receive(message);
    ASSERT_EQ(C::playerTypesV.size(), 3U);
    EXPECT_EQ(C::playerTypesV[1].id, 8);
    EXPECT_EQ(C::playerTypesV[2].effortMin, 18);

    std::ostringstream all;
    std::ostringstream oneByOne;
    C::printPlayerTypes(all);
    for (const RCC_PlayerType& t : C::playerTypesV) {
        t.print(oneByOne);
    }
    EXPECT_EQ(all.str(), oneByOne.str());

    for (int i = 0; i < 100; ++i) {
        receive(message);
    }
    EXPECT_EQ(C::playerTypesV.size(), C::MAX_PLAYER_TYPES);
}

} // namespace
