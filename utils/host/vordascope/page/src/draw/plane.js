// Points in a plane with two axes: chromaticities, motion vectors.
import { canvas, pointerAt } from '../canvas.js';
import { colourOf, el, setText } from '../dom.js';
import { short, ticks } from '../ticks.js';

const MARGIN = { left: 40, right: 10, top: 8, bottom: 30 };
const FONT = '11px system-ui, sans-serif';

/**
 * @param {object} options `xName`, `yName`; `ratio`; `label`, what it shows; `equal`, whether a step is
 *     as long on both axes; `together(points)`, what is said of points in one place; `pick(point)`,
 *     called for one that is clicked
 * @returns {{elements, show(points, xRange, yRange, paths)}} a point is {x, y, radius, colour, hollow,
 *     text}, a cross where it has `cross`; a path {points, colour} goes from point to point
 */
export function plane({
    xName,
    yName,
    ratio = 0.72,
    label,
    equal = false,
    together = (points) => points.map(({ text }) => text).join('; '),
    pick = null,
}) {
    let paths = [];
    let points = [];
    let toPlace = () => [0, 0];
    let ranges = [
        [0, 1],
        [0, 1],
    ];
    const reading = el('p', { class: 'reading' });

    const view = canvas(
        (context, width, height) => {
            const inner = [width - MARGIN.left - MARGIN.right, height - MARGIN.top - MARGIN.bottom];
            const [[x0, x1], [y0, y1]] = equal ? squared(ranges, inner) : ranges;
            toPlace = (x, y) => {
                const up = (y - y0) / (y1 - y0);
                return [
                    MARGIN.left + ((x - x0) / (x1 - x0)) * inner[0],
                    MARGIN.top + (1 - up) * inner[1],
                ];
            };
            context.font = FONT;
            context.strokeStyle = colourOf('--grid');
            context.fillStyle = colourOf('--muted');
            context.lineWidth = 1;
            context.beginPath();
            context.textAlign = 'center';
            context.textBaseline = 'top';
            for (const tick of ticks(x0, x1, inner[0] / 60)) {
                const [x] = toPlace(tick, y0);
                context.moveTo(x, MARGIN.top);
                context.lineTo(x, MARGIN.top + inner[1]);
                context.fillText(short(tick), x, MARGIN.top + inner[1] + 5);
            }
            context.textAlign = 'right';
            context.textBaseline = 'middle';
            for (const tick of ticks(y0, y1, inner[1] / 40)) {
                const [, y] = toPlace(x0, tick);
                context.moveTo(MARGIN.left, y);
                context.lineTo(MARGIN.left + inner[0], y);
                context.fillText(short(tick), MARGIN.left - 5, y);
            }
            context.stroke();
            context.textBaseline = 'bottom';
            context.fillText(xName, width - MARGIN.right, height);
            context.textAlign = 'left';
            context.textBaseline = 'top';
            context.fillText(yName, 2, height - 12);
            for (const { points, colour } of paths) {
                context.strokeStyle = colourOf(colour);
                context.beginPath();
                for (const { x, y } of points) context.lineTo(...toPlace(x, y));
                context.stroke();
            }
            for (const { x, y, radius, colour, hollow, cross } of points) {
                const [left, top] = toPlace(x, y);
                context.beginPath();
                if (cross) {
                    context.lineWidth = hollow ? 1 : 2;
                    context.strokeStyle = colourOf(colour);
                    for (const side of [-radius, radius]) {
                        context.moveTo(left - radius, top - side);
                        context.lineTo(left + radius, top + side);
                    }
                    context.stroke();
                    context.lineWidth = 1;
                    continue;
                }
                context.arc(left, top, radius, 0, 2 * Math.PI);
                context.strokeStyle = context.fillStyle = colourOf(colour);
                context.globalAlpha = hollow ? 0.7 : 0.55;
                if (!hollow) context.fill();
                context.globalAlpha = 1;
                context.stroke();
            }
        },
        { ratio, label },
    );
    /** The points under the pointer, the nearest first. */
    function under(event) {
        const [x, y] = pointerAt(event);
        const distance = (point) => {
            const [left, top] = toPlace(point.x, point.y);
            return Math.hypot(left - x, top - y) - (point.cross ? 2 : point.radius);
        };
        const near = points.filter((point) => distance(point) < 4);
        return near.sort((p, q) => distance(p) - distance(q));
    }
    view.element.addEventListener('pointermove', (event) => {
        const [first, ...others] = under(event);
        const here = others.filter(
            ({ x, y, hollow }) => x === first.x && y === first.y && hollow === first.hollow,
        );
        setText(reading, here.length ? together([first, ...here]) : (first?.text ?? ''));
    });
    if (pick) {
        view.element.classList.add('pick');
        view.element.addEventListener('click', (event) => {
            const [first] = under(event);
            if (first) pick(first);
        });
    }
    view.element.addEventListener('pointerleave', () => setText(reading, ''));

    return {
        elements: [view.element, reading],
        show(newPoints, xRange, yRange, newPaths = []) {
            points = newPoints;
            paths = newPaths;
            ranges = [xRange, yRange];
            view.repaint();
        },
    };
}

/** Two ranges of which the narrower one is made wider, so that a step is as long on both axes. */
function squared(ranges, lengths) {
    const step = Math.max(...ranges.map(([low, high], i) => (high - low) / lengths[i]));
    return ranges.map(([low, high], i) => {
        const air = (step * lengths[i] - (high - low)) / 2;
        return [low - air, high + air];
    });
}

/** A range with air on both sides, so that no point lies on an edge. */
export function aired([low, high]) {
    if (!(low <= high)) return [0, 1];
    const air = (high - low || Math.abs(low) * 0.1 || 1) * 0.08;
    return [low - air, high + air];
}
