// The whole bridge over the loopback: a scripted soccer server on one side, browsers on the other.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "net/Socket.h"
#include "tests/watch/Datagrams.h"
#include "tests/watch/EventReader.h"
#include "watch/Monitor.h"
#include "watch/WebServer.h"

using namespace watch;
using namespace watch_test;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace {

constexpr std::chrono::seconds PATIENCE{10};
constexpr std::size_t HISTORY = 50'000'000;

/// Waits until `condition`; false if that takes too long.
bool eventually(std::function<bool()> const& condition) {
    for (auto const end = Clock::now() + PATIENCE; Clock::now() < end;) {
        if (condition()) return true;
        std::this_thread::sleep_for(milliseconds(1));
    }
    return condition();
}

/// A soccer server as far as one monitor sees it.
class SoccerServer {
public:
    int port() const { return door_.port(); }

    /// The next greeting of a monitor at the door; empty if none comes.
    std::string greeting() {
        std::string text;
        eventually([&] { return !(text = receive(door_, guest_)).empty(); });
        return text;
    }
    void refuse(std::string_view why) const { door_.send(why, &guest_); }
    /// Lets the guest in: from now on it is spoken to from a port of its own.
    void admit(int seed = 1) {
        own_.emplace(*net::Socket::bound(*net::makeAddress("127.0.0.1", 0)));
        own_->connectTo(guest_);
        for (std::string const& datagram : parametersOf(seed)) {
            own_->send(datagram);
        }
    }
    void send(std::string_view datagram) const { own_->send(datagram); }
    /// What the monitor has sent, with its NUL; empty if nothing comes.
    std::string command() {
        std::string text;
        net::Address sender{};
        eventually([&] { return !(text = receive(*own_, sender)).empty(); });
        return text;
    }
    /// Without it nothing more comes from the monitor's port, and what is sent there is refused.
    void leave() { own_.reset(); }

private:
    static std::string receive(net::Socket const& socket, net::Address& sender) {
        std::array<char, 1000> buffer{};
        std::string_view text;
        bool const got = socket.receive(buffer, text, sender) == net::Socket::Arrival::datagram;
        return got ? std::string(text) : std::string();
    }

    net::Socket door_ = *net::Socket::bound(*net::makeAddress("127.0.0.1", 0));
    std::optional<net::Socket> own_;
    net::Address guest_{};
};

/// The program between them, with its threads.
class Bridge {
public:
    static constexpr char const* TOKEN = "0123456789abcdef";

    explicit Bridge(int serverPort, milliseconds silence)
        : monitor_({.host = "localhost",
                    .address = *net::resolve("127.0.0.1", serverPort),
                    .silence = silence,
                    .redial = milliseconds(50)},
                   history_) {
        EXPECT_EQ(web_.bind("127.0.0.1", 0), "");
        answering_ =
            std::thread([this] { web_.run(Access("127.0.0.1", web_.port(), TOKEN), "the page"); });
        monitoring_ = std::thread([this] {
            while (!stopped_) {
                monitor_.step(milliseconds(20));
            }
        });
    }
    ~Bridge() {
        stopped_ = true;
        monitoring_.join();
        web_.stop();
        answering_.join();
    }

    int port() const { return web_.port(); }
    httplib::Client client() const { return httplib::Client("127.0.0.1", port()); }
    httplib::Headers rightHeaders() const {
        return {{"Origin", "http://127.0.0.1:" + std::to_string(port())}, {"X-Token", TOKEN}};
    }
    /// The status of a command's answer.
    int command(std::string const& body, httplib::Headers const& headers) const {
        auto const result = client().Post("/command", headers, body, "application/json");
        return result ? result->status : 0;
    }
    std::size_t historySize() const { return history_.size(); }

private:
    History history_{HISTORY};
    Monitor monitor_;
    WebServer web_{history_, [this](std::string_view command) { return monitor_.send(command); }};
    std::atomic<bool> stopped_ = false;
    std::thread answering_, monitoring_;
};

/// A page that reads the event stream.
class Browser {
public:
    explicit Browser(Bridge const& bridge, std::string const& lastEventId = {})
        : client_(bridge.client()) {
        httplib::Headers headers = {{"Accept-Encoding", "gzip, deflate, br"}};
        if (!lastEventId.empty()) headers.emplace("Last-Event-ID", lastEventId);
        reading_ = std::thread([this, headers] {
            client_.set_read_timeout(PATIENCE);
            client_.Get("/events", headers, [this](char const* data, std::size_t size) {
                std::lock_guard const lock(mutex_);
                lastArrival_ = Clock::now();
                page_.take({data, size});
                return true;
            });
        });
    }
    Browser(Browser const&) = delete;
    Browser& operator=(Browser const&) = delete;
    ~Browser() {
        client_.stop();
        reading_.join();
    }

    EventReader page() {
        std::lock_guard const lock(mutex_);
        return page_;
    }
    Clock::time_point lastArrival() {
        std::lock_guard const lock(mutex_);
        return lastArrival_;
    }
    /// Waits until its log ends with the show of a time.
    bool sees(int time) {
        return eventually([&] {
            std::lock_guard const lock(mutex_);
            std::size_t const last = page_.log.rfind("(show ");
            return last != std::string::npos &&
                   page_.log.compare(last, 7 + std::to_string(time).size(),
                                     "(show " + std::to_string(time) + " ") == 0;
        });
    }
    bool hasStatus(std::string const& part) {
        return eventually([&] { return page().status.find(part) != std::string::npos; });
    }

private:
    httplib::Client client_;
    std::mutex mutex_;
    EventReader page_;
    Clock::time_point lastArrival_{};
    std::thread reading_;
};

/// A browser that asks for the stream and never reads it.
class SleepingBrowser {
public:
    explicit SleepingBrowser(Bridge const& bridge) {
        int const small = 4096;
        setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(bridge.port()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        static_cast<void>(
            connect(socket_, reinterpret_cast<sockaddr const*>(&address), sizeof address));
        std::string const request =
            "GET /events HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(bridge.port()) + "\r\n\r\n";
        send(socket_, request.data(), request.size(), 0);
    }
    SleepingBrowser(SleepingBrowser const&) = delete;
    SleepingBrowser& operator=(SleepingBrowser const&) = delete;
    ~SleepingBrowser() { close(socket_); }

private:
    int socket_ = socket(AF_INET, SOCK_STREAM, 0);
};

struct Watching : testing::Test {
    SoccerServer server;
    Bridge bridge;

    explicit Watching(milliseconds silence = PATIENCE) : bridge(server.port(), silence) {}

    void begin() {
        EXPECT_EQ(server.greeting(), std::string("(dispinit version 5)\0", 21));
        server.admit();
    }
    void play(int from, int to) const {
        for (int time = from; time <= to; ++time) {
            server.send(showOf(time, PlayMode::playOn));
        }
    }
};

TEST_F(Watching, WhoComesLateOrComesBackGetsEverything) {
    Browser first(bridge);
    begin();
    play(1, 20);
    ASSERT_TRUE(first.sees(20));
    Browser late(bridge);
    ASSERT_TRUE(late.sees(20));
    EXPECT_EQ(late.page().log, first.page().log);
    EXPECT_NE(late.page().status.find("\"connected\",\"host\":\"localhost\""), std::string::npos);

    std::string const id = late.page().lastId;
    play(21, 22);
    ASSERT_TRUE(first.sees(22));
    Browser back(bridge, id);
    ASSERT_TRUE(back.sees(22));
    EXPECT_EQ(countOf(back.page().log, "\n"), 2);
    EXPECT_EQ(back.page().resets, 0);
    Browser stranger(bridge, "1-1-1");
    ASSERT_TRUE(stranger.sees(22));
    EXPECT_EQ(stranger.page().resets, 1);
    EXPECT_EQ(stranger.page().log, first.page().log);
}

TEST_F(Watching, FallsBackToTheVersionThatTheServerSpeaks) {
    Browser browser(bridge);
    for (char const version : {'5', '4'}) {
        EXPECT_EQ(server.greeting()[18], version);
        server.refuse("(error illegal_client_version)");
    }
    std::string greeting;
    while ((greeting = server.greeting())[18] != '3') {
    }
    server.admit();
    gamelog::Show show;
    show.time = 7;
    show.scoreboard = gamelog::Scoreboard{PlayMode::playOn, {}};
    std::string datagram;
    gamelog::append(datagram, show, gamelog::logVersionOfMonitor(3));
    server.send(datagram);
    ASSERT_TRUE(browser.sees(7));
    EXPECT_TRUE(browser.page().log.starts_with("ULG4\n(server_param "));
    EXPECT_EQ(countOf(browser.page().log, "(fp "), 0);
    EXPECT_TRUE(browser.hasStatus("\"version\":3"));
}

struct WatchingInASilentNetwork : Watching {
    WatchingInASilentNetwork() : Watching(milliseconds(300)) {}
};

TEST_F(WatchingInASilentNetwork, WaitsForTheNextServer) {
    Browser browser(bridge);
    begin();
    play(1, 3);
    ASSERT_TRUE(browser.sees(3));
    EXPECT_TRUE(browser.hasStatus("\"waiting\"")); // silence
    begin();                                       // the same match goes on
    play(5, 6);
    ASSERT_TRUE(browser.sees(6));
    EXPECT_TRUE(browser.hasStatus("\"connected\""));
    EXPECT_EQ(browser.page().resets, 0);

    EXPECT_TRUE(browser.hasStatus("\"waiting\""));
    EXPECT_FALSE(server.greeting().empty());
    server.refuse("(error no_more_monitor)");
    EXPECT_TRUE(browser.hasStatus("no_more_monitor"));
    EXPECT_FALSE(server.greeting().empty());
    server.admit(2); // another one
    play(1, 1);
    ASSERT_TRUE(browser.sees(1));
    EXPECT_EQ(browser.page().resets, 1);
    EXPECT_EQ(countOf(browser.page().log, "(show"), 1);
}

TEST_F(Watching, NoticesThatTheServerHasGoneWhenACommandIsRefused) {
    Browser browser(bridge);
    begin();
    play(1, 1);
    ASSERT_TRUE(browser.sees(1));
    server.leave();
    bridge.command(R"({"command":"kick_off"})", bridge.rightHeaders());
    EXPECT_TRUE(browser.hasStatus("\"waiting\""));
}

TEST_F(Watching, CommandsReachTheServer) {
    EXPECT_EQ(bridge.command(R"({"command":"kick_off"})", bridge.rightHeaders()), 409);
    Browser browser(bridge);
    begin();
    play(1, 1);
    ASSERT_TRUE(browser.sees(1));
    EXPECT_EQ(bridge.command(R"({"command":"free_kick","side":"r","x":-10,"y":2.5})",
                             bridge.rightHeaders()),
              204);
    EXPECT_EQ(server.command(), std::string("(dispfoul -160 40 -1)\0", 22));
    server.send("(msg 1 1 \"(error illegal_command_form)\")");
    EXPECT_TRUE(browser.hasStatus("the server answers: (error illegal_command_form)"));
}

TEST_F(Watching, RefusesWhatIsNotItsPages) {
    begin();
    auto client = bridge.client();
    std::string const own = "127.0.0.1:" + std::to_string(bridge.port());
    auto const page = client.Get("/");
    ASSERT_TRUE(page);
    EXPECT_EQ(page->body, "the page");
    EXPECT_EQ(page->get_header_value("X-Content-Type-Options"), "nosniff");
    EXPECT_NE(page->get_header_value("Content-Security-Policy").find("frame-ancestors 'none'"),
              std::string::npos);
    EXPECT_FALSE(page->has_header("Access-Control-Allow-Origin"));
    EXPECT_EQ(client.Get("/favicon.ico")->status, 204);

    for (char const* const path : {"/", "/events"}) {
        EXPECT_EQ(client.Get(path, {{"Host", "example.org"}})->status, 421);
        EXPECT_EQ(client.Post(path, "", "text/plain")->status, 405);
    }
    for (char const* const path : {"/x", "/../etc/passwd", "/%2e%2e/etc/passwd", "/events/"}) {
        EXPECT_EQ(client.Get(path)->status, 404) << path;
    }
    EXPECT_EQ(client.Get("/command")->status, 405);
    EXPECT_EQ(client.Options("/command")->status, 405);

    std::string const body = R"({"command":"kick_off"})";
    std::string const origin = "http://" + own;
    httplib::Headers const wrong[] = {
        {},
        {{"X-Token", Bridge::TOKEN}},
        {{"Origin", origin}},
        {{"Origin", origin}, {"X-Token", "0"}},
        {{"Origin", "http://example.org"}, {"X-Token", Bridge::TOKEN}},
        {{"Origin", "null"}, {"X-Token", Bridge::TOKEN}},
        {{"Origin", origin}, {"Origin", origin}, {"X-Token", Bridge::TOKEN}},
    };
    for (httplib::Headers const& headers : wrong) {
        EXPECT_EQ(bridge.command(body, headers), 403);
    }
    EXPECT_EQ(bridge.command("{}", bridge.rightHeaders()), 400);
    EXPECT_EQ(bridge.command(std::string(100'000, ' '), bridge.rightHeaders()), 413);
    EXPECT_EQ(bridge.command(body, bridge.rightHeaders()), 204);
    EXPECT_EQ(server.command(), std::string("(dispstart)\0", 12)); // the only one that came
}

TEST(LookOnly, CommandsAreRefused) {
    History history(HISTORY);
    WebServer web(history, nullptr);
    ASSERT_EQ(web.bind("127.0.0.1", 0), "");
    std::thread answering([&web] { web.run(Access("127.0.0.1", web.port(), "ab"), "the page"); });
    httplib::Client client("127.0.0.1", web.port());
    httplib::Headers const own{{"Origin", "http://127.0.0.1:" + std::to_string(web.port())},
                               {"X-Token", "ab"}};
    EXPECT_EQ(client.Post("/command", own, R"({"command":"kick_off"})", "application/json")->status,
              403);
    EXPECT_EQ(client.Get("/")->status, 200);
    web.stop();
    answering.join();
}

TEST_F(Watching, TellsWhomItHasNoPlaceFor) {
    std::vector<std::unique_ptr<SleepingBrowser>> many;
    for (int i = 0; i < WebServer::MOST_STREAMS; ++i) {
        many.push_back(std::make_unique<SleepingBrowser>(bridge));
        std::this_thread::sleep_for(milliseconds(3)); // more than a few at once have to try again
    }
    int status = 0;
    EXPECT_TRUE(eventually([&] {
        auto client = bridge.client();
        // Refused at once; a stream that is admitted is left at its first piece.
        auto const result = client.Get(
            "/events",
            [&status](httplib::Response const& response) {
                status = response.status;
                return status == 503;
            },
            [](char const*, std::size_t) { return true; });
        return status == 503;
    }));
    EXPECT_EQ(bridge.client().Get("/")->status, 200);
}

/// A step goes to browsers while others sleep: how long that takes.
TEST_F(Watching, StepsArriveAtOnceWhateverOthersDo) {
    constexpr int BROWSERS = 8, STEPS = 100, HISTORY_STEPS = 3000;
    begin();
    std::string_view const leftOut = " (pm 3) (tm null null 0 0)"; // of a log's shows
    std::size_t logged = 0;
    for (int time = 1; time <= HISTORY_STEPS; ++time) {
        std::string const datagram = showOf(time, PlayMode::playOn);
        server.send(datagram);
        logged += datagram.size() - leftOut.size();
        if (time % 20 > 0) continue;
        // No faster than they are read: the system drops what is too much for a socket.
        ASSERT_TRUE(eventually([&] { return bridge.historySize() > logged; }));
    }
    SleepingBrowser const asleep(bridge), alsoAsleep(bridge);
    std::vector<std::unique_ptr<Browser>> browsers;
    browsers.reserve(BROWSERS);
    for (int i = 0; i < BROWSERS; ++i) {
        browsers.push_back(std::make_unique<Browser>(bridge));
    }
    for (auto const& browser : browsers) {
        ASSERT_TRUE(browser->sees(HISTORY_STEPS));
    }
    std::vector<double> took;
    for (int time = HISTORY_STEPS + 1; time <= HISTORY_STEPS + STEPS; ++time) {
        auto const sent = Clock::now();
        server.send(showOf(time, PlayMode::playOn));
        for (auto const& browser : browsers) {
            ASSERT_TRUE(browser->sees(time));
            took.push_back(
                std::chrono::duration<double, std::milli>(browser->lastArrival() - sent).count());
        }
    }
    std::ranges::sort(took);
    double const median = took[took.size() / 2];
    std::printf("a step is in %d browsers after %.2f ms at the median, %.2f ms at most\n", BROWSERS,
                median, took.back());
    EXPECT_LT(median, 50.0);
}

} // namespace
