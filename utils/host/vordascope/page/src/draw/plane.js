// Points in a plane with two axes: chromaticities, motion vectors.
import { canvas, pointerAt } from '../canvas.js';
import { colourOf, el, setText } from '../dom.js';
import { short, ticks } from '../ticks.js';

const MARGIN = { left: 40, right: 10, top: 8, bottom: 30 };
const FONT = '11px system-ui, sans-serif';

/**
 * @param {object} options `xName`, `yName`; `ratio`; `label`, what it shows
 * @returns {{elements, show(points, xRange, yRange)}} a point is {x, y, radius, colour, hollow, text}
 */
export function plane({ xName, yName, ratio = 0.72, label }) {
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
            const [[x0, x1], [y0, y1]] = ranges;
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
            for (const { x, y, radius, colour, hollow } of points) {
                const [left, top] = toPlace(x, y);
                context.beginPath();
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
    view.element.addEventListener('pointermove', (event) => {
        const [x, y] = pointerAt(event);
        const distance = (point) => {
            const [left, top] = toPlace(point.x, point.y);
            return Math.hypot(left - x, top - y) - point.radius;
        };
        const near = points.filter((point) => distance(point) < 4);
        near.sort((p, q) => distance(p) - distance(q));
        setText(reading, near[0]?.text ?? '');
    });
    view.element.addEventListener('pointerleave', () => setText(reading, ''));

    return {
        elements: [view.element, reading],
        show(newPoints, xRange, yRange) {
            points = newPoints;
            ranges = [xRange, yRange];
            view.repaint();
        },
    };
}

/** A range with air on both sides, so that no point lies on an edge. */
export function aired([low, high]) {
    if (!(low <= high)) return [0, 1];
    const air = (high - low || Math.abs(low) * 0.1 || 1) * 0.08;
    return [low - air, high + air];
}
