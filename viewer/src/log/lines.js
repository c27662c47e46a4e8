/** Lines of a text file found by their time; they stay bytes until they are shown. */

import {textOf} from "./scanner.js";
import {lastAtMost} from "./store.js";

export class TimedLines {
    /** @param {Uint8Array} bytes the file, which other indexes may share */
    constructor(bytes) {
        this.bytes = bytes;
        this.length = 0;
        this.keys = new Float64Array(256);
        this.spans = new Uint32Array(512);
    }

    /**
     * Adds a line; one that is earlier than the last one is dropped.
     * @param {number} time
     * @param {number} stoppage
     * @param {number} start
     * @param {number} end
     */
    add(time, stoppage, start, end) {
        const key = time * 65536 + stoppage;
        if (this.length > 0 && key < this.keys[this.length - 1]) {
            return;
        }
        if (this.length === this.keys.length) {
            const keys = new Float64Array(this.length * 2);
            const spans = new Uint32Array(this.length * 4);
            keys.set(this.keys);
            spans.set(this.spans);
            this.keys = keys;
            this.spans = spans;
        }
        this.keys[this.length] = key;
        this.spans[this.length * 2] = start;
        this.spans[this.length * 2 + 1] = end;
        this.length += 1;
    }

    /**
     * Number of lines that are not later than a moment.
     * @param {number} time
     * @param {number} stoppage
     */
    upTo(time, stoppage) {
        return lastAtMost(this.length, time * 65536 + stoppage, (index) => this.keys[index]) + 1;
    }

    /** @param {number} index */
    time(index) {
        return Math.floor(this.keys[index] / 65536);
    }

    /** @param {number} index */
    stoppage(index) {
        return this.keys[index] % 65536;
    }

    /** @param {number} index */
    text(index) {
        return textOf(this.bytes.subarray(this.spans[index * 2], this.spans[index * 2 + 1]));
    }
}

/**
 * Calls `take` with start and end of each line.
 * @param {Uint8Array} bytes
 * @param {(start: number, end: number) => void} take
 */
export function eachLine(bytes, take) {
    let start = 0;
    while (start < bytes.length) {
        const newline = bytes.indexOf(0x0a, start);
        const end = newline < 0 ? bytes.length : newline;
        if (end > start) {
            take(start, end);
        }
        start = end + 1;
    }
}
