#pragma once

#include <string>

#include "gamelog/Records.h"

namespace gamelog {

/// The first line of a log, with its end: "ULG5\n".
std::string header(int version);

/// Appends one record as a line without its end. Numbers are printed with at most six significant
/// digits; positions and speeds are rounded to 0.0001 first, body and neck to 0.001. Allocates only
/// to let `out` grow. `version` is that of a log (4, 5 or 6; of a monitor see logVersionOfMonitor)
/// and concerns shows alone.
void append(std::string& out, ServerParam const& record);
void append(std::string& out, PlayerParam const& record);
void append(std::string& out, PlayerType const& record);
void append(std::string& out, PlayModeChange const& record);
void append(std::string& out, Team const& record);
void append(std::string& out, Msg const& record);
void append(std::string& out, Unknown const& record);
void append(std::string& out, Show const& record, int version);
void append(std::string& out, Record const& record, int version);

} // namespace gamelog
