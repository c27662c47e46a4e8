#include "parser/ParseVisual.h"

#include "parser/LandmarkNames.h"

namespace rcc {

namespace {

/// The numbers that follow a name: direction; distance, direction; the same with their changes; and
/// for a player body and head direction.
constexpr std::size_t MAX_VALUES = 6;

struct Values {
    std::array<float, MAX_VALUES> numbers{};
    std::size_t count = 0;
};

bool readValues(RCC_Scanner& scanner, std::size_t most, Values& values) {
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
        return RCC_Scanner::isTurn(number[0]);
    case 6:
    case 4:
        object.speed = number[2];
        object.speedDirection.value = number[3];
        [[fallthrough]];
    case 2:
        object.distance = number[0];
        object.direction.value = number[1];
        return number[0] >= 0 && RCC_Scanner::isTurn(number[1]);
    default:
        return false;
    }
}

/// A named object after its name.
template <class T>
bool readFixed(RCC_Scanner& scanner, T* object) {
    constexpr std::size_t MOST = 4;
    Values values;
    return object != nullptr && readValues(scanner, MOST, values) && store(values, *object) &&
           scanner.close();
}

template <class T>
bool readLandmark(RCC_Scanner& scanner, int code, SeenList<T>& list) {
    T* const landmark = list.add();
    if (landmark != nullptr) landmark->code = code;
    return readFixed(scanner, landmark);
}

bool readNamed(RCC_Scanner& scanner, VisualDraft& draft) {
    std::string_view name;
    if (!scanner.textUpToClose(name) || !scanner.close()) return false;
    NamedObject const object = findNamedObject(name);
    switch (object.kind) {
    case NamedObject::Line:
        return readLandmark(scanner, object.code, draft.lines);
    case NamedObject::Flag:
        return readLandmark(scanner, object.code, draft.flags);
    case NamedObject::Goal:
        return readLandmark(scanner, object.code, draft.goals);
    case NamedObject::Ball:
        return readFixed(scanner, draft.balls.add());
    case NamedObject::Unknown:
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
bool readLabel(RCC_Scanner& scanner, PlayerLabel& label) {
    std::string_view const kind = scanner.word();
    if (kind != "p" && kind != "P") return false;
    if (scanner.close()) return true;
    if (kind == "P" || !scanner.quoted(label.team) || label.team.empty()) return false;
    if (scanner.atNumber() && !scanner.uniformNumber(label.unum)) return false;
    if (!scanner.atClose() && !(label.goalie = scanner.keyword("goalie"))) return false;
    return scanner.close();
}

/// Newer servers add a pointing direction and marks for a tackle, a kick or a charged player.
bool skipMarks(RCC_Scanner& scanner) {
    RCC_Angle pointing;
    if (scanner.atNumber() && !scanner.angle(pointing)) return false;
    while (!scanner.atClose()) {
        std::string_view const mark = scanner.word();
        if (mark != "t" && mark != "k" && mark != "f") return false;
    }
    return true;
}

bool readPlayerValues(RCC_Scanner& scanner, RCC_Player& player) {
    Values values;
    if (!readValues(scanner, MAX_VALUES, values) || !store(values, player)) return false;
    if (values.count < MAX_VALUES) return true;
    player.bodyDirection.value = values.numbers[4];
    player.headDirection.value = values.numbers[5];
    return RCC_Scanner::isTurn(player.bodyDirection.value) &&
           RCC_Scanner::isTurn(player.headDirection.value) && skipMarks(scanner);
}

SeenList<RCC_Player>& sideOf(std::string_view team, std::string_view ownTeam, VisualDraft& draft) {
    if (team.empty()) return draft.neuts;
    return team == ownTeam ? draft.allies : draft.enemies;
}

bool readPlayer(RCC_Scanner& scanner, std::string_view ownTeam, VisualDraft& draft) {
    PlayerLabel label;
    if (!readLabel(scanner, label)) return false;
    RCC_Player* const player = sideOf(label.team, ownTeam, draft).add();
    if (player == nullptr) return false;
    player->name.team.assign(label.team);
    player->name.unum = label.unum;
    player->name.goalie = label.goalie;
    return readPlayerValues(scanner, *player) && scanner.close();
}

} // namespace

void VisualDraft::clear() {
    lines.clear();
    flags.clear();
    goals.clear();
    allies.clear();
    enemies.clear();
    neuts.clear();
    balls.clear();
}

bool parseVisual(RCC_Scanner& scanner, std::string_view teamName, VisualDraft& draft) {
    draft.clear();
    if (!scanner.cycle(draft.time)) return false;
    while (!scanner.atClose()) {
        if (!scanner.open() || !scanner.open()) return false;
        bool const player = scanner.peek() == 'p' || scanner.peek() == 'P';
        if (!(player ? readPlayer(scanner, teamName, draft) : readNamed(scanner, draft))) {
            return false;
        }
    }
    return true;
}

} // namespace rcc
