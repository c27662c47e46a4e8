// Any file as a game log: it is read or refused, what was read can be written, and what was written
// is read and written again without a change. The figures of it are worked out as well.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzzing/Lines.h"
#include "gamelog/Line.h"
#include "gamelog/Reader.h"
#include "gamelog/Writer.h"
#include "stats/Analysis.h"

namespace {

using namespace gamelog;

std::string writtenAgain(std::string_view log) {
    Reader reader = Reader::ofMemory(log);
    stats::Analysis analysis;
    std::string out;
    while (Record const* const record = reader.next()) {
        analysis.take(*record);
        if (out.empty()) out = header(reader.version());
        append(out, *record, reader.version());
        out += '\n';
    }
    analysis.finish();
    return out;
}

/// What a monitor is told has no header.
void readAsDatagram(std::string_view line) {
    Record record;
    std::string out;
    if (LineFault const fault = readLine(line, record)) {
        if (describeFault(line, fault).empty()) std::abort();
    } else {
        append(out, record, NEWEST_VERSION);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const once = writtenAgain({reinterpret_cast<char const*>(data), size});
    if (!once.empty() && writtenAgain(once) != once) std::abort();
    forEachLine(data, size, readAsDatagram);
    return 0;
}
