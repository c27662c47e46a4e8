/** The panel beside the pitch: tabs, the figures of both teams, and the list of events. */

import {tableOf} from "../match/table.js";
import {State} from "../state.js";
import {byId, button, make, setAttribute, setText} from "./dom.js";

const TABS = ["match", "player", "maps", "events"];

/** The list of events shows this many; a longer one would slow the page. */
const MOST_EVENTS = 600;

/**
 * Chooses a tab and shows its pane.
 * @param {string} name
 */
export function openTab(name) {
    for (const tab of TABS) {
        const chosen = tab === name;
        setAttribute(button(`tab-${tab}`), "aria-selected", String(chosen));
        button(`tab-${tab}`).tabIndex = chosen ? 0 : -1;
        byId(`pane-${tab}`).hidden = !chosen;
    }
}

/**
 * Clicks and arrow keys, as a screen reader's user expects of tabs.
 * @param {() => void} opened called after a tab was opened
 */
export function bindTabs(opened) {
    for (const [index, tab] of TABS.entries()) {
        button(`tab-${tab}`).addEventListener("click", () => {
            openTab(tab);
            opened();
        });
        button(`tab-${tab}`).addEventListener("keydown", (event) => {
            const move = event.key === "ArrowRight" ? 1 : event.key === "ArrowLeft" ? -1 : 0;
            if (move !== 0) {
                const next = TABS[(index + move + TABS.length) % TABS.length];
                openTab(next);
                opened();
                button(`tab-${next}`).focus();
                event.stopPropagation();
            }
        });
    }
}

export class FiguresPane {
    /** @param {State} state */
    constructor(state) {
        this.state = state;
        this.pane = byId("figures");
        /** @type {{left: HTMLElement, right: HTMLElement, bars: HTMLElement[]}[]} */
        this.rows = [];
    }

    /** @param {number} show */
    update(show) {
        const rows = this.state.hasMatch ? tableOf(this.state.figures, show) : [];
        if (rows.length !== this.rows.length) {
            this.makeRows(rows.map((row) => row.label));
        }
        rows.forEach((row, index) => {
            const {left, right, bars} = this.rows[index];
            setText(left, row.left);
            setText(right, row.right);
            bars[0].style.flexGrow = String(Math.max(row.share, 0.004));
            bars[1].style.flexGrow = String(Math.max(1 - row.share, 0.004));
        });
        setText(
            byId("result"),
            this.state.store.result ? `Result record: ${this.state.store.result}` : "",
        );
    }

    /** @param {string[]} labels */
    makeRows(labels) {
        this.rows = labels.map(() => ({
            left: make("span", "value"),
            right: make("span", "value"),
            bars: [make("i", ""), make("i", "")],
        }));
        this.pane.replaceChildren(
            ...this.rows.map(({left, right, bars}, index) =>
                make(
                    "div",
                    "figure",
                    left,
                    make("span", "label", labels[index]),
                    right,
                    make("div", "bar", ...bars),
                ),
            ),
        );
    }
}

export class EventsPane {
    /**
     * @param {State} state
     * @param {(position: number) => void} seek
     */
    constructor(state, seek) {
        this.state = state;
        this.seek = seek;
        this.list = byId("events");
        this.marks = state.marks;
        this.made = 0;
    }

    /** @param {number} show */
    update(show) {
        if (byId("pane-events").hidden) {
            return;
        }
        const {marks, store} = this.state;
        if (marks !== this.marks) {
            this.marks = marks;
            this.made = 0;
            this.list.replaceChildren();
        }
        for (; this.made < Math.min(marks.all.length, MOST_EVENTS); this.made += 1) {
            const mark = marks.all[this.made];
            const element = make(
                "button",
                mark.kind,
                make("span", "time", String(store.times[mark.show])),
                make("span", "", mark.text),
            );
            element.addEventListener("click", () => this.seek(mark.show));
            this.list.append(make("li", "", element));
        }
        let current = -1;
        while (current + 1 < this.made && marks.all[current + 1].show <= show) {
            current += 1;
        }
        for (const [index, item] of [...this.list.children].entries()) {
            setAttribute(
                /** @type {Element} */ (item.firstElementChild),
                "aria-current",
                String(index === current),
            );
        }
    }
}
