/** A live match: the event stream from the bridge, and the referee's buttons. */

import {UnreadableLog} from "../log/reader.js";
import {BODY} from "../log/store.js";
import {State} from "../state.js";
import {byId, button, setAttribute, setText} from "./dom.js";

/** @typedef {import("./gestures.js").Hands} Hands */
/** @typedef {{live: string, commands?: string, token?: string}} LiveSource
 * without `commands` one can only look on */
/** @typedef {"drop_ball" | "free_left" | "free_right" | "move" | ""} Tool */

/** Players are moved at most this often while they are dragged. */
const MOVE_EVERY_MS = 100;

/** The browser tries again by itself, but not after every kind of failure. */
const RETRY_MS = 1000;

const HINTS = {
    drop_ball: "Click where the ball is to drop",
    free_left: "Click where the left team's free kick is",
    free_right: "Click where the right team's free kick is",
    move: "Drag a player to its new place",
    "": "",
};

/** @type {readonly [string, Tool][]} */
const TOOLS = [
    ["live-drop-ball", "drop_ball"],
    ["live-free-left", "free_left"],
    ["live-free-right", "free_right"],
    ["live-move", "move"],
];

export class Live {
    /**
     * @param {State} state
     * @param {{report: (text: string) => void, restart: (name: string) => void}} page
     */
    constructor(state, page) {
        this.state = state;
        this.page = page;
        /** @type {LiveSource | null} */
        this.source = null;
        /** What the next click on the pitch does. */
        this.tool = /** @type {Tool} */ ("");
        this.lastMove = 0;
        this.encoder = new TextEncoder();
        button("live-kick-off").addEventListener("click", () => this.send({command: "kick_off"}));
        for (const [id, tool] of TOOLS) {
            button(id).addEventListener("click", () => this.take(this.tool === tool ? "" : tool));
        }
        document.addEventListener("keydown", (event) => {
            if (event.key === "Escape") {
                this.take("");
            }
        });
    }

    /** @param {LiveSource} source */
    start(source) {
        this.source = source;
        byId("live").hidden = false;
        byId("live-referee").hidden = source.commands === undefined;
        this.connect();
    }

    connect() {
        const address = this.source?.live ?? "";
        const events = new EventSource(address);
        setText(byId("live-status"), "Connecting …");
        this.begin();
        events.addEventListener("open", () => setText(byId("live-status"), "Connected"));
        events.addEventListener("log", (event) => this.takeLog(event.data));
        events.addEventListener("reset", () => this.begin());
        events.addEventListener("status", (event) => this.takeStatus(event.data));
        events.addEventListener("error", () => {
            setText(byId("live-status"), "The connection is lost; trying again …");
            if (events.readyState === EventSource.CLOSED) {
                setTimeout(() => this.connect(), RETRY_MS);
            }
        });
    }

    /**
     * Forgets the match; who was chosen and followed stays, as the next match has the same numbers.
     */
    begin() {
        const {chosen, follow} = this.state;
        const kept = [...chosen];
        this.page.restart("live");
        this.state.chosen = new Set(kept);
        this.state.follow = follow;
        this.state.playback.growing = true;
        this.state.playback.goLive();
    }

    /** @param {string} text */
    takeLog(text) {
        // A header tells that the whole history comes, as it does after the connection was lost.
        if (text.startsWith("ULG") && this.state.reader.version > 0) {
            this.begin();
        }
        try {
            this.state.reader.push(this.encoder.encode(`${text}\n`));
        } catch (error) {
            if (!(error instanceof UnreadableLog)) {
                throw error;
            }
            this.page.report(error.message);
        }
        this.state.grown();
    }

    /** @param {string} text */
    takeStatus(text) {
        try {
            const {server, host, port, version, text: remark = ""} = JSON.parse(text);
            const connected = server === "connected";
            const status = connected
                ? `Connected to ${host}:${port}, monitor version ${version}`
                : `Waiting for a server at ${host}:${port}`;
            setText(byId("live-status"), remark && !connected ? `${status}: ${remark}` : status);
            if (remark && connected) {
                this.page.report(remark);
            }
        } catch {
            setText(byId("live-status"), "The bridge sent a status that cannot be read.");
        }
    }

    /** @param {Tool} tool */
    take(tool) {
        this.tool = tool;
        for (const [id, own] of TOOLS) {
            setAttribute(button(id), "aria-pressed", String(own === tool));
        }
        byId("pitch").classList.toggle("placing", tool !== "" && tool !== "move");
        byId("hint").hidden = tool === "";
        setText(byId("hint"), HINTS[tool]);
    }

    /** @param {Record<string, unknown>} command */
    async send(command) {
        const {commands, token = ""} = this.source ?? {};
        if (commands === undefined) {
            return;
        }
        try {
            const answer = await fetch(commands, {
                method: "POST",
                body: JSON.stringify(command),
                headers: {"Content-Type": "application/json", "X-Token": token},
            });
            if (!answer.ok) {
                this.page.report(
                    (await answer.text()).slice(0, 300) || `The bridge refused (${answer.status}).`,
                );
            }
        } catch {
            this.page.report("The command did not arrive: the bridge does not answer.");
        }
    }

    /**
     * What the pitch's gestures do here.
     * @returns {Hands}
     */
    hands() {
        return {
            place: (x, y) => {
                const {tool} = this;
                if (tool === "" || tool === "move") {
                    return false;
                }
                this.send(
                    tool === "drop_ball"
                        ? {command: tool, x, y}
                        : {command: "free_kick", side: tool === "free_left" ? "l" : "r", x, y},
                );
                this.take("");
                return true;
            },
            mayMove: () => this.tool === "move" && this.state.playback.atLive,
            move: (player, x, y, done) => this.movePlayer(player, x, y, done),
        };
    }

    /**
     * @param {number} player
     * @param {number} x
     * @param {number} y
     * @param {boolean} done whether it was let go
     */
    movePlayer(player, x, y, done) {
        const now = performance.now();
        if (!done && now - this.lastMove < MOVE_EVERY_MS) {
            return;
        }
        this.lastMove = now;
        const {store, playback} = this.state;
        this.send({
            command: "move_player",
            side: player < 11 ? "l" : "r",
            unum: (player % 11) + 1,
            x,
            y,
            angle: Math.round(store.player(playback.last, player, BODY)),
        });
    }
}
