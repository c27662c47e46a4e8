/** What happened when: the marks on the time line and the list of events. */

import {modeKind, modeSide, modeText} from "../log/modes.js";
import {PLAYERS, RED, Store, YELLOW} from "../log/store.js";

/**
 * @typedef {"goal" | "half" | "set piece" | "fault" | "card" | "penalty" | "chapter"} MarkKind
 *
 * @typedef {object} Mark
 * @property {number} show
 * @property {MarkKind} kind
 * @property {number} side 0 left, 1 right, -1 both
 * @property {string} text
 */

/** @type {Readonly<Record<string, MarkKind>>} */
const KIND_OF_MODE = {
    kick_in: "set piece",
    free_kick: "set piece",
    corner_kick: "set piece",
    goal_kick: "set piece",
    drop_ball: "set piece",
    indirect_free_kick: "set piece",
    kick_off: "set piece",
    offside: "fault",
    foul_charge: "fault",
    foul_push: "fault",
    foul_multiple_attack: "fault",
    foul_ballout: "fault",
    back_pass: "fault",
    free_kick_fault: "fault",
    catch_fault: "fault",
    illegal_defense: "fault",
    penalty_kick: "penalty",
    penalty_taken: "penalty",
    penalty_miss: "penalty",
    penalty_score: "penalty",
    first_half_over: "half",
    time_over: "half",
};

const MOST_MARKS = 20000;

export class Marks {
    /** @param {Store} store */
    constructor(store) {
        this.store = store;
        /**
         * In the order of the match.
         * @type {Mark[]}
         */
        this.all = [];
        this.seenShows = 0;
        this.seenChapters = 0;
    }

    /** Takes in the shows that came since the last call. */
    update() {
        for (; this.seenShows < this.store.length; this.seenShows += 1) {
            this.addChapters(this.seenShows);
            this.addShow(this.seenShows);
        }
    }

    /**
     * @param {number} show
     * @param {MarkKind} kind
     * @param {number} side
     * @param {string} text
     */
    add(show, kind, side, text) {
        if (this.all.length < MOST_MARKS) {
            this.all.push({show, kind, side, text});
        }
    }

    /** @param {number} show */
    addChapters(show) {
        const {chapters} = this.store;
        for (; this.seenChapters < chapters.length; this.seenChapters += 1) {
            const chapter = chapters[this.seenChapters];
            if (chapter.show > show) {
                break;
            }
            this.add(show, "chapter", -1, chapter.text);
        }
    }

    /** @param {number} show */
    addShow(show) {
        const {store} = this;
        const teams = store.teamNames(show);
        if (show > 0) {
            this.addHalf(show);
            for (const side of [0, 1]) {
                if (store.scores[show * 2 + side] > store.scores[(show - 1) * 2 + side]) {
                    this.add(
                        show,
                        "goal",
                        side,
                        `Goal for ${teams[side]}, ` +
                            `${store.scores[show * 2]} : ${store.scores[show * 2 + 1]}`,
                    );
                }
            }
            this.addCards(show, teams);
        }
        const mode = store.modes[show];
        if (show === 0 || mode !== store.modes[show - 1]) {
            const kind = KIND_OF_MODE[modeKind(mode)];
            if (kind) {
                this.add(show, kind, modeSide(mode), modeText(mode, teams));
            }
        }
    }

    /** @param {number} show */
    addHalf(show) {
        const {store} = this;
        const cycles = store.halfCycles();
        const [before, now] = [store.times[show - 1], store.times[show]];
        const half = Math.floor((now - 1) / cycles);
        if (
            cycles > 0 &&
            half > Math.floor((before - 1) / cycles) &&
            modeKind(store.modes[show]) === "kick_off" &&
            store.stoppages[show] === 0
        ) {
            this.add(show, "half", -1, half === 1 ? "Second half" : `Extra time, part ${half - 1}`);
        }
    }

    /**
     * @param {number} show
     * @param {readonly string[]} teams
     */
    addCards(show, teams) {
        const {store} = this;
        for (let player = 0; player < PLAYERS; player += 1) {
            const fresh = store.state(show, player) & ~store.state(show - 1, player);
            if (fresh & (YELLOW | RED)) {
                const side = player < 11 ? 0 : 1;
                this.add(
                    show,
                    "card",
                    side,
                    `${fresh & RED ? "Red" : "Yellow"} card for ` +
                        `${teams[side]} ${(player % 11) + 1}`,
                );
            }
        }
    }

    /**
     * The next mark of some kinds after a show, or the last one before it.
     * @param {number} show
     * @param {1 | -1} direction
     * @param {readonly MarkKind[]} [kinds] all when not given
     * @returns {Mark | null}
     */
    next(show, direction, kinds) {
        const list = direction > 0 ? this.all : [...this.all].reverse();
        return (
            list.find(
                (mark) =>
                    (mark.show - show) * direction > 0 && (!kinds || kinds.includes(mark.kind)),
            ) ?? null
        );
    }
}
