#include <array>
#include <cstddef>

#include "parser/Names.h"
#include "parser/Readers.h"

namespace rcc {

namespace {

void forEachContainer(RCC_Visual& see, auto const& apply) {
    apply(see.lines);
    apply(see.flags);
    apply(see.goals);
    apply(see.allies);
    apply(see.enemies);
    apply(see.neuts);
    apply(see.balls);
}

/// A fresh object at the end of the container, null when that is full.
template <typename T>
T* addTo(RCC_Container<T>& container) {
    T* const object = container.add();
    if (object != nullptr) *object = T{};
    return object;
}

/// The numbers that follow a name: direction; distance, direction; the same with their changes; and
/// for a player body and head direction.
constexpr std::size_t MAX_VALUES = 6;

struct Values {
    std::array<float, MAX_VALUES> numbers{};
    std::size_t count = 0;
};

bool readValues(Scanner& scanner, std::size_t most, Values& values) {
    while (values.count < most && !scanner.atClose()) {
        if (!scanner.real(values.numbers[values.count++])) return false;
    }
    return true;
}

bool store(Values const& values, RCC_SeenObject& object) {
    auto const& number = values.numbers;
    switch (values.count) {
    case 1:
        object.direction.value = number[0];
        return Scanner::isTurn(number[0]);
    case 6:
    case 4:
        object.speed = number[2];
        object.speedDirection.value = number[3];
        [[fallthrough]];
    case 2:
        object.distance = number[0];
        object.direction.value = number[1];
        return number[0] >= 0 && Scanner::isTurn(number[1]);
    default:
        return false;
    }
}

/// A named object after its name.
template <typename T>
bool readFixed(Scanner& scanner, T* object) {
    constexpr std::size_t MOST = 4;
    Values values;
    return object != nullptr && readValues(scanner, MOST, values) && store(values, *object) &&
           scanner.close();
}

template <typename T>
bool readLandmark(Scanner& scanner, int code, RCC_Container<T>& container) {
    T* const landmark = addTo(container);
    if (landmark != nullptr) landmark->code = code;
    return readFixed(scanner, landmark);
}

bool readNamed(Scanner& scanner, RCC_Visual& see) {
    std::string_view name;
    if (!scanner.textUpToClose(name) || !scanner.close()) return false;
    NamedObject const object = findNamedObject(name);
    switch (object.kind) {
    case NamedObject::Kind::line:
        return readLandmark(scanner, object.code, *see.lines);
    case NamedObject::Kind::flag:
        return readLandmark(scanner, object.code, *see.flags);
    case NamedObject::Kind::goal:
        return readLandmark(scanner, object.code, *see.goals);
    case NamedObject::Kind::ball:
        return readFixed(scanner, addTo(*see.balls));
    case NamedObject::Kind::unknown:
        break;
    }
    return false;
}

struct PlayerLabel {
    std::string_view team; ///< uncut, empty when not recognised
    int unum = 0;
    bool goalie = false;
};

/// `p "Team" 7 goalie)` as far as it was recognised; `P)` for a player close by.
bool readLabel(Scanner& scanner, PlayerLabel& label) {
    std::string_view const kind = scanner.word();
    if (kind != "p" && kind != "P") return false;
    if (scanner.close()) return true;
    if (kind == "P" || !scanner.quoted(label.team) || label.team.empty()) return false;
    if (scanner.atNumber() && !scanner.uniformNumber(label.unum)) return false;
    if (!scanner.atClose() && !(label.goalie = scanner.keyword("goalie"))) return false;
    return scanner.close();
}

/// Newer servers add a pointing direction and marks for a tackle, a kick or a charged player.
bool skipMarks(Scanner& scanner) {
    RCC_Angle pointing;
    if (scanner.atNumber() && !scanner.angle(pointing)) return false;
    while (!scanner.atClose()) {
        std::string_view const mark = scanner.word();
        if (mark != "t" && mark != "k" && mark != "f") return false;
    }
    return true;
}

bool readPlayerValues(Scanner& scanner, RCC_Player& player) {
    Values values;
    if (!readValues(scanner, MAX_VALUES, values) || !store(values, player)) return false;
    if (values.count < MAX_VALUES) return true;
    player.bodyDirection.value = values.numbers[4];
    player.headDirection.value = values.numbers[5];
    return Scanner::isTurn(player.bodyDirection.value) &&
           Scanner::isTurn(player.headDirection.value) && skipMarks(scanner);
}

RCC_Container<RCC_Player>& sideOf(std::string_view team, std::string_view ownTeam,
                                  RCC_Visual& see) {
    if (team.empty()) return *see.neuts;
    return team == ownTeam ? *see.allies : *see.enemies;
}

bool readPlayer(Scanner& scanner, std::string_view ownTeam, RCC_Visual& see) {
    PlayerLabel label;
    if (!readLabel(scanner, label)) return false;
    RCC_Player* const player = addTo(sideOf(label.team, ownTeam, see));
    if (player == nullptr) return false;
    player->name.team.assign(label.team);
    player->name.unum = label.unum;
    player->name.goalie = label.goalie;
    return readPlayerValues(scanner, *player) && scanner.close();
}

} // namespace

RCC_Visual makeEmptySee() {
    RCC_Visual see;
    forEachContainer(see, [](auto& container) {
        using Container = std::remove_reference_t<decltype(*container)>;
        container = RCC_Pointer<Container>::make(RCC_Visual::MAX_OBJECTS);
    });
    return see;
}

bool readSee(Scanner& scanner, std::string_view ownTeam, RCC_Visual& see) {
    forEachContainer(see, [](auto& container) { container->clear(); });
    if (!scanner.cycle(see.time)) return false;
    while (!scanner.atClose()) {
        if (!scanner.open() || !scanner.open()) return false;
        bool const player = scanner.peek() == 'p' || scanner.peek() == 'P';
        if (!(player ? readPlayer(scanner, ownTeam, see) : readNamed(scanner, see))) {
            return false;
        }
    }
    return true;
}

} // namespace rcc
