#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/parser/Messages.h"

namespace {

using Visual = Listening;

TEST_F(Visual, ReadsWhatIsWritten) {
    Dice dice(1);
    for (int round = 0; round < 500; ++round) {
        parser.teamName = dice.of(std::array{"Alpha", "Alph"});
        auto const [text, row] = drawSee(dice, parser.teamName);
        ASSERT_EQ(row, heard(text)) << text;
    }
    EXPECT_EQ("see 433 ", heard("(see 433)"));
}

TEST_F(Visual, RefusesWhatNoServerSends) {
    // clang-format off
    expectRefused("(see 1 ((", {"f z", "f t l 60", "f t l 500", "xf t l 10", "f  c", "g", "x", "pp",
        R"(p "Alpha" 0)", R"(p "Alpha" 12)", R"(p "Alpha" 1.5)", R"(p "Alpha" 1 coach)", R"(p "" 1)",
        "p Alpha 1", R"(P "Alpha")"}, ") 1 2))");
    expectRefused("(see 1 ((b)", {"", " ", " 1 2 3", " 1 2 3 4 5", " 1 2 3 4 5 6", " -1 2", " 1-2",
        " 1 361", " 1 x"}, "))");
    expectRefused("(see 1 ", {"((b) 1 2", "(b 1 2)", "((p \"A\") 1 2 3 4 5)", "()", "(())", "x"}, ")");
    expectRefused(R"((see 1 ((p "Beta" 3) 20 5 0 0 )", {"361 20", "10 361", "10 20 x", "10 20 t 30",
        "10 20 30 40", "10 20 (t)", "10 20 \"t\"", "10 20 999"}, "))");
    // clang-format on
    EXPECT_TRUE(hears(R"((see 1 ((p "Beta" 3) 0 360 0 0 -360 360)))"));
    expectRefused("(see ", {"", "-1", "1.5", "3000000000"}, ")");
    std::string players = "(see 1";
    for (std::size_t i = 0; i < RCC_Visual::MAX_OBJECTS; ++i) {
        players += " ((p) 1 2)";
    }
    EXPECT_TRUE(hears(players + "((b) 1 2))"));
    EXPECT_FALSE(hears(players + "((p) 1 2))")); // one more than there is room for
}

struct Kinds : Listening {
    /// What the words of a message from the referee become.
    std::string word(std::string const& words) { return heard("(hear 7 referee " + words + ")"); }
};

std::string mode(int number, int side) {
    return row("referee", 7, number, side);
}

TEST_F(Kinds, AreReadAsWritten) {
    Dice dice(2);
    std::map<std::string, char const*> const patterns = {{"self ", "(hear % self $)"},
                                                         {"player ", "(hear % # $)"},
                                                         {"coach ", "(hear % coach $)"},
                                                         {"score ", "(score % % %)"},
                                                         {"fullstate ", "(fullstate %)"}};
    for (int round = 0; round < 500; ++round) {
        auto const [text, row] = drawSenseBody(dice);
        ASSERT_EQ(row, heard(text)) << text;
        for (auto const& [kind, pattern] : patterns) {
            Written const message = dice.fill(pattern);
            ASSERT_EQ(kind + message.row, heard(message.text)) << message.text;
        }
    }
}

TEST_F(Kinds, SenseBodyNeedsAllGroups) {
    std::string const body = "(sense_body 1 (view_mode low wide) (stamina 8 1) (speed 0 -5) "
                             "(head_angle 9) (kick 1) (dash 2) (turn 3) (say 4) (turn_neck 5) "
                             "(catch 6) (move 7) (change_view 8)";
    EXPECT_TRUE(hears(body + ")"));
    EXPECT_TRUE(hears(body + " (arm (movable 0) (target 0 0)) (card none))")); // newer servers'
    EXPECT_FALSE(hears(body + " arm)"));
    EXPECT_FALSE(hears(std::string(body).insert(body.find("8)"), 1, '-') + ")"));
    for (auto open = body.find('(', 1); open != std::string::npos;
         open = body.find('(', open + 1)) {
        std::string without = body + ")";
        EXPECT_FALSE(hears(without.erase(open, body.find(')', open) + 1 - open))) << without;
    }
}

TEST_F(Kinds, EveryWordOfTheReferee) {
    // clang-format off
    std::array<std::string, 26> const modes = {
        "indirect_free_kick_", "before_kick_off", "time_over", "play_on", "kick_off_", "kick_in_",
        "free_kick_", "corner_kick_", "goal_kick_", "goal_", "drop_ball", "offside_",
        "penalty_kick_", "first_half_over", "pause", "human_judge", "foul_charge_", "foul_push_",
        "foul_multiple_attack_", "foul_ballout_", "back_pass_", "time_up", "time_up_without_a_team",
        "time_extended", "half_time", "goalie_catch_ball_"};
    // clang-format on
    for (std::string const own : {"l", "r"}) {
        std::string const other = own == "l" ? "r" : "l";
        ASSERT_TRUE(hears("(init " + own + " 3 before_kick_off)"));
        for (int number = 0; std::string const& text : modes) {
            bool const sided = text.back() == '_';
            int const expected = number == 0 ? 6 : number;
            EXPECT_EQ(sided ? mode(expected, 1) : mode(-1, 0), word(text + (sided ? own : "_l")));
            EXPECT_EQ(mode(expected, sided ? -1 : 0), word(text + (sided ? other : "")));
            ++number;
        }
        EXPECT_EQ(mode(26, 1), word("goal_" + own + "_12"));
        EXPECT_EQ(mode(26, -1), word("goal_" + other + "_2"));
    }
    for (std::string const text :
         {"free_kick_fault_l", "catch_fault_r", "yellow_card_l_3", "red_card_r_11", "goal_l_",
          "goal", "goal_l_x", "goal_lx2", "goal_2", "goal_c_2", "play_on_2", "kick_off_l_1",
          "foul_l", "_l", "l", "penalty_draw", "training Keepaway 1", "play_on play_on"}) {
        EXPECT_EQ(mode(-1, 0), word(text)) << text;
    }
    for (std::string const text : {"", "(play_on)", "\"play_on\""}) {
        EXPECT_EQ("dropped", word(text));
    }
}

TEST_F(Kinds, OwnSideComesFromInitOrReconnectAndSurvivesGarbage) {
    EXPECT_EQ(mode(4, -1), word("kick_off_l"));
    EXPECT_FALSE(hears("(reconnect l play_on)"));
    EXPECT_EQ(mode(4, 1), word("kick_off_l"));
    for (std::string const garbled :
         {"(init r 3 play_on", "(init r 3 play_on) x", "(init r 12 play_on)", "(init r 3)",
          "(init x 3 play_on)", "(reconnect r play_on", "(reconnect r)", "(init ok)"}) {
        EXPECT_FALSE(hears(garbled)) << garbled;
        EXPECT_EQ(mode(4, 1), word("kick_off_l")) << garbled;
    }
    EXPECT_EQ(row("init", -1, 11, 9, 1), heard("(init r 11 goal_r)"));
    EXPECT_EQ(mode(4, -1), word("kick_off_l"));
}

TEST_F(Kinds, SubstitutionErrorAndForeignSpeakers) {
    EXPECT_EQ(row("type", 4, 12), heard("(change_player_type 4 12)"));
    EXPECT_EQ(row("type", 11, -1), heard("(change_player_type 11)"));
    EXPECT_EQ(row("error", "no team with name X"), heard("(error no team with name X)"));
    EXPECT_EQ(row("coach", 7, "(freeform \"a) b\")"),
              heard("(hear 7 online_coach_right (freeform \"a) b\"))"));
    expectRefused("(hear ",
                  {R"(1 nobody "x")", "1 self x", "1 5 x", R"(self "x")", R"(1 self "x" y)",
                   R"(1 400 "x")", "1 coach x", "1 self \"\x01\""},
                  ")");
}

/// Holds on to the record itself.
struct Keeper : RCC_Handler<RCC_Pointer<RCC_Score>> {
    void handle(RCC_Pointer<RCC_Score> const& record) override { kept = record; }

    RCC_Pointer<RCC_Score> kept;
};

TEST(Parser, CallsEveryHandlerAndReusesARecordThatMayOutliveIt) {
    Keeper keeper;
    std::set<RCC_Object const*> records;
    {
        Listener listener;
        Recorder<RCC_Score> const second(listener.parser.scoreHandlers, listener.log);
        listener.parser.scoreHandlers.push_back(&keeper);
        for (char const* message : {"(score 1 2 3)", "(score 4 5 6)"}) {
            RCC_Object* const record = listener.parser.parse(RCC_String(message));
            EXPECT_EQ(keeper.kept.object(), record);
            records.insert(record);
            RCC_Memory::remove(record);
        }
        EXPECT_EQ(4, listener.log.calls);
        EXPECT_EQ(1U, records.size());
        listener.hears("(score 7 8 9) x"); // leaves the record alone
    }
    EXPECT_EQ(1, keeper.kept.object()->references());
    EXPECT_EQ(row("score", 4, 5, 6), Row::of(*keeper.kept));
}

} // namespace
