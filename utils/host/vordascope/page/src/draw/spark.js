// Pictures the size of a word: a list or the course of a value as a line, a grid as a map.
import { canvas } from '../canvas.js';
import { sequential } from '../colours.js';
import { svg } from '../dom.js';
import { extent } from '../model.js';
import { paintCells } from './map.js';

const WIDTH = 96;
const HEIGHT = 22;
const round = (x) => Math.round(x * 10) / 10;

/**
 * Lines over their index on one scale.
 * @param {number[][]} lists one a line
 * @returns {{element: SVGElement, mark(n, a)}} `mark` puts a line at point n and, where a is not
 *     null, another one at point a
 */
export function spark(lists) {
    const length = Math.max(...lists.map((list) => list.length));
    const [low, high] = extent(lists.flat());
    const x = (i) => round(length > 1 ? 1 + (i / (length - 1)) * (WIDTH - 2) : WIDTH / 2);
    const y = (value) =>
        round(high > low ? HEIGHT - 2 - ((value - low) / (high - low)) * (HEIGHT - 4) : HEIGHT / 2);
    const paths = lists.map((list, line) => {
        let pen = 'M';
        const d = list.map((value, i) => {
            if (!Number.isFinite(value)) {
                pen = 'M';
                return '';
            }
            const piece = `${pen}${x(i)} ${y(value)}`;
            pen = 'L';
            return piece;
        });
        return svg('path', { d: d.join(''), class: `spark-line spark-${line % 4}` });
    });
    const cursors = ['spark-b', 'spark-a'].map((name) => svg('path', { class: name }));
    return {
        element: svg(
            'svg',
            {
                viewBox: `0 0 ${WIDTH} ${HEIGHT}`,
                class: 'spark',
                'aria-hidden': 'true',
                preserveAspectRatio: 'none',
            },
            ...cursors,
            ...paths,
        ),
        mark(n, a) {
            cursors[0].setAttribute('d', `M${x(n)} 0V${HEIGHT}`);
            cursors[1].setAttribute('d', a === null ? '' : `M${x(a)} 0V${HEIGHT}`);
        },
    };
}

/** A grid of numbers as a map the size of a word. */
export function patch(rows) {
    const [low, high] = extent(rows.flat());
    const place = (value) => (high > low ? (value - low) / (high - low) : 0.5);
    const colour = (value) => sequential(place(value));
    const view = canvas(
        (context, width, height) => paintCells(context, width, height, rows, colour),
        {
            width: WIDTH,
            ratio: 1,
            label: `${rows.length} rows of values`,
            className: 'patch',
        },
    );
    view.repaint();
    return view.element;
}
