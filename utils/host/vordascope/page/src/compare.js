// How values differ between two moments, in the words of `vordascope diff`, by whose code.
import { flat } from './model.js';
import { differenceText } from './tools.js';

const shown = (value) => (value === '' ? '(nothing)' : String(value));
const values = (count) => `${count} value${count === 1 ? '' : 's'}`;

/** What tells a field's value b from its value a; null stands for a snapshot without the field. */
export function difference(a, b) {
    if (a !== null && b !== null) return differenceText(a, b);
    const value = a ?? b;
    const what = Array.isArray(value) ? ` (${values(flat(value).length)})` : `: ${shown(value)}`;
    return `only in ${a === null ? 'B' : 'A'}${what}`;
}

/** The fields of the sensor of a moment that another one has too. */
export const ofSensor = ({ run, sensor }) =>
    run.fields.filter((field) => field.paired && field.sensor === sensor);

/** The fields that `find` tells apart in two moments: those of the first in their order, then the others. */
export function differing(before, now, find) {
    const within = before.run === now.run;
    if (before.sensor !== now.sensor)
        return ofSensor(now).filter((field) => find.differs(field, before, now));
    const fields = within ? now.run.fields : before.run.fields;
    const others = within ? [] : now.run.fields.filter(({ name }) => !before.run.field(name));
    return [...fields, ...others].filter(
        (field) => (field.varies || !within) && find.differs(field, before, now),
    );
}
