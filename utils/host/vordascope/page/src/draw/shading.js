// Lens shading: its tables as maps, what they are in the centre and in the corners, the ratios of their
// colours, and cuts through all of them.
import { el, setText } from '../dom.js';
import { PHASE } from '../known.js';
import { differ, Source } from '../sources.js';
import { lines } from './lines.js';
import { maps } from './map.js';

/**
 * The colours of the tables by that of the first pixel. Where this is green, the text does not say
 * which of the other two is red: it would be known only if `eo` were known to be of an even row.
 */
const COLOURS = {
    R: { ee: 'R', eo: 'G', oe: 'G', oo: 'B' },
    B: { ee: 'B', eo: 'G', oe: 'G', oo: 'R' },
    Gr: { ee: 'G', oo: 'G' },
    Gb: { ee: 'G', oo: 'G' },
};

/** The colours that the text names by "(Phase Gr)"; none where it has no such line. */
const coloursOf = (run) => COLOURS[/^\(Phase (\w+)\)$/.exec(run.field(PHASE)?.note)?.[1]] ?? {};

/** A table over the mean of the two green ones, place by place. */
class Ratio extends Source {
    constructor(name, table, greens) {
        super(
            name,
            [table, ...greens].flatMap(({ fields }) => fields),
        );
        this.table = table;
        this.greens = greens;
    }

    rows(moment) {
        const [first, second] = this.greens.map((green) => green.rows(moment));
        return this.table
            .rows(moment)
            .map((row, y) => row.map((value, x) => (2 * value) / (first[y]?.[x] + second[y]?.[x])));
    }

    numbers(moment) {
        return this.rows(moment).flat();
    }
}

/** The ratios to green, of the colours or else of the tables; none where no table is known to be green. */
function ratiosOf(sources, colours) {
    const greens = sources.filter(({ name }) => colours[name] === 'G');
    if (greens.length !== 2) return [];
    const others = sources.filter((source) => !greens.includes(source));
    const ratios = others.map(
        (source) => new Ratio(`${colours[source.name] ?? source.name}/G`, source, greens),
    );
    return ratios.sort((p, q) => (p.name < q.name ? 1 : -1));
}

/** A cut through a source, as a source of its own for a curve. */
class Cut {
    column = false;
    place = null;

    constructor(source) {
        this.source = source;
        this.varies = source.varies;
        this.paired = source.paired;
        this.fields = source.fields;
    }

    numbers(moment) {
        const rows = this.source.rows(moment);
        if (this.column) return rows.map((row) => row[this.place ?? row.length >> 1]);
        return rows[this.place ?? rows.length >> 1] ?? [];
    }

    extents() {
        return this.source.extents();
    }
}

/** In the centre, where four values may meet, and in the corners; then these over that. */
function figuresOf(rows) {
    const middle = (length) => [(length - 1) >> 1, length >> 1];
    const mean = (values) => values.reduce((sum, value) => sum + value, 0) / values.length;
    const last = rows.length - 1;
    const centre = mean(
        middle(rows.length).flatMap((y) => middle(rows[y]?.length ?? 0).map((x) => rows[y]?.[x])),
    );
    const corners = [rows[0]?.[0], rows[0]?.at(-1), rows[last]?.[0], rows[last]?.at(-1)];
    return [centre, ...corners, mean(corners) / centre];
}

const FIGURES = [
    '',
    'centre',
    'top left',
    'top right',
    'bottom left',
    'bottom right',
    'corners ÷ centre',
];

/** The figures of sources as a table; in a comparison of A, of B, and the difference. */
function figures(sources) {
    const body = el('tbody');
    const heads = FIGURES.map((name) => el('th', { scope: 'col' }, name));
    const shown = (number) =>
        Number.isFinite(number) ? String(Number(number.toPrecision(4))) : '–';
    const row = (name, numbers) =>
        el(
            'tr',
            {},
            el('th', { scope: 'row' }, name),
            numbers.map((one) => el('td', {}, shown(one))),
        );
    function draw(view) {
        const { now, before } = view;
        const compared = differ(view, sources);
        body.replaceChildren(
            ...sources.flatMap((source) => {
                const after = figuresOf(source.rows(now));
                if (!compared) return [row(source.name, after)];
                const earlier = figuresOf(source.rows(before));
                const apart = after.map((number, i) => number - earlier[i]);
                const { name } = source;
                return [row(`A ${name}`, earlier), row(`B ${name}`, after), row('B − A', apart)];
            }),
        );
    }
    const table = el(
        'table',
        { class: 'numbers figures-table' },
        el('thead', {}, el('tr', {}, heads)),
        body,
    );
    return { element: el('div', { class: 'wide' }, table), draw };
}

/** The shading tables of one sensor. */
export function shading(tables) {
    const colours = coloursOf(tables[0].fields[0].run);
    const sources = tables.map(({ name, fields }) => {
        const colour = colours[name];
        return new Source(colour ? `${name} (${colour})` : name, fields);
    });
    const ratios = ratiosOf(tables, colours);
    const cuts = [...sources, ...ratios].map((source) => new Cut(source));
    const profileOf = (members) =>
        lines(
            cuts
                .filter(({ source }) => members.includes(source))
                .map((cut) => ({ name: cut.source.name, x: null, y: cut })),
            { height: members === sources ? 220 : 150 },
        );
    const groups = [sources, ratios].filter((members) => members.length);
    const profiles = groups.map(profileOf);
    let view = null;
    let column = false;
    let cell = [null, null];

    const title = el('p', { class: 'reading-line' });
    function cutAt() {
        const rows = sources[0].rows(view.now);
        const place = cell[+column] ?? (column ? (rows[0]?.length ?? 0) : rows.length) >> 1;
        for (const cut of cuts) Object.assign(cut, { column, place });
        setText(
            title,
            `${column ? 'column' : 'row'} ${place}: click a map, or Enter on a cell, for another`,
        );
        for (const profile of profiles) profile.draw(view);
    }
    const pick = (...at) => {
        cell = at;
        cutAt();
    };
    const direction = choose('cut', ['row', 'column'], (chosen) => {
        column = chosen === 1;
        cutAt();
    });
    const overviews = groups.map((members) => maps(members, { pick, apart: members === ratios }));
    const numbers = figures([...sources, ...ratios]);

    return {
        elements: [
            el(
                'div',
                { class: 'shading' },
                overviews.map(({ elements }) => el('div', {}, elements)),
                el(
                    'div',
                    {},
                    el('div', { class: 'choice-line' }, direction, title),
                    profiles.flatMap(({ elements }) => elements),
                ),
            ),
            numbers.element,
        ],
        draw(shown) {
            view = shown;
            cutAt();
            numbers.draw(view);
            for (const overview of overviews) overview.draw(view);
        },
    };
}

/** Buttons of which one is pressed. */
function choose(label, names, onChoose) {
    const buttons = names.map((name, i) =>
        el(
            'button',
            { type: 'button', 'aria-pressed': String(i === 0), on: { click: () => press(i) } },
            name,
        ),
    );
    function press(chosen) {
        buttons.forEach((button, i) => {
            button.setAttribute('aria-pressed', String(i === chosen));
        });
        onChoose(chosen);
    }
    return el('div', { class: 'choice', role: 'group', 'aria-label': label }, buttons);
}
