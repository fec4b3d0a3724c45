// What is decided by the code of the command line, compiled for WebAssembly (see wasm.cpp): how
// values differ, what is looked for, how a quantity answers.
import { measure } from './response.js';

/** The instance; null in a page that was built without it. */
let tools = null;

/** @param {ArrayBuffer} wasm the compiled code */
export async function startTools(wasm) {
    const { instance } = await WebAssembly.instantiate(wasm);
    instance.exports._initialize();
    tools = instance.exports;
}

/** The bytes of a text of vorda, whose code points they are. */
const bytesOf = (text) => Uint8Array.from(text, (c) => c.charCodeAt(0));

/** Puts bytes where the code looks for them. */
function put(bytes) {
    const at = tools.room(bytes.length); // before the buffer is looked at, which grows by it
    new Uint8Array(tools.memory.buffer, at, bytes.length).set(bytes);
}

const taken = (at) => new Uint8Array(tools.memory.buffer, at, tools.size());

const word = (number) => new Uint8Array(Int32Array.of(number).buffer);

/** A value as `differ` wants it, in pieces. */
function handed(value) {
    const isList = Array.isArray(value);
    const isGrid = isList && Array.isArray(value[0]);
    const texts = (isList ? value.flat() : [value]).map(String);
    const columns = isGrid ? value[0].length : isList ? 0 : -1;
    const pieces = texts.flatMap((text) => [word(text.length), bytesOf(`${text}\n`)]);
    return [word(columns), word(texts.length), ...pieces];
}

/**
 * How two values differ, in the words of `vordascope diff`: "8000 -> 40000  (+32000, +400 %)"; '' where
 * they are within the tolerance that is looked for.
 */
export function differenceText(a, b) {
    if (!tools) return `${String(a)} -> ${String(b)}`;
    put(joined([...handed(a), ...handed(b)]));
    return read(tools.differ());
}

/** Each value of two lists or grids that differs: ["[0][1]  -552 -> -600  (-48, -8.7 %)"]. */
export function everyText(a, b) {
    if (!tools) return [];
    put(joined([...handed(a), ...handed(b)]));
    return read(tools.every()).split('\n').slice(0, -1);
}

const joined = (pieces) => {
    const bytes = new Uint8Array(pieces.reduce((sum, piece) => sum + piece.length, 0));
    let at = 0;
    for (const piece of pieces) {
        bytes.set(piece, at);
        at += piece.length;
    }
    return bytes;
};

const encoded = (text) => new TextEncoder().encode(text);
const read = (at) => new TextDecoder().decode(taken(at));

/** What is looked for. */
let sought = '';

/** What is looked for where there is no code that decides: all its words. */
let wordsOnly = [];

/**
 * Takes what is looked for, as filter.h has it: foundIn() and differenceText() go by it from now on.
 * @returns {string} why a tolerance in it cannot be read, '' where it can
 */
export function lookFor(query) {
    sought = query;
    wordsOnly = query.toLowerCase().split(/\s+/).filter(Boolean);
    if (!tools) return '';
    const bytes = encoded(query);
    put(bytes);
    return read(tools.filter(bytes.length));
}

/** What a function returns while nothing is looked for. */
export function unfiltered(of) {
    const query = sought;
    lookFor('');
    try {
        return of();
    } finally {
        lookFor(query);
    }
}

/**
 * Which fields are looked for.
 * @param {{names: string[], about: string, columns: number, count: number}[]} fields the names from the
 *     category to the key; what else is said of it; columns of rows, 0 for a list, -1 for a scalar
 * @returns {(number[]|null)[]} null for one that is not, else the indexes of the part that is; [] for
 *     all of it
 */
export function foundIn(fields) {
    if (!tools)
        return fields.map(({ names, about }) => {
            const text = `${names.join('.')} ${about}`.toLowerCase();
            return wordsOnly.every((word) => text.includes(word)) ? [] : null;
        });
    const pieces = fields.flatMap(({ names, about, columns, count }) => [
        word(columns),
        word(count),
        word(names.length),
        encoded(`${[...names, about].map((text) => text.replaceAll('\n', ' ')).join('\n')}\n`),
    ]);
    const bytes = joined(pieces);
    put(bytes);
    const lines = read(tools.find(bytes.length)).split('\n').slice(0, -1);
    return lines.map((line) => (line ? (line.match(/\d+/g) ?? []).map(Number) : null));
}

/** Measures a response, see response.js; null in a page that was built without the code. */
export const respond = (values, how) => (tools ? measure(tools, values, how) : null);
