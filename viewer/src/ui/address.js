/** The address keeps the moment: cycle, chosen players, whom the camera follows, zoom. */

import {State} from "../state.js";

/** Browsers refuse too many changes of the address. */
const LEAST_PAUSE_MS = 700;

/**
 * A player's name in the address: l7.
 * @param {number} player
 */
function playerName(player) {
    return `${player < 11 ? "l" : "r"}${(player % 11) + 1}`;
}

/**
 * @param {string} name
 * @returns {number} -1 when it is none
 */
function playerIndex(name) {
    const match = /^([lr])([1-9]|1[01])$/.exec(name);
    return match ? Number(match[2]) - 1 + (match[1] === "r" ? 11 : 0) : -1;
}

/**
 * The part of the address behind the #.
 * @param {State} state
 */
export function addressOf({store, playback, camera, chosen, follow}) {
    const {show} = playback;
    const stoppage = store.stoppages[show];
    const parts = [`t=${store.times[show]}${stoppage > 0 ? `.${stoppage}` : ""}`];
    if (chosen.size > 0) {
        parts.push(`p=${[...chosen].map(playerName).join(",")}`);
    }
    if (follow !== "none") {
        parts.push(`f=${follow === "ball" ? "ball" : playerName(follow)}`);
    }
    if (camera.zoom > 1.001) {
        const place =
            follow === "none"
                ? [camera.x, camera.y].map((value) => `,${value.toFixed(1)}`).join("")
                : "";
        parts.push(`z=${camera.zoom.toFixed(2)}${place}`);
    }
    return `#${parts.join("&")}`;
}

/**
 * Goes to the moment of an address; what it does not have stays.
 * @param {State} state
 * @param {string} address
 */
export function goTo(state, address) {
    const parts = new URLSearchParams(address.replace(/^#/, ""));
    const time = /^(\d{1,8})(?:\.(\d{1,5}))?$/.exec(parts.get("t") ?? "");
    if (time) {
        state.playback.playing = false;
        state.playback.seek(state.store.showAt(Number(time[1]), Number(time[2] ?? 0)));
    }
    const players = (parts.get("p") ?? "")
        .split(",")
        .map(playerIndex)
        .filter((player) => player >= 0);
    if (players.length > 0) {
        state.chosen = new Set(players);
    }
    const zoom = (parts.get("z") ?? "").split(",").map(Number);
    if (zoom[0] >= 1 && zoom[0] <= 20) {
        state.camera.zoom = zoom[0];
        if (zoom.length === 3 && zoom.every(Number.isFinite)) {
            state.camera.lookAt(zoom[1], zoom[2]);
        }
    }
    const follow = parts.get("f") ?? "";
    if (follow === "ball" || playerIndex(follow) >= 0) {
        state.follow = follow === "ball" ? "ball" : playerIndex(follow);
    }
    state.changed();
}

export class Address {
    /** @param {State} state */
    constructor(state) {
        this.state = state;
        this.written = location.hash;
        this.lastWrite = 0;
        /** The moment the page was opened with, until the log reaches it. */
        this.wanted = location.hash;
        window.addEventListener("hashchange", () => {
            if (location.hash !== this.written) {
                goTo(state, location.hash);
            }
        });
    }

    /**
     * Goes to the moment the page was opened with.
     * @param {boolean} complete whether the whole log is there
     */
    restore(complete) {
        if (this.wanted === "" || !this.state.hasMatch) {
            return;
        }
        const time = Number(/t=(\d{1,8})/.exec(this.wanted)?.[1] ?? 0);
        if (complete || this.state.store.times[this.state.playback.last] > time) {
            goTo(this.state, this.wanted);
            this.wanted = "";
        }
    }

    /** @param {number} now */
    update(now) {
        if (
            !this.state.hasMatch ||
            this.wanted !== "" ||
            this.state.playback.atLive ||
            now - this.lastWrite < LEAST_PAUSE_MS
        ) {
            return;
        }
        const address = addressOf(this.state);
        if (address !== this.written) {
            this.written = address;
            this.lastWrite = now;
            try {
                history.replaceState(null, "", address);
            } catch {
                // A page without an address of its own, such as a preview, has nothing to keep.
            }
        }
    }
}
