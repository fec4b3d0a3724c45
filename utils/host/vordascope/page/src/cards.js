// The cards: drawings of the fields that the page knows, in sections.
import { el, setText, sizeObserver, template } from './dom.js';
import { chromaticity } from './draw/cloud.js';
import { lines } from './draw/lines.js';
import { maps } from './draw/map.js';
import { shading } from './draw/shading.js';
import { table } from './draw/table.js';
import { vectors } from './draw/vectors.js';
import { SECTIONS } from './known.js';
import { hold } from './lifetime.js';
import { flat, printed, same } from './model.js';
import { numbersOf, saver } from './out.js';
import { plan } from './plan.js';
import { differ } from './sources.js';
import { invalidText, validityOf } from './valid.js';

/** How each kind of card is drawn: (parts, options) => {elements, draw(view)}. */
const DRAWINGS = {
    lines,
    family: lines,
    maps,
    table,
    shading,
    chromaticity,
    vectors,
};

/** "GMA mode 0: normal", where vorda prints what the numbers mean, else "TE enable 1". */
function stateText({ key, note }, value) {
    const legend = /^\((.*)\)$/.exec(note)?.[1].split(', ') ?? [];
    return `${key} ${legend.find((entry) => entry.startsWith(`${value}: `)) ?? printed(value)}`;
}

/** Whether a field says that something is on: by its key, or by what vorda prints behind it. */
const switches = ({ key, note }) =>
    /(^|[._ ])en(able)?$/.test(key) || /\b0: (disable|off)/.test(note);

/** Whether all that switches a module says that it is off. */
function isOff(state, moment) {
    const all = state.filter(switches).map((field) => moment.of(field));
    return all.length > 0 && all.every((value) => value === 0 || value === false);
}

class Card {
    #drawing = null;
    #stale = true;
    #compared = false;
    #visible = false;
    #opened = false;
    #drawnAt = null; // of which snapshot, as many as there were before it

    constructor(entry) {
        this.entry = entry;
        this.all = [...entry.fields, ...entry.state];
        this.valid = validityOf(entry.fields[0]);
        if (this.valid) this.all.push(this.valid);
        const { run } = entry.fields[0];
        this.all.push(...(entry.card.beside ?? []).map((name) => run.field(name)).filter(Boolean));
        this.varies = this.all.some((field) => field.varies);
        this.element = template('card');
        this.element.dataset.title = entry.title;
        this.element.classList.toggle('wide-card', Boolean(entry.card.wide));
        const part = (selector) => this.element.querySelector(selector);
        setText(part('h3'), entry.title);
        setText(part('code'), [entry.item, entry.block].filter(Boolean).join(' · '));
        part('header').append(saver(entry.title, this, () => numbersOf(entry.fields, this.view)));
        this.changed = part('.badge');
        this.state = part('.says');
        this.thinned = part('.thinned');
        this.invalid = part('.invalid');
        this.idle = part('.idle');
        this.body = part('.body');
    }

    /** Notes that the card shows something else now, and draws it if it can be seen. */
    update(view, changed) {
        const { now, before } = view;
        const compared = differ(view, this.all);
        const sided = before && before.sensor !== now.sensor;
        const referred = ['a', 'against', 'sensors'].some((key) => changed.has(key));
        const stepped =
            (changed.has('n') && this.#steps(now)) || (referred && (compared || this.#compared));
        const told = changed.has('query') && compared;
        if (changed.has('theme') || stepped || told) this.#stale = true;
        this.#compared = compared;
        const differs = before
            ? compared && this.all.some((field) => view.find.differs(field, before, now))
            : this.all.some((field) => view.find.varies(field));
        this.changed.hidden = !before || !differs;
        const { title, fields } = this.entry;
        // Of two sensors one card shows both.
        const other = sided && fields[0].paired && fields[0].sensor !== now.sensor;
        this.element.hidden =
            other || (view.only && !differs) || !view.find.titled(title, fields, now);
        this.view = view;
        if (this.#visible) this.draw();
    }

    /** Whether it shows another value than that of the snapshot that it was drawn of. */
    #steps({ run, n }) {
        if (!this.varies || this.#drawnAt === null) return this.varies;
        const [from, to] = [this.#drawnAt - run.first, n].toSorted((p, q) => p - q);
        return from < 0 || this.all.some((field) => field.changes(from, to));
    }

    set visible(visible) {
        this.#visible = visible;
        if (visible) this.draw();
    }

    /** Draws what is due. A card that fails says so, and the others stand. */
    draw() {
        if (!this.#stale || this.element.hidden) return;
        this.#stale = false;
        this.#drawnAt = this.view.now.run.first + this.view.now.n;
        try {
            setText(
                this.state,
                this.entry.state
                    .map((field) => stateText(field, this.view.now.of(field)))
                    .join(' · '),
            );
            const idle = this.#opened ? '' : this.#idleText();
            this.body.hidden = idle !== '';
            this.#tellIdle(idle);
            if (idle) return setText(this.invalid, invalidText(this.valid, this.view));
            const first = !this.#drawing;
            if (first) {
                const { card, parts } = this.entry;
                this.#drawing = DRAWINGS[card.draw](parts, { ...card, used: this.#used() });
                this.body.replaceChildren(...this.#drawing.elements.flat());
            }
            this.#drawing.draw(this.view);
            this.#tellThinned();
            setText(this.invalid, invalidText(this.valid, this.view));
            if (first) this.#broaden();
        } catch (error) {
            this.#drawing = null;
            const text = `This card could not be drawn (${error.message}). Its numbers stand under “All fields”.`;
            this.body.replaceChildren(el('p', { class: 'failed', role: 'alert' }, text));
        }
    }

    /** How many of its curves are in use, where a field says so. */
    #used() {
        const [field] = this.entry.state.filter(({ key }) => key === this.entry.card.used);
        return field ? ({ now }) => Number(now.of(field)) || this.entry.parts.length : null;
    }

    /** Why one line says as much as a picture; '' where it does not. */
    #idleText() {
        const { now, before } = this.view;
        const { fields, state, card } = this.entry;
        // These two are for answers, not for their values alone.
        if (card.draw === 'shading' || card.draw === 'chromaticity') return '';
        const shown = before ? [before, now] : [now];
        if (shown.every((moment) => isOff(state, moment))) return 'Disabled.';
        const values = shown.flatMap((moment) => fields.flatMap((f) => flat(moment.of(f))));
        const alike = values.every((value) => same(value, values[0]));
        if (alike && !this.varies && values.length > 1) return `All ${printed(values[0])}.`;
        const compared = before && fields.some((f) => !same(before.of(f), now.of(f)));
        return now.run.length > 2 && !this.varies && !compared ? 'Never changes here.' : '';
    }

    /** Says so, with a button for whom wants the picture all the same. */
    #tellIdle(text) {
        const show = () => {
            this.#opened = true;
            this.#stale = true;
            this.draw();
        };
        const more = { type: 'button', class: 'link', on: { click: show } };
        const button = el('button', { ...more, 'aria-label': `show ${this.entry.title}` }, 'Show');
        this.idle.replaceChildren(...(text ? [`${text} `, button] : []));
    }

    /** Says of which snapshot the pictures are where these are thinned. */
    #tellThinned() {
        const { now, before } = this.view;
        const texts = [before, now].flatMap((moment) => {
            const of = moment && Math.min(...this.entry.fields.map((f) => moment.pictureOf(f)));
            return moment && of !== moment.n ? [`picture of ${moment.run.placeOf(of)}`] : [];
        });
        setText(this.thinned, texts.join(' → '));
    }

    /** Gives a table that is wider than the card the place of two. */
    #broaden() {
        const table = this.body.querySelector('.wide');
        if (table && table.scrollWidth > table.clientWidth)
            this.element.classList.add('broad-card');
    }
}

/** The height of the grid's rows and the gap between two cards, as in the style. */
const ROW = 4;
const GAP = 12;

/** Lets each card take as many of the grid's low rows as it is high, so that no space is lost. */
const packer = () =>
    sizeObserver((entries) => {
        for (const { target, borderBoxSize } of entries)
            target.style.gridRowEnd = `span ${Math.ceil((borderBoxSize[0].blockSize + GAP) / ROW)}`;
    });

/** The sections of cards: [{id, title, element, update(view, changed), drawAll()}]. */
export function cardSections(run) {
    const observer = new IntersectionObserver(
        (entries) => {
            for (const { target, isIntersecting } of entries) target.card.visible = isIntersecting;
        },
        { rootMargin: '300px' },
    );
    hold(() => observer.disconnect());
    const packing = packer();
    const groups = new Map(SECTIONS.map((section) => [section, []]));
    for (const entry of plan(run)) {
        const card = new Card(entry);
        card.element.card = card;
        observer.observe(card.element);
        packing.observe(card.element);
        groups.get(entry.section).push(card);
    }
    return [...groups].flatMap(([{ id, title }, cards]) => {
        if (cards.length === 0) return [];
        const element = el(
            'div',
            { class: 'cards' },
            cards.map((card) => card.element),
        );
        return [
            {
                id,
                title,
                element,
                update(view, changed) {
                    for (const card of cards) card.update(view, changed);
                },
                empty: () => cards.every((card) => card.element.hidden),
                drawAll() {
                    for (const card of cards) card.draw();
                },
            },
        ];
    });
}
