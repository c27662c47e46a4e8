/** The ball with its trail and speed, and the offside lines. */

import {PLAYERS, Store, VX, VY, X, Y} from "../log/store.js";

/** @typedef {import("./players.js").Scene} Scene */

const BALL_RADIUS = 0.085;
const LEAST_RADIUS = 4.2;
const TRAIL_SHOWS = 30;
const HALF_LENGTH = 52.5;

/** The ball flies at most 3 m a step; further, it was put there. */
const LONGEST_FLIGHT = 4;

/** Slower than this, in m/s, no speed is written. */
const SLOW = 0.5;

/** @param {Scene} scene */
export function drawBall(scene) {
    const {context, camera, frame, colours, options} = scene;
    if (options.trail) {
        drawTrail(scene);
    }
    const x = camera.screenX(frame.ball.x);
    const y = camera.screenY(frame.ball.y);
    const radius = options.trueSize
        ? Math.max(BALL_RADIUS * camera.scale, 2)
        : Math.max(BALL_RADIUS * camera.scale, LEAST_RADIUS);
    context.fillStyle = colours.ball;
    context.strokeStyle = "#000000";
    context.lineWidth = 1.6;
    context.beginPath();
    context.arc(x, y, radius, 0, 2 * Math.PI);
    context.fill();
    context.stroke();
    const speed = ballSpeed(scene.store, frame.show);
    if (options.speed && speed > SLOW) {
        label(scene, `${speed.toFixed(1)} m/s`, x, y + radius + 9);
    }
}

/**
 * Metres a second.
 * @param {Store} store
 * @param {number} show
 */
export function ballSpeed(store, show) {
    return (Math.hypot(store.ball(show, VX), store.ball(show, VY)) * 1000) / store.stepMs();
}

/**
 * Small text with a shadow that keeps it legible on grass and discs.
 * @param {Scene} scene
 * @param {string} text
 * @param {number} x
 * @param {number} y
 */
export function label({context, colours}, text, x, y) {
    context.font = "600 11px system-ui, sans-serif";
    context.textAlign = "center";
    context.textBaseline = "middle";
    context.lineWidth = 3;
    context.strokeStyle = "rgba(0,0,0,0.6)";
    context.lineJoin = "round";
    context.strokeText(text, x, y);
    context.fillStyle = colours.ink;
    context.fillText(text, x, y);
}

/** @param {Scene} scene */
function drawTrail({context, camera, store, frame, colours}) {
    context.strokeStyle = colours.ball;
    context.lineWidth = 2.4;
    context.lineCap = "round";
    let x = frame.ball.x;
    let y = frame.ball.y;
    for (let age = 0; age < TRAIL_SHOWS; age += 1) {
        const show = frame.show - age - (frame.part > 0 ? 0 : 1);
        if (show < 0) {
            break;
        }
        const nextX = store.ball(show, X);
        const nextY = store.ball(show, Y);
        if (Math.hypot(nextX - x, nextY - y) > LONGEST_FLIGHT) {
            break;
        }
        context.globalAlpha = 0.6 * (1 - age / TRAIL_SHOWS);
        context.beginPath();
        context.moveTo(camera.screenX(x), camera.screenY(y));
        context.lineTo(camera.screenX(nextX), camera.screenY(nextY));
        context.stroke();
        x = nextX;
        y = nextY;
    }
    context.globalAlpha = 1;
    context.lineCap = "butt";
}

/**
 * Where offside begins for the attackers of a side: at the last defender but one, never behind the
 * ball or the middle line.
 * @param {Store} store
 * @param {number} show
 * @param {number} side of the attackers
 */
export function offsideX(store, show, side) {
    const direction = side === 0 ? 1 : -1;
    let last = 0;
    let lastButOne = 0;
    const first = side === 0 ? 11 : 0;
    for (let player = first; player < first + PLAYERS / 2; player += 1) {
        const forward = store.onField(show, player) ? store.player(show, player, X) * direction : 0;
        if (forward > last) {
            lastButOne = last;
            last = forward;
        } else if (forward > lastButOne) {
            lastButOne = forward;
        }
    }
    return (
        direction * Math.min(HALF_LENGTH, Math.max(0, lastButOne, store.ball(show, X) * direction))
    );
}

/** @param {Scene} scene */
export function drawOffside({context, camera, store, frame, colours}) {
    context.lineWidth = 1.6;
    context.setLineDash([6, 5]);
    for (const side of [0, 1]) {
        const x = camera.screenX(offsideX(store, frame.show, side));
        context.strokeStyle = colours.team[side];
        context.beginPath();
        context.moveTo(x, camera.screenY(-34));
        context.lineTo(x, camera.screenY(34));
        context.stroke();
    }
    context.setLineDash([]);
}
