#include "Listener.h"
#include "Samples.h"

#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace {

struct Visual : Listening {
    bool hearsObjects(std::string const& objects) { return hears("(see 1 " + objects + ")"); }

    RCC_Visual const& see = visual.last;
};

/// The names of the 55 landmarks, composed like their codes: the digits are 2 top, 3 bottom,
/// 4 left, 5 right, 6 centre, 7 penalty area, 8 goal, and thousands are tens of metres along the
/// outer row that a name begins with.
std::map<std::string, int> landmarks() {
    std::map<std::string, int> codes = {{"f c", 6}};
    for (auto const& [side, s] : {std::pair(" l", 4), std::pair(" r", 5)}) {
        codes[std::string("g") + side] = s * 10 + 8;
        codes[std::string("f") + side + " 0"] = s;
        codes[std::string("f p") + side + " c"] = 607 + s * 10;
        for (auto const& [row, r] : {std::pair(" t", 2), std::pair(" b", 3)}) {
            codes[std::string("f") + row + " 0"] = r;
            codes[std::string("f c") + row] = r * 10 + 6;
            codes[std::string("f") + side + row] = r * 10 + s;
            codes[std::string("f p") + side + row] = r * 100 + s * 10 + 7;
            codes[std::string("f g") + side + row] = r * 100 + s * 10 + 8;
            for (int tens = 1; tens <= 5; ++tens) {
                std::string const metres = std::string(" ") + std::to_string(tens * 10);
                codes[std::string("f") + row + side + metres] = tens * 1000 + s * 10 + r;
                if (tens <= 3)
                    codes[std::string("f") + side + row + metres] = tens * 1000 + r * 10 + s;
            }
        }
    }
    return codes;
}

template <class T>
std::vector<int> codesOf(RCC_Pointer<RCC_Container<T>> const& seen) {
    std::vector<int> codes;
    for (std::size_t i = 0; i < seen->size(); ++i) {
        codes.push_back((*seen)[i]->code);
    }
    return codes;
}

TEST_F(Visual, KnowsEveryLandmark) {
    ASSERT_EQ(55U, landmarks().size());
    for (auto const& [name, code] : landmarks()) {
        ASSERT_TRUE(hearsObjects("((" + name + ") 10 20)")) << name;
        bool const goal = name.starts_with("g");
        EXPECT_EQ(std::vector{code}, codesOf(goal ? see.goals : see.flags)) << name;
        EXPECT_EQ(1U, see.goals->size() + see.flags->size());
    }
}

TEST_F(Visual, KnowsLinesAndWhatIsCloseBy) {
    ASSERT_TRUE(hearsObjects("((l t) 1 2) ((l b) 1 2) ((l l) 1 2) ((l r) 1 2) ((F) 1 9) "
                             "((G) 2.5 -8) ((B) 0.9 100) ((P) 0.6 109)"));
    EXPECT_EQ((std::vector{2, 3, 4, 5}), codesOf(see.lines));
    EXPECT_EQ(std::vector{1}, codesOf(see.flags));
    EXPECT_EQ(std::vector{1}, codesOf(see.goals));
    EXPECT_EQ(1U, see.neuts->size());
    ASSERT_EQ(1U, see.balls->size());
    EXPECT_EQ(0.9F, (*see.balls)[0]->distance);
    EXPECT_EQ(100.F, (*see.balls)[0]->direction.degrees());
    EXPECT_FALSE((*see.balls)[0]->hasSpeed());
}

TEST_F(Visual, SortsWhatItSees) {
    ASSERT_TRUE(hears(SEE));
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
    EXPECT_EQ((std::vector{6.7F, -61.F, -0.134F, -2.F, 146.F, -146.F}),
              (std::vector{ally.distance, ally.direction.degrees(), ally.speed,
                           ally.speedDirection.degrees(), ally.bodyDirection.degrees(),
                           ally.headDirection.degrees()}));
    EXPECT_EQ(0, (*see.allies)[1]->name.unum);
    EXPECT_TRUE((*see.allies)[1]->bodyDirection.isAbsent());

    ASSERT_EQ(2U, see.enemies->size());
    EXPECT_TRUE((*see.enemies)[0]->name.goalie);
    EXPECT_EQ(1, (*see.enemies)[0]->name.unum);
    EXPECT_FALSE((*see.enemies)[1]->name.goalie);

    RCC_SeenObject const& centre = *(*see.flags)[0];
    EXPECT_TRUE(centre.hasSpeed());
    EXPECT_TRUE(std::signbit(centre.speed)); // -0
}

TEST_F(Visual, ForgetsThePreviousSee) {
    ASSERT_TRUE(hears(SEE));
    ASSERT_TRUE(hearsObjects(R"(((p "Alpha" 3) 5))"));
    EXPECT_EQ(0U, see.lines->size() + see.flags->size() + see.goals->size() + see.enemies->size() +
                      see.neuts->size() + see.balls->size());
    ASSERT_EQ(1U, see.allies->size());
    RCC_Player const& player = *(*see.allies)[0];
    EXPECT_EQ(5.F, player.direction.degrees());
    EXPECT_FALSE(player.hasDistance() || player.hasSpeed());
    EXPECT_TRUE(player.bodyDirection.isAbsent());
    ASSERT_TRUE(hears("(see 433)"));
    EXPECT_EQ(0U, see.allies->size());
}

TEST_F(Visual, TeamIsComparedWhole) {
    parser.teamName = "Alph";
    ASSERT_TRUE(hearsObjects(R"#(((p "Alpha" 3) 5) ((p "Alph" 3) 5) ((p "A (b)") 1))#"));
    EXPECT_EQ(1U, see.allies->size());
    ASSERT_EQ(2U, see.enemies->size());
    EXPECT_EQ("A (b)", (*see.enemies)[1]->name.team.view());
}

TEST_F(Visual, ToleratesMarksOfNewerServers) {
    std::string const player = R"(((p "Beta" 3) 20 5 0 0 10 20)";
    for (std::string const marks : {"", " t", " k", " 30", " -30 t", " f"}) {
        EXPECT_TRUE(hearsObjects(player + marks + ")")) << marks;
    }
    expectRefused("(see 1 " + player, {" x", " t 30", " 30 40", " (t)", " \"t\"", " 999"}, "))");
}

TEST_F(Visual, RefusesWhatNoServerSends) {
    expectRefused("(see 1 ((",
                  {"f z", "f t l 60", "f t l 500", "xf t l 10", "f  c", "g", "x", R"(p "Alpha" 0)",
                   R"(p "Alpha" 12)", R"(p "Alpha" 1.5)", R"(p "Alpha" 1 coach)", R"(p "" 1)",
                   "p Alpha 1", R"(P "Alpha")", "pp"},
                  ") 1 2))");
    expectRefused(
        "(see 1 ((b)",
        {"", " ", " 1 2 3", " 1 2 3 4 5", " 1 2 3 4 5 6", " -1 2", " 1-2", " 1 361", " 1 x"}, "))");
    expectRefused("(see 1 ",
                  {"((b) 1 2", "(b 1 2)", "((p \"Alpha\" 1) 1 2 3 4 5)", "()", "(())", "x"}, ")");
    expectRefused("(see ", {"", "-1", "1.5", "3000000000"}, ")");
}

TEST_F(Visual, DropsASeeWithTooManyObjectsOfOneKind) {
    std::string players;
    for (std::size_t i = 0; i < RCC_Visual::MAX_OBJECTS; ++i) {
        players += "((p) 1 2) ";
    }
    EXPECT_TRUE(hearsObjects(players + "((b) 1 2)"));
    EXPECT_EQ(RCC_Visual::MAX_OBJECTS, see.neuts->size());
    EXPECT_FALSE(hearsObjects(players + "((p) 1 2)"));
}

} // namespace
