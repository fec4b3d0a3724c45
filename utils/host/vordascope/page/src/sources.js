// What a card draws from: one field, or several that together make one list or one map, such as the
// rows of a table that are printed under a key each.
import { extent, flat, number } from './model.js';

export class Source {
    #range = null;

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

    /**
     * The least and the greatest number over the whole series, so that a scale stands still while
     * one steps through it.
     */
    range() {
        this.#range ??= extent(
            this.fields.flatMap((field) => extent(flat(field.values).map(number))),
        );
        return this.#range;
    }
}

/** The range that several sources share. */
export const rangeOf = (sources) => extent(sources.flatMap((source) => source.range()));

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
