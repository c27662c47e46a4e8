#include "practice/Trainer.h"

#include <algorithm>
#include <cmath>
#include <poll.h>
#include <utility>

#include "practice/Commands.h"
#include "practice/Parameters.h"
#include "practice/Placement.h"
#include "practice/Text.h"

namespace practice {

namespace {

constexpr double FIRST_SHORT_NAMES = 7.0; ///< and with them the parameters after an introduction
constexpr double FIRST_REFUSED = 8.0;
/// Datagrams read at one poll: enough to set up a scene.
constexpr int MOST_AT_A_TIME = 100;

std::string ballReport(World const& world) {
    Vec const ball = world.ball.pos;
    char const* where = "in_field";
    if (isInGoal(ball)) {
        where = ball.x < 0.0 ? "goal_l" : "goal_r";
    } else if (std::abs(ball.x) > PITCH_HALF_LENGTH + BALL_SIZE ||
               std::abs(ball.y) > PITCH_HALF_WIDTH + BALL_SIZE) {
        where = "out_of_field";
    }
    return text("(ok check_ball ", world.cycle, ' ', where, ')');
}

std::string teamReport(World const& world) {
    std::string out = "(ok team_names";
    for (Side const side : {Side::left, Side::right}) {
        std::string const& name = world.teamName(side);
        if (!name.empty()) appendText(out, " (team ", letter(side), ' ', name, ')');
    }
    return out + ")\n"; // intentional: the field has a line's end after this answer
}

/// Null when there is nobody of that name on the pitch.
Player const* find(World const& world, PlayerName const& name) {
    for (Side const side : {Side::left, Side::right}) {
        Player const& player = world.player(playerId(side, name.unum));
        if (player.active && world.teamName(side) == name.team) return &player;
    }
    return nullptr;
}

} // namespace

Trainer::Trainer(net::Address const& own, net::Socket door, int halfCycles)
    : own_(own), door_(std::move(door)), halfCycles_(halfCycles) {
    own_.sin_port = 0;
}

// ---- Joining

void Trainer::poll(Match& match) {
    readDoor(match);
    readClient(match);
}

void Trainer::readDoor(Match& match) {
    net::Address sender{};
    std::string_view datagram;
    for (int i = 0; i < MOST_AT_A_TIME; ++i) {
        if (door_.receive(buffer_, datagram, sender) != net::Socket::Arrival::datagram) return;
        receiveAtDoor(sender, datagram, match);
    }
}

void Trainer::receiveAtDoor(net::Address const& sender, std::string_view datagram, Match& match) {
    bool const known = client_ && net::sameAddress(client_->address, sender);
    if (known) return execute(datagram, match);
    if (client_) {
        door_.send("(error already_have_offline_coach)", &sender);
    } else if (auto const version = readTrainerVersion(datagram)) {
        std::string_view const refusal = admit(sender, *version);
        if (!refusal.empty()) door_.send(refusal, &sender);
    } else {
        if (!std::exchange(obeysStrangers_, true)) match.kickOff();
        execute(datagram, match);
    }
}

/// Returns the refusal; empty: it has joined.
std::string_view Trainer::admit(net::Address const& sender, double version) {
    if (version < 0.0) return ILLEGAL_FORM;
    if (version < 1.0 || version >= FIRST_REFUSED) return "(error illegal_client_version)";
    auto socket = net::Socket::bound(own_);
    if (!socket || !socket->connectTo(sender)) return "(error connection_failed)";
    bool const isOld = version < FIRST_SHORT_NAMES;
    client_ = Client{sender, std::move(*socket), isOld};
    eye_ = ear_ = done_ = silent_ = false;
    answer("(init ok)");
    if (isOld) return {};
    answer(serverParamMessage(halfCycles_));
    answer(playerParamMessage());
    answer(playerTypeMessage());
    return {};
}

void Trainer::readClient(Match& match) {
    net::Address sender{};
    std::string_view datagram;
    for (int i = 0; i < MOST_AT_A_TIME && client_; ++i) {
        net::Socket::Arrival const arrival = client_->socket.receive(buffer_, datagram, sender);
        if (arrival == net::Socket::Arrival::nothing) return;
        if (arrival == net::Socket::Arrival::peerGone) {
            client_.reset();
        } else {
            execute(datagram, match);
        }
    }
}

// ---- Commands

struct Trainer::Execution {
    Trainer& trainer;
    Match& match;
    World const& world = match.world();

    std::string operator()(Refusal const& refusal) { return std::string(refusal.text); }
    std::string operator()(StartMatch /*command*/) {
        match.kickOff();
        return "(ok start)";
    }
    std::string operator()(ChangeMode const& command) {
        match.setMode(command.mode);
        return "(ok change_mode)";
    }
    std::string operator()(MoveObject const& move) {
        if (!move.player) {
            match.placeBall(move.pos, move.vel);
        } else if (Player const* const player = find(world, *move.player)) {
            double const body = move.dir ? toRad(*move.dir) : player->body;
            match.place(playerId(*player), move.pos, body, move.vel);
        }
        return "(ok move)"; // also when there is nobody of that name
    }
    std::string operator()(Look /*command*/) {
        return text("(ok look ", world.cycle, trainer.sight(world), ')');
    }
    std::string operator()(SwitchEye eye) {
        trainer.eye_ = eye.on;
        return eye.on ? "(ok eye on)" : "(ok eye off)";
    }
    std::string operator()(SwitchEar ear) {
        trainer.ear_ = ear.on;
        return ear.on ? "(ok ear on)" : "(ok ear off)";
    }
    std::string operator()(CoachSay const& say) {
        match.coachSays(say.text);
        if (trainer.ear_) {
            trainer.answer(text("(hear ", world.cycle, " referee \"", say.text, "\")"));
        }
        return "(ok say)";
    }
    std::string operator()(CheckBall /*command*/) { return ballReport(world); }
    std::string operator()(AskTeamNames /*command*/) { return teamReport(world); }
    std::string operator()(RecoverAll /*command*/) {
        match.recover();
        return "(ok recover)\n"; // intentional: see teamReport
    }
    std::string operator()(Done /*command*/) {
        trainer.done_ = true;
        trainer.silent_ = false;
        return {};
    }
    std::string operator()(Chapter const& chapter) {
        match.note(text("(chapter ", chapter.title, ')'));
        return "(ok chapter)";
    }
};

void Trainer::execute(std::string_view datagram, Match& match) {
    std::string const said = std::visit(Execution{*this, match}, readTrainerCommand(datagram));
    if (!said.empty()) answer(said);
}

void Trainer::answer(std::string const& text) {
    if (client_ && !client_->socket.send(text)) client_.reset();
}

// ---- Eye and ear

void Trainer::show(World const& world) {
    done_ = false;
    if (!client_ || !eye_) return;
    char const* const kind = client_->longNames ? "(see " : "(see_global ";
    answer(text(kind, world.cycle, sight(world), ')'));
}

void Trainer::askToThink() {
    if (client_ && eye_) answer("(think)");
}

void Trainer::waitForDatagram(int milliseconds) const {
    std::array<pollfd, 2> inputs{{{door_.descriptor(), POLLIN, 0}, {-1, POLLIN, 0}}};
    if (client_) inputs[1].fd = client_->socket.descriptor(); // -1 is passed over
    ::poll(inputs.data(), inputs.size(), milliseconds);
}

/// Everything on the pitch, without noise; a blank comes first.
std::string Trainer::sight(World const& world) const {
    bool const isLong = client_ && client_->longNames;
    char const* const goal = isLong ? "goal" : "g";
    std::string out = text(" ((", goal, " r) ", PITCH_HALF_LENGTH, " 0) ((", goal, " l) ",
                           -PITCH_HALF_LENGTH, " 0) ((", isLong ? "ball" : "b", ") ");
    appendText(out, world.ball.pos.x, ' ', world.ball.pos.y, ' ', world.ball.vel.x, ' ',
               world.ball.vel.y, ')');
    for (Player const& p : world.players) {
        if (!p.active) continue;
        appendText(out, " (", nameOf(world, p), ' ', p.pos.x, ' ', p.pos.y, ' ', p.vel.x, ' ',
                   p.vel.y, ' ', wholeDegrees(p.body), ' ', wholeDegrees(p.neck), ')');
    }
    return out;
}

std::string Trainer::nameOf(World const& world, Player const& player) const {
    char const* const kind = client_ && client_->longNames ? "(player \"" : "(p \"";
    return text(kind, world.teamName(player.side), "\" ", player.unum,
                player.goalie ? " goalie)" : ")");
}

void Trainer::heardReferee(World const& world, std::string_view word) {
    if (ear_) answer(text("(hear ", world.cycle, " referee ", word, ')'));
}

void Trainer::heardSay(World const& world, Player const& player, std::string_view said) {
    if (ear_) answer(text("(hear ", world.cycle, ' ', nameOf(world, player), " \"", said, "\")"));
}

} // namespace practice
