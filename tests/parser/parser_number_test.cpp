#include <bit>
#include <charconv>
#include <cstdint>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <string>
#include <type_traits>

#include "parser/Scanner.h"

namespace {

/// The bits, so as to tell -0 from 0.
template <typename T>
auto bits(T value) {
    return std::bit_cast<std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>(value);
}

template <typename T>
void expectAsFromChars(std::string const& text) {
    bool const begins = text.find_first_of(".0123456789") == (text.starts_with('-') ? 1U : 0U);
    T expected = 0;
    auto const [rest, error] = std::from_chars(text.data(), text.data() + text.size(), expected);
    bool const number = begins && error == std::errc{} && rest == text.data() + text.size();

    std::string const list = text + ")";
    rcc::Scanner scanner(list);
    T value = 0;
    ASSERT_EQ(number, scanner.real(value) && scanner.finish()) << text;
    if (number) {
        ASSERT_EQ(bits(expected), bits(value)) << text;
    }
}

/// Mostly up to nine digits with a point somewhere, now and then something else among them.
std::string randomNumber(std::mt19937& random) {
    auto const below = [&](std::size_t limit) { return random() % limit; };
    std::string text = std::to_string(random()).substr(0, 1 + below(9));
    auto const put = [&](char c) { text.insert(below(text.size() + 1), 1, c); };
    if (below(4) != 0) put('.');
    if (below(8) == 0) put("0.-+e"[below(5)]);
    return below(2) == 0 ? text : '-' + text;
}

// Short decimals are not read by std::from_chars, yet must not differ from it in a single bit.
TEST(Number, IsTheOneThatFromCharsReads) {
    std::mt19937 random(11);
    constexpr int ROUNDS = 300000;
    for (int round = 0; round < ROUNDS && !testing::Test::HasFailure(); ++round) {
        std::string const text = randomNumber(random);
        expectAsFromChars<float>(text);
        expectAsFromChars<double>(text);
    }
}

} // namespace
