/**
 * Colours of the canvas. Yellow against blue differ for every common kind of colour blindness, and
 * differ in lightness too; what a mark means is told by its form, never by its colour alone.
 */

/**
 * @typedef {object} Palette
 * @property {string} around
 * @property {readonly [string, string]} grass
 * @property {string} line
 * @property {string} net
 * @property {readonly [string, string]} team
 * @property {readonly [string, string]} keeper
 * @property {readonly [string, string]} number
 * @property {string} edge
 * @property {string} ball
 * @property {string} ink
 * @property {string} accent chosen players and what they believe
 * @property {string} drawing what players drew
 */

/** @type {Palette} */
const LIGHT = {
    around: "#3f7f55",
    grass: ["#4a8f60", "#4f9565"],
    line: "rgba(255,255,255,0.85)",
    net: "rgba(255,255,255,0.35)",
    team: ["#ffd23f", "#1f4fd1"],
    keeper: ["#ff9f4a", "#7cc4ff"],
    number: ["#2a2100", "#ffffff"],
    edge: "#10251a",
    ball: "#ffffff",
    ink: "#ffffff",
    accent: "#ff5fd2",
    drawing: "#a5f3ff",
};

/** @type {Palette} */
const DARK = {
    around: "#13251b",
    grass: ["#193324", "#1c3828"],
    line: "rgba(222,240,228,0.6)",
    net: "rgba(222,240,228,0.22)",
    team: ["#ffd23f", "#5b8cff"],
    keeper: ["#ff9f4a", "#9ad6ff"],
    number: ["#2a2100", "#06122e"],
    edge: "#07110b",
    ball: "#ffffff",
    ink: "#eef7f1",
    accent: "#ff7adb",
    drawing: "#8be9fd",
};

/** @param {boolean} dark */
export function palette(dark) {
    return dark ? DARK : LIGHT;
}

/**
 * A player's colour.
 * @param {Palette} colours
 * @param {number} side
 * @param {boolean} goalie
 */
export function playerColour(colours, side, goalie) {
    return (goalie ? colours.keeper : colours.team)[side];
}

/**
 * The number's colour on it; the goalkeepers' shades are light.
 * @param {Palette} colours
 * @param {number} side
 * @param {boolean} goalie
 */
export function numberColour(colours, side, goalie) {
    return goalie ? colours.number[0] : colours.number[side];
}
