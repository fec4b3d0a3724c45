// Measures a step: how a value went from where a selection begins to where it ends.

/** The part of a step within which a value counts as arrived. */
export const BAND = 0.02;

/**
 * @param {number[]} values over the whole series
 * @param {number} from index of the first snapshot of the selection
 * @param {number} to index of the last one
 * @returns {object|null} null where an end of the selection has no number; else `from` and `to`,
 *     the values at the ends, `low` and `high` between them and `kind`:
 *     'steady', where all are equal; 'wander', where the way is longer than ten times from end to
 *     end and there is no step to speak of; 'step', with `start`, the last snapshot before the value
 *     leaves its first one by more than the band, `settled`, the number of snapshots from there
 *     until it stays within the band around the last value, and `overshoot`, how far it went beyond
 *     that, as a part of the step.
 */
export function measureStep(values, from, to) {
    const part = values.slice(from, to + 1);
    const first = part[0];
    const last = part[part.length - 1];
    if (!Number.isFinite(first) || !Number.isFinite(last)) return null;
    const finite = part.filter(Number.isFinite);
    const low = Math.min(...finite);
    const high = Math.max(...finite);
    const measured = { from: first, to: last, low, high };
    if (low === high) return { ...measured, kind: 'steady' };
    const size = last - first;
    if (Math.abs(size) * 10 < high - low) return { ...measured, kind: 'wander' };

    const near = (value, goal) => Math.abs(value - goal) <= BAND * Math.abs(size);
    const left = part.findIndex((value) => !near(value, first));
    const start = left - 1;
    const settled = part.findLastIndex((value) => !near(value, last)) + 1 - start;
    const beyond = size > 0 ? high - last : last - low;
    return {
        ...measured,
        kind: 'step',
        start: from + start,
        settled,
        overshoot: beyond / Math.abs(size),
    };
}

/** A measured step in words; `axis` gives the times of the snapshots where `timed`. */
export function stepText(step, axis, timed) {
    if (!step) return 'no number at an end of the selection';
    const ends = `${step.from} → ${step.to}`;
    if (step.kind === 'steady') return `${step.from}, steady`;
    if (step.kind === 'wander') return `${ends}, between ${step.low} and ${step.high}`;
    const snapshots = `${step.settled} snapshot${step.settled === 1 ? '' : 's'}`;
    const lasted = axis[step.start + step.settled] - axis[step.start];
    const seconds = timed ? ` (${Number(lasted.toPrecision(3))} s)` : '';
    const percent = Math.round(step.overshoot * 1000) / 10;
    return `${ends}, within 2 % after ${snapshots}${seconds} from #${step.start + 1}, overshoot ${percent} %`;
}
