#include "runtime/Statistics.h"

#include <array>
#include <charconv>
#include <string_view>
#include <unistd.h>

#include "runtime/Agent.h"
#include "worldmodel/WorldModel.h"

namespace {

/// Text put together in place and written at once: what a signal handler may do.
class Report {
public:
    Report& operator<<(std::string_view text) {
        for (char const c : text) {
            if (length_ < buffer_.size()) buffer_[length_++] = c;
        }
        return *this;
    }

    Report& operator<<(int number) {
        std::array<char, 16> digits{};
        auto const result = std::to_chars(digits.begin(), digits.end(), number);
        return *this << std::string_view(digits.data(),
                                         static_cast<std::size_t>(result.ptr - digits.data()));
    }

    void write() const {
        std::size_t written = 0;
        while (written < length_) {
            ssize_t const n = ::write(STDOUT_FILENO, buffer_.data() + written, length_ - written);
            if (n <= 0) return;
            written += static_cast<std::size_t>(n);
        }
    }

private:
    std::array<char, 2048> buffer_{};
    std::size_t length_ = 0;
};

struct Row {
    std::string_view label;
    SharedInt ServerCommandCounters::*count;
};

// clang-format off
constexpr std::array<Row, 8> ROWS = {{
    {"kicks        queued: ", &ServerCommandCounters::kick},
    {"dashes       queued: ", &ServerCommandCounters::dash},
    {"turns        queued: ", &ServerCommandCounters::turn},
    {"says         queued: ", &ServerCommandCounters::say},
    {"turn_necks   queued: ", &ServerCommandCounters::turnNeck},
    {"catches      queued: ", &ServerCommandCounters::goalieCatch},
    {"moves        queued: ", &ServerCommandCounters::move},
    {"change_views queued: ", &ServerCommandCounters::changeView},
}};
// clang-format on

constexpr std::string_view RULE =
    "**************************************************************\n";
static_assert(RULE.size() == 63);

void print(std::string_view text) {
    (Report() << text).write();
}

} // namespace

void printStatistics() {
    ServerCommandCounters const& queued = Agent::worldModel->queuedCommands();
    ServerCommandCounters const& executed = Agent::worldModel->myself().bodyInfo.executed;
    Report report;
    report << RULE;
    for (Row const& row : ROWS) {
        report << row.label << (queued.*row.count).load()
               << "  \t server received: " << (executed.*row.count).load() << "\n";
    }
    report << RULE << "\n";
    report.write();
}

void sigintHandler(int /*signal*/) {
    print("\n\nSIGINT caught \n");
    printStatistics();
    _exit(0);
}

void showHelp() {
    print("usage: agent <host <teamname <-goalie>>>\n");
}

void terminate() {
    print("\n\nThe server probably dead: exiting\n");
    printStatistics();
    _exit(0);
}
