/**
 * Mouse, touch and pen on the pitch: choose, pan, zoom, pinch; live, put things down and move
 * players.
 */

import {State} from "../state.js";
import {Stage} from "../view/stage.js";
import {openTab} from "./panel.js";

/** A press that moves less than this, in pixels, is a click. */
const CLICK_SLACK = 6;
const WHEEL_STEP = 1.0016;

/**
 * What a live page does with the pitch; each answers whether it took the gesture.
 * @typedef {object} Hands
 * @property {(x: number, y: number) => boolean} place at metres
 * @property {(player: number) => boolean} mayMove
 * @property {(player: number, x: number, y: number, done: boolean) => void} move
 */

export class Gestures {
    /**
     * @param {State} state
     * @param {Stage} stage
     * @param {Hands} hands
     */
    constructor(state, stage, hands) {
        this.state = state;
        this.stage = stage;
        this.hands = hands;
        /**
         * Fingers that are down.
         * @type {Map<number, {x: number, y: number}>}
         */
        this.fingers = new Map();
        this.travelled = 0;
        /** The player that is dragged, or -1. */
        this.dragged = -1;
        const {canvas} = stage;
        canvas.addEventListener("pointerdown", (event) => this.down(event));
        canvas.addEventListener("pointermove", (event) => this.move(event));
        canvas.addEventListener("pointerup", (event) => this.up(event, true));
        canvas.addEventListener("pointercancel", (event) => this.up(event, false));
        canvas.addEventListener("wheel", (event) => this.wheel(event), {passive: false});
        canvas.addEventListener("dblclick", (event) => {
            const {x, y} = this.place(event);
            this.zoomAt(2, x, y);
        });
    }

    /** @param {MouseEvent} event */
    place(event) {
        const box = this.stage.canvas.getBoundingClientRect();
        return {x: event.clientX - box.left, y: event.clientY - box.top};
    }

    /**
     * @param {number} factor
     * @param {number} x
     * @param {number} y
     */
    zoomAt(factor, x, y) {
        this.state.camera.zoomAt(factor, x, y);
        this.state.changed();
    }

    /** @param {PointerEvent} event */
    down(event) {
        if (event.button !== 0) {
            return;
        }
        const place = this.place(event);
        this.stage.canvas.setPointerCapture(event.pointerId);
        this.fingers.set(event.pointerId, place);
        if (this.fingers.size === 1) {
            this.travelled = 0;
            const player = this.stage.playerAt(place.x, place.y);
            this.dragged = player >= 0 && this.hands.mayMove(player) ? player : -1;
        } else {
            this.dragged = -1;
        }
    }

    /** @param {PointerEvent} event */
    move(event) {
        const before = this.fingers.get(event.pointerId);
        if (!before) {
            return;
        }
        const now = this.place(event);
        this.travelled += Math.hypot(now.x - before.x, now.y - before.y);
        this.fingers.set(event.pointerId, now);
        const {camera} = this.state;
        if (this.fingers.size === 2) {
            this.pinch(event.pointerId, before, now);
        } else if (this.dragged >= 0) {
            this.hands.move(this.dragged, camera.fieldX(now.x), camera.fieldY(now.y), false);
        } else if (this.travelled > CLICK_SLACK) {
            this.stage.canvas.classList.add("dragging");
            this.state.follow = "none";
            camera.pan(now.x - before.x, now.y - before.y);
        }
        this.state.changed();
    }

    /**
     * Two fingers: their distance zooms, their middle pans.
     * @param {number} id of the finger that moved
     * @param {{x: number, y: number}} before
     * @param {{x: number, y: number}} now
     */
    pinch(id, before, now) {
        const other = [...this.fingers].find(([finger]) => finger !== id)?.[1];
        if (!other) {
            return;
        }
        const was = Math.hypot(before.x - other.x, before.y - other.y);
        const is = Math.hypot(now.x - other.x, now.y - other.y);
        this.state.camera.pan((now.x - before.x) / 2, (now.y - before.y) / 2);
        if (was > 0 && is > 0) {
            this.zoomAt(is / was, (now.x + other.x) / 2, (now.y + other.y) / 2);
        }
    }

    /**
     * @param {PointerEvent} event
     * @param {boolean} meant false when the system took the gesture away
     */
    up(event, meant) {
        if (!this.fingers.delete(event.pointerId)) {
            return;
        }
        const place = this.place(event);
        const {camera} = this.state;
        const click = meant && this.travelled <= CLICK_SLACK && this.fingers.size === 0;
        this.stage.canvas.classList.remove("dragging");
        if (click) {
            this.click(place, event.shiftKey || event.ctrlKey || event.metaKey);
        } else if (this.dragged >= 0 && meant) {
            this.hands.move(this.dragged, camera.fieldX(place.x), camera.fieldY(place.y), true);
        }
        this.dragged = -1;
        this.state.changed();
    }

    /**
     * @param {{x: number, y: number}} place
     * @param {boolean} more
     */
    click(place, more) {
        const {camera} = this.state;
        if (this.hands.place(camera.fieldX(place.x), camera.fieldY(place.y))) {
            return;
        }
        const player = this.stage.playerAt(place.x, place.y);
        if (player >= 0) {
            this.state.choose(player, more);
            openTab("player");
        } else if (!more) {
            this.state.chosen.clear();
        }
    }

    /** @param {WheelEvent} event */
    wheel(event) {
        event.preventDefault();
        const lines = event.deltaMode === WheelEvent.DOM_DELTA_LINE ? 16 : 1;
        const {x, y} = this.place(event);
        this.zoomAt(WHEEL_STEP ** (-event.deltaY * lines), x, y);
    }
}
