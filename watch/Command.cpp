#include "watch/Command.h"

#include <array>
#include <cmath>
#include <optional>

#include "watch/Json.h"
#include "watch/Text.h"

namespace watch {

namespace {

constexpr double UNITS_PER_METRE = 16;
constexpr double FARTHEST = 100; // metres from the middle, in each direction
constexpr double MOST_DEGREES = 360;
constexpr int TEAM_SIZE = 11;
constexpr std::size_t MOST_MEMBERS = 6;

/// The members of a command, taken one by one; the first fault stays.
class Members {
public:
    explicit Members(std::vector<JsonMember> members) : members_(std::move(members)) {}

    std::string_view text(std::string_view name) {
        auto const* const value = find<std::string_view>(name);
        return value == nullptr ? std::string_view() : *value;
    }

    /// The number nearest to `scale` times the member, which is at most `most` away from 0.
    std::string rounded(std::string_view name, double most, double scale = 1) {
        auto const* const value = find<double>(name);
        if (value == nullptr) return {};
        if (std::abs(*value) > most) return fail(joined({name, " is out of range"}));
        return std::to_string(std::lround(*value * scale));
    }
    std::string place(std::string_view name) { return rounded(name, FARTHEST, UNITS_PER_METRE); }

    /// As the server numbers the sides.
    std::string side() {
        std::string_view const side = text("side");
        if (side == "l") return "1";
        if (side == "r") return "-1";
        return fail(R"(side has to be "l" or "r")");
    }

    std::string unum() {
        auto const* const value = find<double>("unum");
        if (value == nullptr) return {};
        if (*value < 1 || *value > TEAM_SIZE || *value != std::floor(*value)) {
            return fail("unum has to be a number from 1 to 11");
        }
        return std::to_string(static_cast<int>(*value));
    }

    bool allUsed() const { return used_ == members_.size(); }
    std::string const& wrong() const { return wrong_; }

private:
    template <typename Value>
    Value const* find(std::string_view name) {
        for (JsonMember const& member : members_) {
            auto const* const value = std::get_if<Value>(&member.value);
            if (member.name != name || value == nullptr) continue;
            ++used_;
            return value;
        }
        fail(joined(
            {name, " is missing, or no ", std::is_same_v<Value, double> ? "number" : "text"}));
        return nullptr;
    }

    std::string fail(std::string what) {
        if (wrong_.empty()) wrong_ = std::move(what);
        return {};
    }

    std::vector<JsonMember> members_;
    std::size_t used_ = 0;
    std::string wrong_;
};

std::string kickOff(Members& /*members*/) {
    return "(dispstart)";
}

std::string foul(Members& members, std::string const& side) {
    std::string const x = members.place("x"), y = members.place("y");
    return joined({"(dispfoul ", x, " ", y, " ", side, ")"});
}

std::string dropBall(Members& members) {
    return foul(members, "0");
}

std::string freeKick(Members& members) {
    return foul(members, members.side());
}

std::string movePlayer(Members& members) {
    // Intentional: an initialiser list is evaluated in its order, so the first fault is told.
    return joined({"(dispplayer ", members.side(), " ", members.unum(), " ", members.place("x"),
                   " ", members.place("y"), " ", members.rounded("angle", MOST_DEGREES), ")"});
}

struct Form {
    std::string_view name;
    std::string (*datagram)(Members&);
};

constexpr std::array<Form, 4> FORMS = {{{"kick_off", kickOff},
                                        {"drop_ball", dropBall},
                                        {"free_kick", freeKick},
                                        {"move_player", movePlayer}}};

} // namespace

Command readCommand(std::string_view body) {
    auto object = readJsonObject(body, MOST_MEMBERS);
    if (!object) return {{}, "a command is a JSON object of a few texts and numbers"};
    Members members(std::move(*object));
    std::string_view const name = members.text("command");
    for (Form const& form : FORMS) {
        if (form.name != name) continue;
        std::string datagram = form.datagram(members);
        if (!members.wrong().empty()) return {{}, members.wrong()};
        if (!members.allUsed()) return {{}, "the command has a member that it does not know"};
        return {std::move(datagram), {}};
    }
    if (!members.wrong().empty()) return {{}, members.wrong()};
    return {{}, "there is no such command"};
}

} // namespace watch
