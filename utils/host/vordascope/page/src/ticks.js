// Round numbers for axes, and how they are written there.

const STEPS = [1, 2, 2.5, 5, 10];

/** Whether a list has nothing but whole numbers; null stands for none. */
export const areWhole = (list) => list.every((value) => value === null || Number.isInteger(value));

/** Whether lists have no number but 0, which makes no scale. */
export const areZero = (lists) => lists.every((list) => list.every((value) => !value));

/** About `count` round numbers within [low, high], `whole` ones where that is asked for. */
export function ticks(low, high, count, whole = false) {
    if (!(high > low)) return Number.isFinite(low) ? [low] : [];
    const rough = Math.max((high - low) / count, whole ? 1 : 0);
    const power = 10 ** Math.floor(Math.log10(rough));
    const fits = (step) => step >= rough && (!whole || Number.isInteger(step));
    const step = STEPS.map((multiple) => multiple * power).find(fits);
    const first = Math.ceil(low / step);
    const last = Math.floor(high / step);
    // Multiples, not sums: 0.1 + 0.2 is not a round number.
    return Array.from({ length: last - first + 1 }, (_, i) =>
        Number(((first + i) * step).toPrecision(12)),
    );
}

const SUFFIXES = [
    [1e12, 'T'],
    [1e9, 'G'],
    [1e6, 'M'],
    [1e4, 'k'],
];

/** A number beside an axis or a scale, where there is room for five characters or so. */
export function short(value) {
    if (!Number.isFinite(value)) return '–';
    for (const [from, suffix] of SUFFIXES) {
        const unit = suffix === 'k' ? 1e3 : from;
        if (Math.abs(value) >= from) return `${Number((value / unit).toPrecision(4))}${suffix}`;
    }
    return String(Number(value.toPrecision(4)));
}

/** A number to read, with as many digits as are worth it. */
export const shortNumber = (value) =>
    Number.isFinite(value) ? String(Number(value.toPrecision(7))) : '–';

/** The same of a difference, with its sign. */
export const signed = (value) => (value < 0 ? shortNumber(value) : `+${shortNumber(value)}`);
