// White balance in a plane: r/g and b/g of each region, the gains among them, and the way of a region
// through a run.
import { el, setText } from '../dom.js';
import { extent, flat, Moment, number } from '../model.js';
import { samples, shownIn, steadyRange } from '../sources.js';
import { short } from '../ticks.js';
import { chart, legend, padded } from './chart.js';
import { plane } from './plane.js';

/** The radius of the brightest region. */
const BRIGHTEST = 6;

const ratios = ({ x, y }) => `r/g ${short(x)}, b/g ${short(y)}`;
const isKnown = ({ x, y }) => Number.isFinite(x) && Number.isFinite(y);

/** Several regions in one place. */
const together = (points) =>
    `${points.length} regions here: ${points.map(({ at }) => at).join(' ')}, ${ratios(points[0])}`;

/**
 * Where light would be that gains make white, as far as the text tells: it names no channels, but of
 * four values the first over the second and over the third are what r/g and b/g stand against.
 */
function gainPoints(fields, moment, hollow) {
    return fields.flatMap((field) => {
        const [first, second, third] = flat(moment.of(field)).map(number);
        const point = { x: first / second, y: first / third };
        const name = field.key.replace(/\.gain\.val$/, '');
        const enable = moment.run.field(`${field.item}.${name}.enable`);
        if (!isKnown(point) || (enable && String(moment.of(enable)) === '0')) return [];
        const text = `${name}: val[0]/val[1] ${short(point.x)}, val[0]/val[2] ${short(point.y)}`;
        return [{ ...point, text, hollow, radius: 7, colour: '--changed', cross: true }];
    });
}

/**
 * @param {Source[]} sources the maps of r, g and b
 * @param {object} options `beside`, the names of the fields that hold gains
 */
export function chromaticity([r, g, b], { beside = [] } = {}) {
    const { run } = g.fields[0];
    const gains = beside.map((name) => run.field(name)).filter(Boolean);
    const varies = r.varies || g.varies || b.varies;
    const told = el('p', { class: 'plain' });
    let chosen = '';
    let shown = null;
    const picture = plane({
        xName: 'r/g →',
        yName: 'b/g ↑',
        label: 'r/g and b/g of each region',
        equal: true,
        together,
        pick: ({ at }) => at && choose(at === chosen ? '' : at),
    });

    function of(moment) {
        const [reds, greens, blues] = [r, g, b].map((source) => source.rows(moment));
        return greens.flatMap((row, y) =>
            row.map((green, x) => ({
                x: reds[y]?.[x] / green,
                y: blues[y]?.[x] / green,
                level: green,
                at: `[${y}][${x}]`,
            })),
        );
    }
    const extentsOf = (points) => ['x', 'y'].map((axis) => extent(points.map((p) => p[axis])));

    let extents = null;
    function ranges(points) {
        extents ??= samples(varies ? run.length : 1).map((n) =>
            extentsOf(of(new Moment(run, n)).filter(isKnown)),
        );
        const now = extentsOf(points);
        return [0, 1].map((axis) =>
            steadyRange(
                extents.map((both) => both[axis]),
                [now[axis]],
            ),
        );
    }

    // The way of the chosen region: [place on the axis, r/g, b/g] of the snapshots that are sampled.
    let way = [];
    const entries = [
        { name: 'r/g', colour: '--red' },
        { name: 'b/g', colour: '--blue' },
    ];
    const names = legend(entries);
    const course = chart({
        lines: entries,
        height: 110,
        label: 'r/g and b/g of the chosen region over the run',
        range: () => padded(extent(way.flatMap(([, x, y]) => [x, y]).filter(Number.isFinite))),
        xRange: () => extent(way.map(([place]) => place)),
        xText: (x) => (run.timed ? `${short(x)} s` : `#${short(x)}`),
        onHover: (i) => names.read(i === null ? null : way[i].slice(1).map(short)),
    });
    const region = el(
        'select',
        { 'aria-label': 'region', on: { change: () => choose(region.value) } },
        el('option', { value: '' }, 'A region over time…'),
    );
    const below = el('div', { hidden: true }, course.element, names.element);

    function follow() {
        way = [];
        if (chosen && varies && run.length > 2)
            way = samples(run.length).map((n) => {
                const { x, y } = of(new Moment(run, n)).find(({ at }) => at === chosen) ?? {};
                return [run.axis[n], x, y];
            });
        below.hidden = way.length === 0;
        const gaps = (i) => way.map((point) => (Number.isFinite(point[i]) ? point[i] : null));
        if (way.length) course.show([way.map(([place]) => place), gaps(1), gaps(2)]);
    }
    function choose(at) {
        chosen = at;
        region.value = at;
        follow();
        draw(shown);
    }
    function offer(points) {
        if (region.options.length > 1 || !varies || run.length < 3) return;
        region.append(...points.map(({ at }) => el('option', { value: at }, at)));
    }

    function draw(view) {
        const grown = view.now.run.length !== shown?.length;
        shown = { ...view, length: view.now.run.length };
        if (grown && chosen) follow();
        const points = shownIn(view).flatMap((moment) => {
            const hollow = moment !== view.now;
            const all = of(moment);
            if (!hollow) offer(all);
            const known = all.filter(isKnown);
            const brightest = extent(known.map(({ level }) => level))[1] || 1;
            if (!hollow) tell(known);
            return [
                ...known.map((point) => ({
                    ...point,
                    radius:
                        1.5 + (BRIGHTEST - 1.5) * Math.sqrt(Math.max(point.level, 0) / brightest),
                    colour: hollow ? '--muted' : point.at === chosen ? '--line3' : '--line0',
                    hollow,
                    text: `${point.at} ${ratios(point)}, g ${short(point.level)}`,
                })),
                ...gainPoints(gains, moment, hollow),
            ];
        });
        region.hidden = region.options.length < 2;
        const path = way.map(([, x, y]) => ({ x, y })).filter(isKnown);
        picture.show(points, ...ranges([...points, ...path]), [
            { points: path, colour: '--line3' },
        ]);
    }

    /** Says where points lie on each other: there are more than one sees. */
    function tell(points) {
        const places = new Set(points.map(({ x, y }) => `${x} ${y}`)).size;
        const apart = places < points.length ? ` in ${places} places` : '';
        setText(
            told,
            `${points.length} regions${apart}, the larger the brighter${gains.length ? '; × the gains' : ''}`,
        );
    }
    return { elements: [...picture.elements, told, region, below], draw };
}
