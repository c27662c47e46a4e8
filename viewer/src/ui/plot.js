/** Possession and score over time, on one small canvas; a click goes there. */

import {State} from "../state.js";
import {byId, fitted, setAttribute, styleValue} from "./dom.js";

const TOP = 14;
const BOTTOM = 20;
const LEFT = 40;
const RIGHT = 6;
const MOST_POINTS = 300;

export class Plot {
    /**
     * @param {State} state
     * @param {(position: number) => void} seek
     */
    constructor(state, seek) {
        this.state = state;
        this.canvas = /** @type {HTMLCanvasElement} */ (byId("plot"));
        this.canvas.addEventListener("click", (event) => {
            const box = this.canvas.getBoundingClientRect();
            const part = (event.clientX - box.left - LEFT) / (box.width - LEFT - RIGHT);
            seek(Math.round(part * state.playback.last));
        });
    }

    /** @param {number} show */
    update(show) {
        const fit = fitted(this.canvas);
        if (!fit || !this.state.hasMatch) {
            return;
        }
        const {context, width, height} = fit;
        const last = Math.max(1, this.state.playback.last);
        const x = (/** @type {number} */ at) => LEFT + (at / last) * (width - LEFT - RIGHT);
        const y = (/** @type {number} */ share) =>
            height - BOTTOM - share * (height - BOTTOM - TOP);
        this.drawAxes(context, width, height, y);
        context.save();
        this.drawPossession(context, show, x, y);
        this.drawGoals(context, show, x, y);
        context.restore();
        context.fillStyle = styleValue("--ink");
        context.fillRect(x(show) - 0.75, TOP - 4, 1.5, height - BOTTOM - TOP + 4);
        const names = this.state.store.teamNames(show);
        const share = Math.round(this.state.figures.possessionShare(show) * 100);
        setAttribute(
            this.canvas,
            "aria-label",
            `Possession over time: now ${names[0]} ${share} %, ` + `${names[1]} ${100 - share} %`,
        );
    }

    /**
     * @param {CanvasRenderingContext2D} context
     * @param {number} width
     * @param {number} height
     * @param {(share: number) => number} y
     */
    drawAxes(context, width, height, y) {
        const {store, playback} = this.state;
        context.fillStyle = styleValue("--quiet");
        context.strokeStyle = styleValue("--line");
        context.lineWidth = 1;
        context.font = "11px system-ui, sans-serif";
        context.textAlign = "right";
        context.textBaseline = "middle";
        for (const share of [0, 0.5, 1]) {
            context.fillText(`${share * 100} %`, LEFT - 4, y(share));
            context.beginPath();
            context.moveTo(LEFT, Math.round(y(share)) + 0.5);
            context.lineTo(width - RIGHT, Math.round(y(share)) + 0.5);
            context.stroke();
        }
        context.textBaseline = "alphabetic";
        context.fillText(`cycle ${store.times[playback.last]}`, width - RIGHT, height - 5);
        context.textAlign = "left";
        context.fillText("left team's share of the ball", LEFT, height - 5);
    }

    /**
     * The share of the left team up to each moment: its area below, the other team's above.
     * @param {CanvasRenderingContext2D} context
     * @param {number} show
     * @param {(at: number) => number} x
     * @param {(share: number) => number} y
     */
    drawPossession(context, show, x, y) {
        const {figures} = this.state;
        const step = Math.max(1, Math.floor(show / MOST_POINTS));
        const points = [];
        for (let at = 0; at < show; at += step) {
            points.push(at);
        }
        points.push(show);
        for (const [edge, colour] of /** @type {const} */ ([
            [0, "--left"],
            [1, "--right"],
        ])) {
            context.fillStyle = styleValue(colour);
            context.globalAlpha = 0.55;
            context.beginPath();
            context.moveTo(x(0), y(edge));
            for (const at of points) {
                context.lineTo(x(at), y(figures.possessionShare(at)));
            }
            context.lineTo(x(show), y(edge));
            context.fill();
        }
        context.globalAlpha = 1;
    }

    /**
     * @param {CanvasRenderingContext2D} context
     * @param {number} show
     * @param {(at: number) => number} x
     * @param {(share: number) => number} y
     */
    drawGoals(context, show, x, y) {
        context.font = "600 11px system-ui, sans-serif";
        context.textAlign = "center";
        for (const mark of this.state.marks.all) {
            if (mark.kind !== "goal" || mark.show > show) {
                continue;
            }
            context.fillStyle = styleValue(mark.side === 0 ? "--left" : "--right");
            context.strokeStyle = styleValue("--ink");
            context.beginPath();
            context.arc(x(mark.show), y(mark.side), 4.5, 0, 2 * Math.PI);
            context.fill();
            context.stroke();
            context.fillStyle = styleValue("--ink");
            const {scores} = this.state.store;
            context.fillText(
                `${scores[mark.show * 2]}:${scores[mark.show * 2 + 1]}`,
                x(mark.show),
                y(0.5) + 4,
            );
        }
    }
}
