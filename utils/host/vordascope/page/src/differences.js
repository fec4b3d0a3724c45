// What differs between the two compared snapshots, field by field.
import { brief, differenceText, differing } from './compare.js';
import { el, setText } from './dom.js';

/** The section; it shows while two snapshots are compared. */
export function differencesSection(series) {
    const body = el('tbody');
    const summary = el('p', { class: 'summary' });
    const table = el(
        'table',
        { class: 'differences' },
        el(
            'thead',
            {},
            el(
                'tr',
                {},
                ['item', 'field', 'A', 'B', 'difference'].map((name) =>
                    el('th', { scope: 'col' }, name),
                ),
            ),
        ),
        body,
    );
    let hidden = true;

    function rowsOf(fields, { n, a }) {
        let item = null;
        return fields.map((field) => {
            const first = field.item !== item;
            item = field.item;
            const [before, after] = [field.at(a), field.at(n)];
            return el(
                'tr',
                { class: first ? 'first' : '' },
                el('td', { class: 'nowrap' }, first ? field.item : ''),
                el('td', { class: 'nowrap' }, field.label),
                el('td', { class: 'before' }, brief(before)),
                el('td', {}, brief(after)),
                el('td', {}, differenceText(before, after)),
            );
        });
    }

    return {
        id: 'differences',
        title: 'Differences',
        element: el('div', { class: 'card' }, summary, el('div', { class: 'wide' }, table)),
        update(view, changed) {
            hidden = view.a === null || view.a === view.n;
            if (hidden || !['n', 'a', 'query'].some((key) => changed.has(key))) return;
            const all = differing(series, view.a, view.n);
            const shown = all.filter((field) => view.find.field(field, view.n));
            setText(
                summary,
                `${all.length} of ${series.fields.length} fields differ${shown.length < all.length ? `, ${shown.length} of them shown` : ''}.`,
            );
            table.hidden = shown.length === 0;
            body.replaceChildren(...rowsOf(shown, view));
        },
        empty: () => hidden,
    };
}
