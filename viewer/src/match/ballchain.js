/**
 * Follows the ball from touch to touch. What a touch was shows only when the next one comes or the
 * play stops: that closes it as a pass, a shot, a part of a dribble, or nothing. The definitions
 * are those of docs/statistics.md.
 */

/** What rolls less is lost in a duel or handed over: metres. */
const PASS_DISTANCE = 3;

/** Between a player's first and last touch: metres. */
const DRIBBLE_DISTANCE = 3;

/** So many metres beside a post still make a shot. */
const NARROW_MISS = 3;
const HALF_LENGTH = 52.5;

/**
 * @typedef {{x: number, y: number}} Place
 *
 * @typedef {object} Touch
 * @property {"kick" | "tackle" | "catch"} kind
 * @property {number} player index from 0 to 21
 * @property {number} show
 * @property {Place} place of the ball before it
 * @property {Place & {vx: number, vy: number}} ball after it
 *
 * @typedef {object} Pass
 * @property {number} show when it was received or lost
 * @property {number} from who played it
 * @property {number} to who received it, -1 when it was lost
 * @property {Place} start
 * @property {Place} end
 *
 * @typedef {(key: string, player: number, show: number) => void} Count for a player and its team
 */

/** @param {number} player */
export function sideOf(player) {
    return player < 11 ? 0 : 1;
}

/**
 * @param {Place} one
 * @param {Place} two
 */
function distance(one, two) {
    return Math.hypot(one.x - two.x, one.y - two.y);
}

export class BallChain {
    /**
     * @param {Count} count
     * @param {(pass: Pass) => void} passed
     */
    constructor(count, passed) {
        this.count = count;
        this.passed = passed;
        /** @type {Touch | null} */
        this.last = null;
        /** Whose the ball is: a side, or -1. */
        this.owner = -1;
        this.dribbleFrom = {x: 0, y: 0};
        this.goalHalfWidth = 7.01;
        this.ballDecay = 0.94;
    }

    /** @param {Touch} touch */
    touch(touch) {
        const same = this.last?.player === touch.player;
        if (this.last && !same) {
            this.closeBy(this.last, touch);
        }
        if (!same) {
            this.dribbleFrom = touch.place;
        }
        this.count(
            {kick: "kicks", tackle: "tackles", catch: "catches"}[touch.kind],
            touch.player,
            touch.show,
        );
        this.last = touch;
        this.owner = sideOf(touch.player);
    }

    /**
     * Both teams touch the ball in one step: nobody knows whose it is.
     * @param {number} show
     */
    duel(show) {
        if (this.last) {
            this.endDribble(this.last, show);
        }
        this.last = null;
    }

    /**
     * @param {number} side that gets the goal
     * @param {number} show
     */
    goal(side, show) {
        if (this.last && sideOf(this.last.player) === side) {
            this.shot(this.last, true, show);
            this.count("goals", this.last.player, show);
        }
        this.stop(show);
    }

    /**
     * @param {Place} place
     * @param {number} show
     */
    ballOut(place, show) {
        if (this.last) {
            this.lost(this.last, place, show);
        }
        this.stop(show);
    }

    /**
     * @param {number} offender side
     * @param {Place} place
     * @param {number} show
     */
    offside(offender, place, show) {
        if (this.last && sideOf(this.last.player) === offender) {
            this.pass(this.last, place, -1, show);
        }
        this.stop(show);
    }

    /**
     * The play stops.
     * @param {number} show
     */
    stop(show) {
        this.duel(show);
        this.owner = -1;
    }

    /**
     * @param {Touch} last
     * @param {Touch} next
     */
    closeBy(last, next) {
        this.endDribble(last, next.show);
        if (sideOf(next.player) === sideOf(last.player)) {
            this.pass(last, next.place, next.player, next.show);
        } else if (this.lost(last, next.place, next.show)) {
            this.count("interceptions", next.player, next.show);
        }
    }

    /**
     * A ball that went to nobody of the team. True for a pass.
     * @param {Touch} last
     * @param {Place} to where it was lost
     * @param {number} show
     */
    lost(last, to, show) {
        if (last.kind === "catch") {
            return false;
        }
        const aim = this.aimOf(last);
        if (aim === "elsewhere") {
            return this.pass(last, to, -1, show);
        }
        this.shot(last, aim === "on target", show);
        return false;
    }

    /**
     * @param {Touch} kick
     * @param {Place} to
     * @param {number} receiver -1 when it was lost
     * @param {number} show
     */
    pass(kick, to, receiver, show) {
        const from = kick.place;
        if (kick.kind === "catch" || distance(from, to) < PASS_DISTANCE) {
            return false;
        }
        this.count("passes", kick.player, show);
        if (receiver >= 0) {
            this.count("passesArrived", kick.player, show);
            this.count("passesReceived", receiver, show);
        }
        const attack = sideOf(kick.player) === 0 ? 1 : -1;
        const ahead = attack * (to.x - from.x);
        const aside = attack * (to.y - from.y);
        const way =
            Math.abs(ahead) >= Math.abs(aside)
                ? ahead > 0
                    ? "passesForward"
                    : "passesBack"
                : aside > 0
                  ? "passesRight"
                  : "passesLeft";
        this.count(way, kick.player, show);
        this.passed({show, from: kick.player, to: receiver, start: from, end: to});
        return true;
    }

    /**
     * @param {Touch} kick
     * @param {boolean} onTarget
     * @param {number} show
     */
    shot(kick, onTarget, show) {
        this.count("shots", kick.player, show);
        if (onTarget) {
            this.count("shotsOnTarget", kick.player, show);
        }
    }

    /**
     * @param {Touch} last
     * @param {number} show
     */
    endDribble(last, show) {
        if (distance(this.dribbleFrom, last.place) >= DRIBBLE_DISTANCE) {
            this.count("dribbles", last.player, show);
        }
    }

    /**
     * Whether the ball, left alone, rolls over the goal line into the goal, or past it narrowly.
     * @param {Touch} touch
     */
    aimOf(touch) {
        const attack = sideOf(touch.player) === 0 ? 1 : -1;
        const toGo = HALF_LENGTH - attack * touch.ball.x;
        const speed = attack * touch.ball.vx;
        if (speed <= 0 || toGo < 0) {
            return "elsewhere";
        }
        const reaches = speed >= toGo * (1 - this.ballDecay);
        const miss = Math.abs(touch.ball.y + (touch.ball.vy * toGo) / speed) - this.goalHalfWidth;
        if (!reaches || miss > NARROW_MISS) {
            return "elsewhere";
        }
        return miss > 0 ? "wide" : "on target";
    }
}
