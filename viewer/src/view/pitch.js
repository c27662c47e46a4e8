/** The pitch: grass, lines, goals and nets, to scale. Measures are the server's, in metres. */

import {Camera} from "./camera.js";

const LENGTH = 105;
const WIDTH = 68;
const CIRCLE = 9.15;
const AREA_LENGTH = 16.5;
const AREA_WIDTH = 40.32;
const SMALL_AREA_LENGTH = 5.5;
const SMALL_AREA_WIDTH = 18.32;
const PENALTY_SPOT = 11;
const CORNER = 1;
const GOAL_DEPTH = 2.44;
const POST = 0.06;
const STRIPES = 14;
const NET_MESH = 0.61;

/** @typedef {import("./colours.js").Palette} Palette */

/**
 * Draws the whole pitch; the context counts in CSS pixels.
 * @param {CanvasRenderingContext2D} context
 * @param {Camera} camera
 * @param {Palette} colours
 * @param {number} goalWidth
 */
export function drawPitch(context, camera, colours, goalWidth) {
    context.fillStyle = colours.around;
    context.fillRect(0, 0, camera.width, camera.height);
    context.save();
    context.translate(camera.screenX(0), camera.screenY(0));
    context.scale(camera.scale, camera.scale);
    drawGrass(context, colours);
    context.lineWidth = Math.max(0.12, 1.25 / camera.scale);
    context.strokeStyle = colours.line;
    context.fillStyle = colours.line;
    drawLines(context);
    for (const side of [-1, 1]) {
        drawGoal(context, camera, colours, side, goalWidth);
    }
    context.restore();
}

/**
 * @param {CanvasRenderingContext2D} context
 * @param {Palette} colours
 */
function drawGrass(context, colours) {
    const stripe = LENGTH / STRIPES;
    for (let index = 0; index < STRIPES; index += 1) {
        context.fillStyle = colours.grass[index % 2];
        context.fillRect(-LENGTH / 2 + index * stripe, -WIDTH / 2, stripe + 0.05, WIDTH);
    }
}

/** @param {CanvasRenderingContext2D} context */
function drawLines(context) {
    context.beginPath();
    context.rect(-LENGTH / 2, -WIDTH / 2, LENGTH, WIDTH);
    context.moveTo(0, -WIDTH / 2);
    context.lineTo(0, WIDTH / 2);
    context.moveTo(CIRCLE, 0);
    context.arc(0, 0, CIRCLE, 0, 2 * Math.PI);
    for (const side of [-1, 1]) {
        const line = (side * LENGTH) / 2;
        context.rect(line, -AREA_WIDTH / 2, -side * AREA_LENGTH, AREA_WIDTH);
        context.rect(line, -SMALL_AREA_WIDTH / 2, -side * SMALL_AREA_LENGTH, SMALL_AREA_WIDTH);
        drawPenaltyArc(context, side);
        for (const top of [-1, 1]) {
            drawCorner(context, side, top);
        }
    }
    context.stroke();
    context.beginPath();
    for (const x of [-LENGTH / 2 + PENALTY_SPOT, 0, LENGTH / 2 - PENALTY_SPOT]) {
        context.moveTo(x, 0);
        context.arc(x, 0, 0.28, 0, 2 * Math.PI);
    }
    context.fill();
}

/**
 * The part of the circle around the spot that lies outside the penalty area.
 * @param {CanvasRenderingContext2D} context
 * @param {number} side
 */
function drawPenaltyArc(context, side) {
    const x = side * (LENGTH / 2 - PENALTY_SPOT);
    const half = Math.acos((AREA_LENGTH - PENALTY_SPOT) / CIRCLE);
    const middle = side < 0 ? 0 : Math.PI;
    context.moveTo(x + CIRCLE * Math.cos(middle - half), CIRCLE * Math.sin(middle - half));
    context.arc(x, 0, CIRCLE, middle - half, middle + half);
}

/**
 * @param {CanvasRenderingContext2D} context
 * @param {number} side
 * @param {number} top
 */
function drawCorner(context, side, top) {
    const x = (side * LENGTH) / 2;
    const y = (top * WIDTH) / 2;
    const start = side < 0 ? (top < 0 ? 0 : -Math.PI / 2) : top < 0 ? Math.PI / 2 : Math.PI;
    context.moveTo(x + CORNER * Math.cos(start), y + CORNER * Math.sin(start));
    context.arc(x, y, CORNER, start, start + Math.PI / 2);
}

/**
 * @param {CanvasRenderingContext2D} context
 * @param {Camera} camera
 * @param {Palette} colours
 * @param {number} side
 * @param {number} goalWidth
 */
function drawGoal(context, camera, colours, side, goalWidth) {
    const front = (side * LENGTH) / 2;
    const back = front + side * GOAL_DEPTH;
    const half = goalWidth / 2;
    context.save();
    context.strokeStyle = colours.net;
    context.lineWidth = 0.6 / camera.scale;
    context.beginPath();
    for (let depth = NET_MESH; depth <= GOAL_DEPTH + 0.01; depth += NET_MESH) {
        context.moveTo(front + side * depth, -half);
        context.lineTo(front + side * depth, half);
    }
    for (let y = -half + NET_MESH; y < half; y += NET_MESH) {
        context.moveTo(front, y);
        context.lineTo(back, y);
    }
    context.stroke();
    context.restore();
    context.lineWidth = Math.max(0.18, 2 / camera.scale);
    context.beginPath();
    context.moveTo(front, -half);
    context.lineTo(back, -half);
    context.lineTo(back, half);
    context.lineTo(front, half);
    context.stroke();
    context.beginPath();
    for (const y of [-half, half]) {
        const radius = Math.max(POST, 2.2 / camera.scale);
        context.moveTo(front, y);
        context.arc(front, y, radius, 0, 2 * Math.PI);
    }
    context.fill();
}
