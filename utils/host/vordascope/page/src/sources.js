// What a card draws from: one field, or several that together make one list or one map, such as the
// rows of a table that are printed under a key each.
import { extent, flat, number } from './model.js';

export class Source {
    #extents = null;

    /** @param {string} name what the drawing calls it @param {Field[]} fields in order */
    constructor(name, fields) {
        this.name = name;
        this.fields = fields;
        this.varies = fields.some((field) => field.varies);
    }

    /** All its numbers in snapshot n in one list; NaN for what is no number. */
    numbers(n) {
        return this.fields.flatMap((field) => {
            const value = field.at(n);
            return value === null ? [] : flat(value).map(number);
        });
    }

    /** The same in rows: those of its grid, or one row a field. */
    rows(n) {
        return this.fields.flatMap((field) => {
            const value = field.at(n);
            if (value === null) return [];
            const rows = Array.isArray(value) && value.some(Array.isArray) ? value : [value];
            return rows.map((row) => flat(row).map(number));
        });
    }

    /** The least and the greatest number of each snapshot; one pair where it never varies. */
    extents() {
        const length = Math.max(...this.fields.map(({ values }) => values.length));
        this.#extents ??= Array.from({ length }, (_, n) => extent(this.numbers(n)));
        return this.#extents;
    }
}

/** The least and the greatest number of the sources in all snapshots. */
export const wholeRange = (sources) => extent(sources.flatMap((source) => source.extents().flat()));

/** The part of the snapshots, at either end, whose extremes do not make a scale. */
const RARE = 0.1;

/**
 * A scale for snapshots: that of most of them, so that it stands still while one steps through a
 * series; where one of the shown ones goes beyond, as far as that goes.
 * @param {number[][]} extents the least and the greatest number of each snapshot
 * @param {number[]} shown indexes of the snapshots that show
 */
export function steadyRange(extents, shown) {
    const at = (n) => extents[extents.length > 1 ? n : 0];
    const ordered = (end) =>
        extents
            .map((pair) => pair[end])
            .filter(Number.isFinite)
            .sort((p, q) => p - q);
    const [lows, highs] = [ordered(0), ordered(1)];
    const rare = Math.floor(lows.length * RARE);
    return extent([lows[rare], highs[highs.length - 1 - rare], ...shown.flatMap(at)]);
}

/** The scale that several sources share. */
export function rangeOf(sources, shown) {
    const length = Math.max(...sources.map((source) => source.extents().length));
    const extents = Array.from({ length }, (_, n) =>
        extent(sources.flatMap((source) => source.extents()[source.varies ? n : 0])),
    );
    return steadyRange(extents, shown);
}

/** The snapshots that a view shows. */
export const shownIn = ({ n, a }) => (a === null ? [n] : [a, n]);

const hits = (pattern, text) =>
    pattern instanceof RegExp ? pattern.exec(text) : pattern === text && [text];

/** The fields, in order, whose key is the string or matches the pattern. */
export const select = (fields, pattern) => fields.filter((field) => hits(pattern, field.key));

/**
 * Sources, one for each text that the pattern's first group captures: the curves of a table whose
 * rows are printed under keys with two numbers.
 */
export function families(fields, pattern) {
    const byName = new Map();
    for (const field of fields) {
        const hit = pattern.exec(field.key);
        if (!hit) continue;
        if (!byName.has(hit[1])) byName.set(hit[1], []);
        byName.get(hit[1]).push(field);
    }
    return [...byName].map(([name, members]) => new Source(name, members));
}
