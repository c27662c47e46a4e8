/** Where in the match we are, and how it goes on. */

import {isPlayed, modeKind} from "../log/modes.js";
import {Store} from "../log/store.js";

export const SPEEDS = [0.25, 0.5, 1, 2, 4, 8, 16];

/**
 * With stoppages skipped, this many shows are seen after the whistle and before the ball is played
 * again.
 */
const SEEN_AFTER_WHISTLE = 8;
const SEEN_AFTER_GOAL = 20;
const SEEN_BEFORE_PLAY = 5;

/**
 * At the end of a live match a new step is reached in this time; it hides the jump and keeps what
 * is seen current.
 */
const LIVE_GLIDE_MS = 25;

export class Playback {
    /** @param {Store} store */
    constructor(store) {
        this.store = store;
        /** Index of the show, with a fraction between two. */
        this.position = 0;
        this.playing = false;
        this.speed = 1;
        this.skipStoppages = false;
        /** Whether more shows will come. */
        this.growing = false;
        /** Whether to stay at the newest show of a live match. */
        this.atLive = false;
    }

    get last() {
        return Math.max(0, this.store.length - 1);
    }

    /** The show that is seen: the last one that was reached. */
    get show() {
        return Math.min(Math.floor(this.position + 1e-6), this.last);
    }

    play() {
        if (this.position >= this.last && !this.growing) {
            this.position = 0;
        }
        this.playing = true;
        this.atLive = this.growing && this.position >= this.last;
    }

    pause() {
        this.playing = false;
        this.atLive = false;
        this.position = this.show;
    }

    toggle() {
        if (this.playing || this.atLive) {
            this.pause();
        } else {
            this.play();
        }
    }

    /** @param {number} position */
    seek(position) {
        this.position = Math.min(Math.max(position, 0), this.last);
        this.atLive = false;
    }

    /** Goes to the newest show and stays there. */
    goLive() {
        this.playing = true;
        this.atLive = true;
    }

    /** @param {number} shows forward, or backward when negative */
    step(shows) {
        this.playing = false;
        this.seek(this.show + shows);
    }

    /** @param {number} steps up or down the list of speeds */
    changeSpeed(steps) {
        const index = SPEEDS.indexOf(this.speed) + steps;
        this.speed = SPEEDS[Math.min(Math.max(index, 0), SPEEDS.length - 1)];
    }

    /**
     * Lets time pass.
     * @param {number} ms
     */
    advance(ms) {
        if (this.atLive) {
            const lag = this.last - this.position;
            this.position =
                lag > 2 ? this.last : Math.min(this.last, this.position + ms / LIVE_GLIDE_MS);
            return;
        }
        if (!this.playing) {
            return;
        }
        this.position += (Math.min(ms, 250) / this.store.stepMs()) * this.speed;
        if (this.skipStoppages) {
            this.position = this.afterStoppage(this.position);
        }
        if (this.position >= this.last) {
            this.position = this.last;
            this.atLive = this.growing;
            this.playing = this.growing;
        }
    }

    /**
     * The position itself, or when it is in a stoppage, one shortly before play goes on.
     * @param {number} position
     */
    afterStoppage(position) {
        const {modes, length} = this.store;
        const show = Math.floor(position);
        if (show >= length || isPlayed(modes[show])) {
            return position;
        }
        let first = show;
        while (first > 0 && !isPlayed(modes[first - 1])) {
            first -= 1;
        }
        let after = show;
        while (after < length && !isPlayed(modes[after])) {
            after += 1;
        }
        const seen = modeKind(modes[first]) === "goal" ? SEEN_AFTER_GOAL : SEEN_AFTER_WHISTLE;
        const target = after - SEEN_BEFORE_PLAY;
        return after < length && show >= first + seen && target > position ? target : position;
    }
}
