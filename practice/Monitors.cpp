#include "practice/Monitors.h"

#include <algorithm>

#include "gamelog/Writer.h"
#include "practice/Commands.h"
#include "practice/Shows.h"

namespace practice {

namespace {

void tell(net::Socket const& socket, World const& world, std::string_view text) {
    std::string message;
    gamelog::append(message,
                    gamelog::Msg{world.cycle, gamelog::Msg::REFEREE_BOARD, std::string(text)});
    socket.send(message);
}

} // namespace

Monitors::Monitors(net::Address const& own, std::vector<std::string> greeting)
    : own_(own), greeting_(std::move(greeting)) {
    own_.sin_port = 0;
}

// ---- Joining and leaving

bool Monitors::receiveAtDoor(net::Socket const& door, net::Address const& sender,
                             std::string_view datagram) {
    bool const known = std::ranges::any_of(
        monitors_, [&sender](Monitor const& m) { return net::sameAddress(m.address, sender); });
    if (!known && !isMonitorGreeting(datagram)) return false;
    std::string_view const refusal =
        known ? "(error only_init_allowed_on_init_port)" : admit(sender, datagram);
    if (!refusal.empty()) door.send(refusal, &sender);
    return true;
}

/// Returns the refusal; empty: it has joined.
std::string_view Monitors::admit(net::Address const& sender, std::string_view greeting) {
    auto const version = readMonitorVersion(greeting);
    if (!version) return ILLEGAL_FORM;
    if (*version < OLDEST_VERSION || *version > NEWEST_VERSION) {
        return "(error illegal_client_version)";
    }
    if (std::ssize(monitors_) >= MAX_MONITORS) return "(error no_more_monitor)";
    auto socket = net::Socket::bound(own_);
    if (!socket || !socket->connectTo(sender)) return "(error connection_failed)";
    for (std::string const& message : greeting_) {
        socket->send(message);
    }
    monitors_.push_back({sender, std::move(*socket), *version});
    return {};
}

void Monitors::forgetGone() {
    std::erase_if(monitors_, &Monitor::gone);
}

// ---- Commands

struct Monitors::Execution {
    Match& match;
    Monitor& monitor;

    void operator()(StartKickOff /*command*/) { match.kickOff(); }
    void operator()(CallFoul const& foul) { match.callFoul(foul.spot, foul.side); }
    void operator()(PlacePlayer const& p) { match.place(p.player, p.pos, p.body); }
    void operator()(DiscardPlayer const& command) { match.discard(command.player); }
    void operator()(Disconnect /*command*/) { monitor.gone = true; }
};

void Monitors::poll(Match& match) {
    constexpr int MOST_AT_A_TIME = 8; // the system drops what a flood brings beyond its buffer
    net::Address sender{};
    std::string_view datagram;
    for (Monitor& monitor : monitors_) {
        for (int i = 0; i < MOST_AT_A_TIME && !monitor.gone; ++i) {
            net::Socket::Arrival const arrival = monitor.socket.receive(buffer_, datagram, sender);
            if (arrival == net::Socket::Arrival::nothing) break;
            if (arrival == net::Socket::Arrival::peerGone) {
                monitor.gone = true;
            } else {
                receive(monitor, datagram, match);
            }
        }
    }
    forgetGone();
}

void Monitors::receive(Monitor& monitor, std::string_view datagram, Match& match) {
    if (!datagram.ends_with('\0')) {
        tell(monitor.socket, match.world(), "(warning message_not_null_terminated)");
    }
    if (auto const command = readMonitorCommand(datagram)) {
        std::visit(Execution{match, monitor}, *command);
    } else {
        tell(monitor.socket, match.world(), ILLEGAL_FORM);
    }
}

// ---- Shows

void Monitors::show(World const& world) {
    if (monitors_.empty()) return;
    fillShow(show_, world);
    show_.scoreboard = gamelog::Scoreboard{logMode(world.mode), scoreOf(world)};
    for (std::string& text : formatted_) {
        text.clear();
    }
    for (Monitor& monitor : monitors_) {
        monitor.gone = !monitor.socket.send(showFor(monitor.version));
    }
    forgetGone();
}

std::string const& Monitors::showFor(int version) {
    std::string& text = formatted_.at(static_cast<std::size_t>(version - OLDEST_VERSION));
    if (text.empty()) gamelog::append(text, show_, gamelog::logVersionOfMonitor(version));
    return text;
}

} // namespace practice
