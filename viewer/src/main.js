/** Puts the page together and runs its frames. */

import {makeApi, Timings} from "./api.js";
import {State} from "./state.js";
import {Actions} from "./ui/actions.js";
import {Address} from "./ui/address.js";
import {Board} from "./ui/board.js";
import {PlayersPane} from "./ui/card.js";
import {Controls} from "./ui/controls.js";
import {byId, button, setText} from "./ui/dom.js";
import {Files} from "./ui/files.js";
import {Gestures} from "./ui/gestures.js";
import {bindKeys} from "./ui/keys.js";
import {Live} from "./ui/live.js";
import {MapsPane} from "./ui/maps.js";
import {bindTabs, EventsPane, FiguresPane} from "./ui/panel.js";
import {Plot} from "./ui/plot.js";
import {Timeline} from "./ui/timeline.js";
import {Stage} from "./view/stage.js";

/** While a match plays, the panel is brought up to date this often; the pitch at every frame. */
const PANEL_EVERY_MS = 120;

const state = new State();
const stage = new Stage(state, /** @type {HTMLCanvasElement} */ (byId("pitch")));
const actions = new Actions(state, stage);
const timings = new Timings();
const seek = (/** @type {number} */ position) => actions.seek(position);

const page = {
    /** @param {string} text */
    report(text) {
        setText(byId("message-text"), text);
        byId("message").hidden = false;
    },
    /** @param {string} name */
    restart(name) {
        timings.opened();
        state.reset(name);
        stage.clear();
        byId("message").hidden = true;
        document.title = name === "live" ? "Live match" : name || "Match viewer";
    },
    loaded() {
        timings.loaded();
        address.restore(true);
    },
};

const address = new Address(state);
const files = new Files(state, page);
const live = new Live(state, page);
const board = new Board(state);
const controls = new Controls(state, stage, actions);
const timeline = new Timeline(state, seek);
const panes = [
    new FiguresPane(state),
    new Plot(state, seek),
    new PlayersPane(state),
    new MapsPane(state),
    new EventsPane(state, seek),
];

let drawnChanges = -1;
let drawnPosition = -1;
let lastTick = 0;
let lastPanel = 0;
let panelDue = false;

/** @param {number} now */
function tick(now) {
    const begin = performance.now();
    state.playback.advance(now - lastTick);
    lastTick = now;
    if (drawnChanges !== state.changes || drawnPosition !== state.playback.position) {
        drawnChanges = state.changes;
        drawnPosition = state.playback.position;
        panelDue = true;
        address.restore(false);
        drawAll();
        timings.drawn(performance.now() - begin, state.hasMatch);
    }
    if (panelDue && (now - lastPanel > PANEL_EVERY_MS || !state.playback.playing)) {
        lastPanel = now;
        panelDue = false;
        panes.forEach((pane) => pane.update(state.playback.show));
        timeline.update(state.playback.show);
    }
    address.update(now);
    requestAnimationFrame(tick);
}

function drawAll() {
    document.documentElement.classList.toggle("dark", state.dark);
    byId("welcome").hidden = state.hasMatch || state.reader.version > 0 || state.playback.growing;
    byId("stage").classList.toggle("zoomed", state.camera.zoom > 1);
    stage.draw();
    const {show} = state.playback;
    board.update(show);
    controls.update();
}

/** Opens what another program put into the page. */
function openSource() {
    let source = null;
    try {
        source = JSON.parse(byId("source").textContent ?? "null");
    } catch {
        page.report("The match inside this page is damaged.");
    }
    if (source && typeof source.live === "string") {
        live.start(source);
    } else if (source && typeof source.rcg === "string") {
        files.openEmbedded(source);
    }
}

const scheme = matchMedia("(prefers-color-scheme: dark)");
state.dark = scheme.matches;
scheme.addEventListener("change", () => {
    state.dark = scheme.matches;
    state.changed();
});
button("message-close").addEventListener("click", () => {
    byId("message").hidden = true;
});
new ResizeObserver(() => state.changed()).observe(byId("panel"));
bindKeys(actions);
bindTabs(() => state.changed());
new Gestures(state, stage, live.hands());
Object.assign(window, {viewer: makeApi({state, stage, actions, files, timings})});
openSource();
requestAnimationFrame(tick);
