/**
 * A match in memory: one row for each `show` record, in typed arrays that grow. A match of 6500
 * shows takes about 13 MB here.
 */

export const PLAYERS = 22;

/** Floats of one player in one show, in this order. Angles in degrees, y down, clockwise. */
export const X = 0,
    Y = 1,
    VX = 2,
    VY = 3,
    BODY = 4,
    NECK = 5,
    POINT_X = 6,
    POINT_Y = 7,
    STAMINA = 8,
    EFFORT = 9,
    RECOVERY = 10,
    CAPACITY = 11;
const FLOATS = 12;
const BALL_FLOATS = 4;

/** Counts of executed commands, in this order. */
export const COUNT_NAMES = [
    "kick",
    "dash",
    "turn",
    "catch",
    "move",
    "turn neck",
    "change view",
    "say",
    "tackle",
    "point to",
    "attention to",
    "change focus",
];
const COUNTS = COUNT_NAMES.length;

/** State bits of a player. */
export const ON_FIELD = 0x1,
    KICK = 0x2,
    KICK_FAILED = 0x4,
    GOALIE = 0x8,
    CATCH = 0x10,
    CATCH_FAILED = 0x20,
    BALL_COLLISION = 0x400,
    PLAYER_COLLISION = 0x800,
    TACKLE = 0x1000,
    TACKLE_FAILED = 0x2000,
    POST_COLLISION = 0x10000,
    FOULED = 0x20000,
    YELLOW = 0x40000,
    RED = 0x80000;

/** More shows than this are not taken: twenty matches' worth, about 250 MB. */
export const MOST_SHOWS = 130000;

/**
 * @typedef {object} TeamLine
 * @property {number} show first show it holds for
 * @property {readonly string[]} names left and right; "" where nobody joined
 * @property {readonly number[]} score
 * @property {readonly number[] | null} penalties scored and missed left, scored and missed right
 */

/** @typedef {{show: number, text: string}} Note a text that belongs to a show */

/**
 * A typed array of another length with the same beginning.
 * @template {Int32Array | Uint32Array | Uint16Array | Uint8Array | Float32Array | Float64Array} T
 * @param {T} array
 * @param {number} length
 * @returns {T}
 */
export function resized(array, length) {
    const Kind = /** @type {new (length: number) => T} */ (array.constructor);
    const copy = new Kind(length);
    copy.set(array.subarray(0, length));
    return copy;
}

export class Store {
    constructor() {
        /** Number of shows. */
        this.length = 0;
        this.capacity = 512;
        this.times = new Int32Array(this.capacity);
        /** Which of the shows of the same time it is, from 0. */
        this.stoppages = new Uint16Array(this.capacity);
        this.modes = new Uint8Array(this.capacity);
        this.scores = new Uint16Array(this.capacity * 2);
        this.balls = new Float32Array(this.capacity * BALL_FLOATS);
        this.players = new Float32Array(this.capacity * PLAYERS * FLOATS);
        this.states = new Uint32Array(this.capacity * PLAYERS);
        this.types = new Uint8Array(this.capacity * PLAYERS);
        /** Degrees of the view cone. */
        this.widths = new Uint16Array(this.capacity * PLAYERS);
        /** Whom a player listens to: 0 nobody, else its index + 1. */
        this.listens = new Uint8Array(this.capacity * PLAYERS);
        this.counts = new Uint16Array(this.capacity * PLAYERS * COUNTS);
        /** @type {TeamLine[]} */
        this.teams = [];
        /** @type {Note[]} */
        this.chapters = [];
        /** @type {Note[]} */
        this.referee = [];
        /**
         * Every change of the play mode, with the show that follows it; some last for no show at
         * all.
         * @type {{show: number, mode: number}[]}
         */
        this.modeChanges = [];
        /** The result record's text, "" before the end. */
        this.result = "";
        /**
         * Server parameters that are numbers.
         * @type {Map<string, number>}
         */
        this.parameters = new Map();
        /**
         * Numeric parameters of each player type.
         * @type {Map<number, Map<string, number>>}
         */
        this.playerTypes = new Map();
    }

    /**
     * Makes room for one more show and answers its index; the caller fills it and then adds one to
     * `length`.
     */
    room() {
        if (this.length === this.capacity) {
            this.capacity *= 2;
            const capacity = this.capacity;
            this.times = resized(this.times, capacity);
            this.stoppages = resized(this.stoppages, capacity);
            this.modes = resized(this.modes, capacity);
            this.scores = resized(this.scores, capacity * 2);
            this.balls = resized(this.balls, capacity * BALL_FLOATS);
            this.players = resized(this.players, capacity * PLAYERS * FLOATS);
            this.states = resized(this.states, capacity * PLAYERS);
            this.types = resized(this.types, capacity * PLAYERS);
            this.widths = resized(this.widths, capacity * PLAYERS);
            this.listens = resized(this.listens, capacity * PLAYERS);
            this.counts = resized(this.counts, capacity * PLAYERS * COUNTS);
        }
        return this.length;
    }

    /**
     * @param {string} name
     * @param {number} otherwise value when the log does not have the parameter
     */
    parameter(name, otherwise) {
        return this.parameters.get(name) ?? otherwise;
    }

    /**
     * @param {number} show
     * @param {number} player
     * @param {string} name
     * @param {number} otherwise
     */
    typeParameter(show, player, name, otherwise) {
        const type = this.types[show * PLAYERS + player];
        return this.playerTypes.get(type)?.get(name) ?? otherwise;
    }

    /** Milliseconds of one step. */
    stepMs() {
        const step = this.parameter("simulator_step", 100);
        return step > 0 ? step : 100;
    }

    /** Cycles of one half. */
    halfCycles() {
        return Math.round((this.parameter("half_time", 300) * 1000) / this.stepMs());
    }

    /**
     * @param {number} show
     * @param {number} player
     * @param {number} field X ... CAPACITY
     */
    player(show, player, field) {
        return this.players[(show * PLAYERS + player) * FLOATS + field];
    }

    /**
     * @param {number} show
     * @param {number} field X ... VY
     */
    ball(show, field) {
        return this.balls[show * BALL_FLOATS + field];
    }

    /**
     * @param {number} show
     * @param {number} player
     */
    state(show, player) {
        return this.states[show * PLAYERS + player];
    }

    /**
     * @param {number} show
     * @param {number} player
     */
    onField(show, player) {
        return (this.state(show, player) & ON_FIELD) !== 0;
    }

    /**
     * @param {number} show
     * @param {number} player
     * @param {number} command index in COUNT_NAMES
     */
    count(show, player, command) {
        return this.counts[(show * PLAYERS + player) * COUNTS + command];
    }

    /**
     * Where the floats, the state and the counts of a player of a show begin.
     * @param {number} show
     * @param {number} player
     */
    places(show, player) {
        const row = show * PLAYERS + player;
        return {floats: row * FLOATS, row, counts: row * COUNTS};
    }

    /**
     * Names and scores that hold at a show.
     * @param {number} show
     * @returns {TeamLine}
     */
    teamLine(show) {
        const index = lastAtMost(this.teams.length, show, (at) => this.teams[at].show);
        return (
            this.teams[Math.max(index, 0)] ?? {
                show: 0,
                names: ["", ""],
                score: [0, 0],
                penalties: null,
            }
        );
    }

    /**
     * Names as they are shown: a side nobody has joined gets one too.
     * @param {number} show
     * @returns {[string, string]}
     */
    teamNames(show) {
        const {names} = this.teamLine(show);
        return [names[0] || "Left", names[1] || "Right"];
    }

    /**
     * The show of a time and stoppage count, or the last one before it; 0 when there is none.
     * @param {number} time
     * @param {number} stoppage
     */
    showAt(time, stoppage = 0) {
        const key = time * 65536 + stoppage;
        return Math.max(
            0,
            lastAtMost(this.length, key, (at) => this.times[at] * 65536 + this.stoppages[at]),
        );
    }
}

/**
 * Index of the last of `length` rising keys that is at most `key`, or -1.
 * @param {number} length
 * @param {number} key
 * @param {(index: number) => number} keyOf
 */
export function lastAtMost(length, key, keyOf) {
    let low = 0;
    let high = length;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (keyOf(middle) <= key) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low - 1;
}
