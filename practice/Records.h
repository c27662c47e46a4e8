#pragma once

#include <string>

#include "practice/Match.h"

// What a match leaves behind in files.
namespace practice {

// First line of a log, then one line per step: cycle, play mode, score, ball, and for every player
// on the pitch side, number, position, body and neck (degrees) and stamina.
std::string logHeader();
std::string logLine(const World& world);

// Score, teams and players with their executed commands, tab separated.
std::string results(const Match& match);

// Replaces the file at once, so that nobody reads half of it. False, with errno set, on failure.
bool writeFile(const std::string& path, const std::string& content);

} // namespace practice
