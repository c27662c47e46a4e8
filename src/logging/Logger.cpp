#include "logging/Logger.h"

#include <array>
#include <string_view>

Logger::Logger(WorldModel* wm) : worldModel_(wm) {
    OpenForWrite();
}

void Logger::OpenForWrite() {
    constexpr std::array<char, 4> HEAD = {'U', 'L', 'G', 3}; // a game log of version 3
    file_.close();
    file_.open(FILE_NAME, std::ios::binary | std::ios::trunc);
    game_log_write(HEAD.data(), HEAD.size());
    file_.flush();
}

void Logger::writeWorldModel() {
    constexpr std::string_view MARKER = "hallo";
    game_log_write(MARKER.data(), MARKER.size());
    file_.flush();
}

void Logger::game_log_write(char const* buf, unsigned int len) {
    file_.write(buf, len);
}
