#include "config/ConfProblems.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <map>
#include <numeric>

#include "config/readConfFile.h"

namespace {

constexpr std::size_t LONGEST_TEAM_NAME = 15; // that servers take

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

template <typename... Parts>
std::string join(Parts const&... parts) {
    std::string text;
    (text.append(parts), ...);
    return text;
}

std::string shown(double number) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%g", number);
    return digits.data();
}

/// How many letters must be changed, put in or left out to make one word the other; upper and lower
/// case are the same letter.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (char const c : a) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            std::size_t const changed = diagonal + (lower(c) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::string unknownKeyword(std::string_view word) {
    std::string message = join("unknown keyword '", word, "'");
    auto const keywords = confKeywords();
    auto const nearest = std::ranges::min_element(
        keywords, {}, [word](ConfKeyword const& k) { return distance(word, k.name); });
    if (distance(word, nearest->name) <= nearest->name.size() / 3) {
        return join(message, "; did you mean '", nearest->name, "'? Upper and lower case count");
    }
    message += "; allowed are";
    for (ConfKeyword const& keyword : keywords) {
        message += join(&keyword == keywords.data() ? " " : ", ", keyword.name);
    }
    return message;
}

/// What a keyword takes.
struct Allowed {
    std::string operator()(std::string* /*member*/) const {
        return "takes a text between double quotes, of letters, digits, blanks, - and _";
    }
    std::string operator()(int* /*member*/) const {
        return join("takes a whole number from ", shown(keyword.low), " to ", shown(keyword.high));
    }
    std::string operator()(double* /*member*/) const {
        return "takes a number such as 4 or 0.5, with a point and digits on both sides of it";
    }
    ConfKeyword const& keyword;
};

std::string allowed(ConfKeyword const& keyword) {
    return std::visit(Allowed{keyword}, keyword.member);
}

/// Puts the error of a failed reading into words.
class Diagnosis {
public:
    Diagnosis(std::string_view text, ConfReport const& report)
        : text_(text), report_(report), at_(offset(report.stop->token)) {}

    std::string message() const {
        if (text_.starts_with("\xEF\xBB\xBF")) {
            return "begins with a byte order mark; save the file as UTF-8 without one";
        }
        if (at_ < text_.size() && text_[at_] == '\r') {
            return "the line ends with a carriage return; convert the file to plain line ends: "
                   "sed -i 's/\\r$//' FILE";
        }
        switch (report_.stop->place) {
        case ConfPlace::colon:
            return missingColon();
        case ConfPlace::value:
            return wrongValue(at_);
        case ConfPlace::keyword:
            break;
        }
        return noKeyword();
    }

private:
    std::size_t offset(std::string_view part) const {
        return static_cast<std::size_t>(part.data() - text_.data());
    }

    /// The characters from there on that belong together.
    template <typename Test>
    std::string_view run(std::size_t from, Test test) const {
        auto const rest = text_.substr(from);
        auto const end = std::ranges::find_if_not(rest, test);
        return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    }

    std::string found(std::size_t from) const {
        auto const stays = [](char c) { return c != '\n' && c != '\r' && c != '#'; };
        std::string_view line = run(from, stays);
        while (!line.empty() && isBlank(line.back())) {
            line.remove_suffix(1);
        }
        return line.empty() ? "nothing" : join("'", line, "'");
    }

    std::string missingColon() const {
        ConfReport::Setting const& setting = report_.settings.back();
        std::size_t const start = offset(setting.name);
        std::string_view const word = run(start, isWordCharacter);
        if (word != setting.name) return unknownKeyword(word);
        return join(setting.name, ": a colon is missing between keyword and value");
    }

    std::string wrongValue(std::size_t from) const {
        ConfKeyword const& keyword = *report_.settings.back().keyword;
        return join(keyword.name, ": ", allowed(keyword), ", not ", found(from));
    }

    std::string noKeyword() const {
        if (report_.settings.empty() && at_ == text_.size()) {
            return "no setting stands in the file; a player needs at least one";
        }
        // What touches the value before belongs to it: the scanner stopped in the middle.
        if (!report_.settings.empty() && at_ > 0 && !isBlank(text_[at_ - 1])) {
            return wrongValue(offset(report_.settings.back().value));
        }
        std::string_view const word = run(at_, isWordCharacter);
        if (!word.empty() && !std::isdigit(static_cast<unsigned char>(word.front()))) {
            return unknownKeyword(word);
        }
        return join("a keyword is expected here, not ", found(at_));
    }

    std::string_view text_;
    ConfReport const& report_;
    std::size_t at_;
};

/// What is odd about a value; empty when nothing is.
struct Oddity {
    std::string operator()(std::string const* member) const {
        if (keyword.name == "sayID" && member->size() == 1) {
            return std::isalnum(static_cast<unsigned char>(member->front())) != 0
                       ? ""
                       : "should be one letter or digit";
        }
        if (keyword.name == "sayID") return "should be one letter or digit: only the first counts";
        if (keyword.name != "teamname") return "";
        bool const good =
            member->size() <= LONGEST_TEAM_NAME && member->find(' ') == std::string::npos;
        return good ? "" : "should have up to 15 letters, digits, - or _: servers refuse others";
    }
    template <typename Number>
    std::string operator()(Number const* member) const {
        auto const value = static_cast<double>(*member);
        if (value >= keyword.low && value <= keyword.high) return "";
        return join("makes sense from ", shown(keyword.low), " to ", shown(keyword.high));
    }
    ConfKeyword const& keyword;
};

} // namespace

std::vector<ConfProblem> findConfProblems(std::string_view text) {
    ConfReport report;
    bool const good = readConfFile(text, false, false, &report);
    auto const lineOf = [text](std::string_view part) {
        return 1 + static_cast<int>(std::count(text.data(), part.data(), '\n'));
    };
    std::vector<ConfProblem> problems;
    std::map<ConfKeyword const*, ConfReport::Setting const*> last;
    for (ConfReport::Setting const& setting : report.settings) {
        auto const [place, isNew] = last.emplace(setting.keyword, &setting);
        if (isNew) continue;
        problems.push_back({false, lineOf(place->second->name),
                            join(setting.name, ": stands again in line ",
                                 std::to_string(lineOf(setting.name)), ", which counts")});
        place->second = &setting;
    }
    for (auto const& [keyword, setting] : last) {
        std::string const oddity = std::visit(Oddity{*keyword}, keyword->member);
        if (oddity.empty() || setting->value.empty()) continue;
        problems.push_back({false, lineOf(setting->name),
                            join(setting->name, ": ", oddity, ", not ", setting->value)});
    }
    std::ranges::stable_sort(problems, {}, &ConfProblem::line);
    if (!good) {
        std::string_view const token = report.stop->token;
        problems.push_back({true, lineOf(token), Diagnosis(text, report).message()});
    }
    return problems;
}
