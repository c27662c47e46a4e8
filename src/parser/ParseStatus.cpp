#include "parser/ParseStatus.h"

#include "parser/PlayModeWords.h"

namespace rcc {

namespace {

bool readSide(RCC_Scanner& scanner, int& side) {
    std::string_view const word = scanner.word();
    side = word == "l" ? 1 : word == "r" ? -1 : 0;
    return side != 0;
}

} // namespace

bool parseScore(RCC_Scanner& scanner, RCC_Score& score) {
    return scanner.cycle(score.time) && scanner.integer(score.ours, 0) &&
           scanner.integer(score.theirs, 0);
}

bool parseSubstitution(RCC_Scanner& scanner, RCC_Substitution& substitution) {
    return scanner.uniformNumber(substitution.unum) &&
           (scanner.atClose() || scanner.integer(substitution.type, 0));
}

bool parseError(RCC_Scanner& scanner, RCC_Error& error) {
    std::string_view text;
    if (!scanner.textUpToClose(text)) return false;
    error.text.assign(text);
    return true;
}

bool parseInit(RCC_Scanner& scanner, RCC_InitMsg& init) {
    if (!readSide(scanner, init.side) || !scanner.uniformNumber(init.unum)) return false;
    std::string_view const word = scanner.word();
    init.playMode = playModeOf(word, init.side);
    return !word.empty();
}

bool parseFullState(RCC_Scanner& scanner, RCC_FullState& state) {
    return scanner.cycle(state.time) && scanner.skipItems();
}

bool parseReconnect(RCC_Scanner& scanner, int& side) {
    return readSide(scanner, side) && !scanner.word().empty();
}

} // namespace rcc
