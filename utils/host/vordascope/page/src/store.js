// What the page shows, in one place. Whoever changes it calls set(); the page then redraws once,
// before the next frame, however many changes there were.

/**
 * The view, whose parts are those of view.js:
 *     run, n       the snapshot that shows (B): its run's place in the list, and which one of it
 *     against, a   the same of the snapshot that it is compared with (A); null: none
 *     sensors      [a, b], two sensors of the snapshot that are compared instead, or null
 *     only         whether only what changed shows
 *     query        what is looked for
 *     step         [i, j], the measured selection of the time charts, or null
 *     zoom         [from, to], the part of the time axis that shows, or null for all of it
 *     align        how a second run is aligned: 'start', 'ab' (at A and B), or the name of a field
 *     band, ref    the band of a response, as a part; whether the value at A is its reference
 *     added        names of the fields that have a time chart of their own
 *     theme        'light', 'dark' or '' for the system's
 */
export class Store {
    #listeners = [];
    #changed = new Set();

    constructor(view) {
        this.view = view;
    }

    set(patch) {
        const changed = Object.keys(patch).filter((key) => this.view[key] !== patch[key]);
        if (changed.length === 0) return;
        this.view = { ...this.view, ...patch };
        this.touch(...changed);
    }

    /** The same, of parts whose value is the same but stands for something else. */
    touch(...keys) {
        if (this.#changed.size === 0) requestAnimationFrame(() => this.flush());
        for (const key of keys) this.#changed.add(key);
    }

    /** Tells the listeners at once what is due. */
    flush() {
        const changed = this.#changed;
        if (changed.size === 0) return;
        this.#changed = new Set();
        for (const listener of this.#listeners) listener(this.view, changed);
    }

    /** Nobody is told any more. */
    stop() {
        this.#listeners = [];
    }

    /** `listener(view, changed)`: the new view and a set with the names of what is new in it. */
    listen(listener) {
        this.#listeners.push(listener);
    }
}
