#include "watch/Options.h"

#include <charconv>
#include <string_view>

#include "watch/Text.h"

namespace watch {

namespace {

constexpr int HIGHEST_PORT = 65535;
constexpr std::size_t LEAST_HISTORY = 1, MOST_HISTORY = 16'000;

template <typename Number>
bool readNumber(std::string_view text, Number least, Number most, Number& number) {
    Number value{};
    auto const read = std::from_chars(text.data(), text.data() + text.size(), value);
    bool const good = read.ec == std::errc{} && read.ptr == text.data() + text.size() &&
                      value >= least && value <= most;
    if (good) number = value;
    return good;
}

/// Sets the option `name` to `value`.
std::string set(std::string_view name, std::string_view value, Options& options) {
    if (name == "--port") {
        bool const good = readNumber(value, 1, HIGHEST_PORT, options.port);
        return good ? "" : "--port takes the server's port, a number from 1 to 65535";
    }
    if (name == "--http") {
        bool const good = readNumber(value, 0, HIGHEST_PORT, options.http);
        return good ? "" : "--http takes a port, a number from 0 (any free one) to 65535";
    }
    if (name == "--history") {
        bool const good = readNumber(value, LEAST_HISTORY, MOST_HISTORY, options.history);
        return good ? "" : "--history takes megabytes, a number from 1 to 16000";
    }
    if (value.empty()) return joined({name, " takes a value; --help shows which"});
    (name == "--page" ? options.page : options.address) = value;
    return {};
}

bool takesValue(std::string_view name) {
    return name == "--port" || name == "--http" || name == "--history" || name == "--page" ||
           name == "--address";
}

} // namespace

std::string readOptions(std::span<char const* const> arguments, Options& options) {
    bool hostSeen = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string_view const argument = arguments[i];
        if (argument == "--help") {
            options.help = true;
        } else if (argument == "--look-only") {
            options.lookOnly = true;
        } else if (takesValue(argument)) {
            std::string_view const value = ++i < arguments.size() ? arguments[i] : "";
            if (std::string wrong = set(argument, value, options); !wrong.empty()) return wrong;
        } else if (argument.starts_with('-') || argument.empty()) {
            return joined({"unknown option '", argument, "'; --help lists them all"});
        } else if (hostSeen) {
            return "only one server can be watched; --help shows how";
        } else {
            options.host = argument;
            hostSeen = true;
        }
    }
    return {};
}

std::string helpText() {
    return "watch: shows the match on a soccer server in the browser, while it is played\n"
           "\n"
           "usage: watch [HOST] [OPTION]...\n"
           "\n"
           "  HOST            machine of the server (localhost)\n"
           "  --port N        port of the server (6000)\n"
           "  --http N        port for browsers; 0: any free one (8000)\n"
           "  --address ADDR  where browsers are listened for (127.0.0.1: this machine alone;\n"
           "                  0.0.0.0: all that can reach it, and all of them can give commands)\n"
           "  --look-only     nobody can give commands\n"
           "  --page FILE     the viewer (viewer.html beside the program, or where it is "
           "installed)\n"
           "  --history MB    so much of a match is kept for those who come late (256)\n"
           "  --help          print this text\n"
           "\n"
           "Waits for the server, and for the next one when it ends. Ctrl-C ends it.\n";
}

} // namespace watch
