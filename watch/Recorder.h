#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "gamelog/Records.h"
#include "watch/History.h"

namespace watch {

/// Turns what a server sends to a monitor into the text of a game log, with the records that a log
/// has and in its order. As in a log, the steps before a kick-off are no part of the match, nor
/// those after the first one of time_over; the former are the history's present.
class Recorder {
public:
    enum class Taken {
        record,     ///< used, or known and of no use here
        complaint,  ///< an error or a warning of the server
        unreadable, ///< not understood; nothing was changed
    };

    explicit Recorder(History& history) : history_(history) {}

    /// A connection begins, on which monitor version 3, 4 or 5 is spoken. What follows may be the
    /// same match, as after a gap in the network, or another one.
    void connect(int monitorVersion);

    /// Takes a datagram, with or without its final NUL.
    Taken take(std::string_view datagram);

    /// What the server complained about last, one line.
    std::string const& complaint() const { return complaint_; }

private:
    Taken takeRecord();
    void addParameters();
    Taken takeShow(gamelog::Show& show);
    Taken takeMsg(gamelog::Msg const& msg);
    void beginMatch();
    bool isSameMatch(gamelog::Show const& show) const;
    void showPresent(gamelog::Show const& show, gamelog::Scoreboard const& scoreboard);
    void recordStep(gamelog::Show const& show, gamelog::Scoreboard const& scoreboard);

    History& history_;
    gamelog::Record record_; // of the last datagram
    int logVersion_ = gamelog::NEWEST_VERSION;
    std::string parameters_, ownParameters_; // as told last, and those of the match
    bool undecided_ = true;                  // no show has told whether the match is the same
    bool begun_ = false;
    int lastTime_ = 0;
    gamelog::Scoreboard last_;     // of the last show
    gamelog::Scoreboard recorded_; // of the last step in the log; mode none: there is no step
    std::string standing_;         // the lines of recorded_
    std::string step_, show_;      // reused
    std::string complaint_;
};

} // namespace watch
