#pragma once

#include <array>
#include <atomic>
#include <cstddef>

/// The kinds of command the server accepts. At most one of `move` to `catch` counts per cycle.
enum class Command : int {
    none = 0,
    move = 1,
    kick = 2,
    dash = 3,
    turn = 4,
    goalieCatch = 5,
    turnNeck = 6,
    changeView = 7,
    score = 8,
    say = 9,
};

/// Width of the view cone, numbered as the history records it.
enum class ViewMode : int { narrow = 0, normal = 1, wide = 2 };
/// Quality of what is seen; low leaves out the distances.
enum class ViewQuality : int { high = 0, low = 1 };

/// Marks a command argument that has no value in this cycle.
inline constexpr float NO_ARGUMENT = 1e10F;

/// The queue of one cycle: one main (body) command and up to MAX_OTHERS that go beside it.
///
/// Owned by `Effectors`. The main thread fills it, and either the main thread or the SIGALRM
/// handler empties it. A text is complete before its flag or count says so.
struct ServerCommands {
    static constexpr std::size_t MAIN_SIZE = 64;
    static constexpr std::size_t OTHER_SIZE = 512;
    static constexpr int MAX_OTHERS = 6;

    std::array<char, MAIN_SIZE> mainCommand{};
    Command mainKind = Command::none;
    std::atomic<bool> mainQueued = false;
    std::array<std::array<char, OTHER_SIZE>, MAX_OTHERS> otherCommands{};
    std::array<Command, MAX_OTHERS> otherKinds{};
    std::atomic<int> numberOfOthers = 0;
    std::atomic<int> nextOther = 0;
    Command handedOut = Command::none; ///< kind of what getNextOther gave last

    /// Replaces the main command, if one is queued already.
    void queueMain(char const* text, Command kind);
    /// False when all slots are taken.
    bool queueOther(char const* text, Command kind);
    /// Copies the next other command that was not yet handed out into `out` (OTHER_SIZE characters)
    /// and returns true; an empty text and false when there is none.
    bool getNextOther(char* out);
    /// Empties the queue at the start of a cycle.
    void clear();
    /// Prints the queue to standard output.
    void listContent() const;
};

/// What was queued in the current cycle; the state estimation reads it when the next sense_body
/// tells that the cycle is over. One per world model, used by the main thread only.
struct ServerCommandHistory {
    Command mainKind = Command::none;
    Command otherKind = Command::none; ///< of turn_neck, change_view, score: the last one queued
    Command sayKind = Command::none;
    /// move x, kick power, dash power, the turn angle that is to be expected, catch direction
    float mainArgument1 = NO_ARGUMENT;
    float mainArgument2 = NO_ARGUMENT;  ///< move y, kick direction
    float otherArgument1 = NO_ARGUMENT; ///< turn_neck angle, view width as a number
    float otherArgument2 = NO_ARGUMENT; ///< view quality as a number
    std::array<char, ServerCommands::OTHER_SIZE> sayText{}; ///< without the quotes

    virtual ~ServerCommandHistory() = default;
    void reset();
};

/// A number that threads and signal handlers share: lock-free, and copied with the record it is in.
class SharedInt : public std::atomic<int> {
public:
    constexpr SharedInt(int value = 0) : atomic(value) {}
    SharedInt(SharedInt const& other) : atomic(other.load()) {}
    SharedInt& operator=(SharedInt const& other) { return *this = other.load(); }
    SharedInt& operator=(int value) {
        store(value);
        return *this;
    }
    ~SharedInt() = default;
};

/// Commands of each kind since the start. Shared, since the sender counts and the SIGINT handler
/// reads, each in whichever thread it interrupted.
struct ServerCommandCounters {
    SharedInt kick;
    SharedInt dash;
    SharedInt turn;
    SharedInt say;
    SharedInt turnNeck;
    SharedInt goalieCatch;
    SharedInt move;
    SharedInt changeView;
};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
