// Maps: the values of a grid as colours, several grids on one scale; in a comparison also how the
// second snapshot differs from the first.
import { canvas, pointerAt } from '../canvas.js';
import { cssOf, diverging, inkOn, sequential } from '../colours.js';
import { el, setText } from '../dom.js';
import { extent } from '../model.js';
import { differ, rangeOf, shownIn, wholeRange } from '../sources.js';
import { short } from '../ticks.js';

const place = (value, [low, high]) => (high > low ? (value - low) / (high - low) : 0.5);

/** The most columns of the rows, which may be ragged. */
const widthOf = (rows) => rows.reduce((most, row) => Math.max(most, row.length), 1);

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
            if (!Number.isNaN(value))
                pixels.data.set([...colour(value), 255], (y * columns + x) * 4);
        });
    });
    easel.width = pixels.width;
    easel.height = pixels.height;
    brush.putImageData(pixels, 0, 0);
    context.imageSmoothingEnabled = false;
    context.drawImage(easel, 0, 0, width, height);
}

function paintTexts(context, width, height, rows, colour) {
    const w = width / widthOf(rows);
    const h = height / rows.length;
    context.font = `${Math.min(12, Math.floor(w / 2.4))}px system-ui, sans-serif`;
    context.textAlign = 'center';
    context.textBaseline = 'middle';
    rows.forEach((row, y) => {
        row.forEach((value, x) => {
            if (Number.isNaN(value)) return;
            context.fillStyle = inkOn(colour(value));
            context.fillText(String(value), (x + 0.5) * w, (y + 0.5) * h);
        });
    });
}

/**
 * One map.
 * @param {string} name its caption
 * @param {object} options `text` writes the numbers into the cells; `pick(row, column)` is called
 *     for a cell that is clicked; `tall`, height for a width
 * @returns {{element, show(rows, colour, caption)}} the rows and the colour of a value
 */
function mapView(name, { text = false, pick = null, tall = 1 } = {}) {
    let rows = [];
    let colour = () => [0, 0, 0];
    const caption = el('span', { class: 'caption-name' }, name);
    const reading = el('span', { class: 'reading' });
    const view = canvas(
        (context, width, height) => {
            paintCells(context, width, height, rows, colour);
            if (text) paintTexts(context, width, height, rows, colour);
        },
        { ratio: tall, label: name },
    );
    const cellAt = (event) => {
        const [x, y, width, height] = pointerAt(event);
        const row = Math.min(Math.floor((y / height) * rows.length), rows.length - 1);
        const columns = widthOf(rows);
        return [row, Math.min(Math.floor((x / width) * columns), columns - 1)];
    };
    view.element.addEventListener('pointermove', (event) => {
        const [row, column] = cellAt(event);
        const value = rows[row]?.[column];
        if (value !== undefined)
            setText(
                reading,
                `[${row}][${column}] ${text || Number.isInteger(value) ? value : short(value)}`,
            );
    });
    view.element.addEventListener('pointerleave', () => setText(reading, ''));
    if (pick) {
        view.element.classList.add('pick');
        view.element.addEventListener('click', (event) => pick(...cellAt(event)));
    }
    return {
        element: el(
            'figure',
            { class: 'map' },
            view.element,
            el('figcaption', {}, caption, reading),
        ),
        show(newRows, newColour, label) {
            rows = newRows;
            colour = newColour;
            view.element.setAttribute('aria-label', label);
            view.repaint();
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

/** B - A, place by place. */
const minus = (b, a) => b.map((row, y) => row.map((value, x) => value - (a[y]?.[x] ?? Number.NaN)));

/** Maps that share a scale; values that are all the same are a line of text instead. */
function group(sources, options) {
    const views = sources.map((source) => ({
        source,
        map: mapView(source.name, options),
        change: mapView(`${source.name} B − A`, options),
    }));
    const places = (of) =>
        el(
            'div',
            { class: 'maps', data: { count: views.length } },
            views.map((view) => view[of].element),
        );
    const scale = scaleBar(() => sequential);
    const changeScale = scaleBar(() => {
        const colour = diverging();
        return (t) => colour(t * 2 - 1);
    });
    const now = el('div', {}, places('map'), scale.element);
    const changes = el('div', {}, places('change'), changeScale.element);
    const plain = el('p', { class: 'plain' });
    const plainChange = el('p', { class: 'plain' });

    function drawNow(moment, range) {
        for (const { source, map } of views) {
            const rows = source.rows(moment);
            const [low, high] = extent(rows.flat());
            map.show(
                rows,
                (value) => sequential(place(value, range)),
                `${source.name}: ${low} to ${high}`,
            );
        }
        scale.show(range);
    }

    function drawChanges({ now: after, before }) {
        const differences = views.map(({ source }) =>
            minus(source.rows(after), source.rows(before)),
        );
        const [low, high] = extent(differences.flat(2));
        changes.hidden = low === high;
        setText(plainChange, low === high ? `B − A: all ${low}` : '');
        if (low === high) return;
        const largest = Math.max(Math.abs(low), Math.abs(high));
        const colour = diverging();
        views.forEach(({ source, change }, i) => {
            const label = `${source.name}, difference`;
            change.show(differences[i], (value) => colour(value / largest), label);
        });
        changeScale.show([-largest, largest], 'B − A');
    }

    const [lowest, highest] = wholeRange(sources);
    if (!(highest > lowest)) {
        const all = Number.isNaN(lowest) ? 'no numbers' : `all ${lowest}`;
        setText(plain, `${sources.map(({ name }) => name).join(', ')}: ${all}`);
        now.hidden = changes.hidden = true;
    }

    function draw(view) {
        if (now.hidden) return;
        drawNow(view.now, rangeOf(sources, shownIn(view)));
        setText(plainChange, '');
        changes.hidden = true;
        if (differ(view, sources)) drawChanges(view);
    }
    return { element: el('div', { class: 'map-group' }, plain, now, changes, plainChange), draw };
}

/** Grids as maps, on one scale or, with the option `apart`, on one each. */
export function maps(sources, options = {}) {
    const groups = (options.apart ? sources.map((source) => [source]) : [sources]).map((part) =>
        group(part, options),
    );
    const count = Math.min(groups.length, 2);
    return {
        elements: [
            el(
                'div',
                { class: 'maps', data: { count } },
                groups.map(({ element }) => element),
            ),
        ],
        draw(view) {
            for (const { draw } of groups) draw(view);
        },
    };
}
