#include "parser/ParseAudio.h"

#include "parser/PlayModeWords.h"

namespace rcc {

namespace {

bool readQuoted(RCC_Scanner& scanner, RCC_Text& text) {
    std::string_view quoted;
    if (!scanner.quoted(quoted)) return false;
    text.assign(quoted);
    return true;
}

} // namespace

bool parseRefAudio(RCC_Scanner& scanner, int ownSide, RCC_RefAudio& audio) {
    std::string_view const word = scanner.word();
    if (word.empty()) return false;
    if (scanner.atClose()) audio.playMode = playModeOf(word, ownSide);
    while (!scanner.atClose()) {
        if (scanner.word().empty()) return false; // more words make a remark, not a play mode
    }
    return true;
}

bool parseSelfAudio(RCC_Scanner& scanner, RCC_SelfAudio& audio) {
    return readQuoted(scanner, audio.text);
}

bool parseCoachAudio(RCC_Scanner& scanner, RCC_CoachAudio& audio) {
    if (scanner.atQuote()) return readQuoted(scanner, audio.text);
    std::string_view expression;
    if (!scanner.atOpen() || !scanner.item(expression)) return false;
    audio.text.assign(expression);
    return true;
}

bool parsePlayerAudio(RCC_Scanner& scanner, RCC_PlayerAudio& audio) {
    return scanner.angle(audio.direction) && readQuoted(scanner, audio.text);
}

} // namespace rcc
