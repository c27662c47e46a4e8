/** The score board: names, score, play mode in words, cycle and clock. */

import {modeText} from "../log/modes.js";
import {State} from "../state.js";
import {byId, setText} from "./dom.js";

/**
 * Minutes and seconds of a time of the match.
 * @param {number} cycles
 * @param {number} stepMs
 */
export function clockText(cycles, stepMs) {
    const seconds = Math.floor((cycles * stepMs) / 1000);
    return `${Math.floor(seconds / 60)}:${String(seconds % 60).padStart(2, "0")}`;
}

/**
 * The score as the board shows it, with a shoot-out's goals in brackets.
 * @param {State} state
 * @param {number} show
 */
export function scoreText({store}, show) {
    if (store.length === 0) {
        return "0 : 0";
    }
    const score = `${store.scores[show * 2]} : ${store.scores[show * 2 + 1]}`;
    const {penalties} = store.teamLine(show);
    return penalties ? `${score} (${penalties[0]} : ${penalties[2]})` : score;
}

/**
 * Where in the match a show is, in words: cycle and, in a stoppage, the step of it.
 * @param {State} state
 * @param {number} show
 */
export function cycleText({store}, show) {
    const stoppage = store.stoppages[show];
    return `Cycle ${store.times[show]}${stoppage > 0 ? ` + ${stoppage}` : ""}`;
}

export class Board {
    /** @param {State} state */
    constructor(state) {
        this.state = state;
        this.names = [byId("name-left"), byId("name-right")];
        this.score = byId("score");
        this.mode = byId("mode");
        this.cycle = byId("cycle");
        this.clock = byId("clock");
    }

    /** @param {number} show */
    update(show) {
        const {state} = this;
        if (!state.hasMatch) {
            setText(
                this.mode,
                state.reader.version > 0 ? "Waiting for the first step" : "No match yet",
            );
            this.names.forEach((name, side) => setText(name, side ? "Right" : "Left"));
            for (const element of [this.cycle, this.clock]) {
                setText(element, "");
            }
            setText(this.score, "0 : 0");
            return;
        }
        const {store} = state;
        const names = store.teamNames(show);
        this.names.forEach((name, side) => setText(name, names[side]));
        setText(this.score, scoreText(state, show));
        setText(this.mode, modeText(store.modes[show], names));
        setText(this.cycle, cycleText(state, show));
        setText(this.clock, clockText(store.times[show], store.stepMs()));
    }
}
