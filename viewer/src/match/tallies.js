/** Counts and sums that can be asked for at any show. */

import {lastAtMost, resized} from "../log/store.js";

/** Things that happen now and then: for each key the shows at which they did, in order. */
export class Tallies {
    constructor() {
        /** @type {Map<string, number[]>} */
        this.lists = new Map();
    }

    /**
     * @param {string} key
     * @param {string} who "team 0", "player 7"
     * @param {number} show
     */
    add(key, who, show) {
        const name = `${key} ${who}`;
        const list = this.lists.get(name);
        if (list) {
            list.push(show);
        } else {
            this.lists.set(name, [show]);
        }
    }

    /**
     * How often it happened up to a show.
     * @param {string} key
     * @param {string} who
     * @param {number} show
     */
    count(key, who, show) {
        const list = this.lists.get(`${key} ${who}`);
        return list ? lastAtMost(list.length, show, (index) => list[index]) + 1 : 0;
    }
}

/** Things that grow at nearly every show: a running sum for each of some columns. */
export class Sums {
    /** @param {number} columns */
    constructor(columns) {
        this.columns = columns;
        this.values = new Float64Array(columns * 512);
    }

    /**
     * Begins a show with the sums of the one before.
     * @param {number} show
     */
    begin(show) {
        const from = show * this.columns;
        if (from + this.columns > this.values.length) {
            this.values = resized(this.values, this.values.length * 2);
        }
        if (show > 0) {
            this.values.copyWithin(from, from - this.columns, from);
        }
    }

    /**
     * @param {number} show the one that was begun last
     * @param {number} column
     * @param {number} amount
     */
    add(show, column, amount) {
        this.values[show * this.columns + column] += amount;
    }

    /**
     * @param {number} show
     * @param {number} column
     */
    at(show, column) {
        return this.values[show * this.columns + column] ?? 0;
    }
}

/**
 * The left one's share of both, a half when there is nothing to share.
 * @param {number} left
 * @param {number} right
 */
export function shareOf(left, right) {
    return left + right > 0 ? left / (left + right) : 0.5;
}
