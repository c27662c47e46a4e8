#include "stats/Analysis.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace stats {

namespace {

using namespace gamelog;

constexpr double LONGEST_STEP = 2; // metres; whoever is farther off than that was placed there

bool onField(Player const& player) {
    return player.has(state::ON_FIELD);
}

/// What the player did to the ball between two shows; nothing when it failed.
std::optional<TouchKind> touchOf(Player const& now, Player const& before) {
    if (now.has(state::KICK) && !now.has(state::KICK_FAILED)) return TouchKind::kick;
    // A tackle goes on for some cycles but meets the ball in the first.
    if (now.has(state::TACKLE) && !now.has(state::TACKLE_FAILED) && !before.has(state::TACKLE)) {
        return TouchKind::tackle;
    }
    if (now.has(state::CATCH) && !now.has(state::CATCH_FAILED) && !before.has(state::CATCH)) {
        return TouchKind::catchBall;
    }
    return std::nullopt;
}

/// "(result 202611211650 Alpha_0-vs-Beta_1)" tells the date as "2026-11-21T16:50".
std::string dateOf(std::string_view message) {
    constexpr std::string_view START = "(result ";
    constexpr std::size_t DIGITS = 12;
    if (!message.starts_with(START)) return {};
    std::string_view const digits = message.substr(START.size(), DIGITS);
    auto const isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits.size() < DIGITS || !std::ranges::all_of(digits, isDigit)) return {};
    std::string date(digits);
    date.insert(10, ":").insert(8, "T").insert(6, "-").insert(4, "-");
    return date;
}

enum class Meaning : std::uint8_t { none, goal, offside, foul, kickOff, setPiece };

struct ModeMeaning {
    std::string_view stem;
    Meaning meaning;
    int TeamFigures::*count;
    bool ballWasOut = false;
};

// clang-format off
constexpr std::array<ModeMeaning, 18> MEANINGS = {{
    {"goal",                 Meaning::goal,     nullptr},
    {"offside",              Meaning::offside,  &TeamFigures::offsides},
    {"kick_off",             Meaning::kickOff,  nullptr},
    {"drop_ball",            Meaning::kickOff,  nullptr},
    {"kick_in",              Meaning::setPiece, &TeamFigures::kickIns,     true},
    {"corner_kick",          Meaning::setPiece, &TeamFigures::cornerKicks, true},
    {"goal_kick",            Meaning::setPiece, &TeamFigures::goalKicks,   true},
    {"free_kick",            Meaning::setPiece, &TeamFigures::freeKicks},
    {"indirect_free_kick",   Meaning::setPiece, &TeamFigures::freeKicks},
    {"penalty_kick",         Meaning::setPiece, &TeamFigures::freeKicks},
    {"foul_charge",          Meaning::foul,     &TeamFigures::fouls},
    {"foul_push",            Meaning::foul,     &TeamFigures::fouls},
    {"foul_multiple_attack", Meaning::foul,     &TeamFigures::fouls},
    {"foul_ballout",         Meaning::foul,     &TeamFigures::fouls},
    {"back_pass",            Meaning::foul,     &TeamFigures::fouls},
    {"free_kick_fault",      Meaning::foul,     &TeamFigures::fouls},
    {"catch_fault",          Meaning::foul,     &TeamFigures::fouls},
    {"illegal_defense",      Meaning::foul,     &TeamFigures::fouls},
}};
// clang-format on

ModeMeaning meaningOf(PlayMode mode) {
    auto const found = std::ranges::find(MEANINGS, stemOf(mode), &ModeMeaning::stem);
    return found == MEANINGS.end() ? ModeMeaning{{}, Meaning::none, nullptr} : *found;
}

} // namespace

Analysis::Analysis() : chain_(figures_, pitch_) {}

void Analysis::take(Record const& record) {
    std::visit([this](auto const& known) { take(known); }, record);
}

void Analysis::take(ServerParam const& parameters) {
    pitch_.goalHalfWidth = parameters.number("goal_width", 2 * pitch_.goalHalfWidth) / 2;
    pitch_.ballDecay = parameters.number("ball_decay", pitch_.ballDecay);
}

void Analysis::take(PlayerType const& parameters) {
    staminaIncrease_.push_back(parameters.number("stamina_inc_max", 45));
}

void Analysis::take(PlayModeChange const& change) {
    changes_.push_back(change);
}

void Analysis::take(Team const& record) {
    Score const& score = record.score;
    TeamFigures& left = figures_.team(Side::left);
    TeamFigures& right = figures_.team(Side::right);
    left.name = score.left;
    right.name = score.right;
    left.goals = score.goalsLeft;
    right.goals = score.goalsRight;
    if (score.penalties) {
        left.penalties = score.penalties->front();
        right.penalties = score.penalties->back();
    }
}

void Analysis::take(Msg const& message) {
    if (auto date = dateOf(message.text); !date.empty()) figures_.date = std::move(date);
}

void Analysis::take(Show const& show) {
    ++shows_;
    if (show.time != cycle_) ++figures_.cycles;
    followPlayers(show);
    cycle_ = show.time;
    followBall(show);
    before_ = show;
}

void Analysis::followPlayers(Show const& show) {
    for (std::size_t i = 0; i < PLAYERS; ++i) {
        Player const& now = show.players[i];
        PlayerFigures& figures = figures_.players[i];
        if (!onField(now)) continue;
        figures.type = now.type;
        figures.commands = now.counts;
        figures.cycles += show.time != cycle_ ? 1 : 0;
    }
    if (!before_) return;
    for (std::size_t i = 0; i < PLAYERS; ++i) {
        followPlayer(show.players[i], before_->players[i], i < TEAM_SIZE ? Side::left : Side::right,
                     figures_.players[i]);
    }
}

void Analysis::followPlayer(Player const& now, Player const& before, Side side,
                            PlayerFigures& figures) {
    TeamFigures& team = figures_.team(side);
    auto const isNew = [&](std::uint32_t bit) { return now.has(bit) && !before.has(bit) ? 1 : 0; };
    for (BallFigures* const each :
         {static_cast<BallFigures*>(&team), static_cast<BallFigures*>(&figures)}) {
        each->yellowCards += isNew(state::YELLOW_CARD);
        each->redCards += isNew(state::RED_CARD);
    }
    if (!onField(now) || !onField(before)) return;
    double const step = std::hypot(now.x - before.x, now.y - before.y);
    bool const placed = now.count(Count::move) != before.count(Count::move) || step > LONGEST_STEP;
    double const metres = placed ? 0 : step;
    double const spent = staminaSpent(now, before);
    for (BallFigures* const each :
         {static_cast<BallFigures*>(&team), static_cast<BallFigures*>(&figures)}) {
        each->metres += metres;
        each->staminaSpent += spent;
    }
}

/// What was won back comes from the capacity. Where that is not told, the usual increase stands for
/// it, in cycles with a dash.
double Analysis::staminaSpent(Player const& now, Player const& before) const {
    double const change = before.stamina - now.stamina;
    if (now.capacity >= 0 && before.capacity >= 0) {
        return std::max(0.0, change + before.capacity - now.capacity);
    }
    if (now.count(Count::dash) == before.count(Count::dash)) return 0;
    auto const type = static_cast<std::size_t>(std::max(0, now.type));
    double const increase = type < staminaIncrease_.size() ? staminaIncrease_[type] : 0;
    return std::max(0.0, change + now.recovery * increase);
}

Moment Analysis::momentAt(Ball const& ball) const {
    return {shows_, std::max(cycle_, 0), {ball.x, ball.y}};
}

/// A step's touches come before the referee's words about them, which the log tells first.
void Analysis::followBall(Show const& show) {
    bool const wasPlay = mode_ == PlayMode::playOn;
    PlayMode const mode = changes_.empty() ? mode_ : changes_.back().mode;
    bool const inPlay = wasPlay || mode == PlayMode::playOn;
    bool const offside =
        !changes_.empty() && meaningOf(changes_.front().mode).meaning == Meaning::offside;
    std::optional<Side> caught;
    if (inPlay && !offside) {
        auto const& touches = touchesIn(show);
        for (Touch const& touch : touches) {
            if (touch.kind == TouchKind::catchBall) caught = touch.side;
            if (untaken_ && figures_.events[*untaken_].side == touch.side) {
                figures_.events[*untaken_].unum = touch.unum;
            }
            untaken_.reset();
        }
        auto const other = [&](Touch const& t) { return t.side != touches.front().side; };
        if (std::ranges::any_of(touches, other)) {
            chain_.duel();
        } else if (!touches.empty()) {
            chain_.touch(touches.front());
        }
    }
    if (caught) caught_ = caught;
    for (PlayModeChange const& change : changes_) {
        changeMode(change.mode, show.ball);
    }
    changes_.clear();
    caught_ = caught;
    if (mode_ == PlayMode::playOn) countPlay(show);
}

std::vector<Touch> const& Analysis::touchesIn(Show const& show) {
    touches_.clear();
    if (!before_) return touches_;
    for (std::size_t i = 0; i < PLAYERS; ++i) {
        auto const kind = touchOf(show.players[i], before_->players[i]);
        if (!kind) continue;
        int const number = static_cast<int>(i);
        touches_.push_back({*kind, number < TEAM_SIZE ? Side::left : Side::right,
                            number % TEAM_SIZE + 1, momentAt(before_->ball), show.ball});
    }
    return touches_;
}

void Analysis::countPlay(Show const& show) {
    ++figures_.playCycles;
    if (show.ball.x > 0) ++figures_.team(Side::left).dominationShows;
    if (show.ball.x < 0) ++figures_.team(Side::right).dominationShows;
    if (!chain_.owner()) return;
    Side const owner = *chain_.owner();
    ++figures_.team(owner).possessionShows;
    if (before_ && inArea(show.ball, owner) && !inArea(before_->ball, owner)) {
        ++figures_.team(owner).areaEntries;
    }
}

bool Analysis::inArea(Ball const& ball, Side attacker) const {
    double const ahead = attacker == Side::left ? ball.x : -ball.x;
    return ahead > pitch_.halfLength - pitch_.areaLength && ahead <= pitch_.halfLength &&
           std::abs(ball.y) < pitch_.areaHalfWidth;
}

void Analysis::changeMode(PlayMode mode, Ball const& ball) {
    if (mode_ == PlayMode::playOn && mode != PlayMode::playOn) stopPlay(mode);
    award(mode, ball);
    mode_ = mode;
}

void Analysis::stopPlay(PlayMode mode) {
    Moment const moment = momentAt(before_ ? before_->ball : Ball{});
    ModeMeaning const what = meaningOf(mode);
    std::optional<Side> const side = sideOf(mode);
    if (what.meaning == Meaning::goal && side) {
        chain_.goal(*side, moment);
    } else if (what.meaning == Meaning::offside && side) {
        chain_.offside(*side, moment);
    } else if (what.ballWasOut) {
        chain_.ballOut(moment);
    } else {
        chain_.stop();
    }
}

/// Counts and tells what a mode means besides the end of play.
void Analysis::award(PlayMode mode, Ball const& ball) {
    ModeMeaning const what = meaningOf(mode);
    std::optional<Side> const side = sideOf(mode);
    // The free kick after a catch is the goalkeeper's own clearance.
    bool const clearance = what.count == &TeamFigures::freeKicks && caught_ == side;
    if (what.meaning == Meaning::none || what.meaning == Meaning::goal || clearance) return;
    if (side && what.count != nullptr) ++(figures_.team(*side).*what.count);
    bool const foul = what.meaning == Meaning::foul;
    Moment const moment = momentAt(ball);
    figures_.events.push_back({moment.show, moment.cycle, foul ? "foul" : what.stem, side, 0, 0,
                               moment.place, foul ? what.stem : ""});
    if (what.meaning == Meaning::kickOff || what.meaning == Meaning::setPiece) {
        untaken_ = figures_.events.size() - 1;
    }
}

MatchFigures const& Analysis::finish() {
    for (PlayModeChange const& change : changes_) {
        changeMode(change.mode, before_ ? before_->ball : Ball{});
    }
    changes_.clear();
    for (std::size_t i = 0; i < PLAYERS && before_; ++i) {
        Player const& end = before_->players[i];
        bool const gone =
            figures_.players[i].cycles > 0 && !onField(end) && !end.has(state::RED_CARD);
        figures_.teams[i < TEAM_SIZE ? 0 : 1].disconnected += gone ? 1 : 0;
    }
    std::ranges::stable_sort(figures_.events, {}, &Event::show);
    return figures_;
}

} // namespace stats
