#include <algorithm>
#include <array>
#include <bitset>
#include <cctype>
#include <cstddef>
#include <ostream>
#include <variant>

#include "parser/Readers.h"

namespace rcc {

namespace {

/// One parameter of a record: its name and where it goes.
template <typename Record>
struct Field {
    std::string_view name;
    std::variant<double Record::*, int Record::*> member;
    std::string_view wireName = name; ///< in the form with names
};

// One row for each parameter, in the order of the positional form. The third column is the name
// that the server uses where it differs from ours.
// clang-format off

constexpr std::array<Field<RCC_ServerParam>, 103> SERVER_PARAM_FIELDS = {{
    {"goalWidth",               &RCC_ServerParam::goalWidth},
    {"inertiaMoment",           &RCC_ServerParam::inertiaMoment},
    {"playerSize",              &RCC_ServerParam::playerSize},
    {"playerDecay",             &RCC_ServerParam::playerDecay},
    {"playerRandom",            &RCC_ServerParam::playerRandom,            "player_rand"},
    {"playerWeight",            &RCC_ServerParam::playerWeight},
    {"playerSpeedMax",          &RCC_ServerParam::playerSpeedMax},
    {"playerAccelMax",          &RCC_ServerParam::playerAccelMax},
    {"staminaMax",              &RCC_ServerParam::staminaMax},
    {"staminaInc",              &RCC_ServerParam::staminaInc,              "stamina_inc_max"},
    {"recoverInit",             &RCC_ServerParam::recoverInit},
    {"recoverDecThr",           &RCC_ServerParam::recoverDecThr},
    {"recoverMin",              &RCC_ServerParam::recoverMin},
    {"recoverDec",              &RCC_ServerParam::recoverDec},
    {"effortInit",              &RCC_ServerParam::effortInit},
    {"effortDecThr",            &RCC_ServerParam::effortDecThr},
    {"effortMin",               &RCC_ServerParam::effortMin},
    {"effortDec",               &RCC_ServerParam::effortDec},
    {"effortIncThr",            &RCC_ServerParam::effortIncThr},
    {"effortInc",               &RCC_ServerParam::effortInc},
    {"kickRandom",              &RCC_ServerParam::kickRandom,              "kick_rand"},
    {"teamActuatorNoise",       &RCC_ServerParam::teamActuatorNoise},
    {"playerRandomFactorLeft",  &RCC_ServerParam::playerRandomFactorLeft,  "prand_factor_l"},
    {"playerRandomFactorRight", &RCC_ServerParam::playerRandomFactorRight, "prand_factor_r"},
    {"kickRandFactorLeft",      &RCC_ServerParam::kickRandFactorLeft,      "kick_rand_factor_l"},
    {"kickRandFactorRight",     &RCC_ServerParam::kickRandFactorRight,     "kick_rand_factor_r"},
    {"ballSize",                &RCC_ServerParam::ballSize},
    {"ballDecay",               &RCC_ServerParam::ballDecay},
    {"ballRandom",              &RCC_ServerParam::ballRandom,              "ball_rand"},
    {"ballWeight",              &RCC_ServerParam::ballWeight},
    {"ballSpeedMax",            &RCC_ServerParam::ballSpeedMax},
    {"ballAccelMax",            &RCC_ServerParam::ballAccelMax},
    {"dashPowerRate",           &RCC_ServerParam::dashPowerRate},
    {"kickPowerRate",           &RCC_ServerParam::kickPowerRate},
    {"kickableMargin",          &RCC_ServerParam::kickableMargin},
    {"controlRadius",           &RCC_ServerParam::controlRadius},
    {"controlRadiusWidth",      &RCC_ServerParam::controlRadiusWidth},
    {"maxPower",                &RCC_ServerParam::maxPower},
    {"minPower",                &RCC_ServerParam::minPower},
    {"maxMoment",               &RCC_ServerParam::maxMoment},
    {"minMoment",               &RCC_ServerParam::minMoment},
    {"maxNeckMoment",           &RCC_ServerParam::maxNeckMoment},
    {"minNeckMoment",           &RCC_ServerParam::minNeckMoment},
    {"maxNeckAngle",            &RCC_ServerParam::maxNeckAngle,            "maxneckang"},
    {"minNeckAngle",            &RCC_ServerParam::minNeckAngle,            "minneckang"},
    {"visibleAngle",            &RCC_ServerParam::visibleAngle},
    {"visibleDist",             &RCC_ServerParam::visibleDist,             "visible_distance"},
    {"windDir",                 &RCC_ServerParam::windDir},
    {"windForce",               &RCC_ServerParam::windForce},
    {"windAngle",               &RCC_ServerParam::windAngle,               "wind_ang"},
    {"windRandom",              &RCC_ServerParam::windRandom,              "wind_rand"},
    {"kickableArea",            &RCC_ServerParam::kickableArea},
    {"catchAreaLength",         &RCC_ServerParam::catchAreaLength,         "catchable_area_l"},
    {"catchAreaWidth",          &RCC_ServerParam::catchAreaWidth,          "catchable_area_w"},
    {"catchProbability",        &RCC_ServerParam::catchProbability},
    {"goalieMaxMoves",          &RCC_ServerParam::goalieMaxMoves},
    {"cornerKickMargin",        &RCC_ServerParam::cornerKickMargin,        "ckick_margin"},
    {"offsideArea",             &RCC_ServerParam::offsideArea,             "offside_active_area_size"},
    {"winNo",                   &RCC_ServerParam::winNo,                   "wind_none"},
    {"winRandom",               &RCC_ServerParam::winRandom,               "wind_random"},
    {"sayCntMax",               &RCC_ServerParam::sayCntMax,               "say_coach_cnt_max"},
    {"sayCoachMsgSize",         &RCC_ServerParam::sayCoachMsgSize},
    {"clangWinSize",            &RCC_ServerParam::clangWinSize},
    {"clangDefineWin",          &RCC_ServerParam::clangDefineWin},
    {"clangMetaWin",            &RCC_ServerParam::clangMetaWin},
    {"clangAdviceWin",          &RCC_ServerParam::clangAdviceWin},
    {"clangInfoWin",            &RCC_ServerParam::clangInfoWin},
    {"clangMessageDelay",       &RCC_ServerParam::clangMessageDelay,       "clang_mess_delay"},
    {"clangMessagesPerCycle",   &RCC_ServerParam::clangMessagesPerCycle,   "clang_mess_per_cycle"},
    {"halfTime",                &RCC_ServerParam::halfTime},
    {"simulatorStep",           &RCC_ServerParam::simulatorStep},
    {"sendStep",                &RCC_ServerParam::sendStep},
    {"receiveStep",             &RCC_ServerParam::receiveStep,             "recv_step"},
    {"senseBodyStep",           &RCC_ServerParam::senseBodyStep},
    {"lcmStep",                 &RCC_ServerParam::lcmStep},
    {"sayMsgSize",              &RCC_ServerParam::sayMsgSize},
    {"hearMax",                 &RCC_ServerParam::hearMax},
    {"hearInc",                 &RCC_ServerParam::hearInc},
    {"hearDecay",               &RCC_ServerParam::hearDecay},
    {"catchBanCycle",           &RCC_ServerParam::catchBanCycle},
    {"slowDownFactor",          &RCC_ServerParam::slowDownFactor},
    {"useOffside",              &RCC_ServerParam::useOffside},
    {"kickoffOffside",          &RCC_ServerParam::kickoffOffside,          "forbid_kick_off_offside"},
    {"offsideKickMargin",       &RCC_ServerParam::offsideKickMargin},
    {"audioDist",               &RCC_ServerParam::audioDist,               "audio_cut_dist"},
    {"distQuantizeStep",        &RCC_ServerParam::distQuantizeStep,        "quantize_step"},
    {"landQuantizeStep",        &RCC_ServerParam::landQuantizeStep,        "quantize_step_l"},
    {"dirQuantizeStep",         &RCC_ServerParam::dirQuantizeStep,         "quantize_step_dir"},
    {"distQuantizeStepLeft",    &RCC_ServerParam::distQuantizeStepLeft,    "quantize_step_dist_team_l"},
    {"distQuantizeStepRight",   &RCC_ServerParam::distQuantizeStepRight,   "quantize_step_dist_team_r"},
    {"landQuantizeStepLeft",    &RCC_ServerParam::landQuantizeStepLeft,    "quantize_step_dist_l_team_l"},
    {"landQuantizeStepRight",   &RCC_ServerParam::landQuantizeStepRight,   "quantize_step_dist_l_team_r"},
    {"dirQuantizeStepLeft",     &RCC_ServerParam::dirQuantizeStepLeft,     "quantize_step_dir_team_l"},
    {"dirQuantizeStepRight",    &RCC_ServerParam::dirQuantizeStepRight,    "quantize_step_dir_team_r"},
    {"coachMode",               &RCC_ServerParam::coachMode,               "coach"},
    {"coachWithRefMode",        &RCC_ServerParam::coachWithRefMode,        "coach_w_referee"},
    {"oldHear",                 &RCC_ServerParam::oldHear,                 "old_coach_hear"},
    {"coachSendVisualStep",     &RCC_ServerParam::coachSendVisualStep,     "send_vi_step"},
    {"startGoalLeft",           &RCC_ServerParam::startGoalLeft,           "start_goal_l"},
    {"startGoalRight",          &RCC_ServerParam::startGoalRight,          "start_goal_r"},
    {"fullstateLeft",           &RCC_ServerParam::fullstateLeft,           "fullstate_l"},
    {"fullstateRight",          &RCC_ServerParam::fullstateRight,          "fullstate_r"},
    {"dropBallTime",            &RCC_ServerParam::dropBallTime},
}};

constexpr std::array<Field<RCC_PlayerParam>, 19> PLAYER_PARAM_FIELDS = {{
    {"playerTypes",              &RCC_PlayerParam::playerTypes},
    {"subsMax",                  &RCC_PlayerParam::subsMax},
    {"playerTypesMax",           &RCC_PlayerParam::playerTypesMax,           "pt_max"},
    {"playerSpeedMaxDeltaMin",   &RCC_PlayerParam::playerSpeedMaxDeltaMin},
    {"playerSpeedMaxDeltaMax",   &RCC_PlayerParam::playerSpeedMaxDeltaMax},
    {"staminaIncMaxDeltaFactor", &RCC_PlayerParam::staminaIncMaxDeltaFactor},
    {"playerDecayDeltaMin",      &RCC_PlayerParam::playerDecayDeltaMin},
    {"playerDecayDeltaMax",      &RCC_PlayerParam::playerDecayDeltaMax},
    {"inertiaMomentDeltaFactor", &RCC_PlayerParam::inertiaMomentDeltaFactor},
    {"dashPowerRateDeltaMin",    &RCC_PlayerParam::dashPowerRateDeltaMin},
    {"dashPowerRateDeltaMax",    &RCC_PlayerParam::dashPowerRateDeltaMax},
    {"playerSizeDeltaFactor",    &RCC_PlayerParam::playerSizeDeltaFactor},
    {"kickableMarginDeltaMin",   &RCC_PlayerParam::kickableMarginDeltaMin},
    {"kickableMarginDeltaMax",   &RCC_PlayerParam::kickableMarginDeltaMax},
    {"kickRandomDeltaFactor",    &RCC_PlayerParam::kickRandomDeltaFactor,    "kick_rand_delta_factor"},
    {"extraStaminaDeltaMin",     &RCC_PlayerParam::extraStaminaDeltaMin},
    {"extraStaminaDeltaMax",     &RCC_PlayerParam::extraStaminaDeltaMax},
    {"effortMaxDeltaFactor",     &RCC_PlayerParam::effortMaxDeltaFactor},
    {"effortMinDeltaFactor",     &RCC_PlayerParam::effortMinDeltaFactor},
}};

constexpr std::array<Field<RCC_PlayerType>, 12> PLAYER_TYPE_FIELDS = {{
    {"id",             &RCC_PlayerType::id},
    {"playerSpeedMax", &RCC_PlayerType::playerSpeedMax},
    {"staminaIncMax",  &RCC_PlayerType::staminaIncMax},
    {"playerDecay",    &RCC_PlayerType::playerDecay},
    {"inertiaMoment",  &RCC_PlayerType::inertiaMoment},
    {"dashPowerRate",  &RCC_PlayerType::dashPowerRate},
    {"playerSize",     &RCC_PlayerType::playerSize},
    {"kickableMargin", &RCC_PlayerType::kickableMargin},
    {"kickRand",       &RCC_PlayerType::kickRand},
    {"extraStamina",   &RCC_PlayerType::extraStamina},
    {"effortMax",      &RCC_PlayerType::effortMax},
    {"effortMin",      &RCC_PlayerType::effortMin},
}};
// clang-format on

bool readNumber(Scanner& scanner, double& value) {
    return scanner.real(value);
}
bool readNumber(Scanner& scanner, int& value) {
    return scanner.integer(value);
}

template <typename Record>
bool readField(Scanner& scanner, Field<Record> const& field, Record& record) {
    return std::visit([&](auto member) { return readNumber(scanner, record.*member); },
                      field.member);
}

/// Without regard to case and underscores.
bool sameName(std::string_view a, std::string_view b) {
    auto const skipUnderscores = [](std::string_view& name) {
        name.remove_prefix(std::min(name.find_first_not_of('_'), name.size()));
    };
    auto const lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    for (;; a.remove_prefix(1), b.remove_prefix(1)) {
        skipUnderscores(a);
        skipUnderscores(b);
        if (a.empty() || b.empty()) return a.empty() && b.empty();
        if (lower(a.front()) != lower(b.front())) return false;
    }
}

/// Index in the table, or its size. The server's own names go first: its `wind_random` is a switch,
/// not our windRandom.
template <typename Record, std::size_t N>
std::size_t findField(std::array<Field<Record>, N> const& table, std::string_view name) {
    auto field =
        std::ranges::find_if(table, [&](auto const& f) { return sameName(f.wireName, name); });
    if (field == table.end()) {
        field = std::ranges::find_if(table, [&](auto const& f) { return sameName(f.name, name); });
    }
    return static_cast<std::size_t>(field - table.begin());
}

/// Which fields of a table a message has set.
template <std::size_t N>
using Given = std::bitset<N>;

template <typename Record, std::size_t N>
bool readOneNamed(Scanner& scanner, std::array<Field<Record>, N> const& table, Record& record,
                  Given<N>& given) {
    if (!scanner.open()) return false;
    std::string_view const name = scanner.word();
    if (name.empty()) return false;
    std::size_t const index = findField(table, name);
    if (index == N) return scanner.skipItems() && scanner.close();
    given.set(index);
    return readField(scanner, table[index], record) && scanner.close();
}

template <typename Record, std::size_t N>
bool readNamed(Scanner& scanner, std::array<Field<Record>, N> const& table, Record& record,
               Given<N>& given) {
    while (!scanner.atClose()) {
        if (!readOneNamed(scanner, table, record, given)) return false;
    }
    return given.any();
}

template <typename Record, std::size_t N>
bool readRecord(Scanner& scanner, std::array<Field<Record>, N> const& table, Record& record,
                Given<N>& given) {
    if (scanner.atOpen()) return readNamed(scanner, table, record, given);
    given.set();
    return std::ranges::all_of(
        table, [&](auto const& field) { return readField(scanner, field, record); });
}

} // namespace

bool readServerParam(Scanner& scanner, RCC_ServerParam& param) {
    Given<SERVER_PARAM_FIELDS.size()> given;
    if (!readRecord(scanner, SERVER_PARAM_FIELDS, param, given)) return false;
    if (!given[findField(SERVER_PARAM_FIELDS, "kickableArea")]) {
        param.kickableArea = param.playerSize + param.kickableMargin + param.ballSize;
    }
    if (!given[findField(SERVER_PARAM_FIELDS, "controlRadiusWidth")]) {
        param.controlRadiusWidth = param.controlRadius - param.playerSize;
    }
    return true;
}

bool readPlayerParam(Scanner& scanner, RCC_PlayerParam& param) {
    Given<PLAYER_PARAM_FIELDS.size()> given;
    return readRecord(scanner, PLAYER_PARAM_FIELDS, param, given);
}

bool readPlayerType(Scanner& scanner, RCC_PlayerType& type) {
    Given<PLAYER_TYPE_FIELDS.size()> given;
    return readRecord(scanner, PLAYER_TYPE_FIELDS, type, given) && given.all() && type.id >= 0;
}

} // namespace rcc

void RCC_PlayerType::print(std::ostream& os) const {
    os << ' ';
    for (auto const& field : rcc::PLAYER_TYPE_FIELDS) {
        std::visit([&](auto member) { os << this->*member << ' '; }, field.member);
    }
    os << '\n';
}
