/** From a file or an embedded text to bytes: unpacks gzip, tells the kinds of file apart. */

import {Reader} from "./reader.js";
import {textOf} from "./scanner.js";

/** More bytes than this of one file are not read. */
const MOST_BYTES = 600e6;

/** The page is let breathe after this many milliseconds of reading. */
const BREATH_MS = 40;

/** @typedef {"game log" | "text log" | "plan log" | "unknown"} Kind */

/** @typedef {{complete: boolean, full: boolean}} Loaded complete: the file did not break off */

/**
 * The type checker of Debian does not know this class yet.
 * @returns {ReadableWritablePair<Uint8Array, Uint8Array>}
 */
function gunzip() {
    return new /** @type {any} */ (globalThis).DecompressionStream("gzip");
}

/** @param {string} text base64 */
export function fromBase64(text) {
    const binary = atob(text);
    const bytes = new Uint8Array(binary.length);
    for (let index = 0; index < binary.length; index += 1) {
        bytes[index] = binary.charCodeAt(index);
    }
    return new Blob([bytes]);
}

/** @typedef {Pick<ReadableStreamDefaultReader<Uint8Array>, "read" | "cancel">} Bytes */

/**
 * What a packed file holds. The end of the input is told only when everything before it has been
 * read: a file that was cut off makes that an error, and an error throws away what still waits.
 * @param {Blob} blob
 * @returns {Bytes}
 */
function unpacked(blob) {
    const {readable, writable} = gunzip();
    const input = blob.stream().getReader();
    const writer = writable.getWriter();
    const output = readable.getReader();
    let fed = false;
    let waiting = false;
    const closeWhenRead = () =>
        setTimeout(() => {
            if (fed && waiting) {
                writer.close().catch(() => {});
            }
        }, 0);
    const feed = async () => {
        for (let piece = await input.read(); !piece.done; piece = await input.read()) {
            await writer.write(piece.value);
        }
        fed = true;
        closeWhenRead();
    };
    feed().catch(() => {}); // the reader meets the same error
    return {
        async read() {
            waiting = true;
            if (fed) {
                closeWhenRead();
            }
            try {
                return await output.read();
            } finally {
                waiting = false;
            }
        },
        async cancel() {
            await Promise.allSettled([input.cancel(), writer.abort(), output.cancel()]);
        },
    };
}

/**
 * The file's bytes as they were before gzip.
 * @param {Blob} blob
 * @returns {Promise<Bytes>}
 */
async function plainBytes(blob) {
    const head = new Uint8Array(await blob.slice(0, 2).arrayBuffer());
    const packed = head[0] === 0x1f && head[1] === 0x8b;
    return packed ? unpacked(blob) : blob.stream().getReader();
}

/**
 * What a file is, by its first bytes.
 * @param {Blob} blob
 * @returns {Promise<Kind>}
 */
export async function kindOf(blob) {
    const bytes = await plainBytes(blob);
    try {
        const {value} = await bytes.read();
        const head = textOf((value ?? new Uint8Array(0)).subarray(0, 64));
        if (/^(ULG|\[)/.test(head)) {
            return "game log";
        }
        return /^\d+,\d+\t/.test(head)
            ? "text log"
            : /^\d+ \d+ [89] /.test(head)
              ? "plan log"
              : "unknown";
    } catch {
        return "unknown";
    } finally {
        bytes.cancel().catch(() => {});
    }
}

/**
 * Reads a game log piece by piece.
 * @param {Blob} blob
 * @param {Reader} reader
 * @param {() => boolean} goOn called after each piece that took long; false stops reading
 * @returns {Promise<Loaded>}
 */
export async function readGameLog(blob, reader, goOn) {
    const bytes = await plainBytes(blob);
    let complete = true;
    let breath = performance.now();
    for (let total = 0; total < MOST_BYTES && !reader.full;) {
        let piece;
        try {
            piece = await bytes.read();
        } catch {
            complete = false;
            break;
        }
        if (piece.done) {
            break;
        }
        total += piece.value.length;
        reader.push(piece.value);
        if (performance.now() - breath > BREATH_MS) {
            if (!goOn()) {
                break;
            }
            await pause();
            breath = performance.now();
        }
    }
    bytes.cancel().catch(() => {});
    reader.finish();
    goOn();
    return {complete, full: reader.full};
}

/** Lets the page draw a frame and take input; a hidden page draws none, hence the time limit. */
function pause() {
    return new Promise((resolve) => {
        requestAnimationFrame(() => setTimeout(resolve, 0));
        setTimeout(resolve, 50);
    });
}

/**
 * The whole file; of one that breaks off, as much as there is.
 * @param {Blob} blob
 */
export async function readAll(blob) {
    const bytes = await plainBytes(blob);
    const pieces = [];
    let total = 0;
    try {
        while (total < MOST_BYTES) {
            const {done, value} = await bytes.read();
            if (done) {
                break;
            }
            pieces.push(value);
            total += value.length;
        }
    } catch {
        // A file that was cut off is still worth showing up to there.
    }
    bytes.cancel().catch(() => {});
    const whole = new Uint8Array(total);
    let at = 0;
    for (const piece of pieces) {
        whole.set(piece, at);
        at += piece.length;
    }
    return whole;
}
