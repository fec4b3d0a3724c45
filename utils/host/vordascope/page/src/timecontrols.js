// Beside the charts over time: how runs are aligned and answers measured, and what adds a chart.
import { elementLine, isLong } from './courses.js';
import { el, setText, template } from './dom.js';

const option = (value, text) => el('option', { value }, text);

/** @returns {{element, show(view, axes)}} */
export function controls(run, store) {
    const element = template('time-controls');
    const part = (name) => element.querySelector(`[name=${name}]`);
    const [align, band, reference] = ['align', 'band', 'ref'].map(part);
    const charted = run.fields.filter((field) => field.charted && field.shape === 'scalar');
    align.append(...charted.map(({ name }) => option(name, `where ${name} leaves rest`)));
    align.addEventListener('change', () => store.set({ align: align.value }));
    band.addEventListener('change', () => store.set({ band: Number(band.value) }));
    reference.addEventListener('change', () => store.set({ ref: reference.checked }));
    const all = element.querySelector('button');
    all.addEventListener('click', () => store.set({ zoom: null }));
    return {
        element,
        show(view, axes) {
            align.parentElement.hidden = !axes.run;
            align.value = view.align;
            band.value = String(view.band);
            reference.parentElement.hidden = view.a === null;
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
