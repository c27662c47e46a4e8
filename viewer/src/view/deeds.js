/** Marks of what players just did: kicks, catches, tackles, collisions. */

import {
    BALL_COLLISION,
    CATCH,
    CATCH_FAILED,
    KICK,
    KICK_FAILED,
    PLAYER_COLLISION,
    POST_COLLISION,
    TACKLE,
    TACKLE_FAILED,
} from "../log/store.js";

/** @typedef {import("./players.js").Scene} Scene */

const FULL = 2 * Math.PI;

/** A mark is seen for this many shows. */
const MARK_SHOWS = 4;

/**
 * What the player did in the last shows, fading: each kind has a form of its own.
 * @param {Scene} scene
 * @param {number} player
 * @param {number} x
 * @param {number} y
 * @param {number} radius
 */
export function drawDeeds({context, store, frame, colours}, player, x, y, radius) {
    for (let age = 0; age < MARK_SHOWS && frame.show - age >= 0; age += 1) {
        const state = store.state(frame.show - age, player);
        const forms = markForms(state);
        if (forms.length === 0) {
            continue;
        }
        const growth = radius * (1.5 + 0.25 * (age + frame.part));
        context.globalAlpha = Math.max(0, 1 - (age + frame.part) / MARK_SHOWS);
        context.strokeStyle = colours.ink;
        context.lineWidth = 2.2;
        for (const form of forms) {
            context.beginPath();
            markPath(context, form, x, y, growth);
            context.stroke();
        }
        context.globalAlpha = 1;
        return;
    }
}

/** @typedef {"ring" | "cross" | "square" | "diamond" | "rays"} Form */

/**
 * Kick: ring; catch: square; tackle: diamond; collision: rays; a failure adds a cross.
 * @param {number} state
 * @returns {Form[]}
 */
function markForms(state) {
    /** @type {[number, Form][]} */
    const table = [
        [KICK, "ring"],
        [CATCH | CATCH_FAILED, "square"],
        [TACKLE | TACKLE_FAILED, "diamond"],
        [BALL_COLLISION | PLAYER_COLLISION | POST_COLLISION, "rays"],
        [KICK_FAILED | CATCH_FAILED | TACKLE_FAILED, "cross"],
    ];
    return table.filter(([bits]) => state & bits).map(([, form]) => form);
}

/**
 * @param {CanvasRenderingContext2D} context
 * @param {Form} form
 * @param {number} x
 * @param {number} y
 * @param {number} size
 */
function markPath(context, form, x, y, size) {
    if (form === "ring") {
        context.arc(x, y, size, 0, FULL);
    } else if (form === "square") {
        context.rect(x - size, y - size, 2 * size, 2 * size);
    } else if (form === "diamond") {
        context.moveTo(x, y - size * 1.3);
        context.lineTo(x + size * 1.3, y);
        context.lineTo(x, y + size * 1.3);
        context.lineTo(x - size * 1.3, y);
        context.closePath();
    } else if (form === "cross") {
        context.moveTo(x - size, y - size);
        context.lineTo(x + size, y + size);
        context.moveTo(x + size, y - size);
        context.lineTo(x - size, y + size);
    } else {
        for (let ray = 0; ray < 8; ray += 1) {
            const [c, s] = [Math.cos((ray * FULL) / 8), Math.sin((ray * FULL) / 8)];
            context.moveTo(x + c * size, y + s * size);
            context.lineTo(x + c * size * 1.35, y + s * size * 1.35);
        }
    }
}
