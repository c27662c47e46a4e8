#pragma once

/// A referee's word as a number.
///
///  1 before_kick_off   8 goal_kick      15 human_judge           22 time_up_without_a_team
///  2 time_over         9 goal           16 foul_charge           23 time_extended
///  3 play_on          10 drop_ball      17 foul_push             24 half_time
///  4 kick_off         11 offside        18 foul_multiple_attack  25 goalie_catch_ball
///  5 kick_in          12 penalty_kick   19 foul_ballout          26 goal with the new score
///  6 free_kick        13 first_half_over  20 back_pass
///  7 corner_kick      14 pause          21 time_up
///
/// An indirect free kick is a free kick.
struct RCC_PlayMode {
    static constexpr int UNKNOWN = -1; ///< any other word; its side is 0

    int mode = UNKNOWN;
    int side = 0; ///< 1 the agent's own side, -1 the other one, 0 a word without side
};
