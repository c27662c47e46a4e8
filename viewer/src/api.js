/**
 * `window.viewer`: what a script, a notebook or a test may ask of the page.
 *
 * - `state()`: where in the match the page is, and what it plays.
 * - `positions()`: ball and players as they are drawn, in metres.
 * - `logged(show)`: ball and players as the log has them.
 * - `beliefs(player)`: what a player, an index from 0 to 21, believes and draws now, in the pitch's
 *   frame.
 * - `screen(x, y)`: the point of the window where a place of the pitch is drawn.
 * - `seek(show)`, `option(name)`: as the controls do.
 * - `open(files)`: opens `File` objects as if they were dropped.
 * - `timings()`: milliseconds to the first frame and to the whole log, and of the script of the
 *   last frames.
 */

import {BODY, NECK, PLAYERS, VX, VY, X, Y} from "./log/store.js";
import {modeWord} from "./log/modes.js";
import {tableOf} from "./match/table.js";
import {State} from "./state.js";
import {Actions} from "./ui/actions.js";
import {Files} from "./ui/files.js";
import {Stage} from "./view/stage.js";

/** So many frames' times are kept. */
const KEPT_FRAMES = 600;

export class Timings {
    constructor() {
        this.openedAt = 0;
        this.firstFrameMs = -1;
        this.loadedMs = -1;
        /** @type {number[]} */
        this.frames = [];
    }

    opened() {
        this.openedAt = performance.now();
        this.firstFrameMs = -1;
        this.loadedMs = -1;
    }

    /**
     * @param {number} ms script of one frame
     * @param {boolean} match whether a match was drawn
     */
    drawn(ms, match) {
        if (match && this.firstFrameMs < 0) {
            this.firstFrameMs = performance.now() - this.openedAt;
        }
        this.frames.push(ms);
        if (this.frames.length > KEPT_FRAMES) {
            this.frames.shift();
        }
    }

    loaded() {
        this.loadedMs = performance.now() - this.openedAt;
    }
}

/**
 * @param {{state: State, stage: Stage, actions: Actions, files: Files, timings: Timings}} page
 */
export function makeApi({state, stage, actions, files, timings}) {
    const side = (/** @type {number} */ player) => (player < 11 ? "l" : "r");
    return {
        state() {
            const {store, playback, camera, options, reader} = state;
            const show = playback.show;
            return {
                name: state.name,
                version: reader.version,
                badRecords: reader.badRecords,
                shows: store.length,
                show,
                drawn: stage.frame.show,
                position: playback.position,
                time: store.times[show],
                stoppage: store.stoppages[show],
                mode: modeWord(store.modes[show]),
                teams: store.teamNames(show),
                score: [store.scores[show * 2], store.scores[show * 2 + 1]],
                playing: playback.playing,
                speed: playback.speed,
                skipStoppages: playback.skipStoppages,
                atLive: playback.atLive,
                growing: playback.growing,
                follow: state.follow,
                dark: state.dark,
                chosen: [...state.chosen],
                zoom: camera.zoom,
                centre: {x: camera.x, y: camera.y},
                options: {...options},
                marks: state.marks.all.map((mark) => ({...mark})),
                figures: state.hasMatch ? tableOf(state.figures, show) : [],
            };
        },
        positions() {
            const {frame} = stage;
            return {
                show: frame.show,
                ball: {...frame.ball},
                players: Array.from({length: PLAYERS}, (_, player) => ({
                    side: side(player),
                    unum: (player % 11) + 1,
                    x: frame.x[player],
                    y: frame.y[player],
                    body: frame.body[player],
                    head: frame.head[player],
                    onField: frame.onField[player] === 1,
                })),
            };
        },
        /** @param {number} show */
        logged(show) {
            const {store} = state;
            return {
                time: store.times[show],
                ball: {
                    x: store.ball(show, X),
                    y: store.ball(show, Y),
                    vx: store.ball(show, VX),
                    vy: store.ball(show, VY),
                },
                players: Array.from({length: PLAYERS}, (_, player) => ({
                    side: side(player),
                    unum: (player % 11) + 1,
                    x: store.player(show, player, X),
                    y: store.player(show, player, Y),
                    body: store.player(show, player, BODY),
                    neck: store.player(show, player, NECK),
                    onField: store.onField(show, player),
                })),
            };
        },
        /**
         * @param {number} x metres
         * @param {number} y metres
         */
        screen(x, y) {
            const box = stage.canvas.getBoundingClientRect();
            return {x: box.left + state.camera.screenX(x), y: box.top + state.camera.screenY(y)};
        },
        /** @param {number} player index from 0 to 21 */
        beliefs(player) {
            const {store, playback, plans} = state;
            const show = playback.show;
            const [time, stoppage] = [store.times[show], store.stoppages[show]];
            return {
                belief: plans.belief(player, time, stoppage),
                shapes: plans.shapes(player, time, stoppage, state.stepsOf(show)),
            };
        },
        /** @param {number} show */
        seek: (show) => actions.seek(show),
        /** @param {Parameters<Actions["option"]>[0]} name */
        option: (name) => actions.option(name),
        /** @param {File[]} list */
        open: (list) =>
            files.open(
                list.map((file) => ({name: file.webkitRelativePath || file.name, blob: file})),
            ),
        timings: () => ({
            firstFrameMs: timings.firstFrameMs,
            loadedMs: timings.loadedMs,
            frames: [...timings.frames],
        }),
    };
}
