// The course of values over a run: charts on one time axis, in which a drag measures a step.
import { lineColour } from './colours.js';
import { el, setText } from './dom.js';
import { chart, legend, padded } from './draw/chart.js';
import { COURSES } from './known.js';
import { extent } from './model.js';
import { measureStep, stepText } from './step.js';

/** The lines of a chart: one a field, or one an element of a list. */
function linesOf(run, names) {
    return Object.entries(names).flatMap(([name, of]) => {
        const field = run.field(of);
        if (!field) return [];
        const values = field.courses;
        return values.map((list, i) => ({
            name: values.length > 1 ? `${name}[${i}]` : name,
            values: list,
            field,
        }));
    });
}

class Course {
    constructor(run, store, title, lines, remove = null) {
        this.run = run;
        this.lines = lines.map((line, i) => ({ ...line, colour: lineColour('', i) }));
        const range = extent(lines.flatMap(({ values }) => extent(values)));
        this.markers = ['marker marker-a', 'marker marker-b'].map((name) =>
            el('div', { class: name }),
        );
        this.legend = legend(this.lines);
        this.measured = el('ul', { class: 'measured' });
        this.chart = chart({
            lines: this.lines,
            height: 140,
            label: `${title} over time`,
            range: () => padded(range),
            xRange: () => extent(run.axis),
            sync: 'time',
            onSelect: (i, j) => store.set({ step: [i, j] }),
            onPick: (i, event) =>
                store.set(event.shiftKey ? { a: i, against: store.view.run } : { n: i }),
            onHover: (i) => this.read(i),
            onResize: () => this.mark(store.view),
        });
        const names = [...new Set(lines.map(({ field }) => field.name))];
        this.element = el(
            'article',
            { class: 'card', data: { title } },
            el(
                'header',
                {},
                el('h3', {}, title),
                this.legend.element,
                el('code', {}, names.length === 1 ? names[0] : lines[0].field.item),
                remove &&
                    el(
                        'button',
                        {
                            type: 'button',
                            class: 'quiet',
                            'aria-label': `remove ${title}`,
                            on: { click: remove },
                        },
                        '×',
                    ),
            ),
            this.chart.element,
            this.measured,
        );
    }

    read(i) {
        const at = i ?? this.n;
        this.legend.read(
            this.lines.map(({ values }) =>
                Number.isFinite(values[at]) ? String(values[at]) : '–',
            ),
        );
    }

    update(view, changed) {
        this.n = view.n;
        if (changed.has('theme') || !this.chart.plot) {
            const gaps = this.lines.map(({ values }) =>
                Array.from(values, (y) => (Number.isFinite(y) ? y : null)),
            );
            this.chart.show([this.run.axis, ...gaps]);
            this.chart.plot.over.append(...this.markers);
        }
        this.read(null);
        this.mark(view);
        if (!changed.has('step')) return;
        const texts = view.step
            ? this.lines.map(({ name, values }) => {
                  const text = stepText(
                      measureStep(values, ...view.step),
                      this.run.axis,
                      this.run.timed,
                  );
                  return this.lines.length > 1 ? `${name}: ${text}` : text;
              })
            : [];
        this.measured.replaceChildren(...texts.map((text) => el('li', {}, text)));
    }

    /** Puts the markers and the selection where they belong. */
    mark({ n, against, a, run: shown, step }) {
        const { plot } = this.chart;
        if (!plot) return;
        [against === shown ? a : null, n].forEach((at, i) => {
            this.markers[i].hidden = at === null;
            if (at !== null)
                this.markers[i].style.left = `${plot.valToPos(this.run.axis[at], 'x')}px`;
        });
        if (step) this.chart.select(...step);
        else this.chart.clear();
    }
}

/** The section; null for less than three snapshots, which have no course. */
export function timeSection(run, store) {
    if (run.length < 3) return null;
    const grid = el('div', { class: 'courses' });
    const steady = el('p', { class: 'plain' });
    const known = COURSES.map(([title, names]) => [title, linesOf(run, names)]).filter(
        ([, lines]) => lines.length,
    );
    const moving = known.filter(([, lines]) => lines.some(({ field }) => field.varies));
    const still = known.filter((entry) => !moving.includes(entry)).map(([title]) => title);
    setText(steady, still.length ? `Steady over the run: ${still.join(', ')}.` : '');

    const shown = moving.map(([title, lines]) => new Course(run, store, title, lines));
    const added = new Map();
    const candidates = run.fields.filter((field) => field.charted);
    const choice = el(
        'select',
        { 'aria-label': 'add a chart of a field' },
        el('option', { value: '' }, 'Add a field…'),
        candidates.map((field) => el('option', { value: field.name }, field.name)),
    );
    choice.addEventListener('change', () => {
        if (choice.value) store.set({ added: [...new Set([...store.view.added, choice.value])] });
        choice.value = '';
    });

    function follow(view, changed) {
        for (const [name, course] of added) {
            if (view.added.includes(name)) continue;
            course.element.remove();
            added.delete(name);
        }
        for (const name of view.added) {
            const lines = added.has(name)
                ? []
                : linesOf(run, { [run.field(name)?.key ?? '']: name });
            if (lines.length === 0) continue;
            const remove = () =>
                store.set({ added: store.view.added.filter((other) => other !== name) });
            const course = new Course(run, store, name, lines, remove);
            added.set(name, course);
            grid.append(course.element);
            course.update(view, new Set(['step']));
        }
        for (const course of [...shown, ...added.values()]) course.update(view, changed);
    }
    grid.append(...shown.map((course) => course.element));
    const hint = el(
        'p',
        { class: 'hint' },
        'Drag across a chart to measure a step; click to go to a snapshot, with Shift to compare with it.',
    );
    return {
        id: 'time',
        title: 'Time',
        element: el(
            'div',
            {},
            grid,
            el('div', { class: 'below' }, candidates.length ? choice : null, hint, steady),
        ),
        update: follow,
        empty: () => false,
    };
}
