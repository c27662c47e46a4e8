#include "watch/Page.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "watch/Text.h"

namespace watch {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view SOURCE_BEGIN = "<script id=\"source\"";
constexpr std::string_view SOURCE_END = "</script>";
constexpr std::string_view NO_SOURCE = "null";

/// Where `null` stands in the page's source element; npos if there is no such element.
std::size_t sourceIn(std::string_view page) {
    std::size_t const element = page.find(SOURCE_BEGIN);
    if (element == std::string_view::npos) return element;
    std::size_t const content = page.find('>', element);
    if (content == std::string_view::npos) return content;
    std::string_view const rest = page.substr(content + 1);
    bool const empty =
        rest.starts_with(NO_SOURCE) && rest.substr(NO_SOURCE.size()).starts_with(SOURCE_END);
    return empty ? content + 1 : std::string_view::npos;
}

} // namespace

std::string findPage(std::string const& wanted) {
    if (!wanted.empty()) return wanted;
    std::error_code none;
    fs::path const folder = fs::read_symlink("/proc/self/exe", none).parent_path();
    for (char const* const place : {"viewer.html", "../share/agent/viewer.html"}) {
        if (fs::is_regular_file(folder / place, none)) return folder / place;
    }
    return {};
}

Page readPage(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    Page page{{std::istreambuf_iterator<char>(file), {}}, {}};
    if (!file.is_open() || file.bad()) {
        page.wrong = joined({"cannot read ", path});
    } else if (sourceIn(page.text) == std::string::npos) {
        page.wrong = joined({path, " is not the viewer, or holds a match already"});
    }
    return page;
}

std::string livePage(std::string text, std::string const& token) {
    std::size_t const source = sourceIn(text);
    if (source == std::string::npos) return text;
    std::string const commands =
        token.empty() ? "" : joined({R"(,"commands":"/command","token":")", token, "\""});
    return text.replace(source, NO_SOURCE.size(), joined({R"({"live":"/events")", commands, "}"}));
}

} // namespace watch
