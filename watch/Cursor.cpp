#include "watch/Cursor.h"

#include <algorithm>
#include <charconv>

#include "watch/Text.h"

namespace watch {

namespace {

/// One event of a stream; every line of `text` becomes one of its lines.
void appendEvent(std::string& stream, std::string_view name, std::string_view text,
                 std::string_view id) {
    stream.append("event: ").append(name).append("\n");
    if (!id.empty()) stream.append("id: ").append(id).append("\n");
    while (!text.empty()) {
        std::string_view const line = text.substr(0, text.find('\n'));
        stream.append("data: ").append(line).append("\n");
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    stream += '\n';
}

bool takeNumber(std::string_view& text, std::uint64_t& number) {
    auto const read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc{}) return false;
    text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    return true;
}

bool takeWord(std::string_view& text, std::string_view wanted) {
    if (!text.starts_with(wanted)) return false;
    text.remove_prefix(wanted.size());
    return true;
}

} // namespace

/// What was found under the lock, to be written without it.
struct Cursor::News {
    bool closed = false, reset = false;
    std::shared_ptr<std::string const> preamble;
    std::string standing;
    std::shared_ptr<History::Block const> block;
    std::string_view text; ///< in the block
    std::string present, status;
};

Cursor::Cursor(History& history, std::string_view lastEventId) : history_(history) {
    stale_ = !lastEventId.empty() && !resume(lastEventId);
}

bool Cursor::resume(std::string_view lastEventId) {
    std::lock_guard const lock(history_.mutex_);
    std::uint64_t match = 0, offset = 0;
    bool const ours = takeWord(lastEventId, history_.run_) && takeWord(lastEventId, "-") &&
                      takeNumber(lastEventId, match) && takeWord(lastEventId, "-") &&
                      takeNumber(lastEventId, offset) && lastEventId.empty();
    bool const there = ours && match != 0 && match == history_.match_ &&
                       offset >= history_.firstKept() && offset <= history_.end_;
    if (!there) return false;
    match_ = match;
    offset_ = offset;
    return true;
}

std::string Cursor::id() const {
    return joined({history_.run_, "-", std::to_string(match_), "-", std::to_string(offset_)});
}

bool Cursor::behind() const {
    return statusSerial_ != history_.statusSerial_ || match_ != history_.match_ ||
           offset_ != history_.end_ ||
           (showSerial_ != history_.showSerial_ && !history_.show_.empty());
}

Cursor::News Cursor::collect(std::chrono::milliseconds patience) {
    std::unique_lock lock(history_.mutex_);
    history_.news_.wait_for(lock, patience, [this] { return history_.closed_ || behind(); });
    News news;
    news.closed = history_.closed_;
    if (statusSerial_ != history_.statusSerial_) {
        news.status = history_.status_;
        statusSerial_ = history_.statusSerial_;
    }
    if (history_.match_ != 0) {
        takeText(news);
        if (offset_ == history_.end_) takePresent(news);
    }
    return news;
}

void Cursor::takeText(News& news) {
    bool const lost = match_ != history_.match_ || offset_ < history_.firstKept();
    if (lost) {
        news.reset = stale_ || match_ != 0;
        news.preamble = history_.preamble_;
        match_ = history_.match_;
        offset_ = history_.firstKept();
        stale_ = false;
        headSerial_ = showSerial_ = 0;
        if (!history_.blocks_.empty()) news.standing = history_.blocks_.front()->standing;
    }
    if (offset_ == history_.end_) return;
    auto const& blocks = history_.blocks_;
    auto const after = std::ranges::upper_bound(
        blocks, offset_, {}, [](std::shared_ptr<History::Block> const& b) { return b->begin; });
    news.block = *std::prev(after);
    auto const skip = static_cast<std::size_t>(offset_ - news.block->begin);
    news.text = {news.block->bytes.get() + skip, news.block->size - skip};
    offset_ = news.block->end();
}

void Cursor::takePresent(News& news) {
    if (showSerial_ == history_.showSerial_) return;
    if (!history_.show_.empty()) {
        if (headSerial_ != history_.headSerial_) news.present = history_.head_;
        news.present += history_.show_;
    }
    headSerial_ = history_.headSerial_;
    showSerial_ = history_.showSerial_;
}

bool Cursor::next(std::string& stream, std::chrono::milliseconds patience) {
    News const news = collect(patience);
    if (news.closed) return false;
    if (!news.status.empty()) appendEvent(stream, "status", news.status, {});
    // An event without data would not be delivered.
    if (news.reset) appendEvent(stream, "reset", "new match", {});
    if (news.preamble) {
        std::string const opening = *news.preamble + news.standing;
        // Without an id: who loses the connection here has to get it again.
        appendEvent(stream, "log", opening, news.text.empty() ? id() : std::string());
    }
    if (!news.text.empty()) appendEvent(stream, "log", news.text, id());
    if (!news.present.empty()) appendEvent(stream, "log", news.present, {});
    return true;
}

} // namespace watch
