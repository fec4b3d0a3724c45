// What differs between the two compared snapshots, field by field.
import { difference, differing, ofSensor } from './compare.js';
import { placeOf } from './course.js';
import { el, setText } from './dom.js';
import { hold } from './lifetime.js';
import { grouped, placeText } from './model.js';
import { everyText } from './tools.js';
import { shownAnew } from './view.js';

/** What changed so shortly before, after a rest of as long, has just moved. */
const JUST = { seconds: 2, snapshots: 50 };

/** From one list to the next while a camera goes on. */
const PAUSE = 250;

/** A difference as a cell whose text is that of `vordascope diff`, its parts set apart. */
function differenceOf(tag, text) {
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

/**
 * How two values differ, in a cell. Lists and grids open to show each value that does, as
 * `vordascope diff --every` prints it.
 */
export function differenceIn(tag, a, b) {
    const text = difference(a, b);
    if (!/^\d+ of \d+ values/.test(text)) return differenceOf(tag, text);
    const lines = el('pre', { tabIndex: 0, 'aria-label': 'each value that differs' });
    const fill = () => {
        if (!lines.firstChild) lines.append(everyText(a, b).join('\n'));
    };
    const summary = differenceOf('summary', text);
    return el(tag, {}, el('details', { class: 'every', on: { toggle: fill } }, summary, lines));
}

/** The fields by item; where one side has none of an item, a text instead of its fields. */
export function paragraphs(fields, before, now) {
    const present = (item, moment) =>
        moment.run.fields.some((field) => field.item === item && moment.of(field) !== null);
    return [...grouped(fields, ({ item }) => item)].map(([item, members]) => {
        const only = !present(item, before) ? 'B' : !present(item, now) ? 'A' : '';
        const text = only && members.length > 1 ? `only in ${only} (${members.length} fields)` : '';
        return { item, members, text };
    });
}

/** How many fields there are in either run. */
const fieldsOf = (before, now) =>
    before.sensor === now.sensor
        ? new Set([before, now].flatMap(({ run }) => run.fields.map(({ name }) => name))).size
        : ofSensor(now).length;

/**
 * Fields in three lists: what has just moved, what rests, what moves all the time. Of a run that is
 * too short to tell, all rest.
 */
function byMotion(fields, { run, n }) {
    const just = run.timed ? JUST.seconds : JUST.snapshots;
    const [rested, moved] = [2, 1].map((times) => placeOf(run.axis, run.axis[n] - times * just));
    const lists = [[], [], []];
    for (const field of fields) {
        const own = run.field(field.name);
        const moves = rested >= 0 && own?.changes(moved, n);
        lists[!moves ? 1 : own.changes(rested, moved) ? 2 : 0].push(field);
    }
    return lists;
}

/** The section; it shows while two snapshots are compared. */
export function differencesSection() {
    const body = el('tbody');
    const summary = el('p', { class: 'summary' });
    const table = el('table', { class: 'differences' }, body);
    let hidden = true;
    let view = null;
    let due = null;
    hold(() => clearTimeout(due));

    const rowsOf = ({ item, members, text }, motion) => {
        const { now, before } = view;
        const start = el('th', { scope: 'rowgroup', rowSpan: text ? 1 : members.length }, item);
        if (text)
            return [el('tr', { class: `first ${motion}` }, start, el('td', { colSpan: 2 }, text))];
        return members.map((field, i) =>
            el(
                'tr',
                { class: i ? motion : `first ${motion}` },
                i ? null : start,
                el('td', { class: 'key' }, field.label + placeText(view.find.part(field))),
                differenceIn('td', view.find.valueOf(field, before), view.find.valueOf(field, now)),
            ),
        );
    };

    function draw() {
        due = null;
        if (hidden) return;
        const { now, before } = view;
        const all = differing(before, now, view.find);
        const shown = all.filter((field) => view.find.field(field, now));
        const part = shown.length < all.length ? `, ${shown.length} of them shown` : '';
        const lists = view.live ? byMotion(shown, now) : [[], shown];
        const moved = lists[0].length ? `; ${lists[0].length} just moved` : '';
        setText(summary, `${all.length} of ${fieldsOf(before, now)} fields differ${part}${moved}.`);
        table.hidden = shown.length === 0;
        body.replaceChildren(
            ...lists.flatMap((fields, i) =>
                paragraphs(fields, before, now).flatMap((one) => rowsOf(one, i ? '' : 'moved')),
            ),
        );
    }

    return {
        id: 'differences',
        title: 'Differences',
        element: el('div', { class: 'card' }, summary, el('div', { class: 'wide' }, table)),
        update(latest, changed) {
            view = latest;
            const { now, before } = view;
            hidden =
                !before ||
                (before.run === now.run && before.n === now.n && before.sensor === now.sensor);
            if (view.live && changed.size === 1 && changed.has('n'))
                due ??= setTimeout(draw, PAUSE);
            else if (shownAnew(changed) || changed.has('query')) draw();
        },
        empty: () => hidden,
    };
}
