// The page's one data model: runs of snapshots (see model.h). A capture is a run of one, a comparison
// two snapshots of any runs. A field has one value where it never changes, else its changes.
import { Course, number, placeOf, places, pushed } from './course.js';

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

/** The members of a list by what `of` gives for each, in the order of their first ones. */
export function grouped(list, of) {
    const groups = new Map();
    for (const one of list) {
        const key = of(one);
        if (!groups.has(key)) groups.set(key, []);
        groups.get(key).push(one);
    }
    return groups;
}

/** Indexes as they stand behind a name: "[3][4]". */
export const placeText = (indexes) => indexes.map((i) => `[${i}]`).join('');

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

/** A text that comes as bytes, as people read it: UTF-8. */
export const textOf = (bytes) =>
    new TextDecoder().decode(Uint8Array.from(bytes, (c) => c.charCodeAt(0)));

/** What a capture says of itself: [key, value] each. */
const labelsOf = (labels) => Object.entries(labels).map(([key, value]) => [key, textOf(value)]);

/** A list in rows of so many. */
const inRows = (list, columns) =>
    Array.from({ length: Math.ceil(list.length / columns) }, (_, row) =>
        list.slice(row * columns, (row + 1) * columns),
    );

/** Lists and grids of more values than these are pictures; see SHORT in model.h. */
const SHORT = 16;

/** More pictures of a field that is followed are thinned. */
const PICTURES = 512;

/** How a value is kept: the parts of a form, see model.h. */
function formOf(value) {
    if (value === null) return [null];
    const count = flat(value).length;
    if (count > SHORT) return ['long'];
    if (!Array.isArray(value)) return ['scalar', 1];
    return Array.isArray(value[0]) ? ['rows', count, value[0].length] : ['list', count];
}

/** One field of a run. */
class Field {
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
        const [, kin, sensor] = /^([A-Z]+)(\d)(?= \/ |$)/.exec(block) ?? [];
        /** Where the blocks of several sensors are printed, "LSC0" and "LSC1", its own; else null. */
        this.sensor = sensor ? Number(sensor) : null;
        /** What the fields of all sensors that stand for the same have in common. */
        this.kin = sensor ? [item, block.replace(kin + sensor, kin), key].join('\n') : null;
        /** The name by which vordascope's command line knows it. */
        this.name = [item, block, key].filter(Boolean).join('.');
        const first = this.at(form?.find(([, shape]) => shape)?.[0] ?? 0);
        /** 'scalar', 'list' or 'grid'. */
        this.shape = !Array.isArray(first)
            ? 'scalar'
            : first.some(Array.isArray) && first.length > 1
              ? 'grid'
              : 'list';
        /** The columns of its rows; 0 for a list, -1 for a scalar. And how many values it has. */
        this.columns = !Array.isArray(first) ? -1 : Array.isArray(first[0]) ? first[0].length : 0;
        this.count = flat(first).length;
    }

    /** Whether another sensor has the same. */
    get paired() {
        return this.sensor !== null && this.run.kinOf(this).length > 1;
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

    /** From snapshot n on, the newest, the value is this one. Returns whether it never varied before. */
    append(n, value) {
        const fresh = !this.varies;
        if (fresh) {
            const form = formOf(this.#value);
            const known = flat(this.#value).map((one) => new Course({ v: [one] }));
            this.#forms = { at: Uint32Array.of(0), form: [[0, ...form]] };
            this.#parts = form[0] === null || form[0] === 'long' ? [] : known;
            this.#pictures =
                form[0] === 'long' ? { at: Uint32Array.of(0), v: [this.#value] } : null;
            this.varies = true;
        }
        const form = formOf(value);
        if (String(this.#forms.form.at(-1).slice(1)) !== String(form)) {
            this.#forms.at = pushed(this.#forms.at, n);
            this.#forms.form.push([n, ...form]);
        }
        if (form[0] === 'long') this.#appendPicture(n, value);
        else if (form[0] !== null)
            flat(value).forEach((one, i) => {
                this.#parts[i] ??= new Course({ at: [], v: [] });
                if (this.#parts[i].at(n) !== one) this.#parts[i].append(n, one);
            });
        return fresh;
    }

    /** Keeps the newest picture, and of the others every step-th snapshot's. */
    #appendPicture(n, value) {
        this.#pictures ??= { at: new Uint32Array(0), v: [] };
        const { first } = this.run;
        const sampled = (at) => (at + first) % this.step === 0;
        const keep = (kept) => {
            const { at, v } = this.#pictures;
            const places = [...at.keys()].filter((i) => i === 0 || kept(at[i]));
            this.#pictures = {
                at: Uint32Array.from(places, (i) => at[i]),
                v: places.map((i) => v[i]),
            };
        };
        const { at, v } = this.#pictures;
        const last = v.length - 1;
        if (last > 0 && !sampled(at[last])) {
            this.#pictures.at = at.subarray(0, last);
            v.pop();
        }
        this.#pictures.at = pushed(this.#pictures.at, n);
        this.#pictures.v.push(value);
        if (this.#pictures.v.length <= PICTURES) return;
        this.step *= 2;
        keep((at) => sampled(at) || at === n);
    }

    /** The first so many snapshots are no more. */
    forget(count) {
        if (!this.varies) return;
        const later = ({ at }) => Math.max(placeOf(at, count), 0);
        const moved = (at, from) => at.slice(from).map((place) => Math.max(place - count, 0));
        const from = later(this.#forms);
        this.#forms.at = moved(this.#forms.at, from);
        this.#forms.form = this.#forms.form
            .slice(from)
            .map(([, ...form], i) => [this.#forms.at[i], ...form]);
        if (this.#pictures) {
            const first = later(this.#pictures);
            this.#pictures = {
                at: moved(this.#pictures.at, first),
                v: this.#pictures.v.slice(first),
            };
        }
        for (const part of this.#parts) part.forget(count);
    }

    /** Whether its value changes after snapshot `from`, up to `to`. */
    changes(from, to) {
        if (!this.varies) return false;
        const within = ({ at }) => placeOf(at, to) > placeOf(at, from);
        return (
            within(this.#forms) ||
            (this.#pictures !== null && within(this.#pictures)) ||
            this.#parts.some((part) => part.changes(from, to))
        );
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
    #kin = null;
    #numbers;
    #times;

    /** @param {object} run and @param {object} model as in model.h */
    constructor(run, model) {
        const { files, names } = model;
        this.model = model;
        /** Its number in the model, which it keeps. */
        this.number = run.run;
        this.length = run.count;
        /** How many snapshots before the first one are forgotten. */
        this.first = run.first;
        this.file = files[run.file] ?? '';
        /** The path in vorda's own words. */
        this.path = `dev_idx ${run.dev_idx}, path_idx ${run.path_idx}`;
        /** What people know its capture by, and it; see runs.js. */
        this.capture = this.file;
        this.name = this.file;
        this.fields = run.fields.map((field) => new Field(names[field.name], field, this));
        for (const field of this.fields) this.#byName.set(field.name, field);
        this.cut = new Set(run.cut);
        /** By snapshot, how many frames before it were not seen. */
        this.missed = new Map(run.missed);
        /** What was noted at snapshots: [n, text]. */
        this.marks = run.marks;
        this.labels = labelsOf(run.labels);
        this.#numbers = new Course(run.number);
        this.#times = run.time && new Course(run.time);
        const times = this.#times?.numbers(this.length);
        this.timed = Boolean(times?.every(Number.isFinite));
        /** The places of the snapshots on the axis: seconds from the first, or their count from 1. */
        this.counts = Float64Array.from({ length: this.length }, (_, n) => n + 1);
        this.axis = this.timed ? sinceFirst(times) : this.counts;
    }

    /**
     * Adds a snapshot, see `news` in model.h.
     * @param {Array} names of all fields, those of the news included
     * @returns {boolean} whether other fields vary than before, or are there
     */
    append({ number: place, time, missed, marks, labels, cut, fields, gone }, names) {
        const n = this.length;
        this.length = n + 1;
        this.#numbers.append(n, place);
        this.counts = pushed(this.counts, n + 1);
        if (this.timed && time !== null) {
            this.#times.append(n, time);
            const passed = Number(time) - number(this.#times.at(0));
            this.axis = pushed(this.axis, Math.round(passed * 1e6) / 1e6);
        } else {
            this.timed = false;
            this.axis = this.counts;
        }
        if (missed > 0) this.missed.set(n, missed);
        if (cut) this.cut.add(n);
        for (const text of marks) this.marks.push([n, text]);
        if (labels) this.labels = labelsOf(labels);
        let reshaped = false;
        for (const [name, value, kind] of fields) {
            const known = this.#byNumber(name, names);
            if (known) known.kind = kind;
            const field = known ?? this.#addField(name, names, kind);
            reshaped = field.append(n, value) || reshaped || !known;
        }
        for (const name of gone)
            reshaped = this.#byNumber(name, names)?.append(n, null) || reshaped;
        return reshaped;
    }

    #byNumber(name, names) {
        return this.#byName.get(names[name].filter(Boolean).join('.'));
    }

    #addField(name, names, kind) {
        const field = new Field(names[name], { kind, value: null }, this);
        this.fields.push(field);
        this.#byName.set(field.name, field);
        return field;
    }

    /** The first so many snapshots are no more. */
    forget(count) {
        this.length -= count;
        this.first += count;
        for (const field of this.fields) field.forget(count);
        this.#numbers.forget(count);
        this.counts = Float64Array.from({ length: this.length }, (_, n) => n + 1);
        const shifted = (entries) =>
            entries.filter(([n]) => n >= count).map(([n, what]) => [n - count, what]);
        this.missed = new Map(shifted([...this.missed]));
        this.marks = shifted(this.marks);
        this.cut = new Set([...this.cut].filter((n) => n >= count).map((n) => n - count));
        this.#times?.forget(count);
        this.axis = this.timed ? sinceFirst(this.#times.numbers(this.length)) : this.counts;
    }

    /** The field of that name, undefined where no snapshot has it. */
    field(name) {
        return this.#byName.get(name);
    }

    /** The fields of all sensors that stand for the same as one of a sensor. */
    kinOf({ kin }) {
        if (this.#kin?.count !== this.fields.length) {
            const own = this.fields.filter(({ sensor }) => sensor !== null);
            this.#kin = { count: this.fields.length, groups: grouped(own, (one) => one.kin) };
        }
        return this.#kin.groups.get(kin) ?? [];
    }

    /** The numbers of the sensors of which one can be held against another. */
    get sensors() {
        const paired = this.fields.filter((field) => field.paired);
        return [...new Set(paired.map(({ sensor }) => sensor))].sort();
    }

    /** What a label says; '' where it is not given. */
    label(key) {
        return this.labels.find(([name]) => name === key)?.[1] ?? '';
    }

    /** A snapshot in few words: "#63 · 3.04 s". */
    placeOf(n) {
        return this.timed ? `#${n + 1} · ${this.axis[n]} s` : `#${n + 1}`;
    }

    /** A snapshot behind the name of its file: "#63: dev_idx = 0, path_idx = 1, time = 3.04". */
    namedAt(n) {
        const index = this.path.replaceAll('_idx ', '_idx = ');
        const time = this.timed ? `, time = ${this.#times.at(n)}` : '';
        return `#${this.#numbers.at(n)}: ${index}${time}`;
    }

    /** All that is known of where a snapshot comes from. */
    originOf(n) {
        const time = this.timed ? `, time ${this.#times.at(n)}` : '';
        return `${this.file}, snapshot ${this.#numbers.at(n)}, ${this.path}${time}`;
    }
}

/**
 * A snapshot of a run, by which the fields of any run find their value; those of any sensor that of
 * one sensor, where that is chosen.
 */
export class Moment {
    constructor(run, n, sensor = null) {
        this.run = run;
        this.n = n;
        this.sensor = sensor;
    }

    #own(field) {
        const own = field.run === this.run ? field : this.run.field(field.name);
        if (this.sensor === null || !own?.paired) return own;
        return this.run.kinOf(own).find(({ sensor }) => sensor === this.sensor);
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
