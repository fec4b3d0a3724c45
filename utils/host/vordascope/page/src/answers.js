// A measured response in words and numbers. Every span has its unit: snapshots, and seconds where
// there is time.
import { el } from './dom.js';
import { respond } from './tools.js';

const number = (value) => String(Number(value.toPrecision(6)));
const percent = (part) => `${Number((100 * part).toPrecision(3))} %`;
const signed = (text) => (text.startsWith('-') ? text : `+${text}`);

/** What a table of answers has in its columns. */
const COLUMNS = [
    'what',
    'before → after',
    'leaves at',
    '10–90 %',
    'settled after',
    'overshoot',
    'undershoot',
];

/**
 * Measures the part from `from` to `to` of the values of a run.
 * @param {object} how `band`, a part; `before`, a reference; `stops`, whether values are logarithms
 * @param {object} places `axis` and whether it is `timed`
 */
export function answer(values, [from, to], { band, before, stops }, { axis, timed }) {
    const unit = stops ? 1 : Number.NaN;
    const response = respond(values.slice(from, to + 1), { band, before, unit });
    return response && { ...response, from, axis, timed, ofBand: band, stops };
}

/** "6 (0.31 s)": from one of its snapshots to another. */
function span({ from, axis, timed }, begin, end) {
    if (begin < 0 || end < 0) return null;
    const seconds = Number((axis[from + end] - axis[from + begin]).toFixed(3));
    return timed ? `${end - begin} (${seconds} s)` : String(end - begin);
}

function beyond({ from }, at, part) {
    return at < 0 ? percent(0) : `${percent(part)} at #${from + at + 1}`;
}

const ends = ({ kind, before, after }) =>
    kind === 'step' ? `${number(before)} → ${number(after)}` : number(before);

/** In one line, such as "step 8000 → 40000, within 5 % after 6 (0.31 s), overshoot 0 %". */
export function answerText(of) {
    if (!of) return 'this page was built without the code that measures';
    if (of.kind === 'none') return 'too few numbers to say';
    if (of.kind === 'steady') {
        const strays = of.strays ? `, ${of.strays} outside` : '';
        return `steady at ${number(of.before)} ± ${number(of.band)}${strays}`;
    }
    if (of.kind === 'moving')
        return `moving: ${number(of.low)} to ${number(of.high)}; the end is not at rest, so nothing has settled`;
    const settled = span(of, of.departure, of.settled);
    const what = of.kind === 'step' ? `step ${ends(of)}` : `recovery to ${number(of.before)}`;
    const farthest = of.kind === 'recovery' ? `, farthest ${percent(of.peakPart)}` : '';
    return `${what}${farthest}, within ${percent(of.ofBand)} after ${settled} snapshots, overshoot ${percent(of.overshootPart)}`;
}

/** The same as the cells of COLUMNS; '–' for what an answer of its kind does not have. */
function answerCells(of) {
    if (!of || of.kind === 'none') return [answerText(of), ...Array(COLUMNS.length - 1).fill('–')];
    const arrived = of.kind === 'step' || of.kind === 'recovery';
    const from = of.beforeCount ? `median of ${of.beforeCount}` : 'reference';
    return [
        of.kind,
        of.kind === 'moving' ? `${number(of.low)} to ${number(of.high)}` : `${ends(of)} (${from})`,
        of.departure < 0 ? '–' : placeOf(of, of.departure),
        span(of, of.riseBegin, of.riseEnd) ?? '–',
        arrived ? `${span(of, of.departure, of.settled)}, ± ${number(of.band)}` : '–',
        arrived ? beyond(of, of.overshoot, of.overshootPart) : '–',
        arrived ? beyond(of, of.undershoot, of.undershootPart) : '–',
    ];
}

const placeOf = ({ from, axis, timed }, i) =>
    timed ? `#${from + i + 1} · ${Number(axis[from + i].toFixed(3))} s` : `#${from + i + 1}`;

/** How the answer b differs from the answer a, as cells. */
function differenceCells(a, b) {
    const cells = Array(COLUMNS.length).fill('–');
    if (!a || !b) return cells;
    cells[0] = a.kind === b.kind ? 'B − A' : `${a.kind} → ${b.kind}`;
    if (a.kind !== b.kind || !['step', 'recovery'].includes(b.kind)) return cells;
    const less = (of) => signed(number(of(b) - of(a)));
    cells[1] =
        `${less((r) => r.before)} → ${b.kind === 'step' ? less((r) => r.after) : ''}`.replace(
            / → $/,
            '',
        );
    const taken = (begin, end) => {
        const [p, q] = [a, b].map((of) => of[end] - of[begin]);
        const seconds = ({ axis, from, [begin]: i, [end]: j }) => axis[from + j] - axis[from + i];
        const time = a.timed
            ? ` (${signed(number(Number((seconds(b) - seconds(a)).toFixed(3))))} s)`
            : '';
        return `${signed(String(q - p))}${time}`;
    };
    if (b.kind === 'step') cells[3] = taken('riseBegin', 'riseEnd');
    cells[4] = taken('departure', 'settled');
    cells[5] = signed(percent(b.overshootPart - a.overshootPart));
    cells[6] = signed(percent(b.undershootPart - a.undershootPart));
    return cells;
}

/** The table of all answers. */
export function answersTable() {
    const body = el('tbody');
    const head = COLUMNS.map((name) => el('th', { scope: 'col' }, name));
    const row = (name, side, cells) =>
        el(
            'tr',
            {},
            el('th', { scope: 'row' }, name),
            el('td', {}, side),
            cells.map((cell) => el('td', {}, cell)),
        );
    const element = el(
        'div',
        { class: 'card answers', hidden: true },
        el('h3', {}, 'Response'),
        el(
            'div',
            { class: 'wide' },
            el('table', {}, el('thead', {}, el('tr', {}, el('th'), el('th'), head)), body),
        ),
    );
    return {
        element,
        show(answers) {
            element.hidden = answers.length === 0;
            body.replaceChildren(
                ...answers.flatMap(({ line, now, before }) =>
                    before
                        ? [
                              row(line.path, 'A', answerCells(before)),
                              row(line.name, 'B', answerCells(now)),
                              row('', '', differenceCells(before, now)),
                          ]
                        : [row(line.path, '', answerCells(now))],
                ),
            );
        },
    };
}
