// How one value goes over the snapshots of a run: its changes, in typed arrays (see model.h).

/** The last place in ascending `at` that is not beyond n, -1 where there is none. */
export function placeOf(at, n) {
    let low = 0;
    let high = at.length;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (at[middle] <= n) low = middle + 1;
        else high = middle;
    }
    return low - 1;
}

/** The places of changes, of the gaps between them; the first so many where there are no gaps. */
export function places(gaps, count) {
    const at = new Uint32Array(count);
    let last = 0;
    for (let i = 0; i < count; i++) {
        last = gaps ? last + gaps[i] : i;
        at[i] = last;
    }
    return at;
}

export class Course {
    #at;
    #numbers;
    /** What is printed in another form than the numbers, by its place among the changes. */
    #others = new Map();
    #whole = null;

    /** @param {{at?: number[], v: Array, decimals?: number}} course as in model.h */
    constructor({ at, v, decimals = 0 }) {
        this.#at = places(at, v.length);
        this.#numbers = new Float64Array(v.length);
        this.decimals = decimals;
        const unit = 10 ** decimals;
        let sum = 0;
        for (let i = 0; i < v.length; i++) {
            if (typeof v[i] === 'number') {
                sum += v[i];
                this.#numbers[i] = sum / unit;
            } else {
                this.#others.set(i, v[i]);
                this.#numbers[i] = number(v[i]);
            }
        }
    }

    get varies() {
        return this.#at.length > 1;
    }

    /** The value in snapshot n as printed: a number only where JavaScript prints it alike. */
    at(n) {
        const i = placeOf(this.#at, n);
        if (i < 0) return null;
        if (this.#others.has(i)) return this.#others.get(i);
        const value = this.#numbers[i];
        return this.decimals ? value.toFixed(this.decimals) : value;
    }

    /** The numbers of all snapshots; NaN where there is none. */
    numbers(length) {
        if (this.#whole?.length === length) return this.#whole;
        const whole = new Float64Array(length).fill(Number.NaN);
        this.#at.forEach((from, i) => {
            whole.fill(this.#numbers[i], from, this.#at[i + 1] ?? length);
        });
        this.#whole = whole;
        return whole;
    }

    /** Whether any of its values is a number. */
    get numeric() {
        return this.#numbers.some((value) => !Number.isNaN(value));
    }
}

/** A printed scalar as a number for drawing; NaN where it is none. */
export function number(value) {
    if (typeof value === 'number') return value;
    if (typeof value === 'boolean') return Number(value);
    if (typeof value !== 'string') return Number.NaN;
    return value.trim() === '' ? Number.NaN : Number(value);
}
