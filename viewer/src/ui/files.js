/** Opens what is dropped, chosen or embedded, whatever it is, and says what was wrong with it. */

import {fromBase64, kindOf, readAll, readGameLog} from "../log/load.js";
import {planFileOf} from "../log/plans.js";
import {UnreadableLog} from "../log/reader.js";
import {State} from "../state.js";
import {byId, button, dialog, input} from "./dom.js";

/** @typedef {{name: string, blob: Blob}} Named */
/**
 * @typedef {{report: (text: string) => void, restart: (name: string) => void, loaded: () => void}} Page
 */

/** A folder with more files than this is not a match's. */
const MOST_FILES = 200;

/**
 * @typedef {object} Embedded
 * @property {string} [name]
 * @property {string} [rcg]
 * @property {string} [rcl]
 * @property {{name: string, text: string}[]} [plans]
 */

export class Files {
    /**
     * @param {State} state
     * @param {Page} page
     */
    constructor(state, page) {
        this.state = state;
        this.page = page;
        /** Counts what was opened: a log that is still being read stops when another is opened. */
        this.opened = 0;
        input("files").addEventListener("change", () => {
            const files = [...(input("files").files ?? [])].map((file) => ({
                name: file.name,
                blob: file,
            }));
            input("files").value = "";
            this.open(files);
        });
        this.bindDrop();
    }

    bindDrop() {
        const stage = byId("stage");
        document.addEventListener("dragover", (event) => {
            event.preventDefault();
            stage.classList.add("over");
        });
        document.addEventListener("dragleave", (event) => {
            if (event.relatedTarget === null) {
                stage.classList.remove("over");
            }
        });
        document.addEventListener("drop", async (event) => {
            event.preventDefault();
            stage.classList.remove("over");
            this.open(await droppedFiles(event.dataTransfer));
        });
    }

    /** @param {Embedded} source */
    async openEmbedded(source) {
        try {
            const name = source.name ?? "match.rcg";
            const files = [{name, blob: fromBase64(source.rcg ?? "")}];
            if (source.rcl) {
                files.push({
                    name: name.replace(/\.rcg(\.gz)?$/, "") + ".rcl",
                    blob: fromBase64(source.rcl),
                });
            }
            for (const plan of source.plans ?? []) {
                files.push({name: plan.name, blob: fromBase64(plan.text)});
            }
            await this.open(files);
        } catch {
            this.page.report("The match inside this page is damaged.");
        }
    }

    /** @param {Named[]} files */
    async open(files) {
        this.opened += 1;
        /** @type {Record<string, Named[]>} */
        const kinds = {"game log": [], "text log": [], "plan log": [], unknown: []};
        for (const file of files.slice(0, MOST_FILES)) {
            const kind = planFileOf(file.name) ? "plan log" : await kindOf(file.blob);
            kinds[kind].push(file);
        }
        const log = kinds["game log"][0];
        if (log && !(await this.openGameLog(log))) {
            return;
        }
        const text = kinds["text log"][0];
        if (text) {
            this.state.commands.load(await readAll(text.blob));
        }
        await this.openPlans(kinds["plan log"]);
        if (!log && !text && kinds["plan log"].length === 0 && files.length > 0) {
            this.page.report(
                `${files[0].name} is no game log: it does not begin with ULG4, ULG5 or ULG6.`,
            );
        }
        this.state.changed();
    }

    /**
     * @param {Named} file
     * @returns {Promise<boolean>} false when nothing of it can be shown
     */
    async openGameLog(file) {
        const turn = this.opened;
        this.page.restart(file.name);
        const {state} = this;
        try {
            const {complete} = await readGameLog(file.blob, state.reader, () => {
                if (turn === this.opened) {
                    state.grown();
                }
                return turn === this.opened;
            });
            if (turn !== this.opened) {
                return false;
            }
            this.page.loaded();
            this.reportFaults(file.name, complete);
        } catch (error) {
            if (!(error instanceof UnreadableLog)) {
                throw error;
            }
            this.page.report(`${file.name}: ${error.message}`);
            return false;
        }
        return true;
    }

    /**
     * @param {string} name
     * @param {boolean} complete
     */
    reportFaults(name, complete) {
        const {reader, store} = this.state;
        const faults = [];
        if (store.length === 0) {
            faults.push("it has no step of a match to show");
        } else if (!complete) {
            faults.push(
                `the file is cut off; it is shown up to cycle ${store.times[store.length - 1]}`,
            );
        }
        if (reader.badRecords > 0) {
            const count =
                reader.badRecords === 1
                    ? "1 record that cannot be read is"
                    : `${reader.badRecords} records that cannot be read are`;
            faults.push(`${count} left out (${reader.firstBad})`);
        }
        if (reader.full) {
            faults.push(`it is too long; only the first ${store.length} steps are shown`);
        }
        if (faults.length > 0) {
            this.page.report(`${name}: ${faults.join("; ")}.`);
        }
    }

    /** @param {Named[]} files */
    async openPlans(files) {
        const unknown = files.some((file) => (planFileOf(file.name)?.side ?? -1) < 0);
        const asked = unknown ? await askSide() : -1;
        for (const file of files) {
            const plan = planFileOf(file.name);
            const side = plan && plan.side >= 0 ? plan.side : asked;
            if (plan && side >= 0) {
                this.state.plans.load(
                    side * 11 + plan.unum - 1,
                    plan.beliefs,
                    await readAll(file.blob),
                );
            } else if (!plan) {
                this.page.report(
                    `${file.name} has plan records, but its name does not tell the player: ` +
                        "name it player7.log or beliefs7.log.",
                );
            }
        }
    }
}

/**
 * Asks which side the players of some plan logs were on; -1 when the user does not say.
 * @returns {Promise<number>}
 */
function askSide() {
    const box = dialog("ask-side");
    return new Promise((resolve) => {
        let side = -1;
        button("ask-left").onclick = () => {
            side = 0;
            box.close();
        };
        button("ask-right").onclick = () => {
            side = 1;
            box.close();
        };
        button("ask-cancel").onclick = () => box.close();
        box.addEventListener("close", () => resolve(side), {once: true});
        box.showModal();
    });
}

/**
 * The dropped files; those in folders with their folders' names.
 * @param {DataTransfer | null} transfer
 * @returns {Promise<Named[]>}
 */
async function droppedFiles(transfer) {
    const entries = [...(transfer?.items ?? [])].map((item) => item.webkitGetAsEntry?.() ?? null);
    /** @type {Named[]} */
    const files = [...(transfer?.files ?? [])].map((file) => ({name: file.name, blob: file}));
    if (!entries.some((entry) => entry?.isDirectory)) {
        return files;
    }
    files.length = 0;
    for (const entry of entries) {
        if (entry) {
            await collect(entry, files);
        }
    }
    return files;
}

/**
 * @param {FileSystemEntry} entry
 * @param {Named[]} files
 * @returns {Promise<void>}
 */
async function collect(entry, files) {
    if (files.length >= MOST_FILES) {
        return;
    }
    if (entry.isFile) {
        const file = await new Promise((resolve, reject) =>
            /** @type {FileSystemFileEntry} */ (entry).file(resolve, reject),
        );
        files.push({name: entry.fullPath.replace(/^\//, ""), blob: /** @type {File} */ (file)});
        return;
    }
    const reader = /** @type {FileSystemDirectoryEntry} */ (entry).createReader();
    for (;;) {
        const part = await new Promise((resolve, reject) => reader.readEntries(resolve, reject));
        if (part.length === 0) {
            return;
        }
        for (const child of /** @type {FileSystemEntry[]} */ (part)) {
            await collect(child, files);
        }
    }
}
