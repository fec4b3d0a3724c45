// The course of values over a run: charts on one time axis, in which a drag measures a response, over
// those of the run that it is held against.
import { axesOf, MARKS, nearest, placeText, START, tickText } from './against.js';
import { answer, answerCells, answerText, COLUMNS, differenceCells } from './answers.js';
import { lineColour } from './colours.js';
import { placeOf } from './course.js';
import { colourOf, el, setText } from './dom.js';
import { chart, legend, padded } from './draw/chart.js';
import { paintPale } from './draw/pale.js';
import { History } from './history.js';
import { COMPUTED, COURSES, HISTORIES } from './known.js';
import { extent, flat, Moment, number, printed, textOf } from './model.js';
import { inRows, saver } from './out.js';
import { overview } from './overview.js';
import { shortNumber, signed } from './ticks.js';
import { invalidText, validityOf } from './valid.js';
import { moved, zoomed } from './zoom.js';

/** The narrowest part that shows, in snapshots. */
const LEAST = 4;

/** How many answers a chart has room for; the others scroll, and the table below has all. */
const ANSWERS = 2;

/** The lines of a chart: one a field, or one an element of a list; `of(run)` gives its numbers. */
function linesOf(run, names) {
    return Object.entries(names).flatMap(([name, path]) => {
        const field = run.field(path);
        if (!field) return [];
        const { courses } = field;
        return courses.map((values, i) => ({
            name: courses.length > 1 ? `${name}[${i}]` : name,
            path,
            varies: field.varies,
            values,
            of: (other) => other.field(path)?.courses[i],
            text: (other, n) => printed(flat(other.field(path)?.at(n) ?? null)[i]),
        }));
    });
}

/** The field that a path names, and the places in it behind its name: "stat.awb.Gwd RGL.g channel[3][4]". */
function elementOf(run, path) {
    for (const places of [0, 1, 2]) {
        const [, name, behind] = new RegExp(`^(.*?)((?:\\[\\d+\\]){${places}})$`).exec(path) ?? [];
        const field = name && run.field(name);
        if (field) return { field, at: (behind.match(/\d+/g) ?? []).map(Number) };
    }
    return null;
}

/** The line of one element of a list or a grid; none where the path names no number. */
function elementLine(run, path) {
    const { field, at = [] } = elementOf(run, path) ?? {};
    if (!field || at.length === 0) return [];
    const valueAt = (of, n) => at.reduce((value, i) => value?.[i], of?.at(n) ?? null);
    const numbers = (other) => {
        const of = other.field(field.name);
        return of && Float64Array.from({ length: other.length }, (_, n) => number(valueAt(of, n)));
    };
    const values = numbers(run);
    if (!values.some(Number.isFinite)) return [];
    let [known, others] = [null, null]; // of the other run, kept while it is the same
    return [
        {
            name: path,
            path,
            varies: field.varies,
            values,
            of(other) {
                if (other === run) return values;
                if (known !== other) [known, others] = [other, numbers(other)];
                return others;
            },
            again: () => numbers(run),
            text: (other, n) => printed(valueAt(other.field(field.name), n) ?? null),
        },
    ];
}

/** The line of a quantity that is computed here, see known.js; none where a factor is missing. */
function computedLine(run, { name, factors, of, stops }) {
    if (!factors.every((path) => run.field(path)?.shape === 'scalar')) return [];
    const numbers = (other) => {
        const courses = factors.map((path) => other.field(path)?.courses[0]);
        return courses.every(Boolean) && courses[0].map((_, n) => of(...courses.map((c) => c[n])));
    };
    const values = numbers(run);
    return [
        {
            name,
            path: name,
            factors,
            stops,
            varies: factors.some((path) => run.field(path).varies),
            values,
            of: (other) => (other === run ? values : numbers(other) || undefined),
            again: () => numbers(run) || values,
            text: (other, n) =>
                shortNumber(of(...factors.map((path) => Number(other.field(path)?.at(n))))),
        },
    ];
}

/** One chart. */
class Card {
    constructor(section, title, lines, { note = '', remove = null } = {}) {
        this.section = section;
        this.title = title;
        this.hovered = null; // the place on the axis that the pointer is over
        this.lines = lines.map((line, i) => ({ ...line, colour: lineColour(line.name, i) }));
        this.markers = ['marker marker-a', 'marker marker-b'].map((name) =>
            el('div', { class: name }),
        );
        this.where = el('span', { class: 'where' });
        this.legend = legend(this.lines);
        this.legend.element.prepend(this.where);
        this.measured = el('ul', { class: 'measured' });
        this.chart = chart({
            lines: this.lines,
            height: 140,
            label: `${title} over time`,
            range: () => padded(this.range()),
            xRange: () => section.part(),
            sync: 'time',
            xText: (x) => tickText(x, section.axes.timed),
            missing: () => section.missing,
            onSelect: (i, j) => section.store.set({ step: [i, j] }),
            onPick: (i, event) => section.pick(i, event),
            onHover: (i, x) => {
                this.hovered = i === null ? null : x;
                this.read();
            },
            onWheel: (event, x) => section.wheel(event, x),
            onPinch: (factor, x) => section.zoom(factor, x),
            onDouble: () => section.store.set({ zoom: null }),
            onResize: () => this.mark(),
            under: (u) => {
                this.paintMarks(u);
                this.paintOther(u);
            },
        });
        const names = [...new Set(lines.map(({ path }) => path))];
        this.names = lines.flatMap(({ path, factors }) => factors ?? [path]);
        const field = elementOf(section.run, this.names[0])?.field;
        this.valid = field && validityOf(field);
        const removal = remove && {
            type: 'button',
            class: 'quiet',
            'aria-label': `remove ${title}`,
            on: { click: remove },
        };
        this.element = el(
            'article',
            { class: 'card', data: { title } },
            el(
                'header',
                {},
                el('h3', {}, title),
                el('code', {}, note || (names.length === 1 ? names[0] : names[0].split('.')[0])),
                saver(title, this, () => this.numbers()),
                removal && el('button', removal, '×'),
            ),
            this.legend.element,
            this.chart.element,
            this.measured,
        );
    }

    /** The least and the greatest value of the part that shows, of both runs. */
    range() {
        const [from, to] = this.section.part();
        const { axes } = this.section;
        const within = (values, axis) => {
            if (!values) return [];
            const begin = Math.max(placeOf(axis, from), 0);
            return extent(values.subarray(begin, placeOf(axis, to) + 2));
        };
        return extent(
            this.lines.flatMap((line) => [
                ...within(line.values, axes.now),
                ...(axes.run ? within(line.of(axes.run), axes.before) : []),
            ]),
        );
    }

    /** A line for each thing that was noted. */
    paintMarks(u) {
        const { ctx, bbox } = u;
        const { run, axes } = this.section;
        ctx.save();
        ctx.strokeStyle = colourOf('--muted');
        ctx.setLineDash([2 * devicePixelRatio, 2 * devicePixelRatio]);
        for (const [n] of run.marks) {
            const x = u.valToPos(axes.now[n], 'x', true);
            if (!(x >= bbox.left && x <= bbox.left + bbox.width)) continue;
            ctx.beginPath();
            ctx.moveTo(x, bbox.top);
            ctx.lineTo(x, bbox.top + bbox.height);
            ctx.stroke();
        }
        ctx.restore();
    }

    paintOther(u) {
        const { axes } = this.section;
        if (!axes.run) return;
        for (const line of this.lines) {
            const values = line.of(axes.run);
            if (values) paintPale(u, axes.before, values, line.colour);
        }
    }

    /** Reads the values under the pointer, or where the snapshot is: of both runs, and how they differ. */
    read() {
        const { axes, run, view } = this.section;
        const x = this.hovered;
        const n = x === null ? view.n : nearest(axes.now, x);
        const place = x === null ? axes.now[view.n] : x;
        const other = axes.run ? nearest(axes.before, place) : -1;
        const invalid = n < 0 ? '' : invalidText(this.valid, { now: new Moment(run, n) });
        const at = n < 0 ? placeText(place, axes.timed) : run.placeOf(n);
        setText(this.where, `${at} ·${invalid && ` ${invalid} ·`}`);
        this.legend.read(
            this.lines.map((line) => {
                const value = n < 0 ? '–' : line.text(run, n);
                const values = axes.run && line.of(axes.run);
                if (!values) return value;
                const apart = other < 0 || n < 0 ? Number.NaN : line.values[n] - values[other];
                const text = other < 0 ? '–' : line.text(axes.run, other);
                return `${value} (A ${text}${Number.isFinite(apart) ? `, ${signed(apart)}` : ''})`;
            }),
        );
    }

    /** Leaves room for what may be read and measured, so that nothing moves when it is. */
    makeRoom() {
        const runs = this.section.axes.run ? 2 : 1;
        const rows = Math.min(this.lines.length * runs, ANSWERS);
        this.measured.style.setProperty('--rows', String(rows));
        this.legend.element.style.setProperty('--rows', String(this.lines.length > 2 ? runs : 1));
    }

    /** Takes in what the run has become. */
    grow() {
        const { run } = this.section;
        for (const line of this.lines) line.values = line.again?.() ?? line.of(run) ?? line.values;
    }

    /** Whether it can be seen. */
    get visible() {
        const { top, bottom } = this.element.getBoundingClientRect();
        return bottom > 0 && top < window.innerHeight;
    }

    draw() {
        this.makeRoom();
        const gaps = this.lines.map(({ values }) =>
            Array.from(values, (y) => (Number.isFinite(y) ? y : null)),
        );
        const fresh = !this.chart.plot;
        this.chart.show([this.section.axes.now, ...gaps]);
        if (fresh) this.chart.plot.over.append(...this.markers);
    }

    /** What shows as numbers: a column a line, those of the other run behind them. */
    numbers() {
        const [from, to] = this.section.part();
        const { now, before, run } = this.section.axes;
        const columnsOf = (side, of, axis) => {
            const places = [...axis.keys()].filter((n) => axis[n] >= from && axis[n] <= to);
            return [
                [`${side}#`, ...places.map((n) => n + 1)],
                ...(of.timed ? [[`${side}time`, ...places.map((n) => of.axis[n])]] : []),
                ...this.lines.map(({ path, name, text }) => [
                    `${side}${this.lines.length > 1 ? name : path}`,
                    ...places.map((n) => text(of, n)),
                ]),
            ];
        };
        const own = columnsOf(run ? 'B ' : '', this.section.run, now);
        return inRows([...own, ...(run ? columnsOf('A ', run, before) : [])]);
    }

    /** Whether it shows something that is looked for. */
    sought({ find, now }) {
        const fields = this.names.flatMap((name) => elementOf(this.section.run, name)?.field ?? []);
        return (
            find.titled(this.title, fields, now) || fields.some((field) => find.field(field, now))
        );
    }

    /** Whether a line of it leaves the tolerance. */
    moves({ find }) {
        return !find.tolerant || this.lines.some(({ values }) => find.differ(...extent(values)));
    }

    /** Puts the markers and the selection where they belong. */
    mark() {
        const { plot } = this.chart;
        if (!plot) return;
        const { axes, view } = this.section;
        const { n, against, a, run, step } = view;
        const reference = a === null ? null : (against === run ? axes.now : axes.before)[a];
        [reference, axes.now[n]].forEach((at, i) => {
            const left = at === null ? -1 : plot.valToPos(at, 'x');
            this.markers[i].hidden = !(left >= 0 && left <= plot.over.clientWidth);
            this.markers[i].style.left = `${left}px`;
        });
        if (step) this.chart.select(...step);
        else this.chart.clear();
    }

    /** The answers of its lines in the selection: [{ line, now, before }]. */
    measure() {
        const { axes, view, run } = this.section;
        const { step, band, ref, a, against } = view;
        const inPart = (axis, [from, to]) => {
            const begin = placeOf(axis, from - 1e-9) + 1;
            return [begin, Math.max(placeOf(axis, to + 1e-9), begin)];
        };
        return this.lines.map((line) => {
            const own = against === view.run ? line.values[a] : Number.NaN;
            const before = ref && a !== null ? own : Number.NaN;
            const how = { band, before, stops: line.stops };
            const places = { axis: axes.now, timed: axes.timed };
            const now = answer(line.values, step, how, places);
            const values = axes.run && line.of(axes.run);
            if (!values) return { line, now, before: null, run };
            const ends = step.map((n) => axes.now[n]);
            const other = { axis: axes.before, timed: axes.timed };
            return { line, now, before: answer(values, inPart(axes.before, ends), how, other) };
        });
    }

    /** Says in a line each what the lines did; the place for that is there before. */
    tell(answers) {
        const texts = answers.flatMap(({ line, now, before }) => {
            const name = this.lines.length > 1 ? `${line.name}: ` : '';
            const both = before ? [`A ${name}${answerText(before)}`] : [];
            return [`${before ? 'B ' : ''}${name}${answerText(now)}`, ...both];
        });
        this.measured.replaceChildren(...texts.map((text) => el('li', { title: text }, text)));
    }
}

/** The table of all answers. */
function answersTable() {
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

/** Whether a field has more values than a chart has lines for, and these change. */
const isLong = (field) =>
    field?.varies &&
    field.numeric &&
    field.run.length > 2 &&
    !field.charted &&
    field.shape !== 'scalar';

const option = (value, text) => el('option', { value }, text);

/** The section. */
class TimeSection {
    id = 'time';
    title = 'Time';
    empty = () => false;

    constructor(run, store) {
        this.run = run;
        this.store = store;
        this.view = store.view;
        this.axes = axesOf({ now: { run }, before: null });
        this.missing = [...run.missed.keys()].filter((n) => n > 0);
        this.grid = el('div', { class: 'courses' });
        this.said = el('p', { class: 'plain' });
        this.table = answersTable();
        this.added = new Map();
        const known = [
            ...COURSES.map(([title, names]) => [title, linesOf(run, names)]),
            ...COMPUTED.map((one) => [one.title, computedLine(run, one), { note: one.formula }]),
        ].filter(([, lines]) => lines.length);
        const moving = known.filter(([, lines]) => lines.some(({ varies }) => varies));
        const histories = HISTORIES.map(([title, name]) => [title, run.field(name)]).filter(
            ([, field]) => isLong(field),
        );
        const still = known.filter((entry) => !moving.includes(entry)).map(([title]) => title);
        this.still = still;
        this.steady = el('p', { class: 'plain' });
        this.cards = [
            ...moving.map((entry) => new Card(this, ...entry)),
            ...histories.map((entry) => new History(this, ...entry)),
        ];
        this.grid.append(...this.cards.map(({ element }) => element));
        this.marks = el('p', { class: 'marks' });
        this.tellMarks();
        this.strip = overview(moving[0]?.[1][0].values ?? new Float64Array(run.length), {
            whole: () => this.whole(),
            axis: () => this.axes.now,
            least: () => this.least(),
            set: (zoom) => store.set({ zoom }),
        });
        this.element = el(
            'div',
            {},
            this.controls(),
            this.strip.element,
            this.marks,
            this.said,
            this.grid,
            this.table.element,
            el('div', { class: 'below' }, this.adder(), this.hint(), this.steady),
        );
    }

    /** What was noted, each to go there. */
    tellMarks() {
        const { marks } = this.run;
        if (this.told === marks.length && this.toldFirst === marks[0]) return;
        this.told = marks.length;
        this.toldFirst = marks[0];
        this.marks.replaceChildren(
            ...marks.map((mark) => {
                const place = this.run.placeOf(mark[0]);
                const go = () => this.store.set({ n: mark[0] });
                const more = { type: 'button', class: 'quiet', title: place, on: { click: go } };
                return el('button', more, el('bdi', {}, textOf(mark[1])));
            }),
        );
    }

    hint() {
        const text =
            'Drag across a chart to measure the response; click to go to a snapshot, with Shift to ' +
            'compare with it. The wheel zooms, a double click shows all.';
        return el('p', { class: 'hint' }, text);
    }

    controls() {
        const { store, run } = this;
        const choose = (key, convert) => (event) =>
            store.set({ [key]: convert(event.target.value) });
        const charted = run.fields.filter((field) => field.charted && field.shape === 'scalar');
        this.align = el(
            'select',
            { 'aria-label': 'align the runs', on: { change: choose('align', String) } },
            option(START, 'at the start'),
            option(MARKS, 'at A and B'),
            charted.map(({ name }) => option(name, `where ${name} leaves rest`)),
        );
        this.alignment = el('label', {}, 'Runs aligned ', this.align);
        this.band = el(
            'select',
            { 'aria-label': 'band', on: { change: choose('band', Number) } },
            [0.02, 0.05, 0.1].map((part) => option(part, `± ${100 * part} %`)),
        );
        this.reference = el('input', {
            type: 'checkbox',
            'aria-label': 'measure from the value at A',
            on: { change: (event) => store.set({ ref: event.target.checked }) },
        });
        this.all = el(
            'button',
            {
                type: 'button',
                title: 'show all (0)',
                on: { click: () => store.set({ zoom: null }) },
            },
            'Show all',
        );
        this.referenced = el('label', {}, this.reference, ' from the value at A');
        return el(
            'div',
            { class: 'time-controls' },
            this.alignment,
            el('label', {}, 'Band ', this.band),
            this.referenced,
            this.all,
        );
    }

    /** Takes the name of a field, or of an element of one: names are offered while one types. */
    adder() {
        const { store, run } = this;
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

    /** The ends of the axis, of both runs. */
    whole() {
        const { now, before } = this.axes;
        const ends = [now, before ?? now].flatMap((axis) => [axis[0], axis[axis.length - 1]]);
        const [first, last] = extent(ends);
        return first === last ? [first - 1, last + 1] : [first, last];
    }

    /** The part of it that shows. */
    part() {
        return this.view.zoom ?? this.whole();
    }

    least() {
        const { now } = this.axes;
        return (LEAST * (now[now.length - 1] - now[0])) / Math.max(now.length - 1, 1) || 1;
    }

    /** Zooms around a place, where the snapshot is unless another is given. */
    zoom(factor, x = this.axes.now[this.view.n]) {
        this.store.set({ zoom: zoomed(this.view.zoom, this.whole(), factor, x, this.least()) });
    }

    wheel(event, x) {
        const sideways = event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY);
        const delta = event.deltaY || event.deltaX;
        // Zoomed out as far as it goes, the wheel scrolls the page.
        const pinched = event.ctrlKey; // as touch pads tell it
        if (!pinched && !this.view.zoom && (delta > 0 || sideways)) return;
        event.preventDefault();
        if (sideways) this.store.set({ zoom: moved(this.view.zoom, this.whole(), delta / 1000) });
        else this.zoom(Math.exp(Math.max(-500, Math.min(delta, 500)) / (pinched ? 60 : 400)), x);
    }

    pick(i, event) {
        const { run } = this.store.view;
        this.store.set(event.shiftKey ? { a: i, against: run } : { n: i });
    }

    /** Adds and removes the charts of fields that were asked for. */
    follow({ added }) {
        for (const [name, card] of this.added) {
            if (added.includes(name)) continue;
            card.chart.end();
            card.element.remove();
            this.added.delete(name);
        }
        const fresh = [];
        for (const name of added.filter((one) => !this.added.has(one))) {
            const remove = () =>
                this.store.set({ added: this.store.view.added.filter((other) => other !== name) });
            const card = this.cardOf(name, remove);
            if (!card) continue;
            this.added.set(name, card);
            this.grid.append(card.element);
            fresh.push(card);
        }
        return fresh;
    }

    /** The chart of a field, or of an element of one, that was asked for; null where it has none. */
    cardOf(name, remove) {
        const field = this.run.field(name);
        const lines = field
            ? linesOf(this.run, { [field.key]: name })
            : elementLine(this.run, name);
        if (lines.length) return new Card(this, name, lines, { remove });
        return isLong(field) ? new History(this, name, field, remove) : null;
    }

    /** Draws what can be seen of a run that has grown or lost its beginning. */
    grow() {
        this.axes = axesOf({ ...this.view, now: new Moment(this.run, this.view.n) });
        this.missing = [...this.run.missed.keys()].filter((n) => n > 0);
        this.tellMarks();
        if (this.cards[0]?.lines.length) {
            this.cards[0].grow();
            this.strip.grow(this.cards[0].lines[0].values);
        }
        for (const card of [...this.cards, ...this.added.values()]) {
            if (!card.visible) continue;
            card.grow();
            card.draw();
            card.read();
            card.mark();
        }
    }

    /** Shows the charts of what is looked for, or all where none has it; those that stay within the
     * tolerance are named instead. */
    choose(view) {
        const cards = [...this.cards, ...this.added.values()];
        const moving = cards.filter((card) => card.moves(view));
        const sought = moving.filter((card) => card.sought(view));
        const shown = sought.length ? sought : moving;
        for (const card of cards) card.element.hidden = !shown.includes(card);
        const within = cards.filter((card) => !moving.includes(card)).map(({ title }) => title);
        const texts = [
            this.still.length ? `Steady over the run: ${this.still.join(', ')}.` : '',
            within.length ? `Within the tolerance: ${within.join(', ')}.` : '',
            sought.length || !cards.length
                ? ''
                : 'No chart shows what is looked for: here are all.',
        ];
        setText(this.steady, texts.filter(Boolean).join(' '));
    }

    update(view, changed) {
        const has = (...keys) => keys.some((key) => changed.has(key));
        this.view = view;
        const marked = view.align === MARKS && has('n');
        const realigned = has('a', 'against', 'align') || marked;
        if (realigned) this.axes = axesOf(view);
        const fresh = this.follow(view);
        const cards = [...this.cards, ...this.added.values()];
        if (has('query', 'added')) this.choose(view);
        for (const card of cards) {
            if (has('theme', 'zoom') || realigned || fresh.includes(card)) card.draw();
            card.read();
            card.mark();
        }
        if (has('step', 'band', 'ref', 'added') || (realigned && view.step)) this.measure(cards);
        this.showControls(view);
        this.strip.show(view.zoom);
    }

    measure(cards) {
        const answers = cards.map((card) => (this.view.step ? card.measure() : []));
        cards.forEach((card, i) => {
            card.tell(answers[i]);
        });
        this.table.show(answers.flat());
    }

    showControls({ align, band, ref, zoom, a }) {
        this.alignment.hidden = !this.axes.run;
        this.align.value = align;
        this.band.value = String(band);
        this.referenced.hidden = a === null;
        this.reference.checked = ref;
        this.all.disabled = !zoom;
        setText(this.said, this.axes.said);
    }
}

/** The section; null for less than three snapshots, which have no course. */
export const timeSection = (run, store) => (run.length < 3 ? null : new TimeSection(run, store));
