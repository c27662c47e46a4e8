#include "config/ConfigFile.h"

#include <fstream>
#include <optional>
#include <sstream>

#include "config/readConfFile.h"

namespace {

/// Nothing when the file cannot be opened, or opens but cannot be read, as a folder does.
std::optional<std::string> readWholeFile(char const* path) {
    std::ifstream file(path);
    file.peek(); // finds out whether the file can be read, and doesn't mind an empty one
    if (file.fail()) return std::nullopt;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

bool ConfigFile::parseConfigFile(char const* path, bool scannerDebug, bool parserDebug) {
    std::optional<std::string> const text = readWholeFile(path);
    return text && readConfFile(*text, scannerDebug, parserDebug);
}
