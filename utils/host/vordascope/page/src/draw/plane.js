// Points in a plane with two axes: chromaticities, motion vectors.
import { canvas } from '../canvas.js';
import { cursor, within } from '../cursor.js';
import { colourOf, el, setText } from '../dom.js';
import { grouped } from '../model.js';
import { paintAxes } from './axes.js';

const MARGIN = { left: 40, right: 16, top: 8, bottom: 30 };

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

/** What the axes are on a drawing of that size, and where a point lies on it. */
function scalesOf(ranges, { equal, whole }, width, height) {
    const box = {
        left: MARGIN.left,
        top: MARGIN.top,
        width: width - MARGIN.left - MARGIN.right,
        height: height - MARGIN.top - MARGIN.bottom,
    };
    const aim = ranges.map(aired);
    const [x, y] = equal ? squared(aim, [box.width, box.height]) : aim;
    const part = (value, [low, high]) => (value - low) / (high - low);
    const toX = (value) => box.left + part(value, x) * box.width;
    const toY = (value) => box.top + (1 - part(value, y)) * box.height;
    const axis = ([min, max], [low, high], toPlace) => {
        const only = low === high ? low : null;
        return { min, max, toPlace, whole, only };
    };
    return {
        box,
        axes: [axis(x, ranges[0], toX), axis(y, ranges[1], toY)],
        toPlace: ({ x, y }) => [toX(x), toY(y)],
    };
}

/** Names the axes in the corners below them. */
function paintNames(context, { xName, yName }, width, height) {
    context.fillStyle = colourOf('--muted');
    context.textAlign = 'right';
    context.textBaseline = 'bottom';
    context.fillText(xName, width - MARGIN.right, height);
    context.textAlign = 'left';
    context.textBaseline = 'top';
    context.fillText(yName, 2, height - 12);
}

function paintPath(context, { points, colour }, toPlace) {
    context.strokeStyle = colourOf(colour);
    context.beginPath();
    for (const point of points) context.lineTo(...toPlace(point));
    context.stroke();
}

/** From place to place in the order of an axis; each holds the points that lie there. */
function moved(places, from, axis, by) {
    const of = axis === 'y' ? ([{ y }]) => -y : ([{ x }]) => x;
    const order = [...places.keys()].sort((i, k) => of(places[i]) - of(places[k]) || i - k);
    return order[within(order.indexOf(from) + by, [0, order.length - 1])];
}

/** The place that is nearest to a point of the drawing, null where none is near. */
function placeAt(places, toPlace, x, y) {
    const reach = ({ cross, radius }) => (cross ? 2 : radius);
    const distances = places.map((here) => {
        const [left, top] = toPlace(here[0]);
        return Math.hypot(left - x, top - y) - Math.max(...here.map(reach));
    });
    const nearest = distances.indexOf(Math.min(...distances));
    return distances[nearest] < NEAR ? nearest : null;
}

/**
 * @param {object} options `xName`, `yName`; `ratio`; `label`, what it shows; `equal`, whether a step is
 *     as long on both axes; `whole`, whether both have nothing but whole numbers; `together(points)`, what
 *     is said of points in one place; `pick(point)`, called for one that is clicked
 * @returns {{elements, show(points, ranges, paths)}} a point is {x, y, radius, colour, hollow, text}, a
 *     cross where it has `cross`; `ranges` those of x and y; a path {points, colour} goes from point to
 *     point
 */
export function plane(options) {
    const { ratio = 0.72, label, pick = null } = options;
    const textOf = (points) => points.map(({ text }) => text).join('; ');
    const { together = textOf } = options;
    let shown = { points: [], paths: [], ranges: [] };
    let places = []; // points that lie on each other, together
    let marked = null;
    let toPlace = () => [0, 0];
    const reading = el('p', { class: 'reading' });

    function paint(context, width, height) {
        const scales = scalesOf(shown.ranges, options, width, height);
        toPlace = scales.toPlace;
        paintAxes(context, scales.box, ...scales.axes);
        paintNames(context, options, width, height);
        for (const path of shown.paths) paintPath(context, path, toPlace);
        for (const point of shown.points) paintPoint(context, toPlace(point), point);
        if (marked === null) return;
        const [point] = places[marked];
        paintRing(context, toPlace(point), point.radius + 3);
    }
    const view = canvas(paint, { ratio, label });
    const reader = cursor(view.element, {
        ends: () => [0, places.length - 1],
        move: (...way) => moved(places, ...way),
        at: (x, y) => placeAt(places, toPlace, x, y),
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
        show(points, ranges, paths = []) {
            shown = { points, ranges, paths };
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
