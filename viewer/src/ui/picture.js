/** Saves what is seen as a picture, with the score above it. */

import {modeText} from "../log/modes.js";
import {State} from "../state.js";
import {Stage} from "../view/stage.js";
import {clockText, cycleText, scoreText} from "./board.js";
import {make} from "./dom.js";

const HEAD_HEIGHT = 44;

/**
 * The picture as a canvas.
 * @param {State} state
 * @param {Stage} stage
 */
export function picture(state, stage) {
    stage.draw();
    const {density} = stage;
    const head = HEAD_HEIGHT * density;
    const canvas = document.createElement("canvas");
    canvas.width = stage.canvas.width;
    canvas.height = stage.canvas.height + head;
    const context = canvas.getContext("2d");
    if (!context) {
        return canvas;
    }
    context.fillStyle = state.dark ? "#0d1210" : "#f3f5f2";
    context.fillRect(0, 0, canvas.width, head);
    context.drawImage(stage.canvas, 0, head);
    const {store, playback} = state;
    const show = playback.show;
    const names = store.teamNames(show);
    context.fillStyle = state.dark ? "#e8efea" : "#16211b";
    context.textBaseline = "middle";
    context.textAlign = "center";
    context.font = `600 ${17 * density}px system-ui, sans-serif`;
    context.fillText(
        `${names[0]}  ${scoreText(state, show)}  ${names[1]}`,
        canvas.width / 2,
        head * 0.33,
        canvas.width * 0.95,
    );
    context.font = `${12 * density}px system-ui, sans-serif`;
    context.fillText(
        `${modeText(store.modes[show], names)} · ${cycleText(state, show)} · ` +
            clockText(store.times[show], store.stepMs()),
        canvas.width / 2,
        head * 0.77,
        canvas.width * 0.95,
    );
    return canvas;
}

/**
 * @param {State} state
 * @param {Stage} stage
 */
export function savePicture(state, stage) {
    if (!state.hasMatch) {
        return;
    }
    const {store, playback} = state;
    const names = store
        .teamNames(playback.show)
        .map((name) => name.replace(/[^\p{L}\p{N}_.-]/gu, "_"));
    picture(state, stage).toBlob((blob) => {
        if (!blob) {
            return;
        }
        const link = make("a", "");
        link.href = URL.createObjectURL(blob);
        link.download = `${names[0]}-${names[1]}-cycle-${store.times[playback.show]}.png`;
        link.click();
        setTimeout(() => URL.revokeObjectURL(link.href), 10000);
    }, "image/png");
}
