// The three drawings in a plane: chromaticities of the regions, motion vectors, peak positions.
import { lineColour } from '../colours.js';
import { extent } from '../model.js';
import { shownIn, steadyRange } from '../sources.js';
import { short } from '../ticks.js';
import { aired, plane } from './plane.js';

/** Chromaticity r/g and b/g of each region, from the maps of r, g and b; the reference of a comparison is drawn hollow. */
export function chromaticity([r, g, b]) {
    const view = plane({ xName: 'r/g →', yName: 'b/g ↑', label: 'r/g and b/g of each region' });
    const varies = r.varies || g.varies || b.varies;
    const all = new Map();

    function of(n) {
        if (!all.has(n)) {
            const [reds, greens, blues] = [r, g, b].map((source) => source.rows(n));
            all.set(
                n,
                greens
                    .flatMap((row, y) =>
                        row.map((green, x) => ({
                            x: reds[y]?.[x] / green,
                            y: blues[y]?.[x] / green,
                            at: `[${y}][${x}]`,
                        })),
                    )
                    .filter((point) => Number.isFinite(point.x) && Number.isFinite(point.y)),
            );
        }
        return all.get(n);
    }

    let extents = null;
    function ranges(now) {
        extents ??= ['x', 'y'].map((axis) =>
            Array.from({ length: varies ? now.series.length : 1 }, (_, n) =>
                extent(of(n).map((point) => point[axis])),
            ),
        );
        return extents.map((pairs) => aired(steadyRange(pairs, shownIn(now))));
    }

    return {
        elements: view.elements,
        draw(now) {
            const points = shownIn(now).flatMap((n) => {
                const hollow = n !== now.n;
                return of(n).map((point) => ({
                    ...point,
                    radius: hollow ? 2.5 : 3,
                    colour: hollow ? '--muted' : '--line0',
                    hollow,
                    text: `${point.at} r/g ${short(point.x)}, b/g ${short(point.y)}`,
                }));
            });
            view.show(points, ...ranges(now));
        },
    };
}

/** The histogram of motion vectors: a disc a bin, its area the count. */
export function vectors([bins]) {
    const view = plane({ xName: 'mv_x →', yName: 'mv_y ↑', label: 'motion vectors' });
    const varies = bins.varies;
    let ranges = null;
    let most = 1;

    function fix(length) {
        const rows = Array.from({ length: varies ? length : 1 }, (_, n) => bins.rows(n)).flat();
        ranges = [0, 1].map((axis) => aired(extent(rows.map((row) => row[axis]))));
        most = Math.max(1, extent(rows.map((row) => row[2]))[1]);
    }

    return {
        elements: view.elements,
        draw(now) {
            if (!ranges) fix(now.series.length);
            const points = shownIn(now).flatMap((n) => {
                const hollow = n !== now.n;
                return bins.rows(n).map(([x, y, count], i) => ({
                    x,
                    y,
                    radius: Math.max(1.5, 18 * Math.sqrt(count / most)),
                    colour: hollow ? '--muted' : '--line0',
                    hollow,
                    text: `#${i} (${x}, ${y}): ${count}`,
                }));
            });
            view.show(
                points.filter(({ x, y, radius }) => Number.isFinite(x + y + radius)),
                ...ranges,
            );
        },
    };
}

/** Positions of peaks, a colour a channel, as they lie in the picture. */
export function positions(sources) {
    const view = plane({ xName: 'x →', yName: 'y ↓', down: true, label: 'positions of the peaks' });

    function of(source, n) {
        const numbers = source.numbers(n);
        return Array.from({ length: numbers.length >> 1 }, (_, i) => [
            numbers[2 * i],
            numbers[2 * i + 1],
        ]);
    }

    return {
        elements: view.elements,
        draw(now) {
            const points = sources.flatMap((source, channel) =>
                of(source, now.n).map(([x, y], i) => ({
                    x,
                    y,
                    radius: 3 + 2.5 * channel,
                    colour: lineColour(source.name, channel),
                    hollow: true,
                    text: `${source.name} ${i}: (${x} ${y})`,
                })),
            );
            const known = points.filter(({ x, y }) => Number.isFinite(x + y));
            view.show(
                known,
                aired(extent(known.map(({ x }) => x))),
                aired(extent(known.map(({ y }) => y))),
            );
        },
    };
}
