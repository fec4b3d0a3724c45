// Which part of the time axis shows: [from, to] on the axis, or null for all of it.

/** The part within the whole; null where that is all of it. */
function within([from, to], [first, last]) {
    const width = Math.min(to - from, last - first);
    const start = Math.min(Math.max(from, first), last - width);
    return width >= last - first ? null : [start, start + width];
}

/** A part that is `factor` times as wide, in which x stays where it is; never below `least`. */
export function zoomed(part, whole, factor, x, least) {
    const [from, to] = part ?? whole;
    const width = Math.max((to - from) * factor, least);
    const place = (x - from) / (to - from || 1);
    return within([x - place * width, x + (1 - place) * width], whole);
}

/** A part that is moved by so much of its width. */
export function moved(part, whole, by) {
    if (!part) return null;
    const step = (part[1] - part[0]) * by;
    return within([part[0] + step, part[1] + step], whole);
}
