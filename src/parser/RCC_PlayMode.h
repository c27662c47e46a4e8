#pragma once

/// A referee's word as a number.
///
///  1 before_kick_off  10 drop_ball             19 foul_ballout
///  2 time_over        11 offside               20 back_pass
///  3 play_on          12 penalty_kick          21 time_up
///  4 kick_off         13 first_half_over       22 time_up_without_a_team
///  5 kick_in          14 pause                 23 time_extended
///  6 free_kick        15 human_judge           24 half_time
///  7 corner_kick      16 foul_charge           25 goalie_catch_ball
///  8 goal_kick        17 foul_push             26 goal with the new score, as goal_l_2
///  9 goal             18 foul_multiple_attack
///
/// An indirect free kick is a free kick.
struct RCC_PlayMode {
    static constexpr int UNKNOWN = -1; ///< any other word; its side is 0

    int mode = UNKNOWN;
    int side = 0; ///< 1 the agent's own side, -1 the other one, 0 a word without side
};
