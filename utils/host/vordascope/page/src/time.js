// The course of values over a run: charts on one time axis, in which a drag measures a response, over
// those of the run that it is held against.
import { axesOf, MARKS, placeText } from './against.js';
import { answersTable } from './answers.js';
import { CourseChart } from './coursechart.js';
import { computedLine, elementLine, isLong, linesOf } from './courses.js';
import { el, setText } from './dom.js';
import { History } from './history.js';
import { COMPUTED, COURSES, HISTORIES } from './known.js';
import { hold } from './lifetime.js';
import { extent, Moment, textOf } from './model.js';
import { overview } from './overview.js';
import { adder, controls } from './timecontrols.js';
import { moved, zoomed } from './zoom.js';

/** The narrowest part that shows, in snapshots. */
const LEAST = 4;

/** What cannot be seen follows when the view has rested for so long, in milliseconds. */
const REST = 200;

const HINT =
    'Drag across a chart to measure the response; click to go to a snapshot, with Shift to ' +
    'compare with it. The wheel zooms, a double click shows all. With keys: Tab to a chart, arrows ' +
    'read it, with Shift they measure, Enter does what a click does; + and − zoom, 0 shows all.';

/** The snapshots before which some are missing. */
const missingOf = (run) => [...run.missed.keys()].filter((n) => n > 0);

/** The charts that a run has without being asked, as [title, lines, options] or [title, field] each. */
function chartsOf(run) {
    const known = [
        ...COURSES.map(([title, names]) => [title, linesOf(run, names)]),
        ...COMPUTED.map((one) => [one.title, computedLine(run, one), { note: one.formula }]),
    ].filter(([, lines]) => lines.length);
    const moving = known.filter(([, lines]) => lines.some(({ varies }) => varies));
    const still = known.filter((entry) => !moving.includes(entry)).map(([title]) => title);
    const histories = HISTORIES.map(([title, name]) => [title, run.field(name)]).filter(
        ([, field]) => isLong(field),
    );
    return { moving, still, histories };
}

/** The section. */
class TimeSection {
    id = 'time';
    title = 'Time';
    empty = () => false;

    constructor(run, store) {
        this.run = run;
        this.store = store;
        this.view = store.view;
        this.axes = axesOf({ now: { run }, before: null });
        this.missing = missingOf(run);
        this.table = answersTable();
        this.added = new Map();
        const { moving, still, histories } = chartsOf(run);
        this.still = still;
        this.cards = [
            ...moving.map((entry) => new CourseChart(this, ...entry)),
            ...histories.map((entry) => new History(this, ...entry)),
        ];
        this.grid = el('div', { class: 'courses' });
        this.grid.append(...this.cards.map(({ element }) => element));
        this.said = el('p', { class: 'plain' });
        this.steady = el('p', { class: 'plain' });
        this.marks = el('p', { class: 'marks' });
        this.tellMarks();
        this.strip = overview(this.course(), {
            whole: () => this.whole(),
            axis: () => this.axes.now,
            text: (place) => placeText(place, this.axes.timed),
            least: () => this.least(),
            set: (zoom) => store.set({ zoom }),
        });
        this.controls = controls(run, store);
        this.element = el(
            'div',
            {},
            this.controls.element,
            this.strip.element,
            this.marks,
            this.said,
            this.grid,
            this.table.element,
            el(
                'div',
                { class: 'below' },
                adder(run, store),
                el('p', { class: 'hint' }, HINT),
                this.steady,
            ),
        );
        this.watch();
    }

    /** Notices which cards can be seen. */
    watch() {
        this.observer = new IntersectionObserver((entries) => {
            for (const { target, isIntersecting } of entries) target.card.visible = isIntersecting;
        });
        for (const { element } of this.cards) this.observer.observe(element);
        hold(() => this.observer.disconnect());
        hold(() => clearTimeout(this.resting));
    }

    /** All cards, those that were asked for last. */
    get all() {
        return [...this.cards, ...this.added.values()];
    }

    /** What the strip draws: the first line of all. */
    course() {
        return this.cards[0]?.lines[0]?.of(this.run) ?? new Float64Array(this.run.length);
    }

    /** Tells apart what the charts have drawn from what is no continuation of it. */
    get key() {
        return `${this.run.first} ${this.axes.timed}`;
    }

    /** What was noted, each to go there. Returns whether that is other than before. */
    tellMarks() {
        const { marks } = this.run;
        if (this.told === marks.length && this.toldFirst === marks[0]) return false;
        this.told = marks.length;
        this.toldFirst = marks[0];
        this.marks.replaceChildren(
            ...marks.map((mark) => {
                const place = this.run.placeOf(mark[0]);
                const go = () => this.store.set({ n: mark[0] });
                const more = { type: 'button', class: 'quiet', title: place, on: { click: go } };
                return el('button', more, el('bdi', {}, textOf(mark[1])));
            }),
        );
        return true;
    }

    /** The ends of the axis, of both runs. */
    whole() {
        const { now, before } = this.axes;
        const ends = [now, before ?? now].flatMap((axis) => [axis[0], axis[axis.length - 1]]);
        const [first, last] = extent(ends);
        return first === last ? [first - 1, last + 1] : [first, last];
    }

    /** The part of it that shows. */
    part() {
        return this.view.zoom ?? this.whole();
    }

    least() {
        const { now } = this.axes;
        return (LEAST * (now[now.length - 1] - now[0])) / Math.max(now.length - 1, 1) || 1;
    }

    /** Zooms around a place, where the snapshot is unless another is given. */
    zoom(factor, x = this.axes.now[this.view.n]) {
        this.store.set({ zoom: zoomed(this.view.zoom, this.whole(), factor, x, this.least()) });
    }

    wheel(event, x) {
        const sideways = event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY);
        const delta = event.deltaY || event.deltaX;
        // Zoomed out as far as it goes, the wheel scrolls the page.
        const pinched = event.ctrlKey; // as touch pads tell it
        if (!pinched && !this.view.zoom && (delta > 0 || sideways)) return;
        event.preventDefault();
        if (sideways) this.store.set({ zoom: moved(this.view.zoom, this.whole(), delta / 1000) });
        else this.zoom(Math.exp(Math.max(-500, Math.min(delta, 500)) / (pinched ? 60 : 400)), x);
    }

    pick(i, event) {
        const { run } = this.store.view;
        this.store.set(event.shiftKey ? { a: i, against: run } : { n: i });
    }

    /** Adds and removes the charts of fields that were asked for. */
    follow({ added }) {
        for (const [name, card] of this.added) {
            if (added.includes(name)) continue;
            card.end();
            this.observer.unobserve(card.element);
            card.element.remove();
            this.added.delete(name);
        }
        const fresh = [];
        for (const name of added.filter((one) => !this.added.has(one))) {
            const remove = () =>
                this.store.set({ added: this.store.view.added.filter((other) => other !== name) });
            const card = this.cardOf(name, remove);
            if (!card) continue;
            this.added.set(name, card);
            this.grid.append(card.element);
            this.observer.observe(card.element);
            fresh.push(card);
        }
        return fresh;
    }

    /** The chart of a field, or of an element of one, that was asked for; null where it has none. */
    cardOf(name, remove) {
        const field = this.run.field(name);
        const lines = field
            ? linesOf(this.run, { [field.key]: name })
            : elementLine(this.run, name);
        if (lines.length) return new CourseChart(this, name, lines, { remove });
        return isLong(field) ? new History(this, name, field, remove) : null;
    }

    /** Takes in a run that has grown or lost its beginning; the next update() shows it. */
    grow() {
        this.axes = axesOf({ ...this.view, now: new Moment(this.run, this.view.n) });
        this.missing = missingOf(this.run);
        const anew = this.tellMarks();
        this.strip.grow(this.course());
        for (const card of this.all) card.change({ grown: true, anew });
    }

    /** Shows the charts of what is looked for, or all where none has it; those that stay within the
     * tolerance are named instead. */
    choose(view) {
        const cards = this.all;
        const moving = cards.filter((card) => card.moves(view));
        const sought = moving.filter((card) => card.sought(view));
        const shown = sought.length ? sought : moving;
        for (const card of cards) card.element.hidden = !shown.includes(card);
        const within = cards.filter((card) => !moving.includes(card)).map(({ title }) => title);
        const texts = [
            this.still.length ? `Steady over the run: ${this.still.join(', ')}.` : '',
            within.length ? `Within the tolerance: ${within.join(', ')}.` : '',
            sought.length || !cards.length
                ? ''
                : 'No chart shows what is looked for: here are all.',
        ];
        setText(this.steady, texts.filter(Boolean).join(' '));
    }

    update(view, changed) {
        const has = (...keys) => keys.some((key) => changed.has(key));
        this.view = view;
        const marked = view.align === MARKS && has('n');
        const realigned = has('a', 'against', 'align') || marked;
        if (realigned) this.axes = axesOf(view);
        const fresh = this.follow(view);
        const cards = this.all;
        if (has('query', 'added')) this.choose(view);
        const anew = has('theme', 'zoom') || realigned;
        for (const card of cards) {
            card.change({ anew: anew || fresh.includes(card) });
            if (card.visible || !card.drawn) card.follow();
        }
        this.rest();
        if (has('step', 'band', 'ref', 'added') || (realigned && view.step)) this.measure(cards);
        this.controls.show(view, this.axes);
        setText(this.said, this.axes.said);
        this.strip.show(view.zoom, anew);
    }

    /** Lets what cannot be seen follow when the view rests. */
    rest() {
        clearTimeout(this.resting);
        this.resting = setTimeout(() => this.drawAll(), REST);
    }

    drawAll() {
        for (const card of this.all) card.follow();
    }

    measure(cards) {
        const answers = cards.map((card) => (this.view.step ? card.measure() : []));
        cards.forEach((card, i) => {
            card.tell(answers[i]);
        });
        this.table.show(answers.flat());
    }
}

/** The section; null for less than three snapshots, which have no course. */
export const timeSection = (run, store) => (run.length < 3 ? null : new TimeSection(run, store));
