/** The time line: a slider with marks that tell what they are. */

import {modeText} from "../log/modes.js";
import {State} from "../state.js";
import {byId, fitted, input, make, setAttribute, styleValue} from "./dom.js";
import {cycleText} from "./board.js";

/** @typedef {import("../match/marks.js").Mark} Mark */

/**
 * Goals, halves and chapters become buttons; there may be this many before they would crowd each
 * other out.
 */
const MOST_BUTTONS = 60;

/** A tip names a mark that is this near, in pixels. */
const NEAR = 7;

/**
 * Heights of the ticks, in pixels.
 * @type {Readonly<Record<string, number>>}
 */
const HEIGHTS = {goal: 18, half: 18, chapter: 14, penalty: 14, card: 12, fault: 9, "set piece": 6};

export class Timeline {
    /**
     * @param {State} state
     * @param {(position: number) => void} seek
     */
    constructor(state, seek) {
        this.state = state;
        this.seek = seek;
        this.slider = input("slider");
        this.ticks = /** @type {HTMLCanvasElement} */ (byId("ticks"));
        this.buttons = byId("marks");
        this.tip = byId("tip");
        this.drawn = "";
        this.slider.addEventListener("input", () => seek(Number(this.slider.value)));
        const line = byId("timeline");
        line.addEventListener("pointermove", (event) => this.showTip(event));
        line.addEventListener("pointerleave", () => {
            this.tip.hidden = true;
        });
    }

    /** @param {number} show */
    update(show) {
        const {state, slider} = this;
        const last = state.playback.last;
        if (slider.max !== String(last)) {
            slider.max = String(last);
        }
        if (slider.value !== String(show)) {
            slider.value = String(show);
        }
        if (state.hasMatch) {
            setAttribute(
                slider,
                "aria-valuetext",
                `${cycleText(state, show)}, ${this.mode(show)}`,
            );
        }
        this.drawTicks(show);
        this.placeButtons();
    }

    /** @param {number} show */
    mode(show) {
        const {store} = this.state;
        return modeText(store.modes[show], store.teamNames(show));
    }

    /** @param {number} show */
    left(show) {
        return show / Math.max(1, this.state.playback.last);
    }

    /** @param {number} show */
    drawTicks(show) {
        const fit = fitted(this.ticks);
        if (!fit) {
            return;
        }
        const {context, width, height} = fit;
        const middle = height / 2;
        context.fillStyle = styleValue("--line");
        context.fillRect(0, middle - 2.5, width, 5);
        context.fillStyle = styleValue("--accent");
        context.fillRect(0, middle - 2.5, width * this.left(show), 5);
        context.fillStyle = styleValue("--quiet");
        for (const mark of this.state.marks.all) {
            const size = HEIGHTS[mark.kind];
            context.globalAlpha = mark.kind === "set piece" ? 0.45 : 0.9;
            context.fillRect(this.left(mark.show) * width - 0.75, middle - size / 2, 1.5, size);
        }
        context.globalAlpha = 1;
    }

    /** The marks that can be clicked are made anew only when there are others. */
    placeButtons() {
        const marks = this.state.marks.all
            .filter((mark) => ["goal", "half", "chapter"].includes(mark.kind))
            .slice(0, MOST_BUTTONS);
        const key = `${this.state.playback.last} ${marks.length} ${this.state.name}`;
        if (key === this.drawn) {
            return;
        }
        this.drawn = key;
        this.buttons.replaceChildren(...marks.map((mark) => this.makeButton(mark)));
    }

    /** @param {Mark} mark */
    makeButton(mark) {
        const element = make("button", `${mark.kind} ${mark.side === 1 ? "right" : "left"}`);
        if (mark.kind !== "goal") {
            element.textContent =
                mark.kind === "chapter" ? mark.text : mark.text === "Full time" ? "" : "½";
        }
        const text = `${mark.text}, cycle ${this.state.store.times[mark.show]}`;
        element.title = text;
        element.setAttribute("aria-label", text);
        element.style.left = `${100 * this.left(mark.show)}%`;
        element.addEventListener("click", () => this.seek(mark.show));
        return element;
    }

    /** @param {PointerEvent} event */
    showTip(event) {
        const {state} = this;
        if (!state.hasMatch || event.pointerType === "touch") {
            return;
        }
        const box = this.ticks.getBoundingClientRect();
        const x = Math.min(Math.max(event.clientX - box.left, 0), box.width);
        const show = Math.round((x / box.width) * state.playback.last);
        const near = state.marks.all.filter(
            (mark) => Math.abs(this.left(mark.show) * box.width - x) <= NEAR,
        );
        near.sort((one, two) => HEIGHTS[two.kind] - HEIGHTS[one.kind]);
        const mark = near[0];
        this.tip.textContent = mark
            ? `${mark.text}, ${cycleText(state, mark.show).toLowerCase()}`
            : cycleText(state, show);
        this.tip.hidden = false;
        const half = this.tip.offsetWidth / 2;
        this.tip.style.left = `${Math.min(Math.max(x, half), box.width - half)}px`;
    }
}
