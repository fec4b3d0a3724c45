// What the keys do; the card of help in index.html explains them.

const editing = (target) =>
    target.closest?.('input[type="search"], input[type="text"], select, textarea, dialog');

/**
 * Calls an action for each key of that card.
 * @param {object} actions by name: step(by), first, last, play, compare, swap, only, find, nextRun,
 *     theme, help, escape, zoom(factor), showAll
 * @param {AbortSignal} signal ends it
 */
export function listenToKeys(actions, signal) {
    const byKey = {
        Home: actions.first,
        End: actions.last,
        ' ': actions.play,
        c: actions.compare,
        x: actions.swap,
        o: actions.only,
        '/': actions.find,
        p: () => actions.nextRun(),
        t: actions.theme,
        '?': actions.help,
        Escape: actions.escape,
        '+': () => actions.zoom(0.5),
        '-': () => actions.zoom(2),
        0: actions.showAll,
        ArrowLeft: () => actions.step(-1),
        ArrowRight: () => actions.step(1),
    };
    window.addEventListener(
        'keydown',
        (event) => {
            if (event.ctrlKey || event.metaKey || event.altKey) return;
            if (editing(event.target) && event.key !== 'Escape') return;
            // A button or a summary takes the space bar itself.
            if (event.key === ' ' && event.target.closest?.('button, summary')) return;
            const arrow = event.shiftKey && { ArrowLeft: -10, ArrowRight: 10 }[event.key];
            const action = arrow
                ? () => actions.step(arrow)
                : byKey[event.key.length === 1 ? event.key.toLowerCase() : event.key];
            if (!action) return;
            action();
            if (event.key !== 'Escape') event.preventDefault();
        },
        { signal },
    );
}
