/** From metres of the pitch to points of the screen and back. */

/** What is always visible without zoom: half the pitch and a margin, in metres. */
const HALF_LENGTH = 52.5;
const HALF_WIDTH = 34;
const MARGIN_X = 4;
const MARGIN_Y = 3.5;
const MOST_ZOOM = 20;

export class Camera {
    constructor() {
        /** Size of the canvas in CSS pixels. */
        this.width = 1;
        this.height = 1;
        this.zoom = 1;
        /** What is in the middle, in metres. */
        this.x = 0;
        this.y = 0;
    }

    /** CSS pixels of a metre. */
    get scale() {
        const fit = Math.min(
            this.width / (2 * (HALF_LENGTH + MARGIN_X)),
            this.height / (2 * (HALF_WIDTH + MARGIN_Y)),
        );
        return fit * this.zoom;
    }

    /** @param {number} x metres */
    screenX(x) {
        return (x - this.x) * this.scale + this.width / 2;
    }

    /** @param {number} y metres */
    screenY(y) {
        return (y - this.y) * this.scale + this.height / 2;
    }

    /** @param {number} x CSS pixels */
    fieldX(x) {
        return (x - this.width / 2) / this.scale + this.x;
    }

    /** @param {number} y CSS pixels */
    fieldY(y) {
        return (y - this.height / 2) / this.scale + this.y;
    }

    /**
     * @param {number} width
     * @param {number} height
     */
    resize(width, height) {
        this.width = Math.max(1, width);
        this.height = Math.max(1, height);
        this.keepInside();
    }

    /**
     * Enlarges around a point of the screen, which stays where it is.
     * @param {number} factor
     * @param {number} x CSS pixels
     * @param {number} y CSS pixels
     */
    zoomAt(factor, x, y) {
        const fieldX = this.fieldX(x);
        const fieldY = this.fieldY(y);
        this.zoom = Math.min(Math.max(this.zoom * factor, 1), MOST_ZOOM);
        this.x = fieldX - (x - this.width / 2) / this.scale;
        this.y = fieldY - (y - this.height / 2) / this.scale;
        this.keepInside();
    }

    /**
     * @param {number} dx CSS pixels
     * @param {number} dy CSS pixels
     */
    pan(dx, dy) {
        this.lookAt(this.x - dx / this.scale, this.y - dy / this.scale);
    }

    /**
     * @param {number} x metres
     * @param {number} y metres
     */
    lookAt(x, y) {
        this.x = x;
        this.y = y;
        this.keepInside();
    }

    reset() {
        this.zoom = 1;
        this.lookAt(0, 0);
    }

    /**
     * Never shows more beyond the pitch than the margin, where there is enough pitch to fill the
     * screen.
     */
    keepInside() {
        const roomX = Math.max(0, HALF_LENGTH + MARGIN_X - this.width / 2 / this.scale);
        const roomY = Math.max(0, HALF_WIDTH + MARGIN_Y - this.height / 2 / this.scale);
        this.x = Math.min(Math.max(this.x, -roomX), roomX);
        this.y = Math.min(Math.max(this.y, -roomY), roomY);
    }
}
