#include "config/Configuration.h"

#include <array>
#include <iostream>
#include <variant>

namespace {

/// A field of a record and the member that takes its value.
template <typename Record>
class Parameter {
public:
    constexpr Parameter(double Record::*field, float* member) : pair_(Real{field, member}) {}
    constexpr Parameter(int Record::*field, int* member) : pair_(Whole{field, member}) {}

    void integrate(Record const& record) const {
        std::visit([&record](auto const& p) { *p.member = p.narrow(record.*p.field); }, pair_);
    }

    void print(std::ostream& os) const {
        std::visit([&os](auto const& p) { os << *p.member; }, pair_);
    }

private:
    template <typename Field, typename Member>
    struct Pair {
        Field Record::*field;
        Member* member;

        static Member narrow(Field value) { return static_cast<Member>(value); }
    };
    using Real = Pair<double, float>;
    using Whole = Pair<int, int>;

    std::variant<Real, Whole> pair_;
};

// In the order of the messages, which is also the order of printing.
// clang-format off
constexpr std::array<Parameter<RCC_ServerParam>, 103> SERVER_PARAMETERS{{
    {&RCC_ServerParam::goalWidth,               &Configuration::goalWidth},
    {&RCC_ServerParam::inertiaMoment,           &Configuration::inertiaMoment},
    {&RCC_ServerParam::playerSize,              &Configuration::playerSize},
    {&RCC_ServerParam::playerDecay,             &Configuration::playerDecay},
    {&RCC_ServerParam::playerRandom,            &Configuration::playerRandom},
    {&RCC_ServerParam::playerWeight,            &Configuration::playerWeight},
    {&RCC_ServerParam::playerSpeedMax,          &Configuration::playerSpeedMax},
    {&RCC_ServerParam::playerAccelMax,          &Configuration::playerAccelMax},
    {&RCC_ServerParam::staminaMax,              &Configuration::staminaMax},
    {&RCC_ServerParam::staminaInc,              &Configuration::staminaInc},
    {&RCC_ServerParam::recoverInit,             &Configuration::recoverInit},
    {&RCC_ServerParam::recoverDecThr,           &Configuration::recoverDecThr},
    {&RCC_ServerParam::recoverMin,              &Configuration::recoverMin},
    {&RCC_ServerParam::recoverDec,              &Configuration::recoverDec},
    {&RCC_ServerParam::effortInit,              &Configuration::effortInit},
    {&RCC_ServerParam::effortDecThr,            &Configuration::effortDecThr},
    {&RCC_ServerParam::effortMin,               &Configuration::effortMin},
    {&RCC_ServerParam::effortDec,               &Configuration::effortDec},
    {&RCC_ServerParam::effortIncThr,            &Configuration::effortIncThr},
    {&RCC_ServerParam::effortInc,               &Configuration::effortInc},
    {&RCC_ServerParam::kickRandom,              &Configuration::kickRandom},
    {&RCC_ServerParam::teamActuatorNoise,       &Configuration::teamActuatorNoise},
    {&RCC_ServerParam::playerRandomFactorLeft,  &Configuration::playerRandomFactorLeft},
    {&RCC_ServerParam::playerRandomFactorRight, &Configuration::playerRandomFactorRight},
    {&RCC_ServerParam::kickRandFactorLeft,      &Configuration::kickRandFactorLeft},
    {&RCC_ServerParam::kickRandFactorRight,     &Configuration::kickRandFactorRight},
    {&RCC_ServerParam::ballSize,                &Configuration::ballSize},
    {&RCC_ServerParam::ballDecay,               &Configuration::ballDecay},
    {&RCC_ServerParam::ballRandom,              &Configuration::ballRandom},
    {&RCC_ServerParam::ballWeight,              &Configuration::ballWeight},
    {&RCC_ServerParam::ballSpeedMax,            &Configuration::ballSpeedMax},
    {&RCC_ServerParam::ballAccelMax,            &Configuration::ballAccelMax},
    {&RCC_ServerParam::dashPowerRate,           &Configuration::dashPowerRate},
    {&RCC_ServerParam::kickPowerRate,           &Configuration::kickPowerRate},
    {&RCC_ServerParam::kickableMargin,          &Configuration::kickableMargin},
    {&RCC_ServerParam::controlRadius,           &Configuration::controlRadius},
    {&RCC_ServerParam::controlRadiusWidth,      &Configuration::controlRadiusWidth},
    {&RCC_ServerParam::maxPower,                &Configuration::maxPower},
    {&RCC_ServerParam::minPower,                &Configuration::minPower},
    {&RCC_ServerParam::maxMoment,               &Configuration::maxMoment},
    {&RCC_ServerParam::minMoment,               &Configuration::minMoment},
    {&RCC_ServerParam::maxNeckMoment,           &Configuration::maxNeckMoment},
    {&RCC_ServerParam::minNeckMoment,           &Configuration::minNeckMoment},
    {&RCC_ServerParam::maxNeckAngle,            &Configuration::maxNeckAngle},
    {&RCC_ServerParam::minNeckAngle,            &Configuration::minNeckAngle},
    {&RCC_ServerParam::visibleAngle,            &Configuration::visibleAngle},
    {&RCC_ServerParam::visibleDist,             &Configuration::visibleDist},
    {&RCC_ServerParam::windDir,                 &Configuration::windDir},
    {&RCC_ServerParam::windForce,               &Configuration::windForce},
    {&RCC_ServerParam::windAngle,               &Configuration::windAngle},
    {&RCC_ServerParam::windRandom,              &Configuration::windRandom},
    {&RCC_ServerParam::kickableArea,            &Configuration::kickableArea},
    {&RCC_ServerParam::catchAreaLength,         &Configuration::catchAreaLength},
    {&RCC_ServerParam::catchAreaWidth,          &Configuration::catchAreaWidth},
    {&RCC_ServerParam::catchProbability,        &Configuration::catchProbability},
    {&RCC_ServerParam::goalieMaxMoves,          &Configuration::goalieMaxMoves},
    {&RCC_ServerParam::cornerKickMargin,        &Configuration::cornerKickMargin},
    {&RCC_ServerParam::offsideArea,             &Configuration::offsideArea},
    {&RCC_ServerParam::winNo,                   &Configuration::winNo},
    {&RCC_ServerParam::winRandom,               &Configuration::winRandom},
    {&RCC_ServerParam::sayCntMax,               &Configuration::sayCntMax},
    {&RCC_ServerParam::sayCoachMsgSize,         &Configuration::sayCoachMsgSize},
    {&RCC_ServerParam::clangWinSize,            &Configuration::clangWinSize},
    {&RCC_ServerParam::clangDefineWin,          &Configuration::clangDefineWin},
    {&RCC_ServerParam::clangMetaWin,            &Configuration::clangMetaWin},
    {&RCC_ServerParam::clangAdviceWin,          &Configuration::clangAdviceWin},
    {&RCC_ServerParam::clangInfoWin,            &Configuration::clangInfoWin},
    {&RCC_ServerParam::clangMessageDelay,       &Configuration::clangMessageDelay},
    {&RCC_ServerParam::clangMessagesPerCycle,   &Configuration::clangMessagesPerCycle},
    {&RCC_ServerParam::halfTime,                &Configuration::halfTime},
    {&RCC_ServerParam::simulatorStep,           &Configuration::simulatorStep},
    {&RCC_ServerParam::sendStep,                &Configuration::sendStep},
    {&RCC_ServerParam::receiveStep,             &Configuration::receiveStep},
    {&RCC_ServerParam::senseBodyStep,           &Configuration::senseBodyStep},
    {&RCC_ServerParam::lcmStep,                 &Configuration::lcmStep},
    {&RCC_ServerParam::sayMsgSize,              &Configuration::sayMsgSize},
    {&RCC_ServerParam::hearMax,                 &Configuration::hearMax},
    {&RCC_ServerParam::hearInc,                 &Configuration::hearInc},
    {&RCC_ServerParam::hearDecay,               &Configuration::hearDecay},
    {&RCC_ServerParam::catchBanCycle,           &Configuration::catchBanCycle},
    {&RCC_ServerParam::slowDownFactor,          &Configuration::slowDownFactor},
    {&RCC_ServerParam::useOffside,              &Configuration::useOffside},
    {&RCC_ServerParam::kickoffOffside,          &Configuration::kickoffOffside},
    {&RCC_ServerParam::offsideKickMargin,       &Configuration::offsideKickMargin},
    {&RCC_ServerParam::audioDist,               &Configuration::audioDist},
    {&RCC_ServerParam::distQuantizeStep,        &Configuration::distQuantizeStep},
    {&RCC_ServerParam::landQuantizeStep,        &Configuration::landQuantizeStep},
    {&RCC_ServerParam::dirQuantizeStep,         &Configuration::dirQuantizeStep},
    {&RCC_ServerParam::distQuantizeStepLeft,    &Configuration::distQuantizeStepLeft},
    {&RCC_ServerParam::distQuantizeStepRight,   &Configuration::distQuantizeStepRight},
    {&RCC_ServerParam::landQuantizeStepLeft,    &Configuration::landQuantizeStepLeft},
    {&RCC_ServerParam::landQuantizeStepRight,   &Configuration::landQuantizeStepRight},
    {&RCC_ServerParam::dirQuantizeStepLeft,     &Configuration::dirQuantizeStepLeft},
    {&RCC_ServerParam::dirQuantizeStepRight,    &Configuration::dirQuantizeStepRight},
    {&RCC_ServerParam::coachMode,               &Configuration::coachMode},
    {&RCC_ServerParam::coachWithRefMode,        &Configuration::coachWithRefMode},
    {&RCC_ServerParam::oldHear,                 &Configuration::oldHear},
    {&RCC_ServerParam::coachSendVisualStep,     &Configuration::coachSendVisualStep},
    {&RCC_ServerParam::startGoalLeft,           &Configuration::startGoalLeft},
    {&RCC_ServerParam::startGoalRight,          &Configuration::startGoalRight},
    {&RCC_ServerParam::fullstateLeft,           &Configuration::fullstateLeft},
    {&RCC_ServerParam::fullstateRight,          &Configuration::fullstateRight},
    {&RCC_ServerParam::dropBallTime,            &Configuration::dropBallTime},
}};

constexpr std::array<Parameter<RCC_PlayerParam>, 19> PLAYER_PARAMETERS{{
    {&RCC_PlayerParam::playerTypes,              &Configuration::playerTypes},
    {&RCC_PlayerParam::subsMax,                  &Configuration::subsMax},
    {&RCC_PlayerParam::playerTypesMax,           &Configuration::playerTypesMax},
    {&RCC_PlayerParam::playerSpeedMaxDeltaMin,   &Configuration::playerSpeedMaxDeltaMin},
    {&RCC_PlayerParam::playerSpeedMaxDeltaMax,   &Configuration::playerSpeedMaxDeltaMax},
    {&RCC_PlayerParam::staminaIncMaxDeltaFactor, &Configuration::staminaIncMaxDeltaFactor},
    {&RCC_PlayerParam::playerDecayDeltaMin,      &Configuration::playerDecayDeltaMin},
    {&RCC_PlayerParam::playerDecayDeltaMax,      &Configuration::playerDecayDeltaMax},
    {&RCC_PlayerParam::inertiaMomentDeltaFactor, &Configuration::inertiaMomentDeltaFactor},
    {&RCC_PlayerParam::dashPowerRateDeltaMin,    &Configuration::dashPowerRateDeltaMin},
    {&RCC_PlayerParam::dashPowerRateDeltaMax,    &Configuration::dashPowerRateDeltaMax},
    {&RCC_PlayerParam::playerSizeDeltaFactor,    &Configuration::playerSizeDeltaFactor},
    {&RCC_PlayerParam::kickableMarginDeltaMin,   &Configuration::kickableMarginDeltaMin},
    {&RCC_PlayerParam::kickableMarginDeltaMax,   &Configuration::kickableMarginDeltaMax},
    {&RCC_PlayerParam::kickRandomDeltaFactor,    &Configuration::kickRandomDeltaFactor},
    {&RCC_PlayerParam::extraStaminaDeltaMin,     &Configuration::extraStaminaDeltaMin},
    {&RCC_PlayerParam::extraStaminaDeltaMax,     &Configuration::extraStaminaDeltaMax},
    {&RCC_PlayerParam::effortMaxDeltaFactor,     &Configuration::effortMaxDeltaFactor},
    {&RCC_PlayerParam::effortMinDeltaFactor,     &Configuration::effortMinDeltaFactor},
}};
// clang-format on

template <typename Record, std::size_t N>
void integrate(Record const& record, std::array<Parameter<Record>, N> const& parameters) {
    for (Parameter<Record> const& parameter : parameters) {
        parameter.integrate(record);
    }
}

template <typename Record, std::size_t N>
void print(std::ostream& os, std::array<Parameter<Record>, N> const& parameters) {
    os << ' ';
    for (Parameter<Record> const& parameter : parameters) {
        parameter.print(os);
        os << ' ';
    }
    os << std::endl;
}

} // namespace

void Configuration::integrateServerParam(RCC_ServerParam const& p) {
    integrate(p, SERVER_PARAMETERS);
}

void Configuration::integratePlayerParam(RCC_PlayerParam const& p) {
    integrate(p, PLAYER_PARAMETERS);
}

void Configuration::addPlayerType(RCC_PlayerType const& t) {
    if (playerTypesV.size() >= MAX_PLAYER_TYPES) return;
    playerTypesV.reserve(MAX_PLAYER_TYPES);
    playerTypesV.push_back(t);
}

void Configuration::printServerParam() {
    print(std::cout, SERVER_PARAMETERS);
}

void Configuration::printPlayerParam() {
    print(std::cout, PLAYER_PARAMETERS);
}

void Configuration::printPlayerTypes(std::ostream& os) {
    for (RCC_PlayerType const& type : playerTypesV) {
        type.print(os);
    }
}
