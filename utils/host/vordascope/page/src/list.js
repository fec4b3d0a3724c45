// Every field, by item, as printed: nothing of a capture stays out of the page.
import { differenceIn } from './differences.js';
import { el, setText } from './dom.js';
import { patch, spark } from './draw/spark.js';
import { flat, grouped, number, placeText, printed } from './model.js';
import { differ } from './sources.js';
import { shownAnew } from './view.js';

/** As many fields open by themselves when they are found; more are a list to choose from. */
const MANY = 250;

/** The list or grid of a value as a picture; null where numbers say as much. */
function pictureOf(field, value) {
    if (!field.numeric || value === null || field.shape === 'scalar') return null;
    const list = flat(value).map(number);
    if (field.shape === 'list') return list.length > 2 ? spark([list]).element : null;
    // Pairs and tuples are no map.
    return value[0].length > 3 ? patch(value.map((row) => flat(row).map(number))) : null;
}

/** A value as printed: a matrix in its rows, pairs one after another. */
function valueText(field, value) {
    if (field.shape !== 'grid' || value === null || value[0].length < 3) return printed(value);
    return value.map(printed).join('\n');
}

const small = (text, title, click) =>
    el(
        'button',
        { type: 'button', class: 'quiet', title, 'aria-label': title, on: { click } },
        text,
    );

/** The line of a field: its name, value, picture, what vorda says of it, and what one can do. */
class Row {
    constructor(store, field) {
        this.field = field;
        this.value = el('td', { class: 'value' });
        this.picture = el('td', { class: 'picture' });
        this.course = field.charted && field.shape === 'scalar' ? spark(field.courses) : null;
        if (this.course) this.picture.append(this.course.element);
        const name = el(
            'button',
            { type: 'button', class: 'copy', title: `copy ${field.name}` },
            field.label,
        );
        name.addEventListener('click', () => copy(name, field.name));
        const value = small('copy', `copy the value of ${field.name}`, () =>
            copy(value, valueText(field, field.at(store.view.n))),
        );
        const add = () => store.set({ added: [...new Set([...store.view.added, field.name])] });
        this.element = el(
            'tr',
            {},
            el('th', { scope: 'row' }, name),
            this.value,
            this.picture,
            el('td', { class: 'note' }, field.note),
            el(
                'td',
                { class: 'acts' },
                value,
                field.charted ? small('+', `add a chart of ${field.name} over time`, add) : null,
            ),
        );
    }

    /** Writes the value of the snapshot, and in a comparison what it was. */
    write({ now, before: reference, find }) {
        const { field } = this;
        const value = now.of(field);
        const part = find.part(field);
        const differs = Boolean(reference) && find.differs(field, reference, now);
        setText(
            this.value,
            part.length
                ? `${placeText(part)} ${printed(find.valueOf(field, now))}`
                : valueText(field, value),
        );
        if (differs) {
            const cell = differenceIn(
                'div',
                find.valueOf(field, reference),
                find.valueOf(field, now),
            );
            cell.className = 'difference';
            this.value.append(cell);
        }
        this.element.classList.toggle('changed', differs);
        this.course?.mark(now.n, reference?.run === now.run ? reference.n : null);
        const picture = pictureOf(field, value);
        if (picture) this.picture.replaceChildren(picture);
    }
}

async function copy(button, text) {
    try {
        await navigator.clipboard.writeText(text);
        button.dataset.done = 'copied';
    } catch {
        // Without the right to copy, the name is at least selected.
        window.getSelection().selectAllChildren(button);
        button.dataset.done = 'selected';
    }
    setTimeout(() => delete button.dataset.done, 900);
}

/** The fields of one item, built when they are opened or found. */
class Item {
    #rows = null;
    #stale = true;
    #sought = false; // for something else than what was written last

    constructor(store, item, fields) {
        Object.assign(this, { store, item, fields });
        this.count = el('span', { class: 'count' });
        this.body = el('tbody');
        this.element = el(
            'details',
            { class: 'item', on: { toggle: () => this.write() } },
            el('summary', {}, el('code', {}, item), this.count),
            el('div', { class: 'wide' }, el('table', { class: 'fields' }, this.body)),
        );
    }

    update(view, changed) {
        this.view = view;
        this.#stale ||= shownAnew(changed) || changed.has('theme');
        this.#sought ||= changed.has('query');
        const { now, before, only, find } = view;
        const differs = (field) => (before ? find.differs(field, before, now) : find.varies(field));
        this.shown = this.fields.filter(
            (field) => (!only || differs(field)) && find.field(field, now),
        );
        this.element.hidden = this.shown.length === 0;
        const count = this.shown.length === this.fields.length ? '' : `${this.shown.length} of `;
        setText(
            this.count,
            `${count}${this.fields.length} field${this.fields.length === 1 ? '' : 's'}`,
        );
        this.write();
    }

    /** Draws the courses that show of a run that has grown. */
    grow() {
        if (!this.element.open || this.element.hidden) return;
        for (const { course, field } of this.#rows ?? []) course?.grow(field.courses);
    }

    /** Writes the rows that show. */
    write() {
        if (!this.element.open || this.element.hidden) return;
        const fresh = this.#rows === null;
        this.#rows ??= this.fields.map((field) => new Row(this.store, field));
        const shown = new Set(this.shown);
        for (const row of this.#rows) {
            row.element.hidden = !shown.has(row.field);
            const { field, element } = row;
            const differed = element.classList.contains('changed');
            const due = differ(this.view, [field]) || differed || field.varies;
            if (fresh || this.#sought || (this.#stale && (due || field.shape === 'grid')))
                row.write(this.view);
        }
        this.#stale = this.#sought = false;
        if (fresh) this.body.replaceChildren(...this.#rows.map((row) => row.element));
    }
}

/** The section of all fields. */
export function listSection(run, store) {
    const items = [...grouped(run.fields, ({ item }) => item)].map(
        ([item, fields]) => new Item(store, item, fields),
    );
    const summary = el('p', { class: 'summary', role: 'status' });
    let opened = false;

    function update(view, changed) {
        for (const item of items) item.update(view, changed);
        const count = items.reduce((sum, item) => sum + item.shown.length, 0);
        const narrowed = view.only || !view.find.empty;
        const open = narrowed && count <= MANY;
        const hint = narrowed && !open ? ' Open an item, or look for more words.' : '';
        setText(
            summary,
            narrowed
                ? `${count} of ${run.fields.length} fields.${hint}`
                : `${run.fields.length} fields of ${items.length} items.`,
        );
        // What was looked for opens by itself, and closes again with the search.
        if (!changed.has('query') && !changed.has('only')) return;
        if (open || opened)
            for (const item of items) item.element.open = open && item.shown.length > 0;
        opened = open;
    }

    return {
        id: 'fields',
        title: 'All fields',
        element: el(
            'div',
            { class: 'card list' },
            summary,
            items.map((item) => item.element),
        ),
        update,
        grow() {
            for (const item of items) item.grow();
        },
        empty: () => false,
    };
}
