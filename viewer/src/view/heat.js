/** Heat map: where a player, or all of a team, was while the ball was in play. */

import {isPlayed} from "../log/modes.js";
import {PLAYERS, Store, X, Y} from "../log/store.js";

/** @typedef {import("./players.js").Scene} Scene */

const CELL = 2;
const HALF_LENGTH = 54;
const HALF_WIDTH = 35;
const COLUMNS = (2 * HALF_LENGTH) / CELL;
const ROWS = (2 * HALF_WIDTH) / CELL;

/** From cold to hot; it also goes from dark to light, so that it reads without colour. */
const RAMP = [
    [20, 11, 53, 0],
    [88, 16, 110, 130],
    [186, 54, 85, 175],
    [249, 142, 8, 205],
    [252, 255, 164, 225],
];

/** Fewer shows than this in the fullest cell do not make it hot. */
const LEAST_HOT = 4;

/**
 * Every cell as the mean of itself and its neighbours: single steps become areas.
 * @param {Float32Array} counts
 */
function spread(counts) {
    const result = new Float32Array(counts.length);
    for (let row = 0; row < ROWS; row += 1) {
        for (let column = 0; column < COLUMNS; column += 1) {
            let sum = 0;
            for (let y = Math.max(0, row - 1); y <= Math.min(ROWS - 1, row + 1); y += 1) {
                for (
                    let x = Math.max(0, column - 1);
                    x <= Math.min(COLUMNS - 1, column + 1);
                    x += 1
                ) {
                    sum += counts[y * COLUMNS + x];
                }
            }
            result[row * COLUMNS + column] = sum / 9;
        }
    }
    return result;
}

export class HeatMap {
    constructor() {
        this.counts = new Float32Array(COLUMNS * ROWS);
        /** Whose it is and up to which show it counts. */
        this.key = "";
        this.upTo = 0;
        this.drawnUpTo = -1;
        this.canvas = document.createElement("canvas");
        this.canvas.width = COLUMNS;
        this.canvas.height = ROWS;
    }

    /**
     * Counts up to a show; going on from where it was costs only the new shows.
     * @param {Store} store
     * @param {number} show
     * @param {readonly number[]} players
     */
    update(store, show, players) {
        const key = players.join();
        if (key !== this.key || show + 1 < this.upTo) {
            this.counts.fill(0);
            this.key = key;
            this.upTo = 0;
            this.drawnUpTo = -1;
        }
        for (; this.upTo <= show; this.upTo += 1) {
            if (!isPlayed(store.modes[this.upTo])) {
                continue;
            }
            for (const player of players) {
                if (store.onField(this.upTo, player)) {
                    this.add(
                        store.player(this.upTo, player, X),
                        store.player(this.upTo, player, Y),
                    );
                }
            }
        }
    }

    /**
     * @param {number} x
     * @param {number} y
     */
    add(x, y) {
        const column = Math.floor((x + HALF_LENGTH) / CELL);
        const row = Math.floor((y + HALF_WIDTH) / CELL);
        if (column >= 0 && column < COLUMNS && row >= 0 && row < ROWS) {
            this.counts[row * COLUMNS + column] += 1;
        }
    }

    /**
     * Colours the cells by the square root of their share of the fullest, which keeps rare places
     * visible.
     */
    paint() {
        const context = this.canvas.getContext("2d");
        if (!context || this.drawnUpTo === this.upTo) {
            return;
        }
        this.drawnUpTo = this.upTo;
        const image = context.createImageData(COLUMNS, ROWS);
        const smooth = spread(spread(this.counts));
        const most = Math.max(LEAST_HOT, ...smooth);
        for (let cell = 0; cell < smooth.length; cell += 1) {
            const heat = Math.sqrt(smooth[cell] / most) * (RAMP.length - 1);
            const step = Math.min(Math.floor(heat), RAMP.length - 2);
            for (let channel = 0; channel < 4; channel += 1) {
                image.data[cell * 4 + channel] =
                    RAMP[step][channel] +
                    (RAMP[step + 1][channel] - RAMP[step][channel]) * (heat - step);
            }
        }
        context.putImageData(image, 0, 0);
    }

    /** @param {Scene} scene */
    draw({context, camera}) {
        this.paint();
        context.imageSmoothingEnabled = true;
        context.imageSmoothingQuality = "high";
        context.drawImage(
            this.canvas,
            camera.screenX(-HALF_LENGTH),
            camera.screenY(-HALF_WIDTH),
            2 * HALF_LENGTH * camera.scale,
            2 * HALF_WIDTH * camera.scale,
        );
    }
}

/**
 * The players a map is about: the chosen ones, or a whole team.
 * @param {"off" | "chosen" | "left" | "right"} whose
 * @param {ReadonlySet<number>} chosen
 * @returns {number[]}
 */
export function mappedPlayers(whose, chosen) {
    if (whose === "chosen") {
        return [...chosen].sort((one, two) => one - two);
    }
    const first = whose === "right" ? PLAYERS / 2 : 0;
    return whose === "off" ? [] : Array.from({length: PLAYERS / 2}, (_, index) => first + index);
}
