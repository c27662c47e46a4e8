#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace practice {

/// The parameters of the match that players are told, in the order of the server_param message.
/// Units: metres, degrees, cycles (milliseconds where the name ends in Step), fractions.
struct Parameter {
    std::string_view name;
    double value;
};

// clang-format off
inline constexpr std::array<Parameter, 103> PARAMETERS{{
    {"goalWidth", 14.02},               {"inertiaMoment", 5},               {"playerSize", 0.3},
    {"playerDecay", 0.4},               {"playerRandom", 0.1},              {"playerWeight", 60},
    {"playerSpeedMax", 1.05},           {"playerAccelMax", 1},              {"staminaMax", 8000},
    {"staminaInc", 45},                 {"recoverInit", 1},                 {"recoverDecThr", 0.3},
    {"recoverMin", 0.5},                {"recoverDec", 0.002},              {"effortInit", 1},
    {"effortDecThr", 0.3},              {"effortMin", 0.6},                 {"effortDec", 0.005},
    {"effortIncThr", 0.6},              {"effortInc", 0.01},                {"kickRandom", 0.1},
    {"teamActuatorNoise", 0},           {"playerRandomFactorLeft", 1},      {"playerRandomFactorRight", 1},
    {"kickRandFactorLeft", 1},          {"kickRandFactorRight", 1},         {"ballSize", 0.085},
    {"ballDecay", 0.94},                {"ballRandom", 0.05},               {"ballWeight", 0.2},
    {"ballSpeedMax", 3},                {"ballAccelMax", 2.7},              {"dashPowerRate", 0.006},
    {"kickPowerRate", 0.027},           {"kickableMargin", 0.7},            {"controlRadius", 2},
    {"controlRadiusWidth", 1.7},        {"maxPower", 100},                  {"minPower", -100},
    {"maxMoment", 180},                 {"minMoment", -180},                {"maxNeckMoment", 180},
    {"minNeckMoment", -180},            {"maxNeckAngle", 90},               {"minNeckAngle", -90},
    {"visibleAngle", 90},               {"visibleDist", 3},                 {"windDir", 0},
    {"windForce", 0},                   {"windAngle", 0},                   {"windRandom", 0},
    {"kickableArea", 1.085},            {"catchAreaLength", 1.2},           {"catchAreaWidth", 1},
    {"catchProbability", 1},            {"goalieMaxMoves", 2},              {"cornerKickMargin", 1},
    {"offsideArea", 2.5},               {"winNo", 0},                       {"winRandom", 0},
    {"sayCntMax", 128},                 {"sayCoachMsgSize", 128},           {"clangWinSize", 300},
    {"clangDefineWin", 1},              {"clangMetaWin", 1},                {"clangAdviceWin", 1},
    {"clangInfoWin", 1},                {"clangMessageDelay", 50},          {"clangMessagesPerCycle", 1},
    {"halfTime", 3000},                 {"simulatorStep", 100},             {"sendStep", 150},
    {"receiveStep", 10},                {"senseBodyStep", 100},             {"lcmStep", 300},
    {"sayMsgSize", 10},                 {"hearMax", 1},                     {"hearInc", 1},
    {"hearDecay", 1},                   {"catchBanCycle", 5},               {"slowDownFactor", 1},
    {"useOffside", 1},                  {"kickoffOffside", 1},              {"offsideKickMargin", 9.15},
    {"audioDist", 50},                  {"distQuantizeStep", 0.1},          {"landQuantizeStep", 0.01},
    {"dirQuantizeStep", -1},            {"distQuantizeStepLeft", -1},       {"distQuantizeStepRight", -1},
    {"landQuantizeStepLeft", -1},       {"landQuantizeStepRight", -1},      {"dirQuantizeStepLeft", -1},
    {"dirQuantizeStepRight", -1},       {"coachMode", 0},                   {"coachWithRefMode", 0},
    {"oldHear", 0},                     {"coachSendVisualStep", 100},       {"startGoalLeft", 0},
    {"startGoalRight", 0},              {"fullstateLeft", 0},               {"fullstateRight", 0},
    {"dropBallTime", 100},
}};
// clang-format on

/// The value of a parameter; a name that is not in the table does not compile.
consteval double parameter(std::string_view name) {
    std::size_t i = 0;
    while (PARAMETERS.at(i).name != name) {
        ++i;
    }
    return PARAMETERS.at(i).value;
}
consteval int wholeParameter(std::string_view name) {
    return static_cast<int>(parameter(name));
}

inline constexpr double PITCH_HALF_LENGTH = 52.5;
inline constexpr double PITCH_HALF_WIDTH = 34.0;
inline constexpr double GOAL_HALF_WIDTH = parameter("goalWidth") / 2.0;
inline constexpr double PLAYER_SIZE = parameter("playerSize");
inline constexpr double BALL_SIZE = parameter("ballSize");
inline constexpr double KICKABLE_AREA = parameter("kickableArea");

/// Rules that no message tells the players.
inline constexpr double POST_RADIUS = 0.06;
inline constexpr double EXTRA_STAMINA = 50.0;
inline constexpr double STAMINA_CAPACITY = 130600.0;
inline constexpr double MIN_DASH_POWER = 0.0;
inline constexpr double MAX_CATCH_ANGLE_DEG = 90.0;
inline constexpr double BALL_STUCK_RADIUS = 3.0;

/// The messages that follow a successful init; `halfCycles` is the length of a half.
std::string serverParamMessage(int halfCycles);
std::string playerParamMessage();
std::string playerTypeMessage();

} // namespace practice
