#include "parser/Names.h"
#include "parser/Readers.h"

namespace rcc {

namespace {

bool readQuoted(Scanner& scanner, RCC_Text& text) {
    std::string_view quoted;
    if (!scanner.quoted(quoted)) return false;
    text.assign(quoted);
    return true;
}

bool readSide(Scanner& scanner, int& side) {
    std::string_view const word = scanner.word();
    side = word == "l" ? 1 : word == "r" ? -1 : 0;
    return side != 0;
}

} // namespace

bool readRefAudio(Scanner& scanner, int ownSide, RCC_RefAudio& audio) {
    std::string_view const word = scanner.word();
    if (word.empty()) return false;
    if (scanner.atClose()) audio.playMode = playModeOf(word, ownSide);
    while (!scanner.atClose()) {
        if (scanner.word().empty()) return false; // more words make a remark, not a play mode
    }
    return true;
}

bool readSelfAudio(Scanner& scanner, RCC_SelfAudio& audio) {
    return readQuoted(scanner, audio.text);
}

bool readCoachAudio(Scanner& scanner, RCC_CoachAudio& audio) {
    if (scanner.atQuote()) return readQuoted(scanner, audio.text);
    std::string_view expression;
    if (!scanner.atOpen() || !scanner.item(expression)) return false;
    audio.text.assign(expression);
    return true;
}

bool readPlayerAudio(Scanner& scanner, RCC_PlayerAudio& audio) {
    return scanner.angle(audio.direction) && readQuoted(scanner, audio.text);
}

bool readThink(Scanner& /*scanner*/, RCC_Think& /*think*/) {
    return true;
}

bool readScore(Scanner& scanner, RCC_Score& score) {
    return scanner.cycle(score.time) && scanner.integer(score.ours, 0) &&
           scanner.integer(score.theirs, 0);
}

bool readSubstitution(Scanner& scanner, RCC_Substitution& substitution) {
    return scanner.uniformNumber(substitution.unum) &&
           (scanner.atClose() || scanner.integer(substitution.type, 0));
}

bool readError(Scanner& scanner, RCC_Error& error) {
    std::string_view text;
    if (!scanner.textUpToClose(text)) return false;
    error.text.assign(text);
    return true;
}

bool readInit(Scanner& scanner, RCC_InitMsg& init) {
    if (!readSide(scanner, init.side) || !scanner.uniformNumber(init.unum)) return false;
    std::string_view const word = scanner.word();
    init.playMode = playModeOf(word, init.side);
    return !word.empty();
}

bool readFullState(Scanner& scanner, RCC_FullState& state) {
    return scanner.cycle(state.time) && scanner.skipItems();
}

bool readReconnect(Scanner& scanner, int& side) {
    return readSide(scanner, side) && !scanner.word().empty();
}

} // namespace rcc
