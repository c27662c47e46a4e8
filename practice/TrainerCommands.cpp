#include "practice/TrainerCommands.h"

#include <algorithm>
#include <array>

#include "practice/Commands.h"
#include "practice/Parameters.h"
#include "practice/Scanner.h"

namespace practice {

namespace {

constexpr Refusal ILLEGAL_COMMAND{ILLEGAL_FORM};
constexpr Refusal ILLEGAL_OBJECT{"(error illegal_object_form)"};
constexpr Refusal ILLEGAL_MODE{"(error illegal_mode)"};
constexpr Refusal UNKNOWN{"(error unknown_command)"};

/// The command if the parenthesis that closes it comes next.
template <typename Made>
TrainerCommand closed(std::string_view s, Made const& command) {
    if (!scan::take(s, ')')) return ILLEGAL_COMMAND;
    return command;
}

TrainerCommand readMode(std::string_view s) {
    std::string_view const word = scan::takeWord(s);
    if (!scan::take(s, ')')) return ILLEGAL_COMMAND;
    auto const mode = playModeOf(word);
    if (!mode) return ILLEGAL_MODE;
    return ChangeMode{*mode};
}

/// "(ball)" or "(player TEAM UNUM)"; false if it is neither.
bool takeObject(std::string_view& s, std::optional<PlayerName>& player) {
    if (!scan::take(s, '(')) return false;
    std::string_view const kind = scan::takeWord(s);
    if (kind == "ball") return scan::take(s, ')');
    std::string_view const team = scan::takeWord(s, scan::TEAM_LETTERS);
    auto const unum = scan::takeInteger(s);
    if (kind != "player" || team.empty() || !unum) return false;
    if (*unum < 1 || *unum > PLAYERS_PER_TEAM) return false;
    player = PlayerName{team, *unum};
    return scan::take(s, ')');
}

/// Numbers so large that no pitch knows them are cut.
double takeBounded(std::string_view& s, bool& taken) {
    constexpr double MOST = 1000.0;
    auto const number = scan::takeNumber(s);
    taken = number.has_value();
    return std::clamp(number.value_or(0.0), -MOST, MOST);
}

TrainerCommand readMove(std::string_view s) {
    MoveObject move{};
    if (!takeObject(s, move.player)) return ILLEGAL_OBJECT;
    std::array<double, 5> n{};
    std::size_t count = 0;
    for (bool taken = true; taken && count < n.size(); count += taken ? 1 : 0) {
        n.at(count) = takeBounded(s, taken);
    }
    if (count < 2) return ILLEGAL_OBJECT;
    if (count == 4) return ILLEGAL_COMMAND;
    move.pos = {n[0], n[1]};
    if (count > 2) move.dir = std::clamp(n[2], -180.0, 180.0);
    move.vel = {n[3], n[4]};
    return closed(s, move);
}

template <typename Switch>
TrainerCommand readSwitch(std::string_view s) {
    std::string_view const word = scan::takeWord(s);
    if (word != "on" && word != "off") return ILLEGAL_COMMAND;
    return closed(s, Switch{word == "on"});
}

/// Without quotes: everything up to the last parenthesis of the datagram.
std::optional<std::string_view> takeText(std::string_view s) {
    bool const enclosed = s.starts_with(' ') && s.ends_with(')');
    std::string_view const said = enclosed ? s.substr(1, s.size() - 2) : std::string_view{};
    bool const printable = std::ranges::all_of(said, [](char c) { return c >= ' ' && c <= '~'; });
    bool const quoted = said.find('"') != said.npos;
    constexpr long LONGEST = wholeParameter("sayCoachMsgSize");
    if (said.empty() || std::ssize(said) > LONGEST || !printable || quoted) return std::nullopt;
    return said;
}

template <typename Texted>
TrainerCommand readText(std::string_view s) {
    auto const said = takeText(s);
    if (!said) return ILLEGAL_COMMAND;
    return Texted{*said};
}

template <typename Plain>
TrainerCommand readPlain(std::string_view s) {
    return closed(s, Plain{});
}

struct Form {
    std::string_view word;
    TrainerCommand (*read)(std::string_view rest);
};

// clang-format off
constexpr std::array<Form, 12> FORMS{{
    {"start",       readPlain<StartMatch>},
    {"change_mode", readMode},
    {"move",        readMove},
    {"look",        readPlain<Look>},
    {"eye",         readSwitch<SwitchEye>},
    {"ear",         readSwitch<SwitchEar>},
    {"say",         readText<CoachSay>},
    {"check_ball",  readPlain<CheckBall>},
    {"team_names",  readPlain<AskTeamNames>},
    {"recover",     readPlain<RecoverAll>},
    {"done",        readPlain<Done>},
    {"chapter",     readText<Chapter>},
}};
// clang-format on

} // namespace

TrainerCommand readTrainerCommand(std::string_view datagram) {
    std::string_view s = scan::withoutEnding(datagram);
    if (!scan::take(s, '(')) return ILLEGAL_COMMAND;
    std::string_view const word = scan::takeWord(s);
    if (word.empty()) return ILLEGAL_COMMAND;
    auto const form = std::ranges::find(FORMS, word, &Form::word);
    if (form == FORMS.end()) return UNKNOWN;
    return form->read(s);
}

std::optional<double> readTrainerVersion(std::string_view datagram) {
    constexpr double WITHOUT_VERSION = 3.0, SENSELESS = -1.0;
    std::string_view s = scan::withoutEnding(datagram);
    if (!scan::take(s, '(') || scan::takeWord(s) != "init") return std::nullopt;
    if (scan::take(s, ')')) return WITHOUT_VERSION;
    bool const named = scan::take(s, '(') && scan::takeWord(s) == "version";
    auto const version = named ? scan::takeNumber(s) : std::nullopt;
    bool const complete = scan::take(s, ')') && scan::take(s, ')');
    return version && complete ? *version : SENSELESS;
}

} // namespace practice
