// What a card draws from: one field, or several that together make one list or one map, such as the
// rows of a table that are printed under a key each.
import { extent, flat, grouped, Moment, number } from './model.js';

/** So many snapshots of a run make the scale that stands still. */
const SAMPLES = 256;

/** The indexes of so many snapshots, or of SAMPLES evenly spread ones. */
export function samples(length) {
    const count = Math.min(length, SAMPLES);
    return Array.from({ length: count }, (_, i) =>
        count === 1 ? 0 : Math.round((i * (length - 1)) / (count - 1)),
    );
}

/**
 * What `of(moment)` gives for the samples of a run, for one where nothing varies: looked at once, and
 * again when a run that goes on has doubled, or nothing that was looked at is left of it.
 * @returns {() => Array} gives the same list until then
 */
export function sampled(run, varies, of) {
    let found = null;
    let seen = { length: 0, end: 0 };
    return () => {
        const { first, length } = run;
        const grown = varies && (length >= 2 * seen.length || first >= seen.end);
        if (found && !grown) return found;
        seen = { length, end: first + length };
        found = samples(varies ? length : 1).map((n) => of(new Moment(run, n)));
        return found;
    };
}

export class Source {
    /** @param {string} name what the drawing calls it @param {Field[]} fields in order */
    constructor(name, fields) {
        this.name = name;
        this.fields = fields;
        this.varies = fields.some((field) => field.varies);
        this.paired = fields.some((field) => field.paired);
        /** The least and the greatest number of sampled snapshots of its run; one pair where it never varies. */
        this.extents = sampled(fields[0].run, this.varies, (moment) =>
            extent(this.numbers(moment)),
        );
    }

    /** All its numbers at a moment in one list; NaN for what is no number. */
    numbers(moment) {
        return this.fields.flatMap((field) => {
            const value = moment.of(field);
            return value === null ? [] : flat(value).map(number);
        });
    }

    /** The same in rows: those of its grid, or one row a field. */
    rows(moment) {
        return this.fields.flatMap((field) => {
            const value = moment.of(field);
            if (value === null) return [];
            const rows = Array.isArray(value) && value.some(Array.isArray) ? value : [value];
            return rows.map((row) => flat(row).map(number));
        });
    }
}

/** The least and the greatest number of the sources in all snapshots. */
export const wholeRange = (sources) => extent(sources.flatMap((source) => source.extents().flat()));

/** The part of the snapshots, at either end, whose extremes do not make a scale. */
const RARE = 0.1;

/**
 * A scale for snapshots: that of most of them, so that it stands still while one steps through a
 * run; where one of the shown ones goes beyond, as far as that goes.
 * @param {number[][]} extents the least and the greatest number of each snapshot
 * @param {number[][]} shown those of the snapshots that show
 */
function steadyRange(extents, shown) {
    return extent([...usualRange(extents), ...shown.flat()]);
}

/** The same of several numbers a snapshot: of each a scale. */
export const steadyRanges = (extents, shown) =>
    shown[0].map((_, i) =>
        steadyRange(
            extents.map((pairs) => pairs[i]),
            shown.map((pairs) => pairs[i]),
        ),
    );

/** The scale of most snapshots. */
function usualRange(extents) {
    const ordered = (end) =>
        extents
            .map((pair) => pair[end])
            .filter(Number.isFinite)
            .sort((p, q) => p - q);
    const [lows, highs] = [ordered(0), ordered(1)];
    const rare = Math.floor(lows.length * RARE);
    return [lows[rare], highs[highs.length - 1 - rare]];
}

/** What rangeOf() has found, by its first source: { all, usual }, the extents of all of them. */
const known = new WeakMap();

/** The scale of most snapshots that several sources share. */
function sharedRange(sources) {
    const all = sources.map((source) => source.extents());
    const before = known.get(sources[0]);
    if (before?.all.length === all.length && all.every((one, i) => one === before.all[i]))
        return before.usual;
    const length = all.reduce((most, extents) => Math.max(most, extents.length), 0);
    const extents = Array.from({ length }, (_, i) =>
        extent(all.flatMap((pairs) => pairs[pairs.length > 1 ? i : 0])),
    );
    const usual = usualRange(extents);
    known.set(sources[0], { all, usual });
    return usual;
}

/** The scale that several sources share. */
export function rangeOf(sources, moments) {
    const shown = moments.flatMap((moment) => sources.map((one) => extent(one.numbers(moment))));
    return extent([...sharedRange(sources), ...shown.flat()]);
}

/** The moments that a view shows. */
export const shownIn = ({ now, before }) => (before ? [before, now] : [now]);

/** Whether a reference shows beside these sources: they have other values there, or may have. */
export const differ = ({ now, before }, sources) =>
    before !== null &&
    (before.run !== now.run ||
        sources.some((source) => source[before.sensor === now.sensor ? 'varies' : 'paired']));

const hits = (pattern, text) =>
    pattern instanceof RegExp ? pattern.exec(text) : pattern === text && [text];

/** The fields, in order, whose key is the string or matches the pattern. */
export const select = (fields, pattern) => fields.filter((field) => hits(pattern, field.key));

/**
 * Sources, one for each text that the pattern's first group captures: the curves of a table whose
 * rows are printed under keys with two numbers.
 */
export function families(fields, pattern) {
    const own = fields.filter(({ key }) => pattern.test(key));
    const byName = grouped(own, ({ key }) => pattern.exec(key)[1]);
    return [...byName].map(([name, members]) => new Source(name, members));
}
