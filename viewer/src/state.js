/** What the whole page shares: the match, where in it we are, and how it is shown. */

import {Commands} from "./log/commands.js";
import {Plans} from "./log/plans.js";
import {Reader} from "./log/reader.js";
import {Store} from "./log/store.js";
import {Figures} from "./match/figures.js";
import {Marks} from "./match/marks.js";
import {Playback} from "./match/playback.js";
import {Camera} from "./view/camera.js";

/**
 * @typedef {object} Options what is drawn; each is a switch of the page
 * @property {boolean} interpolate
 * @property {boolean} cones
 * @property {boolean} stamina
 * @property {boolean} numbers
 * @property {boolean} marks
 * @property {boolean} trail
 * @property {boolean} speed
 * @property {boolean} offside
 * @property {boolean} trueSize
 * @property {boolean} beliefs
 * @property {"off" | "chosen" | "left" | "right"} heat
 * @property {"off" | "chosen" | "left" | "right"} passes
 */

/** Whom the camera follows: nobody, the ball, or a player's index. */
/** @typedef {"none" | "ball" | number} Follow */

export class State {
    constructor() {
        this.name = "";
        this.commands = new Commands();
        this.plans = new Plans();
        this.camera = new Camera();
        /** Chosen players, the last one chosen last. */
        this.chosen = /** @type {Set<number>} */ (new Set());
        this.follow = /** @type {Follow} */ ("none");
        /** @type {Options} */
        this.options = {
            interpolate: true,
            cones: false,
            stamina: true,
            numbers: true,
            marks: true,
            trail: true,
            speed: true,
            offside: false,
            trueSize: false,
            beliefs: true,
            heat: "off",
            passes: "off",
        };
        this.dark = false;
        /** Counts every change that needs a new picture. */
        this.changes = 0;
        this.store = new Store();
        this.reader = new Reader(this.store);
        this.marks = new Marks(this.store);
        this.figures = new Figures(this.store);
        this.playback = new Playback(this.store);
    }

    /**
     * Forgets the match and waits for the records of the next.
     * @param {string} name
     */
    reset(name) {
        this.name = name;
        this.store = new Store();
        this.reader = new Reader(this.store);
        this.marks = new Marks(this.store);
        this.figures = new Figures(this.store);
        const {speed, skipStoppages} = this.playback;
        this.playback = new Playback(this.store);
        this.playback.speed = speed;
        this.playback.skipStoppages = skipStoppages;
        this.commands.clear();
        this.plans.clear();
        this.chosen.clear();
        this.follow = "none";
        this.changed();
    }

    changed() {
        this.changes += 1;
    }

    /** Takes in what the reader added to the store. */
    grown() {
        this.marks.update();
        this.figures.update();
        this.changed();
    }

    get hasMatch() {
        return this.store.length > 0;
    }

    /** The player whose card is shown, or -1. */
    get primary() {
        return [...this.chosen].pop() ?? -1;
    }

    /**
     * Chooses a player; with `more` beside those chosen already. Choosing again lets go.
     * @param {number} player
     * @param {boolean} more
     */
    choose(player, more) {
        const was = this.chosen.has(player);
        if (!more) {
            this.chosen.clear();
        }
        if (was) {
            this.chosen.delete(player);
        } else {
            this.chosen.add(player);
        }
        this.changed();
    }

    /**
     * How many shows have the time of this one.
     * @param {number} show
     */
    stepsOf(show) {
        const {store} = this;
        const time = store.times[show];
        return store.stoppages[store.showAt(time, 65535)] + 1;
    }
}
