/** Play modes: the words of the log, and what people call them. */

/**
 * In the order of their numbers; a word that ends in _l is followed by the one of the right side.
 */
const WORDS = [
    "null",
    "before_kick_off",
    "time_over",
    "play_on",
    "kick_off_l",
    "kick_off_r",
    "kick_in_l",
    "kick_in_r",
    "free_kick_l",
    "free_kick_r",
    "corner_kick_l",
    "corner_kick_r",
    "goal_kick_l",
    "goal_kick_r",
    "goal_l",
    "goal_r",
    "drop_ball",
    "offside_l",
    "offside_r",
    "penalty_kick_l",
    "penalty_kick_r",
    "first_half_over",
    "pause",
    "human_judge",
    "foul_charge_l",
    "foul_charge_r",
    "foul_push_l",
    "foul_push_r",
    "foul_multiple_attack_l",
    "foul_multiple_attack_r",
    "foul_ballout_l",
    "foul_ballout_r",
    "back_pass_l",
    "back_pass_r",
    "free_kick_fault_l",
    "free_kick_fault_r",
    "catch_fault_l",
    "catch_fault_r",
    "indirect_free_kick_l",
    "indirect_free_kick_r",
    "penalty_setup_l",
    "penalty_setup_r",
    "penalty_ready_l",
    "penalty_ready_r",
    "penalty_taken_l",
    "penalty_taken_r",
    "penalty_miss_l",
    "penalty_miss_r",
    "penalty_score_l",
    "penalty_score_r",
    "illegal_defense_l",
    "illegal_defense_r",
];

/** @type {Readonly<Record<string, string>>} */
const NAMES = {
    null: "No play mode",
    before_kick_off: "Before kick-off",
    time_over: "Full time",
    play_on: "Play on",
    kick_off: "Kick-off",
    kick_in: "Kick-in",
    free_kick: "Free kick",
    corner_kick: "Corner kick",
    goal_kick: "Goal kick",
    goal: "Goal",
    drop_ball: "Drop ball",
    offside: "Offside",
    penalty_kick: "Penalty kick",
    first_half_over: "Half time",
    pause: "Pause",
    human_judge: "Human referee",
    foul_charge: "Foul: charging",
    foul_push: "Foul: pushing",
    foul_multiple_attack: "Foul: several attackers",
    foul_ballout: "Foul: ball out",
    back_pass: "Back pass",
    free_kick_fault: "Free kick fault",
    catch_fault: "Catch fault",
    indirect_free_kick: "Indirect free kick",
    penalty_setup: "Penalty set up",
    penalty_ready: "Penalty ready",
    penalty_taken: "Penalty taken",
    penalty_miss: "Penalty missed",
    penalty_score: "Penalty scored",
    illegal_defense: "Illegal defence",
};

export const MODE_COUNT = WORDS.length;

/** @type {ReadonlyMap<string, number>} */
const NUMBERS = new Map(WORDS.map((word, number) => [word, number]));

/**
 * Number of a play mode, 0 for a word nobody knows.
 * @param {string} word
 */
export function modeNumber(word) {
    return NUMBERS.get(word) ?? 0;
}

/** @param {number} mode */
export function modeWord(mode) {
    return WORDS[mode] ?? WORDS[0];
}

/**
 * The word without its side.
 * @param {number} mode
 */
export function modeKind(mode) {
    return modeWord(mode).replace(/_[lr]$/, "");
}

/**
 * 0 for a mode of the left side, 1 for the right one, -1 for both or none.
 * @param {number} mode
 */
export function modeSide(mode) {
    const word = modeWord(mode);
    return word.endsWith("_l") ? 0 : word.endsWith("_r") ? 1 : -1;
}

/**
 * The mode as a person says it: "Corner kick, Alpha".
 * @param {number} mode
 * @param {readonly string[]} teams names of the left and the right team
 */
export function modeText(mode, teams) {
    const side = modeSide(mode);
    const name = NAMES[modeKind(mode)] ?? modeKind(mode);
    return side < 0 ? name : `${name}, ${teams[side]}`;
}

const PLAYED = new Set(
    ["play_on", "penalty_taken"].flatMap((kind) =>
        WORDS.map((_, mode) => mode).filter((mode) => modeKind(mode) === kind),
    ),
);

/**
 * Whether the ball is in play.
 * @param {number} mode
 */
export function isPlayed(mode) {
    return PLAYED.has(mode);
}
