// The search: every word has to occur; "=8000" looks for a value.
import { flat } from './model.js';

/** A query as a test of fields and of other texts; an empty one lets everything through. */
export function finder(query) {
    const words = query.toLowerCase().split(/\s+/).filter(Boolean);
    const values = words
        .filter((word) => word.length > 1 && word.startsWith('='))
        .map((word) => word.slice(1));
    const names = words.filter((word) => !word.startsWith('='));
    const occur = (text) => names.every((word) => text.includes(word));
    const hasValues = (field, moment) => {
        if (values.length === 0) return true;
        const printed = flat(moment.of(field)).map((value) => String(value).toLowerCase());
        return values.every((value) => printed.includes(value));
    };
    return {
        empty: words.length === 0,
        /** Whether a field is looked for, by its name and its value at a moment. */
        field: (field, moment) => occur(field.searched) && hasValues(field, moment),
        /** Whether a card is: by its title, or by one of its fields. */
        card(title, fields, moment) {
            if (words.length === 0) return true;
            const start = title.toLowerCase();
            return fields.some(
                (field) => occur(`${start} ${field.searched}`) && hasValues(field, moment),
            );
        },
    };
}
