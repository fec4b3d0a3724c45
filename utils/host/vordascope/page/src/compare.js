// How a value differs from another, in the words of `vordascope diff`.
import { flat, number, printed, same } from './model.js';

const signed = (value) => (value > 0 ? `+${value}` : String(value));

/** "+31808, +388.3 %": the percentage where there is something to refer to. */
function distance(from, to) {
    const difference = Number((to - from).toPrecision(12));
    if (!Number.isFinite(difference)) return '';
    const percent =
        from === 0 ? '' : `, ${signed(Number(((difference / Math.abs(from)) * 100).toFixed(1)))} %`;
    return `${signed(difference)}${percent}`;
}

/** The place of scalar i of a value, as [row][column]. */
function placeOf(value, i) {
    if (!value.some(Array.isArray)) return `[${i}]`;
    let left = i;
    for (const [row, part] of value.entries()) {
        const size = flat(part).length;
        if (left < size) return `[${row}]${Array.isArray(part) ? placeOf(part, left) : ''}`;
        left -= size;
    }
    return '';
}

/** What tells b from a: a scalar's distance, or how many values of an array differ and the largest. */
export function differenceText(a, b) {
    if (a === null) return 'only in B';
    if (b === null) return 'only in A';
    if (!Array.isArray(a) || !Array.isArray(b)) return distance(number(a), number(b));
    const [before, after] = [flat(a), flat(b)];
    if (before.length !== after.length) return `${before.length} → ${after.length} values`;
    let count = 0;
    let most = -1;
    let largest = -1;
    before.forEach((value, i) => {
        if (same(value, after[i])) return;
        count += 1;
        const size = Math.abs(number(after[i]) - number(value)) || 0;
        if (size > largest) [largest, most] = [size, i];
    });
    const where = placeOf(b, most);
    return `${count} of ${before.length} values, most at ${where}: ${before[most]} → ${after[most]}`;
}

/** A value in a line of a table: a long array by its size. */
export function brief(value) {
    if (!Array.isArray(value)) return printed(value);
    const count = flat(value).length;
    return count > 8 ? `${count} values` : printed(value);
}

/** The fields that differ between snapshots a and b. */
export const differing = (series, a, b) =>
    series.fields.filter((field) => field.varies && !same(field.at(a), field.at(b)));
