#include "parser/RCC_String.h"

#include <algorithm>

// The storage beyond the text is never read, so it is not worth clearing for each message.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
RCC_String::RCC_String(std::string_view text)
    : tooLong(text.size() > CAPACITY), length(tooLong ? 0 : text.size()) {
    std::copy_n(text.data(), length, storage.begin());
}
