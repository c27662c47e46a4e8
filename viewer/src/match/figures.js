/** Figures of a match up to any show: kept as sums and as a list of passes while the log is read. */

import {isPlayed} from "../log/modes.js";
import {KICK, KICK_FAILED, PLAYERS, Store, X, Y, lastAtMost, resized} from "../log/store.js";

/**
 * @typedef {object} Pass
 * @property {number} show when it was received or lost
 * @property {number} from who played it
 * @property {number} to who had the ball next
 * @property {boolean} complete whether that was a team-mate
 * @property {{x: number, y: number}} start
 * @property {{x: number, y: number}} end
 */

/** @typedef {{label: string, left: string, right: string, share: number}} Row share: of the left team, 0 to 1 */

export class Figures {
    /** @param {Store} store */
    constructor(store) {
        this.store = store;
        this.length = 0;
        /** Shows in which each side had the ball, summed up: left at 2i, right at 2i + 1. */
        this.possession = new Uint32Array(1024);
        /** @type {Pass[]} */
        this.passes = [];
        this.owner = -1;
        this.kick = {player: -1, x: 0, y: 0};
    }

    update() {
        for (; this.length < this.store.length; this.length += 1) {
            this.add(this.length);
        }
    }

    /** @param {number} show */
    add(show) {
        const {store} = this;
        if (show * 2 + 2 > this.possession.length) {
            this.possession = resized(this.possession, this.possession.length * 2);
        }
        if (isPlayed(store.modes[show])) {
            this.addTouches(show);
        } else {
            this.owner = -1;
            this.kick.player = -1;
        }
        for (const side of [0, 1]) {
            const before = show > 0 ? this.possession[(show - 1) * 2 + side] : 0;
            const has = this.owner >= 0 && (this.owner < 11 ? 0 : 1) === side;
            this.possession[show * 2 + side] = before + (has ? 1 : 0);
        }
    }

    /** @param {number} show */
    addTouches(show) {
        const {store, kick} = this;
        for (let player = 0; player < PLAYERS; player += 1) {
            const state = store.state(show, player);
            if (!(state & KICK) || state & KICK_FAILED) {
                continue;
            }
            const x = store.player(show, player, X);
            const y = store.player(show, player, Y);
            if (kick.player >= 0 && kick.player !== player) {
                this.passes.push({show, from: kick.player, to: player,
                    complete: kick.player < 11 === player < 11,
                    start: {x: kick.x, y: kick.y}, end: {x, y}});
            }
            this.owner = player;
            this.kick = {player, x, y};
        }
    }

    /**
     * Share of the left team, from 0 to 1, up to a show; a half when nobody had the ball yet.
     * @param {number} show
     */
    possessionShare(show) {
        const left = this.possession[show * 2] ?? 0;
        const both = left + (this.possession[show * 2 + 1] ?? 0);
        return both > 0 ? left / both : 0.5;
    }

    /**
     * Passes played up to a show.
     * @param {number} show
     */
    passesUpTo(show) {
        const count = lastAtMost(this.passes.length, show, (index) => this.passes[index].show) + 1;
        return this.passes.slice(0, count);
    }

    /**
     * The figures of both teams up to a show.
     * @param {number} show
     * @returns {Row[]}
     */
    table(show) {
        const share = this.possessionShare(show);
        return [{label: "Possession", left: `${Math.round(share * 100)} %`,
            right: `${Math.round((1 - share) * 100)} %`, share}];
    }
}
