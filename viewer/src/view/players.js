/**
 * The players: discs with number, body, gaze, view cone, stamina, cards and marks of what they just
 * did.
 */

import {GOALIE, PLAYERS, POINT_X, POINT_Y, RED, STAMINA, Store, YELLOW} from "../log/store.js";
import {Frame} from "../match/frame.js";
import {Camera} from "./camera.js";
import {numberColour, playerColour} from "./colours.js";
import {drawDeeds} from "./deeds.js";

/** @typedef {import("./colours.js").Palette} Palette */
/** @typedef {import("../state.js").Options} Options */

/**
 * @typedef {object} Scene what every part of the picture is drawn from
 * @property {CanvasRenderingContext2D} context counts in CSS pixels
 * @property {Camera} camera
 * @property {Palette} colours
 * @property {Store} store
 * @property {Frame} frame
 * @property {Options} options
 * @property {ReadonlySet<number>} chosen
 */

const DEGREE = Math.PI / 180;
const FULL = 2 * Math.PI;
const PLAYER_RADIUS = 0.3;

/**
 * A disc is larger than to scale, so that it can be read: metres, but no more CSS pixels than the
 * cap, which grows a little with the scale.
 */
const READABLE_RADIUS = 1.15;
const SMALLEST_CAP = 13;
const CAP_GROWTH = 0.12;
const LEAST_RADIUS = 6.5;

/** On smaller discs a stamina ring would hide the colour, so only a tired player has one. */
const LEAST_RING_RADIUS = 8;

/** The tip that shows where the body points: its length in radii, and half its base in radians. */
const NOSE = 1.6;
const NOSE_ANGLE = 0.6;

/** How far a view cone is drawn, in metres. */
const CONE_LENGTH = 18;
const CHOSEN_CONE_LENGTH = 40;

const TIRED = 0.35;

/**
 * Radius of a player on the screen, in CSS pixels.
 * @param {Camera} camera
 * @param {boolean} trueSize
 */
export function discRadius(camera, trueSize) {
    const real = PLAYER_RADIUS * camera.scale;
    return trueSize
        ? Math.max(real, 2)
        : Math.max(
              real,
              LEAST_RADIUS,
              Math.min(READABLE_RADIUS * camera.scale, SMALLEST_CAP + CAP_GROWTH * camera.scale),
          );
}

/** @param {Scene} scene */
export function drawPlayers(scene) {
    const {frame, options, chosen, camera} = scene;
    const radius = discRadius(camera, options.trueSize);
    for (let player = 0; player < PLAYERS; player += 1) {
        if (frame.onField[player] && (options.cones || chosen.has(player))) {
            drawCone(scene, player);
        }
    }
    for (let player = 0; player < PLAYERS; player += 1) {
        if (frame.onField[player]) {
            drawPlayer(scene, player, radius);
        }
    }
}

/**
 * @param {Scene} scene
 * @param {number} player
 */
function drawCone(scene, player) {
    const {context, camera, store, frame, chosen, colours} = scene;
    const half = (store.widths[frame.show * PLAYERS + player] / 2) * DEGREE;
    const head = frame.head[player] * DEGREE;
    const x = camera.screenX(frame.x[player]);
    const y = camera.screenY(frame.y[player]);
    const length = (chosen.has(player) ? CHOSEN_CONE_LENGTH : CONE_LENGTH) * camera.scale;
    context.globalAlpha = chosen.has(player) ? 0.16 : 0.07;
    context.fillStyle = colours.ink;
    context.beginPath();
    context.moveTo(x, y);
    context.arc(x, y, length, head - half, head + half);
    context.closePath();
    context.fill();
    context.globalAlpha = 1;
}

/**
 * @param {Scene} scene
 * @param {number} player
 * @param {number} radius
 */
function drawPlayer(scene, player, radius) {
    const {context, camera, store, frame, colours, options, chosen} = scene;
    const side = player < 11 ? 0 : 1;
    const goalie = (store.state(frame.show, player) & GOALIE) !== 0;
    const x = camera.screenX(frame.x[player]);
    const y = camera.screenY(frame.y[player]);
    if (options.marks) {
        drawDeeds(scene, player, x, y, radius);
    }
    const body = frame.body[player] * DEGREE;
    context.fillStyle = playerColour(colours, side, goalie);
    context.strokeStyle = colours.edge;
    context.lineWidth = 1.25;
    context.beginPath();
    context.arc(x, y, radius, body + NOSE_ANGLE, body + FULL - NOSE_ANGLE);
    context.lineTo(x + radius * NOSE * Math.cos(body), y + radius * NOSE * Math.sin(body));
    context.closePath();
    context.fill();
    context.stroke();
    drawGaze(scene, player, x, y, radius);
    if (options.stamina) {
        drawStamina(scene, player, x, y, radius);
    }
    if (options.numbers && radius >= 5) {
        context.fillStyle = numberColour(colours, side, goalie);
        context.font = `600 ${Math.round(radius * 1.15)}px system-ui, sans-serif`;
        context.textAlign = "center";
        context.textBaseline = "middle";
        context.fillText(String((player % 11) + 1), x, y + radius * 0.06);
    }
    drawCards(scene, player, x, y, radius);
    if (chosen.has(player)) {
        context.strokeStyle = colours.accent;
        context.lineWidth = 2;
        context.beginPath();
        context.arc(x, y, radius + 6, 0, FULL);
        context.stroke();
        drawPointing(scene, player, x, y);
    }
}

/**
 * A short arc outside the disc, where the head looks.
 * @param {Scene} scene
 * @param {number} player
 * @param {number} x
 * @param {number} y
 * @param {number} radius
 */
function drawGaze({context, frame, colours}, player, x, y, radius) {
    const head = frame.head[player] * DEGREE;
    context.strokeStyle = colours.ink;
    context.lineWidth = 2;
    context.beginPath();
    context.arc(x, y, radius + 3.2, head - 0.45, head + 0.45);
    context.stroke();
}

/**
 * A ring that shortens with the stamina, and becomes dashed when little is left.
 * @param {Scene} scene
 * @param {number} player
 * @param {number} x
 * @param {number} y
 * @param {number} radius
 */
function drawStamina({context, store, frame, colours}, player, x, y, radius) {
    const full = store.parameter("stamina_max", 8000);
    const part = Math.min(1, Math.max(0, store.player(frame.show, player, STAMINA) / full));
    if (radius < LEAST_RING_RADIUS && part >= TIRED) {
        return;
    }
    context.lineWidth = Math.max(1.5, radius * 0.17);
    context.strokeStyle = "rgba(0,0,0,0.35)";
    context.beginPath();
    context.arc(x, y, radius - context.lineWidth / 2, 0, FULL);
    context.stroke();
    context.strokeStyle = part < TIRED ? colours.accent : colours.ink;
    context.beginPath();
    context.arc(x, y, radius - context.lineWidth / 2, -Math.PI / 2, -Math.PI / 2 + FULL * part);
    context.stroke();
}

/**
 * @param {Scene} scene
 * @param {number} player
 * @param {number} x
 * @param {number} y
 * @param {number} radius
 */
function drawCards({context, store, frame, colours}, player, x, y, radius) {
    const card = store.state(frame.show, player) & (YELLOW | RED);
    if (!card) {
        return;
    }
    context.fillStyle = card & RED ? "#e0322b" : "#ffe45c";
    context.strokeStyle = colours.edge;
    context.lineWidth = 1;
    context.beginPath();
    context.rect(x + radius * 0.7, y - radius * 1.5, radius * 0.55, radius * 0.8);
    context.fill();
    context.stroke();
}

/**
 * A line to where the arm points.
 * @param {Scene} scene
 * @param {number} player
 * @param {number} x
 * @param {number} y
 */
function drawPointing({context, store, frame, camera, colours}, player, x, y) {
    const pointX = store.player(frame.show, player, POINT_X);
    const pointY = store.player(frame.show, player, POINT_Y);
    if (!Number.isFinite(pointX)) {
        return;
    }
    context.strokeStyle = colours.ink;
    context.lineWidth = 1.2;
    context.setLineDash([3, 4]);
    context.beginPath();
    context.moveTo(x, y);
    context.lineTo(camera.screenX(pointX), camera.screenY(pointY));
    context.stroke();
    context.setLineDash([]);
}
