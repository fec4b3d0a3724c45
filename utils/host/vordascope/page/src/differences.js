// What differs between the two compared snapshots, field by field.
import { difference, differing } from './compare.js';
import { el, setText } from './dom.js';

/** A difference as a cell whose text is that of `vordascope diff`, its parts set apart. */
export function differenceOf(tag, text) {
    const parts = /^(\d+ of \d+ values, most \S+ )?(.*?) -> (.*?)( {2}\(.*\))?$/s.exec(text);
    if (!parts) return el(tag, {}, text);
    const [, about, from, to, apart] = parts;
    return el(
        tag,
        {},
        about,
        el('span', { class: 'before' }, from),
        ' -> ',
        el('b', {}, to),
        apart && el('span', { class: 'apart' }, apart),
    );
}

/** The fields by item; where one side has none of an item, a text instead of its fields. */
function paragraphs(fields, before, now) {
    const byItem = new Map();
    for (const field of fields) {
        if (!byItem.has(field.item)) byItem.set(field.item, []);
        byItem.get(field.item).push(field);
    }
    const present = (item, moment) =>
        moment.run.fields.some((field) => field.item === item && moment.of(field) !== null);
    return [...byItem].map(([item, members]) => {
        const only = !present(item, before) ? 'B' : !present(item, now) ? 'A' : '';
        const text = only && members.length > 1 ? `only in ${only} (${members.length} fields)` : '';
        return { item, members, text };
    });
}

/** How many fields there are in either run. */
const fieldsOf = (before, now) =>
    new Set([before, now].flatMap(({ run }) => run.fields.map(({ name }) => name))).size;

/** The section; it shows while two snapshots are compared. */
export function differencesSection() {
    const body = el('tbody');
    const summary = el('p', { class: 'summary' });
    const table = el('table', { class: 'differences' }, body);
    let hidden = true;

    const rowsOf = ({ item, members, text }, { now, before }) => {
        const start = el('th', { scope: 'rowgroup', rowSpan: text ? 1 : members.length }, item);
        if (text) return [el('tr', { class: 'first' }, start, el('td', { colSpan: 2 }, text))];
        return members.map((field, i) =>
            el(
                'tr',
                { class: i ? '' : 'first' },
                i ? null : start,
                el('td', { class: 'key' }, field.label),
                differenceOf('td', difference(before.of(field), now.of(field))),
            ),
        );
    };

    return {
        id: 'differences',
        title: 'Differences',
        element: el('div', { class: 'card' }, summary, el('div', { class: 'wide' }, table)),
        update(view, changed) {
            const { now, before } = view;
            hidden = !before || (before.run === now.run && before.n === now.n);
            if (hidden || !['n', 'a', 'against', 'query'].some((key) => changed.has(key))) return;
            const all = differing(before, now);
            const shown = all.filter((field) => view.find.field(field, now));
            const part = shown.length < all.length ? `, ${shown.length} of them shown` : '';
            setText(summary, `${all.length} of ${fieldsOf(before, now)} fields differ${part}.`);
            table.hidden = shown.length === 0;
            const found = paragraphs(shown, before, now);
            body.replaceChildren(...found.flatMap((paragraph) => rowsOf(paragraph, view)));
        },
        empty: () => hidden,
    };
}
