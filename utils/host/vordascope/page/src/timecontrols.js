// Beside the charts over time: how runs are aligned and answers measured, and what adds a chart.
import { MARKS, START } from './against.js';
import { elementLine, isLong } from './courses.js';
import { el, setText } from './dom.js';

const option = (value, text) => el('option', { value }, text);

/** @returns {{element, show(view, axes)}} */
export function controls(run, store) {
    const choose = (key, convert) => ({
        change: (event) => store.set({ [key]: convert(event.target.value) }),
    });
    const charted = run.fields.filter((field) => field.charted && field.shape === 'scalar');
    const align = el(
        'select',
        { 'aria-label': 'align the runs', on: choose('align', String) },
        option(START, 'at the start'),
        option(MARKS, 'at A and B'),
        charted.map(({ name }) => option(name, `where ${name} leaves rest`)),
    );
    const alignment = el('label', {}, 'Runs aligned ', align);
    const band = el(
        'select',
        { 'aria-label': 'band', on: choose('band', Number) },
        [0.02, 0.05, 0.1].map((part) => option(part, `± ${100 * part} %`)),
    );
    const reference = el('input', {
        type: 'checkbox',
        'aria-label': 'measure from the value at A',
        on: { change: (event) => store.set({ ref: event.target.checked }) },
    });
    const referenced = el('label', {}, reference, ' from the value at A');
    const showAll = { click: () => store.set({ zoom: null }) };
    const all = el('button', { type: 'button', title: 'show all (0)', on: showAll }, 'Show all');
    return {
        element: el(
            'div',
            { class: 'time-controls' },
            alignment,
            el('label', {}, 'Band ', band),
            referenced,
            all,
        ),
        show(view, axes) {
            alignment.hidden = !axes.run;
            align.value = view.align;
            band.value = String(view.band);
            referenced.hidden = view.a === null;
            reference.checked = view.ref;
            all.disabled = !view.zoom;
        },
    };
}

/** Takes the name of a field, or of an element of one: names are offered while one types. Null for none. */
export function adder(run, store) {
    const charted = run.fields.filter((field) => field.charted).map(({ name }) => name);
    const long = run.fields
        .filter(isLong)
        .flatMap(({ name, shape }) => [name, `${name}${shape === 'grid' ? '[0][0]' : '[0]'}`]);
    if (charted.length + long.length === 0) return null;
    const names = el(
        'datalist',
        { id: 'addable' },
        [...charted, ...long].map((name) => option(name, '')),
    );
    const said = el('span', { class: 'plain', role: 'status' });
    const name = el('input', {
        type: 'text',
        list: 'addable',
        placeholder: 'Add a field…',
        title: 'a field, or an element such as stat.awb.Gwd RGL.g channel[3][4]',
        'aria-label': 'add a chart of a field',
    });
    name.addEventListener('change', () => {
        const path = name.value.trim();
        const known = run.field(path)
            ? charted.includes(path) || isLong(run.field(path))
            : elementLine(run, path).length > 0;
        setText(said, known || !path ? '' : `${path}: no such number`);
        if (!known) return;
        store.set({ added: [...new Set([...store.view.added, path])] });
        name.value = '';
    });
    return el('span', { class: 'adder' }, name, names, said);
}
