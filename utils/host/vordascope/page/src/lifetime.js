// What a view of the page holds until it ends: observers and charts, which nobody else frees.
const held = new Set();

/** Keeps `end` to be called when the view ends. Returns what calls it at once instead. */
export function hold(end) {
    held.add(end);
    return () => {
        if (held.delete(end)) end();
    };
}

/** Ends all that is held. */
export function endAll() {
    for (const end of held) end();
    held.clear();
}
