#pragma once

#include <iomanip>
#include <sstream>
#include <string>

#include "parser/RCC_Parser.h"

inline std::string row(auto const&... fields) {
    std::ostringstream text;
    text << std::setprecision(9); // tells any two floats apart
    ((text << fields << ' '), ...);
    return text.str();
}

/// Records as texts, all their fields in a row, to be compared as one.
struct Row {
    // clang-format off
    static std::string of(RCC_ServerParam const& /*compared field by field*/) { return ""; }
    static std::string of(RCC_PlayerParam const& /*compared field by field*/) { return ""; }
    static std::string of(RCC_PlayerType const& /*compared field by field*/) { return ""; }
    static std::string of(RCC_RefAudio const& a) { return row("referee", a.time, static_cast<int>(a.playMode.mode), a.playMode.side); }
    static std::string of(RCC_SelfAudio const& a) { return row("self", a.time, a.text.view()); }
    static std::string of(RCC_PlayerAudio const& a) { return row("player", a.time, a.direction.degrees(), a.text.view()); }
    static std::string of(RCC_CoachAudio const& a) { return row("coach", a.time, a.text.view()); }
    static std::string of(RCC_Score const& s) { return row("score", s.time, s.ours, s.theirs); }
    static std::string of(RCC_Substitution const& s) { return row("type", s.unum, s.type); }
    static std::string of(RCC_Error const& e) { return row("error", e.text.view()); }
    static std::string of(RCC_InitMsg const& i) { return row("init", i.side, i.unum, static_cast<int>(i.playMode.mode), i.playMode.side); }
    static std::string of(RCC_FullState const& f) { return row("fullstate", f.time); }
    // clang-format on

    static std::string of(RCC_SenseBody const& b) {
        return row("body", b.time, b.viewQuality, b.viewWidth, b.stamina, b.effort, b.speed,
                   b.speedDirection.degrees(), b.headAngle.degrees(), b.kicks, b.dashes, b.turns,
                   b.says, b.turnNecks, b.catches, b.moves, b.changeViews);
    }

    /// The objects kind by kind, as `flag 6 10 -30 inf inf `: kind, code or name, distance,
    /// direction, their changes, and for players body and head direction.
    static std::string of(RCC_Visual const& s) {
        return row("see", s.time) + objects("line", *s.lines) + objects("flag", *s.flags) +
               objects("goal", *s.goals) + objects("ally", *s.allies) +
               objects("enemy", *s.enemies) + objects("neut", *s.neuts) + objects("ball", *s.balls);
    }

private:
    template <typename T>
    static std::string objects(char const* kind, RCC_Container<T> const& seen) {
        std::string text;
        for (std::size_t i = 0; i < seen.size(); ++i) {
            T const& o = *seen[i];
            text += row(kind);
            if constexpr (requires { o.code; }) text += row(o.code);
            if constexpr (requires { o.name; }) {
                text += row(o.name.team.view(), o.name.unum, o.name.goalie);
            }
            text += row(o.distance, o.direction.degrees(), o.speed, o.speedDirection.degrees());
            if constexpr (requires { o.name; }) {
                text += row(o.bodyDirection.degrees(), o.headDirection.degrees());
            }
        }
        return text;
    }
};
