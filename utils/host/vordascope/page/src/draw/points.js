// The drawings in a plane: chromaticities of the regions, and motion vectors.
import { extent, Moment } from '../model.js';
import { samples, shownIn, steadyRange } from '../sources.js';
import { short } from '../ticks.js';
import { aired, plane } from './plane.js';

/** Chromaticity r/g and b/g of each region, from the maps of r, g and b; the reference of a comparison is drawn hollow. */
export function chromaticity([r, g, b]) {
    const picture = plane({ xName: 'r/g →', yName: 'b/g ↑', label: 'r/g and b/g of each region' });
    const varies = r.varies || g.varies || b.varies;

    function of(moment) {
        const [reds, greens, blues] = [r, g, b].map((source) => source.rows(moment));
        return greens
            .flatMap((row, y) =>
                row.map((green, x) => ({
                    x: reds[y]?.[x] / green,
                    y: blues[y]?.[x] / green,
                    at: `[${y}][${x}]`,
                })),
            )
            .filter((point) => Number.isFinite(point.x) && Number.isFinite(point.y));
    }
    const extentsOf = (points) => ['x', 'y'].map((axis) => extent(points.map((p) => p[axis])));

    let extents = null;
    function ranges(view) {
        const { run } = g.fields[0];
        extents ??= samples(varies ? run.length : 1).map((n) => extentsOf(of(new Moment(run, n))));
        const shown = shownIn(view).map((moment) => extentsOf(of(moment)));
        const pairs = (all, axis) => all.map((both) => both[axis]);
        return [0, 1].map((axis) => aired(steadyRange(pairs(extents, axis), pairs(shown, axis))));
    }

    return {
        elements: picture.elements,
        draw(view) {
            const points = shownIn(view).flatMap((moment) => {
                const hollow = moment !== view.now;
                return of(moment).map((point) => ({
                    ...point,
                    radius: hollow ? 2.5 : 3,
                    colour: hollow ? '--muted' : '--line0',
                    hollow,
                    text: `${point.at} r/g ${short(point.x)}, b/g ${short(point.y)}`,
                }));
            });
            picture.show(points, ...ranges(view));
        },
    };
}

/** The histogram of motion vectors: a disc a bin, its area the count. */
export function vectors([bins]) {
    const picture = plane({ xName: 'mv_x →', yName: 'mv_y ↑', label: 'motion vectors' });
    const varies = bins.varies;
    let ranges = null;
    let most = 1;

    function fix(run) {
        const rows = samples(varies ? run.length : 1).flatMap((n) => bins.rows(new Moment(run, n)));
        ranges = [0, 1].map((axis) => aired(extent(rows.map((row) => row[axis]))));
        most = Math.max(1, extent(rows.map((row) => row[2]))[1]);
    }

    return {
        elements: picture.elements,
        draw(view) {
            if (!ranges) fix(bins.fields[0].run);
            const points = shownIn(view).flatMap((moment) => {
                const hollow = moment !== view.now;
                return bins.rows(moment).map(([x, y, count], i) => ({
                    x,
                    y,
                    radius: Math.max(1.5, 18 * Math.sqrt(count / most)),
                    colour: hollow ? '--muted' : '--line0',
                    hollow,
                    text: `#${i} (${x}, ${y}): ${count}`,
                }));
            });
            picture.show(
                points.filter(({ x, y, radius }) => Number.isFinite(x + y + radius)),
                ...ranges,
            );
        },
    };
}
