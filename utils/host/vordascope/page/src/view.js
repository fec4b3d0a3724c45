// The parts of a view (see store.js): what each is when nothing was chosen, how an address tells it, and
// whether it goes on when runs come or go.
import { START } from './against.js';
import { BAND } from './response.js';

const count = (text) => (/^[1-9]\d{0,8}$/.test(text) ? Number(text) - 1 : undefined);
const counts = (text) => text.split(/[-.]/).map(count);
const ordered = (pair) => (pair.length === 2 && pair[0] < pair[1] ? pair : undefined);
const inside = (part) => (part > 0 && part < 1 ? part : undefined);
const rounded = (x) => Number(x.toPrecision(9));

/** "3.7" is snapshot 7 of run 3; "7" one of the run that shows. */
function reference(text, { run = 0 }) {
    if (text === 'none') return { against: null, a: null };
    const [against, a] = text.includes('.') ? counts(text) : [run, count(text)];
    return against === undefined || a === undefined ? undefined : { against, a };
}

/**
 * By name: `usual`; `goesOn`; `as`, its name in the address; `write`, its text there, for what is not
 * as usual; `read`, what that text stands for, undefined where it is wrong. `a` is read with `against`,
 * `added` stands there once for each.
 */
// biome-ignore format: a table
const PARTS = {
    run: { usual: 0, as: 'run', write: (run) => run + 1, read: count },
    n: { usual: 0, as: 'n', write: (n) => n + 1, read: count },
    against: { usual: null },
    a: { usual: null, as: 'a', write: (a, { against }) => (a === null ? 'none' : `${against + 1}.${a + 1}`), read: reference },
    sensors: { usual: null, as: 'sensors', write: (pair) => pair.join('-'), read: (text) => (/^\d-\d$/.test(text) ? text.split('-').map(Number) : undefined) },
    only: { usual: false, goesOn: true, as: 'only', write: () => 'changed', read: (text) => text === 'changed' || undefined },
    query: { usual: '', goesOn: true, as: 'find', write: String, read: String },
    step: { usual: null, as: 'step', write: (step) => step.map((n) => n + 1).join('-'), read: (text) => ordered(counts(text)) },
    zoom: { usual: null, as: 'zoom', write: (zoom) => zoom.map(rounded).join('_'), read: (text) => ordered(text.split('_').map(Number)) },
    align: { usual: START, goesOn: true, as: 'align', write: String, read: String },
    band: { usual: BAND, goesOn: true, as: 'band', write: String, read: (text) => inside(Number(text)) },
    ref: { usual: false, goesOn: true, as: 'ref', write: () => 'a', read: (text) => text === 'a' || undefined },
    added: { usual: [], goesOn: true, as: 'add', write: String, read: String, each: true },
};

const entries = Object.entries(PARTS);

/** What shows when nothing was chosen, of any runs. */
export const USUAL = Object.fromEntries(entries.map(([key, { usual }]) => [key, usual]));

/** Whether another moment shows, or is compared, than before: of what changed in a view. */
export const shownAnew = (changed) =>
    ['n', 'a', 'against', 'sensors'].some((key) => changed.has(key));

/** The parts of a view that go on when runs come or go. */
export const goingOn = (view) =>
    Object.fromEntries(entries.flatMap(([key, { goesOn }]) => (goesOn ? [[key, view[key]]] : [])));

/** The fragment, without "#", of a view: a link leads to the same one. What is as usual is left out. */
export function toFragment(view, usual) {
    const params = new URLSearchParams();
    for (const [key, { as, write, each }] of entries) {
        const same = view[key] === usual[key] && (key !== 'a' || view.against === usual.against);
        if (!as || (same && !each)) continue;
        for (const value of each ? view[key] : [view[key]]) {
            const text = value === null && key !== 'a' ? '' : write(value, view);
            if (text !== '') params.append(as, text);
        }
    }
    return params.toString();
}

/** The part of a view that a fragment names; what it says wrongly is left out. */
export function fromFragment(fragment) {
    const params = new URLSearchParams(fragment.replace(/^#/, ''));
    const view = {};
    for (const [key, { as, read, each }] of entries) {
        const texts = as ? params.getAll(as).filter(Boolean) : [];
        if (texts.length === 0) continue;
        const value = each ? texts.map(read) : read(texts[0], view);
        if (value !== undefined) Object.assign(view, key === 'a' ? value : { [key]: value });
    }
    return view;
}
