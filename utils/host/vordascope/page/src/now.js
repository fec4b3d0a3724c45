// The key figures: what an engineer looks at first.
import { el, setText } from './dom.js';
import { spark } from './draw/spark.js';
import { FIGURES } from './known.js';
import { flat, number, printed, same } from './model.js';

/** The lines of a field over the series, one an element of its list. */
export function courses(field, length) {
    const all = Array.from({ length }, (_, n) => flat(field.at(n)).map(number));
    const width = Math.max(...all.map((list) => list.length));
    return Array.from({ length: width }, (_, i) => all.map((list) => list[i] ?? Number.NaN));
}

function figure(series, title, field) {
    const before = el('span', { class: 'before' });
    const value = el('span', { class: 'value' });
    const line = field.varies && series.length > 2 ? spark(courses(field, series.length)) : null;
    const element = el(
        'div',
        { class: field.shape === 'scalar' ? 'figure' : 'figure figure-list', title: field.name },
        el('dt', {}, title),
        el('dd', {}, before, value),
        line?.element,
    );
    return {
        element,
        update({ n, a }) {
            const changed = a !== null && !same(field.at(a), field.at(n));
            setText(before, changed ? `${printed(field.at(a))} → ` : '');
            setText(value, printed(field.at(n)));
            element.classList.toggle('changed', changed);
            line?.mark(n, a);
        },
    };
}

/** The section, null where no figure was captured. */
export function nowSection(series) {
    const figures = FIGURES.flatMap(([title, name]) => {
        const field = series.field(name);
        return field ? [figure(series, title, field)] : [];
    });
    if (figures.length === 0) return null;
    return {
        id: 'now',
        title: 'Now',
        element: el(
            'dl',
            { class: 'figures' },
            figures.map(({ element }) => element),
        ),
        update(view, changed) {
            if (!changed.has('n') && !changed.has('a')) return;
            for (const shown of figures) shown.update(view);
        },
        empty: () => false,
    };
}
