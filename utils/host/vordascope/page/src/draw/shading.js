// Lens shading: its tables as maps, a section through them and the surface.
import { canvas } from '../canvas.js';
import { cssOf, sequential } from '../colours.js';
import { el, setText } from '../dom.js';
import { wholeRange } from '../sources.js';
import { lines } from './lines.js';
import { maps } from './map.js';

const TURN = { angle: Math.PI / 4, tilt: 1.05 };

/** The corners of the mesh on the canvas: a turn about the vertical, then a tilt towards us. */
function project(rows, [low, high], turn, width, height) {
    const [sin, cos] = [Math.sin(turn.angle), Math.cos(turn.angle)];
    const [sinTilt, cosTilt] = [Math.sin(turn.tilt), Math.cos(turn.tilt)];
    const scale = Math.min(width / 1.45, height / 1.2);
    return rows.map((row, y) =>
        row.map((value, x) => {
            const across = x / (row.length - 1) - 0.5;
            const along = y / (rows.length - 1) - 0.5;
            const up = high > low ? (value - low) / (high - low) - 0.5 : 0;
            const right = across * cos - along * sin;
            const deep = across * sin + along * cos;
            return {
                x: width / 2 + right * scale,
                y: height / 2 + (deep * cosTilt - up * 0.62 * sinTilt) * scale,
                // The larger, the nearer to the eye.
                near: deep * sinTilt + up * 0.62 * cosTilt,
                level: up + 0.5,
            };
        }),
    );
}

/** The patches of the mesh from the farthest to the nearest. */
function patches(mesh) {
    const all = [];
    for (let y = 0; y + 1 < mesh.length; ++y) {
        for (let x = 0; x + 1 < mesh[y].length; ++x) {
            const corners = [mesh[y][x], mesh[y][x + 1], mesh[y + 1][x + 1], mesh[y + 1][x]];
            if (corners.some((corner) => !corner || Number.isNaN(corner.y))) continue;
            const mean = (of) => corners.reduce((sum, corner) => sum + corner[of], 0) / 4;
            all.push({ corners, near: mean('near'), level: mean('level') });
        }
    }
    return all.sort((p, q) => p.near - q.near);
}

/** The surface of one of the sources, which turns with the pointer or the arrow keys. */
function surface(sources) {
    const turn = { ...TURN };
    let rows = [];
    let shown = sources[0];
    const view = canvas(
        (context, width, height) => {
            const mesh = project(rows, wholeRange(sources), turn, width, height);
            context.lineWidth = 0.5;
            context.strokeStyle = 'rgb(255 255 255 / 0.45)';
            for (const { corners, level } of patches(mesh)) {
                context.fillStyle = cssOf(sequential(level));
                context.beginPath();
                for (const { x, y } of corners) context.lineTo(x, y);
                context.closePath();
                context.fill();
                context.stroke();
            }
        },
        {
            ratio: 0.8,
            label: 'surface; turn it with the pointer or the arrow keys',
            className: 'turn',
        },
    );
    const { element } = view;
    element.tabIndex = 0;

    function turnBy(angle, tilt) {
        turn.angle += angle;
        turn.tilt = Math.min(Math.max(turn.tilt + tilt, 0.2), 1.5);
        view.repaint();
    }
    element.addEventListener('pointerdown', (event) => element.setPointerCapture(event.pointerId));
    element.addEventListener('pointermove', (event) => {
        if (element.hasPointerCapture(event.pointerId))
            turnBy(event.movementX / 120, -event.movementY / 120);
    });
    const arrows = {
        ArrowLeft: [-0.1, 0],
        ArrowRight: [0.1, 0],
        ArrowUp: [0, 0.1],
        ArrowDown: [0, -0.1],
    };
    element.addEventListener('keydown', (event) => {
        const by = arrows[event.key];
        if (!by) return;
        turnBy(...by);
        event.preventDefault();
        event.stopPropagation();
    });

    let last = null;
    const choice = choose(
        'surface',
        sources.map(({ name }) => name),
        (i) => {
            shown = sources[i];
            draw({ now: last });
        },
    );
    function draw({ now }) {
        last = now;
        rows = shown.rows(now);
        view.repaint();
    }
    return { element: el('div', {}, choice, element), draw };
}

/** Buttons of which one is pressed. */
function choose(label, names, onChoose) {
    const buttons = names.map((name, i) =>
        el(
            'button',
            { type: 'button', 'aria-pressed': String(i === 0), on: { click: () => press(i) } },
            name,
        ),
    );
    function press(chosen) {
        buttons.forEach((button, i) => {
            button.setAttribute('aria-pressed', String(i === chosen));
        });
        onChoose(chosen);
    }
    return el('div', { class: 'choice', role: 'group', 'aria-label': label }, buttons);
}

/** One row or column of a source, as a source of its own for a curve. */
class Section {
    constructor(source) {
        this.source = source;
        this.varies = source.varies;
        this.row = null;
        this.column = null;
    }

    numbers(moment) {
        const rows = this.source.rows(moment);
        if (this.column !== null) return rows.map((row) => row[this.column]);
        return rows[this.row ?? rows.length >> 1] ?? [];
    }

    extents() {
        return this.source.extents();
    }
}

/** The shading tables of one sensor. */
export function shading(sources) {
    let now = null;
    const sections = sources.map((source) => new Section(source));
    const title = el('p', { class: 'reading-line' });
    const pick = (row, column) => {
        const byRow = choice === 0;
        for (const section of sections) {
            section.row = byRow ? row : null;
            section.column = byRow ? null : column;
        }
        setText(title, byRow ? `row ${row}` : `column ${column}`);
        profile.draw(now);
    };
    let choice = 0;
    let last = [null, null];
    const overview = maps(sources, {
        pick: (row, column) => {
            last = [row, column];
            pick(row, column);
        },
    });
    const profile = lines(
        sections.map((section) => ({ name: section.source.name, x: null, y: section })),
        { height: 260 },
    );
    const relief = surface(sources);
    const direction = choose('section', ['row', 'column'], (chosen) => {
        choice = chosen;
        const rows = sources[0].rows(now.now);
        pick(last[0] ?? rows.length >> 1, last[1] ?? (rows[0]?.length ?? 0) >> 1);
    });

    return {
        elements: [
            el(
                'div',
                { class: 'shading' },
                el('div', {}, overview.elements),
                el(
                    'div',
                    {},
                    el('div', { class: 'choice-line' }, direction, title),
                    profile.elements,
                ),
                relief.element,
            ),
        ],
        draw(view) {
            now = view;
            if (!title.textContent)
                setText(
                    title,
                    `row ${sources[0].rows(view.now).length >> 1}: click a map for another one`,
                );
            overview.draw(view);
            profile.draw(view);
            relief.draw(view);
        },
    };
}
