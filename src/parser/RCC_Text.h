#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// Text of at most CAPACITY characters, held in place: copying it never allocates. What does not
/// fit is cut off.
template <std::size_t CAPACITY>
class RCC_FixedText {
public:
    RCC_FixedText() = default;
    explicit(false) RCC_FixedText(std::string_view text) { assign(text); }

    void assign(std::string_view text) {
        length = std::min(text.size(), CAPACITY);
        std::copy_n(text.data(), length, storage.begin());
        storage[length] = '\0';
    }

    std::string_view view() const { return {storage.data(), length}; }
    char const* c_str() const { return storage.data(); }
    std::size_t size() const { return length; }
    bool empty() const { return length == 0; }

    friend bool operator==(RCC_FixedText const& text, std::string_view other) {
        return text.view() == other;
    }

private:
    std::size_t length = 0;
    std::array<char, CAPACITY + 1> storage{};
};

/// A said, heard or reported text.
using RCC_Text = RCC_FixedText<512>;
