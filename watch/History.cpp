#include "watch/History.h"

#include <algorithm>
#include <cstring>

namespace watch {

namespace {

constexpr std::size_t SMALLEST_BLOCK = 4096, USUAL_BLOCK = 262'144, BLOCKS_AT_LIMIT = 16;

} // namespace

History::History(std::size_t limit, std::string run) : limit_(limit), run_(std::move(run)) {}

void History::begin(std::string preamble) {
    {
        std::lock_guard const lock(mutex_);
        ++match_;
        preamble_ = std::make_shared<std::string const>(std::move(preamble));
        blocks_.clear();
        end_ = 0;
        head_.clear();
        show_.clear();
    }
    news_.notify_all();
}

void History::append(std::string_view lines, std::string_view standing) {
    {
        std::lock_guard const lock(mutex_);
        if (blocks_.empty() || blocks_.back()->capacity - blocks_.back()->size < lines.size()) {
            addBlock(lines.size(), standing);
        }
        Block& block = *blocks_.back();
        std::memcpy(block.bytes.get() + block.size, lines.data(), lines.size());
        block.size += lines.size();
        end_ += lines.size();
        forgetOldest();
    }
    news_.notify_all();
}

void History::addBlock(std::size_t needed, std::string_view standing) {
    std::size_t const usual = std::clamp(limit_ / BLOCKS_AT_LIMIT, SMALLEST_BLOCK, USUAL_BLOCK);
    auto block = std::make_shared<Block>();
    block->begin = end_;
    block->capacity = std::max(usual, needed);
    block->bytes = std::make_unique_for_overwrite<char[]>(block->capacity);
    block->standing = standing;
    blocks_.push_back(std::move(block));
}

void History::forgetOldest() {
    while (blocks_.size() > 1 && end_ - firstKept() > limit_) {
        blocks_.pop_front();
    }
}

void History::setPresent(std::string_view head, std::string_view show) {
    {
        std::lock_guard const lock(mutex_);
        if (head == head_ && show == show_) return;
        if (head != head_) ++headSerial_;
        ++showSerial_;
        head_ = head;
        show_ = show;
    }
    news_.notify_all();
}

void History::setStatus(std::string status) {
    {
        std::lock_guard const lock(mutex_);
        status_ = std::move(status);
        ++statusSerial_;
    }
    news_.notify_all();
}

void History::close() {
    {
        std::lock_guard const lock(mutex_);
        closed_ = true;
    }
    news_.notify_all();
}

std::size_t History::size() const {
    std::lock_guard const lock(mutex_);
    return static_cast<std::size_t>(end_ - firstKept());
}

} // namespace watch
