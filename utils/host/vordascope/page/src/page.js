// The page of runs: its sections, and what ties them together.
import { cardSections } from './cards.js';
import { differencesSection } from './differences.js';
import { el, template } from './dom.js';
import { listenToKeys } from './keys.js';
import { endAll } from './lifetime.js';
import { listSection } from './list.js';
import { Moment } from './model.js';
import { notices } from './notices.js';
import { nowSection } from './now.js';
import { fitPaper } from './paper.js';
import { player } from './player.js';
import { boundedView, continuedView, usualView } from './runs.js';
import { finder } from './search.js';
import { Store } from './store.js';
import { timeSection } from './time.js';
import { toolbar } from './toolbar.js';
import { fromFragment, toFragment, USUAL } from './view.js';

/**
 * Shows runs in place of what the root held.
 * @param {HTMLElement} root
 * @param {Runs} runs one at least
 * @param {object} options
 *     open, theme: what "Open…" does, null without a reader; the theme (see theme.js)
 *     fragment: of the address, which says what shows
 *     said: what is to be said of captures that are not among the runs
 *     before: what the end of the page before returned
 *     remove(run): takes a run away
 *     live: what follows a camera (see live.js), if anything does
 *     view: what shows then
 * @returns {() => object} ends it; returns what the next page goes on with
 */
export function showPage(root, runs, { fragment, before, view = null, ...options }) {
    const { all } = runs;
    const usual = { ...USUAL, ...usualView(all) };
    let end;
    const show = (view) => {
        end = showRun(root, runs, { ...options, view: boundedView(view, all), usual, onRun });
    };
    const onRun = (view) => {
        end();
        show(view);
    };
    const continued = before && continuedView(before, all, usual);
    show({ ...usual, ...continued, ...fromFragment(fragment), ...view });
    return () => end();
}

/** The sections of a run, each in its place on the page. */
function sectionsOf(run, store) {
    const builders = [
        ['now', 'Now', nowSection],
        ['time', 'Time', timeSection],
        ['differences', 'Differences', differencesSection],
        ['cards', 'Cards', cardSections],
        ['fields', 'All fields', listSection],
    ];
    const built = builders.flatMap(([id, title, build]) => {
        try {
            return build(run, store) ?? [];
        } catch (error) {
            return failedSection(id, title, error);
        }
    });
    for (const section of built)
        section.place = el(
            'section',
            { id: section.id },
            el('h2', {}, section.title),
            section.element,
        );
    return built;
}

const failure = (error) =>
    el(
        'p',
        { class: 'failed', role: 'alert' },
        `This section could not be drawn (${error.message}).`,
    );

/** What a view compares, null where nothing, and what it shows. */
function momentsOf({ run, n, against, a, sensors }, all) {
    if (sensors) return sensors.map((sensor) => new Moment(all[run], n, sensor));
    return [a === null ? null : new Moment(all[against], a), new Moment(all[run], n)];
}

/** Stands in the place of a section that could not be built; the others stand. */
const failedSection = (id, title, error) => ({
    id,
    title,
    element: el('div', {}, failure(error)),
    update() {},
    empty: () => false,
});

/** Redraws a section; one that fails says so, and the others stand. */
function updateSection(section, view, changed) {
    try {
        section.update(view, changed);
        section.place.hidden = section.empty();
    } catch (error) {
        section.element.replaceChildren(failure(error));
    }
}

/** Of a view: nothing is compared. */
const ALONE = { a: null, against: null, sensors: null };

/** What buttons and keys do; see listenToKeys() and toolbar(). */
function actionsOn(store, all, { play, theme, help, open, find, remove, time }) {
    const set = (patch) => store.set(patch);
    const last = () => all[store.view.run].length - 1;
    const goTo = (n) => {
        play.stop();
        set({ n: Math.min(Math.max(n, 0), last()) });
    };
    return {
        open,
        find,
        remove,
        zoom: (factor) => time?.zoom?.(factor),
        showAll: () => set({ zoom: null }),
        step: (by) => goTo(store.view.n + by),
        first: () => goTo(0),
        last: () => goTo(last()),
        play: play.toggle,
        player: play,
        compare() {
            const { run, n, a, sensors } = store.view;
            if (a !== null || sensors) set(ALONE);
            // Of two, the other one.
            else if (last() > 0 || all.length > 1)
                set({ a: last() === 1 ? 1 - n : n, against: run });
        },
        swap() {
            const { run, n, against, a, sensors } = store.view;
            if (sensors) set({ sensors: sensors.toReversed() });
            const other = against !== run && { step: null, zoom: null };
            if (a !== null) set({ run: against, n: a, against: run, a: n, ...other });
        },
        /** Holds two sensors of a snapshot against each other. */
        sensors: () => {
            const { sensors, run } = store.view;
            set({ ...ALONE, sensors: sensors ? null : all[run].sensors.slice(0, 2) });
        },
        only: () => set({ only: !store.view.only }),
        query: (query) => set({ query }),
        /** Shows a run, at its end or where it has been. */
        show: (run) => set({ run, n: all[run].length - 1, step: null, zoom: null }),
        /** Holds what shows against a snapshot of a run. */
        hold: (against) => set({ against, a: all[against].length - 1, sensors: null }),
        nextRun() {
            const run = (store.view.run + 1) % all.length;
            if (run !== store.view.run) this.show(run);
        },
        theme() {
            theme.toggle();
            set({ theme: theme.name });
        },
        help: () => help.showModal(),
        escape() {
            if (help.open) return;
            if (store.view.query) set({ query: '' });
            else if (store.view.step) set({ step: null });
            else set(ALONE);
            document.activeElement?.blur?.();
        },
    };
}

/** Lets the address follow the view when that rests: browsers refuse to change it at every step. */
function follower(usual) {
    let due = null;
    return {
        stop: () => clearTimeout(due),
        follow(view) {
            clearTimeout(due);
            due = setTimeout(() => {
                const fragment = toFragment(view, usual);
                const { pathname, search } = window.location;
                const address = fragment ? `#${fragment}` : pathname + search;
                window.history.replaceState(null, '', address);
            }, 250);
        },
    };
}

/** Shows the run of the view; `onRun(view)` is called for another one. Returns what ends it. */
function showRun(root, runs, options) {
    const { open, theme, said, remove, live, view: wanted, usual, onRun } = options;
    const ending = new AbortController();
    const { signal } = ending;
    const { all } = runs;
    const run = all[wanted.run];
    const store = new Store({ ...wanted, theme: theme.name });
    const help = template('help');
    const address = follower(usual);
    const play = player(store, run, (playing) => bar.playing(playing));
    const seek = () => bar.search.focus();
    const sections = sectionsOf(run, store);
    const time = sections.find(({ id }) => id === 'time');
    const actions = actionsOn(store, all, { play, theme, help, open, find: seek, remove, time });
    const bar = toolbar(runs, run, store, actions);

    let find = null;

    function update(view, changed) {
        if (all[view.run] !== run) return onRun(view);
        const [before, now] = momentsOf(view, all);
        if (changed.has('query')) find = finder(view.query);
        const shown = { ...view, now, before, find, live: Boolean(live) };
        bar.update(shown);
        for (const section of sections) updateSection(section, shown, changed);
        if (['a', 'sensors', 'only', 'query'].some((key) => changed.has(key)))
            bar.sections(sections.filter(({ place }) => !place.hidden));
        address.follow(view);
    }
    function paper(printing) {
        theme.paper(printing);
        update(store.view, new Set(['theme']));
        if (printing) drawAll();
        fitPaper(root, printing);
    }
    function drawAll() {
        for (const section of sections) section.drawAll?.();
    }

    const places = sections.map(({ place }) => place);
    const told = said ? el('p', { class: 'notice', role: 'alert' }, said) : null;
    const content = [told, ...notices(runs.models), ...places].filter(Boolean);
    root.replaceChildren(bar.element, el('main', {}, content), help);
    document.title = `${runs.captures.join(', ')} – vordascope`;
    store.listen(update);
    update(store.view, new Set(Object.keys(store.view)));
    listenToKeys(actions, signal);
    theme.listen(() => store.set({ theme: theme.name }), signal);
    const listen = (event, listener) => window.addEventListener(event, listener, { signal });
    listen('beforeprint', () => paper(true));
    listen('afterprint', () => paper(false));
    listen('hashchange', () => {
        const part = fromFragment(window.location.hash);
        store.set(boundedView({ ...usual, ...part, theme: theme.name }, all));
    });
    live?.attach({ store, run, sections, bar: bar.element });
    const idle = window.requestIdleCallback ?? ((callback) => setTimeout(callback, 200));
    idle(() => !signal.aborted && drawAll());
    return () => {
        play.stop();
        address.stop();
        ending.abort();
        store.stop();
        endAll();
        const { view } = store;
        return { view, run, against: all[view.against], count: all.length };
    };
}
