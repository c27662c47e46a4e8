/** Where everybody is at a moment that may lie between two shows. */

import {BODY, NECK, PLAYERS, Store, VX, VY, X, Y} from "../log/store.js";

/** Who is further away in the next show was put there; nothing is drawn in between. In metres. */
const LONGEST_MOVE = 4;

/**
 * The angle a part of the way from one to another, the short way round.
 * @param {number} from
 * @param {number} to
 * @param {number} part
 */
export function angleBetween(from, to, part) {
    const turn = ((((to - from + 540) % 360) + 360) % 360) - 180;
    return from + turn * part;
}

export class Frame {
    constructor() {
        this.show = 0;
        /** The part of the way to the next show. */
        this.part = 0;
        this.x = new Float64Array(PLAYERS);
        this.y = new Float64Array(PLAYERS);
        /** Degrees, clockwise from x, as the canvas counts. */
        this.body = new Float64Array(PLAYERS);
        this.head = new Float64Array(PLAYERS);
        this.onField = new Uint8Array(PLAYERS);
        this.ball = {x: 0, y: 0, vx: 0, vy: 0};
    }

    /**
     * @param {Store} store
     * @param {number} position
     * @param {boolean} interpolate
     */
    set(store, position, interpolate) {
        const show = Math.min(Math.floor(position + 1e-6), store.length - 1);
        const next = Math.min(show + 1, store.length - 1);
        const part = interpolate && next > show ? Math.max(0, position - show) : 0;
        this.show = show;
        this.part = part;
        for (let player = 0; player < PLAYERS; player += 1) {
            this.setPlayer(store, player, show, next, part);
        }
        const x = store.ball(show, X);
        const y = store.ball(show, Y);
        const dx = store.ball(next, X) - x;
        const dy = store.ball(next, Y) - y;
        const moves = part > 0 && Math.hypot(dx, dy) < LONGEST_MOVE;
        this.ball.x = moves ? x + dx * part : x;
        this.ball.y = moves ? y + dy * part : y;
        this.ball.vx = store.ball(show, VX);
        this.ball.vy = store.ball(show, VY);
    }

    /**
     * @param {Store} store
     * @param {number} player
     * @param {number} show
     * @param {number} next
     * @param {number} part
     */
    setPlayer(store, player, show, next, part) {
        this.onField[player] = store.onField(show, player) ? 1 : 0;
        const x = store.player(show, player, X);
        const y = store.player(show, player, Y);
        const body = store.player(show, player, BODY);
        const neck = store.player(show, player, NECK);
        const dx = store.player(next, player, X) - x;
        const dy = store.player(next, player, Y) - y;
        const moves = part > 0 && Math.hypot(dx, dy) < LONGEST_MOVE;
        this.x[player] = moves ? x + dx * part : x;
        this.y[player] = moves ? y + dy * part : y;
        this.body[player] = moves
            ? angleBetween(body, store.player(next, player, BODY), part)
            : body;
        this.head[player] =
            this.body[player] +
            (moves ? angleBetween(neck, store.player(next, player, NECK), part) : neck);
    }
}
