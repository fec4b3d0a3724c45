// What a page shows where no script runs: key figures, and how two snapshots differ. The same as plain.h
// has it, for a page that is saved while it follows a camera.
import { difference, differing } from './compare.js';
import { paragraphs } from './differences.js';
import { el } from './dom.js';
import { FIGURES } from './known.js';
import { flat, Moment, Run, same } from './model.js';
import { unfiltered } from './tools.js';

const CELL = 500;
const ROOM = 200_000;

const cut = (text) => (text.length > CELL ? `${text.slice(0, CELL)}...` : text);
const row = ([head, ...cells]) =>
    el(
        'tr',
        {},
        el('th', {}, cut(head)),
        cells.map((cell) => el('td', {}, cut(cell))),
    );

/** Of one run its first and its last snapshot, of several the last of the first and of the last one. */
function ends(runs) {
    const [first, last] = [runs[0], runs.at(-1)];
    const now = new Moment(last, last.length - 1);
    if (first === last && last.length === 1) return [now];
    return [new Moment(first, first === last ? 0 : first.length - 1), now];
}

function figures(moments) {
    const name = ({ run, n }, i) =>
        `${moments.length > 1 ? `${'AB'[i]}: ` : ''}${run.file}${run.namedAt(n)}`;
    const rows = FIGURES.map(([title, path]) => [
        title,
        ...moments.map(({ run, n }) => {
            const value = run.field(path)?.at(n) ?? null;
            return value === null ? '' : flat(value).join(', ');
        }),
    ]).filter(([, ...texts]) => texts.some(Boolean));
    return el(
        'table',
        { class: 'differences' },
        el(
            'tr',
            {},
            ['', ...moments.map(name)].map((text) => el('th', {}, text)),
        ),
        rows.map(row),
    );
}

function differences(before, now) {
    const find = { differs: (field, a, b) => !same(a.of(field), b.of(field)) };
    const fields = differing(before, now, find);
    const there = ({ run, n }) => run.fields.filter((one) => one.at(n) !== null);
    const all = new Set([before, now].flatMap((one) => there(one).map(({ name }) => name)));
    const rows = paragraphs(fields, before, now).flatMap(({ item, members, text }) =>
        text
            ? [[item, '', text]]
            : members.map((field) => {
                  const name = field.label.replaceAll(' / ', '.');
                  return [item, name, difference(before.of(field), now.of(field))];
              }),
    );
    let size = 0;
    const shown = rows.map(row).filter(({ outerHTML }) => {
        size += outerHTML.length;
        return size < ROOM;
    });
    const end = shown.length < rows.length ? '; there is no room here for the others.' : '.';
    return [
        el('h2', {}, 'Differences'),
        el('table', { class: 'differences' }, shown),
        el('p', {}, `${fields.length} of ${all.size} fields differ${end}`),
    ];
}

/** The HTML of a model, see model.h; '' where it has no snapshot. */
export function plainOf(model) {
    const runs = model.runs.map((run) => new Run(run, model)).filter(({ length }) => length > 0);
    if (runs.length === 0) return '';
    const moments = ends(runs);
    return el(
        'main',
        {},
        el('h1', {}, 'Key figures'),
        el(
            'p',
            {},
            'Without scripts this is all that shows. Saved and opened from a disk, this file shows the rest.',
        ),
        figures(moments),
        moments.length > 1 ? unfiltered(() => differences(...moments)) : null,
    ).outerHTML;
}
