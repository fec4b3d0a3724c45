// How a value differs from another, in the words of `vordascope diff`.
import { flat, same } from './model.js';

const INTEGER = /^[-+]?\d+$/;

/** A printed number as a double, as far as one can say; what is no number counts as 0. */
function double(value) {
    const text = String(value).toLowerCase();
    if (/^[-+]?nan/.test(text)) return Number.NaN;
    if (/^[-+]?inf/.test(text)) return text.startsWith('-') ? -Infinity : Infinity;
    return Number.parseFloat(text) || 0;
}

const decimals = (value) => String(value).split('.')[1]?.length ?? 0;
const signed = (text) => (text.startsWith('-') ? text : `+${text}`);

const whole = (a, b) => INTEGER.test(a) && INTEGER.test(b);

/** How far b is from a: exact for integers before it becomes a double. */
const gap = (a, b) => (whole(a, b) ? Number(BigInt(b) - BigInt(a)) : double(b) - double(a));

/** The same with a sign and all its digits, of a fraction as many as were printed. */
function distance(a, b) {
    if (whole(a, b)) return signed(String(BigInt(b) - BigInt(a)));
    return signed(gap(a, b).toFixed(Math.min(Math.max(decimals(a), decimals(b)), 20)));
}

/** A number to so many significant digits; halfway it goes to the even one, as C does. */
function significant(value, digits) {
    const [exact, exponent] = Math.abs(value).toExponential(60).split('e');
    const kept = exact.slice(0, digits > 1 ? digits + 1 : 1);
    const halfway = /^\.?50*$/.test(exact.slice(kept.length)) && Number(kept.at(-1)) % 2 === 0;
    if (!halfway) return Number(value.toPrecision(digits));
    return Math.sign(value) * Number(`${kept}e${exponent}`);
}

/** Three significant digits, or all those of a whole number. */
function rounded(percent) {
    const size = Math.abs(percent);
    if (size >= 1000) return String(significant(percent, Math.floor(Math.log10(size)) + 1));
    const value = significant(percent, 3);
    if (value === 0 || size >= 1e-4) return String(value);
    const [digits, exponent] = value.toExponential().split('e-');
    return `${digits}e-${exponent.padStart(2, '0')}`;
}

const shown = (value) => (value === '' ? '(nothing)' : String(value));

/** "(+32000, +400 %)"; nothing where one of them is no number. */
function apart(a, b, kind) {
    const size = gap(a, b);
    if (kind !== 'number' || !Number.isFinite(size)) return '';
    const before = Math.abs(double(a));
    const percent = before === 0 ? '' : `, ${signed(rounded((100 * size) / before))} %`;
    return `(${distance(a, b)}${percent})`;
}

/** The place of scalar i of an array: [i], or [row][column] of a grid. */
function placeOf(value, i) {
    const columns = Array.isArray(value[0]) ? value[0].length : 0;
    return columns ? `[${Math.floor(i / columns)}][${i % columns}]` : `[${i}]`;
}

const values = (count) => `${count} value${count === 1 ? '' : 's'}`;

/**
 * What tells a field's value b from its value a, in parts: `about`, how many values of an array
 * differ and where the largest difference is; `from` and `to`; `apart`, how far these are apart.
 * What does not apply is ''.
 */
export function difference(a, b, kind) {
    const alone = { from: '', to: '', apart: '' };
    if (a === null || b === null) {
        const value = a ?? b;
        const what = Array.isArray(value)
            ? ` (${values(flat(value).length)})`
            : `: ${shown(value)}`;
        return { about: `only in ${a === null ? 'B' : 'A'}${what}`, ...alone };
    }
    const [before, after] = [flat(a), flat(b)];
    if (before.length !== after.length)
        return { about: `${values(before.length)} -> ${values(after.length)}`, ...alone };
    let [count, most, farthest] = [0, 0, -1];
    before.forEach((value, i) => {
        if (same(value, after[i])) return;
        count += 1;
        const size = Math.abs(gap(value, after[i]));
        const far = Number.isNaN(size) ? Infinity : size;
        if (far > farthest) [farthest, most] = [far, i];
    });
    return {
        about: Array.isArray(a)
            ? `${count} of ${before.length} values, most ${placeOf(a, most)}: `
            : '',
        from: shown(before[most]),
        to: shown(after[most]),
        apart: apart(before[most], after[most], kind),
    };
}

/** A difference on one line. */
export function differenceText({ about, from, to, apart }) {
    if (!from) return about;
    return `${about}${from} -> ${to}${apart ? `  ${apart}` : ''}`;
}

/** The fields that differ between two moments: those of the first in their order, then the others. */
export function differing(before, now) {
    const within = before.run === now.run;
    const fields = within ? now.run.fields : before.run.fields;
    const others = within ? [] : now.run.fields.filter(({ name }) => !before.run.field(name));
    return [...fields, ...others].filter(
        (field) => (field.varies || !within) && !same(before.of(field), now.of(field)),
    );
}
