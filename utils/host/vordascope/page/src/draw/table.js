// Tables of numbers: matrices, and lists side by side.
import { cssOf, diverging, inkOn } from '../colours.js';
import { el, setText } from '../dom.js';
import { extent, printed } from '../model.js';

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
                    const cell = el('td', {}, printed(value));
                    if (find.differ(old, value)) {
                        cell.classList.add('changed');
                        cell.title = `A: ${printed(old)}`;
                    }
                    if (coloured && Number.isFinite(Number(value))) {
                        const rgb = colour((value / largest) * 0.85);
                        cell.style.background = cssOf(rgb);
                        cell.style.color = inkOn(rgb);
                    }
                    return cell;
                });
                if (sums)
                    cells.push(
                        el(
                            'td',
                            { class: 'sum' },
                            String(values.reduce((sum, v) => sum + Number(v), 0)),
                        ),
                    );
                return el('tr', {}, name === '' ? null : el('th', { scope: 'row' }, name), cells);
            }),
        );
        if (head) setText(head.querySelector('th'), '');
    }
    return { elements: [el('div', { class: 'wide' }, element)], draw };
}
