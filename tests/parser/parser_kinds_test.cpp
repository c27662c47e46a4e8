#include "Listener.h"
#include "Samples.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

TEST(SenseBody, ReadsEveryField) {
    Listener listener;
    ASSERT_TRUE(listener.hears(SENSE_BODY));
    RCC_SenseBody const& body = listener.senseBody.last;
    EXPECT_EQ(11, body.time);
    EXPECT_EQ(1, body.viewQuality);
    EXPECT_EQ(2, body.viewWidth);
    EXPECT_EQ(7984.8F, body.stamina);
    EXPECT_EQ(0.869186F, body.effort);
    EXPECT_EQ(0.16F, body.speed);
    EXPECT_EQ(-5.F, body.speedDirection.degrees());
    EXPECT_EQ(49.F, body.headAngle.degrees());
    EXPECT_EQ(1, body.kicks);
    EXPECT_EQ(32, body.dashes);
    EXPECT_EQ(5, body.turns);
    EXPECT_EQ(33, body.says);
    EXPECT_EQ(6, body.turnNecks);
    EXPECT_EQ(2, body.catches);
    EXPECT_EQ(3, body.moves);
    EXPECT_EQ(34, body.changeViews);
}

TEST(SenseBody, ToleratesNewerGroupsButNeedsTheKnownOnes) {
    Listener listener;
    std::string const message(SENSE_BODY.substr(0, SENSE_BODY.size() - 1));
    EXPECT_TRUE(listener.hears(message + " (arm (movable 0) (target 0 0)) (card none))"));
    EXPECT_EQ(34, listener.senseBody.last.changeViews);
    EXPECT_FALSE(listener.hears(message + " arm)"));

    std::string wide(SENSE_BODY);
    EXPECT_TRUE(listener.hears(wide.replace(wide.find("0.869186"), 8, "0.869186 130600")));
    for (std::string const group : {"(view_mode low wide) ", "(stamina 7984.8 0.869186) ",
                                    "(head_angle 49) ", "(turn 5) ", "(change_view 34)"}) {
        std::string without(SENSE_BODY);
        EXPECT_FALSE(listener.hears(without.erase(without.find(group), group.size()))) << group;
    }
}

/// What the words of a message from the referee become, `:` between mode and side.
std::string modeHeard(Listener& listener, std::string const& word) {
    if (!listener.hears("(hear 0 referee " + word + ")")) return "dropped";
    RCC_PlayMode const& mode = listener.refAudio.last.playMode;
    return std::to_string(mode.mode) + ":" + std::to_string(mode.side);
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

TEST(Referee, EveryWordForBothSides) {
    for (std::string const own : {"_l", "_r"}) {
        std::string const other = own == "_l" ? "_r" : "_l";
        Listener listener;
        ASSERT_TRUE(listener.hears("(init " + own.substr(1) + " 3 before_kick_off)"));
        for (auto const& [word, mode] : NEUTRAL_WORDS) {
            EXPECT_EQ(std::to_string(mode) + ":0", modeHeard(listener, word)) << word;
            EXPECT_EQ("-1:0", modeHeard(listener, word + "_l")) << word;
        }
        for (auto const& [word, mode] : SIDED_WORDS) {
            auto const number = std::to_string(mode);
            EXPECT_EQ(number + ":1", modeHeard(listener, word + own)) << word;
            EXPECT_EQ(number + ":-1", modeHeard(listener, word + other)) << word;
            EXPECT_EQ("-1:0", modeHeard(listener, word)) << word;
        }
        EXPECT_EQ("26:1", modeHeard(listener, "goal" + own + "_12"));
        EXPECT_EQ("26:-1", modeHeard(listener, "goal" + other + "_2"));
    }
}

TEST(Referee, OtherWordsAreHeardAsUnknown) {
    Listener listener;
    for (std::string const word :
         {"free_kick_fault_l", "catch_fault_r", "yellow_card_l_3", "red_card_r_11", "goal_l_",
          "goal_l_x", "goal_2", "goal_c_2", "play_on_2", "kick_off_l_1", "foul_l", "_l", "l",
          "penalty_draw", "training Keepaway 1", "play_on play_on"}) {
        EXPECT_EQ("-1:0", modeHeard(listener, word)) << word;
    }
    EXPECT_EQ("dropped", modeHeard(listener, ""));
    EXPECT_EQ("dropped", modeHeard(listener, "(play_on)"));
    EXPECT_EQ("dropped", modeHeard(listener, "\"play_on\""));
}

TEST(OwnSide, ComesFromInitOrReconnectAndSurvivesGarbage) {
    Listener listener;
    EXPECT_EQ("4:-1", modeHeard(listener, "kick_off_l"));
    EXPECT_FALSE(listener.hears("(reconnect l play_on)"));
    EXPECT_EQ("4:1", modeHeard(listener, "kick_off_l"));
    for (std::string const garbled :
         {"(init r 3 play_on", "(init r 3 play_on) x", "(init r 12 play_on)", "(init r 3)",
          "(init x 3 play_on)", "(reconnect r play_on", "(reconnect r)", "(init ok)"}) {
        EXPECT_FALSE(listener.hears(garbled)) << garbled;
        EXPECT_EQ("4:1", modeHeard(listener, "kick_off_l")) << garbled;
    }
    ASSERT_TRUE(listener.hears("(init r 11 goal_r)"));
    EXPECT_EQ(-1, listener.initMsg.last.side);
    EXPECT_EQ(11, listener.initMsg.last.unum);
    EXPECT_EQ(9, listener.initMsg.last.playMode.mode);
    EXPECT_EQ(1, listener.initMsg.last.playMode.side);
    EXPECT_EQ("4:-1", modeHeard(listener, "kick_off_l"));
}

TEST(Hear, TextsOfSelfPlayersAndCoaches) {
    Listener listener;
    ASSERT_TRUE(listener.hears(R"((hear 212 self "a(b).c+d"))"));
    EXPECT_EQ(212, listener.selfAudio.last.time);
    EXPECT_EQ("a(b).c+d", listener.selfAudio.last.text.view());

    ASSERT_TRUE(listener.hears(R"((hear 99 -154 ") m y1 2"))"));
    EXPECT_EQ(99, listener.playerAudio.last.time);
    EXPECT_EQ(-154.F, listener.playerAudio.last.direction.degrees());
    EXPECT_STREQ(") m y1 2", listener.playerAudio.last.text.c_str());

    ASSERT_TRUE(listener.hears(R"((hear 513 coach "trainer speaking"))"));
    EXPECT_EQ("trainer speaking", listener.coachAudio.last.text.view());
    ASSERT_TRUE(listener.hears(R"((hear 7 online_coach_right (freeform "hello) again")))"));
    EXPECT_EQ(7, listener.coachAudio.last.time);
    EXPECT_EQ(R"((freeform "hello) again"))", listener.coachAudio.last.text.view());
    ASSERT_TRUE(listener.hears("(hear 7 online_coach_left (unsupported_clang))"));
    EXPECT_EQ("(unsupported_clang)", listener.coachAudio.last.text.view());
}

TEST(Hear, LongTextsAreCutAndForeignSpeakersIgnored) {
    Listener listener;
    std::string const text(2000, 'y');
    ASSERT_TRUE(listener.hears("(hear 1 self \"" + text + "\")"));
    EXPECT_EQ(text.substr(0, 512), listener.selfAudio.last.text.view());
    for (std::string const message :
         {R"((hear 1 nobody "x"))", R"((hear 1 self x))", R"((hear 1 5 x))", R"((hear self "x"))",
          R"((hear 1 self "x" y))", R"((hear 1 400 "x"))", R"((hear 1 coach x))"}) {
        EXPECT_FALSE(listener.hears(message)) << message;
    }
}

TEST(Status, ScoreSubstitutionErrorAndFullState) {
    Listener listener;
    ASSERT_TRUE(listener.hears("(score 592 1 2)"));
    EXPECT_EQ(592, listener.score.last.time);
    EXPECT_EQ(1, listener.score.last.ours);
    EXPECT_EQ(2, listener.score.last.theirs);

    ASSERT_TRUE(listener.hears("(change_player_type 4 11)"));
    EXPECT_EQ(4, listener.substitution.last.unum);
    EXPECT_EQ(11, listener.substitution.last.type);
    ASSERT_TRUE(listener.hears("(change_player_type 11)"));
    EXPECT_EQ(-1, listener.substitution.last.type);

    ASSERT_TRUE(listener.hears("(error no team with name X)"));
    EXPECT_EQ("no team with name X", listener.error.last.text.view());

    ASSERT_TRUE(listener.hears(FULL_STATE));
    EXPECT_EQ(46, listener.fullState.last.time);
}

TEST(Parser, CallsEveryHandlerAndReusesTheRecord) {
    RCC_Parser parser(0, "", 0);
    Recorder<RCC_Score> first;
    Recorder<RCC_Score> second;
    parser.scoreHandlers = {&first, &second};
    RCC_Object* const once = parser.parse(RCC_String("(score 1 2 3)"));
    RCC_Memory::remove(once);
    RCC_Object* const again = parser.parse(RCC_String("(score 4 5 6)"));
    RCC_Memory::remove(again);
    EXPECT_EQ(once, again);
    EXPECT_EQ(2, first.calls);
    EXPECT_EQ(4, second.last.time);
}

TEST(Parser, ARecordThatIsStillHeldOutlivesTheParser) {
    RCC_Pointer<RCC_Object> held;
    {
        Listener listener;
        held = RCC_Pointer<RCC_Object>(listener.parser.parse(RCC_String(SEE)));
        RCC_Memory::remove(held.get());
    }
    EXPECT_EQ(1, held->references());
    EXPECT_EQ(432, dynamic_cast<RCC_Visual&>(*held).time);
}

} // namespace
