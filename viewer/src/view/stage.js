/** The canvas: puts the parts of the picture over each other. */

import {Frame} from "../match/frame.js";
import {State} from "../state.js";
import {drawBall, drawOffside} from "./ball.js";
import {drawBeliefs} from "./beliefs.js";
import {palette} from "./colours.js";
import {HeatMap, mappedPlayers} from "./heat.js";
import {drawPasses} from "./passes.js";
import {drawPitch} from "./pitch.js";
import {discRadius, drawPlayers} from "./players.js";

const GOAL_WIDTH = 14.02;

/** A zoom is begun with this one when somebody is followed. */
const FOLLOW_ZOOM = 2.2;

export class Stage {
    /**
     * @param {State} state
     * @param {HTMLCanvasElement} canvas
     */
    constructor(state, canvas) {
        this.state = state;
        this.canvas = canvas;
        const context = canvas.getContext("2d", {alpha: false});
        if (!context) {
            throw new Error("the browser has no canvas");
        }
        this.context = context;
        this.frame = new Frame();
        this.heat = new HeatMap();
        this.density = 1;
        new ResizeObserver(() => this.resize()).observe(canvas);
        this.resize();
    }

    resize() {
        const {width, height} = this.canvas.getBoundingClientRect();
        this.density = Math.min(window.devicePixelRatio || 1, 3);
        this.canvas.width = Math.max(1, Math.round(width * this.density));
        this.canvas.height = Math.max(1, Math.round(height * this.density));
        this.state.camera.resize(width, height);
        this.state.changed();
    }

    /** Moves the camera to whom it follows. */
    follow() {
        const {follow, camera} = this.state;
        if (follow === "none" || !this.state.hasMatch) {
            return;
        }
        if (follow === "ball") {
            camera.lookAt(this.frame.ball.x, this.frame.ball.y);
        } else {
            camera.lookAt(this.frame.x[follow], this.frame.y[follow]);
        }
    }

    /** @param {import("../state.js").Follow} follow */
    setFollow(follow) {
        this.state.follow = follow;
        if (follow !== "none" && this.state.camera.zoom < FOLLOW_ZOOM) {
            this.state.camera.zoom = FOLLOW_ZOOM;
        }
        this.state.changed();
    }

    draw() {
        const {state, context, frame, heat} = this;
        const {store, options, camera, chosen} = state;
        if (state.hasMatch) {
            frame.set(store, state.playback.position, options.interpolate);
            this.follow();
        }
        const colours = palette(state.dark);
        context.setTransform(this.density, 0, 0, this.density, 0, 0);
        drawPitch(context, camera, colours, store.parameter("goal_width", GOAL_WIDTH));
        if (!state.hasMatch) {
            return;
        }
        const scene = {context, camera, colours, store, frame, options, chosen};
        if (options.heat !== "off") {
            heat.update(store, frame.show, mappedPlayers(options.heat, chosen));
            heat.draw(scene);
        }
        if (options.offside) {
            drawOffside(scene);
        }
        if (options.passes !== "off") {
            drawPasses(
                scene,
                state.figures.passesUpTo(frame.show),
                mappedPlayers(options.passes, chosen),
            );
        }
        drawPlayers(scene);
        drawBall(scene);
        if (options.beliefs) {
            drawBeliefs(scene, state.plans, state.stepsOf(frame.show));
        }
    }

    /** Forgets what was counted for another match. */
    clear() {
        this.heat = new HeatMap();
        this.frame = new Frame();
    }

    /**
     * The player at a point of the canvas, or -1.
     * @param {number} x CSS pixels
     * @param {number} y CSS pixels
     */
    playerAt(x, y) {
        const {camera, options} = this.state;
        let nearest = -1;
        let least = discRadius(camera, options.trueSize) + 8;
        for (let player = 0; player < this.frame.x.length; player += 1) {
            const distance = Math.hypot(
                camera.screenX(this.frame.x[player]) - x,
                camera.screenY(this.frame.y[player]) - y,
            );
            if (this.frame.onField[player] && distance < least) {
                least = distance;
                nearest = player;
            }
        }
        return nearest;
    }
}
