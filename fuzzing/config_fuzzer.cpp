// Any text is a player.conf.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "config/ConfProblems.h"
#include "config/ConfigFile.h"
#include "config/readConfFile.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

bool isPlain(std::string const& text) {
    return !text.empty() && text.find_first_of("\"#:\n\t") == std::string::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    std::ostringstream complaints;
    std::streambuf* const standardError = std::cerr.rdbuf(complaints.rdbuf());
    bool const traced = size % 2 == 1;
    bool const good = readConfFile(text, traced, traced);
    auto const problems = findConfProblems(text);
    std::cerr.rdbuf(standardError);

    bool const complained = !problems.empty() && problems.back().isError;
    require(good != complained);
    auto const lines = static_cast<int>(std::ranges::count(text, '\n')) + 1;
    require(std::ranges::all_of(
        problems, [=](ConfProblem const& p) { return p.line >= 1 && p.line <= lines; }));

    require(good || !complaints.str().empty());
    require(isPlain(ConfigFile::teamname) && isPlain(ConfigFile::serverHost));
    require(isPlain(ConfigFile::sayID));
    require(std::isfinite(ConfigFile::noSeeFraction) && std::isfinite(ConfigFile::walkPower));
    return 0;
}
