// match-stats: figures from game logs.

#include <cstdio>
#include <thread>

#include "stats/InOrder.h"
#include "stats/Options.h"
#include "stats/Output.h"

namespace {

constexpr int USAGE_ERROR = 2;

void print(std::string const& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

/// Returns whether every file was understood.
bool printAll(stats::Options const& options) {
    bool allGood = true, first = true;
    print(options.json ? "[" : stats::csvHeader(options.rows));
    auto const work = [&](std::size_t i) { return stats::outputOf(options.files[i], options); };
    auto const use = [&](std::size_t i, stats::FileOutput const& output) {
        if (!output.error.empty()) {
            std::fprintf(stderr, "match-stats: %s: %s\n", options.files[i].c_str(),
                         output.error.c_str());
            allGood = false;
        }
        if (output.text.empty()) return;
        if (options.json && !first) print(",\n ");
        print(output.text);
        first = false;
    };
    stats::inOrder(options.files.size(),
                   options.jobs > 0 ? options.jobs : std::thread::hardware_concurrency(), work,
                   use);
    if (options.json) print("]\n");
    return allGood;
}

} // namespace

int main(int argc, char** argv) {
    stats::Options options;
    std::string const wrong =
        stats::readOptions({argv + 1, static_cast<std::size_t>(argc > 0 ? argc - 1 : 0)}, options);
    if (!wrong.empty()) {
        std::fprintf(stderr, "match-stats: %s\n", wrong.c_str());
        return USAGE_ERROR;
    }
    if (options.help) {
        print(stats::helpText());
        return 0;
    }
    bool const good = printAll(options);
    if (std::fflush(stdout) != 0) {
        std::perror("match-stats: cannot write");
        return 1;
    }
    return good ? 0 : 1;
}
