// Any line is a datagram for the monitor and a part of a request: of a command's body, of a header.

#include <cstdlib>
#include <string>

#include "fuzzing/Lines.h"
#include "gamelog/Reader.h"
#include "tests/watch/EventReader.h"
#include "watch/Access.h"
#include "watch/Command.h"
#include "watch/Cursor.h"
#include "watch/Page.h"
#include "watch/Recorder.h"

namespace {

using namespace watch;

constexpr std::size_t LIMIT = 20'000; // of the history: so small that some of it is forgotten
constexpr std::size_t LONGEST_LINE_KEPT = 70'000;

void require(bool condition) {
    if (!condition) std::abort();
}

void readAll(Cursor& cursor, watch_test::EventReader& page) {
    for (std::string stream = " "; !stream.empty();) {
        stream.clear();
        require(cursor.next(stream, std::chrono::milliseconds(0)));
        page.take(stream);
        require(page.complete());
    }
}

/// A page never gets what is no game log.
void requireLog(std::string const& log) {
    if (log.empty()) return;
    gamelog::Reader reader = gamelog::Reader::ofMemory(log);
    while (gamelog::Record const* const record = reader.next()) {
        require(!std::holds_alternative<gamelog::Unknown>(*record));
        auto const* const show = std::get_if<gamelog::Show>(record);
        require(show == nullptr || !show->scoreboard);
    }
    require(reader.error().empty());
    require(reader.remainder().empty());
}

/// A server never gets more than one datagram of the known forms.
void ask(std::string_view line) {
    Command const command = readCommand(line);
    require(command.wrong.empty() != command.datagram.empty());
    require(command.datagram.find_first_not_of("()abcdefghijklmnopqrstuvwxyz0123456789- ") ==
            std::string::npos);
    Access const access("0.0.0.0", 8000, "0123456789abcdef");
    bool const ours = access.hostAllowed(line);
    require(!ours || line.ends_with(":8000"));
    require(!Access::originAllowed(line, line));
    require(!access.tokenRight(line) || line == access.token());
    livePage(std::string(line), access.token());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    History history(LIMIT, "run");
    Recorder recorder(history);
    recorder.connect(3 + static_cast<int>(size % 3));
    watch_test::EventReader early, late;
    Cursor cursor(history, "");
    forEachLine(data, size, [&](std::string_view line) {
        recorder.take(line);
        readAll(cursor, early);
        require(history.size() <= LIMIT + LONGEST_LINE_KEPT);
        Cursor guess(history, line);
        std::string stream;
        guess.next(stream, std::chrono::milliseconds(0));
        ask(line);
    });
    Cursor own(history, "");
    readAll(own, late);
    requireLog(early.log);
    requireLog(late.log);
    return 0;
}
