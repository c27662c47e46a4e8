#pragma once

#include <fstream>

class WorldModel;

/// The place where a record of the world model in a file, for study after the match, is to grow.
/// Today it writes the head of a game log and, on request, a marker.
///
/// Nobody creates one in play. A file that cannot be opened swallows all that is written; no
/// operation reports an error.
class Logger {
public:
    static constexpr char const* FILE_NAME =
        "logfile######"; ///< as it stands, nothing is filled in

    explicit Logger(WorldModel* wm);

    /// Opens FILE_NAME in the working directory, emptied, and writes the head.
    void OpenForWrite();
    /// Writes the marker "hallo" and flushes.
    void writeWorldModel();
    /// Writes the bytes as they are.
    void game_log_write(char const* buf, unsigned int len);

private:
    [[maybe_unused]] WorldModel* worldModel_; ///< what the records are to be made of
    std::ofstream file_;
};
