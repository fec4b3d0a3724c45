// What differs between the two compared snapshots, field by field.
import { difference, differing } from './compare.js';
import { el, setText } from './dom.js';

/** A difference as a cell whose text is that of `vordascope diff`. */
export function differenceOf(tag, parts) {
    const { about, from, to, apart } = parts;
    if (!from) return el(tag, {}, about);
    const distance = apart && el('span', { class: 'apart' }, `  ${apart}`);
    return el(
        tag,
        {},
        about,
        el('span', { class: 'before' }, from),
        ' -> ',
        el('b', {}, to),
        distance,
    );
}

/** The fields by item; where one side has none of an item, a text instead of its fields. */
function paragraphs(series, fields, a, n) {
    const byItem = new Map();
    for (const field of fields) {
        if (!byItem.has(field.item)) byItem.set(field.item, []);
        byItem.get(field.item).push(field);
    }
    const present = (item, at) =>
        series.fields.some((field) => field.item === item && field.at(at) !== null);
    return [...byItem].map(([item, members]) => {
        const only = !present(item, a) ? 'B' : !present(item, n) ? 'A' : '';
        const text = only && members.length > 1 ? `only in ${only} (${members.length} fields)` : '';
        return { item, members, text };
    });
}

/** The section; it shows while two snapshots are compared. */
export function differencesSection(series) {
    const body = el('tbody');
    const summary = el('p', { class: 'summary' });
    const table = el('table', { class: 'differences' }, body);
    let hidden = true;

    const rowsOf = ({ item, members, text }, { n, a }) => {
        const start = el('th', { scope: 'rowgroup', rowSpan: text ? 1 : members.length }, item);
        if (text) return [el('tr', { class: 'first' }, start, el('td', { colSpan: 2 }, text))];
        return members.map((field, i) =>
            el(
                'tr',
                { class: i ? '' : 'first' },
                i ? null : start,
                el('td', { class: 'key' }, field.label),
                differenceOf('td', difference(field.at(a), field.at(n), field.kind)),
            ),
        );
    };

    return {
        id: 'differences',
        title: 'Differences',
        element: el('div', { class: 'card' }, summary, el('div', { class: 'wide' }, table)),
        update(view, changed) {
            hidden = view.a === null || view.a === view.n;
            if (hidden || !['n', 'a', 'query'].some((key) => changed.has(key))) return;
            const all = differing(series, view.a, view.n);
            const shown = all.filter((field) => view.find.field(field, view.n));
            const part = shown.length < all.length ? `, ${shown.length} of them shown` : '';
            setText(summary, `${all.length} of ${series.fields.length} fields differ${part}.`);
            table.hidden = shown.length === 0;
            const found = paragraphs(series, shown, view.a, view.n);
            body.replaceChildren(...found.flatMap((paragraph) => rowsOf(paragraph, view)));
        },
        empty: () => hidden,
    };
}
