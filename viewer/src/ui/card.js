/** The players' pane: both line-ups to choose from, and the chosen player's card. */

import {
    CAPACITY,
    COUNT_NAMES,
    EFFORT,
    GOALIE,
    RECOVERY,
    RED,
    STAMINA,
    VX,
    VY,
    YELLOW,
} from "../log/store.js";
import {State} from "../state.js";
import {byId, make, setAttribute} from "./dom.js";

/** The commands of this cycle and of so many datagrams before are shown. */
const SHOWN_COMMANDS = 12;

export class PlayersPane {
    /** @param {State} state */
    constructor(state) {
        this.state = state;
        this.card = byId("card");
        /** @type {HTMLButtonElement[]} */
        this.buttons = [];
        this.titles = [make("span", ""), make("span", "")];
        for (const side of [0, 1]) {
            const chip = make("span", `chip ${side === 0 ? "left" : "right"}`);
            const row = make("div", "team-row", make("div", "title", chip, this.titles[side]));
            for (let unum = 1; unum <= 11; unum += 1) {
                row.append(this.makeButton(side * 11 + unum - 1, unum));
            }
            byId("line-up").append(row);
        }
    }

    /**
     * @param {number} player
     * @param {number} unum
     */
    makeButton(player, unum) {
        const element = make("button", "toggle", String(unum));
        element.addEventListener("click", (event) => this.state.choose(player, event.shiftKey));
        this.buttons.push(element);
        return element;
    }

    /** @param {number} show */
    update(show) {
        const {state} = this;
        if (byId("pane-player").hidden) {
            return;
        }
        const names = state.store.teamNames(show);
        this.titles.forEach((title, side) => {
            title.textContent = names[side];
        });
        this.buttons.forEach((element, player) => {
            element.disabled = !state.hasMatch || !state.store.onField(show, player);
            setAttribute(element, "aria-pressed", String(state.chosen.has(player)));
            setAttribute(
                element,
                "aria-label",
                `${names[player < 11 ? 0 : 1]} ${(player % 11) + 1}`,
            );
        });
        if (state.primary < 0 || !state.hasMatch) {
            this.card.replaceChildren(
                make("p", "quiet", "Choose a player here or on the pitch; with Shift, several."),
            );
            return;
        }
        this.card.replaceChildren(...this.contents(show, state.primary, names));
    }

    /**
     * @param {number} show
     * @param {number} player
     * @param {readonly string[]} names
     */
    contents(show, player, names) {
        const {state} = this;
        const {store} = state;
        const side = player < 11 ? 0 : 1;
        const bits = store.state(show, player);
        const role = [
            bits & GOALIE ? "goalkeeper" : "",
            bits & RED ? "sent off" : bits & YELLOW ? "yellow card" : "",
        ]
            .filter(Boolean)
            .join(", ");
        const head = make(
            "div",
            "head",
            make("span", `chip ${side === 0 ? "left" : "right"}`),
            `${names[side]} ${(player % 11) + 1}`,
            make("span", "quiet", role),
        );
        const counts = COUNT_NAMES.map((name, index) =>
            numberBox(name, String(store.count(show, player, index))),
        );
        return [
            head,
            make("h2", "", "Now"),
            make("div", "numbers", ...this.present(show, player)),
            make("h2", "", "Has done"),
            make("div", "numbers", ...this.done(show, player)),
            make("h2", "", "Commands so far"),
            make("div", "numbers", ...counts),
            make("h2", "", "Told the server"),
            this.commands(show, player, names[side]),
        ];
    }

    /**
     * @param {number} show
     * @param {number} player
     */
    present(show, player) {
        const {store, figures} = this.state;
        const value = (/** @type {number} */ field) => store.player(show, player, field);
        const speed = (Math.hypot(value(VX), value(VY)) * 1000) / store.stepMs();
        const capacity = value(CAPACITY);
        const listens = store.listens[show * 22 + player];
        const boxes = [
            numberBox("stamina", Math.round(value(STAMINA)).toString()),
            numberBox("speed, m/s", speed.toFixed(1)),
            numberBox("effort", value(EFFORT).toFixed(2)),
            numberBox("recovery", value(RECOVERY).toFixed(2)),
            numberBox("view angle", `${store.widths[show * 22 + player]}°`),
            numberBox("metres run", Math.round(figures.metres.at(show, player)).toString()),
        ];
        if (Number.isFinite(capacity)) {
            boxes.push(numberBox("capacity", Math.round(capacity).toString()));
        }
        if (listens > 0) {
            boxes.push(
                numberBox(
                    "listens to",
                    `${listens <= 11 ? "left" : "right"} ${((listens - 1) % 11) + 1}`,
                ),
            );
        }
        return boxes;
    }

    /**
     * @param {number} show
     * @param {number} player
     */
    done(show, player) {
        const count = (/** @type {string} */ key) => this.state.figures.ofPlayer(key, player, show);
        return [
            numberBox("goals", String(count("goals"))),
            numberBox("shots (on target)", `${count("shots")} (${count("shotsOnTarget")})`),
            numberBox("passes arrived", `${count("passesArrived")} of ${count("passes")}`),
            numberBox("passes received", String(count("passesReceived"))),
            numberBox("interceptions", String(count("interceptions"))),
            numberBox("dribbles", String(count("dribbles"))),
        ];
    }

    /**
     * @param {number} show
     * @param {number} player
     * @param {string} team
     */
    commands(show, player, team) {
        const {commands, store} = this.state;
        if (!commands.loaded) {
            return make("p", "quiet", "Open the match's .rcl too to see the commands.");
        }
        const time = store.times[show];
        const stoppage = store.stoppages[show];
        const list = commands.last(team, (player % 11) + 1, time, stoppage, SHOWN_COMMANDS);
        return make(
            "ul",
            "commands",
            ...list.map((command) => {
                const now = command.time === time && command.stoppage === stoppage;
                return make(
                    "li",
                    now ? "current" : "",
                    make(
                        "span",
                        "time",
                        command.stoppage > 0
                            ? `${command.time}+${command.stoppage}`
                            : String(command.time),
                    ),
                    make("span", "", command.text),
                );
            }),
        );
    }
}

/**
 * @param {string} name
 * @param {string} value
 */
function numberBox(name, value) {
    return make("div", "", make("b", "", value), make("span", "", name));
}
