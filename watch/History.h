#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace watch {

class Cursor;

/// The match so far as the text of a game log, kept once for all browsers. One thread writes; each
/// browser's thread reads through a Cursor at its own pace. Locks are held for moments only and
/// never while something is sent: the writer does not wait for anybody.
///
/// When the text outgrows the limit, its oldest part is forgotten. Who comes late then gets header,
/// parameters, mode and score, and the match from the oldest step that is left.
class History {
public:
    /// `limit` in bytes. `run` tells this history from those of earlier runs of the program.
    explicit History(std::size_t limit, std::string run = "0");

    /// A new match: forgets the old one. `preamble`: header and parameters, whole lines.
    void begin(std::string preamble);
    /// Appends whole lines. `standing`: the lines of mode and score in force before them.
    void append(std::string_view lines, std::string_view standing);
    /// What is to be seen now without being part of the match: lines of mode and score, and a show
    /// that replaces the one before. Both empty: nothing.
    void setPresent(std::string_view head, std::string_view show);
    /// What browsers are told about the connection to the server: one line.
    void setStatus(std::string status);
    /// Ends all waiting of cursors, now and later.
    void close();

    /// Bytes of text that are kept.
    std::size_t size() const;

private:
    friend class Cursor;

    /// Its bytes never move: they are read without a lock while more are added behind them.
    struct Block {
        std::uint64_t begin = 0; ///< place of the first byte in the text of the match
        std::size_t size = 0, capacity = 0;
        std::unique_ptr<char[]> bytes;
        std::string standing; ///< mode and score in force at its beginning

        std::uint64_t end() const { return begin + size; }
    };

    std::uint64_t firstKept() const { return blocks_.empty() ? end_ : blocks_.front()->begin; }
    void addBlock(std::size_t needed, std::string_view standing);
    void forgetOldest();

    std::size_t const limit_;
    std::string const run_;
    mutable std::mutex mutex_; // guards all below
    std::condition_variable news_;
    std::uint64_t match_ = 0; // 0: none has begun
    std::shared_ptr<std::string const> preamble_;
    std::deque<std::shared_ptr<Block>> blocks_;
    std::uint64_t end_ = 0;
    std::string head_, show_;
    std::uint64_t headSerial_ = 0, showSerial_ = 0; // grow with every change
    std::string status_;
    std::uint64_t statusSerial_ = 0;
    bool closed_ = false;
};

} // namespace watch
