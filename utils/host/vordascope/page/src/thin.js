// Lines of many snapshots as the points that so many pixels can show.
import { placeOf } from './course.js';

/** So many points a pixel are not thinned. */
const DENSE = 4;

/**
 * Of each column, which is no wider than a pixel, the least and the greatest value of each line in
 * their order, so that no spike is lost. What is new costs as much as it is, not as the run is long.
 */
export class Thinned {
    /** The places on the axis, the values of each line there (null for none), which snapshots these are. */
    x = [];
    ys = [];
    places = [];
    #key = '';
    #from = 0;
    #step = 0; // the width of a column; 0 for one a snapshot
    #column = null; // the last one
    #end = 0; // the snapshot behind the last one of it
    #shown = []; // of each line the extremes of the last column when it was drawn

    /**
     * Takes in what is new of lines, or all of other ones.
     * @param {string} key another one where the values are not those of before, continued
     * @param {ArrayLike<number>} axis of the snapshots, ascending
     * @param {ArrayLike<number>[]} lines
     * @param {number[]} part [from, to], the part of the axis that shows
     * @param {number} pixels the width of that
     * @param {number} slack a change of a value that no pixel shows
     * @returns {boolean} whether it looks other than before
     */
    take(key, axis, lines, [from, to], pixels, slack) {
        const begin = Math.max(placeOf(axis, from), 0);
        const end = Math.min(placeOf(axis, to) + 2, axis.length);
        const many = end - begin > DENSE * pixels;
        const step = many ? 2 ** Math.floor(Math.log2((to - from) / pixels)) : 0;
        const whole = `${key} ${lines.length} ${begin} ${step}`;
        const goesOn = whole === this.#key && end >= this.#end;
        if (!goesOn) this.#begin(whole, axis, lines, begin, step);
        const before = this.#column?.number;
        for (let n = this.#end; n < end; n++) this.#add(n, axis[n], lines);
        this.#end = end;
        if (goesOn && before === this.#column?.number && !this.#moved(slack)) return false;
        this.#shown = this.#column?.extremes.map(({ low, high }) => ({ low, high })) ?? [];
        return true;
    }

    #begin(key, axis, lines, begin, step) {
        this.#key = key;
        this.#step = step;
        this.#from = axis[begin] ?? 0;
        this.#column = null;
        this.#end = begin;
        this.x = [];
        this.ys = lines.map(() => []);
        this.places = [];
    }

    #add(n, x, lines) {
        const { x: xs, ys, places } = this;
        const number = this.#step ? Math.floor((x - this.#from) / this.#step) : n;
        if (number !== this.#column?.number) {
            const at = xs.push(x) - 1;
            places.push(n);
            const extremes = lines.map((values) => extremesOf(values[n]));
            this.#column = { number, at, extremes };
            for (const [i, { low }] of extremes.entries()) ys[i].push(low);
            return;
        }
        const { at, extremes } = this.#column;
        xs[at + 1] = x;
        places[at + 1] = n;
        for (const [i, known] of extremes.entries()) {
            widen(known, lines[i][n]);
            ys[i][at] = known.rises ? known.low : known.high;
            ys[i][at + 1] = known.rises ? known.high : known.low;
        }
    }

    /** Whether a line has gone beyond what showed of the last column. */
    #moved(slack) {
        if (!this.#column) return false;
        return this.#column.extremes.some(({ low, high }, i) => {
            const shown = this.#shown[i];
            if (!shown || (low === null) !== (shown.low === null)) return true;
            return low !== null && (shown.low - low > slack || high - shown.high > slack);
        });
    }

    /** The point of a snapshot, or the last one before it. */
    pointOf(n) {
        return Math.max(placeOf(this.places, n), 0);
    }

    /** The first point that is not before a snapshot; their count where there is none. */
    pointFrom(n) {
        return placeOf(this.places, n - 1) + 1;
    }
}

/** The extremes of one value, null where that is no number; `rises`: the least came first. */
function extremesOf(value) {
    const only = Number.isFinite(value) ? value : null;
    return { low: only, high: only, rises: true };
}

function widen(known, value) {
    if (!Number.isFinite(value)) return;
    if (known.low === null) Object.assign(known, { low: value, high: value });
    if (value < known.low) Object.assign(known, { low: value, rises: false });
    if (value > known.high) Object.assign(known, { high: value, rises: true });
}
