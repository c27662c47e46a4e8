#include "watch/WebServer.h"

#include <atomic>
#include <httplib.h>
#include <optional>

#include "watch/Command.h"
#include "watch/Cursor.h"
#include "watch/Text.h"

namespace watch {

namespace {

using httplib::Request;
using httplib::Response;
using Routed = httplib::Server::HandlerResponse;

constexpr int SPARE_THREADS = 16; // for pages, commands and refusals beside the streams
constexpr int READ_SECONDS = 5;   // a request has to come without a longer pause
constexpr int WRITE_SECONDS = 20; // a browser that takes nothing for so long has to connect again
constexpr std::chrono::milliseconds HEARTBEAT{5000};

/// The library holds back and compresses other texts, this name with anything behind it, too.
constexpr char const* EVENT_STREAM = "text/event-stream";

constexpr int NO_CONTENT = 204, BAD_REQUEST = 400, FORBIDDEN = 403, NOT_FOUND = 404,
              WRONG_METHOD = 405, NO_SERVER = 409, TOO_LONG = 413, MISDIRECTED = 421, FULL = 503;

void answer(Response& response, int status, std::string const& text) {
    response.status = status;
    response.set_content(text + "\n", "text/plain; charset=utf-8");
}

/// The value of a header that comes exactly once; empty otherwise.
std::string onlyHeader(Request const& request, char const* name) {
    return request.get_header_value_count(name) == 1 ? request.get_header_value(name)
                                                     : std::string();
}

httplib::Headers safeHeaders() {
    return {{"X-Content-Type-Options", "nosniff"},
            {"X-Frame-Options", "DENY"},
            {"Referrer-Policy", "no-referrer"},
            {"Cross-Origin-Resource-Policy", "same-origin"},
            {"Cross-Origin-Opener-Policy", "same-origin"},
            {"Cache-Control", "no-store"},
            // The page is one file: what it runs and shows is inside it.
            {"Content-Security-Policy",
             "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; "
             "img-src data: blob:; connect-src 'self'; base-uri 'none'; form-action 'none'; "
             "frame-ancestors 'none'"}};
}

/// The usual options of the library would let two programs share a port.
void setSocketOptions(int socket) {
    int const yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

} // namespace

struct WebServer::Site {
    History& history;
    std::function<bool(std::string_view)> sendCommand;
    std::optional<Access> access;
    std::string page;
    std::atomic<int> streams = 0;
    std::atomic<bool> ended = false;
    int port = 0;
    httplib::Server http;

    Site(History& ownHistory, std::function<bool(std::string_view)> send);
    Routed admit(Request const& request, Response& response);
    Routed refuseCommand(Request const& request, Response& response) const;
    void stream(Request const& request, Response& response);
    void command(Response& response, httplib::ContentReader const& readBody) const;
};

WebServer::Site::Site(History& ownHistory, std::function<bool(std::string_view)> send)
    : history(ownHistory), sendCommand(std::move(send)) {
    http.new_task_queue = [] { return new httplib::ThreadPool(MOST_STREAMS + SPARE_THREADS); };
    http.set_default_headers(safeHeaders());
    http.set_socket_options(setSocketOptions);
    http.set_tcp_nodelay(true);
    // With one request a connection, what a refused one has left unread is never taken for another.
    http.set_keep_alive_max_count(1);
    http.set_read_timeout(READ_SECONDS);
    http.set_write_timeout(WRITE_SECONDS);
    http.set_payload_max_length(LONGEST_COMMAND);
    http.set_pre_routing_handler([this](Request const& q, Response& a) { return admit(q, a); });
    http.Get("/", [this](Request const&, Response& a) {
        a.set_content(page, "text/html; charset=utf-8");
    });
    http.Get("/favicon.ico", [](Request const&, Response& a) { a.status = NO_CONTENT; });
    http.Get("/events", [this](Request const& q, Response& a) { stream(q, a); });
    http.Post("/command", [this](Request const&, Response& a,
                                 httplib::ContentReader const& readBody) { command(a, readBody); });
}

/// Looks at every request before its body is read.
Routed WebServer::Site::admit(Request const& request, Response& response) {
    std::string const host = onlyHeader(request, "Host");
    if (!access->hostAllowed(host)) {
        answer(response, MISDIRECTED,
               joined({"This is not the server of that name; open ", access->url()}));
        return Routed::Handled;
    }
    bool const isCommand = request.path == "/command";
    if (!isCommand && request.path != "/" && request.path != "/events" &&
        request.path != "/favicon.ico") {
        answer(response, NOT_FOUND, joined({"There is nothing here; open ", access->url()}));
        return Routed::Handled;
    }
    bool const reads = request.method == "GET" || request.method == "HEAD";
    if (isCommand ? request.method != "POST" : !reads) {
        response.set_header("Allow", isCommand ? "POST" : "GET, HEAD");
        answer(response, WRONG_METHOD, "This is not how it is asked for.");
        return Routed::Handled;
    }
    return isCommand ? refuseCommand(request, response) : Routed::Unhandled;
}

Routed WebServer::Site::refuseCommand(Request const& request, Response& response) const {
    if (!sendCommand) {
        answer(response, FORBIDDEN, "Here one can only look on.");
        return Routed::Handled;
    }
    if (!Access::originAllowed(onlyHeader(request, "Origin"), onlyHeader(request, "Host"))) {
        answer(response, FORBIDDEN, "Commands are taken from this server's own page only.");
        return Routed::Handled;
    }
    if (!access->tokenRight(onlyHeader(request, "X-Token"))) {
        answer(response, FORBIDDEN, "This page is from an earlier run; load it again.");
        return Routed::Handled;
    }
    return Routed::Unhandled;
}

void WebServer::Site::command(Response& response, httplib::ContentReader const& readBody) const {
    std::string body;
    bool const whole = readBody([&body](char const* data, std::size_t length) {
        body.append(data, length);
        return body.size() <= LONGEST_COMMAND;
    });
    if (body.size() > LONGEST_COMMAND) return answer(response, TOO_LONG, "This is too long.");
    if (!whole) {
        return answer(response, response.status > 0 ? response.status : BAD_REQUEST,
                      "The request cannot be read.");
    }
    Command const command = readCommand(body);
    if (!command.wrong.empty()) {
        return answer(response, BAD_REQUEST,
                      joined({"This command is not understood: ", command.wrong, "."}));
    }
    if (!sendCommand(command.datagram)) {
        return answer(response, NO_SERVER, "No soccer server is connected; start one.");
    }
    response.status = NO_CONTENT;
}

void WebServer::Site::stream(Request const& request, Response& response) {
    if (request.method == "HEAD") return response.set_content("", EVENT_STREAM);
    if (++streams > MOST_STREAMS) {
        --streams;
        return answer(response, FULL,
                      joined({"There are too many viewers (", std::to_string(MOST_STREAMS),
                              "); close one, and load this page again."}));
    }
    struct Stream {
        Cursor cursor;
        std::string text;
    };
    auto const own = std::make_shared<Stream>(
        Stream{Cursor(history, onlyHeader(request, "Last-Event-ID")), "retry: 1000\n\n"});
    response.set_chunked_content_provider(
        EVENT_STREAM,
        [own](std::size_t, httplib::DataSink& sink) {
            if (!own->cursor.next(own->text, HEARTBEAT)) {
                sink.done();
                return true;
            }
            if (own->text.empty()) own->text = ":\n\n"; // shows whether the browser is still there
            bool const sent = sink.write(own->text.data(), own->text.size());
            own->text.clear();
            return sent;
        },
        [this](bool) { --streams; });
}

WebServer::WebServer(History& history, std::function<bool(std::string_view)> sendCommand)
    : site_(std::make_unique<Site>(history, std::move(sendCommand))) {}

WebServer::~WebServer() = default;

std::string WebServer::bind(std::string const& address, int port) {
    if (port == 0) {
        site_->port = site_->http.bind_to_any_port(address);
    } else if (site_->http.bind_to_port(address, port)) {
        site_->port = port;
    }
    if (site_->port > 0) return {};
    if (port == 0) {
        return joined({"cannot listen at ", address, "; choose an address of this machine"});
    }
    return joined({"cannot listen at ", address, ", port ", std::to_string(port),
                   "; perhaps it is in use: choose another with --http"});
}

int WebServer::port() const {
    return site_->port;
}

void WebServer::run(Access access, std::string page) {
    site_->access = std::move(access);
    site_->page = std::move(page);
    site_->http.listen_after_bind();
    site_->ended = true;
}

void WebServer::stop() {
    site_->history.close();
    while (!site_->http.is_running() && !site_->ended) {
        std::this_thread::yield(); // `run` has not come so far, and would miss it
    }
    site_->http.stop();
}

} // namespace watch
