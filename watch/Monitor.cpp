#include "watch/Monitor.h"

#include <algorithm>
#include <thread>

#include "watch/Json.h"
#include "watch/Text.h"

namespace watch {

namespace {

constexpr int MOST_AT_A_TIME = 64;      // datagrams that are read before anything else is looked at
constexpr int RECEIVE_BUFFER = 1 << 20; // bytes
constexpr std::size_t LONGEST_REMARK = 200;

bool isError(std::string_view datagram) {
    return datagram.starts_with("(error");
}

/// Printable ASCII, for people.
std::string remark(std::string_view text) {
    std::string out(text.substr(0, LONGEST_REMARK));
    std::erase(out, '\0');
    std::ranges::replace_if(
        out, [](char c) { return c < ' ' || c > '~'; }, '?');
    return out;
}

} // namespace

Monitor::Monitor(Server server, History& history)
    : server_(std::move(server)), history_(history), recorder_(history) {
    tellStatus({});
}

Monitor::~Monitor() {
    if (connected_) socket_->send("(dispbye)");
}

void Monitor::tellStatus(std::string const& text) {
    std::string status = joined({R"({"server":)", connected_ ? R"("connected")" : R"("waiting")",
                                 R"(,"host":)", jsonText(server_.host), R"(,"port":)",
                                 std::to_string(ntohs(server_.address.sin_port)), R"(,"version":)",
                                 std::to_string(version_)});
    if (!text.empty()) status += joined({R"(,"text":)", jsonText(text)});
    status += "}";
    if (status == status_) return;
    status_ = status;
    history_.setStatus(std::move(status));
}

void Monitor::step(Milliseconds patience) {
    Clock::time_point const before = Clock::now();
    if (!connected_ && before >= nextDial_) dial(before);
    if (!socket_) return std::this_thread::sleep_for(patience);
    auto const due = connected_ ? lastHeard_ + server_.silence : nextDial_;
    auto const untilDue = std::chrono::ceil<Milliseconds>(due - before);
    socket_->wait(std::clamp(untilDue, Milliseconds(0), patience));
    Clock::time_point const now = Clock::now();
    receive(now);
    if (connected_ && now - lastHeard_ > server_.silence) lose("the server is silent");
}

// ---- Reaching a server

void Monitor::dial(Clock::time_point now) {
    nextDial_ = now + server_.redial;
    version_ = NEWEST_VERSION;
    // The same socket as long as nobody has answered: a server that reads late admits it only once.
    if (!socket_) socket_ = net::Socket::bound(*net::makeAddress("0.0.0.0", 0));
    if (socket_) {
        socket_->enlarge(RECEIVE_BUFFER);
        askToWatch();
    } else {
        tellStatus("the system has no socket to give");
    }
}

void Monitor::askToWatch() const {
    socket_->send(joined({"(dispinit version ", std::to_string(version_), ")"}), &server_.address);
}

void Monitor::takeAtDoor(std::string_view datagram, net::Address const& sender) {
    if (sender.sin_addr.s_addr != server_.address.sin_addr.s_addr) return;
    if (isError(datagram)) {
        if (sender.sin_port == server_.address.sin_port) takeRefusal(datagram);
        return;
    }
    welcome(sender);
    takeFromServer(datagram);
}

void Monitor::takeRefusal(std::string_view datagram) {
    bool const versionRefused = datagram.starts_with("(error illegal_client_version)");
    if (versionRefused && version_ > OLDEST_VERSION) {
        --version_;
        askToWatch();
    } else {
        tellStatus(joined({"the server refuses: ", remark(datagram)}));
    }
}

void Monitor::welcome(net::Address const& sender) {
    {
        std::lock_guard const lock(mutex_);
        connected_ = socket_->connectTo(sender);
    }
    recorder_.connect(version_);
    tellStatus({});
}

void Monitor::lose(std::string const& why) {
    {
        std::lock_guard const lock(mutex_);
        connected_ = false;
        socket_.reset();
    }
    nextDial_ = Clock::now();
    tellStatus(why);
}

// ---- While connected

void Monitor::receive(Clock::time_point now) {
    for (int i = 0; i < MOST_AT_A_TIME && socket_; ++i) {
        std::string_view datagram;
        net::Address sender{};
        net::Socket::Arrival const arrival = socket_->receive(buffer_, datagram, sender);
        if (arrival == net::Socket::Arrival::nothing) return;
        if (arrival == net::Socket::Arrival::peerGone) {
            if (connected_) lose("the server has gone");
            continue;
        }
        lastHeard_ = now;
        if (connected_) {
            takeFromServer(datagram);
        } else {
            takeAtDoor(datagram, sender);
        }
    }
}

void Monitor::takeFromServer(std::string_view datagram) {
    switch (recorder_.take(datagram)) {
    case Recorder::Taken::record:
        return;
    case Recorder::Taken::complaint:
        return tellStatus(joined({"the server answers: ", remark(recorder_.complaint())}));
    case Recorder::Taken::unreadable:
        return tellStatus(joined({"the server sends what is not understood: ", remark(datagram)}));
    }
}

bool Monitor::send(std::string_view command) {
    std::lock_guard const lock(mutex_);
    return connected_ && socket_->send(command);
}

} // namespace watch
