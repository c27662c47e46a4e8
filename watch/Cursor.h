#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "watch/History.h"

namespace watch {

/// Where one browser is in the history, and the event stream that it gets: what it has missed in
/// large pieces, then each step as it comes.
class Cursor {
public:
    /// `lastEventId`: what the browser has got before, as a cursor has told it; anything else is
    /// answered with a reset and the whole history, empty with the history alone.
    Cursor(History& history, std::string_view lastEventId);

    /// Appends the next events to `stream`, waiting for some at most so long. False: the history
    /// was closed.
    bool next(std::string& stream, std::chrono::milliseconds patience);

private:
    struct News;
    News collect(std::chrono::milliseconds patience);
    bool behind() const;
    void takeText(News& news);
    void takePresent(News& news);
    bool resume(std::string_view lastEventId);
    std::string id() const;

    History& history_;
    std::uint64_t match_ = 0;  // 0: it has nothing of any match
    std::uint64_t offset_ = 0; // in the text of the match
    std::uint64_t headSerial_ = 0, showSerial_ = 0, statusSerial_ = 0;
    bool stale_ = false; // it has got what must be forgotten
};

} // namespace watch
