/** Everything a user can do, once: the buttons and the keys call these. */

import {State} from "../state.js";
import {Stage} from "../view/stage.js";
import {savePicture} from "./picture.js";

/** @typedef {import("../match/marks.js").MarkKind} MarkKind */

const ZOOM_STEP = 1.35;
const WHOSE = /** @type {const} */ (["off", "left", "right", "chosen"]);

/** @type {readonly MarkKind[]} */
const GOALS = ["goal", "penalty"];

/** A goal is shown from this many shows before it. */
const BEFORE_GOAL = 40;

export class Actions {
    /**
     * @param {State} state
     * @param {Stage} stage
     */
    constructor(state, stage) {
        this.state = state;
        this.stage = stage;
    }

    toggle() {
        if (this.state.hasMatch) {
            this.state.playback.toggle();
            this.state.changed();
        }
    }

    /** @param {number} shows */
    step(shows) {
        this.state.playback.step(shows);
        this.state.changed();
    }

    /** @param {number} position */
    seek(position) {
        this.state.playback.seek(position);
        this.state.changed();
    }

    start() {
        this.seek(0);
    }

    end() {
        this.seek(this.state.playback.last);
    }

    /**
     * The next or previous event of any kind.
     * @param {1 | -1} direction
     */
    event(direction) {
        const mark = this.state.marks.next(this.state.playback.show, direction);
        if (mark) {
            this.seek(mark.show);
        }
    }

    /**
     * The next or previous goal, a little before it; from there the same goal is not found again.
     * @param {1 | -1} direction
     */
    goal(direction) {
        const {marks, playback} = this.state;
        const mark = marks.next(playback.show + BEFORE_GOAL, direction, GOALS);
        if (mark) {
            this.seek(mark.show - BEFORE_GOAL);
        }
    }

    /** @param {number} steps */
    speed(steps) {
        this.state.playback.changeSpeed(steps);
        this.state.changed();
    }

    skipStoppages() {
        const {playback} = this.state;
        playback.skipStoppages = !playback.skipStoppages;
        this.state.changed();
    }

    goLive() {
        if (this.state.playback.growing) {
            this.state.playback.goLive();
            this.state.changed();
        }
    }

    /** @param {1 | -1} direction */
    zoom(direction) {
        const {camera} = this.state;
        camera.zoomAt(
            direction > 0 ? ZOOM_STEP : 1 / ZOOM_STEP,
            camera.width / 2,
            camera.height / 2,
        );
        this.state.changed();
    }

    wholePitch() {
        this.state.follow = "none";
        this.state.camera.reset();
        this.state.changed();
    }

    followBall() {
        this.stage.setFollow(this.state.follow === "ball" ? "none" : "ball");
    }

    /** Follows the chosen player, or nobody when it is followed already. */
    followChosen() {
        const {primary, follow} = this.state;
        if (primary >= 0) {
            this.stage.setFollow(follow === primary ? "none" : primary);
        }
    }

    /**
     * Turns one of the switches of the view.
     * @param {"interpolate" | "cones" | "stamina" | "numbers" | "marks" | "trail" | "speed" |
     *     "offside"
     *     | "trueSize" | "beliefs"} name
     */
    option(name) {
        const {options} = this.state;
        options[name] = !options[name];
        this.state.changed();
    }

    /**
     * Goes through nobody, left, right and the chosen players.
     * @param {"heat" | "passes"} map
     */
    nextMap(map) {
        const {options} = this.state;
        options[map] = WHOSE[(WHOSE.indexOf(options[map]) + 1) % WHOSE.length];
        this.state.changed();
    }

    /** @param {1 | -1} direction */
    choosePlayer(direction) {
        const {primary, store, playback} = this.state;
        for (let step = 1; step <= 22 && this.state.hasMatch; step += 1) {
            const from = primary < 0 && direction < 0 ? 22 : primary;
            const player = (from + direction * step + 44) % 22;
            if (store.onField(playback.show, player)) {
                this.state.choose(player, false);
                return;
            }
        }
    }

    chooseNobody() {
        this.state.chosen.clear();
        this.state.changed();
    }

    theme() {
        this.state.dark = !this.state.dark;
        this.state.changed();
    }

    picture() {
        savePicture(this.state, this.stage);
    }
}
