/** Turns the bytes of a game log, in pieces of any size, into rows of a store. */

import {modeNumber} from "./modes.js";
import {BadRecord, Scanner, textOf} from "./scanner.js";
import {ShowReader} from "./showreader.js";
import {MOST_SHOWS, Store} from "./store.js";

const NEWLINE = 0x0a;
const RETURN = 0x0d;
const LATEST = 10000000;
const LONGEST_LINE = 1 << 20;
const LONGEST_NAME = 64;
const MOST_NOTES = 20000;

/** Thrown when nothing of the input can be shown; the text is meant for the user. */
export class UnreadableLog extends Error {}

export class Reader {
    /** @param {Store} store */
    constructor(store) {
        this.store = store;
        this.scanner = new Scanner();
        this.shows = new ShowReader(this.scanner, store);
        /** The beginning of a line whose end has not come yet. */
        this.carry = new Uint8Array(0);
        this.line = 0;
        /** Version of the log, 0 before its header. */
        this.version = 0;
        this.mode = 0;
        /** Records that could not be read, and the first of them. */
        this.badRecords = 0;
        this.firstBad = "";
        this.full = false;
    }

    /**
     * Takes the next piece.
     * @param {Uint8Array} bytes
     */
    push(bytes) {
        let start = 0;
        if (this.carry.length > 0) {
            const end = bytes.indexOf(NEWLINE);
            const head = bytes.subarray(0, end < 0 ? bytes.length : end + 1);
            const joined = new Uint8Array(this.carry.length + head.length);
            joined.set(this.carry);
            joined.set(head, this.carry.length);
            this.carry = joined;
            if (this.carry.length > LONGEST_LINE) {
                throw new UnreadableLog("This is no game log: it has a line without end.");
            }
            if (end < 0) {
                return;
            }
            this.carry = new Uint8Array(0);
            this.takeLine(joined, 0, joined.length - 1);
            start = end + 1;
        }
        for (;;) {
            const end = bytes.indexOf(NEWLINE, start);
            if (end < 0) {
                break;
            }
            this.takeLine(bytes, start, end);
            start = end + 1;
        }
        this.carry = bytes.slice(start);
    }

    /** Takes what stands after the last line's end. */
    finish() {
        const rest = this.carry;
        this.carry = new Uint8Array(0);
        if (rest.length > 0) {
            this.takeLine(rest, 0, rest.length);
        }
        if (this.version === 0) {
            throw new UnreadableLog("The file is empty.");
        }
    }

    /**
     * @param {Uint8Array} bytes
     * @param {number} start
     * @param {number} end
     */
    takeLine(bytes, start, end) {
        this.line += 1;
        const last = end > start && bytes[end - 1] === RETURN ? end - 1 : end;
        if (this.version === 0) {
            this.takeHeader(textOf(bytes.subarray(start, Math.min(last, start + 16))));
            return;
        }
        if (last === start || this.full) {
            return;
        }
        this.scanner.set(bytes, start, last);
        try {
            this.takeRecord();
        } catch (error) {
            if (!(error instanceof BadRecord)) {
                throw error;
            }
            this.badRecords += 1;
            this.firstBad ||= `line ${this.line}: ${error.message}`;
        }
    }

    /** @param {string} text */
    takeHeader(text) {
        const match = /^ULG([0-9]+)$/.exec(text);
        if (match && Number(match[1]) >= 4 && Number(match[1]) <= 6) {
            this.version = Number(match[1]);
        } else if (match || text.startsWith("ULG")) {
            throw new UnreadableLog(
                "This game log has a version that the viewer does not read. Let the " +
                    "server write version 4, 5 or 6 (server::game_log_version).",
            );
        } else if (text.startsWith("[")) {
            throw new UnreadableLog(
                "This looks like a game log in JSON. Let the server write version 4, " +
                    "5 or 6 (server::game_log_version).",
            );
        } else {
            throw new UnreadableLog(
                "This is no game log: it does not begin with ULG4, ULG5 or ULG6.",
            );
        }
    }

    takeRecord() {
        const {scanner} = this;
        scanner.open();
        switch (scanner.word()) {
            case "show":
                return this.takeShow();
            case "playmode":
                return this.takeMode();
            case "team":
                return this.takeTeam();
            case "msg":
                return this.takeMessage();
            case "server_param":
                return this.takeParameters(this.store.parameters);
            case "player_type":
                return this.takeType();
            default:
                return undefined;
        }
    }

    takeMode() {
        this.scanner.integer(0, LATEST);
        this.mode = modeNumber(this.scanner.word());
        const {modeChanges, length} = this.store;
        if (modeChanges.length < MOST_NOTES) {
            modeChanges.push({show: length, mode: this.mode});
        }
    }

    /** Names may hold anything, so the numbers are found from the end of the line. */
    takeTeam() {
        const {scanner, store} = this;
        scanner.integer(0, LATEST);
        const words = scanner
            .rest()
            .replace(/\)\s*$/, "")
            .trim()
            .split(/ +/);
        const numbers = [];
        while (
            words.length > 2 &&
            numbers.length < 6 &&
            /^[0-9]{1,4}$/.test(words[words.length - 1])
        ) {
            numbers.unshift(Number(words.pop()));
        }
        if (numbers.length !== 2 && numbers.length !== 6) {
            throw new BadRecord("the team record has no score");
        }
        const right = words.pop() ?? "";
        const names = [words.join(" "), right]
            .map((name) => (name === "null" ? "" : name))
            .map((name) => name.slice(0, LONGEST_NAME));
        const line = {
            show: store.length,
            names,
            score: numbers.slice(0, 2),
            penalties: numbers.length === 6 ? numbers.slice(2) : null,
        };
        if (store.teams.length === 0) {
            line.show = 0;
        } else if (store.teams[store.teams.length - 1].show === line.show) {
            store.teams.pop();
        }
        if (store.teams.length < MOST_NOTES) {
            store.teams.push(line);
        }
    }

    takeMessage() {
        const {scanner, store} = this;
        scanner.integer(0, LATEST);
        const board = scanner.integer(0, 9);
        if (board !== 1) {
            return;
        }
        const text = /"(.*)"\)\s*$/.exec(scanner.rest())?.[1] ?? "";
        const match = /^\((referee|chapter|result) (.*)\)$/.exec(text);
        if (!match) {
            return;
        }
        const note = {show: store.length, text: match[2].slice(0, 200)};
        if (match[1] === "result") {
            store.result = note.text;
        } else {
            const notes = match[1] === "chapter" ? store.chapters : store.referee;
            if (notes.length < MOST_NOTES) {
                notes.push(note);
            }
        }
    }

    /**
     * Keeps the parameters that are numbers.
     * @param {Map<string, number>} parameters
     */
    takeParameters(parameters) {
        const pairs = this.scanner
            .rest()
            .matchAll(/\(([A-Za-z_0-9]+) (-?[0-9.]+(?:[eE][-+]?[0-9]+)?)\)/g);
        for (const [, name, value] of pairs) {
            if (Number.isFinite(Number(value))) {
                parameters.set(name, Number(value));
            }
        }
    }

    takeType() {
        /** @type {Map<string, number>} */
        const parameters = new Map();
        this.takeParameters(parameters);
        const id = parameters.get("id");
        if (id !== undefined && id >= 0 && id < 256) {
            this.store.playerTypes.set(id, parameters);
        }
    }

    takeShow() {
        const {scanner, store} = this;
        if (store.length >= MOST_SHOWS) {
            this.full = true;
            return;
        }
        const time = scanner.integer(0, LATEST);
        const show = store.room();
        const before = show > 0 ? store.times[show - 1] : -1;
        if (time < before) {
            throw new BadRecord("the time runs backwards");
        }
        store.times[show] = time;
        store.stoppages[show] =
            time === before ? Math.min(store.stoppages[show - 1] + 1, 65535) : 0;
        store.modes[show] = this.mode;
        const {score} = store.teamLine(show);
        store.scores[show * 2] = score[0];
        store.scores[show * 2 + 1] = score[1];
        this.shows.read(show);
        store.length += 1;
    }
}
