#include "Listener.h"
#include "Samples.h"

#include <map>
#include <string>
#include <vector>

namespace {

struct Referee : Listening {
    /// What the words of a message from the referee become, `:` between mode and side.
    std::string modeHeard(std::string const& words) {
        if (!hears("(hear 0 referee " + words + ")")) return "dropped";
        RCC_PlayMode const& mode = refAudio.last.playMode;
        return std::to_string(mode.mode) + ":" + std::to_string(mode.side);
    }
};

using Kinds = Listening;

TEST_F(Kinds, SenseBodyReadsEveryField) {
    ASSERT_TRUE(hears(SENSE_BODY));
    RCC_SenseBody const& body = senseBody.last;
    EXPECT_EQ(11, body.time);
    EXPECT_EQ(1, body.viewQuality);
    EXPECT_EQ(2, body.viewWidth);
    EXPECT_EQ(7984.8F, body.stamina);
    EXPECT_EQ(0.869186F, body.effort);
    EXPECT_EQ(0.16F, body.speed);
    EXPECT_EQ(-5.F, body.speedDirection.degrees());
    EXPECT_EQ(49.F, body.headAngle.degrees());
    EXPECT_EQ((std::vector{1, 32, 5, 33, 6, 2, 3, 34}),
              (std::vector{body.kicks, body.dashes, body.turns, body.says, body.turnNecks,
                           body.catches, body.moves, body.changeViews}));
}

TEST_F(Kinds, SenseBodyToleratesNewerGroupsButNeedsTheKnownOnes) {
    std::string const message(SENSE_BODY.substr(0, SENSE_BODY.size() - 1));
    EXPECT_TRUE(hears(message + " (arm (movable 0) (target 0 0)) (card none))"));
    EXPECT_FALSE(hears(message + " arm)"));

    std::string wide(SENSE_BODY);
    EXPECT_TRUE(hears(wide.replace(wide.find("0.869186"), 8, "0.869186 130600")));
    for (std::string const group : {"(view_mode low wide) ", "(stamina 7984.8 0.869186) ",
                                    "(head_angle 49) ", "(turn 5) ", "(change_view 34)"}) {
        std::string without(SENSE_BODY);
        EXPECT_FALSE(hears(without.erase(without.find(group), group.size()))) << group;
    }
}

// clang-format off
std::map<std::string, int> const NEUTRAL_WORDS = {
    {"before_kick_off", 1}, {"time_over", 2}, {"play_on", 3}, {"drop_ball", 10},
    {"first_half_over", 13}, {"pause", 14}, {"human_judge", 15}, {"time_up", 21},
    {"time_up_without_a_team", 22}, {"time_extended", 23}, {"half_time", 24},
};
std::map<std::string, int> const SIDED_WORDS = {
    {"kick_off", 4}, {"kick_in", 5}, {"free_kick", 6}, {"indirect_free_kick", 6},
    {"corner_kick", 7}, {"goal_kick", 8}, {"goal", 9}, {"offside", 11}, {"penalty_kick", 12},
    {"foul_charge", 16}, {"foul_push", 17}, {"foul_multiple_attack", 18}, {"foul_ballout", 19},
    {"back_pass", 20}, {"goalie_catch_ball", 25},
};
// clang-format on

TEST_F(Referee, EveryWordForBothSides) {
    for (std::string const own : {"_l", "_r"}) {
        std::string const other = own == "_l" ? "_r" : "_l";
        ASSERT_TRUE(hears("(init " + own.substr(1) + " 3 before_kick_off)"));
        for (auto const& [word, mode] : NEUTRAL_WORDS) {
            EXPECT_EQ(std::to_string(mode) + ":0", modeHeard(word)) << word;
            EXPECT_EQ("-1:0", modeHeard(word + "_l")) << word;
        }
        for (auto const& [word, mode] : SIDED_WORDS) {
            auto const number = std::to_string(mode);
            EXPECT_EQ(number + ":1", modeHeard(word + own)) << word;
            EXPECT_EQ(number + ":-1", modeHeard(word + other)) << word;
            EXPECT_EQ("-1:0", modeHeard(word)) << word;
        }
        EXPECT_EQ("26:1", modeHeard("goal" + own + "_12"));
        EXPECT_EQ("26:-1", modeHeard("goal" + other + "_2"));
    }
}

TEST_F(Referee, OtherWordsAreHeardAsUnknown) {
    for (std::string const word :
         {"free_kick_fault_l", "catch_fault_r", "yellow_card_l_3", "red_card_r_11", "goal_l_",
          "goal_l_x", "goal_lx2", "goal_2", "goal_c_2", "play_on_2", "kick_off_l_1", "foul_l", "_l",
          "l", "penalty_draw", "training Keepaway 1", "play_on play_on"}) {
        EXPECT_EQ("-1:0", modeHeard(word)) << word;
    }
    EXPECT_EQ("dropped", modeHeard(""));
    EXPECT_EQ("dropped", modeHeard("(play_on)"));
    EXPECT_EQ("dropped", modeHeard("\"play_on\""));
}

TEST_F(Referee, OwnSideComesFromInitOrReconnectAndSurvivesGarbage) {
    EXPECT_EQ("4:-1", modeHeard("kick_off_l"));
    EXPECT_FALSE(hears("(reconnect l play_on)"));
    EXPECT_EQ("4:1", modeHeard("kick_off_l"));
    for (std::string const garbled :
         {"(init r 3 play_on", "(init r 3 play_on) x", "(init r 12 play_on)", "(init r 3)",
          "(init x 3 play_on)", "(reconnect r play_on", "(reconnect r)", "(init ok)"}) {
        EXPECT_FALSE(hears(garbled)) << garbled;
        EXPECT_EQ("4:1", modeHeard("kick_off_l")) << garbled;
    }
    ASSERT_TRUE(hears("(init r 11 goal_r)"));
    EXPECT_EQ(-1, initMsg.last.side);
    EXPECT_EQ(11, initMsg.last.unum);
    EXPECT_EQ(9, initMsg.last.playMode.mode);
    EXPECT_EQ(1, initMsg.last.playMode.side);
    EXPECT_EQ("4:-1", modeHeard("kick_off_l"));
}

TEST_F(Kinds, TextsOfSelfPlayersAndCoaches) {
    ASSERT_TRUE(hears(R"((hear 212 self "a(b).c+d"))"));
    EXPECT_EQ(212, selfAudio.last.time);
    EXPECT_EQ("a(b).c+d", selfAudio.last.text.view());

    ASSERT_TRUE(hears(R"((hear 99 -154 ") m y1 2"))"));
    EXPECT_EQ(99, playerAudio.last.time);
    EXPECT_EQ(-154.F, playerAudio.last.direction.degrees());
    EXPECT_EQ(") m y1 2", playerAudio.last.text.view());

    std::pair<std::string, std::string> const coaches[] = {
        {R"(coach "trainer speaking")", "trainer speaking"},
        {R"(online_coach_right (freeform "hello) again"))", R"((freeform "hello) again"))"},
        {"online_coach_left (unsupported_clang)", "(unsupported_clang)"},
    };
    for (auto const& [said, text] : coaches) {
        ASSERT_TRUE(hears("(hear 7 " + said + ")")) << said;
        EXPECT_EQ(7, coachAudio.last.time);
        EXPECT_EQ(text, coachAudio.last.text.view());
    }
}

TEST_F(Kinds, LongTextsAreCutAndForeignSpeakersIgnored) {
    std::string const text(2000, 'y');
    ASSERT_TRUE(hears("(hear 1 self \"" + text + "\")"));
    EXPECT_EQ(text.substr(0, 512), selfAudio.last.text.view());
    expectRefused("(hear ",
                  {R"(1 nobody "x")", "1 self x", "1 5 x", R"(self "x")", R"(1 self "x" y)",
                   R"(1 400 "x")", "1 coach x"},
                  ")");
}

TEST_F(Kinds, ScoreSubstitutionErrorAndFullState) {
    ASSERT_TRUE(hears("(score 592 1 2)"));
    EXPECT_EQ(592, score.last.time);
    EXPECT_EQ(1, score.last.ours);
    EXPECT_EQ(2, score.last.theirs);

    ASSERT_TRUE(hears("(change_player_type 4 11)"));
    EXPECT_EQ(4, substitution.last.unum);
    EXPECT_EQ(11, substitution.last.type);
    ASSERT_TRUE(hears("(change_player_type 11)"));
    EXPECT_EQ(-1, substitution.last.type);

    ASSERT_TRUE(hears("(error no team with name X)"));
    EXPECT_EQ("no team with name X", error.last.text.view());

    ASSERT_TRUE(hears(FULL_STATE));
    EXPECT_EQ(46, fullState.last.time);
}

TEST(Parser, CallsEveryHandlerAndReusesARecordThatMayOutliveIt) {
    RCC_Pointer<RCC_Object> held;
    {
        Listener listener;
        int calls = 0;
        Recorder<RCC_Score> const second(listener.parser.scoreHandlers, calls);
        held = RCC_Pointer<RCC_Object>(listener.parser.parse(RCC_String("(score 1 2 3)")));
        RCC_Memory::remove(held.get());
        RCC_Object* const again = listener.parser.parse(RCC_String("(score 4 5 6)"));
        RCC_Memory::remove(again);
        EXPECT_EQ(held.get(), again);
        EXPECT_EQ(2, listener.score.calls);
        EXPECT_EQ(4, second.last.time);
        EXPECT_FALSE(listener.hears("(score 7 8 9) x")); // leaves the record alone
    }
    EXPECT_EQ(1, held->references());
    EXPECT_EQ(4, dynamic_cast<RCC_Score&>(*held).time);
}

} // namespace
