// Any line is a datagram for the parser and the handlers of the sensors.

#include <cstdlib>
#include <sanitizer/asan_interface.h>

#include "fuzzing/Lines.h"
#include "sensing/Sensors.h"

namespace {

bool take(auto&... flags) {
    bool const news = (flags || ...);
    ((flags = false), ...);
    return news;
}

bool takeNews() {
    return take(Sensors::newVisual, Sensors::newSenseBody, Sensors::newRefAudio,
                Sensors::newSelfAudio, Sensors::newPlayerAudio, Sensors::newCoachAudio,
                Sensors::newScore, Sensors::newSubstitution, Sensors::newError, Sensors::newInitMsg,
                Sensors::newServerParam, Sensors::newPlayerParam, Sensors::newPlayerType);
}

void parse(std::string_view datagram) {
    RCC_String const text(datagram);
    char const* const end = text.view().data() + text.view().size();
    std::size_t const unused = RCC_String::CAPACITY - text.view().size();
    ASAN_POISON_MEMORY_REGION(end, unused); // what is beyond the text is not to be read
    RCC_Object* const record = Sensors::parser.parse(text);
    ASAN_UNPOISON_MEMORY_REGION(end, unused);
    if (takeNews() && record == nullptr) std::abort(); // dropped, and yet a part was kept
    RCC_Memory::remove(record);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static Sensors const sensors(nullptr, "Alpha"); // registers its handlers
    parse("(init l 1 before_kick_off)");            // the parser remembers the side
    forEachLine(data, size, parse);
    return 0;
}
