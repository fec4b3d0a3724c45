// A line chart in the page's style, drawn by uPlot.
import uPlot from 'uplot';
import { currentLayout } from '../canvas.js';
import { lineDash } from '../colours.js';
import { placeOf } from '../course.js';
import { cursor } from '../cursor.js';
import { colourOf, el, setText, sizeObserver, svg } from '../dom.js';
import { hold } from '../lifetime.js';
import { short, shortNumber } from '../ticks.js';
import { listen } from './gestures.js';
import { paintChart } from './paint.js';
import { plotOptions } from './plot.js';

/** A range with some air around it; from 0 where that is near. */
export function padded([low, high]) {
    if (!(low <= high)) return [0, 1];
    const air = low === high ? Math.abs(low) * 0.1 || 1 : (high - low) * 0.06;
    return [low >= 0 && low - air < (high - low) * 0.3 ? Math.min(0, low) : low - air, high + air];
}

/** Lets keys read a chart point by point; `plotNow()` is that of uPlot, null before there is one. */
function readable(element, { lines, xText = short, onPick, onSelect }, plotNow) {
    /** Point i in words. */
    function reading({ series, data }, i) {
        const shown = lines.map(({ name }, line) => [name, line + 1]);
        const known = shown.filter(([, at]) => series[at].show && data[at][i] !== null);
        const values = known.map(([name, at]) => `${name} ${shortNumber(data[at][i])}`);
        return `${xText(data[0][i])}: ${values.join(', ') || '–'}`;
    }
    return cursor(element, {
        /** The points that the scale shows. */
        ends() {
            const plot = plotNow();
            if (!plot) return [0, -1];
            const { min, max } = plot.scales.x;
            const [places] = plot.data;
            const first = placeOf(places, min);
            return [first + (places[first] === min ? 0 : 1), placeOf(places, max)];
        },
        read(i) {
            const plot = plotNow();
            const there = i !== null;
            const left = there ? plot.valToPos(plot.data[0][i], 'x') : -10;
            plot?.setCursor({ left, top: there ? plot.over.clientHeight / 2 : -10 });
            return there ? reading(plot, i) : '';
        },
        pick: onPick,
        span: onSelect,
    });
}

/**
 * @param {object} options
 *     lines: [{name, colour, dashed, stepped, filled}], `colour` by its name in the style;
 *     label, what it shows; height; range(): [low, high] of y; xRange(): that of x;
 *     xText(x): how a place on x is written; points: whether to mark each point; sync: charts of one key share the cursor;
 *     onSelect(i, j): the user selected points i to j; onPick(i, event): clicked on point i;
 *     onHover(i, x): the cursor is over point i, at x; null where it left
 *     onWheel(event, x): the wheel turned over x; onPinch(factor, x): two fingers moved around x;
 *     onDouble(): clicked twice
 *     under(u): draws beneath the lines; missing(): the points before which some are missing
 * @returns {{element, show(data, visible), select(i, j), clear(), end()}} end() frees it at once;
 *     the end of the view does so anyway
 */
export function chart(options) {
    const { lines, height = 150, points = false, under, missing = () => [] } = options;
    const { xText = short } = options;
    let plot = null;
    const element = el('div', { class: 'chart', 'aria-label': options.label });
    element.style.height = `${height}px`;
    const keys = readable(element, options, () => plot);
    element.paint = (context) =>
        plot && paintChart(context, plot, { lines, points, missing, under, xText });
    let measuredIn = currentLayout();
    const observer = sizeObserver(fit);

    const end = hold(() => {
        observer.disconnect();
        plot?.destroy();
    });

    function create(data) {
        const created = new uPlot(
            plotOptions({ ...options, height, points, missing, xText }, element.clientWidth || 300),
            data,
            element,
        );
        listen(created, options);
        observer.observe(element);
        return created;
    }

    function fit() {
        measuredIn = currentLayout();
        const width = element.clientWidth;
        if (width === 0 || width === plot.width) return;
        plot.setSize({ width, height });
        options.onResize?.();
    }

    return {
        element,
        /** The chart of uPlot, null before the first show(). */
        get plot() {
            return plot;
        },
        /** Draws [x, y of line 0, y of line 1, ...]; `visible` says which lines show. */
        show(data, visible = lines.map(() => true)) {
            plot ??= create(data);
            if (measuredIn !== currentLayout()) fit();
            plot.batch(() => {
                visible.forEach((show, i) => {
                    if (plot.series[i + 1].show !== show) plot.setSeries(i + 1, { show });
                });
                plot.setData(data);
            });
            keys.refresh();
        },
        /** Marks points i to j as selected. */
        select(i, j) {
            if (!plot) return;
            const width = plot.over.clientWidth;
            const [left, right] = [i, j].map((at) =>
                Math.min(Math.max(plot.valToPos(plot.data[0][at], 'x'), 0), width),
            );
            plot.setSelect(
                { left, width: right - left, top: 0, height: plot.over.clientHeight },
                false,
            );
        },
        end,
        clear() {
            plot?.setSelect({ left: 0, width: 0, top: 0, height: 0 }, false);
        },
    };
}

/** A piece of a line in its colour and with its dashes. */
function swatchOf(colour) {
    const line = svg('line', { y1: 2, y2: 2, x2: 24, 'stroke-dasharray': lineDash(colour) });
    const swatch = svg('svg', { class: 'swatch', 'aria-hidden': true }, line);
    swatch.style.setProperty('--swatch', `var(${colour})`);
    swatch.paint = (context, width, height) => {
        context.strokeStyle = colourOf(colour);
        context.lineWidth = 2;
        context.setLineDash(lineDash(colour));
        context.beginPath();
        context.moveTo(0, height / 2);
        context.lineTo(width, height / 2);
        context.stroke();
    };
    return swatch;
}

/**
 * The names of a chart's lines with their colours, and beside each the value under the cursor.
 * @returns {{element, read(texts), gather(first)}} `texts` one a line, or null for none; `first`, for each
 *     line the one that stands for it, -1 for a line that is not in use
 */
export function legend(lines) {
    const readings = lines.map(() => el('span', { class: 'reading' }));
    const entries = lines.map(({ name, colour }, i) => {
        const swatch = swatchOf(colour);
        // One line alone needs no name: the title has it.
        return el(
            'span',
            { class: 'entry' },
            lines.length > 1 ? [swatch, el('span', {}, name)] : null,
            readings[i],
        );
    });
    const unused = el('span', { hidden: true });
    return {
        element: el('div', { class: 'legend' }, entries, unused),
        gather(first) {
            const named = (of) => lines.filter((_, i) => first[i] === of).map(({ name }) => name);
            entries.forEach((entry, i) => {
                entry.hidden = first[i] !== i;
                if (lines.length > 1) setText(entry.children[1], named(i).join(' = '));
            });
            const left = named(-1);
            unused.hidden = left.length === 0;
            setText(unused, left.length === 0 ? '' : `not in use: ${left.join(', ')}`);
        },
        read(texts) {
            for (const [i, reading] of readings.entries()) setText(reading, texts?.[i] ?? '');
        },
    };
}
