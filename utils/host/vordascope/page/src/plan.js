// Which cards a run gets, and from which of its fields each draws: what known.js says, applied.
import { SECTIONS } from './known.js';
import { grouped } from './model.js';
import { families, Source, select } from './sources.js';

const isKey = (key) => typeof key === 'string' || key instanceof RegExp;
const matches = (pattern, text) =>
    pattern instanceof RegExp ? pattern.test(text) : pattern === text;

/** Sources by name; a name whose fields were not captured is left out. */
function named(fields, keys) {
    return Object.entries(keys).flatMap(([name, key]) => {
        const found = select(fields, key);
        return found.length ? [new Source(name, found)] : [];
    });
}

/** Curves, {name, x, y}: x is null for one over its index. */
function curves(fields, keys) {
    return Object.entries(keys).flatMap(([name, key]) => {
        const [y] = named(fields, { [name]: isKey(key) ? key : key.y });
        const [x] = isKey(key) ? [] : named(fields, { [name]: key.x });
        return y ? [{ name, y, x: x ?? null }] : [];
    });
}

/** Sources only if none of the names is missing. */
function complete(fields, keys) {
    const sources = named(fields, keys);
    return sources.length === Object.keys(keys).length ? sources : [];
}

/** From the fields of one item and block to what a kind of card draws; an empty list: no card. */
const FINDERS = {
    lines: curves,
    family: (fields, pattern) =>
        families(fields, pattern).map((y) => ({ name: y.name, x: null, y })),
    maps: named,
    table: named,
    shading: named,
    chromaticity: complete,
    vectors: complete,
};

/** The fields of a source, or of both of a curve. */
const fieldsOf = (part) =>
    part instanceof Source ? part.fields : [...part.y.fields, ...(part.x?.fields ?? [])];

function byPlace(run, { item, block = '' }) {
    const own = run.fields.filter(
        (field) => matches(item, field.item) && matches(block, field.block),
    );
    return [...grouped(own, (field) => `${field.item}\n${field.block}`).values()];
}

/**
 * The cards of a run, in order: of each card of known.js one for each item and block that has its
 * fields.
 * @returns {{card, section, title, item, block, parts, fields, state}[]} `parts`, the sources or
 *     curves that it draws; `fields`, those of the parts; `state`, the fields that say whether the
 *     module is on
 */
export function plan(run) {
    return SECTIONS.flatMap((section) =>
        section.cards.flatMap((card) => {
            const found = byPlace(run, card).flatMap((fields) => {
                const parts = FINDERS[card.draw](fields, card.keys);
                if (parts.length === 0) return [];
                const { item, block } = fields[0];
                const state = (card.state ?? []).flatMap((key) => select(fields, key));
                return [
                    { card, section, item, block, parts, fields: parts.flatMap(fieldsOf), state },
                ];
            });
            return found.map((entry) => ({
                ...entry,
                title:
                    found.length > 1 && entry.block ? `${card.title}, ${entry.block}` : card.title,
            }));
        }),
    );
}
