#pragma once

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "tests/parser/Listener.h"

// Messages drawn at random in the forms that a server writes, each with the row of its record. A
// pattern is a message with signs in the places of its values (see Dice::fill), so that for example
//
//     dice.fill("(hear % # $)")
//
// may give the text `(hear 4711 -35.25 "pass")` and the row `4711 -35.25 pass `. Rows.h tells how
// a record becomes such a row.

/// A message, and the row that its record must have.
struct Written {
    std::string text;
    std::string row;
};

/// Always draws the same for one seed.
class Dice {
public:
    explicit Dice(unsigned seed) : random_(seed) {}

    int upTo(int most) { return static_cast<int>(random_() % (static_cast<unsigned>(most) + 1)); }
    bool oneIn(int number) { return upTo(number - 1) == 0; }
    auto const& of(auto const& choice) { return choice[random_() % std::size(choice)]; }

    /// A number between low and 360.
    std::string number(int low) {
        std::string const whole = std::to_string(low + upTo(359 - low));
        return of(std::array{whole, whole + "." + std::to_string(upTo(999)), std::string("-0"),
                             whole + "e-0" + std::to_string(upTo(6))});
    }

    std::string text(int length) {
        std::string said(static_cast<std::size_t>(length), ' ');
        std::ranges::generate(said, [&] { return static_cast<char>(' ' + upTo('~' - ' ')); });
        std::ranges::replace(said, '"', ')');
        return said;
    }

    /// Fills in whole numbers for %, numbers for #, or + when not negative, and quoted texts for $,
    /// of which 512 characters are kept.
    Written fill(std::string_view pattern) {
        Written message;
        for (char const c : pattern) {
            std::string const value = c == '%'               ? std::to_string(upTo(6000))
                                      : c == '#' || c == '+' ? number(c == '#' ? -359 : 0)
                                      : c == '$' ? text(oneIn(4) ? 510 + upTo(5) : upTo(20))
                                                 : std::string(1, c);
            message.text += c == '$' ? '"' + value + '"' : value;
            if (c == '%' || c == '$') message.row += row(value.substr(0, 512));
            if (c == '#' || c == '+') message.row += row(std::strtof(value.c_str(), nullptr));
        }
        return message;
    }

private:
    std::mt19937 random_;
};

// clang-format off
constexpr std::array FLAGS = {
    6, 26, 36, 24, 34, 25, 35, 247, 647, 347, 257, 657, 357, 248, 348, 258, 358,
    2, 1042, 2042, 3042, 4042, 5042, 1052, 2052, 3052, 4052, 5052,
    3, 1043, 2043, 3043, 4043, 5043, 1053, 2053, 3053, 4053, 5053,
    4, 1024, 2024, 3024, 1034, 2034, 3034,  5, 1025, 2025, 3025, 1035, 2035, 3035,
};
// clang-format on

/// The name that the code of a line, a flag or a goal stands for, read from its last digit on.
/// RCC_Flag tells what the digits mean.
inline std::string nameOf(std::string const& kind, int code) {
    std::string name = kind.substr(0, 1);
    for (int digits = kind == "goal" ? code / 10 : code % 1000; digits > 0; digits /= 10) {
        if (digits % 10 != 0) name.append(" ").append(1, "  tblrcpg"[digits % 10]);
    }
    if (code >= 1000) name.append(" ").append(std::to_string(code / 1000)).append("0");
    return kind == "flag" && code < 6 ? name + " 0" : name;
}

/// The name of something in a see, and its part of the row.
inline Written drawObject(Dice& dice, std::string const& kind, std::string const& ownTeam) {
    if (kind == "ball") return {dice.oneIn(2) ? "b" : "B", ""};
    if (kind == "neut") return {dice.oneIn(2) ? "p" : "P", row("", 0, 0)};
    if (kind == "ally" || kind == "enemy") {
        std::string const team =
            kind == "ally" ? ownTeam
                           : dice.of(std::array<std::string, 4>{ownTeam + "x", ownTeam.substr(1),
                                                                "A (b)", std::string(40, 'y')});
        int const unum = dice.upTo(11);
        bool const goalie = unum > 0 && dice.oneIn(4);
        std::string name = "p \"" + team + "\"";
        if (unum > 0) name.append(" ").append(std::to_string(unum));
        return {name + (goalie ? " goalie" : ""), row(team.substr(0, 31), unum, goalie)};
    }
    if (kind != "line" && dice.oneIn(9)) return {kind == "flag" ? "F" : "G", "1 "};
    int const code = kind == "line"   ? 2 + dice.upTo(3)
                     : kind == "goal" ? 48 + 10 * dice.upTo(1)
                                      : dice.of(FLAGS);
    return {nameOf(kind, code), row(code)};
}

inline Written drawSee(Dice& dice, std::string const& ownTeam = "Alpha") {
    auto see = dice.fill("%");
    for (std::string const kind : {"line", "flag", "goal", "ally", "enemy", "neut", "ball"}) {
        bool const player = kind == "ally" || kind == "enemy" || kind == "neut";
        for (int i = dice.upTo(9); i > 0; --i) {
            auto const object = drawObject(dice, kind, ownTeam);
            auto const form = static_cast<std::size_t>(dice.upTo(2));
            auto const values = dice.fill(std::array{"#", "+ #", "+ # # #"}[form]);
            auto const facing = dice.fill(player && form == 2 ? " # #" : "");
            char const* const marks = dice.of(std::array{"", " t", " f", " 30", " -30 k"});
            see.text.append(" ((").append(object.text).append(") ").append(values.text);
            see.text.append(facing.text).append(facing.row.empty() ? "" : marks).append(")");
            std::string const absent = form < 2 ? "inf inf " : "";
            see.row.append(kind).append(" ").append(object.row).append(form == 0 ? "inf " : "");
            see.row.append(values.row).append(absent).append(player ? absent + facing.row : "");
        }
    }
    return {"(see " + see.text + ")", "see " + see.row};
}

inline Written drawSenseBody(Dice& dice) {
    auto const time = dice.fill("(sense_body % (view_mode ");
    auto const quality = static_cast<std::size_t>(dice.upTo(1));
    auto const width = static_cast<std::size_t>(dice.upTo(2));
    auto const rest =
        dice.fill(") (stamina # #) (speed # #) (head_angle #) (kick %) (dash %) "
                  "(turn %) (say %) (turn_neck %) (catch %) (move %) (change_view %))");
    return {time.text + std::array{"high ", "low "}[quality] +
                std::array{"narrow", "normal", "wide"}[width] + rest.text,
            "body " + time.row + row(quality, width) + rest.row};
}

/// What an ordinary match brings, one at least of each kind that has a handler.
inline std::vector<std::string> samples(Dice& dice) {
    std::vector<std::string> messages = {drawSee(dice).text, drawSenseBody(dice).text};
    for (char const* pattern :
         {"(hear % self $)", "(hear % # $)", "(hear % coach $)", "(hear % referee goal_l_%)",
          "(hear % online_coach_left (freeform $))", "(score % % %)", "(change_player_type 4 %)",
          "(error too_many_moves)", "(init l 1 play_on)",
          "(fullstate % (ball # # # #) (l_1 # #))"}) {
        messages.push_back(dice.fill(pattern).text);
    }
    messages.push_back("(server_param" + numbersFrom(1, 103) + ")");
    messages.push_back("(player_param" + numbersFrom(1, 19) + ")");
    messages.push_back("(player_type" + numbersFrom(1, 12) + ")");
    return messages;
}
