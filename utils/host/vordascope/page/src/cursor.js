// Reads a drawing place by place: with the pointer, and with keys just so.
import { pointerAt } from './canvas.js';

/** What a key moves the place along, and how far. */
const MOVES = {
    ArrowLeft: ['x', -1],
    ArrowRight: ['x', 1],
    ArrowUp: ['y', -1],
    ArrowDown: ['y', 1],
    PageUp: ['page', -10],
    PageDown: ['page', 10],
    Home: ['x', Number.NEGATIVE_INFINITY],
    End: ['x', Number.POSITIVE_INFINITY],
};

export const within = (place, [first, last]) => Math.min(Math.max(place, first), last);

/** Moves along a row of places: up and down there is nothing. */
const along = (place, axis, by) => (axis === 'y' ? place : place + by);

/** Moves in rows of so many; a page is ten rows. */
export const inGrid = (columns) => (place, axis, by) => {
    if (axis !== 'x') return place + by * columns;
    const first = place - (place % columns);
    return within(place + by, [first, first + columns - 1]);
};

/**
 * Makes a drawing one that keys reach; assistive technology says what is read. A press of the mouse
 * leaves the keys to the page.
 * @param {HTMLElement} element that has a name
 * @param {object} drawing its places are numbers:
 *     ends(): the first and the last one that shows
 *     read(place, keys): shows what is there, null: nothing any more; returns it in words. `keys`,
 *     whether keys went there, so that the place is to be marked
 *     move(place, axis, by): where a key leads from a place, within the ends or beyond; the axis is
 *     `x`, `y`, or `page` for ten at once
 *     at(x, y, width, height): the place under the pointer, null beside all; without it the drawing
 *     hears the pointer itself
 *     pick(place, event), span(from, to): what a click and a drag do, where they do something
 * @returns {{refresh()}} to be called when the drawing shows something else
 */
export function cursor(element, { ends, read, move = along, at, pick, span }) {
    let place = null;
    let anchor = null;
    let reached = false; // whether keys are here

    element.tabIndex = 0;
    element.setAttribute('role', 'slider');
    element.setAttribute('aria-roledescription', 'drawing');
    tell('', [0, 0]);

    function tell(text, [first, last]) {
        const set = (name, value) => element.setAttribute(`aria-${name}`, String(value));
        set('valuemin', first);
        set('valuemax', Math.max(first, last));
        set('valuenow', place ?? first);
        set('valuetext', text || 'nothing here');
    }
    function show(next) {
        const [first, last] = ends();
        if (last < first) return;
        place = within(next, [first, last]);
        tell(read(place, true), [first, last]);
    }
    function leave() {
        anchor = null;
        reached = false;
        read(null, true);
    }
    function onKey(event) {
        if (event.ctrlKey || event.metaKey || event.altKey) return;
        const go = MOVES[event.key];
        if (go) {
            const from = place ?? ends()[0];
            show(move(from, ...go));
            anchor = event.shiftKey ? (anchor ?? from) : null;
            if (span && anchor !== null && anchor !== place)
                span(Math.min(anchor, place), Math.max(anchor, place));
        } else if (pick && place !== null && (event.key === 'Enter' || event.key === ' ')) {
            pick(place, event);
        } else if (event.key === 'Escape') {
            element.blur();
        } else return;
        event.preventDefault();
        event.stopPropagation();
    }
    element.addEventListener('keydown', onKey);
    element.addEventListener('focus', () => {
        reached = true;
        show(place ?? ends()[0]);
    });
    element.addEventListener('blur', leave);
    element.addEventListener('mousedown', (event) => {
        event.preventDefault();
        document.activeElement?.blur?.();
    });
    if (at) {
        const under = (event) => at(...pointerAt(event));
        element.addEventListener('pointermove', (event) => read(under(event), false));
        element.addEventListener('pointerleave', () => read(null, false));
        element.classList.toggle('pick', Boolean(pick));
        element.addEventListener('click', (event) => {
            const here = under(event);
            if (pick && here !== null) pick(here, event);
        });
    }
    return {
        refresh() {
            if (reached) show(place ?? ends()[0]);
        },
    };
}
