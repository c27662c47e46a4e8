// Any line is a datagram for the practice server. Its first letter tells whose: a player's (a to
// d), a monitor's (m), the trainer's (t), or that of somebody at the doors (anything else).

#include <cmath>
#include <cstdlib>
#include <string>

#include "fuzzing/Lines.h"
#include "practice/Monitors.h"
#include "practice/Trainer.h"

namespace {

using namespace practice;

constexpr int PLAYERS = 4;
constexpr int POLLS_PER_STEP = 10;

void require(bool condition) {
    if (!condition) std::abort();
}

bool isFinite(Vec v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}

/// A client on the loopback.
struct Guest {
    net::Socket socket = *net::Socket::bound(*net::makeAddress("127.0.0.1", 0));
    net::Address server{};
    std::array<char, 65536> buffer{};

    void readAll() {
        std::string_view text;
        while (socket.receive(buffer, text, server) == net::Socket::Arrival::datagram) {
            require(text.ends_with('\0'));
        }
    }
};

/// A match of four players with a monitor and a trainer, without a clock.
class Playground {
public:
    Playground() {
        for (int i = 0; i < PLAYERS; ++i) {
            match_.join(i % 2 == 0 ? "(init A (version 7.08)(goalie))" : "(init B (version 7.08))");
        }
        match_.addObserver(trainer_);
        say(monitor_, monitorDoor_.port(), "(dispinit version 5)");
        say(coach_, trainerPort_, "(init (version 7.08))");
        coach_.socket.send("(eye on)", &coach_.server);
        coach_.socket.send("(ear on)", &coach_.server);
        coach_.socket.send("(start)", &coach_.server);
        step();
    }

    void take(std::string_view line) {
        char const who = line.empty() ? ' ' : line.front();
        std::string_view const text = line.substr(line.empty() ? 0 : 1);
        if (who >= 'a' && who < 'a' + PLAYERS) {
            match_.receive(who - 'a', text);
        } else if (who == 'm' || who == 't') {
            Guest const& guest = who == 'm' ? monitor_ : coach_;
            guest.socket.send(text, &guest.server);
        } else {
            match_.join(text);
            say(stranger_, monitorDoor_.port(), text);
            say(stranger_, trainerPort_, text);
        }
        step();
    }

private:
    void say(Guest& guest, int port, std::string_view text) {
        net::Address const door = *net::makeAddress("127.0.0.1", port);
        guest.socket.send(text, &door);
        serve();
        guest.readAll();
    }
    void serve() {
        net::Address sender{};
        std::string_view text;
        while (monitorDoor_.receive(buffer_, text, sender) == net::Socket::Arrival::datagram) {
            monitors_.receiveAtDoor(monitorDoor_, sender, text);
        }
        monitors_.poll(match_);
        trainer_.poll(match_);
    }
    void step() {
        serve();
        for (int i = 0; i < POLLS_PER_STEP; ++i) {
            match_.poll();
            match_.outbox().clear();
        }
        monitors_.show(match_.world());
        trainer_.show(match_.world());
        monitor_.readAll();
        coach_.readAll();
        World const& world = match_.world();
        require(isFinite(world.ball.pos) && isFinite(world.ball.vel));
        for (Player const& player : world.players) {
            require(isFinite(player.pos) && isFinite(player.vel) && std::isfinite(player.body) &&
                    std::isfinite(player.stamina));
        }
    }

    net::Address own_ = *net::makeAddress("127.0.0.1", 0);
    net::Socket monitorDoor_ = *net::Socket::bound(own_);
    net::Socket trainerDoor_ = *net::Socket::bound(own_);
    int trainerPort_ = trainerDoor_.port();
    Match match_{{100, 1, {PLAYERS, 0, 1000}}};
    Monitors monitors_{own_, {}};
    Trainer trainer_{own_, std::move(trainerDoor_), 100};
    Guest monitor_, coach_, stranger_;
    std::array<char, 8192> buffer_{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Playground playground;
    forEachLine(data, size, [&](std::string_view line) { playground.take(line); });
    return 0;
}
