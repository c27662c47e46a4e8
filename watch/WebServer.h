#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "watch/Access.h"
#include "watch/History.h"

namespace watch {

/// Serves the page at `/`, the event stream at `/events`, takes commands at `/command`, and nothing
/// else. Each browser's stream has a thread of its own.
class WebServer {
public:
    /// So many event streams at once; further ones get 503.
    static constexpr int MOST_STREAMS = 64;

    /// `sendCommand` hands a datagram to the soccer server, called from any thread; false: there is
    /// none. Without it nobody can give commands.
    WebServer(History& history, std::function<bool(std::string_view)> sendCommand);
    ~WebServer();

    /// Listens; port 0: any free one. Returns what is wrong, empty if nothing.
    std::string bind(std::string const& address, int port);
    /// The port that is listened on.
    int port() const;
    /// Answers requests until `stop`. `page`: the page as it is to be served.
    void run(Access access, std::string page);
    /// Ends the streams, too. May be called from any thread, once `run` was called.
    void stop();

private:
    struct Site;
    std::unique_ptr<Site> site_;
};

} // namespace watch
