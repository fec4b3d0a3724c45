// Curves: lists of numbers over their index, or over another list that ascends.
import uPlot from 'uplot';
import { lineColour } from '../colours.js';
import { el, setText } from '../dom.js';
import { extent } from '../model.js';
import { differ, rangeOf, shownIn } from '../sources.js';
import { signed } from '../ticks.js';
import { chart, legend, padded } from './chart.js';

const ascends = (list) => list.every((x, i) => Number.isFinite(x) && (i === 0 || x > list[i - 1]));
const gaps = (list) => list.map((y) => (Number.isFinite(y) ? y : null));

/** One table of uPlot: x, then y for each curve. */
function tableOf(curves, moment) {
    const tables = curves.map(({ x, y }) => {
        const heights = gaps(y.numbers(moment));
        const places = x ? x.numbers(moment).slice(0, heights.length) : heights.map((_, i) => i);
        return [places, heights.slice(0, places.length)];
    });
    return tables;
}

/** A histogram's shape says more than its size: its scale is that of what shows alone. */
const histogramRange = (sources, shown) => {
    const counts = sources.flatMap((source) => shown.flatMap((moment) => source.numbers(moment)));
    return [0, extent(counts)[1]];
};

/**
 * For each curve the first one that lies where it does, itself where that is none; -1 for those beyond
 * the first so many, which are not in use. The tables are those of the reference, then those of now.
 */
function alike(tables, used) {
    const count = tables.length / 2;
    const texts = Array.from({ length: count }, (_, i) => `${tables[i]}\n${tables[count + i]}`);
    return texts.map((text, i) => (i < used ? texts.indexOf(text) : -1));
}

/**
 * @param {{name: string, x: Source|null, y: Source}[]} curves
 * @param {object} options `stepped` for a histogram; `height` of the chart; `used(view)`, how many of the
 *     curves are in use
 */
export function lines(curves, { stepped = false, height = 150, used = null } = {}) {
    const entries = curves.map(({ name }, i) => ({
        name,
        colour: lineColour(name, i),
        stepped,
        filled: stepped,
    }));
    const before = entries.map((entry) => ({
        ...entry,
        name: `A ${entry.name}`,
        dashed: true,
        filled: false,
    }));
    const ys = curves.map(({ y }) => y);
    const names = legend(entries);
    const note = el('p', { class: 'plain' });
    let data = [[]];
    let range = [0, 1];
    let compared = false;

    const plot = chart({
        lines: [...before, ...entries],
        height,
        label: `curves of ${curves.map(({ name }) => name).join(', ')}`,
        points: curves.some(({ x }) => x),
        range: () => padded(range),
        xRange: () => extent(data[0]),
        onHover(i) {
            if (i === null) return names.read(null);
            const at = data[0][i];
            names.read(
                entries.map((_, line) => {
                    const [a, b] = [1 + line, 1 + curves.length + line].map((of) => data[of]?.[i]);
                    const value = `${at}: ${b ?? '–'}`;
                    if (!compared) return value;
                    const apart =
                        Number.isFinite(a) && Number.isFinite(b) ? `, ${signed(b - a)}` : '';
                    return `${value} (A ${a ?? '–'}${apart})`;
                }),
            );
        },
    });

    function draw(view) {
        const { now, before: reference } = view;
        range = stepped ? histogramRange(ys, shownIn(view)) : rangeOf(ys, shownIn(view));
        compared = differ(
            view,
            curves.flatMap(({ x, y }) => (x ? [x, y] : [y])),
        );
        let tables = [...tableOf(curves, compared ? reference : now), ...tableOf(curves, now)];
        const broken = tables.find(([x]) => !ascends(x));
        setText(note, broken ? 'x does not ascend: drawn over the index' : '');
        if (broken) tables = tables.map(([, y]) => [y.map((_, i) => i), y]);
        data = uPlot.join(tables);
        const empty = data[0].length === 0;
        plot.element.hidden = empty;
        if (empty) return setText(note, 'no numbers');
        const first = alike(tables, used?.(view) ?? curves.length);
        names.gather(first);
        const own = entries.map((_, i) => first[i] === i);
        plot.show(data, [...own.map((shows) => compared && shows), ...own]);
    }
    return { elements: [plot.element, names.element, note], draw };
}
