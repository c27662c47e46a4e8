/** The buttons below the pitch and the menu of what is shown. */

import {SPEEDS} from "../match/playback.js";
import {State} from "../state.js";
import {Stage} from "../view/stage.js";
import {Actions} from "./actions.js";
import {byId, button, input, make, select, setAttribute} from "./dom.js";
import {showKeys} from "./keys.js";

/** @type {readonly [Parameters<Actions["option"]>[0], string, string][]} */
const SWITCHES = [
    ["cones", "View cones", "C"],
    ["stamina", "Stamina rings", "R"],
    ["numbers", "Numbers", "U"],
    ["marks", "Kicks and tackles", "M"],
    ["trail", "Ball trail", "T"],
    ["speed", "Ball speed", "V"],
    ["offside", "Offside lines", "O"],
    ["beliefs", "Beliefs", "B"],
    ["trueSize", "True sizes", "X"],
    ["interpolate", "Smooth movement", "I"],
];

export class Controls {
    /**
     * @param {State} state
     * @param {Stage} stage
     * @param {Actions} actions
     */
    constructor(state, stage, actions) {
        this.state = state;
        this.stage = stage;
        this.actions = actions;
        this.followKey = "";
        this.speed = select("speed");
        this.follow = select("follow");
        this.menu = byId("view-menu");
        this.bindButtons();
        this.speed.append(...SPEEDS.map((speed) => new Option(`${speed}×`, String(speed))));
        this.speed.addEventListener("change", () => {
            state.playback.speed = Number(this.speed.value);
            state.changed();
        });
        this.follow.addEventListener("change", () => {
            const {value} = this.follow;
            stage.setFollow(value === "none" || value === "ball" ? value : Number(value));
        });
        this.makeMenu();
    }

    bindButtons() {
        const {actions} = this;
        /** @type {Record<string, () => void>} */
        const table = {
            play: () => actions.toggle(),
            "step-back": () => actions.step(-1),
            "step-forward": () => actions.step(1),
            "event-back": () => actions.event(-1),
            "event-next": () => actions.event(1),
            "goal-back": () => actions.goal(-1),
            "goal-next": () => actions.goal(1),
            "zoom-in": () => actions.zoom(1),
            "zoom-out": () => actions.zoom(-1),
            "zoom-fit": () => actions.wholePitch(),
            skip: () => actions.skipStoppages(),
            "go-live": () => actions.goLive(),
            picture: () => actions.picture(),
            theme: () => actions.theme(),
            help: showKeys,
            view: () => this.openMenu(this.menu.hidden),
            open: () => input("files").click(),
            "choose-file": () => input("files").click(),
        };
        for (const [id, action] of Object.entries(table)) {
            button(id).addEventListener("click", action);
        }
    }

    makeMenu() {
        for (const [name, text, key] of SWITCHES) {
            const box = make("input", "");
            box.type = "checkbox";
            box.id = `show-${name}`;
            box.addEventListener("change", () => this.actions.option(name));
            this.menu.append(make("label", "", box, text, make("kbd", "", key)));
        }
        document.addEventListener("pointerdown", (event) => {
            const target = /** @type {Node} */ (event.target);
            if (!this.menu.contains(target) && !button("view").contains(target)) {
                this.openMenu(false);
            }
        });
        this.menu.addEventListener("keydown", (event) => {
            if (event.key === "Escape") {
                this.openMenu(false);
                button("view").focus();
                event.stopPropagation();
            }
        });
    }

    /** @param {boolean} open */
    openMenu(open) {
        if (this.menu.hidden === !open) {
            return;
        }
        this.menu.hidden = !open;
        button("view").setAttribute("aria-expanded", String(open));
        if (open) {
            this.menu.querySelector("input")?.focus({preventScroll: true});
        }
    }

    update() {
        const {playback, options} = this.state;
        const runs = playback.playing || playback.atLive;
        setAttribute(byId("play-icon"), "href", runs ? "#i-pause" : "#i-play");
        setAttribute(button("play"), "aria-label", runs ? "Pause" : "Play");
        setAttribute(button("skip"), "aria-pressed", String(playback.skipStoppages));
        if (this.speed.value !== String(playback.speed)) {
            this.speed.value = String(playback.speed);
        }
        const live = button("go-live");
        live.hidden = !playback.growing;
        live.classList.toggle("on", playback.atLive);
        for (const [name] of SWITCHES) {
            input(`show-${name}`).checked = options[name];
        }
        this.updateFollow();
    }

    /** The list names the players on the field, by team. */
    updateFollow() {
        const {store, playback, follow} = this.state;
        const names = store.teamNames(playback.show);
        const players = Array.from({length: 22}, (_, player) => player).filter(
            (player) => this.state.hasMatch && store.onField(playback.show, player),
        );
        const key = [...names, ...players].join("\n");
        if (key !== this.followKey) {
            this.followKey = key;
            this.follow.replaceChildren(
                new Option("nobody", "none"),
                new Option("the ball", "ball"),
                ...players.map(
                    (player) =>
                        new Option(
                            `${names[player < 11 ? 0 : 1]} ${(player % 11) + 1}`,
                            String(player),
                        ),
                ),
            );
        }
        if (this.follow.value !== String(follow)) {
            this.follow.value = String(follow);
        }
    }
}
