// Draws a line chart as it stands on the page on any context, as uPlot does on its own.
import { lineDash } from '../colours.js';
import { placeOf } from '../course.js';
import { colourOf } from '../dom.js';
import { areWhole, areZero } from '../ticks.js';
import { paintAxes } from './axes.js';
import { shown } from './pale.js';

/** The points of a line in pieces, [x, y] each: it breaks where there is no number. */
function piecesOf(axis, values, [from, to], columns, breaks) {
    const pieces = [[]];
    let last = from;
    for (const i of shown(values, from, to, columns)) {
        if (breaks.some((at) => at > last && at <= i) || !Number.isFinite(values[i]))
            pieces.push([]);
        if (Number.isFinite(values[i])) pieces.at(-1).push([axis[i], values[i]]);
        last = i;
    }
    return pieces.filter((piece) => piece.length);
}

/**
 * @param {uPlot} plot what it shows
 * @param {object} options of the chart, see chart.js
 */
export function paintChart(context, plot, { lines, points, missing, under, xText }) {
    const { bbox, scales, data, series } = plot;
    const unit = plot.over.clientWidth / bbox.width;
    const [left, top, width, height] = ['left', 'top', 'width', 'height'].map(
        (side) => bbox[side] * unit,
    );
    const box = { left, top, width, height };
    const toX = (value) => left + plot.valToPos(value, 'x');
    const toY = (value) => top + plot.valToPos(value, 'y');
    const [places, ...values] = data;
    const x = { ...scales.x, toPlace: toX, text: xText, whole: areWhole(places) };
    const only = areZero(values) ? 0 : null;
    paintAxes(context, box, x, { ...scales.y, toPlace: toY, whole: values.every(areWhole), only });
    context.save();
    context.beginPath();
    context.rect(left, top, width, height);
    context.clip();
    const valToPos = (value, scale) => (scale === 'x' ? toX : toY)(value);
    under?.({ ctx: context, bbox: box, scales, valToPos });
    const part = [
        Math.max(placeOf(data[0], scales.x.min), 0),
        Math.min(placeOf(data[0], scales.x.max) + 1, data[0].length - 1),
    ];
    lines.forEach(({ colour, dashed, stepped, filled }, i) => {
        if (!series[i + 1].show) return;
        const values = Float64Array.from(data[i + 1], (y) => y ?? Number.NaN);
        context.strokeStyle = colourOf(colour);
        context.lineWidth = dashed ? 1.25 : 1.75;
        context.setLineDash(dashed ? [4, 3] : lineDash(colour));
        for (const piece of piecesOf(data[0], values, part, width, missing())) {
            context.beginPath();
            piece.forEach(([x, y], at) => {
                if (stepped && at) context.lineTo(toX(x), toY(piece[at - 1][1]));
                context.lineTo(toX(x), toY(y));
            });
            context.stroke();
            if (filled) {
                const base = toY(Math.max(scales.y.min, 0));
                context.lineTo(toX(piece.at(-1)[0]), base);
                context.lineTo(toX(piece[0][0]), base);
                context.fillStyle = `${colourOf(colour)}33`;
                context.fill();
            }
            context.fillStyle = colourOf(colour);
            for (const [x, y] of (points && !dashed) || piece.length === 1 ? piece : []) {
                context.beginPath();
                context.arc(toX(x), toY(y), 2, 0, 2 * Math.PI);
                context.fill();
            }
        }
    });
    context.restore();
}
