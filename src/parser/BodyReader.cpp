#include <algorithm>
#include <array>

#include "parser/Readers.h"

namespace rcc {

namespace {

constexpr std::array<std::string_view, 2> QUALITIES = {"high", "low"};
constexpr std::array<std::string_view, 3> WIDTHS = {"narrow", "normal", "wide"};

bool readChoice(Scanner& scanner, auto const& words, int& index) {
    auto const* const found = std::ranges::find(words, scanner.word());
    index = static_cast<int>(found - words.begin());
    return found != words.end();
}

bool readViewMode(Scanner& scanner, RCC_SenseBody& body) {
    return scanner.open("view_mode") && readChoice(scanner, QUALITIES, body.viewQuality) &&
           readChoice(scanner, WIDTHS, body.viewWidth) && scanner.close();
}

/// Newer servers add the capacity that is left.
bool readStamina(Scanner& scanner, RCC_SenseBody& body) {
    float capacity = 0;
    return scanner.open("stamina") && scanner.real(body.stamina) && scanner.real(body.effort) &&
           (scanner.atClose() || scanner.real(capacity)) && scanner.close();
}

bool readMotion(Scanner& scanner, RCC_SenseBody& body) {
    return scanner.open("speed") && scanner.real(body.speed) &&
           scanner.angle(body.speedDirection) && scanner.close() && scanner.open("head_angle") &&
           scanner.angle(body.headAngle) && scanner.close();
}

struct Count {
    std::string_view command;
    int RCC_SenseBody::*member;
};

// clang-format off
constexpr std::array COUNTS = {
    Count{"kick",        &RCC_SenseBody::kicks},
    Count{"dash",        &RCC_SenseBody::dashes},
    Count{"turn",        &RCC_SenseBody::turns},
    Count{"say",         &RCC_SenseBody::says},
    Count{"turn_neck",   &RCC_SenseBody::turnNecks},
    Count{"catch",       &RCC_SenseBody::catches},
    Count{"move",        &RCC_SenseBody::moves},
    Count{"change_view", &RCC_SenseBody::changeViews},
};
// clang-format on

bool readCounts(Scanner& scanner, RCC_SenseBody& body) {
    return std::ranges::all_of(COUNTS, [&](Count const& count) {
        return scanner.open(count.command) && scanner.integer(body.*count.member, 0) &&
               scanner.close();
    });
}

/// What newer servers tell after the counts.
bool skipGroups(Scanner& scanner) {
    std::string_view group;
    while (scanner.atOpen()) {
        if (!scanner.item(group)) return false;
    }
    return true;
}

} // namespace

bool readSenseBody(Scanner& scanner, RCC_SenseBody& body) {
    return scanner.cycle(body.time) && readViewMode(scanner, body) && readStamina(scanner, body) &&
           readMotion(scanner, body) && readCounts(scanner, body) && skipGroups(scanner);
}

} // namespace rcc
