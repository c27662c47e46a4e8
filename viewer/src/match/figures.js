/**
 * The figures of both teams and of each player up to any show. They are those that match-stats
 * prints; docs/statistics.md defines them.
 */

import {modeKind, modeSide, modeWord} from "../log/modes.js";
import {
    CAPACITY,
    CATCH,
    CATCH_FAILED,
    KICK,
    KICK_FAILED,
    PLAYERS,
    RECOVERY,
    RED,
    STAMINA,
    Store,
    TACKLE,
    TACKLE_FAILED,
    VX,
    VY,
    X,
    Y,
    YELLOW,
    lastAtMost,
} from "../log/store.js";
import {BallChain, sideOf} from "./ballchain.js";
import {Sums, Tallies, shareOf} from "./tallies.js";

/** @typedef {import("./ballchain.js").Pass} Pass */
/** @typedef {import("./ballchain.js").Touch} Touch */

/** Whoever is farther off than this after a step was placed there: metres. */
const LONGEST_STEP = 2;
const HALF_LENGTH = 52.5;
const AREA_LENGTH = 16.5;
const AREA_HALF_WIDTH = 20.16;
const DASHES = 1;
const MOVES = 4;

/** Columns of the sums of the teams, left then right. */
export const POSSESSION = 0,
    DOMINATION = 2,
    METRES = 4,
    SPENT = 6;
const TEAM_COLUMNS = 8;

/**
 * What a play mode adds to a team's count.
 * @type {Readonly<Record<string, string>>}
 */
const COUNTED_MODES = {
    offside: "offsides",
    kick_in: "kickIns",
    corner_kick: "cornerKicks",
    goal_kick: "goalKicks",
    free_kick: "freeKicks",
    indirect_free_kick: "freeKicks",
    penalty_kick: "freeKicks",
    foul_charge: "fouls",
    foul_push: "fouls",
    foul_multiple_attack: "fouls",
    foul_ballout: "fouls",
    back_pass: "fouls",
    free_kick_fault: "fouls",
    catch_fault: "fouls",
    illegal_defense: "fouls",
};
const BALL_WAS_OUT = new Set(["kick_in", "corner_kick", "goal_kick"]);

export class Figures {
    /** @param {Store} store */
    constructor(store) {
        this.store = store;
        /** Number of shows that were taken in. */
        this.length = 0;
        this.changes = 0;
        this.mode = 0;
        this.tallies = new Tallies();
        this.teamSums = new Sums(TEAM_COLUMNS);
        this.metres = new Sums(PLAYERS);
        /** @type {Pass[]} */
        this.passes = [];
        this.chain = new BallChain(
            (key, player, show) => this.count(key, player, show),
            (pass) => this.passes.push(pass),
        );
        /** Which side caught the ball in this show or the last one, or -1. */
        this.caught = -1;
    }

    /** Takes in the shows that came since the last call. */
    update() {
        const {chain, store} = this;
        chain.goalHalfWidth = store.parameter("goal_width", 14.02) / 2;
        chain.ballDecay = store.parameter("ball_decay", 0.94);
        for (; this.length < store.length; this.length += 1) {
            this.teamSums.begin(this.length);
            this.metres.begin(this.length);
            this.followPlayers(this.length);
            this.followBall(this.length);
        }
    }

    /**
     * Counts something for a player and its team.
     * @param {string} key
     * @param {number} player
     * @param {number} show
     */
    count(key, player, show) {
        this.tallies.add(key, `player ${player}`, show);
        this.tallies.add(key, `team ${sideOf(player)}`, show);
    }

    /** @param {number} show */
    followPlayers(show) {
        const {store} = this;
        for (let player = 0; player < PLAYERS && show > 0; player += 1) {
            const now = store.state(show, player);
            const before = store.state(show - 1, player);
            if (now & ~before & YELLOW) {
                this.count("yellowCards", player, show);
            }
            if (now & ~before & RED) {
                this.count("redCards", player, show);
            }
            if (now & before & 1) {
                this.followPlayer(show, player);
            }
        }
    }

    /**
     * @param {number} show
     * @param {number} player
     */
    followPlayer(show, player) {
        const {store} = this;
        const step = Math.hypot(
            store.player(show, player, X) - store.player(show - 1, player, X),
            store.player(show, player, Y) - store.player(show - 1, player, Y),
        );
        if (
            store.count(show, player, MOVES) === store.count(show - 1, player, MOVES) &&
            step <= LONGEST_STEP
        ) {
            this.metres.add(show, player, step);
            this.teamSums.add(show, METRES + sideOf(player), step);
        }
        this.teamSums.add(show, SPENT + sideOf(player), this.staminaSpent(show, player));
    }

    /**
     * What was won back comes from the capacity. Where that is not told, the usual increase stands
     * for it, in cycles with a dash.
     * @param {number} show
     * @param {number} player
     */
    staminaSpent(show, player) {
        const {store} = this;
        const change =
            store.player(show - 1, player, STAMINA) - store.player(show, player, STAMINA);
        const capacity =
            store.player(show - 1, player, CAPACITY) - store.player(show, player, CAPACITY);
        if (Number.isFinite(capacity)) {
            return Math.max(0, change + capacity);
        }
        if (store.count(show, player, DASHES) === store.count(show - 1, player, DASHES)) {
            return 0;
        }
        const increase = store.typeParameter(show, player, "stamina_inc_max", 45);
        return Math.max(0, change + store.player(show, player, RECOVERY) * increase);
    }

    /**
     * A step's touches come before the referee's words about them, which the log tells first.
     * @param {number} show
     */
    followBall(show) {
        const {store, chain} = this;
        const first = this.changes;
        while (
            this.changes < store.modeChanges.length &&
            store.modeChanges[this.changes].show <= show
        ) {
            this.changes += 1;
        }
        const modes = store.modeChanges.slice(first, this.changes).map((change) => change.mode);
        const inPlay =
            modeWord(this.mode) === "play_on" || modeWord(store.modes[show]) === "play_on";
        const offside = modes.length > 0 && modeKind(modes[0]) === "offside";
        const touches = inPlay && !offside && show > 0 ? this.touchesIn(show) : [];
        if (touches.some((touch) => sideOf(touch.player) !== sideOf(touches[0].player))) {
            chain.duel(show);
        } else if (touches.length > 0) {
            chain.touch(touches[0]);
        }
        const catcher = touches.filter((touch) => touch.kind === "catch").pop();
        const caught = catcher ? sideOf(catcher.player) : -1;
        this.caught = caught >= 0 ? caught : this.caught;
        for (const mode of modes) {
            this.changeMode(mode, show);
        }
        this.caught = caught;
        if (modeWord(this.mode) === "play_on") {
            this.countPlay(show);
        }
    }

    /**
     * @param {number} show
     * @returns {Touch[]}
     */
    touchesIn(show) {
        const {store} = this;
        /** @type {Touch[]} */
        const touches = [];
        for (let player = 0; player < PLAYERS; player += 1) {
            const kind = touchKind(store.state(show, player), store.state(show - 1, player));
            if (kind) {
                touches.push({
                    kind,
                    player,
                    show,
                    place: this.ballPlace(show - 1),
                    ball: {
                        ...this.ballPlace(show),
                        vx: store.ball(show, VX),
                        vy: store.ball(show, VY),
                    },
                });
            }
        }
        return touches;
    }

    /** @param {number} show */
    ballPlace(show) {
        return {x: this.store.ball(show, X), y: this.store.ball(show, Y)};
    }

    /**
     * @param {number} mode
     * @param {number} show
     */
    changeMode(mode, show) {
        const kind = modeKind(mode);
        const side = modeSide(mode);
        const place = this.ballPlace(Math.max(0, show - 1));
        if (modeWord(this.mode) === "play_on" && modeWord(mode) !== "play_on") {
            if (kind === "goal") {
                this.chain.goal(side, show);
            } else if (kind === "offside") {
                this.chain.offside(side, place, show);
            } else if (BALL_WAS_OUT.has(kind)) {
                this.chain.ballOut(place, show);
            } else {
                this.chain.stop(show);
            }
        }
        const key = COUNTED_MODES[kind];
        // The free kick after a catch is the goalkeeper's own clearance.
        if (key && side >= 0 && !(key === "freeKicks" && this.caught === side)) {
            this.tallies.add(key, `team ${side}`, show);
        }
        this.mode = mode;
    }

    /** @param {number} show */
    countPlay(show) {
        const {store, teamSums} = this;
        const x = store.ball(show, X);
        if (x !== 0) {
            teamSums.add(show, DOMINATION + (x > 0 ? 0 : 1), 1);
        }
        const {owner} = this.chain;
        if (owner >= 0) {
            teamSums.add(show, POSSESSION + owner, 1);
            if (show > 0 && this.inArea(show, owner) && !this.inArea(show - 1, owner)) {
                this.tallies.add("areaEntries", `team ${owner}`, show);
            }
        }
    }

    /**
     * Whether the ball is in the penalty area that a side attacks.
     * @param {number} show
     * @param {number} side
     */
    inArea(show, side) {
        const {x, y} = this.ballPlace(show);
        const ahead = side === 0 ? x : -x;
        return (
            ahead > HALF_LENGTH - AREA_LENGTH &&
            ahead <= HALF_LENGTH &&
            Math.abs(y) < AREA_HALF_WIDTH
        );
    }

    /**
     * The left team's share of the ball, from 0 to 1; a half when nobody had it yet.
     * @param {number} show
     */
    possessionShare(show) {
        return shareOf(this.teamSums.at(show, POSSESSION), this.teamSums.at(show, POSSESSION + 1));
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
     * A count of a player up to a show.
     * @param {string} key
     * @param {number} player
     * @param {number} show
     */
    ofPlayer(key, player, show) {
        return this.tallies.count(key, `player ${player}`, show);
    }
}

/**
 * What a player did to the ball in a step; "" when nothing, or when it failed. A tackle and a catch
 * go on for some cycles, but meet the ball in the first.
 * @param {number} now
 * @param {number} before
 * @returns {Touch["kind"] | ""}
 */
function touchKind(now, before) {
    if (now & KICK && !(now & KICK_FAILED)) {
        return "kick";
    }
    if (now & TACKLE && !(now & TACKLE_FAILED) && !(before & TACKLE)) {
        return "tackle";
    }
    return now & CATCH && !(now & CATCH_FAILED) && !(before & CATCH) ? "catch" : "";
}
