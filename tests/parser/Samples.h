#pragma once

#include <array>
#include <string_view>

// Messages as a server sends them, one at least of each kind that has a handler.

inline constexpr std::string_view SEE =
    R"((see 432 ((f c) 32.8 -11 -0 0.3) ((f r t) 80.6 35) ((f p r b) 32.1 68 -0 0.4) ((g r) 56.3 56) )"
    R"(((f l b 30) 64.1 -88) ((b) 18.2 1 0.364 -0.1) ((p) 66.7 -60) )"
    R"(((p "Alpha" 2) 6.7 -61 -0.134 -2 146 -146) ((p "Alpha") 49.4 -33) ((P) 2.2 172) )"
    R"(((p "Beta" 1 goalie) 16.4 20 0 0 -171 -101) ((p "Beta") 40.4 19) ((F) 2.2 135) ((l t) 66 -90)))";

inline constexpr std::string_view SENSE_BODY =
    "(sense_body 11 (view_mode low wide) (stamina 7984.8 0.869186) (speed 0.16 -5) "
    "(head_angle 49) (kick 1) (dash 32) (turn 5) (say 33) (turn_neck 6) (catch 2) (move 3) "
    "(change_view 34))";

inline constexpr std::string_view SERVER_PARAM =
    "(server_param 14.02 5 0.3 0.4 0.1 60 1.05 1 8000 45 1 0.3 0.5 0.002 1 0.3 0.6 0.005 0.6 0.01 "
    "0.1 0 1 1 1 1 0.085 0.94 0.05 0.2 3 2.7 0.006 0.027 0.7 2 1.7 100 -100 180 -180 180 -180 90 "
    "-90 90 3 0 0 0 0 1.085 1.2 1 1 2 1 2.5 0 0 128 128 300 1 1 1 1 50 1 300 100 150 10 100 300 "
    "10 1 1 1 5 1 1 1 9.15 50 0.1 0.01 -1 -1 -1 -1 -1 -1 -1 0 1 0 100 0 0 0 0 100)";

inline constexpr std::string_view PLAYER_PARAM =
    "(player_param 18 3 1 0 0 0 -0.1 0.1 25 0 0 -100 -0.1 0.1 1 0 50 -0.004 -0.004)";

inline constexpr std::string_view PLAYER_TYPE =
    "(player_type 1 1.05 44.7997 0.452631 6.31578 0.00603338 0.3 0.619472 0.0194722 82.7035 "
    "0.869186 0.469186)";

inline constexpr std::string_view FULL_STATE =
    "(fullstate 46 (pmode kick_off_l) (vmode high normal) (score 0 0) (ball 0 0 0 0) "
    "(l_1 -3 -37 0 0 0 0 8000 1 1) (r_1 3 -37 0 0 0 0 8000 1 1))";

inline constexpr std::array SAMPLES = {
    SEE,
    SENSE_BODY,
    SERVER_PARAM,
    PLAYER_PARAM,
    PLAYER_TYPE,
    FULL_STATE,
    std::string_view("(init l 1 before_kick_off)"),
    std::string_view("(hear 450 referee goal_l_1)"),
    std::string_view(R"((hear 212 self "a(b).c+d"))"),
    std::string_view(R"((hear 99 -154 "m y1 2"))"),
    std::string_view(R"((hear 513 coach "trainer speaking"))"),
    std::string_view(R"((hear 7 online_coach_left (freeform "hello again")))"),
    std::string_view("(score 592 1 2)"),
    std::string_view("(change_player_type 4 11)"),
    std::string_view("(error too_many_moves)"),
};
