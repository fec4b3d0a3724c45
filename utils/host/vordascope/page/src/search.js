// The search: every word has to occur; "=8000" looks for a value; a word with * or ? is a pattern of
// the command line.
import { flat } from './model.js';
import { matching } from './tools.js';

/** The paths by which a pattern can select a field: its own, and those of what it belongs to. */
function pathsOf({ item, block, name }) {
    const blocks = block ? block.split(' / ') : [];
    const within = blocks.map((_, i) => [item, ...blocks.slice(0, i + 1)].join('.'));
    return [name.replaceAll(' / ', '.'), item, item.split('.')[0], ...within];
}

/** A test whether all patterns select a field, asked once for each. */
function selector(patterns) {
    const known = new Map();
    return (field) => {
        if (patterns.length === 0) return true;
        if (!known.has(field))
            known.set(
                field,
                patterns.every((pattern) => matching(pattern, pathsOf(field)).some(Boolean)),
            );
        return known.get(field);
    };
}

/** A query as a test of fields and of other texts; an empty one lets everything through. */
export function finder(query) {
    const words = query.toLowerCase().split(/\s+/).filter(Boolean);
    const values = words
        .filter((word) => word.length > 1 && word.startsWith('='))
        .map((word) => word.slice(1));
    const patterns = query.split(/\s+/).filter((word) => /[*?]/.test(word));
    const names = words.filter((word) => !word.startsWith('=') && !/[*?]/.test(word));
    const occur = (text) => names.every((word) => text.includes(word));
    const selected = selector(patterns);
    const hasValues = (field, moment) => {
        if (values.length === 0) return true;
        const printed = flat(moment.of(field)).map((value) => String(value).toLowerCase());
        return values.every((value) => printed.includes(value));
    };
    return {
        empty: words.length === 0,
        /** Whether a field is looked for, by its name and its value at a moment. */
        field: (field, moment) =>
            occur(field.searched) && selected(field) && hasValues(field, moment),
        /** Whether a card is: by its title, or by one of its fields. */
        card(title, fields, moment) {
            if (words.length === 0) return true;
            const start = title.toLowerCase();
            return fields.some(
                (field) =>
                    occur(`${start} ${field.searched}`) &&
                    selected(field) &&
                    hasValues(field, moment),
            );
        },
    };
}
