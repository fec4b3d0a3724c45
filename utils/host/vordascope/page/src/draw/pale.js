// The run that another one is held against: a pale, dashed line beneath a chart's lines.
import { placeOf } from '../course.js';
import { colourOf } from '../dom.js';

/** The points of a part of a line that so many pixels can show: of each column the least and the greatest. */
export function shown(values, from, to, columns) {
    const part = Math.ceil((to - from + 1) / columns);
    const points = [];
    for (let begin = from; begin <= to; begin += part) {
        let [least, most] = [begin, begin];
        for (let i = begin; i < begin + part && i <= to; i++) {
            if (values[i] < values[least] || Number.isNaN(values[least])) least = i;
            if (values[i] > values[most] || Number.isNaN(values[most])) most = i;
        }
        points.push(Math.min(least, most));
        if (least !== most) points.push(Math.max(least, most));
    }
    return points;
}

/**
 * @param {uPlot} u the chart
 * @param {ArrayLike<number>} axis ascending, on the chart's x
 * @param {ArrayLike<number>} values
 */
export function paintPale(u, axis, values, colour) {
    const { ctx, bbox } = u;
    const from = Math.max(placeOf(axis, u.scales.x.min), 0);
    const to = Math.min(placeOf(axis, u.scales.x.max) + 1, axis.length - 1);
    ctx.save();
    ctx.beginPath();
    ctx.rect(bbox.left, bbox.top, bbox.width, bbox.height);
    ctx.clip();
    ctx.strokeStyle = colourOf(colour);
    ctx.globalAlpha = 0.55;
    ctx.lineWidth = 1.5 * devicePixelRatio;
    ctx.setLineDash([5 * devicePixelRatio, 4 * devicePixelRatio]);
    ctx.beginPath();
    let pen = 'moveTo';
    for (const i of shown(values, from, to, bbox.width)) {
        if (Number.isFinite(values[i])) {
            ctx[pen](u.valToPos(axis[i], 'x', true), u.valToPos(values[i], 'y', true));
            pen = 'lineTo';
        } else pen = 'moveTo';
    }
    ctx.stroke();
    ctx.restore();
}
