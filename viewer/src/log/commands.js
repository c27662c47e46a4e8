/** The text log: what each player told the server. */

import {TimedLines, eachLine} from "./lines.js";
import {textOf} from "./scanner.js";

/** A line's beginning is at most this long: times, a tab, the name and the number. */
const LONGEST_HEAD = 120;

/**
 * @typedef {object} Command
 * @property {number} time
 * @property {number} stoppage
 * @property {string} text the commands of one datagram
 */

export class Commands {
    constructor() {
        /**
         * By client, "Alpha_7".
         * @type {Map<string, TimedLines>}
         */
        this.clients = new Map();
    }

    get loaded() {
        return this.clients.size > 0;
    }

    clear() {
        this.clients.clear();
    }

    /**
     * Takes a whole text log in place of what was there.
     * @param {Uint8Array} bytes
     */
    load(bytes) {
        this.clear();
        const head = /^(\d{1,8}),(\d{1,5})\tRecv ([^:]+_\d{1,2}): /;
        eachLine(bytes, (start, end) => {
            const text = textOf(bytes.subarray(start, Math.min(end, start + LONGEST_HEAD)));
            const match = head.exec(text);
            if (!match) {
                return;
            }
            const client = match[3];
            let lines = this.clients.get(client);
            if (!lines) {
                if (this.clients.size > 64) {
                    return;
                }
                lines = new TimedLines(bytes);
                this.clients.set(client, lines);
            }
            lines.add(
                Number(match[1]),
                Math.min(Number(match[2]), 65535),
                start + match[0].length,
                end,
            );
        });
    }

    /**
     * The last commands of a player up to a moment, the newest first.
     * @param {string} team
     * @param {number} unum
     * @param {number} time
     * @param {number} stoppage
     * @param {number} most how many at most
     * @returns {Command[]}
     */
    last(team, unum, time, stoppage, most) {
        const lines = this.clients.get(`${team}_${unum}`);
        if (!lines) {
            return [];
        }
        const commands = [];
        const end = lines.upTo(time, stoppage);
        for (let index = end - 1; index >= 0 && commands.length < most; index -= 1) {
            commands.push({
                time: lines.time(index),
                stoppage: lines.stoppage(index),
                text: lines.text(index).slice(0, 300),
            });
        }
        return commands;
    }
}
