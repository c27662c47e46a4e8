/**
 * Drawings and beliefs that the players wrote: shapes over the pitch, turned into the pitch's
 * frame.
 */

import {TimedLines, eachLine} from "./lines.js";
import {textOf} from "./scanner.js";

const NUMBER = "(-?[0-9.]+(?:e[-+]?[0-9]+)?)";
const POINT = `\\(${NUMBER},${NUMBER}\\)`;
const BOX = new RegExp(`^(ellipse|rectangle) ${POINT} ${NUMBER} ${NUMBER}$`);
const LINE = new RegExp(`^line ${POINT} ${POINT}$`);
const MARK = new RegExp(`^(point|text) ${POINT} ?(.*)$`);
const SELF = new RegExp(`^self ${POINT} ${NUMBER} ${NUMBER}$`);
const BALL = new RegExp(`^ball ${POINT} ${POINT}$`);
const OTHER = new RegExp(`^(mate|opponent|unknown) ([0-9]{1,2}) ${POINT}$`);
const CASE = /^case (.{1,60})$/;
const HEAD = /^(\d{1,8}) (\d{1,2}) ([89]) (.*)$/;
const LONGEST_LINE = 400;
const FARTHEST = 1000;

/** More shapes than this of one player are not drawn at once. */
const MOST_SHAPES = 400;

/**
 * @typedef {{x: number, y: number}} Place in metres of the pitch
 * @typedef {{kind: string, from: Place, to: Place, text: string}} Shape
 *
 * @typedef {object} Belief
 * @property {(Place & {body: number, head: number}) | null} self degrees as the canvas counts them
 * @property {(Place & {vx: number, vy: number}) | null} ball
 * @property {(Place & {kind: string, unum: number})[]} others
 * @property {string} case "" when none was written
 */

/**
 * Which file it is by its name.
 * @param {string} name
 * @returns {{side: number, unum: number, beliefs: boolean} | null} side -1 when the folder does not
 *     tell it
 */
export function planFileOf(name) {
    const match = /(?:^|\/)(player|beliefs)(\d{1,2})\.log(?:\.gz)?$/.exec(name);
    const unum = match ? Number(match[2]) : 0;
    if (!match || unum < 1 || unum > 11) {
        return null;
    }
    const folders = name.split("/").slice(0, -1);
    const side = folders.includes("left") ? 0 : folders.includes("right") ? 1 : -1;
    return {side, unum, beliefs: match[1] === "beliefs"};
}

/**
 * @param {readonly string[]} texts
 * @returns {number[] | null} null when one of them is no number or too large
 */
function numbers(texts) {
    const values = texts.map(Number);
    return values.every((value) => Math.abs(value) <= FARTHEST) ? values : null;
}

export class Plans {
    constructor() {
        /**
         * By player's index, then by kind.
         * @type {Map<number, {drawings?: TimedLines, beliefs?: TimedLines}>}
         */
        this.files = new Map();
    }

    clear() {
        this.files.clear();
    }

    /** @param {number} player */
    has(player) {
        return this.files.has(player);
    }

    /**
     * Takes a whole file in place of the one that was there.
     * @param {number} player
     * @param {boolean} beliefs
     * @param {Uint8Array} bytes
     */
    load(player, beliefs, bytes) {
        const lines = new TimedLines(bytes);
        eachLine(bytes, (start, end) => {
            const space = bytes.indexOf(0x20, start);
            const time = Number(textOf(bytes.subarray(start, Math.min(space, start + 10))));
            if (Number.isInteger(time) && time >= 0 && end - start < LONGEST_LINE) {
                lines.add(time, 0, start, end);
            }
        });
        const files = this.files.get(player) ?? {};
        files[beliefs ? "beliefs" : "drawings"] = lines;
        this.files.set(player, files);
    }

    /**
     * The shapes a player drew in one step. In a stoppage the same time has many steps, and its
     * lines are shared out evenly.
     * @param {number} player
     * @param {number} time
     * @param {number} stoppage
     * @param {number} steps how many steps have this time
     * @returns {Shape[]}
     */
    shapes(player, time, stoppage, steps) {
        const lines = this.files.get(player)?.drawings;
        if (!lines) {
            return [];
        }
        const first = lines.upTo(time - 1, 65535);
        const count = lines.upTo(time, 65535) - first;
        const from = first + Math.floor((count * stoppage) / steps);
        const to = first + Math.floor((count * (stoppage + 1)) / steps);
        const shapes = [];
        for (let index = from; index < to && shapes.length < MOST_SHAPES; index += 1) {
            const match = HEAD.exec(lines.text(index).trimEnd());
            const shape =
                match && match[3] === "8" ? shapeOf(match[4], player < 11 ? 1 : -1) : null;
            if (shape) {
                shapes.push(shape);
            }
        }
        return shapes;
    }

    /**
     * What a player believed in one step.
     * @param {number} player
     * @param {number} time
     * @param {number} stoppage which decision of this time
     * @returns {Belief | null}
     */
    belief(player, time, stoppage) {
        const lines = this.files.get(player)?.beliefs;
        if (!lines) {
            return null;
        }
        const turn = player < 11 ? 1 : -1;
        /** @type {Belief | null} */
        let belief = null;
        let decision = -1;
        const end = lines.upTo(time, 65535);
        for (let index = lines.upTo(time - 1, 65535); index < end; index += 1) {
            const match = HEAD.exec(lines.text(index).trimEnd());
            if (!match || match[3] !== "9") {
                continue;
            }
            if (match[4].startsWith("self ")) {
                decision += 1;
                if (decision > stoppage) {
                    break;
                }
                belief = null;
            }
            belief ??= {self: null, ball: null, others: [], case: ""};
            addBelief(belief, match[4], turn);
        }
        return belief;
    }
}

/**
 * @param {string} text
 * @param {number} turn 1, or -1 for the right team
 * @returns {Shape | null}
 */
function shapeOf(text, turn) {
    const box = BOX.exec(text);
    if (box) {
        const values = numbers(box.slice(2));
        return (
            values && {
                kind: box[1],
                from: {x: turn * values[0], y: turn * values[1]},
                to: {x: turn * (values[0] + values[2]), y: turn * (values[1] + values[3])},
                text: "",
            }
        );
    }
    const line = LINE.exec(text);
    if (line) {
        const values = numbers(line.slice(1));
        return (
            values && {
                kind: "line",
                from: {x: turn * values[0], y: turn * values[1]},
                to: {x: turn * values[2], y: turn * values[3]},
                text: "",
            }
        );
    }
    const mark = MARK.exec(text);
    const values = mark && numbers(mark.slice(2, 4));
    if (!mark || !values) {
        return null;
    }
    const place = {x: turn * values[0], y: turn * values[1]};
    return {kind: mark[1], from: place, to: place, text: mark[4].slice(0, 80)};
}

/**
 * Directions are counted against the clock in the records and with it on the canvas, hence the
 * minus.
 * @param {Belief} belief
 * @param {string} text
 * @param {number} turn
 */
function addBelief(belief, text, turn) {
    const self = SELF.exec(text);
    const ball = BALL.exec(text);
    const values = numbers((self ?? ball ?? []).slice(1));
    if (self && values) {
        const half = turn < 0 ? 180 : 0;
        belief.self = {
            x: turn * values[0],
            y: turn * values[1],
            body: half - values[2],
            head: half - values[3],
        };
    } else if (ball && values) {
        belief.ball = {
            x: turn * values[0],
            y: turn * values[1],
            vx: turn * values[2],
            vy: turn * values[3],
        };
    }
    const other = OTHER.exec(text);
    const place = other && numbers(other.slice(3));
    if (other && place && belief.others.length < 64) {
        belief.others.push({
            kind: other[1],
            unum: Number(other[2]),
            x: turn * place[0],
            y: turn * place[1],
        });
    }
    belief.case = CASE.exec(text)?.[1] ?? belief.case;
}
