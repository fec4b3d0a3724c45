// What the charts over time have in common: head, markers of A and B, and that only what can be seen
// is drawn at once.
import { colourOf, el } from './dom.js';
import { saver } from './out.js';

/** One card of the section; a kind of chart gives it draw(), read() and numbers(). */
export class TimeCard {
    #due = { read: true, grown: true, anew: true };
    #visible = false;
    /** Whether it has been. */
    drawn = false;
    /** The place on the axis that the pointer is over. */
    hovered = null;

    constructor(section, title) {
        this.section = section;
        this.title = title;
        this.markers = ['marker marker-a', 'marker marker-b'].map((name) =>
            el('div', { class: name }),
        );
    }

    /** Its element: the head, with `note` beside the title and what `remove` takes it away, and `parts`. */
    assemble(note, remove, ...parts) {
        const { title } = this;
        const removal = remove && {
            type: 'button',
            class: 'quiet',
            'aria-label': `remove ${title}`,
            on: { click: remove },
        };
        const head = el(
            'header',
            {},
            el('h3', {}, title),
            el('code', {}, note),
            saver(title, this, () => this.numbers()),
            removal && el('button', removal, '×'),
        );
        this.element = el('article', { class: 'card', data: { title } }, head, ...parts);
        this.element.card = this;
    }

    /** What it shows is another place, or its run has grown, or it is to be drawn anew. */
    change({ grown = false, anew = false } = {}) {
        const due = this.#due;
        this.#due = { read: true, grown: due.grown || grown, anew: due.anew || anew };
    }

    get visible() {
        return this.#visible;
    }

    set visible(visible) {
        this.#visible = visible;
        if (visible) this.follow();
    }

    /** Shows what has changed. */
    follow() {
        const { read, grown, anew } = this.#due;
        if (!read) return;
        this.#due = {};
        this.drawn = true;
        if (grown || anew) this.draw(Boolean(anew));
        this.read();
        this.mark();
    }

    /** Puts the markers where `left(x)` of a place on the axis is; null where that does not show. */
    placeMarkers(left) {
        const { axes, view } = this.section;
        const { n, against, a, run } = view;
        const reference = a === null ? null : (against === run ? axes.now : axes.before)[a];
        [reference, axes.now[n]].forEach((at, i) => {
            const place = at === null ? null : left(at);
            this.markers[i].hidden = place === null;
            if (place !== null) this.markers[i].style.transform = `translateX(${place}px)`;
        });
    }

    /** Paints a line for each thing that was noted, where `left(x)` of it is, from `top` for `height`. */
    paintNotes(context, left, top, height) {
        const { run, axes } = this.section;
        context.save();
        context.strokeStyle = colourOf('--muted');
        context.setLineDash([2 * devicePixelRatio, 2 * devicePixelRatio]);
        for (const [n] of run.marks) {
            const x = left(axes.now[n]);
            if (x === null) continue;
            context.beginPath();
            context.moveTo(x, top);
            context.lineTo(x, top + height);
            context.stroke();
        }
        context.restore();
    }
}
