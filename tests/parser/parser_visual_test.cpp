#include "Listener.h"
#include "Samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

namespace {

/// Reads a landmark's code aloud: the digits are 2 top, 3 bottom, 4 left, 5 right, 6 centre,
/// 7 penalty area, 8 goal, and thousands are tens of metres along the outer row named last.
std::string nameOf(int code) {
    static std::string const LETTERS = "??tblrcpg";
    auto const letter = [&](int digit) {
        return std::string(" ") + LETTERS.at(static_cast<std::size_t>(digit % 10));
    };
    if (code >= 1000) {
        return "f" + letter(code) + letter(code / 10) + " " + std::to_string(code / 1000 * 10);
    }
    if (code >= 100) return "f" + letter(code) + letter(code / 10) + letter(code / 100);
    if (code % 10 == 8) return "g" + letter(code / 10);
    if (code == 6) return "f c";
    if (code >= 10) return "f" + letter(code) + letter(code / 10);
    return "f" + letter(code) + " 0";
}

std::set<int> landmarkCodes() {
    std::set<int> codes = {48, 58, 6, 26, 36, 24, 34, 25, 35, 2, 3, 4, 5};
    for (int const side : {40, 50}) {
        for (int const row : {207, 607, 307, 208, 308}) {
            codes.insert(row + side);
        }
        for (int tens = 1; tens <= 5; ++tens) {
            codes.insert({tens * 1000 + side + 2, tens * 1000 + side + 3});
        }
    }
    for (int const direction : {20, 30}) {
        for (int tens = 1; tens <= 3; ++tens) {
            codes.insert({tens * 1000 + direction + 4, tens * 1000 + direction + 5});
        }
    }
    return codes;
}

std::string seeOf(std::string const& objects) {
    return "(see 1 " + objects + ")";
}

template <class T>
std::vector<int> codesOf(RCC_Pointer<RCC_Container<T>> const& seen) {
    std::vector<int> codes;
    for (std::size_t i = 0; i < seen->size(); ++i) {
        codes.push_back((*seen)[i]->code);
    }
    return codes;
}

TEST(Visual, KnowsEveryLandmark) {
    std::set<int> const codes = landmarkCodes();
    ASSERT_EQ(55U, codes.size());
    Listener listener;
    for (int const code : codes) {
        ASSERT_TRUE(listener.hears(seeOf("((" + nameOf(code) + ") 10 20)"))) << nameOf(code);
        bool const goal = code == 48 || code == 58;
        std::vector<int> const expected = {code};
        EXPECT_EQ(expected,
                  codesOf(goal ? listener.visual.last.goals : listener.visual.last.flags));
        EXPECT_EQ(1U, listener.visual.last.goals->size() + listener.visual.last.flags->size());
    }
}

TEST(Visual, KnowsLinesAndWhatIsCloseBy) {
    Listener listener;
    ASSERT_TRUE(listener.hears(seeOf("((l t) 1 2) ((l b) 1 2) ((l l) 1 2) ((l r) 1 2) ((F) 1 9) "
                                     "((G) 2.5 -8) ((B) 0.9 100) ((P) 0.6 109)")));
    RCC_Visual const& see = listener.visual.last;
    EXPECT_EQ((std::vector{2, 3, 4, 5}), codesOf(see.lines));
    EXPECT_EQ(std::vector{1}, codesOf(see.flags));
    EXPECT_EQ(std::vector{1}, codesOf(see.goals));
    EXPECT_EQ(1U, see.neuts->size());
    ASSERT_EQ(1U, see.balls->size());
    EXPECT_EQ(0.9F, (*see.balls)[0]->distance);
    EXPECT_EQ(100.F, (*see.balls)[0]->direction.degrees());
    EXPECT_FALSE((*see.balls)[0]->hasSpeed());
}

TEST(Visual, SortsWhatItSees) {
    Listener listener;
    ASSERT_TRUE(listener.hears(SEE));
    RCC_Visual const& see = listener.visual.last;
    EXPECT_EQ(432, see.time);
    EXPECT_EQ((std::vector{6, 25, 357, 3034, 1}), codesOf(see.flags));
    EXPECT_EQ(std::vector{58}, codesOf(see.goals));
    EXPECT_EQ(std::vector{2}, codesOf(see.lines));
    EXPECT_EQ(2U, see.neuts->size());

    ASSERT_EQ(2U, see.allies->size());
    RCC_Player const& ally = *(*see.allies)[0];
    EXPECT_EQ("Alpha", ally.name.team.view());
    EXPECT_EQ(2, ally.name.unum);
    EXPECT_FALSE(ally.name.goalie);
    EXPECT_EQ(6.7F, ally.distance);
    EXPECT_EQ(-61.F, ally.direction.degrees());
    EXPECT_EQ(-0.134F, ally.speed);
    EXPECT_EQ(-2.F, ally.speedDirection.degrees());
    EXPECT_EQ(146.F, ally.bodyDirection.degrees());
    EXPECT_EQ(-146.F, ally.headDirection.degrees());
    EXPECT_EQ(0, (*see.allies)[1]->name.unum);
    EXPECT_TRUE((*see.allies)[1]->bodyDirection.isAbsent());

    ASSERT_EQ(2U, see.enemies->size());
    EXPECT_TRUE((*see.enemies)[0]->name.goalie);
    EXPECT_EQ(1, (*see.enemies)[0]->name.unum);
    EXPECT_FALSE((*see.enemies)[1]->name.goalie);

    RCC_SeenObject const& centre = *(*see.flags)[0];
    EXPECT_TRUE(centre.hasSpeed());
    EXPECT_TRUE(std::signbit(centre.speed));
    EXPECT_EQ(0.F, centre.speed);
}

TEST(Visual, ForgetsThePreviousSee) {
    Listener listener;
    ASSERT_TRUE(listener.hears(SEE));
    ASSERT_TRUE(listener.hears("(see 433)"));
    RCC_Visual const& see = listener.visual.last;
    EXPECT_EQ(433, see.time);
    EXPECT_EQ(0U, see.lines->size() + see.flags->size() + see.goals->size() + see.allies->size() +
                      see.enemies->size() + see.neuts->size() + see.balls->size());
    ASSERT_TRUE(listener.hears(seeOf(R"(((p "Alpha" 3) 5))")));
    RCC_Player const& player = *(*see.allies)[0];
    EXPECT_EQ(5.F, player.direction.degrees());
    EXPECT_FALSE(player.hasDistance());
    EXPECT_FALSE(player.hasSpeed());
    EXPECT_TRUE(player.bodyDirection.isAbsent());
}

TEST(Visual, TeamIsComparedWhole) {
    Listener listener;
    ASSERT_TRUE(listener.hears(seeOf(R"#(((p "Alpha-2" 3) 5) ((p "Alph" 3) 5) ((p "A (b)") 1))#")));
    EXPECT_EQ(3U, listener.visual.last.enemies->size());
    EXPECT_EQ("A (b)", (*listener.visual.last.enemies)[2]->name.team.view());
}

TEST(Visual, ToleratesMarksOfNewerServers) {
    Listener listener;
    std::string const player = R"(((p "Beta" 3) 20 5 0 0 10 20)";
    for (std::string const marks : {"", " t", " k", " 30", " -30 t", " f"}) {
        EXPECT_TRUE(listener.hears(seeOf(player + marks + ")"))) << marks;
    }
    for (std::string const marks : {" x", " t 30", " 30 40", " (t)", " \"t\"", " 999"}) {
        EXPECT_FALSE(listener.hears(seeOf(player + marks + ")"))) << marks;
    }
}

TEST(Visual, RefusesWhatNoServerSends) {
    Listener listener;
    for (std::string const object : {"((f z) 1 2)",
                                     "((f t l 60) 1 2)",
                                     "((f t l 500) 1 2)",
                                     "((f  c) 1 2)",
                                     "((g) 1 2)",
                                     "((x) 1 2)",
                                     "((b) 1 2 3)",
                                     "((b) 1 2 3 4 5)",
                                     "((b))",
                                     "((b) )",
                                     "((b) 1 2 3 4 5 6)",
                                     "((b) -1 2)",
                                     "((b) 1 361)",
                                     "((b) 1 x)",
                                     "((b) 1 2",
                                     "(b 1 2)",
                                     "((p \"Alpha\" 0) 1 2)",
                                     "((p \"Alpha\" 12) 1 2)",
                                     "((p \"Alpha\" 1.5) 1 2)",
                                     "((p \"Alpha\" 1 coach) 1 2)",
                                     "((p \"\" 1) 1 2)",
                                     "((p Alpha 1) 1 2)",
                                     "((P \"Alpha\") 1 2)",
                                     "((pp) 1 2)",
                                     "((p \"Alpha\" 1) 1 2 3 4 5)",
                                     "()",
                                     "(())",
                                     "x"}) {
        EXPECT_FALSE(listener.hears(seeOf(object))) << object;
    }
    EXPECT_FALSE(listener.hears("(see)"));
    EXPECT_FALSE(listener.hears("(see -1)"));
    EXPECT_FALSE(listener.hears("(see 1.5)"));
    EXPECT_FALSE(listener.hears("(see 3000000000)"));
}

TEST(Visual, DropsASeeWithTooManyObjectsOfOneKind) {
    Listener listener;
    std::string players;
    for (std::size_t i = 0; i < RCC_Visual::MAX_OBJECTS; ++i) {
        players += "((p) 1 2) ";
    }
    EXPECT_TRUE(listener.hears(seeOf(players + "((b) 1 2)")));
    EXPECT_EQ(RCC_Visual::MAX_OBJECTS, listener.visual.last.neuts->size());
    EXPECT_FALSE(listener.hears(seeOf(players + "((p) 1 2)")));
    EXPECT_EQ(1, listener.visual.calls);
}

} // namespace
