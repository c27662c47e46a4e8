// watch: a monitor to a soccer server on one side, a web server on the other.

#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <future>
#include <thread>

#include "watch/Access.h"
#include "watch/Monitor.h"
#include "watch/Options.h"
#include "watch/Page.h"
#include "watch/WebServer.h"

namespace {

constexpr int USAGE_ERROR = 2;
constexpr std::size_t TOKEN_BYTES = 16, RUN_BYTES = 4;
constexpr std::chrono::milliseconds PATIENCE{200}; // until the end of the program is noticed
constexpr std::chrono::seconds LAST_SENDS{1};      // browsers have so long to take the rest

volatile std::sig_atomic_t stopRequested = 0;

void requestStop(int /*signal*/) {
    stopRequested = 1;
}

int fail(int status, std::string const& problem) {
    std::fprintf(stderr, "watch: %s\n", problem.c_str());
    return status;
}

void greet(watch::Options const& options, watch::Access const& access) {
    std::printf("watch: open %s to see the server at %s:%d; Ctrl-C ends it\n", access.url().c_str(),
                options.host.c_str(), options.port);
    std::fflush(stdout);
}

int serve(watch::Options const& options, net::Address const& server, std::string const& page) {
    watch::History history(options.history * watch::Options::MEGABYTE, watch::randomHex(RUN_BYTES));
    watch::Monitor monitor({.host = options.host, .address = server}, history);
    std::function<bool(std::string_view)> sendCommand;
    if (!options.lookOnly) sendCommand = [&](auto command) { return monitor.send(command); };
    watch::WebServer web(history, sendCommand);
    std::string const wrong = web.bind(options.address, options.http);
    if (!wrong.empty()) return fail(1, wrong);
    watch::Access const access(options.address, web.port(), watch::randomHex(TOKEN_BYTES));
    greet(options, access);

    std::packaged_task<void()> answering(
        [&] { web.run(access, watch::livePage(page, options.lookOnly ? "" : access.token())); });
    std::future<void> const answered = answering.get_future();
    std::thread answerer(std::move(answering));
    while (stopRequested == 0) {
        monitor.step(PATIENCE);
    }
    web.stop();
    if (answered.wait_for(LAST_SENDS) == std::future_status::timeout) {
        // Intentional: a browser that takes nothing does not keep the program alive.
        monitor.send("(dispbye)");
        std::_Exit(0);
    }
    answerer.join();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    watch::Options options;
    std::string const wrong =
        watch::readOptions({argv + 1, static_cast<std::size_t>(argc > 0 ? argc - 1 : 0)}, options);
    if (!wrong.empty()) return fail(USAGE_ERROR, wrong);
    if (options.help) {
        std::fputs(watch::helpText().c_str(), stdout);
        return 0;
    }
    std::signal(SIGINT, requestStop);
    std::signal(SIGTERM, requestStop);
    auto const server = net::resolve(options.host, options.port);
    if (!server) return fail(1, "there is no machine called " + options.host);
    std::string const path = watch::findPage(options.page);
    if (path.empty()) {
        return fail(1, "viewer.html is not beside the program; build it with `cmake --build "
                       "BUILD --target viewer`, or name it with --page");
    }
    watch::Page const page = watch::readPage(path);
    if (!page.wrong.empty()) return fail(1, page.wrong + "; choose another with --page");
    try {
        return serve(options, *server, page.text);
    } catch (std::exception const& error) {
        return fail(1, error.what());
    }
}
