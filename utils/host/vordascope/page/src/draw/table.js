// Tables of numbers: matrices, and lists side by side.
import { cssOf, diverging, inkOn } from '../colours.js';
import { el, setText } from '../dom.js';
import { extent, printed } from '../model.js';
import { signed } from '../ticks.js';

const sumOf = (values) => values.reduce((sum, value) => sum + Number(value), 0);

/** A value; where it differs from that of the reference that one above it, the difference below. */
function cellOf(before, value, find) {
    if (!find.differ(before, value)) return el('td', {}, printed(value));
    const apart = Number(value) - Number(before);
    return el(
        'td',
        { class: 'changed' },
        el('span', { class: 'before' }, printed(before)),
        el('b', {}, printed(value)),
        el('span', { class: 'apart' }, Number.isFinite(apart) ? signed(apart) : ''),
    );
}

/**
 * @param {{name: string, fields: Field[]}[]} rows a row each: the values of its fields one after
 *     another, those of a grid in rows of their own
 * @param {object} options `columns`, their names; `coloured` by sign and size; `sums` of the rows
 */
export function table(rows, { columns = null, coloured = false, sums = false } = {}) {
    const body = el('tbody');
    const head =
        columns &&
        el(
            'thead',
            {},
            el(
                'tr',
                {},
                el('th'),
                columns.map((name) => el('th', { scope: 'col' }, name)),
            ),
        );
    const element = el('table', { class: 'numbers' }, head, body);

    /** [name, values] of the rows that show at a moment. */
    function valuesAt(moment) {
        return rows.flatMap(({ name, fields }) => {
            const values = fields.map((field) => moment.of(field));
            const grid = values.length === 1 && values[0]?.some?.(Array.isArray);
            return grid ? values[0].map((row) => [name, row]) : [[name, values.flat()]];
        });
    }

    function draw({ now: shown, before: reference, find }) {
        const now = valuesAt(shown);
        const before = reference ? valuesAt(reference) : now;
        const colour = diverging();
        const sizes = now.flatMap(([, values]) => values.map((v) => Math.abs(Number(v)) || 0));
        const largest = extent(sizes)[1] || 1;
        body.replaceChildren(
            ...now.map(([name, values], y) => {
                const cells = values.map((value, x) => {
                    const old = before[y]?.[1][x];
                    const cell = cellOf(old, value, find);
                    if (coloured && Number.isFinite(Number(value))) {
                        const rgb = colour((value / largest) * 0.85);
                        cell.style.background = cssOf(rgb);
                        cell.style.color = inkOn(rgb);
                    }
                    return cell;
                });
                if (sums) {
                    const cell = cellOf(sumOf(before[y]?.[1] ?? []), sumOf(values), find);
                    cell.classList.add('sum');
                    cells.push(cell);
                }
                return el('tr', {}, name === '' ? null : el('th', { scope: 'row' }, name), cells);
            }),
        );
        if (head) setText(head.querySelector('th'), '');
    }
    return { elements: [el('div', { class: 'wide' }, element)], draw };
}
