// Points in a plane with two axes: chromaticities, motion vectors.
import { canvas } from '../canvas.js';
import { cursor } from '../cursor.js';
import { colourOf, el, setText } from '../dom.js';
import { grouped } from '../model.js';
import { paintAxes } from './axes.js';

const MARGIN = { left: 40, right: 10, top: 8, bottom: 30 };

/** Around a point at least so far: it may be one pixel. */
const NEAR = 4;

function paintPoint(context, [left, top], { radius, colour, hollow, cross }) {
    context.beginPath();
    context.strokeStyle = context.fillStyle = colourOf(colour);
    if (cross) {
        context.lineWidth = hollow ? 1 : 2;
        for (const side of [-radius, radius]) {
            context.moveTo(left - radius, top - side);
            context.lineTo(left + radius, top + side);
        }
        context.stroke();
        context.lineWidth = 1;
        return;
    }
    context.arc(left, top, radius, 0, 2 * Math.PI);
    context.globalAlpha = hollow ? 0.7 : 0.55;
    if (!hollow) context.fill();
    context.globalAlpha = 1;
    context.stroke();
}

function paintRing(context, [left, top], radius) {
    context.strokeStyle = colourOf('--ink');
    context.lineWidth = 2;
    context.beginPath();
    context.arc(left, top, radius, 0, 2 * Math.PI);
    context.stroke();
    context.lineWidth = 1;
}

/**
 * @param {object} options `xName`, `yName`; `ratio`; `label`, what it shows; `equal`, whether a step is
 *     as long on both axes; `whole`, whether both have nothing but whole numbers; `together(points)`, what is said of points in one place; `pick(point)`,
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
    whole = false,
    together = (points) => points.map(({ text }) => text).join('; '),
    pick = null,
}) {
    let paths = [];
    let points = [];
    let places = []; // points that lie on each other, together
    let marked = null;
    let toPlace = () => [0, 0];
    let ranges = [
        [0, 1],
        [0, 1],
    ];
    const reading = el('p', { class: 'reading' });

    const view = canvas(
        (context, width, height) => {
            const box = {
                left: MARGIN.left,
                top: MARGIN.top,
                width: width - MARGIN.left - MARGIN.right,
                height: height - MARGIN.top - MARGIN.bottom,
            };
            const shown = ranges.map(aired);
            const [x, y] = equal ? squared(shown, [box.width, box.height]) : shown;
            const part = (value, [low, high]) => (value - low) / (high - low);
            const toX = (value) => box.left + part(value, x) * box.width;
            const toY = (value) => box.top + (1 - part(value, y)) * box.height;
            toPlace = (x, y) => [toX(x), toY(y)];
            const axis = ([min, max], [low, high], toPlace) => ({
                min,
                max,
                toPlace,
                whole,
                only: low === high ? low : null,
            });
            paintAxes(context, box, axis(x, ranges[0], toX), axis(y, ranges[1], toY));
            context.fillStyle = colourOf('--muted');
            context.textAlign = 'right';
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
            for (const point of points) paintPoint(context, toPlace(point.x, point.y), point);
            if (marked === null) return;
            const [{ x: right, y: up, radius }] = places[marked];
            paintRing(context, toPlace(right, up), radius + 3);
        },
        { ratio, label },
    );
    /** From place to place in the order of an axis. */
    function move(place, axis, by) {
        const orders = { y: (i) => -places[i][0].y, x: (i) => places[i][0].x };
        const of = orders[axis] ?? orders.x;
        const order = [...places.keys()].sort((i, k) => of(i) - of(k) || i - k);
        const to = order.indexOf(place) + by;
        return order[Math.min(Math.max(to, 0), order.length - 1)];
    }
    const reader = cursor(view.element, {
        ends: () => [0, places.length - 1],
        move,
        at(x, y) {
            const reach = ({ cross, radius }) => (cross ? 2 : radius);
            const distances = places.map((here) => {
                const [left, top] = toPlace(here[0].x, here[0].y);
                return Math.hypot(left - x, top - y) - Math.max(...here.map(reach));
            });
            const nearest = distances.indexOf(Math.min(...distances));
            return distances[nearest] < NEAR ? nearest : null;
        },
        read(place, keys) {
            if (keys) {
                marked = place;
                view.repaint();
            }
            const here = places[place] ?? [];
            setText(reading, here.length > 1 ? together(here) : (here[0]?.text ?? ''));
            return reading.textContent;
        },
        pick: pick && ((place) => pick(places[place][0])),
    });

    return {
        elements: [view.element, reading],
        show(newPoints, xRange, yRange, newPaths = []) {
            points = newPoints;
            paths = newPaths;
            ranges = [xRange, yRange];
            marked = null;
            places = [...grouped(points, ({ x, y, hollow }) => `${x} ${y} ${hollow}`).values()];
            view.repaint();
            reader.refresh();
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
function aired([low, high]) {
    if (!(low <= high)) return [0, 1];
    const air = (high - low || Math.abs(low) * 0.1 || 1) * 0.08;
    return [low - air, high + air];
}
