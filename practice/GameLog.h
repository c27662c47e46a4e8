#pragma once

#include <ctime>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "gamelog/Records.h"
#include "practice/Match.h"
#include "practice/OutputFile.h"

namespace practice {

/// Which logs are written, and where.
struct LogOptions {
    static constexpr char const* DATE_FORMAT = "%Y%m%d%H%M%S-";

    std::string stem;      ///< path and name without ending, or with ".rcg"; empty: "match"
    std::string directory; ///< empty: the one of the stem
    int version = gamelog::USUAL_VERSION;
    bool dated = false; ///< named after date and result; "incomplete" until the end
    /// The text of the logs depends on the match alone: not on date, port and place.
    bool reproducible = false;

    bool wanted() const { return dated || !stem.empty() || !directory.empty(); }
    std::string folder() const; ///< ends with a slash
    std::string name() const;   ///< without folder and ending
};

/// The record of a match: a game log (.rcg) of what happened and a text log (.rcl) of what was
/// said. Both are handed to the system after every step, so that they can be followed while they
/// grow.
class GameLog : public Observer {
public:
    /// Writes the header and the parameter records. None, with the reason in `problem`, if a file
    /// cannot be written.
    static std::unique_ptr<GameLog>
    open(LogOptions const& options, std::span<std::string const> parameters, std::string& problem);

    void heardPlayer(World const& world, Player const& player, std::string_view datagram) override;
    void heardReferee(World const& world, std::string_view word) override;
    void noted(World const& world, std::string_view text) override;

    /// At the end of every step.
    void step(World const& world);
    /// The result, and the final names of dated logs. Nothing is written after it.
    void finish(World const& world);

private:
    struct File {
        std::string path;
        OutputFile file;
        std::string pending{}; ///< what the next flush writes
        bool failed = false;
    };

    GameLog(LogOptions options, File game, File words);

    bool isLogged(World const& world) const;
    void writePlayMode(World const& world);
    void writeTeams(World const& world);
    void flush();
    void rename(World const& world);

    LogOptions options_;
    std::time_t start_ = std::time(nullptr);
    File game_;
    File words_;
    gamelog::Show show_;
    std::optional<gamelog::PlayMode> writtenMode_;
    std::optional<gamelog::Score> writtenScore_;
    Phase lastPhase_ = Phase::beforeKickOff; ///< at the end of the last step
    int lastCycle_ = 0;                      ///< likewise
};

} // namespace practice
