/** The figures of both teams as rows of text. */

import {DOMINATION, Figures, METRES, POSSESSION, SPENT} from "./figures.js";
import {shareOf} from "./tallies.js";

/**
 * @typedef {{label: string, left: string, right: string, share: number}} Row share: of the left team, 0 to 1
 */

/**
 * The figures of both teams up to a show, as the panel shows them.
 * @param {Figures} figures
 * @param {number} show
 * @returns {Row[]}
 */
export function tableOf({store, tallies, teamSums}, show) {
    const sums = (/** @type {number} */ column) => [
        teamSums.at(show, column),
        teamSums.at(show, column + 1),
    ];
    const counts = (/** @type {string} */ key) =>
        [0, 1].map((side) => tallies.count(key, `team ${side}`, show));
    const add = (/** @type {number[][]} */ ...lists) =>
        [0, 1].map((side) => lists.reduce((sum, list) => sum + list[side], 0));
    const arrived = counts("passesArrived");
    const passes = counts("passes");
    const onTarget = counts("shotsOnTarget");
    const {scores} = store;
    return [
        percentRow("Possession", sums(POSSESSION)),
        percentRow("Domination", sums(DOMINATION)),
        row("Goals", [scores[show * 2], scores[show * 2 + 1]]),
        row("Shots (on target)", counts("shots"), (value, side) => `${value} (${onTarget[side]})`),
        row("Passes arrived", arrived, (value, side) => `${value} of ${passes[side]}`),
        row("Interceptions", counts("interceptions")),
        row("Tackles", counts("tackles")),
        row("Dribbles", counts("dribbles")),
        row("Penalty area entries", counts("areaEntries")),
        row("Catches", counts("catches")),
        row(
            "Set pieces",
            add(counts("kickIns"), counts("cornerKicks"), counts("freeKicks"), counts("goalKicks")),
        ),
        row("Offsides", counts("offsides")),
        row("Fouls", counts("fouls")),
        row("Distance run", sums(METRES), (value) => `${(value / 1000).toFixed(2)} km`),
        row("Stamina spent", sums(SPENT), (value) => String(Math.round(value))),
    ];
}

/**
 * @param {string} label
 * @param {number[]} values
 * @param {(value: number, side: number) => string} [text]
 * @returns {Row}
 */
function row(label, values, text = String) {
    return {
        label,
        left: text(values[0], 0),
        right: text(values[1], 1),
        share: shareOf(values[0], values[1]),
    };
}

/**
 * @param {string} label
 * @param {number[]} values
 * @returns {Row}
 */
function percentRow(label, values) {
    const share = shareOf(values[0], values[1]);
    return {
        label,
        left: `${(share * 100).toFixed(1)} %`,
        right: `${((1 - share) * 100).toFixed(1)} %`,
        share,
    };
}
