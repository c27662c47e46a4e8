// A change that random bytes seldom make: another number.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

constexpr std::array NUMBERS = {
    "0",     "-0",    "1",    "-1",   "0.5",   "11",         "12",         "90",          "-180",
    "360",   "999",   "1e-9", "1e9",  "-1e9",  "2147483647", "2147483648", "-2147483649", "3e38",
    "-3e38", "1e-45", "1e38", "1e39", "1e308", "1e309",      "1000000000", "9999999999",  "0.001",
};

constexpr char const* NUMBER_START = "-0123456789";
constexpr char const* NUMBER_PART = "-.0123456789eE";

void replaceNumber(std::string& text, std::size_t from, char const* number) {
    std::size_t const first = text.find_first_of(NUMBER_START, from);
    if (first == std::string::npos) return;
    std::size_t const last = std::min(text.find_first_not_of(NUMBER_PART, first), text.size());
    text.replace(first, last - first, number);
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
    std::mt19937 dice(seed);
    if (size == 0 || dice() % 2 == 0) return LLVMFuzzerMutate(data, size, most);
    std::string text(reinterpret_cast<char const*>(data), size);
    std::size_t const from = dice() % size;
    replaceNumber(text, from, NUMBERS.at(dice() % NUMBERS.size()));
    std::size_t const length = std::min(text.size(), most);
    std::copy_n(text.data(), length, data);
    return length;
}
