// A run held against another one: how its axis lies on that of the run that shows.
import { placeOf } from './course.js';
import { short } from './ticks.js';
import { respond } from './tools.js';

/** Ways to align two runs, beside the name of a field: where that leaves rest in both. */
export const START = 'start';
export const MARKS = 'ab';

/** The snapshot nearest to a place on an ascending axis; -1 where that is beyond its ends. */
export function nearest(axis, x) {
    const last = axis.length - 1;
    const slack = last > 0 ? (axis[last] - axis[0]) / last : 0;
    if (!(x >= axis[0] - slack && x <= axis[last] + slack)) return -1;
    const i = Math.max(placeOf(axis, x), 0);
    return i < last && axis[i + 1] - x < x - axis[i] ? i + 1 : i;
}

/** Where a field leaves rest on the axis of a run; NaN where it does not. */
function departureOf(run, axis, name) {
    const values = run.field(name)?.courses[0];
    const response = values && respond(values);
    return response && response.departure >= 0 ? axis[response.departure] : Number.NaN;
}

/**
 * The axes of a view: `now` of the run that shows and `before` of the one it is held against, shifted
 * so that they are aligned; null where there is none. Seconds where both have time, else counts.
 * @returns {{now, before, run, timed, said}} `run`, that other one; `said`, why they are aligned at
 *     the start although something else was asked for
 */
export function axesOf({ now, before, align }) {
    const other = before && before.run !== now.run ? before.run : null;
    const timed = now.run.timed && (!other || other.timed);
    const axis = (run) => (timed ? run.axis : run.counts);
    const axes = { now: axis(now.run), before: null, run: other, timed, said: '' };
    if (!other) return axes;
    let shift = 0;
    if (align === MARKS) {
        shift = axes.now[now.n] - axis(other)[before.n];
    } else if (align !== START) {
        const [to, from] = [now.run, other].map((run) => departureOf(run, axis(run), align));
        shift = to - from;
        if (Number.isNaN(shift)) {
            shift = 0;
            axes.said = `${align} does not leave rest in both runs: aligned at the start.`;
        }
    }
    axes.before = shift === 0 ? axis(other) : axis(other).map((x) => x + shift);
    return axes;
}

/** A place on the axis, in the unit that it has. */
export const placeText = (x, timed) => (timed ? `${Number(x.toFixed(3))} s` : `#${Math.round(x)}`);

/** The same beside a tick. */
export const tickText = (x, timed) => (timed ? `${short(x)} s` : `#${short(x)}`);
