// The grid of a drawing with the numbers beside it.
import { colourOf } from '../dom.js';
import { short, ticks } from '../ticks.js';

export const FONT = '11px system-ui, sans-serif';

/** So far, at least, are two numbers apart. */
const APART = { x: 60, y: 32 };

/**
 * @param {CanvasRenderingContext2D} context
 * @param {object} box `left`, `top`, `width`, `height` of the drawing
 * @param {object} x and @param {object} y: an axis each, `min` and `max`, `toPlace(value)` on the
 *     context, `text(value)` beside the tick, `whole`, whether it has nothing but whole numbers; one
 *     whose `only` is a number has no other tick
 */
export function paintAxes(context, { left, top, width, height }, x, y) {
    const placed = ({ min, max, whole, only, toPlace, text = short }, count) =>
        (Number.isFinite(only) ? [only] : ticks(min, max, count, whole)).map((tick) => [
            toPlace(tick),
            text(tick),
        ]);
    context.font = FONT;
    context.strokeStyle = colourOf('--grid');
    context.fillStyle = colourOf('--muted');
    context.lineWidth = 1;
    context.beginPath();
    context.textAlign = 'center';
    context.textBaseline = 'top';
    for (const [place, text] of placed(x, width / APART.x)) {
        context.moveTo(place, top);
        context.lineTo(place, top + height);
        context.fillText(text, place, top + height + 5);
    }
    context.textAlign = 'right';
    context.textBaseline = 'middle';
    for (const [place, text] of placed(y, height / APART.y)) {
        context.moveTo(left, place);
        context.lineTo(left + width, place);
        context.fillText(text, left - 5, place);
    }
    context.stroke();
}
