#include "link/Effectors.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <concepts>
#include <csignal>
#include <cstdio>
#include <string_view>

#include "config/Configuration.h"
#include "link/Communicator.h"
#include "physics/Kinematics.h"

namespace {

/// The one object, for the signal handler.
Effectors* eff = nullptr;

constexpr float MAX_TURN = 180.0F;      ///< degrees of moment that are ever sent
constexpr float NEGLIGIBLE_TURN = 0.1F; ///< degrees of moment not worth a command

char const* nameOf(ViewMode width) {
    switch (width) {
    case ViewMode::narrow:
        return "narrow";
    case ViewMode::normal:
        return "normal";
    case ViewMode::wide:
        return "wide";
    }
    return "normal";
}

bool areNumbers(std::same_as<float> auto... arguments) {
    return (std::isfinite(arguments) && ...);
}

char const* nameOf(ViewQuality quality) {
    return quality == ViewQuality::high ? "high" : "low";
}

} // namespace

Effectors::Effectors(Communicator* link, ServerCommandHistory& commandHistory,
                     ServerCommandCounters& commandCounters)
    : communicator_(link), history_(commandHistory), counters_(commandCounters) {
    eff = this;
    struct sigaction action {};
    action.sa_handler = sigalrmHandler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGALRM, &action, nullptr);
}

void Effectors::init(char const* teamname, bool goalie) {
    std::string_view const version = goalie ? "(version 7.08)(goalie)" : "(version 7.08)";
    // A name that is too long is cut, so that the closing parenthesis still fits.
    constexpr std::size_t AROUND = std::string_view("(init  )").size() + 1;
    auto const longestName = static_cast<int>(formatBuffer_.size() - AROUND - version.size());
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(init %.*s %s)", longestName,
                  teamname, version.data());
    communicator_->sendMessage(formatBuffer_.data());
}

/// Queues the text in the format buffer.
void Effectors::queueMainCommand(Command kind, float argument1) {
    queue_.queueMain(formatBuffer_.data(), kind);
    history_.mainKind = kind;
    history_.mainArgument1 = argument1;
}

void Effectors::queueMove(float x, float y) {
    if (!areNumbers(x, y)) return;
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(move %f %f)",
                  static_cast<double>(x), static_cast<double>(y));
    queueMainCommand(Command::move, x);
    history_.mainArgument2 = y;
}

void Effectors::queueKick(float power, float direction) {
    if (!areNumbers(power, direction)) return;
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(kick %f %f)",
                  static_cast<double>(power), static_cast<double>(direction));
    queueMainCommand(Command::kick, power);
    history_.mainArgument2 = direction;
}

void Effectors::queueDash(float power) {
    if (!areNumbers(power)) return;
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(dash %f)",
                  static_cast<double>(power));
    queueMainCommand(Command::dash, power);
}

void Effectors::queueTurn(float angle, float speed) {
    float moment = angle;
    float expectedAngle = angle;
    if (speed != 0.0F) {
        speed *= Configuration::playerDecay;
        moment = Kinematics::momentForTurn(angle, speed);
        if (moment < Configuration::minMoment) {
            expectedAngle = Kinematics::turnFromMoment(Configuration::minMoment, speed);
            moment = Configuration::minMoment;
        }
        if (moment > Configuration::maxMoment) {
            expectedAngle = Kinematics::turnFromMoment(Configuration::maxMoment, speed);
            moment = Configuration::maxMoment;
        }
    }
    moment = std::clamp(moment, -MAX_TURN, MAX_TURN);
    if (std::isnan(moment) || std::abs(moment) <= NEGLIGIBLE_TURN) return;

    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(turn %f)",
                  static_cast<double>(moment));
    queueMainCommand(Command::turn, expectedAngle);
}

void Effectors::queueGoalieCatch(float direction) {
    if (!areNumbers(direction)) return;
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(catch %f)",
                  static_cast<double>(direction));
    queueMainCommand(Command::goalieCatch, direction);
}

/// Queues the text in the format buffer; false when the queue is full.
bool Effectors::queueOtherCommand(Command kind) {
    if (!queue_.queueOther(formatBuffer_.data(), kind)) return false;
    (kind == Command::say ? history_.sayKind : history_.otherKind) = kind;
    return true;
}

void Effectors::queueTurnNeck(float angle) {
    if (!areNumbers(angle)) return;
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(turn_neck %f)",
                  static_cast<double>(angle));
    if (queueOtherCommand(Command::turnNeck)) history_.otherArgument1 = angle;
}

void Effectors::queueChangeView(ViewMode width, ViewQuality quality) {
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(change_view %s %s)", nameOf(width),
                  nameOf(quality));
    if (!queueOtherCommand(Command::changeView)) return;
    history_.otherArgument1 = static_cast<float>(width);
    history_.otherArgument2 = static_cast<float>(quality);
}

void Effectors::queueSay(char const* message) {
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(say \"%s\")", message);
    if (!queueOtherCommand(Command::say)) return;
    std::snprintf(history_.sayText.data(), history_.sayText.size(), "%s", message);
}

void Effectors::queueScore() {
    std::snprintf(formatBuffer_.data(), formatBuffer_.size(), "(score)");
    queueOtherCommand(Command::score);
}

void Effectors::sendAllCommands() {
    send(nullptr);
}

void Effectors::answerThink() {
    send("(done)");
}

void Effectors::send(char const* last) {
    static std::array<std::array<char, OTHER_COMMAND_SIZE>, ServerCommands::MAX_OTHERS> others;
    std::array<char const*, Communicator::MAX_BATCH> batch{};
    std::size_t length = 0;
    // Taken at once, so that a timer that fires during a send finds it gone.
    if (sendPermission_.exchange(false)) {
        if (queue_.mainQueued.exchange(false)) {
            batch[length++] = queue_.mainCommand.data();
            incrementCounters(queue_.mainKind);
        }
        for (auto& text : others) {
            if (!queue_.getNextOther(text.data())) break;
            batch[length++] = text.data();
            incrementCounters(queue_.handedOut);
        }
    }
    if (last != nullptr) batch[length++] = last;
    communicator_->sendMessages({batch.data(), length});
}

void Effectors::sendCommandDirect(char const* message) {
    communicator_->sendMessage(message);
}

void Effectors::incrementCounters(Command kind) {
    switch (kind) {
    case Command::move:
        ++counters_.move;
        break;
    case Command::kick:
        ++counters_.kick;
        break;
    case Command::dash:
        ++counters_.dash;
        break;
    case Command::turn:
        ++counters_.turn;
        break;
    case Command::goalieCatch:
        ++counters_.goalieCatch;
        break;
    case Command::turnNeck:
        ++counters_.turnNeck;
        break;
    case Command::changeView:
        ++counters_.changeView;
        break;
    case Command::say:
        ++counters_.say;
        break;
    case Command::none:
    case Command::score:
        break;
    }
}

void Effectors::sigalrmHandler(int /*signal*/) {
    int const savedErrno = errno; // the interrupted code may still have to read it
    eff->sendAllCommands();
    errno = savedErrno;
}
