#include "link/ServerCommands.h"

#include <cstdio>

namespace {

template <std::size_t SIZE>
void copyText(std::array<char, SIZE>& slot, char const* text) {
    std::snprintf(slot.data(), slot.size(), "%s", text);
}

} // namespace

void ServerCommands::queueMain(char const* text, Command kind) {
    mainQueued = false; // should the timer fire now, it must not send half of a text
    copyText(mainCommand, text);
    mainKind = kind;
    mainQueued = true;
}

bool ServerCommands::queueOther(char const* text, Command kind) {
    int const slot = numberOfOthers;
    if (slot >= MAX_OTHERS) return false;
    copyText(otherCommands[static_cast<std::size_t>(slot)], text);
    otherKinds[static_cast<std::size_t>(slot)] = kind;
    numberOfOthers = slot + 1;
    return true;
}

bool ServerCommands::getNextOther(char* out) {
    int const slot = nextOther;
    if (slot >= numberOfOthers) {
        out[0] = '\0';
        return false;
    }
    // Byte by byte: this runs in the signal handler, which may not call every library function.
    char const* from = otherCommands[static_cast<std::size_t>(slot)].data();
    while ((*out++ = *from++) != '\0') {
    }
    handedOut = otherKinds[static_cast<std::size_t>(slot)];
    nextOther = slot + 1;
    return true;
}

void ServerCommands::clear() {
    mainQueued = false;
    numberOfOthers = 0;
    nextOther = 0;
}

void ServerCommands::listContent() const {
    if (mainQueued) std::printf("main: \n%s\n\n", mainCommand.data());
    std::printf("others: \n");
    for (int i = 0; i < numberOfOthers; ++i) {
        std::printf("%s\n", otherCommands[static_cast<std::size_t>(i)].data());
    }
}
