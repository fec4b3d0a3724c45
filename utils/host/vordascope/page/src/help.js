// The keys, and the card that explains them.
import { el } from './dom.js';

const KEYS = [
    ['← →', 'one snapshot back or on, with Shift ten'],
    ['Home End', 'the first or the last snapshot'],
    ['M', 'note what you change, in a page that follows a camera; End goes along with it again'],
    ['Space', 'play and stop'],
    ['C', 'compare with the snapshot that shows; again: no more'],
    ['X', 'exchange the two compared snapshots'],
    ['O', 'only what changed'],
    ['+ −', 'zoom the time axis; 0 shows all of it'],
    [
        '/',
        'find: words of names, titles and legends, =8000 a value, share.*gain, -stat, lut[3] as on the command line; abs=16 rel=5% for what is the same',
    ],
    [
        'Tab',
        'the next drawing: there arrows, Home, End, Page ↑ and ↓ read its places, Enter does what a click does, Shift with arrows measures a part; Esc gives the keys back',
    ],
    ['P', 'the next run, where there are several'],
    ['T', 'light or dark'],
    ['?', 'this help'],
    ['Esc', 'close, clear the search, end a measurement'],
];

/** A dialog, to be opened with showModal(). */
export function helpCard() {
    const dialog = el(
        'dialog',
        { class: 'help', 'aria-labelledby': 'help-title' },
        el('h2', { id: 'help-title' }, 'Keys'),
        el(
            'dl',
            {},
            KEYS.flatMap(([key, text]) => [
                el(
                    'dt',
                    {},
                    key.split(' ').map((part) => el('kbd', {}, part)),
                ),
                el('dd', {}, text),
            ]),
        ),
        el(
            'p',
            {},
            'Values stand as vorda printed them. Drag across a chart over time to measure a response, click it to go to a snapshot, turn the wheel to zoom. The address of this page leads back to what it shows now.',
        ),
        el('form', { method: 'dialog' }, el('button', {}, 'Close')),
    );
    return dialog;
}

const editing = (target) =>
    target.closest?.('input[type="search"], input[type="text"], select, textarea, dialog');

/**
 * Calls an action for each key of the card.
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
