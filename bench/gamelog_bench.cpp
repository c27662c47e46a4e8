// How long it takes to read a game log of 20 MB, compared with the least that it could take:
// counting its lines, and unpacking it.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <zlib.h>

#include "gamelog/Reader.h"
#include "gamelog/Writer.h"

namespace {

using namespace gamelog;

constexpr std::size_t LOG_SIZE = 20'000'000;

/// A real log whose shows come again and again, at later times, until it is long.
std::string longLog() {
    Reader reader = Reader::ofFile(REAL_LOG);
    std::string out;
    std::vector<Show> shows;
    while (Record const* const record = reader.next()) {
        if (out.empty()) out = header(reader.version());
        append(out, *record, reader.version());
        out += '\n';
        if (auto const* const show = std::get_if<Show>(record)) shows.push_back(*show);
    }
    if (shows.empty()) std::abort();
    for (int time = shows.back().time + 1; out.size() < LOG_SIZE; ++time) {
        Show& show = shows[static_cast<std::size_t>(time) % shows.size()];
        show.time = time;
        append(out, show, reader.version());
        out += '\n';
    }
    return out;
}

std::string const& plainLog() {
    static std::string const log = longLog();
    return log;
}

/// A file that is removed when the program ends.
class LogFile {
public:
    explicit LogFile(char const* mode) {
        gzFile file = gzopen(path_.c_str(), mode);
        gzwrite(file, plainLog().data(), static_cast<unsigned>(plainLog().size()));
        gzclose(file);
    }
    LogFile(LogFile const&) = delete;
    LogFile& operator=(LogFile const&) = delete;
    ~LogFile() { std::remove(path_.c_str()); }

    std::string const& path() const { return path_; }

private:
    static std::string freshName() {
        char name[] = "/tmp/gamelog-bench-XXXXXX";
        if (mkstemp(name) < 0) std::abort();
        return name;
    }
    std::string path_ = freshName();
};

std::string const& plainFile() {
    static LogFile const file("wbT"); // T: not packed
    return file.path();
}

std::string const& packedFile() {
    static LogFile const file("wb6");
    return file.path();
}

void countLines(benchmark::State& state) {
    std::string const& log = plainLog();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(std::count(log.begin(), log.end(), '\n'));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(log.size()));
}
BENCHMARK(countLines)->Unit(benchmark::kMillisecond);

void unpack(benchmark::State& state) {
    std::string const& path = packedFile();
    std::string block(1 << 17, '\0');
    for ([[maybe_unused]] auto _ : state) {
        gzFile file = gzopen(path.c_str(), "rb");
        while (gzread(file, block.data(), static_cast<unsigned>(block.size())) > 0) {
            benchmark::DoNotOptimize(block.data());
        }
        gzclose(file);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(plainLog().size()));
}
BENCHMARK(unpack)->Unit(benchmark::kMillisecond);

void readLog(benchmark::State& state, Reader (*open)()) {
    open(); // the first call makes the log
    for ([[maybe_unused]] auto _ : state) {
        Reader reader = open();
        while (Record const* record = reader.next()) { // what is kept must not be const
            benchmark::DoNotOptimize(record);
        }
        if (!reader.error().empty()) state.SkipWithError(reader.error().c_str());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(plainLog().size()));
}
BENCHMARK_CAPTURE(
    readLog, memory, +[] { return Reader::ofMemory(plainLog()); })
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(
    readLog, file, +[] { return Reader::ofFile(plainFile()); })
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(
    readLog, packed, +[] { return Reader::ofFile(packedFile()); })
    ->Unit(benchmark::kMillisecond);

/// What a server adds to each step.
void writeShow(benchmark::State& state) {
    Reader reader = Reader::ofMemory(plainLog());
    Record const* record = nullptr;
    for (int shows = 0; shows < 50 && (record = reader.next()) != nullptr;) {
        shows += std::holds_alternative<Show>(*record) ? 1 : 0;
    }
    if (record == nullptr) return state.SkipWithError("the log has too few shows");
    std::string out;
    for ([[maybe_unused]] auto _ : state) {
        out.clear();
        append(out, std::get<Show>(*record), USUAL_VERSION);
        benchmark::DoNotOptimize(out.data());
    }
}
BENCHMARK(writeShow)->Unit(benchmark::kMicrosecond);

} // namespace
