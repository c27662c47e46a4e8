// The program as a user meets it: order, broken files, valid JSON and CSV, wrong options.

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>

#include "stats/InOrder.h"
#include "stats/Output.h"
#include "stats/Sinks.h"

namespace {

using namespace stats;

struct Outcome {
    std::string out;
    int status = -1;
};

/// Runs match-stats; what it complains about comes with the rest.
Outcome run(std::string const& arguments) {
    Outcome result;
    FILE* const pipe = popen((MATCH_STATS " " + arguments + " 2>&1").c_str(), "r");
    char block[4096];
    while (std::size_t const got = std::fread(block, 1, sizeof block, pipe)) {
        result.out.append(block, got);
    }
    result.status = WEXITSTATUS(pclose(pipe));
    return result;
}

std::string const V4 = LOGS "match_v4.rcg.gz";
std::string const V5 = LOGS "match_v5.rcg.gz";
std::string const V6 = LOGS "match_v6.rcg.gz";

/// Whether a text is one JSON value.
class JsonChecker {
public:
    static bool isValid(std::string const& text) {
        JsonChecker checker{text};
        checker.value();
        checker.blanks();
        return checker.good_ && checker.at_ == text.size();
    }

private:
    explicit JsonChecker(std::string const& text) : text_(text) {}

    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void blanks() {
        while (peek() == ' ' || peek() == '\n') {
            ++at_;
        }
    }
    void expect(char c) {
        blanks();
        good_ = good_ && peek() == c;
        ++at_;
    }
    void list(char close, bool keys) {
        ++at_;
        blanks();
        while (good_ && peek() != close) {
            if (keys) string();
            if (keys) expect(':');
            value();
            blanks();
            if (peek() != close) expect(',');
            blanks();
        }
        expect(close);
    }
    void string() {
        expect('"');
        for (; good_ && peek() != '"'; ++at_) {
            good_ = peek() >= ' ' && peek() <= '~';
            if (peek() == '\\') ++at_;
        }
        ++at_;
    }
    void value() {
        blanks();
        if (!good_) return;
        if (peek() == '{') return list('}', true);
        if (peek() == '[') return list(']', false);
        if (peek() == '"') return string();
        std::size_t const end = std::min(text_.find_first_of(",]} \n", at_), text_.size());
        std::string const word = text_.substr(at_, end - at_);
        double number = 0;
        auto const read = std::from_chars(word.data(), word.data() + word.size(), number);
        good_ = word == "null" || (!word.empty() && read.ptr == word.data() + word.size());
        at_ = end;
    }

    std::string const& text_;
    std::size_t at_ = 0;
    bool good_ = true;
};

TEST(Program, PrintsValidJsonOfEveryKind) {
    for (std::string const kind : {"", "--players ", "--events ", "--cycles "}) {
        std::string arguments = "--json ";
        arguments.append(kind).append(V5).append(" ").append(V6);
        Outcome const result = run(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(JsonChecker::isValid(result.out)) << kind << result.out.substr(0, 300);
    }
    EXPECT_FALSE(JsonChecker::isValid("[{\"a\" 1}]"));
}

TEST(Program, PrintsRowsAsLongAsTheirHeader) {
    for (std::string const kind : {"", "--players ", "--events ", "--cycles "}) {
        std::istringstream lines(run(kind + V4).out);
        std::string line;
        std::getline(lines, line);
        auto const columns = std::count(line.begin(), line.end(), ',');
        int rows = 0;
        for (; std::getline(lines, line); ++rows) {
            ASSERT_EQ(std::count(line.begin(), line.end(), ','), columns) << line;
        }
        EXPECT_GT(rows, 0);
    }
}

TEST(Program, KeepsTheOrderAndGoesOnAfterABrokenFile) {
    Outcome const result = run("--jobs 3 " + V5 + " " MATCH_STATS " " + V4 + " /nowhere.rcg " + V6);
    EXPECT_EQ(result.status, 1);
    EXPECT_LT(result.out.find(V5 + ","), result.out.find(V4 + ","));
    EXPECT_LT(result.out.find(V4 + ","), result.out.find(V6 + ","));
    EXPECT_NE(result.out.find("match-stats: " MATCH_STATS ": line 1: this is no game log"),
              std::string::npos);
    EXPECT_NE(result.out.find("match-stats: /nowhere.rcg: No such file or directory"),
              std::string::npos);
}

TEST(Program, SaysWhatIsWrongWithItsOptions) {
    EXPECT_EQ(run("").status, 2);
    EXPECT_NE(run("").out.find("which game logs?"), std::string::npos);
    EXPECT_NE(run("--foo x").out.find("unknown option --foo"), std::string::npos);
    EXPECT_NE(run("--players --cycles x").out.find("only one of"), std::string::npos);
    EXPECT_NE(run("--jobs 0 x").out.find("--jobs takes a number"), std::string::npos);
    EXPECT_EQ(run("--help").status, 0);
}

TEST(Sinks, QuoteWhatTheirFormatNeeds) {
    std::string csv, json;
    CsvRow row(csv);
    row.field("a", std::string_view("x,\"y\""));
    row.field("b", std::optional<int>());
    row.field("c", -0.25);
    EXPECT_EQ(csv, "\"x,\"\"y\"\"\",,-0.25");
    {
        JsonObject object(json);
        object.field("a", std::string_view("\"\\\n\xe4"));
        object.open("b");
        object.field("c", std::optional<int>());
        object.close();
    }
    EXPECT_EQ(json, R"({"a": "\"\\\u000a\u00e4", "b": {"c": null}})");
}

TEST(InOrder, UsesResultsInTurnWhoeverIsFirst) {
    std::vector<std::size_t> used;
    inOrder(
        50, 4,
        [](std::size_t i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(i % 5));
            return 2 * i;
        },
        [&](std::size_t i, std::size_t result) {
            EXPECT_EQ(result, 2 * i);
            used.push_back(i);
        });
    EXPECT_EQ(used.size(), 50u);
    EXPECT_TRUE(std::ranges::is_sorted(used));
}

} // namespace
