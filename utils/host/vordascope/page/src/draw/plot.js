// What uPlot is told of a chart: its axes, its lines, its cursor.
import uPlot from 'uplot';
import { lineDash } from '../colours.js';
import { colourOf } from '../dom.js';
import { areWhole, areZero, short } from '../ticks.js';
import { FONT } from './axes.js';

const axis = (more) => ({
    stroke: () => colourOf('--muted'),
    font: FONT,
    grid: { stroke: () => colourOf('--grid'), width: 1 },
    ticks: { show: false },
    ...more,
});

/** From one tick to the next; between whole numbers nothing but whole numbers. */
const STEPS = Array.from({ length: 32 }, (_, i) => i - 12).flatMap((exponent) =>
    ['1', '2', '2.5', '5'].map((step) => Number(`${step}e${exponent}`)),
);
const WHOLE = STEPS.filter(Number.isInteger);
const stepsOf = (lists) => (lists.every(areWhole) ? WHOLE : STEPS);

/** The numbers beside y; where all is 0 no other one. */
function heights({ data }, splits) {
    const zero = areZero(data.slice(1));
    return splits.map((split) => (zero && split !== 0 ? '' : short(split)));
}

/** Where a line breaks, in pixels: between points some are missing. */
function holes(u, missing, from, to) {
    const place = (i) => u.valToPos(u.data[0][i], 'x', true);
    return missing.filter((i) => i > from && i <= to).map((i) => [place(i - 1), place(i)]);
}

/** The points between two breaks, which no line would show; null where there are none. */
function lonely(u, missing) {
    const breaks = new Set(missing);
    const alone = [...breaks].filter((i) => breaks.has(i + 1) || i + 1 === u.data[0].length);
    return alone.length ? alone : null;
}

function lineOptions({ colour, dashed, stepped, filled }, { points, missing }) {
    const dots = { size: 4, fill: () => colourOf(colour) };
    return {
        stroke: () => colourOf(colour),
        width: dashed ? 1.25 : 1.75,
        dash: dashed ? [4, 3] : lineDash(colour),
        fill: filled ? () => `${colourOf(colour)}33` : undefined,
        paths: stepped ? uPlot.paths.stepped({ align: 1 }) : undefined,
        gaps: (u, _line, from, to, empty) =>
            [...empty, ...holes(u, missing(), from, to)].sort((p, q) => p[0] - q[0]),
        points:
            points && !dashed
                ? { ...dots, show: true }
                : { ...dots, show: () => false, filter: (u) => lonely(u, missing()) },
    };
}

/** The options of uPlot for those of a chart, see chart.js, and its width. */
export function plotOptions(options, width) {
    const { height, range, xRange, sync, xText, lines, onSelect, onHover, under } = options;
    return {
        width,
        height,
        legend: { show: false },
        padding: [8, 16, 0, 0],
        scales: { x: { time: false, range: xRange }, y: { range } },
        axes: [
            axis({
                size: 24,
                space: 52,
                values: (_, splits) => splits.map(xText),
                incrs: (u) => stepsOf([u.data[0]]),
            }),
            axis({
                size: 46,
                space: 32,
                values: heights,
                incrs: (u) => stepsOf(u.data.slice(1)),
            }),
        ],
        series: [{}, ...lines.map((line) => lineOptions(line, options))],
        cursor: {
            y: false,
            drag: { x: Boolean(onSelect), y: false, setScale: false, dist: 3 },
            points: { size: 6 },
            bind: { dblclick: () => () => options.onDouble?.() },
            sync: sync && {
                key: sync,
                setSeries: false,
                filters: { pub: (type) => type === 'mousemove' || type === 'mouseleave' },
            },
        },
        hooks: {
            setCursor: [(u) => onHover?.(u.cursor.idx ?? null, u.posToVal(u.cursor.left, 'x'))],
            drawAxes: [(u) => under?.(u)],
            setSelect: [
                (u) => {
                    if (u.select.width < 3) return;
                    const [i, j] = [u.select.left, u.select.left + u.select.width].map((x) =>
                        u.posToIdx(x),
                    );
                    if (i < j) onSelect(i, j);
                },
            ],
        },
    };
}
