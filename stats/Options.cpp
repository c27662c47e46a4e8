#include "stats/Options.h"

#include <charconv>
#include <string_view>

namespace stats {

namespace {

constexpr unsigned MOST_JOBS = 256;

/// Two kinds of rows exclude each other.
std::string choose(Rows rows, Options& options) {
    if (options.rows != Rows::matches && options.rows != rows) {
        return "only one of --players, --events and --cycles can be printed at once";
    }
    options.rows = rows;
    return {};
}

std::string readJobs(std::string_view text, Options& options) {
    auto const read = std::from_chars(text.data(), text.data() + text.size(), options.jobs);
    bool const good = read.ec == std::errc{} && read.ptr == text.data() + text.size() &&
                      options.jobs >= 1 && options.jobs <= MOST_JOBS;
    return good ? "" : "--jobs takes a number from 1 to " + std::to_string(MOST_JOBS);
}

} // namespace

std::string readOptions(std::span<char const* const> arguments, Options& options) {
    bool onlyFiles = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string_view const argument = arguments[i];
        std::string wrong;
        if (onlyFiles || argument == "-" || !argument.starts_with('-')) {
            options.files.emplace_back(argument);
        } else if (argument == "--") {
            onlyFiles = true;
        } else if (argument == "--json") {
            options.json = true;
        } else if (argument == "--players") {
            wrong = choose(Rows::players, options);
        } else if (argument == "--events") {
            wrong = choose(Rows::events, options);
        } else if (argument == "--cycles") {
            wrong = choose(Rows::cycles, options);
        } else if (argument == "--jobs") {
            wrong = readJobs(++i < arguments.size() ? arguments[i] : "", options);
        } else if (argument == "--help") {
            options.help = true;
        } else {
            wrong = "unknown option " + std::string(argument) + "; --help lists them all";
        }
        if (!wrong.empty()) return wrong;
    }
    if (options.files.empty() && !options.help) {
        return "which game logs? Name files that end in .rcg or .rcg.gz, or - for the standard "
               "input";
    }
    return {};
}

std::string helpText() {
    return "match-stats: figures from game logs of version 4, 5 and 6, packed or not\n"
           "\n"
           "usage: match-stats [OPTION]... FILE...\n"
           "\n"
           "Prints one CSV row a match, with a header; docs/statistics.md defines the figures.\n"
           "  --players   one row a player instead\n"
           "  --events    one row an event: kick-off, goal, shot, pass, interception, ...\n"
           "  --cycles    one row a show: everything that the log says about it\n"
           "  --json      the same as JSON; with --players the matches hold their players\n"
           "  --jobs N    files read at once (one for each core)\n"
           "  --help      print this text\n"
           "\n"
           "A FILE - is the standard input. Exits with 1 when a file could not be read.\n";
}

} // namespace stats
