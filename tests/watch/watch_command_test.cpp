// What a request may say, who may ask, and how the page learns where to ask.

#include <gtest/gtest.h>

#include "tests/gamelog/Files.h"
#include "watch/Access.h"
#include "watch/Command.h"
#include "watch/Json.h"
#include "watch/Options.h"
#include "watch/Page.h"

using namespace watch;

namespace {

TEST(Command, BecomesTheServersDatagram) {
    struct {
        char const *body, *datagram;
    } const cases[] = {
        {R"({"command": "kick_off"})", "(dispstart)"},
        {" {\"command\" :\"kick_off\"}\r\n", "(dispstart)"},
        {R"({"command":"drop_ball","x":0,"y":0})", "(dispfoul 0 0 0)"},
        {R"({"command":"drop_ball","x":-52.5,"y":34})", "(dispfoul -840 544 0)"},
        {R"({"y":1.5e1,"side":"l","x":-0.03,"command":"free_kick"})", "(dispfoul 0 240 1)"},
        {R"({"command":"free_kick","side":"r","x":0.04,"y":-3.14159})", "(dispfoul 1 -50 -1)"},
        {R"({"command":"move_player","side":"l","unum":7,"x":1,"y":-2,"angle":89.6})",
         "(dispplayer 1 7 16 -32 90)"},
        {R"({"command":"move_player","side":"r","unum":11,"x":0,"y":0,"angle":-180})",
         "(dispplayer -1 11 0 0 -180)"},
    };
    for (auto const& [body, datagram] : cases) {
        Command const command = readCommand(body);
        EXPECT_EQ(command.datagram, datagram) << body;
        EXPECT_EQ(command.wrong, "") << body;
    }
}

TEST(Command, IsRefusedWithAReason) {
    struct {
        char const *body, *wrong;
    } const cases[] = {
        {"", "JSON object"},
        {"null", "JSON object"},
        {"{", "JSON object"},
        {"[]", "JSON object"},
        {R"({"command":"kick_off"}})", "JSON object"},
        {R"({"command":"kick_off",})", "JSON object"},
        {R"({"command":"kick\u005foff"})", "JSON object"},
        {R"({"command":"kick_off","command":"kick_off"})", "JSON object"},
        {R"({"command":{"a":1}})", "JSON object"},
        {R"({"command":"drop_ball","x":inf,"y":0})", "JSON object"},
        {R"({"command":"drop_ball","x":1e999,"y":0})", "JSON object"},
        {R"({"a":1,"b":1,"c":1,"d":1,"e":1,"f":1,"command":"kick_off"})", "JSON object"},
        {R"({})", "command is missing"},
        {R"({"command":1})", "command is missing"},
        {R"x({"command":"(dispbye)"})x", "no such command"},
        {R"({"command":"kick_off","x":1})", "member that it does not know"},
        {R"({"command":"drop_ball","x":0})", "y is missing"},
        {R"({"command":"drop_ball","x":"0","y":0})", "x is missing"},
        {R"({"command":"drop_ball","x":101,"y":0})", "x is out of range"},
        {R"({"command":"free_kick","side":"n","x":0,"y":0})", "side"},
        {R"({"command":"move_player","side":"l","unum":0,"x":0,"y":0,"angle":0})", "unum"},
        {R"({"command":"move_player","side":"l","unum":12,"x":0,"y":0,"angle":0})", "unum"},
        {R"({"command":"move_player","side":"l","unum":1.5,"x":0,"y":0,"angle":0})", "unum"},
        {R"({"command":"move_player","side":"l","unum":1,"x":0,"y":0,"angle":361})", "angle"},
    };
    for (auto const& [body, wrong] : cases) {
        Command const command = readCommand(body);
        EXPECT_EQ(command.datagram, "") << body;
        EXPECT_NE(command.wrong.find(wrong), std::string::npos) << body << ": " << command.wrong;
    }
}

TEST(Access, KnowsItsOwnNames) {
    struct {
        char const *address, *host;
        bool allowed;
    } const cases[] = {
        {"127.0.0.1", "127.0.0.1:8000", true},
        {"127.0.0.1", "localhost:8000", true},
        {"127.0.0.1", "LocalHost:8000", true},
        {"127.0.0.1", "[::1]:8000", true},
        {"127.0.0.1", "", false},
        {"127.0.0.1", "127.0.0.1", false},
        {"127.0.0.1", "127.0.0.1:8001", false},
        {"127.0.0.1", "example.org:8000", false},
        {"127.0.0.1", "10.0.0.1:8000", false},
        {"127.0.0.1", "localhost.example.org:8000", false},
        {"127.0.0.1", ":8000", false},
        {"192.168.1.5", "192.168.1.5:8000", true},
        {"pitch.lan", "pitch.lan:8000", true},
        {"pitch.lan", "other.lan:8000", false},
        {"0.0.0.0", "192.168.1.5:8000", true},
        {"0.0.0.0", "example.org:8000", false},
        {"::", "[fe80::1]:8000", true},
        {"::", "[fe80::1:8000", false},
    };
    for (auto const& [address, host, allowed] : cases) {
        EXPECT_EQ(Access(address, 8000, "t").hostAllowed(host), allowed) << address << " " << host;
    }
    EXPECT_TRUE(Access("127.0.0.1", 80, "t").hostAllowed("localhost"));
}

TEST(Access, TakesCommandsFromItsOwnPageOnly) {
    EXPECT_TRUE(Access::originAllowed("http://localhost:8000", "localhost:8000"));
    for (char const* const origin :
         {"", "null", "http://127.0.0.1:8000", "https://localhost:8000",
          "http://localhost:8000.example.org", "http://localhost:8000/"}) {
        EXPECT_FALSE(Access::originAllowed(origin, "localhost:8000")) << origin;
    }
    Access const access("127.0.0.1", 8000, "0123");
    EXPECT_TRUE(access.tokenRight("0123"));
    for (char const* const token : {"", "012", "01234", "0124"}) {
        EXPECT_FALSE(access.tokenRight(token)) << token;
    }
    EXPECT_EQ(randomHex(16).size(), 32u);
    EXPECT_NE(randomHex(16), randomHex(16));
}

TEST(Page, LearnsWhereItsMatchIs) {
    std::string const before = R"(<p>null</p><script id="source" type="application/json">)";
    gamelog_test::TemporaryFile const file(before + "null</script>x");
    Page const page = readPage(file.path);
    EXPECT_EQ(page.wrong, "");
    EXPECT_EQ(livePage(page.text, "ab"),
              before + R"({"live":"/events","commands":"/command","token":"ab"}</script>x)");
    EXPECT_EQ(livePage(page.text, ""), before + R"({"live":"/events"}</script>x)");
    for (char const* const other : {"", "<html>", "<script id=\"source\"", "<script id=\"source\">",
                                    R"(<script id="source">{"rcg":""}</script>)"}) {
        gamelog_test::TemporaryFile const wrong{std::string(other)};
        EXPECT_NE(readPage(wrong.path).wrong.find("is not the viewer"), std::string::npos) << other;
    }
    EXPECT_NE(readPage("/nowhere/viewer.html").wrong.find("cannot read"), std::string::npos);
}

TEST(Json, TextsAreQuoted) {
    EXPECT_EQ(jsonText("a\"b\\c\n\x01\xff"), "\"a\\\"b\\\\c\\u000a\\u0001\xff\"");
}

TEST(Options, AreRead) {
    Options options;
    char const* const good[] = {"host", "--port", "6001", "--http",    "0",  "--address",
                                "::1",  "--page", "p",    "--history", "10", "--look-only"};
    EXPECT_EQ(readOptions(good, options), "");
    EXPECT_EQ(options.host + options.address + options.page, "host::1p");
    EXPECT_EQ(options.port, 6001);
    EXPECT_EQ(options.http, 0);
    EXPECT_EQ(options.history, 10u);
    EXPECT_TRUE(options.lookOnly);
    for (char const* const bad : {"--port", "--nothing", "-p", "", "--history"}) {
        char const* const arguments[] = {bad};
        EXPECT_NE(readOptions(arguments, options), "") << bad;
    }
    for (char const* const port : {"0", "65536", "x", "1x", "-1", ""}) {
        char const* const arguments[] = {"--port", port};
        EXPECT_NE(readOptions(arguments, options), "") << port;
    }
}

} // namespace
