#pragma once

#include "parser/RCC_Object.h"

#include <array>
#include <cstddef>
#include <string_view>

/// The text of one message, copied into storage of its own. A text of more than CAPACITY bytes is
/// not kept: it is remembered as oversized, its view is empty, and the parser drops it.
class RCC_String : public RCC_Object {
public:
    static constexpr std::size_t CAPACITY = 4096;

    explicit RCC_String(std::string_view text);

    std::string_view view() const { return {storage.data(), length}; }
    bool oversized() const { return tooLong; }

private:
    bool tooLong;
    std::size_t length;
    std::array<char, CAPACITY> storage; // left unset beyond length
};
