// lossy-link PORT SERVERPORT SEED: a bad network on one machine, for ./play --lossy.
//
// Players take PORT for the server's. Datagrams in both directions are lost, doubled, delayed, cut
// or garbled at random. Introductions always pass, because a player sends its own only once. Ends
// on SIGTERM or when nothing has come for a while, and prints what it did.

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "net/Socket.h"
#include "practice/Random.h"

namespace {

using namespace practice;
using Clock = std::chrono::steady_clock;
using Direction = std::size_t;

constexpr Direction TO_SERVER = 0, TO_PLAYER = 1;
constexpr double LONGEST_DELAY = 150.0; ///< milliseconds
constexpr std::chrono::seconds SILENCE{20};

enum Fate : std::size_t { lost, doubled, late, cut, garbled, intact, FATES };
struct Share {
    char const* name;
    double upTo; ///< of a number from 0 to 1
};
constexpr std::array<Share, FATES> SHARES = {{{"lost", 0.10},
                                              {"doubled", 0.20},
                                              {"late", 0.30},
                                              {"cut", 0.32},
                                              {"garbled", 0.34},
                                              {"intact", 1.0}}};

volatile std::sig_atomic_t stopRequested = 0;

class LossyLink {
public:
    LossyLink(net::Socket&& entrance, net::Address const& serverAddress, std::uint64_t seed)
        : door_(std::move(entrance)), server_(serverAddress), any_(serverAddress), random_(seed) {
        any_.sin_port = 0;
    }

    /// Passes on what waits; false when nothing has come for long.
    bool poll() {
        net::Address sender{};
        std::string_view datagram;
        while (door_.receive(buffer_, datagram, sender) == net::Socket::Arrival::datagram) {
            if (Player* const player = playerAt(sender)) pass(*player, TO_SERVER, datagram);
        }
        for (Player& player : players_) {
            while (player.socket[TO_SERVER].receive(buffer_, datagram, player.server) ==
                   net::Socket::Arrival::datagram) {
                pass(player, TO_PLAYER, datagram);
            }
            while (player.socket[TO_PLAYER].receive(buffer_, datagram, sender) ==
                   net::Socket::Arrival::datagram) {
                pass(player, TO_SERVER, datagram);
            }
        }
        std::erase_if(waiting_, [this](Late const& item) {
            bool const due = item.due <= Clock::now();
            if (due) deliver(players_[item.player], item.direction, item.text);
            return due;
        });
        return Clock::now() < lastArrival_ + SILENCE;
    }

    void printFigures() const {
        constexpr std::array<char const*, 2> NAMES = {"to the server", "to the players"};
        for (Direction const direction : {TO_SERVER, TO_PLAYER}) {
            std::printf("link %s:", NAMES[direction]);
            for (std::size_t fate = 0; fate < FATES; ++fate) {
                std::printf(" %d %s", counts_[direction][fate], SHARES[fate].name);
            }
            std::printf("\n");
        }
    }

private:
    /// The two sockets through which one player and the server know each other.
    struct Player {
        net::Address address, server;
        std::array<net::Socket, 2> socket;
    };
    struct Late {
        Clock::time_point due;
        std::size_t player;
        Direction direction;
        std::string text;
    };

    Player* playerAt(net::Address const& sender) {
        for (Player& player : players_) {
            if (player.address.sin_port == sender.sin_port) return &player;
        }
        auto inner = net::Socket::bound(any_);
        auto outer = net::Socket::bound(any_);
        if (!inner || !outer) return nullptr;
        return &players_.emplace_back(
            Player{sender, server_, {std::move(*inner), std::move(*outer)}});
    }

    Fate drawFate(std::string_view text) {
        if (text.starts_with("(init")) return intact;
        double const drawn = random_.uniform(0.0, 1.0);
        std::size_t fate = 0;
        while (drawn >= SHARES[fate].upTo) {
            ++fate;
        }
        return static_cast<Fate>(fate);
    }

    void pass(Player const& player, Direction direction, std::string_view datagram) {
        lastArrival_ = Clock::now();
        std::string text(datagram.substr(0, datagram.find('\0'))); // the socket adds it again
        Fate const fate = drawFate(text);
        ++counts_[direction][fate];
        auto const place = [&] {
            return static_cast<std::size_t>(random_.uniform(0.0, static_cast<double>(text.size())));
        };
        if (fate == lost) return;
        if (fate == late) {
            std::chrono::duration<double, std::milli> const delay(
                random_.uniform(0.0, LONGEST_DELAY));
            waiting_.push_back({lastArrival_ + std::chrono::duration_cast<Clock::duration>(delay),
                                static_cast<std::size_t>(&player - players_.data()), direction,
                                std::move(text)});
            return;
        }
        if (fate == cut) text.resize(place());
        for (int i = 0; fate == garbled && !text.empty() && i < 3; ++i) {
            text[place()] = static_cast<char>(random_.uniform(-128.0, 128.0));
        }
        deliver(player, direction, text);
        if (fate == doubled) deliver(player, direction, text);
    }

    static void deliver(Player const& player, Direction direction, std::string const& text) {
        player.socket[direction].send(text,
                                      direction == TO_SERVER ? &player.server : &player.address);
    }

    net::Socket door_;
    net::Address server_;
    net::Address any_; ///< ours, any port
    Random random_;
    std::vector<Player> players_;
    std::vector<Late> waiting_;
    std::array<std::array<int, FATES>, 2> counts_{};
    Clock::time_point lastArrival_ = Clock::now();
    std::array<char, 8192> buffer_{};
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: lossy-link PORT SERVERPORT SEED\n");
        return 2;
    }
    auto const own = net::makeAddress("127.0.0.1", std::atoi(argv[1]));
    auto const server = net::makeAddress("127.0.0.1", std::atoi(argv[2]));
    auto door = net::Socket::bound(*own);
    if (!door) {
        std::perror("lossy-link: cannot listen there");
        return 1;
    }
    std::signal(SIGTERM, [](int) { stopRequested = 1; });
    LossyLink link(std::move(*door), *server, std::strtoull(argv[3], nullptr, 10));
    while (stopRequested == 0 && link.poll()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    link.printFigures();
}
