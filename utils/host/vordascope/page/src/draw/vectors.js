// Motion vectors in a plane.
import { extent } from '../model.js';
import { sampled, shownIn, steadyRanges } from '../sources.js';
import { plane } from './plane.js';

/** The radius of the greatest count. */
const MOST = 18;

/** The histogram of motion vectors: a disc a bin, its area the count. */
export function vectors([bins]) {
    const picture = plane({
        xName: 'mv_x →',
        yName: 'mv_y ↑',
        label: 'motion vectors',
        whole: true,
    });
    function extentsAt(moment) {
        const rows = bins.rows(moment);
        return [0, 1, 2].map((column) => extent(rows.map((row) => row[column])));
    }
    const extents = sampled(bins.fields[0].run, bins.varies, extentsAt);

    return {
        elements: picture.elements,
        draw(view) {
            const moments = shownIn(view);
            const [x, y, [, most]] = steadyRanges(extents(), moments.map(extentsAt));
            const points = moments.flatMap((moment) => {
                const hollow = moment !== view.now;
                return bins.rows(moment).map(([x, y, count], i) => ({
                    x,
                    y,
                    radius: Math.max(1.5, MOST * Math.sqrt(count / Math.max(1, most))),
                    colour: hollow ? '--muted' : '--line0',
                    hollow,
                    text: `#${i} (${x}, ${y}): ${count}`,
                }));
            });
            const known = points.filter(({ x, y, radius }) => Number.isFinite(x + y + radius));
            picture.show(known, [x, y]);
        },
    };
}
