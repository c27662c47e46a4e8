#include "watch/Recorder.h"

#include <algorithm>

#include "gamelog/Line.h"
#include "gamelog/Writer.h"

namespace watch {

namespace {

using gamelog::PlayMode;

constexpr std::size_t MOST_PARAMETERS = 1'000'000; // bytes; usual are 20 000
constexpr std::string_view NOBODY = "null";

bool isComplaint(std::string_view text) {
    return text.starts_with("(error") || text.starts_with("(warning");
}

/// A record takes exactly one line, and a line of an event stream ends at any of these.
constexpr std::string_view LINE_ENDS("\n\r\0", 3);

void keepOnOneLine(std::string& text, std::size_t from) {
    for (std::size_t i = from; (i = text.find_first_of(LINE_ENDS, i)) != std::string::npos;) {
        text[i] = ' ';
    }
}

template <typename... Arguments>
void appendLine(std::string& out, Arguments const&... record) {
    std::size_t const begin = out.size();
    gamelog::append(out, record...);
    keepOnOneLine(out, begin);
    out += '\n';
}

void appendStanding(std::string& out, int time, gamelog::Scoreboard const& scoreboard) {
    appendLine(out, gamelog::PlayModeChange{time, scoreboard.mode});
    appendLine(out, gamelog::Team{time, scoreboard.score});
}

bool mayBecome(std::string const& before, std::string const& now) {
    return before == now || before == NOBODY;
}

} // namespace

void Recorder::connect(int monitorVersion) {
    logVersion_ = gamelog::logVersionOfMonitor(monitorVersion);
    parameters_.clear();
    undecided_ = true;
}

Recorder::Taken Recorder::take(std::string_view datagram) {
    datagram = datagram.substr(0, datagram.find_last_not_of(LINE_ENDS) + 1);
    if (isComplaint(datagram)) {
        complaint_ = datagram;
        keepOnOneLine(complaint_, 0);
        return Taken::complaint;
    }
    if (gamelog::readLine(datagram, record_)) return Taken::unreadable;
    // Only what is said may hold such characters: a name would fall apart.
    bool const oneLine = datagram.find_first_of(LINE_ENDS) == std::string_view::npos;
    if (!oneLine && !std::holds_alternative<gamelog::Msg>(record_)) return Taken::unreadable;
    return takeRecord();
}

Recorder::Taken Recorder::takeRecord() {
    if (auto* const show = std::get_if<gamelog::Show>(&record_)) return takeShow(*show);
    if (auto const* const msg = std::get_if<gamelog::Msg>(&record_)) return takeMsg(*msg);
    bool const parameters = std::holds_alternative<gamelog::ServerParam>(record_) ||
                            std::holds_alternative<gamelog::PlayerParam>(record_) ||
                            std::holds_alternative<gamelog::PlayerType>(record_);
    if (parameters) addParameters();
    // A monitor is told mode and score in its shows.
    return std::holds_alternative<gamelog::Unknown>(record_) ? Taken::unreadable : Taken::record;
}

void Recorder::addParameters() {
    if (!undecided_) {
        parameters_.clear();
        undecided_ = true;
    }
    if (parameters_.size() < MOST_PARAMETERS) appendLine(parameters_, record_, logVersion_);
}

Recorder::Taken Recorder::takeMsg(gamelog::Msg const& msg) {
    if (isComplaint(msg.text)) {
        complaint_ = msg.text;
        keepOnOneLine(complaint_, 0);
        return Taken::complaint;
    }
    if (undecided_) return Taken::record; // it is not known to which match it belongs
    show_.clear();
    appendLine(show_, msg);
    history_.append(show_, standing_);
    return Taken::record;
}

bool Recorder::isSameMatch(gamelog::Show const& show) const {
    if (!begun_ || show.time < lastTime_) return false;
    if (!undecided_) return true;
    gamelog::Score const& now = show.scoreboard->score;
    return parameters_ == ownParameters_ && last_.mode != PlayMode::timeOver &&
           mayBecome(last_.score.left, now.left) && mayBecome(last_.score.right, now.right) &&
           last_.score.goalsLeft <= now.goalsLeft && last_.score.goalsRight <= now.goalsRight;
}

void Recorder::beginMatch() {
    ownParameters_ = parameters_;
    history_.begin(gamelog::header(logVersion_) + ownParameters_);
    begun_ = true;
    recorded_ = {};
    standing_.clear();
}

Recorder::Taken Recorder::takeShow(gamelog::Show& show) {
    if (!show.scoreboard) return Taken::unreadable;
    if (!isSameMatch(show)) beginMatch();
    undecided_ = false;
    last_ = *show.scoreboard;
    lastTime_ = show.time;
    show.scoreboard.reset();
    if (last_.mode == PlayMode::beforeKickOff) {
        showPresent(show, last_);
    } else if (last_.mode != PlayMode::timeOver || recorded_.mode != PlayMode::timeOver) {
        recordStep(show, last_);
    }
    return Taken::record;
}

void Recorder::showPresent(gamelog::Show const& show, gamelog::Scoreboard const& scoreboard) {
    step_.clear();
    show_.clear();
    appendStanding(step_, show.time, scoreboard);
    appendLine(show_, show, logVersion_);
    history_.setPresent(step_, show_);
}

void Recorder::recordStep(gamelog::Show const& show, gamelog::Scoreboard const& scoreboard) {
    bool const first = recorded_.mode == PlayMode::none;
    bool const newMode = first || scoreboard.mode != recorded_.mode;
    bool const newScore = first || scoreboard.score != recorded_.score;
    step_.clear();
    if (newMode) appendLine(step_, gamelog::PlayModeChange{show.time, scoreboard.mode});
    if (newScore) appendLine(step_, gamelog::Team{show.time, scoreboard.score});
    appendLine(step_, show, logVersion_);
    history_.setPresent({}, {});
    history_.append(step_, standing_);
    if (newMode || newScore) {
        recorded_ = scoreboard;
        standing_.clear();
        appendStanding(standing_, show.time, scoreboard);
    }
}

} // namespace watch
