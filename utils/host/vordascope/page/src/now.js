// The key figures: what an engineer looks at first.
import { difference } from './compare.js';
import { el, setText } from './dom.js';
import { spark } from './draw/spark.js';
import { FIGURES } from './known.js';
import { printed } from './model.js';
import { invalidText, validityOf } from './valid.js';
import { shownAnew } from './view.js';

function figure(title, field) {
    const before = el('span', { class: 'before' });
    const value = el('span', { class: 'value' });
    const apart = el('dd', { class: 'apart' });
    const valid = validityOf(field);
    const invalid = el('p', { class: 'invalid' });
    const line = field.charted ? spark(field.courses, field.key) : null;
    const element = el(
        'div',
        { class: field.shape === 'scalar' ? 'figure' : 'figure figure-list', title: field.name },
        el('dt', {}, title),
        el('dd', {}, before, value),
        apart,
        invalid,
        line?.element,
    );
    return {
        element,
        grow: () => line?.grow(field.courses),
        update({ now, before: reference, find }) {
            const changed = reference && find.differ(reference.of(field), now.of(field));
            setText(before, changed ? `${printed(reference.of(field))} → ` : '');
            setText(value, printed(now.of(field)));
            const text = changed ? difference(reference.of(field), now.of(field)) : '';
            setText(apart, / {2}\((.*)\)$/s.exec(text)?.[1] ?? '');
            element.classList.toggle('changed', Boolean(changed));
            setText(invalid, invalidText(valid, { now, before: reference }));
            line?.mark(now.n, reference?.run === now.run ? reference.n : null);
        },
    };
}

/** The section, null where no figure was captured. */
export function nowSection(run) {
    const figures = FIGURES.flatMap(([title, name]) => {
        const field = run.field(name);
        return field ? [figure(title, field)] : [];
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
            if (!shownAnew(changed) && !changed.has('query')) return;
            for (const shown of figures) shown.update(view);
        },
        grow() {
            for (const shown of figures) shown.grow();
        },
        empty: () => false,
    };
}
