// Maps: the values of a grid as colours, several grids on one scale; in a comparison also how the
// second snapshot differs from the first.
import { canvas } from '../canvas.js';
import { cssOf, diverging, inkOn, sequential } from '../colours.js';
import { cursor, inGrid } from '../cursor.js';
import { el, setText } from '../dom.js';
import { extent } from '../model.js';
import { differ, rangeOf, shownIn, wholeRange } from '../sources.js';
import { short } from '../ticks.js';

const place = (value, [low, high]) => (high > low ? (value - low) / (high - low) : 0.5);

/** The most columns of the rows, which may be ragged. */
const widthOf = (rows) => rows.reduce((most, row) => Math.max(most, row.length), 1);

/** The height for a width that makes cells squares; a single row is no hair, nor a column a pillar. */
const shapeOf = (rows) => Math.min(Math.max(rows.length / widthOf(rows), 1 / 8), 2);

const easel = new OffscreenCanvas(1, 1);
const brush = easel.getContext('2d', { willReadFrequently: true });

/** Fills a canvas with a cell a value, in its colour; what is no number is left out. */
export function paintCells(context, width, height, rows, colour) {
    const columns = widthOf(rows);
    if (!context.drawImage) {
        const [w, h] = [width / columns, height / rows.length];
        rows.forEach((row, y) => {
            row.forEach((value, x) => {
                context.fillStyle = cssOf(colour(value));
                if (!Number.isNaN(value)) context.fillRect(x * w, y * h, w, h);
            });
        });
        return;
    }
    const pixels = new ImageData(columns, Math.max(1, rows.length));
    rows.forEach((row, y) => {
        row.forEach((value, x) => {
            if (Number.isNaN(value)) return;
            const at = (y * columns + x) * 4;
            const [red, green, blue] = colour(value);
            pixels.data[at] = red;
            pixels.data[at + 1] = green;
            pixels.data[at + 2] = blue;
            pixels.data[at + 3] = 255;
        });
    });
    easel.width = pixels.width;
    easel.height = pixels.height;
    brush.putImageData(pixels, 0, 0);
    context.imageSmoothingEnabled = false;
    context.drawImage(easel, 0, 0, width, height);
}

/** How wide a digit is for its height. */
const DIGIT = 0.6;

function paintTexts(context, width, height, rows, colour) {
    const w = width / widthOf(rows);
    const h = height / rows.length;
    const written = (value) => (Number.isInteger(value) ? String(value) : value.toFixed(2));
    const known = rows.flat().filter((value) => !Number.isNaN(value));
    const longest = Math.max(...known.map((value) => written(value).length));
    const size = Math.min(12, (w - 3) / (longest * DIGIT));
    // Among others one that has no room would be missed, or taken for another one.
    if (size < 8) return;
    context.font = `${size}px system-ui, sans-serif`;
    context.textAlign = 'center';
    context.textBaseline = 'middle';
    rows.forEach((row, y) => {
        row.forEach((value, x) => {
            if (Number.isNaN(value)) return;
            context.fillStyle = inkOn(colour(value));
            context.fillText(written(value), (x + 0.5) * w, (y + 0.5) * h);
        });
    });
}

/** A frame around a cell that shows on every colour. */
export function paintFrame(context, x, y, width, height) {
    for (const [colour, line] of [
        ['#fff', 3],
        ['#000', 1],
    ]) {
        context.strokeStyle = colour;
        context.lineWidth = line;
        context.strokeRect(x, y, width, height);
    }
}

/**
 * One map.
 * @param {string} name its caption
 * @param {object} options `text` writes the numbers into the cells; `pick(row, column)` is called
 *     for a cell that is chosen
 * @returns {{element, show(rows, colour, caption)}} the rows and the colour of a value
 */
function mapView(name, { text = false, pick = null } = {}) {
    let rows = [];
    let colour = () => [0, 0, 0];
    let marked = null;
    const caption = el('span', { class: 'caption-name' }, name);
    const reading = el('span', { class: 'reading' });
    const view = canvas(
        (context, width, height) => {
            paintCells(context, width, height, rows, colour);
            if (text) paintTexts(context, width, height, rows, colour);
            if (marked === null) return;
            const [row, column] = cellOf(marked);
            const [w, h] = [width / widthOf(rows), height / rows.length];
            paintFrame(context, column * w, row * h, w, h);
        },
        { ratio: 1, label: name },
    );
    const cellOf = (place) => [Math.floor(place / widthOf(rows)), place % widthOf(rows)];
    const cells = cursor(view.element, {
        ends: () => [0, rows.length * widthOf(rows) - 1],
        move: (...step) => inGrid(widthOf(rows))(...step),
        at(x, y, width, height) {
            const row = Math.floor((y / height) * rows.length);
            const columns = widthOf(rows);
            const column = Math.min(Math.floor((x / width) * columns), columns - 1);
            return Math.min(row, rows.length - 1) * columns + column;
        },
        read(place, keys) {
            if (keys) {
                marked = place;
                view.repaint();
            }
            if (place === null) return setText(reading, '');
            const [row, column] = cellOf(place);
            const value = rows[row]?.[column];
            const whole = text || Number.isInteger(value);
            if (value !== undefined)
                setText(reading, `[${row}][${column}] ${whole ? value : short(value)}`);
            return reading.textContent;
        },
        pick: pick && ((place) => pick(...cellOf(place))),
    });
    return {
        element: el(
            'figure',
            { class: 'map' },
            view.element,
            el('figcaption', {}, caption, reading),
        ),
        rename: (text) => setText(caption, text),
        show(newRows, newColour, label) {
            rows = newRows;
            colour = newColour;
            view.element.setAttribute('aria-label', label);
            view.reshape(shapeOf(rows));
            view.repaint();
            cells.refresh();
        },
    };
}

/**
 * The scale beneath maps, from the least to the greatest value. `rampNow()` gives the colours from
 * 0 to 1 in the theme that shows now.
 */
export function scaleBar(rampNow) {
    const low = el('span');
    const high = el('span');
    const name = el('span', { class: 'scale-name' });
    const bar = canvas(
        (context, width, height) => {
            const gradient = context.createLinearGradient(0, 0, width, 0);
            const ramp = rampNow();
            for (let t = 0; t <= 1; t += 1 / 16) gradient.addColorStop(t, cssOf(ramp(t)));
            context.fillStyle = gradient;
            context.fillRect(0, 0, width, height);
        },
        { height: 8, label: 'colour scale' },
    );
    return {
        element: el('div', { class: 'scale' }, name, low, bar.element, high),
        show([from, to], text = '') {
            setText(name, text);
            setText(low, short(from));
            setText(high, short(to));
            bar.repaint();
        },
    };
}

/** Two grids, place by place. */
const byPlace = (b, a, of) =>
    b.map((row, y) => row.map((value, x) => of(value, a[y]?.[x] ?? Number.NaN)));

/** How two snapshots of a source differ as a map: what it says, from which two numbers, around which. */
const CHANGES = [
    { name: 'B − A', of: (b, a) => b - a, zero: 0 },
    { name: 'B ÷ A', of: (b, a) => b / a, zero: 1 },
];

/** The map of such a change, on a scale to both sides of where nothing differs. */
function changeMap({ name, of, zero }, source, options) {
    const map = mapView(name, options);
    const scale = scaleBar(() => {
        const colour = diverging();
        return (t) => colour(t * 2 - 1);
    });
    return {
        element: el('div', {}, map.element, scale.element),
        draw(after, before) {
            const rows = byPlace(after, before, of);
            const known = rows.flat().filter(Number.isFinite);
            const largest = extent(known.map((value) => Math.abs(value - zero)))[1] || 1;
            const colour = diverging();
            map.show(
                rows,
                (value) => colour((value - zero) / largest),
                `${source.name}, ${name}: ${extent(known).map(short).join(' to ')}`,
            );
            scale.show([zero - largest, zero + largest]);
        },
    };
}

/** One source: its map, in a comparison those of A and of what differs too; or, all the same, a line. */
function block(source, options) {
    const views = { now: mapView(source.name, options) };
    const scale = scaleBar(() => sequential);
    const places = el('div', { class: 'maps', data: { count: 1 } }, views.now.element);
    const plain = el('p', { class: 'plain' });
    const element = el('div', { class: 'map-group' }, plain, places, scale.element);
    let changes = null;

    function paint(map, name, rows, range) {
        const ends = extent(rows.flat());
        const label = `${name}: ${ends.join(' to ')}`;
        map.rename(name);
        map.show(rows, (value) => sequential(place(value, range)), label);
    }

    function drawChanges(after, before, range) {
        if (!changes) {
            views.before = mapView('A', options);
            changes = CHANGES.map((change) => changeMap(change, source, options));
            places.prepend(views.before.element);
            places.append(...changes.map((change) => change.element));
        }
        paint(views.before, `A ${source.name}`, before, range);
        for (const change of changes) change.draw(after, before);
    }

    function draw(view, together) {
        const after = source.rows(view.now);
        const held = differ(view, [source]);
        const before = held ? source.rows(view.before) : after;
        const compared = view.find.differ(before, after);
        const shown = rangeOf(together, shownIn(view));
        const [lowest, highest] = extent([...wholeRange([source]), ...after.flat()]);
        const flatLine = !(highest > lowest) && !compared;
        places.hidden = scale.element.hidden = flatLine;
        const all = Number.isNaN(lowest) ? 'no numbers' : `all ${lowest}`;
        const equal = held && !compared ? `${source.name}: A = B` : '';
        setText(plain, flatLine ? `${source.name}: ${all}` : equal);
        if (flatLine) return;
        places.dataset.count = compared ? '4' : '1';
        places.classList.toggle('compared', compared);
        paint(views.now, compared ? `B ${source.name}` : source.name, after, shown);
        scale.show(shown);
        if (compared) drawChanges(after, before, shown);
        for (const one of [views.before, ...(changes ?? [])])
            if (one) one.element.hidden = !compared;
    }
    return { element, draw };
}

/** Grids as maps, each on its own scale, or all on one where somebody asks for that. */
export function maps(sources, options = {}) {
    const blocks = sources.map((source) => block(source, options));
    let together = false;
    let view = null;
    const draw = (shown) => {
        view = shown;
        blocks.forEach((one, i) => {
            one.draw(view, together ? sources : [sources[i]]);
        });
    };
    const choice = el('button', { type: 'button', 'aria-pressed': 'false' }, 'One scale');
    choice.addEventListener('click', () => {
        together = !together;
        choice.setAttribute('aria-pressed', String(together));
        draw(view);
    });
    const asked = sources.length > 1 && !options.apart;
    const count = Math.min(blocks.length, 2);
    return {
        elements: [
            asked ? el('div', { class: 'choice map-scale' }, choice) : [],
            el(
                'div',
                { class: 'maps', data: { count } },
                blocks.map(({ element }) => element),
            ),
        ].flat(),
        draw,
    };
}
