// A list or grid of many values over a run as a map: time to the right, its values upwards.
import { nearest, tickText } from './against.js';
import { canvas } from './canvas.js';
import { sequential } from './colours.js';
import { placeOf } from './course.js';
import { cursor, within } from './cursor.js';
import { colourOf, el, setText } from './dom.js';
import { paintCells, paintFrame, scaleBar } from './draw/map.js';
import { extent, flat, Moment, number, printed } from './model.js';
import { short, ticks } from './ticks.js';
import { TimeCard } from './timecard.js';
import { invalidText, validityOf } from './valid.js';

// As the charts beside it have them.
const MARGIN = { left: 46, right: 16, top: 8, bottom: 24 };
const HEIGHT = 200;
/** The part of the values, the largest, that does not make the scale: a clipped picture is one bin. */
const RARE = 0.01;
const FONT = '11px system-ui, sans-serif';

/** The most columns: more than a screen shows of a part. */
const COLUMNS = 600;

/** So many values are looked at to make a scale. */
const LOOKED_AT = 10_000;

/** One map. */
export class History extends TimeCard {
    columns = [];
    lines = [];
    width = 0; // as it was painted
    marked = null; // the place that keys are at
    count = 1; // the most values of a snapshot that shows
    #known = new Map(); // the numbers of a snapshot, by how many there were before it
    #drawn = { key: '', at: Number.NaN };

    /** @param {Field} field of more values than a chart has lines for */
    constructor(section, title, field, remove = null) {
        super(section, title);
        this.field = field;
        this.reading = el('span', { class: 'reading' });
        this.map = canvas((context, width, height) => this.paint(context, width, height), {
            height: HEIGHT,
            label: `${field.name} over time`,
        });
        this.scale = scaleBar(() => sequential);
        const { element } = this.map;
        this.cursor = cursor(element, {
            ends: () => this.ends(),
            move: (place, axis, by) => this.move(place, axis, by),
            at: (...point) => this.at(point),
            read: (place, keys) => this.hover(place, keys),
            pick: (place, event) => section.pick(Math.floor(place / this.count), event),
        });
        this.assemble(
            field.step > 1 ? `${field.name}, one of ${field.step}` : field.name,
            remove,
            el('div', { class: 'legend' }, this.reading),
            el('div', { class: 'chart' }, element, this.markers),
            this.scale.element,
        );
    }

    /** Its drawing is freed with its element. */
    end() {}

    /** Where x of the axis lies between the margins of a width. */
    placeOf(x, width) {
        const [from, to] = this.section.part();
        return MARGIN.left + ((x - from) / (to - from)) * (width - MARGIN.left - MARGIN.right);
    }

    /** Draws what is other than before, unless no column would be: `anew` even then. */
    draw(anew) {
        const { axes, run, key } = this.section;
        const [from, to] = this.section.part();
        const step = (to - from) / COLUMNS;
        if (!anew && key === this.#drawn.key && Math.abs(to - this.#drawn.at) < step) return;
        this.#drawn = { key, at: to };
        const known = new Map();
        this.columns = Array.from({ length: COLUMNS }, (_, i) => {
            const n = Math.min(nearest(axes.now, from + (i + 0.5) * step), run.length - 1);
            if (n < 0) return [];
            const place = run.first + n;
            if (!known.has(place)) known.set(place, this.#known.get(place) ?? this.numbersAt(n));
            return known.get(place);
        });
        this.#known = known;
        this.#scaleOf([...known.values()]);
        this.map.repaint();
        this.cursor.refresh();
    }

    /** All numbers of a snapshot. */
    numbersAt(n) {
        return flat(this.field.at(n)).map(number);
    }

    /** Makes the scale of lists. */
    #scaleOf(lists) {
        this.count = extent(this.columns.map(({ length }) => length))[1] || 1;
        const every = Math.ceil((lists.length * this.count) / LOOKED_AT);
        const looked = lists.flatMap((list, i) => list.filter((_, k) => (i + k) % every === 0));
        const values = Float64Array.from(looked.filter(Number.isFinite)).sort();
        const [least, most] = extent(lists.flatMap((list) => extent(list)));
        this.range = extent([least, values[Math.floor((1 - RARE) * (values.length - 1))]]);
        this.scale.show(this.range, most > this.range[1] ? `brightest up to ${short(most)}` : '');
    }

    paint(context, width, height) {
        this.width = width;
        const [low, high] = this.range ?? [0, 0];
        const colour = (value) => sequential(high > low ? (value - low) / (high - low) : 0.5);
        const inner = [width - MARGIN.left - MARGIN.right, height - MARGIN.top - MARGIN.bottom];
        const rows = Array.from({ length: this.count }, (_, i) =>
            this.columns.map((column) => column[this.count - 1 - i] ?? Number.NaN),
        );
        context.save();
        context.translate(MARGIN.left, MARGIN.top);
        paintCells(context, ...inner, rows, colour);
        context.restore();
        this.paintNotes(context, (x) => this.leftOf(x), MARGIN.top, inner[1]);
        if (this.marked !== null) this.paintMark(context, width, inner[1]);
        this.#paintTicks(context, width, inner);
    }

    #paintTicks(context, width, inner) {
        context.font = FONT;
        context.fillStyle = colourOf('--muted');
        context.textAlign = 'center';
        context.textBaseline = 'top';
        const [from, to] = this.section.part();
        for (const tick of ticks(from, to, inner[0] / 60))
            context.fillText(
                tickText(tick, this.section.axes.timed),
                this.placeOf(tick, width),
                MARGIN.top + inner[1] + 6,
            );
        context.textAlign = 'right';
        context.textBaseline = 'middle';
        for (const tick of ticks(0, this.count, inner[1] / 40)) {
            const up = (tick + 0.5) / this.count;
            if (up < 1) context.fillText(tick, MARGIN.left - 5, MARGIN.top + (1 - up) * inner[1]);
        }
    }

    /** The place, see cursor.js, under a point of the canvas; null beside the map and the snapshots. */
    at([x, y, width, height]) {
        const across = (x - MARGIN.left) / (width - MARGIN.left - MARGIN.right);
        const up = 1 - (y - MARGIN.top) / (height - MARGIN.top - MARGIN.bottom);
        if (!(across >= 0 && across < 1 && up >= 0 && up < 1)) return null;
        const [from, to] = this.section.part();
        const n = nearest(this.section.axes.now, from + across * (to - from));
        return n < 0 ? null : n * this.count + Math.floor(up * this.count);
    }

    /** The first and the last place of the snapshots that show. */
    ends() {
        const [from, to] = this.section.part();
        const axis = this.section.axes.now;
        const before = placeOf(axis, from);
        const first = before + (axis[before] === from ? 0 : 1);
        return [first * this.count, (placeOf(axis, to) + 1) * this.count - 1];
    }

    move(place, axis, by) {
        const i = place % this.count;
        if (axis === 'y') return place - i + within(i - by, [0, this.count - 1]);
        const [first, last] = this.ends();
        return within(place + by * this.count, [first + i, last - this.count + 1 + i]);
    }

    hover(place, keys) {
        this.hovered = place === null ? null : this.partsOf(place);
        if (keys) {
            this.marked = place;
            this.map.repaint();
        }
        this.read();
        return this.reading.textContent;
    }

    /** The snapshot of a place and which of its values it is. */
    partsOf(place) {
        return { n: Math.floor(place / this.count), i: place % this.count };
    }

    paintMark(context, width, tall) {
        const { n, i } = this.partsOf(this.marked);
        const left = this.placeOf(this.section.axes.now[n], width);
        const top = MARGIN.top + (1 - (i + 1) / this.count) * tall;
        paintFrame(context, left - 3, top - 1, 6, tall / this.count + 2);
    }

    /** Reads the value under the pointer, else where the largest of the snapshot is. */
    read() {
        const { run, view } = this.section;
        const { n, i } = this.hovered ?? { n: view.n, i: null };
        const values = flat(this.field.at(n));
        const numbers = values.map(number);
        const at = i ?? numbers.indexOf(extent(numbers.filter(Number.isFinite))[1]);
        const what = i === null ? 'most at ' : '';
        const text = `${run.placeOf(n)} · ${what}[${at}]: ${printed(values[at])}`;
        const invalid = invalidText(validityOf(this.field), { now: new Moment(run, n) });
        setText(this.reading, [text, invalid].filter(Boolean).join(' · '));
    }

    /** Where a place on the axis is on the map; null beside it. */
    leftOf(x) {
        const left = this.placeOf(x, this.width);
        const within = left >= MARGIN.left && left <= this.width - MARGIN.right + 1;
        return within ? Math.min(left, this.width - MARGIN.right) : null;
    }

    mark() {
        this.placeMarkers((x) => this.leftOf(x));
    }

    /** What shows as numbers: a row a snapshot. */
    numbers() {
        const { run, axes } = this.section;
        const [from, to] = this.section.part();
        const places = [...axes.now.keys()].filter((n) => axes.now[n] >= from && axes.now[n] <= to);
        const time = run.timed ? ['time'] : [];
        const values = Array.from({ length: this.count }, (_, i) => `${this.field.name}[${i}]`);
        const rows = places.map((n) => [
            n + 1,
            ...time.map(() => run.axis[n]),
            ...flat(this.field.at(n)).map(printed),
        ]);
        return [['#', ...time, ...values], ...rows];
    }

    /** Nothing of it is measured. */
    measure() {
        return [];
    }
    tell() {}
    moves() {
        return true;
    }
    sought({ find, now }) {
        return find.field(this.field, now);
    }
}
