// Pictures the size of a word: a list or the course of a value as a line, a grid as a map.
import { canvas } from '../canvas.js';
import { lineColour, lineDash, sequential } from '../colours.js';
import { svg } from '../dom.js';
import { extent } from '../model.js';
import { paintCells } from './map.js';

const WIDTH = 96;
const HEIGHT = 22;
const round = (x) => Math.round(x * 10) / 10;

/** The points that a line this size can show: of each part of a long one the least and the greatest. */
function shownPoints(list) {
    const part = Math.ceil(list.length / (2 * WIDTH));
    if (part < 3) return list.keys();
    const points = [];
    for (let from = 0; from < list.length; from += part) {
        let [least, most] = [from, from];
        for (let i = from; i < Math.min(from + part, list.length); i++) {
            if (list[i] < list[least] || Number.isNaN(list[least])) least = i;
            if (list[i] > list[most] || Number.isNaN(list[most])) most = i;
        }
        points.push(Math.min(least, most));
        if (least !== most) points.push(Math.max(least, most));
    }
    return points;
}

/**
 * Lines over their index on one scale.
 * @param {number[][]} lists one a line
 * @param {string} name of what they are the elements of
 * @returns {{element: SVGElement, mark(n, a), grow(lists)}} `mark` puts a line at point n and, where
 *     a is not null, another one at point a; `grow` takes lists that have become other ones
 */
export function spark(lists, name = '') {
    let length = 0;
    let range = [0, 0];
    const x = (i) => round(length > 1 ? 1 + (i / (length - 1)) * (WIDTH - 2) : WIDTH / 2);
    const paths = lists.map((_, line) => {
        const path = svg('path', { class: 'spark-line' });
        const colour = lineColour(`${name}[${line}]`, line);
        path.style.stroke = `var(${colour})`;
        path.style.strokeDasharray = lineDash(colour).join(' ');
        return path;
    });
    const cursors = ['spark-b', 'spark-a'].map((name) => svg('path', { class: name }));

    /** Whether so few are new that none of them shows. */
    function shows(grown) {
        const count = extent(grown.map((list) => list.length))[1];
        const beyond = grown.some((list) => list.at(-1) < range[0] || list.at(-1) > range[1]);
        return beyond || count < length || count - length >= length / (2 * WIDTH);
    }

    function grow(grown) {
        if (!shows(grown)) return;
        length = extent(grown.map((list) => list.length))[1];
        range = extent(grown.flatMap((list) => extent(list)));
        const [low, high] = range;
        const place = (value) => (high > low ? (value - low) / (high - low) : 0.5);
        const y = (value) => round(HEIGHT - 2 - place(value) * (HEIGHT - 4));
        paths.forEach((path, line) => {
            const list = grown[line] ?? [];
            let pen = 'M';
            let d = '';
            for (const i of shownPoints(list)) {
                if (Number.isFinite(list[i])) d += `${pen}${x(i)} ${y(list[i])}`;
                pen = Number.isFinite(list[i]) ? 'L' : 'M';
            }
            path.setAttribute('d', d);
        });
    }
    grow(lists);
    return {
        element: svg(
            'svg',
            {
                viewBox: `0 0 ${WIDTH} ${HEIGHT}`,
                class: 'spark',
                'aria-hidden': 'true',
                preserveAspectRatio: 'none',
            },
            ...cursors,
            ...paths,
        ),
        mark(n, a) {
            cursors[0].setAttribute('d', `M${x(n)} 0V${HEIGHT}`);
            cursors[1].setAttribute('d', a === null ? '' : `M${x(a)} 0V${HEIGHT}`);
        },
        grow,
    };
}

/** A grid of numbers as a map the size of a word. */
export function patch(rows) {
    const [low, high] = extent(rows.flat());
    const place = (value) => (high > low ? (value - low) / (high - low) : 0.5);
    const colour = (value) => sequential(place(value));
    const view = canvas(
        (context, width, height) => paintCells(context, width, height, rows, colour),
        {
            width: WIDTH,
            ratio: 1,
            label: `${rows.length} rows of values`,
            className: 'patch',
        },
    );
    view.repaint();
    return view.element;
}
