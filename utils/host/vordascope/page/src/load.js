// Where the page's captures come from: baked in by `vordascope report`, or dropped onto the page,
// chosen or pasted and then read by the same reader, compiled for WebAssembly. Whatever happens,
// the page gets a model (see model.h): input that cannot be read is a note in it.

import { contentOf, inflated } from './inflate.js';
import { textOf, VERSION } from './model.js';
import { plainOf } from './plain.js';
import { readModel } from './reader.js';
import { startTools } from './tools.js';

/** Takes in a model as JSON. */
const understood = (json) => named(JSON.parse(json));

/** A model with the names of its files, which come as bytes, as people read them: UTF-8. */
export function named(model) {
    return { ...model, files: model.files.map(textOf) };
}

/** Bytes as base64 of what deflates them. */
async function deflated(bytes) {
    const stream = new Blob([bytes]).stream().pipeThrough(new CompressionStream('deflate'));
    const small = new Uint8Array(await new Response(stream).arrayBuffer());
    let text = '';
    for (let at = 0; at < small.length; at += 32768)
        text += String.fromCharCode(...small.subarray(at, at + 32768));
    return btoa(text);
}

/** What stands where captures are baked in when the page follows a camera. */
const LIVE = 'live';

/** The page as it came, before anything showed in it. */
const source = `<!doctype html>\n${document.documentElement.outerHTML}\n`;

/** Whether this page was made to follow a camera (see live.js). */
export const isLive = () => contentOf('captures') === LIVE;

/** A page that follows a camera as `vordascope report` would make it of a model, see model.h. */
export async function pageWith(model) {
    const captures = await deflated(JSON.stringify(model));
    const place = '<div id="page">';
    return source
        .replace(place, () => place + plainOf(named(model)))
        .replace("; connect-src 'self'", '')
        .replace(`id="captures">${LIVE}<`, () => `id="captures">${captures}<`);
}

/** Starts the code of the command line, where it is part of this page. */
export async function startCode() {
    if (canRead()) await startTools(await inflated('reader'));
}

/** The model that `vordascope report` baked in; null in the empty page. */
export async function bakedModel() {
    if (!contentOf('captures') || isLive()) return null;
    try {
        return understood(new TextDecoder().decode(await inflated('captures')));
    } catch (error) {
        return failure([document.title], `This file is damaged: ${error.message}`);
    }
}

/** Whether this page can read captures itself. */
export const canRead = () => contentOf('reader') !== '';

/** A model that shows nothing but why there is nothing. */
const failure = (files, text) => ({
    vorda_page: VERSION,
    files,
    unread_count: 0,
    unread: [],
    notes: files.map((_, file) => ({ file, text })),
    names: [],
    runs: [],
});

/** Why reading a capture may fail at all. */
const cause = (error) =>
    error instanceof RangeError || error instanceof WebAssembly.RuntimeError
        ? 'There is not enough memory for this capture.'
        : error.message;

/**
 * Reads captures, in this order, into one model.
 * @param {Blob[]} files with a `name`, as a browser hands them out
 * @param {(names: string[]) => (part: number) => void} busy called before, returns what is told which
 *     part of them is read
 */
async function readCaptures(files, busy) {
    const names = files.map((file) => file.name);
    const progress = busy(names);
    if (!canRead()) return failure(names, 'This page was built without a reader.');
    try {
        const captures = files.map((file) => ({ name: file.name, content: file }));
        const wasm = await inflated('reader');
        return understood(await readModel(wasm, captures, undefined, progress));
    } catch (error) {
        return failure(names, `Cannot be read: ${cause(error)}`);
    }
}

/** Puts text of several lines where somebody pasted it, as the browser does with one of a line. */
function insert(field, text) {
    const line = text.trim().replace(/\s+/g, ' ');
    field.setRangeText(line, field.selectionStart, field.selectionEnd, 'end');
    field.dispatchEvent(new Event('input', { bubbles: true }));
}

/**
 * Shows captures as they are dropped onto the window or pasted into it: files or the text itself.
 * A line pasted into an input field stays there; so does a longer text in which there is no snapshot.
 * @param {(model: object) => void} show
 * @param {Function} busy see readCaptures()
 */
export function watchCaptures(show, busy) {
    const takeFrom = async (transfer, field = null) => {
        const text = transfer.getData('text/plain');
        const files = [...transfer.files];
        if (!files.length && !text.trim()) return;
        const model = await readCaptures(
            files.length ? files : [new File([text], 'pasted text')],
            busy,
        );
        const typed = field && model.runs.length === 0;
        show(typed ? null : model);
        if (typed) insert(field, text);
    };

    window.addEventListener('dragover', (event) => event.preventDefault());
    window.addEventListener('drop', (event) => {
        event.preventDefault();
        takeFrom(event.dataTransfer);
    });
    window.addEventListener('paste', (event) => {
        const field = event.target.closest?.('input, textarea');
        const text = event.clipboardData.getData('text/plain');
        if (field && !event.clipboardData.files.length && !text.trim().includes('\n')) return;
        event.preventDefault();
        takeFrom(event.clipboardData, field);
    });
}

/** Lets the user choose files; resolves to their model, or to null when none is chosen. */
export function chooseCaptures(busy) {
    const input = document.createElement('input');
    input.type = 'file';
    input.multiple = true;
    return new Promise((resolve) => {
        input.addEventListener('cancel', () => resolve(null));
        input.addEventListener('change', () => resolve(readCaptures([...input.files], busy)));
        input.click();
    });
}
