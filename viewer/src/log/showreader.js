/** The body of a `show` record: the ball and the players, into one row of the store. */

import {BadRecord, Scanner} from "./scanner.js";
import {
    BODY,
    CAPACITY,
    COUNT_NAMES,
    EFFORT,
    NECK,
    PLAYERS,
    POINT_X,
    POINT_Y,
    RECOVERY,
    STAMINA,
    Store,
    VX,
    VY,
    X,
    Y,
} from "./store.js";

const OPEN = 0x28;
const LETTER_C = 0x63;
const LETTER_F = 0x66;
const LETTER_L = 0x6c;
const LETTER_R = 0x72;
const LETTER_S = 0x73;
const LETTER_V = 0x76;

/** Positions and speeds beyond this many metres are taken for broken. */
const FARTHEST = 10000;
const MOST_COUNTED = 10000000;

export class ShowReader {
    /**
     * @param {Scanner} scanner stands behind the record's time
     * @param {Store} store
     */
    constructor(scanner, store) {
        this.scanner = scanner;
        this.store = store;
    }

    /**
     * Fills a row.
     * @param {number} show
     */
    read(show) {
        this.takeBall(show);
        this.clearPlayers(show);
        while (this.scanner.atOpen()) {
            this.takePlayer(show);
        }
        this.scanner.close();
    }

    /** @param {number} show */
    takeBall(show) {
        const {scanner, store} = this;
        scanner.open();
        scanner.open();
        if (scanner.word() !== "b") {
            throw new BadRecord("the ball is missing");
        }
        scanner.close();
        for (let field = X; field <= VY; field += 1) {
            store.balls[show * 4 + field] = scanner.within(FARTHEST);
        }
        scanner.close();
    }

    /**
     * A record that broke off may have left something in the row.
     * @param {number} show
     */
    clearPlayers(show) {
        const {store} = this;
        const from = store.places(show, 0);
        const to = store.places(show, PLAYERS);
        store.players.fill(0, from.floats, to.floats);
        store.states.fill(0, from.row, to.row);
        store.listens.fill(0, from.row, to.row);
        store.counts.fill(0, from.counts, to.counts);
    }

    /** A side's letter and a number, as an index from 0 to 21. */
    takeIndex() {
        const side = this.scanner.letter();
        if (side !== LETTER_L && side !== LETTER_R) {
            throw new BadRecord("a player has no side");
        }
        return this.scanner.integer(1, 11) - 1 + (side === LETTER_R ? 11 : 0);
    }

    /** @param {number} show */
    takePlayer(show) {
        const {scanner, store} = this;
        scanner.open();
        scanner.open();
        const {floats, row, counts} = store.places(show, this.takeIndex());
        scanner.close();
        store.types[row] = scanner.integer(0, 255);
        store.states[row] = scanner.integer(0, 0xffffffff);
        for (const field of [X, Y, VX, VY]) {
            store.players[floats + field] = scanner.within(FARTHEST);
        }
        store.players[floats + BODY] = scanner.within(FARTHEST);
        store.players[floats + NECK] = scanner.within(FARTHEST);
        const points = !scanner.atOpen() && !scanner.atClose();
        store.players[floats + POINT_X] = points ? scanner.within(FARTHEST) : NaN;
        store.players[floats + POINT_Y] = points ? scanner.within(FARTHEST) : NaN;
        while (scanner.peek() === OPEN) {
            scanner.open();
            this.takePart(floats, row, counts);
        }
        scanner.close();
    }

    /**
     * One of the lists inside a player; unknown ones are passed over.
     * @param {number} floats
     * @param {number} row
     * @param {number} counts
     */
    takePart(floats, row, counts) {
        const {scanner, store} = this;
        const start = scanner.position;
        const kind = scanner.letter();
        if (scanner.bytes[scanner.position] !== 0x20) {
            scanner.position = start;
            scanner.skipList();
            return;
        }
        if (kind === LETTER_V) {
            scanner.letter();
            store.widths[row] = Math.round(Math.abs(scanner.within(360)));
        } else if (kind === LETTER_S) {
            for (const field of [STAMINA, EFFORT, RECOVERY]) {
                store.players[floats + field] = scanner.within(1e9);
            }
            store.players[floats + CAPACITY] = scanner.atClose() ? NaN : scanner.within(1e9);
        } else if (kind === LETTER_F) {
            store.listens[row] = this.takeIndex() + 1;
        } else if (kind === LETTER_C) {
            for (let index = 0; index < COUNT_NAMES.length && !scanner.atClose(); index += 1) {
                store.counts[counts + index] = scanner.integer(0, MOST_COUNTED);
            }
        }
        scanner.skipList();
    }
}
