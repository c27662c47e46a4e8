/** What the chosen players believed and drew, over what was true. */

import {Plans} from "../log/plans.js";
import {label} from "./ball.js";
import {discRadius} from "./players.js";

/** @typedef {import("./players.js").Scene} Scene */
/** @typedef {import("../log/plans.js").Belief} Belief */
/** @typedef {import("../log/plans.js").Shape} Shape */

const DEGREE = Math.PI / 180;
const FULL = 2 * Math.PI;

/**
 * @param {Scene} scene
 * @param {Plans} plans
 * @param {number} steps how many shows have the time of this one
 */
export function drawBeliefs(scene, plans, steps) {
    const {store, frame, context} = scene;
    const time = store.times[frame.show];
    const stoppage = store.stoppages[frame.show];
    for (const player of scene.chosen) {
        const belief = plans.belief(player, time, stoppage);
        if (belief) {
            drawBelief(scene, player, belief);
        }
        context.strokeStyle = scene.colours.drawing;
        context.lineWidth = 1.6;
        for (const shape of plans.shapes(player, time, stoppage, steps)) {
            drawShape(scene, shape);
        }
    }
}

/**
 * @param {Scene} scene
 * @param {Shape} shape
 */
function drawShape(scene, shape) {
    const {context, camera} = scene;
    const x = camera.screenX(shape.from.x);
    const y = camera.screenY(shape.from.y);
    if (shape.kind === "text") {
        label(scene, shape.text, x, y);
        return;
    }
    context.beginPath();
    if (shape.kind === "point") {
        context.moveTo(x - 4, y);
        context.lineTo(x + 4, y);
        context.moveTo(x, y - 4);
        context.lineTo(x, y + 4);
    } else {
        const toX = camera.screenX(shape.to.x);
        const toY = camera.screenY(shape.to.y);
        if (shape.kind === "line") {
            context.moveTo(x, y);
            context.lineTo(toX, toY);
        } else if (shape.kind === "rectangle") {
            context.rect(x, y, toX - x, toY - y);
        } else {
            context.ellipse(
                (x + toX) / 2,
                (y + toY) / 2,
                Math.abs(toX - x) / 2,
                Math.abs(toY - y) / 2,
                0,
                0,
                FULL,
            );
        }
    }
    context.stroke();
}

/**
 * @param {Scene} scene
 * @param {number} player
 * @param {Belief} belief
 */
function drawBelief(scene, player, belief) {
    const {context, camera, frame, colours} = scene;
    const radius = discRadius(camera, scene.options.trueSize);
    context.strokeStyle = colours.accent;
    context.lineWidth = 1.8;
    context.setLineDash([4, 3]);
    for (const other of belief.others) {
        drawOther(scene, player, other, radius);
    }
    if (belief.self) {
        const x = camera.screenX(belief.self.x);
        const y = camera.screenY(belief.self.y);
        ghost(scene, x, y, radius + 1);
        context.beginPath();
        context.moveTo(x, y);
        context.lineTo(
            x + 2 * radius * Math.cos(belief.self.body * DEGREE),
            y + 2 * radius * Math.sin(belief.self.body * DEGREE),
        );
        context.moveTo(camera.screenX(frame.x[player]), camera.screenY(frame.y[player]));
        context.lineTo(x, y);
        context.stroke();
    }
    context.setLineDash([]);
    if (belief.ball) {
        drawBall(scene, belief.ball);
    }
    if (belief.case) {
        label(
            scene,
            belief.case,
            camera.screenX(frame.x[player]),
            camera.screenY(frame.y[player]) - radius - 15,
        );
    }
}

/**
 * A dashed circle.
 * @param {Scene} scene
 * @param {number} x
 * @param {number} y
 * @param {number} radius
 */
function ghost({context}, x, y, radius) {
    context.beginPath();
    context.arc(x, y, radius, 0, FULL);
    context.stroke();
}

/**
 * A player it knew of, in the colour of the team it took it for.
 * @param {Scene} scene
 * @param {number} player who believes
 * @param {{kind: string, unum: number, x: number, y: number}} other
 * @param {number} radius
 */
function drawOther(scene, player, other, radius) {
    const {context, camera, colours} = scene;
    const own = player < 11 ? 0 : 1;
    const x = camera.screenX(other.x);
    const y = camera.screenY(other.y);
    const colour =
        other.kind === "mate"
            ? colours.team[own]
            : other.kind === "opponent"
              ? colours.team[1 - own]
              : colours.ink;
    context.save();
    context.setLineDash([]);
    context.globalAlpha = 0.25;
    context.fillStyle = colours.edge;
    context.beginPath();
    context.arc(x, y, radius * 0.85, 0, FULL);
    context.fill();
    context.globalAlpha = 1;
    context.restore();
    context.strokeStyle = colour;
    ghost(scene, x, y, radius * 0.85);
    label(scene, other.unum > 0 ? String(other.unum) : "?", x, y);
    context.lineWidth = 1.8;
    context.strokeStyle = colours.accent;
}

/**
 * @param {Scene} scene
 * @param {{x: number, y: number, vx: number, vy: number}} ball
 */
function drawBall({context, camera, colours}, ball) {
    const x = camera.screenX(ball.x);
    const y = camera.screenY(ball.y);
    context.strokeStyle = colours.accent;
    context.lineWidth = 2;
    context.beginPath();
    context.arc(x, y, 6, 0, FULL);
    context.moveTo(x, y);
    context.lineTo(camera.screenX(ball.x + 5 * ball.vx), camera.screenY(ball.y + 5 * ball.vy));
    context.stroke();
}
