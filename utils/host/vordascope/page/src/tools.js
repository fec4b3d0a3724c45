// What is decided by the code of the command line, compiled for WebAssembly (see wasm.cpp): how
// values differ, what a pattern selects, how a quantity answers.
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

/** A value as `differ` wants it, in pieces. */
function handed(value) {
    const isList = Array.isArray(value);
    const isGrid = isList && Array.isArray(value[0]);
    const texts = (isList ? value.flat() : [value]).map(String);
    const columns = isGrid ? value[0].length : isList ? 0 : -1;
    const word = (number) => new Uint8Array(Int32Array.of(number).buffer);
    const pieces = texts.flatMap((text) => [word(text.length), bytesOf(`${text}\n`)]);
    return [word(columns), word(texts.length), ...pieces];
}

/** How two values differ, in the words of `vordascope diff`: "8000 -> 40000  (+32000, +400 %)". */
export function differenceText(a, b) {
    if (!tools) return `${String(a)} -> ${String(b)}`;
    const pieces = [...handed(a), ...handed(b)];
    const bytes = new Uint8Array(pieces.reduce((sum, piece) => sum + piece.length, 0));
    let at = 0;
    for (const piece of pieces) {
        bytes.set(piece, at);
        at += piece.length;
    }
    put(bytes);
    return new TextDecoder().decode(taken(tools.differ()));
}

/** Whether a pattern of the command line matches texts: a list of so many. */
export function matching(pattern, texts) {
    if (!tools) return texts.map((text) => text.includes(pattern.replaceAll('*', '')));
    const bytes = bytesOf(`${[pattern, ...texts].join('\n')}\n`);
    put(bytes);
    return Array.from(taken(tools.match(bytes.length)), Boolean);
}

/** Measures a response, see response.js; null in a page that was built without the code. */
export const respond = (values, how) => (tools ? measure(tools, values, how) : null);
