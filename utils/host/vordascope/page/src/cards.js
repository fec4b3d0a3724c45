// The cards: drawings of the fields that the page knows, in sections.

import { el, setText } from './dom.js';
import { lines } from './draw/lines.js';
import { maps } from './draw/map.js';
import { chromaticity, positions, vectors } from './draw/points.js';
import { shading } from './draw/shading.js';
import { table } from './draw/table.js';
import { SECTIONS } from './known.js';
import { printed, same } from './model.js';
import { families, Source, select } from './sources.js';

const isPattern = (key) => typeof key === 'string' || key instanceof RegExp;
const matches = (pattern, text) =>
    pattern instanceof RegExp ? pattern.test(text) : pattern === text;

/** The sources by name; a name whose fields were not captured is left out. */
function sourcesOf(fields, keys) {
    return Object.entries(keys).flatMap(([name, key]) => {
        const found = select(fields, key);
        return found.length ? [new Source(name, found)] : [];
    });
}

function curvesOf(fields, keys) {
    return Object.entries(keys).flatMap(([name, key]) => {
        const y = select(fields, isPattern(key) ? key : key.y);
        const x = isPattern(key) ? [] : select(fields, key.x);
        if (!y.length) return [];
        return [{ name, y: new Source(name, y), x: x.length ? new Source(name, x) : null }];
    });
}

/** How a card is drawn: from its fields to what it draws and what it draws from; null: nothing. */
const DRAWINGS = {
    lines(fields, card) {
        const curves = curvesOf(fields, card.keys);
        const used = curves.flatMap(({ x, y }) => [...y.fields, ...(x?.fields ?? [])]);
        return curves.length ? [() => lines(curves, card), used] : null;
    },
    family(fields, card) {
        const sources = families(fields, card.keys);
        const curves = sources.map((y) => ({ name: y.name, x: null, y }));
        return sources.length
            ? [() => lines(curves, card), sources.flatMap((s) => s.fields)]
            : null;
    },
    maps: (fields, card) => fromList(fields, card, (sources) => maps(sources, card)),
    table: (fields, card) => fromList(fields, card, (sources) => table(sources, card)),
    shading: (fields, card) => fromList(fields, card, shading),
    positions: (fields, card) => fromWhole(fields, card, positions, 1),
    chromaticity: (fields, card) => fromWhole(fields, card, chromaticity),
    vectors: (fields, card) => fromWhole(fields, card, vectors),
};

function fromList(fields, card, build) {
    const sources = sourcesOf(fields, card.keys);
    return sources.length ? [() => build(sources), sources.flatMap((s) => s.fields)] : null;
}

/** The sources by name, at least `least` of them: all, where the drawing needs each. */
function fromWhole(fields, card, build, least = Object.keys(card.keys).length) {
    const sources = sourcesOf(fields, card.keys);
    if (sources.length < least) return null;
    const byName = Object.fromEntries(sources.map((source) => [source.name, source]));
    return [() => build(byName), sources.flatMap((s) => s.fields)];
}

/**
 * The cards of a series before anything is drawn: for each kind of card one for each item and block
 * that has its fields.
 * @returns {{card, section, title, item, fields, state, build}[]} `fields`, what it draws;
 *     `build()` makes the drawing
 */
export function plan(series) {
    return SECTIONS.flatMap((section) =>
        section.cards.flatMap((card) => {
            const places = new Map();
            for (const field of series.fields) {
                if (!matches(card.item, field.item) || !matches(card.block ?? '', field.block))
                    continue;
                const place = `${field.item}\n${field.block}`;
                if (!places.has(place)) places.set(place, []);
                places.get(place).push(field);
            }
            const planned = [...places.values()].flatMap((fields) => {
                const drawing = DRAWINGS[card.draw](fields, card);
                if (!drawing) return [];
                const [build, used] = drawing;
                const state = (card.state ?? []).flatMap((key) => select(fields, key));
                return [
                    {
                        card,
                        section,
                        item: used[0].item,
                        block: used[0].block,
                        fields: used,
                        state,
                        build,
                    },
                ];
            });
            return planned.map((entry) => ({
                ...entry,
                title:
                    planned.length > 1 && entry.block
                        ? `${card.title}, ${entry.block}`
                        : card.title,
            }));
        }),
    );
}

/** "GMA mode 0: normal", where vorda prints what the numbers mean, else "TE enable 1". */
function stateText({ key, note }, value) {
    const legend = /^\((.*)\)$/.exec(note)?.[1].split(', ') ?? [];
    return `${key} ${legend.find((entry) => entry.startsWith(`${value}: `)) ?? printed(value)}`;
}

class Card {
    #drawing = null;
    #stale = true;
    #visible = false;

    constructor(entry) {
        this.entry = entry;
        this.all = [...entry.fields, ...entry.state];
        this.varies = this.all.some((field) => field.varies);
        this.changed = el('span', { class: 'badge', hidden: true }, 'changed');
        this.state = el('p', { class: 'state' });
        this.body = el('div', { class: 'body' });
        this.element = el(
            'article',
            { class: entry.card.wide ? 'card wide-card' : 'card', data: { title: entry.title } },
            el(
                'header',
                {},
                el('h3', {}, entry.title),
                this.changed,
                el('code', {}, [entry.item, entry.block].filter(Boolean).join(' · ')),
            ),
            this.state,
            this.body,
        );
    }

    /** Notes that the card shows something else now, and draws it if it can be seen. */
    update(view, changed) {
        const stepped = changed.has('n') || changed.has('a');
        if (changed.has('theme') || (stepped && this.varies)) this.#stale = true;
        const differs =
            view.a === null
                ? this.varies
                : this.varies &&
                  this.all.some((field) => !same(field.at(view.a), field.at(view.n)));
        this.changed.hidden = view.a === null || !differs;
        const { title, fields } = this.entry;
        this.element.hidden = (view.only && !differs) || !view.find.card(title, fields, view.n);
        this.view = view;
        if (this.#visible) this.draw();
    }

    set visible(visible) {
        this.#visible = visible;
        if (visible) this.draw();
    }

    /** Draws what is due. A card that fails says so, and the others stand. */
    draw() {
        if (!this.#stale || this.element.hidden) return;
        this.#stale = false;
        try {
            setText(
                this.state,
                this.entry.state
                    .map((field) => stateText(field, field.at(this.view.n)))
                    .join(' · '),
            );
            if (!this.#drawing) {
                this.#drawing = this.entry.build();
                this.body.replaceChildren(...this.#drawing.elements.flat());
            }
            this.#drawing.draw(this.view);
        } catch (error) {
            this.#drawing = null;
            const text = `This card could not be drawn (${error.message}). Its numbers stand under “All fields”.`;
            this.body.replaceChildren(el('p', { class: 'failed', role: 'alert' }, text));
        }
    }
}

/** The sections of cards: [{id, title, element, update(view, changed), drawAll()}]. */
export function cardSections(series) {
    const observer = new IntersectionObserver(
        (entries) => {
            for (const { target, isIntersecting } of entries) target.card.visible = isIntersecting;
        },
        { rootMargin: '300px' },
    );
    const groups = new Map(SECTIONS.map((section) => [section, []]));
    for (const entry of plan(series)) {
        const card = new Card(entry);
        card.element.card = card;
        observer.observe(card.element);
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
