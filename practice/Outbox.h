#pragma once

#include <span>
#include <string>
#include <vector>

#include "practice/World.h"

namespace practice {

/// A list that keeps its elements when it is cleared, so that strings in it are filled again
/// without new memory.
template <typename T>
class Recycled {
public:
    /// The next element, with whatever it held before.
    T& add() {
        if (size_ == items_.size()) items_.emplace_back();
        return items_[size_++];
    }
    void clear() { size_ = 0; }
    bool empty() const { return size_ == 0; }
    std::span<T const> items() const { return {items_.data(), size_}; }

private:
    std::vector<T> items_;
    std::size_t size_ = 0;
};

/// A message for one player.
struct Outgoing {
    int player = NOBODY;
    std::string text; ///< without the NUL that ends the datagram
};

/// What the players are to be told, in the order it is to be sent.
class Outbox {
public:
    /// An empty message, to be filled before the next call.
    std::string& begin(int player) {
        Outgoing& message = messages_.add();
        message.player = player;
        message.text.clear();
        message.text.reserve(LONGEST);
        return message.text;
    }
    std::span<Outgoing const> messages() const { return messages_.items(); }
    void clear() { messages_.clear(); }

private:
    static constexpr std::size_t LONGEST = 2048; ///< of the usual messages: a see of everything

    Recycled<Outgoing> messages_;
};

} // namespace practice
