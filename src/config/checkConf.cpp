// Checks a configuration file before a match: check-conf FILE [KEYWORD ...].
//
// Says what is wrong or odd in the file, with its line, on standard error; nothing when all is
// fine. Then prints the value of each keyword named, a line each. Ends with 1 when the player would
// refuse the file, with 2 when it was called wrongly.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <span>
#include <sstream>

#include "config/ConfProblems.h"
#include "config/ConfigFile.h"
#include "config/readConfFile.h"

namespace {

bool readFile(char const* path, std::string& text) {
    std::ifstream file(path);
    file.peek();
    if (file.bad() || !file.is_open()) return false;
    std::ostringstream content;
    content << file.rdbuf();
    text = content.str();
    return true;
}

/// The player's own words for the error are for the player; ours say more.
std::vector<ConfProblem> findQuietly(std::string const& text) {
    std::ostringstream unused;
    std::streambuf* const standardError = std::cerr.rdbuf(unused.rdbuf());
    std::vector<ConfProblem> problems = findConfProblems(text);
    std::cerr.rdbuf(standardError);
    return problems;
}

} // namespace

int main(int argc, char* argv[]) {
    std::span<char* const> const arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 2) {
        std::cerr << "usage: check-conf FILE [KEYWORD ...]\n";
        return 2;
    }
    char const* const path = arguments[1];
    std::string text;
    if (!readFile(path, text)) {
        std::cerr << path << ": cannot be read; is it a file, and yours to read?\n";
        return 2;
    }
    bool good = true;
    for (ConfProblem const& problem : findQuietly(text)) {
        std::cerr << path << ":" << problem.line << (problem.isError ? ": error: " : ": warning: ")
                  << problem.message << "\n";
        good = good && !problem.isError;
    }
    for (std::string_view const name : arguments.subspan(2)) {
        auto const keyword = std::ranges::find(confKeywords(), name, &ConfKeyword::name);
        if (keyword == confKeywords().end()) {
            std::cerr << "check-conf: there is no keyword '" << name << "'\n";
            return 2;
        }
        std::visit([](auto const* member) { std::cout << *member << "\n"; }, keyword->member);
    }
    return good ? 0 : 1;
}
