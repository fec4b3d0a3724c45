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

/** A typed array that is one longer. It shares its memory with the one before while there is room. */
export function pushed(array, value) {
    const { length } = array;
    let room = new array.constructor(array.buffer);
    if (room.length === length) {
        room = new array.constructor(Math.max(16, 2 * length));
        room.set(array);
    }
    room[length] = value;
    return room.subarray(0, length + 1);
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
        if (this.#whole?.length < length) {
            for (let n = this.#whole.length; n < length; n++)
                this.#whole = pushed(
                    this.#whole,
                    this.#numbers[placeOf(this.#at, n)] ?? Number.NaN,
                );
            return this.#whole;
        }
        const whole = new Float64Array(length).fill(Number.NaN);
        this.#at.forEach((from, i) => {
            whole.fill(this.#numbers[i], from, this.#at[i + 1] ?? length);
        });
        this.#whole = whole;
        return whole;
    }

    /** From snapshot n on, which is behind all others, the value is this one, as printed. */
    append(n, value) {
        if (typeof value !== 'number' || this.decimals > 0)
            this.#others.set(this.#at.length, value);
        this.#at = pushed(this.#at, n);
        this.#numbers = pushed(this.#numbers, number(value));
    }

    /** The first so many snapshots are no more. */
    forget(count) {
        const from = Math.max(placeOf(this.#at, count), 0);
        this.#at = this.#at.slice(from).map((at) => Math.max(at - count, 0));
        this.#numbers = this.#numbers.slice(from);
        const kept = [...this.#others].filter(([i]) => i >= from);
        this.#others = new Map(kept.map(([i, value]) => [i - from, value]));
        this.#whole = null;
    }

    /** Whether it changes after snapshot `from`, up to `to`. */
    changes(from, to) {
        return placeOf(this.#at, to) > placeOf(this.#at, from);
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
