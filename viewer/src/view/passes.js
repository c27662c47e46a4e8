/** The passes of a player or a team, as arrows. */

/** @typedef {import("./players.js").Scene} Scene */
/** @typedef {import("../match/ballchain.js").Pass} Pass */

const HEAD = 7;

/** The newest passes are drawn; more would hide the pitch. */
const MOST_PASSES = 60;

/**
 * Completed passes are full lines, lost ones dashed.
 * @param {Scene} scene
 * @param {readonly Pass[]} passes up to the present
 * @param {readonly number[]} players whose passes
 */
export function drawPasses({context, camera, colours}, passes, players) {
    const wanted = passes.filter((pass) => players.includes(pass.from)).slice(-MOST_PASSES);
    for (const pass of wanted) {
        const fromX = camera.screenX(pass.start.x);
        const fromY = camera.screenY(pass.start.y);
        const toX = camera.screenX(pass.end.x);
        const toY = camera.screenY(pass.end.y);
        const angle = Math.atan2(toY - fromY, toX - fromX);
        context.globalAlpha = pass.to >= 0 ? 0.95 : 0.6;
        context.strokeStyle = pass.to >= 0 ? colours.team[pass.from < 11 ? 0 : 1] : colours.ink;
        context.lineWidth = 2;
        context.setLineDash(pass.to >= 0 ? [] : [4, 5]);
        context.beginPath();
        context.moveTo(fromX, fromY);
        context.lineTo(toX, toY);
        context.stroke();
        context.setLineDash([]);
        context.beginPath();
        for (const side of [-1, 1]) {
            context.moveTo(toX, toY);
            context.lineTo(
                toX - HEAD * Math.cos(angle + side * 0.45),
                toY - HEAD * Math.sin(angle + side * 0.45),
            );
        }
        context.stroke();
    }
    context.globalAlpha = 1;
}
