// White balance in a plane: r/g and b/g of each region, the gains among them, and the way of a region
// through a run.
import { el, setText } from '../dom.js';
import { extent, flat, Moment, number } from '../model.js';
import { sampled, samples, shownIn, steadyRanges } from '../sources.js';
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

/** The regions of maps of r, g and b at a moment, also those whose ratios are none. */
function regionsAt([r, g, b], moment) {
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

/** Regions as points of the plane, the larger the brighter. */
function regionPoints(regions, hollow, chosen) {
    const brightest = extent(regions.map(({ level }) => level))[1] || 1;
    const part = ({ level }) => Math.sqrt(Math.max(level, 0) / brightest);
    const colour = (at) => (at === chosen ? '--line3' : '--line0');
    return regions.map((region) => ({
        ...region,
        radius: 1.5 + (BRIGHTEST - 1.5) * part(region),
        colour: hollow ? '--muted' : colour(region.at),
        hollow,
        text: `${region.at} ${ratios(region)}, g ${short(region.level)}`,
    }));
}

/** The ratios of one region over a run. */
function regionCourse(run) {
    let way = []; // [place on the axis, r/g, b/g] a sample
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
    const element = el('div', { hidden: true }, course.element, names.element);
    return {
        element,
        /** The region goes `from(n)`; null for none. */
        show(from) {
            way = from ? samples(run.length).map((n) => [run.axis[n], ...from(n)]) : [];
            element.hidden = way.length === 0;
            const gaps = (i) => way.map((at) => (Number.isFinite(at[i]) ? at[i] : null));
            if (from) course.show([way.map(([place]) => place), gaps(1), gaps(2)]);
        },
        /** Where it was, one after another. */
        get points() {
            return way.map(([, x, y]) => ({ x, y })).filter(isKnown);
        },
    };
}

/**
 * @param {Source[]} sources the maps of r, g and b
 * @param {object} options `beside`, the names of the fields that hold gains
 */
export function chromaticity(sources, { beside = [] } = {}) {
    const { run } = sources[0].fields[0];
    const gains = beside.map((name) => run.field(name)).filter(Boolean);
    const varies = sources.some((source) => source.varies);
    const moves = () => varies && run.length > 2;
    const knownAt = (moment) => regionsAt(sources, moment).filter(isKnown);
    const extents = sampled(run, varies, (moment) => extentsOf(knownAt(moment)));
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
    const course = regionCourse(run);
    const region = el(
        'select',
        { 'aria-label': 'region', on: { change: () => choose(region.value) } },
        el('option', { value: '' }, 'A region over time…'),
    );

    function follow() {
        const regionIn = (n) =>
            regionsAt(sources, new Moment(run, n)).find(({ at }) => at === chosen) ?? {};
        const from = (n) => [regionIn(n)].flatMap(({ x, y }) => [x, y]);
        course.show(chosen && moves() ? from : null);
    }
    function choose(at) {
        chosen = at;
        region.value = at;
        follow();
        draw(shown);
    }
    /** Lets one of the regions be chosen as soon as there is a way to follow. */
    function offer({ now }) {
        if (region.options.length === 1 && moves())
            region.append(
                ...regionsAt(sources, now).map(({ at }) => el('option', { value: at }, at)),
            );
        region.hidden = region.options.length < 2;
    }
    /** Says where points lie on each other: there are more than one sees. */
    function tell({ now }) {
        const points = knownAt(now);
        const places = new Set(points.map(({ x, y }) => `${x} ${y}`)).size;
        const apart = places < points.length ? ` in ${places} places` : '';
        const crosses = gains.length ? '; × the gains' : '';
        setText(told, `${points.length} regions${apart}, the larger the brighter${crosses}`);
    }
    function draw(view) {
        const grown = view.now.run.length !== shown?.length;
        shown = { ...view, length: view.now.run.length };
        if (grown && chosen) follow();
        offer(view);
        tell(view);
        const points = shownIn(view).flatMap((moment) => {
            const hollow = moment !== view.now;
            return [
                ...regionPoints(knownAt(moment), hollow, chosen),
                ...gainPoints(gains, moment, hollow),
            ];
        });
        const path = course.points;
        const ranges = steadyRanges(extents(), [extentsOf([...points, ...path])]);
        picture.show(points, ranges, [{ points: path, colour: '--line3' }]);
    }
    return { elements: [...picture.elements, told, region, course.element], draw };
}
