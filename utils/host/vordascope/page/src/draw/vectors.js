// Motion vectors in a plane.
import { extent, Moment } from '../model.js';
import { samples, shownIn } from '../sources.js';
import { plane } from './plane.js';

/** The histogram of motion vectors: a disc a bin, its area the count. */
export function vectors([bins]) {
    const picture = plane({
        xName: 'mv_x →',
        yName: 'mv_y ↑',
        label: 'motion vectors',
        whole: true,
    });
    const varies = bins.varies;
    let ranges = null;
    let most = 1;

    function fix(run) {
        const rows = samples(varies ? run.length : 1).flatMap((n) => bins.rows(new Moment(run, n)));
        ranges = [0, 1].map((axis) => extent(rows.map((row) => row[axis])));
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
