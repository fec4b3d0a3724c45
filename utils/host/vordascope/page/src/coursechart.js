// A chart of lines over time, over those of the run that it is held against, in which a drag measures.
import { nearest, placeText, tickText } from './against.js';
import { answer, answerText } from './answers.js';
import { lineColour } from './colours.js';
import { placeOf } from './course.js';
import { elementOf } from './courses.js';
import { el, setText } from './dom.js';
import { chart, legend, padded } from './draw/chart.js';
import { paintPale } from './draw/pale.js';
import { extent, Moment } from './model.js';
import { inRows } from './out.js';
import { Thinned } from './thin.js';
import { signed } from './ticks.js';
import { TimeCard } from './timecard.js';
import { invalidText, validityOf } from './valid.js';

const HEIGHT = 140;
/** About the width of one that has not been drawn. */
const WIDTH = 400;

/** How many answers a chart has room for; the others scroll, and the table below has all. */
const ANSWERS = 2;

export class CourseChart extends TimeCard {
    #points = new Thinned();
    #range = [0, 1];
    #selected = false;

    /** @param {object[]} lines see courses.js */
    constructor(section, title, lines, { note = '', remove = null } = {}) {
        super(section, title);
        this.lines = lines.map((line, i) => ({ ...line, colour: lineColour(line.name, i) }));
        this.where = el('span', { class: 'where' });
        this.legend = legend(this.lines);
        this.legend.element.prepend(this.where);
        this.measured = el('ul', { class: 'measured' });
        this.chart = this.#chart();
        const names = [...new Set(lines.map(({ path }) => path))];
        this.names = lines.flatMap(({ path, factors }) => factors ?? [path]);
        const field = elementOf(section.run, this.names[0])?.field;
        this.valid = field && validityOf(field);
        const said = note || (names.length === 1 ? names[0] : names[0].split('.')[0]);
        this.assemble(said, remove, this.legend.element, this.chart.element, this.measured);
    }

    #chart() {
        const { section } = this;
        const { store } = section;
        const snapshot = (i) => this.#points.places[i];
        return chart({
            lines: this.lines,
            height: HEIGHT,
            label: `${this.title} over time`,
            range: () => padded(this.#range),
            xRange: () => section.part(),
            sync: 'time',
            xText: (x) => tickText(x, section.axes.timed),
            missing: () => this.#missing(),
            onSelect: (i, j) => store.set({ step: [snapshot(i), snapshot(j)] }),
            onPick: (i, event) => section.pick(snapshot(i), event),
            onHover: (i, x) => {
                this.hovered = i === null ? null : x;
                this.read();
            },
            onWheel: (event, x) => section.wheel(event, x),
            onPinch: (factor, x) => section.zoom(factor, x),
            onDouble: () => store.set({ zoom: null }),
            onResize: () => this.mark(),
            under: (u) => this.#paintUnder(u),
        });
    }

    end() {
        this.chart.end();
    }

    /** The numbers of a line. */
    #values(line) {
        return line.of(this.section.run);
    }

    /** The points before which some are missing. */
    #missing() {
        const points = this.section.missing.map((n) => this.#points.pointFrom(n));
        return [...new Set(points)].filter((i) => i > 0 && i < this.#points.x.length);
    }

    /** The least and the greatest value of the part that shows, of both runs. */
    #extent() {
        const [from, to] = this.section.part();
        const { run, before } = this.section.axes;
        const others = run ? this.lines.map((line) => line.of(run)).filter(Boolean) : [];
        const within = others.map((values) =>
            values.subarray(Math.max(placeOf(before, from), 0), placeOf(before, to) + 2),
        );
        const own = this.#points.ys.map((ys) => ys.filter((y) => y !== null));
        return extent([...own, ...within].flatMap((values) => extent(values)));
    }

    #paintUnder(u) {
        const { ctx, bbox } = u;
        const { axes } = this.section;
        const left = (at) => {
            const x = u.valToPos(at, 'x', true);
            return x >= bbox.left && x <= bbox.left + bbox.width ? x : null;
        };
        this.paintNotes(ctx, left, bbox.top, bbox.height);
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
                const apart =
                    other < 0 || n < 0 ? Number.NaN : this.#values(line)[n] - values[other];
                const text = other < 0 ? '–' : line.text(axes.run, other);
                return `${value} (A ${text}${Number.isFinite(apart) ? `, ${signed(apart)}` : ''})`;
            }),
        );
    }

    /** Leaves room for what may be read and measured, so that nothing moves when it is. */
    #makeRoom() {
        const runs = this.section.axes.run ? 2 : 1;
        const rows = Math.min(this.lines.length * runs, ANSWERS);
        this.measured.style.setProperty('--rows', String(rows));
        this.legend.element.style.setProperty('--rows', String(this.lines.length > 2 ? runs : 1));
    }

    /** Draws what is other than before, unless no pixel would be: `anew` even then. */
    draw(anew) {
        const { axes, key } = this.section;
        const { plot } = this.chart;
        const pixels = plot ? plot.bbox.width / devicePixelRatio : WIDTH;
        const slack = (this.#range[1] - this.#range[0]) / (2 * HEIGHT);
        const values = this.lines.map((line) => this.#values(line));
        const part = this.section.part();
        const other = this.#points.take(key, axes.now, values, part, pixels, slack);
        if (!other && !anew) return;
        if (anew) this.#makeRoom();
        this.#range = this.#extent();
        this.chart.show([this.#points.x, ...this.#points.ys]);
        if (!plot) this.chart.plot.over.append(...this.markers);
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
        return (
            !find.tolerant || this.lines.some((line) => find.differ(...extent(this.#values(line))))
        );
    }

    /** Puts the markers and the selection where they belong. */
    mark() {
        const { plot } = this.chart;
        if (!plot) return;
        // A snapshot that came after the drawing stands at its end: no pixel would be other.
        const width = plot.bbox.width / devicePixelRatio;
        this.placeMarkers((at) => {
            const left = plot.valToPos(at, 'x');
            return left >= 0 && left <= width + 1 ? Math.min(left, width) : null;
        });
        const { step } = this.section.view;
        if (step) this.chart.select(...step.map((n) => this.#points.pointOf(n)));
        else if (this.#selected) this.chart.clear();
        this.#selected = Boolean(step);
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
            const all = this.#values(line);
            const own = against === view.run ? all[a] : Number.NaN;
            const before = ref && a !== null ? own : Number.NaN;
            const how = { band, before, stops: line.stops };
            const places = { axis: axes.now, timed: axes.timed };
            const now = answer(all, step, how, places);
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
