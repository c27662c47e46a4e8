/** The keys, and the list of them that `?` shows. */

import {Actions} from "./actions.js";
import {byId, dialog, make} from "./dom.js";

/**
 * @typedef {object} Key
 * @property {string} keys as the list shows them
 * @property {string} text
 * @property {Record<string, (actions: Actions) => void>} on by the event's key, with "Shift+"
 *     before it where needed
 */

/** Shift with an arrow goes this many steps: a second of the match. */
const LONG_STEP = 10;

/** @type {readonly Key[]} */
export const KEYS = [
    {keys: "Space", text: "Play or pause", on: {" ": (a) => a.toggle()}},
    {
        keys: "← →",
        text: "One step",
        on: {ArrowLeft: (a) => a.step(-1), ArrowRight: (a) => a.step(1)},
    },
    {
        keys: "Shift ← →",
        text: "One second",
        on: {
            "Shift+ArrowLeft": (a) => a.step(-LONG_STEP),
            "Shift+ArrowRight": (a) => a.step(LONG_STEP),
        },
    },
    {
        keys: "G, Shift G",
        text: "Next, previous goal",
        on: {g: (a) => a.goal(1), "Shift+G": (a) => a.goal(-1)},
    },
    {
        keys: "E, Shift E",
        text: "Next, previous event",
        on: {e: (a) => a.event(1), "Shift+E": (a) => a.event(-1)},
    },
    {keys: "Home, End", text: "Beginning, end", on: {Home: (a) => a.start(), End: (a) => a.end()}},
    {keys: "[ ]", text: "Slower, faster", on: {"[": (a) => a.speed(-1), "]": (a) => a.speed(1)}},
    {keys: "S", text: "Skip stoppages", on: {s: (a) => a.skipStoppages()}},
    {keys: "L", text: "To the present (live)", on: {l: (a) => a.goLive()}},
    {
        keys: "+ −",
        text: "Zoom",
        on: {
            "+": (a) => a.zoom(1),
            "Shift++": (a) => a.zoom(1),
            "=": (a) => a.zoom(1),
            "-": (a) => a.zoom(-1),
        },
    },
    {keys: "0", text: "Whole pitch", on: {0: (a) => a.wholePitch()}},
    {keys: "F", text: "Follow the ball", on: {f: (a) => a.followBall()}},
    {keys: "Shift F", text: "Follow the chosen player", on: {"Shift+F": (a) => a.followChosen()}},
    {
        keys: "N, Shift N",
        text: "Choose next, previous player",
        on: {n: (a) => a.choosePlayer(1), "Shift+N": (a) => a.choosePlayer(-1)},
    },
    {keys: "Esc", text: "Choose nobody", on: {Escape: (a) => a.chooseNobody()}},
    {keys: "H", text: "Heat map: whose", on: {h: (a) => a.nextMap("heat")}},
    {keys: "K", text: "Passes: whose", on: {k: (a) => a.nextMap("passes")}},
    {keys: "C", text: "View cones", on: {c: (a) => a.option("cones")}},
    {keys: "R", text: "Stamina rings", on: {r: (a) => a.option("stamina")}},
    {keys: "U", text: "Numbers", on: {u: (a) => a.option("numbers")}},
    {keys: "M", text: "Marks of kicks and more", on: {m: (a) => a.option("marks")}},
    {keys: "T", text: "Ball trail", on: {t: (a) => a.option("trail")}},
    {keys: "V", text: "Ball speed", on: {v: (a) => a.option("speed")}},
    {keys: "O", text: "Offside lines", on: {o: (a) => a.option("offside")}},
    {keys: "X", text: "True sizes", on: {x: (a) => a.option("trueSize")}},
    {keys: "I", text: "Smooth movement", on: {i: (a) => a.option("interpolate")}},
    {keys: "B", text: "Beliefs and drawings", on: {b: (a) => a.option("beliefs")}},
    {keys: "P", text: "Save a picture", on: {p: (a) => a.picture()}},
    {keys: "D", text: "Light or dark", on: {d: (a) => a.theme()}},
    {keys: "?", text: "This list", on: {"?": showKeys, "Shift+?": showKeys}},
];

export function showKeys() {
    if (!dialog("keys").open) {
        dialog("keys").showModal();
    }
}

/**
 * Text fields and open choices keep their keys.
 * @param {EventTarget | null} target
 */
function takesKeys(target) {
    return (
        target instanceof HTMLElement &&
        (target.closest("select, dialog, textarea") !== null ||
            (target instanceof HTMLInputElement && target.type === "text"))
    );
}

/**
 * Elements that Space and Enter press, and groups in which arrows move.
 * @param {EventTarget | null} target
 * @param {string} key
 */
function usesKey(target, key) {
    if (!(target instanceof HTMLElement)) {
        return false;
    }
    const presses = target.matches("button, [type=checkbox], [type=radio]") && key === " ";
    const moves = target.matches("[role=tab], [type=radio]") && /^(Arrow|Home|End)/.test(key);
    return presses || moves;
}

/** @param {Actions} actions */
export function bindKeys(actions) {
    const table = new Map(KEYS.flatMap((key) => Object.entries(key.on)));
    document.addEventListener("keydown", (event) => {
        if (
            event.ctrlKey ||
            event.metaKey ||
            event.altKey ||
            takesKeys(event.target) ||
            usesKey(event.target, event.key)
        ) {
            return;
        }
        const action = table.get((event.shiftKey ? "Shift+" : "") + event.key);
        if (action) {
            action(actions);
            event.preventDefault();
        }
    });
    byId("key-list").append(
        ...KEYS.map((key) =>
            make(
                "div",
                "",
                make(
                    "dt",
                    "",
                    ...key.keys
                        .split(", ")
                        .flatMap((name, index) =>
                            index > 0 ? [" ", make("kbd", "", name)] : [make("kbd", "", name)],
                        ),
                ),
                make("dd", "", key.text),
            ),
        ),
    );
}
