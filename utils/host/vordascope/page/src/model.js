// The page's one data model: runs of snapshots (see model.h). A capture is a run of one, a comparison
// two snapshots of any runs. A field has one value where it never changes, else its changes.
import { Course, number, placeOf, places } from './course.js';

export { number };

/** The version of the model that this page reads. */
export const VERSION = 2;

/** Whether two values, nested or not, are printed alike. */
export function same(a, b) {
    if (a === b) return true;
    if (a === null || b === null) return false;
    if (!Array.isArray(a) && !Array.isArray(b)) return String(a) === String(b);
    if (!Array.isArray(a) || !Array.isArray(b) || a.length !== b.length) return false;
    return a.every((value, i) => same(value, b[i]));
}

/** The scalars of a value in the order of printing. */
export const flat = (value) =>
    Array.isArray(value) ? value.flat(Number.POSITIVE_INFINITY) : [value];

/** A value on one line, as vorda prints its numbers. */
export function printed(value) {
    if (value === null || value === undefined) return '–';
    if (!Array.isArray(value)) return String(value);
    if (!value.some(Array.isArray)) return value.join(', ');
    return value.map((row) => `(${printed(row)})`).join(' ');
}

/** The least and the greatest of the numbers, [NaN, NaN] where there is none. */
export function extent(numbers) {
    let low = Number.POSITIVE_INFINITY;
    let high = Number.NEGATIVE_INFINITY;
    for (const value of numbers) {
        if (value < low) low = value;
        if (value > high) high = value;
    }
    return low <= high ? [low, high] : [Number.NaN, Number.NaN];
}

/** A list in rows of so many. */
const inRows = (list, columns) =>
    Array.from({ length: Math.ceil(list.length / columns) }, (_, row) =>
        list.slice(row * columns, (row + 1) * columns),
    );

/** One field of a run. */
export class Field {
    #value;
    #forms;
    #parts;
    #pictures = null;

    constructor(
        [item, block, key],
        { kind, note = '', value, form, parts = [], step, at, v },
        run,
    ) {
        this.item = item;
        this.block = block;
        this.key = key;
        this.kind = kind;
        /** What vorda prints behind the value and never changes: a legend, a range. */
        this.note = note;
        this.run = run;
        /** Whether its value changes over the run. */
        this.varies = Boolean(form);
        this.#value = value;
        this.#forms = form ? { at: Uint32Array.from(form, ([from]) => from), form } : null;
        this.#parts = parts.map((part) => new Course(part));
        if (v) this.#pictures = { at: places(at, v.length), v };
        /** From one picture of a thinned list or grid to the next, in snapshots. */
        this.step = step ?? 1;
        this.label = block ? `${block} / ${key}` : key;
        /** The name by which vordascope's command line knows it. */
        this.name = [item, block, key].filter(Boolean).join('.');
        /** What a search looks into. */
        this.searched = `${item}.${this.label} ${this.name}`.toLowerCase();
        const first = this.at(form?.find(([, shape]) => shape)?.[0] ?? 0);
        /** 'scalar', 'list' or 'grid'. */
        this.shape = !Array.isArray(first)
            ? 'scalar'
            : first.some(Array.isArray) && first.length > 1
              ? 'grid'
              : 'list';
    }

    /** Its value in snapshot n; null where the snapshot does not have it. */
    at(n) {
        if (!this.varies) return this.#value;
        const { form } = this.#forms;
        const [, shape, count, columns] = form[placeOf(this.#forms.at, n)] ?? [];
        if (!shape) return null;
        if (shape === 'long') return this.#pictures.v[placeOf(this.#pictures.at, n)] ?? null;
        if (shape === 'scalar') return this.#parts[0].at(n);
        const values = this.#parts.slice(0, count).map((part) => part.at(n));
        return shape === 'rows' ? inRows(values, columns) : values;
    }

    /** Of which snapshot the value in n is: another one where grids and long lists are thinned. */
    pictureOf(n) {
        const { length, first } = this.run;
        if (this.step === 1 || n === length - 1) return n;
        return Math.max(n - ((n + first) % this.step), 0);
    }

    /** The numbers of each of its values over the run; none of lists and grids that are long. */
    get courses() {
        const { length } = this.run;
        if (this.varies) return this.#parts.map((part) => this.#whereThere(part.numbers(length)));
        return flat(this.#value).map((value) => new Float64Array(length).fill(number(value)));
    }

    /** Numbers without those of snapshots that lack the field. */
    #whereThere(numbers) {
        const { form } = this.#forms;
        if (form.every(([, shape]) => shape) && form[0][0] === 0) return numbers;
        const known = Float64Array.from(numbers);
        known.fill(Number.NaN, 0, form[0][0]);
        form.forEach(([from, shape], i) => {
            if (!shape) known.fill(Number.NaN, from, form[i + 1]?.[0] ?? known.length);
        });
        return known;
    }

    /** Whether it can have a chart over time: a number, or a few, that varies over a run. */
    get charted() {
        return (
            this.run.length > 2 && this.#parts.length > 0 && this.numeric && this.shape !== 'grid'
        );
    }

    /** Whether it is drawn as numbers. */
    get numeric() {
        if (this.kind === 'text') return false;
        const isNumber = (value) => !Number.isNaN(number(value));
        if (!this.varies) return flat(this.#value).some(isNumber);
        return (
            this.#parts.some((part) => part.numeric) ||
            (this.#pictures?.v.some((value) => flat(value).some(isNumber)) ?? false)
        );
    }
}

/** Times from the first one on, to the microsecond. */
const sinceFirst = (times) => times.map((time) => Math.round((time - times[0]) * 1e6) / 1e6);

/** The snapshots of one path that one capture recorded, in order. */
export class Run {
    #byName = new Map();
    #numbers;
    #times;

    /** @param {object} run and @param {object} model as in model.h */
    constructor(run, { files, names }) {
        this.length = run.count;
        /** How many snapshots before the first one are forgotten. */
        this.first = run.first;
        this.file = files[run.file] ?? '';
        /** The path in vorda's own words. */
        this.path = `dev_idx ${run.dev_idx}, path_idx ${run.path_idx}`;
        /** What people know it by, see runs.js. */
        this.name = this.file;
        this.fields = run.fields.map((field) => new Field(names[field.name], field, this));
        for (const field of this.fields) this.#byName.set(field.name, field);
        this.cut = new Set(run.cut);
        /** By snapshot, how many frames before it were not seen. */
        this.missed = new Map(run.missed);
        /** What was noted at snapshots: [n, text]. */
        this.marks = run.marks;
        this.labels = run.labels;
        this.#numbers = new Course(run.number);
        this.#times = run.time && new Course(run.time);
        const times = this.#times?.numbers(this.length);
        this.timed = Boolean(times?.every(Number.isFinite));
        /** The places of the snapshots on the axis: seconds from the first, or their count from 1. */
        this.counts = Float64Array.from({ length: this.length }, (_, n) => n + 1);
        this.axis = this.timed ? sinceFirst(times) : this.counts;
    }

    /** The field of that name, undefined where no snapshot has it. */
    field(name) {
        return this.#byName.get(name);
    }

    /** A snapshot in few words: "#63 · 3.04 s". */
    placeOf(n) {
        return this.timed ? `#${n + 1} · ${this.axis[n]} s` : `#${n + 1}`;
    }

    /** All that is known of where a snapshot comes from. */
    originOf(n) {
        const time = this.timed ? `, time ${this.#times.at(n)}` : '';
        return `${this.file}, snapshot ${this.#numbers.at(n)}, ${this.path}${time}`;
    }
}

/** A snapshot of a run, by which the fields of any run find their value. */
export class Moment {
    constructor(run, n) {
        this.run = run;
        this.n = n;
    }

    #own(field) {
        return field.run === this.run ? field : this.run.field(field.name);
    }

    /** The value of a field; null where the snapshot does not have it. */
    of(field) {
        return this.#own(field)?.at(this.n) ?? null;
    }

    /** Of which snapshot that value is, see Field.pictureOf(). */
    pictureOf(field) {
        return this.#own(field)?.pictureOf(this.n) ?? this.n;
    }
}
