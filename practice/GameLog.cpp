#include "practice/GameLog.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "gamelog/Writer.h"
#include "practice/Shows.h"
#include "practice/Text.h"

namespace practice {

namespace {

constexpr std::string_view GAME_ENDING = ".rcg";
constexpr std::string_view WORDS_ENDING = ".rcl";

std::string formatted(std::time_t time, char const* format) {
    std::tm local{};
    localtime_r(&time, &local);
    std::array<char, 64> buffer{};
    return {buffer.data(), std::strftime(buffer.data(), buffer.size(), format, &local)};
}

/// One line of a log: bytes that would end it become blanks, and the NUL at the end goes.
void appendAsLine(std::string& out, std::string_view datagram) {
    while (datagram.ends_with('\0') || datagram.ends_with('\n')) {
        datagram.remove_suffix(1);
    }
    for (char const c : datagram) {
        out += c == '\n' || c == '\r' || c == '\0' ? ' ' : c;
    }
}

/// Team names may have slashes.
std::string asFileName(std::string name) {
    for (char& c : name) {
        if (c == '/') c = '_';
    }
    return name;
}

std::string cannotWrite(std::string const& path) {
    if (errno == EWOULDBLOCK) {
        return text("another program writes the log ", path,
                    "; choose another with --log or --log-dir");
    }
    return text("cannot write the log ", path, ": ", std::strerror(errno));
}

} // namespace

std::string LogOptions::folder() const {
    std::string path = directory.empty() ? "" : directory + '/';
    path += stem.substr(0, stem.rfind('/') + 1);
    return path.empty() ? "./" : path;
}

std::string LogOptions::name() const {
    std::string name = stem.substr(stem.rfind('/') + 1);
    if (name.ends_with(GAME_ENDING)) name.resize(name.size() - GAME_ENDING.size());
    return name.empty() ? "match" : name;
}

std::unique_ptr<GameLog> GameLog::open(LogOptions const& options,
                                       std::span<std::string const> parameters,
                                       std::string& problem) {
    std::string const path = options.folder() + (options.dated ? "incomplete" : options.name());
    auto const openFile = [&](std::string_view ending) -> std::optional<File> {
        std::string const name = text(path, ending);
        auto file = OutputFile::create(name);
        if (file) return File{name, std::move(*file)};
        problem = cannotWrite(name);
        return std::nullopt;
    };
    auto game = openFile(GAME_ENDING);
    auto words = game ? openFile(WORDS_ENDING) : std::nullopt;
    if (!words) return nullptr;
    std::unique_ptr<GameLog> log(new GameLog(options, std::move(*game), std::move(*words)));
    log->game_.pending = gamelog::header(options.version);
    for (std::string const& line : parameters) {
        log->game_.pending += line + '\n';
    }
    log->flush();
    return log;
}

GameLog::GameLog(LogOptions options, File game, File words)
    : options_(std::move(options)), game_(std::move(game)), words_(std::move(words)) {}

// ---- The text log

void GameLog::heardPlayer(World const& world, Player const& player, std::string_view datagram) {
    appendText(words_.pending, world.cycle, ',', world.stoppedSteps, "\tRecv ",
               world.teamName(player.side), '_', player.unum, ": ");
    appendAsLine(words_.pending, datagram);
    words_.pending += '\n';
}

void GameLog::heardReferee(World const& world, std::string_view word) {
    appendText(words_.pending, world.cycle, ',', world.stoppedSteps, "\t(referee ", word, ")\n");
}

// ---- The game log

void GameLog::noted(World const& world, std::string_view text) {
    gamelog::append(game_.pending,
                    gamelog::Msg{world.cycle, gamelog::Msg::REFEREE_BOARD, std::string(text)});
    game_.pending += '\n';
}

void GameLog::step(World const& world) {
    if (isLogged(world)) {
        writePlayMode(world);
        writeTeams(world);
        fillShow(show_, world);
        gamelog::append(game_.pending, show_, options_.version);
        game_.pending += '\n';
    }
    lastPhase_ = world.mode.phase;
    lastCycle_ = world.cycle;
    flush();
}

/// There is no show before the kick-off, nor of the step that ends with it, and one after the end.
bool GameLog::isLogged(World const& world) const {
    Phase const phase = world.mode.phase;
    if (phase == Phase::beforeKickOff) return false;
    if (phase == Phase::timeOver) return lastPhase_ != Phase::timeOver;
    return lastPhase_ != Phase::beforeKickOff || world.cycle != lastCycle_;
}

void GameLog::writePlayMode(World const& world) {
    gamelog::PlayMode const mode = logMode(world.mode);
    if (std::exchange(writtenMode_, mode) == mode) return;
    gamelog::append(game_.pending, gamelog::PlayModeChange{world.cycle, mode});
    game_.pending += '\n';
}

void GameLog::writeTeams(World const& world) {
    gamelog::Score score = scoreOf(world);
    if (score == writtenScore_) return;
    gamelog::append(game_.pending, gamelog::Team{world.cycle, score});
    game_.pending += '\n';
    writtenScore_ = std::move(score);
}

void GameLog::finish(World const& world) {
    std::string const date =
        options_.reproducible ? "197001010000" : formatted(start_, "%Y%m%d%H%M");
    std::string const result = text("(result ", date, ' ', resultName(world), ')');
    gamelog::append(game_.pending, gamelog::Msg{world.cycle, gamelog::Msg::REFEREE_BOARD, result});
    game_.pending += '\n';
    writtenScore_.reset(); // the teams stand at the end in any case
    writeTeams(world);
    flush();
    if (options_.dated) rename(world);
}

void GameLog::flush() {
    for (File* file : {&game_, &words_}) {
        if (!file->failed && !file->file.write(file->pending)) {
            file->failed = true;
            std::fprintf(stderr, "practice-server: %s; the match goes on without it\n",
                         cannotWrite(file->path).c_str());
        }
        file->pending.clear();
    }
}

void GameLog::rename(World const& world) {
    std::string const name = options_.folder() + formatted(start_, LogOptions::DATE_FORMAT) +
                             asFileName(resultName(world));
    for (auto const& [file, ending] :
         {std::pair{&game_, GAME_ENDING}, std::pair{&words_, WORDS_ENDING}}) {
        std::string const path = text(name, ending);
        if (std::rename(file->path.c_str(), path.c_str()) == 0) continue;
        std::fprintf(stderr, "practice-server: cannot name the log %s: %s; it stays %s\n",
                     path.c_str(), std::strerror(errno), file->path.c_str());
    }
}

} // namespace practice
