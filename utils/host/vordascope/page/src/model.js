// The page's one data model: a series of snapshots of one path. A capture is a series of one, a
// comparison one of two. A field has one value where it never changes, else one a snapshot.

/** A printed scalar as a number for drawing; NaN where it is none. */
export function number(value) {
    if (typeof value === 'number') return value;
    if (typeof value === 'boolean') return Number(value);
    if (typeof value !== 'string') return Number.NaN;
    return value.trim() === '' ? Number.NaN : Number(value);
}

/** Whether two values, nested or not, are printed alike. */
export function same(a, b) {
    if (a === b) return true;
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

/** One field of a series. */
export class Field {
    constructor({ item, block, key, kind, v, note = '' }) {
        this.item = item;
        this.block = block;
        this.key = key;
        this.kind = kind;
        /** What vorda prints behind the value and never changes: a legend, a range. */
        this.note = note;
        this.values = v;
        /** Whether its value changes over the series. */
        this.varies = v.length > 1;
        const first = v.find((value) => value !== null);
        /** 'scalar', 'list' or 'grid'. */
        this.shape = !Array.isArray(first)
            ? 'scalar'
            : first.some(Array.isArray) && first.length > 1
              ? 'grid'
              : 'list';
        this.label = block ? `${block} / ${key}` : key;
        /** The name by which vordascope's command line knows it. */
        this.name = [item, block, key].filter(Boolean).join('.');
        /** What a search looks into. */
        this.searched = `${item}.${this.label} ${this.name}`.toLowerCase();
    }

    /** Its value in snapshot n; null where the snapshot does not have it. */
    at(n) {
        return (this.varies ? this.values[n] : this.values[0]) ?? null;
    }

    /** Whether it can have a chart over time: a number, or a few, that varies over a series. */
    get charted() {
        return this.values.length > 2 && this.numeric && this.shape !== 'grid';
    }

    /** Whether it is drawn as numbers. */
    get numeric() {
        return (
            this.kind !== 'text' &&
            this.values.some((value) => flat(value).some((x) => !Number.isNaN(number(x))))
        );
    }
}

/** The snapshots of one path, in order. */
export class Series {
    #byName = new Map();

    constructor(group, files) {
        this.group = group;
        this.files = files;
        this.length = group.file.length;
        this.fields = group.fields.map((field) => new Field(field));
        for (const field of this.fields) this.#byName.set(field.name, field);
        this.cut = new Set(group.cut);
        /** The positions of the snapshots on the axis: their times, or their count from 1. */
        this.axis = group.time ?? group.file.map((_, n) => n + 1);
        this.timed = group.time !== null && group.time !== undefined;
    }

    /** "device 0, path 1" in vorda's own words. */
    get title() {
        return `dev_idx ${this.group.dev_idx}, path_idx ${this.group.path_idx}`;
    }

    /** The field of that name, undefined where no snapshot has it. */
    field(name) {
        return this.#byName.get(name);
    }

    /** Which snapshot of which file number n is; '' where there is but one file. */
    origin(n) {
        const { file, number } = this.group;
        if (this.files.length < 2) return '';
        const several = file.some((other, i) => i !== n && other === file[n]);
        return `${this.files[file[n]] ?? ''}${several ? ` #${number[n]}` : ''}`;
    }
}
