// What is looked for holds for everything that the page shows of fields: which of them, which part of
// them, and from when on two values differ. What a query means is decided in filter.h.
import { difference } from './compare.js';
import { COMPUTED, COURSES, FIGURES } from './known.js';
import { extent, flat, same } from './model.js';
import { plan } from './plan.js';
import { foundIn, lookFor } from './tools.js';

/** The titles under which fields are shown: [title, names of the fields]. */
const TITLES = [
    ...FIGURES.map(([title, name]) => [title, [name]]),
    ...COURSES.map(([title, names]) => [title, Object.values(names)]),
    ...COMPUTED.map(({ title, factors }) => [title, factors]),
];

const indexes = new WeakMap();

/** What of a run can be looked for: [field, title, what is said of it], '' for the title of the list. */
function indexOf(run) {
    const known = indexes.get(run);
    if (known?.count === run.fields.length) return known.entries;
    const cards = plan(run).map(({ title, fields }) => [title, fields]);
    const named = TITLES.map(([title, names]) => [title, names.flatMap((n) => run.field(n) ?? [])]);
    const titled = [...cards, ...named].flatMap(([title, fields]) =>
        fields.map((field) => [field, title, title]),
    );
    const titles = new Map();
    for (const [field, title] of titled)
        titles.set(field, `${titles.get(field) ?? ''} ${title}`.trim());
    const entries = [
        ...run.fields.map((field) => [field, '', `${titles.get(field) ?? ''} ${field.note}`]),
        ...titled,
    ];
    indexes.set(run, { count: run.fields.length, entries });
    return entries;
}

const findable = ([field, , about]) => ({
    names: [...field.item.split(/\.(.*)/s, 2), ...field.block.split(' / '), field.key].filter(
        Boolean,
    ),
    about,
    columns: field.columns,
    count: field.count,
});

const within = (value, part) => part.reduce((inner, i) => inner?.[i] ?? null, value);

/** A query as tests of fields and of their values; an empty one lets everything through. */
export function finder(query) {
    const words = query.toLowerCase().split(/\s+/).filter(Boolean);
    const values = words
        .filter((word) => word.length > 1 && word.startsWith('='))
        .map((word) => word.slice(1));
    const tolerances = words.filter((word) => /^(abs|rel)=/.test(word));
    const error = lookFor(query);
    const parts = new WeakMap(); // by run, by title and field, the part that is looked for

    function partOf(field, title) {
        const known = parts.get(field.run);
        if (known?.count === field.run.fields.length)
            return known.found.get(`${title}\n${field.name}`);
        const entries = indexOf(field.run);
        const found = new Map();
        foundIn(entries.map(findable)).forEach((part, i) => {
            const [{ name }, of] = entries[i];
            if (part) found.set(`${of}\n${name}`, part);
        });
        parts.set(field.run, { count: field.run.fields.length, found });
        return found.get(`${title}\n${field.name}`);
    }

    const finds = (field, moment, title = '') => {
        if (words.length === 0) return true;
        const part = partOf(field, title);
        if (!part) return false;
        if (values.length === 0) return true;
        const printed = flat(within(moment.of(field), part)).map((v) => String(v).toLowerCase());
        return values.every((value) => printed.includes(value));
    };
    const partIn = (field) => (words.length ? partOf(field, '') : null) ?? [];
    const differ = (a, b) => !same(a, b) && (tolerances.length === 0 || difference(a, b) !== '');

    return {
        empty: words.length === tolerances.length,
        tolerant: tolerances.length > 0,
        /** Why a tolerance cannot be read, '' where all can. */
        error,
        /** Whether a field is looked for, by its name and its value at a moment. */
        field: (field, moment) => finds(field, moment),
        /** Whether what stands under a title is: a card of these fields, a chart. */
        titled: (title, fields, moment) =>
            words.length === 0 || fields.some((field) => finds(field, moment, title)),
        /** The indexes of what is looked for of a field; [] for all of it. */
        part: partIn,
        /** The value of that part at a moment, null where the snapshot does not have it. */
        valueOf: (field, moment) => within(moment.of(field), partIn(field)),
        /** Whether two values are told apart. */
        differ,
        /** Whether a field differs between two moments, in the part that is looked for. */
        differs(field, before, now) {
            const part = partIn(field);
            return differ(within(before.of(field), part), within(now.of(field), part));
        },
        /** Whether what is looked for of a field leaves the tolerance over its run. */
        varies(field) {
            const part = partIn(field);
            if (!field.varies || (!tolerances.length && !part.length)) return field.varies;
            const { courses } = field;
            if (courses.length === 0) return true;
            const ends = (part.length ? [courses[placeIn(field, part)]] : courses).map(
                (values) => values && extent(values),
            );
            return ends.some((pair) => pair && differ(...pair));
        },
    };
}

/** The place of a part among the courses of a field. */
const placeIn = ({ columns }, part) =>
    part.length === 2 ? part[0] * columns + part[1] : columns > 0 ? part[0] * columns : part[0];
