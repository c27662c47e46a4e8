/**
 * Reads numbers and words straight out of a line's bytes: a log of 20 MB is never turned into text.
 */

const SPACE = 0x20;
const OPEN = 0x28;
const CLOSE = 0x29;
const MINUS = 0x2d;
const POINT = 0x2e;
const ZERO = 0x30;
const NINE = 0x39;

const POWERS = Float64Array.from({length: 19}, (_, digits) => 10 ** digits);

/** The longest number that is read, in bytes; the server writes at most 12. */
const LONGEST_NUMBER = 32;

/** Thrown for a record that does not have the form it must have. */
export class BadRecord extends Error {}

const decoder = new TextDecoder("utf-8");

/**
 * Text of a piece of a log. Bytes that are not UTF-8 become replacement characters.
 * @param {Uint8Array} bytes
 */
export function textOf(bytes) {
    return decoder.decode(bytes);
}

export class Scanner {
    constructor() {
        this.bytes = new Uint8Array(0);
        this.position = 0;
        this.end = 0;
    }

    /**
     * Starts at the given piece of the bytes.
     * @param {Uint8Array} bytes
     * @param {number} start
     * @param {number} end
     */
    set(bytes, start, end) {
        this.bytes = bytes;
        this.position = start;
        this.end = end;
    }

    skipSpaces() {
        while (this.position < this.end && this.bytes[this.position] === SPACE) {
            this.position += 1;
        }
    }

    /** The next byte that is no blank, or -1 at the end. */
    peek() {
        this.skipSpaces();
        return this.position < this.end ? this.bytes[this.position] : -1;
    }

    atOpen() {
        return this.peek() === OPEN;
    }

    atClose() {
        return this.peek() === CLOSE;
    }

    open() {
        if (this.peek() !== OPEN) {
            throw new BadRecord("an opening bracket is missing");
        }
        this.position += 1;
    }

    close() {
        if (this.peek() !== CLOSE) {
            throw new BadRecord("a closing bracket is missing");
        }
        this.position += 1;
    }

    /** Passes the rest of a list whose opening bracket was read, with everything inside it. */
    skipList() {
        let depth = 1;
        while (depth > 0) {
            if (this.position >= this.end) {
                throw new BadRecord("a closing bracket is missing");
            }
            const byte = this.bytes[this.position];
            depth += byte === OPEN ? 1 : byte === CLOSE ? -1 : 0;
            this.position += 1;
        }
    }

    /** A finite number in plain decimal form or with an exponent. */
    number() {
        this.skipSpaces();
        const {bytes, end} = this;
        const start = this.position;
        let at = start;
        const negative = bytes[at] === MINUS;
        if (negative) {
            at += 1;
        }
        let digits = 0;
        let value = 0;
        let fraction = 0;
        let seenPoint = false;
        for (; at < end; at += 1) {
            const byte = bytes[at];
            if (byte >= ZERO && byte <= NINE) {
                value = value * 10 + (byte - ZERO);
                digits += 1;
                fraction += seenPoint ? 1 : 0;
            } else if (byte === POINT && !seenPoint) {
                seenPoint = true;
            } else {
                break;
            }
        }
        if (at < end && bytes[at] !== SPACE && bytes[at] !== CLOSE && bytes[at] !== OPEN) {
            return this.unusualNumber(start);
        }
        if (digits === 0 || digits > 18) {
            throw new BadRecord("a number is missing or too long");
        }
        this.position = at;
        const size = value / POWERS[fraction];
        return negative ? -size : size;
    }

    /**
     * A number with an exponent or in hexadecimal.
     * @param {number} start
     */
    unusualNumber(start) {
        this.position = start;
        const word = this.word();
        if (
            word.length > LONGEST_NUMBER ||
            !/^(0x[0-9a-fA-F]+|-?[0-9]*\.?[0-9]+([eE][-+]?[0-9]+)?)$/.test(word)
        ) {
            throw new BadRecord("a number cannot be read");
        }
        const value = Number(word);
        if (!Number.isFinite(value)) {
            throw new BadRecord("a number is too large");
        }
        return value;
    }

    /**
     * A whole number in a range.
     * @param {number} least
     * @param {number} most
     */
    integer(least, most) {
        const value = this.number();
        if (!Number.isInteger(value) || value < least || value > most) {
            throw new BadRecord("a whole number is out of range");
        }
        return value;
    }

    /**
     * A number whose size is at most `most`.
     * @param {number} most
     */
    within(most) {
        const value = this.number();
        if (value > most || value < -most) {
            throw new BadRecord("a number is out of range");
        }
        return value;
    }

    /** Everything up to the next blank or bracket. */
    word() {
        this.skipSpaces();
        const start = this.position;
        while (this.position < this.end) {
            const byte = this.bytes[this.position];
            if (byte === SPACE || byte === OPEN || byte === CLOSE) {
                break;
            }
            this.position += 1;
        }
        return textOf(this.bytes.subarray(start, this.position));
    }

    /** One byte, which must be a letter's. */
    letter() {
        const byte = this.peek();
        if (byte < 0x41) {
            throw new BadRecord("a letter is missing");
        }
        this.position += 1;
        return byte;
    }

    /** Everything that is left, as text. */
    rest() {
        return textOf(this.bytes.subarray(this.position, this.end));
    }
}
