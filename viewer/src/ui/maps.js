/** The maps' pane: whose heat map and whose passes are drawn. */

import {State} from "../state.js";
import {byId, make} from "./dom.js";

const WHOSE = /** @type {const} */ (["off", "left", "right", "chosen"]);

export class MapsPane {
    /** @param {State} state */
    constructor(state) {
        this.state = state;
        /**
         * @type {{map: "heat" | "passes", whose: typeof WHOSE[number], box: HTMLInputElement, text:
         *     HTMLElement}[]}
         */
        this.choices = [];
        this.passes = make("p", "quiet");
        byId("pane-maps").append(
            this.makeGroup("heat", "Heat map"),
            this.makeGroup("passes", "Passes"),
            this.passes,
            make(
                "p",
                "quiet",
                "Both grow with the match, up to the present cycle. Full arrows are " +
                    "passes that arrived, dashed ones were lost; the last 60 are drawn.",
            ),
        );
    }

    /**
     * @param {"heat" | "passes"} map
     * @param {string} title
     */
    makeGroup(map, title) {
        const group = make("fieldset", "", make("legend", "", title));
        for (const whose of WHOSE) {
            const box = make("input", "");
            box.type = "radio";
            box.name = map;
            box.id = `${map}-${whose}`;
            box.addEventListener("change", () => {
                this.state.options[map] = whose;
                this.state.changed();
            });
            const text = make("span", "");
            this.choices.push({map, whose, box, text});
            group.append(make("label", "", box, text));
        }
        return group;
    }

    /** @param {number} show */
    update(show) {
        const {options, store, chosen, figures} = this.state;
        if (byId("pane-maps").hidden) {
            return;
        }
        const names = store.teamNames(show);
        const texts = {
            off: "nobody",
            left: names[0],
            right: names[1],
            chosen: chosen.size > 0 ? "the chosen players" : "the chosen players (none yet)",
        };
        for (const {map, whose, box, text} of this.choices) {
            box.checked = options[map] === whose;
            text.textContent = texts[whose];
        }
        const passes = figures.passesUpTo(show);
        const counts = [0, 1].map((side) => {
            const own = passes.filter((pass) => (pass.from < 11 ? 0 : 1) === side);
            return `${names[side]} ${own.filter((pass) => pass.to >= 0).length} of ${own.length}`;
        });
        this.passes.textContent = `Passes that arrived: ${counts.join(", ")}`;
    }
}
