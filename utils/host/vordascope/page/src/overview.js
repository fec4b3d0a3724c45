// The strip beneath the toolbar of the time charts: the whole run, and the part of it that shows.
import { canvas, pointerAt } from './canvas.js';
import { colourOf } from './dom.js';
import { extent } from './model.js';
import { moved, zoomed } from './zoom.js';

const HEIGHT = 34;
const EDGE = 6;

/** What a key moves the part by, in widths of it. */
const MOVES = {
    ArrowLeft: -0.2,
    ArrowRight: 0.2,
    PageUp: -1,
    PageDown: 1,
    Home: Number.NEGATIVE_INFINITY,
    End: Number.POSITIVE_INFINITY,
};

/** What a drag from a place does to a part: a function from the place of the pointer to another part. */
function dragFrom(part, at, tolerance) {
    if (part && Math.abs(at - part[0]) < tolerance) return (to) => [to, part[1]];
    if (part && Math.abs(at - part[1]) < tolerance) return (to) => [part[0], to];
    if (part && at > part[0] && at < part[1]) {
        const [from, to] = part;
        return (now) => [from + now - at, to + now - at];
    }
    return (to) => [at, to];
}

/** Lets a drag across an element choose a part, of which `now()` gives the one that shows. */
function listenToDrags(element, now, { whole, least, set }) {
    let drag = null;
    const placeOf = (event) => {
        const [x, , width] = pointerAt(event);
        const [first, last] = whole();
        return first + (x / width) * (last - first);
    };
    element.addEventListener('pointerdown', (event) => {
        const [first, last] = whole();
        const tolerance = (EDGE / element.clientWidth) * (last - first);
        drag = dragFrom(now(), placeOf(event), tolerance);
        element.setPointerCapture(event.pointerId);
    });
    element.addEventListener('pointermove', (event) => {
        if (!drag) return;
        const [from, to] = drag(placeOf(event)).toSorted((p, q) => p - q);
        // Through zoomed(), which keeps it within the whole and no narrower than it can be.
        if (to > from) set(zoomed([from, to], whole(), 1, from, least()));
    });
    for (const name of ['pointerup', 'pointercancel'])
        element.addEventListener(name, () => {
            drag = null;
        });
    element.addEventListener('dblclick', () => set(null));
}

/**
 * @param {ArrayLike<number>} course what the strip draws
 * @param {object} options `whole()`, the ends of the axis; `axis()`, its places; `text(place)`, one in
 *     words; `least()`, the narrowest part; `set(part)`, called with the part that is to show
 */
export function overview(course, options) {
    const { whole, axis, text, set } = options;
    let part = null;
    let values = course;
    let shown = false;
    const view = canvas(paint, { height: HEIGHT, label: 'part that shows', className: 'overview' });
    const { element } = view;
    element.tabIndex = 0;
    element.setAttribute('role', 'slider');
    element.title =
        'drag, or + and −, for the part that shows; arrow keys move it; double click, or 0, for all';

    function paint(context, width, height) {
        const [first, last] = whole();
        const x = (at) => ((at - first) / (last - first || 1)) * width;
        const places = axis();
        const [low, high] = extent(values);
        const y = (value) => height - 3 - ((value - low) / (high - low || 1)) * (height - 6);
        context.strokeStyle = colourOf('--line0');
        context.beginPath();
        // Of a long run so many points as there are pixels to tell them apart.
        const every = Math.max(1, Math.floor(places.length / (2 * width)));
        for (let i = 0; i < places.length; i += every)
            if (Number.isFinite(values[i])) context.lineTo(x(places[i]), y(values[i]));
        context.stroke();
        if (!part) return;
        context.fillStyle = colourOf('--select');
        context.fillRect(x(part[0]), 0, x(part[1]) - x(part[0]), height);
        context.strokeStyle = colourOf('--muted');
        context.strokeRect(x(part[0]), 0.5, x(part[1]) - x(part[0]), height - 1);
    }
    /** Says which part shows, and paints it. */
    function tell() {
        const [first, last] = whole();
        const [from, to] = part ?? [first, last];
        const all = part ? '' : 'all, ';
        const told = { valuemin: first, valuemax: last, valuenow: from };
        told.valuetext = `${all}${text(from)} to ${text(to)}`;
        for (const [name, value] of Object.entries(told))
            element.setAttribute(`aria-${name}`, String(value));
        view.repaint();
    }

    listenToDrags(element, () => part, options);
    element.addEventListener('keydown', (event) => {
        const by = MOVES[event.key];
        if (!by || event.ctrlKey || event.metaKey || event.altKey) return;
        const [first, last] = whole();
        const most = (last - first) / (part ? part[1] - part[0] : 1);
        const steps = Math.min(Math.max(by, -most), most);
        if (part) set(moved(part, whole(), steps) ?? part);
        event.preventDefault();
        event.stopPropagation();
    });
    return {
        element,
        grow(grown) {
            values = grown;
            tell();
        },
        /** Shows another part, or, `anew`, what is other in the whole. */
        show(now, anew) {
            if (now === part && shown && !anew) return;
            [part, shown] = [now, true];
            tell();
        },
    };
}
