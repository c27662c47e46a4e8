/** Small helpers for the page's elements. Text only ever goes in as text. */

/**
 * The element with an id, which must be there.
 * @param {string} id
 * @returns {HTMLElement}
 */
export function byId(id) {
    const element = document.getElementById(id);
    if (!element) {
        throw new Error(`the page has no element ${id}`);
    }
    return element;
}

/**
 * @param {string} id
 * @returns {HTMLButtonElement}
 */
export function button(id) {
    return /** @type {HTMLButtonElement} */ (byId(id));
}

/**
 * @param {string} id
 * @returns {HTMLInputElement}
 */
export function input(id) {
    return /** @type {HTMLInputElement} */ (byId(id));
}

/**
 * @param {string} id
 * @returns {HTMLSelectElement}
 */
export function select(id) {
    return /** @type {HTMLSelectElement} */ (byId(id));
}

/**
 * @param {string} id
 * @returns {HTMLDialogElement}
 */
export function dialog(id) {
    return /** @type {HTMLDialogElement} */ (byId(id));
}

/**
 * A new element with a class and its contents.
 * @template {keyof HTMLElementTagNameMap} K
 * @param {K} tag
 * @param {string} kind its class, "" for none
 * @param {...(Node | string)} contents
 * @returns {HTMLElementTagNameMap[K]}
 */
export function make(tag, kind, ...contents) {
    const element = document.createElement(tag);
    if (kind) {
        element.className = kind;
    }
    element.append(...contents);
    return element;
}

/**
 * Sets the text where it differs, so that nothing is laid out anew without need.
 * @param {Element} element
 * @param {string} text
 */
export function setText(element, text) {
    if (element.textContent !== text) {
        element.textContent = text;
    }
}

/**
 * @param {Element} element
 * @param {string} name
 * @param {string} value
 */
export function setAttribute(element, name, value) {
    if (element.getAttribute(name) !== value) {
        element.setAttribute(name, value);
    }
}

/**
 * A canvas fitted to its size on the screen; null while it is hidden.
 * @param {HTMLCanvasElement} canvas
 * @returns {{context: CanvasRenderingContext2D, width: number, height: number} | null}
 */
export function fitted(canvas) {
    const width = canvas.clientWidth;
    const height = canvas.clientHeight;
    const context = canvas.getContext("2d");
    if (!context || width === 0 || height === 0) {
        return null;
    }
    const density = Math.min(window.devicePixelRatio || 1, 3);
    const [pixelWidth, pixelHeight] = [Math.round(width * density), Math.round(height * density)];
    if (canvas.width !== pixelWidth || canvas.height !== pixelHeight) {
        canvas.width = pixelWidth;
        canvas.height = pixelHeight;
    }
    context.setTransform(density, 0, 0, density, 0, 0);
    context.clearRect(0, 0, width, height);
    return {context, width, height};
}

/**
 * The value of a style variable.
 * @param {string} name
 */
export function styleValue(name) {
    return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}
