// The page of a model: its sections, and what ties them together.
import { cardSections } from './cards.js';
import { differencesSection } from './differences.js';
import { el } from './dom.js';
import { fromFragment, toFragment } from './fragment.js';
import { helpCard, listenToKeys } from './help.js';
import { listSection } from './list.js';
import { Series } from './model.js';
import { notices } from './notices.js';
import { nowSection } from './now.js';
import { player } from './player.js';
import { finder } from './search.js';
import { Store } from './store.js';
import { timeSection } from './time.js';
import { toolbar } from './toolbar.js';

const EVERYTHING = new Set(['path', 'n', 'a', 'only', 'query', 'step', 'added', 'theme']);

/** What shows when nothing was chosen: of two snapshots both, else the last. */
function defaultsFor(series) {
    const n = Math.max((series?.length ?? 1) - 1, 0);
    return { n, a: series?.length === 2 ? 0 : null, only: false, query: '', step: null, added: [] };
}

/** A view of that series with everything within its bounds. */
function bounded(view, series) {
    const last = Math.max((series?.length ?? 1) - 1, 0);
    const within = (n) => n !== null && n <= last;
    return {
        ...view,
        n: Math.min(view.n, last),
        a: within(view.a) && series?.length > 1 ? view.a : null,
        step: view.step?.every(within) ? view.step : null,
    };
}

/**
 * Shows a model in place of what the root held.
 * @param {HTMLElement} root
 * @param {object} model see model.h
 * @param {{open: (() => void)|null, theme: object}} options what "Open…" does, null without a reader;
 *     the theme (see theme.js)
 * @returns {() => void} ends it
 */
export function showPage(root, model, options) {
    const all = model.groups.map((group) => new Series(group, model.files));
    const wanted = fromFragment(window.location.hash);
    let end;
    const show = (path, view) => {
        end = showSeries(root, model, { ...options, all, path, view, onPath });
    };
    const onPath = (path) => {
        end();
        show(path, {});
    };
    show(Math.min(wanted.path ?? 0, Math.max(all.length - 1, 0)), wanted);
    return () => end();
}

/** The sections of a series, each in its place on the page. */
function sectionsOf(series, store) {
    const built = [
        nowSection(series),
        timeSection(series, store),
        differencesSection(series),
        ...cardSections(series),
        listSection(series, store),
    ];
    return built.filter(Boolean).map((section) => ({
        ...section,
        place: el('section', { id: section.id }, el('h2', {}, section.title), section.element),
    }));
}

/** Redraws a section; one that fails says so, and the others stand. */
function updateSection(section, view, changed) {
    try {
        section.update(view, changed);
        const searched = view.query !== '';
        const beside = section.id === 'now' || section.id === 'time';
        section.place.hidden = section.empty() || (searched && beside);
    } catch (error) {
        const text = `This section could not be drawn (${error.message}).`;
        section.element.replaceChildren(el('p', { class: 'failed', role: 'alert' }, text));
    }
}

/** What buttons and keys do; see listenToKeys() and toolbar(). */
function actionsOn(store, { last, paths, play, theme, help, open, find }) {
    const set = (patch) => store.set(patch);
    const goTo = (n) => {
        play.stop();
        set({ n: Math.min(Math.max(n, 0), last) });
    };
    return {
        open,
        find,
        step: (by) => goTo(store.view.n + by),
        first: () => goTo(0),
        last: () => goTo(last),
        play: play.toggle,
        compare() {
            const { n, a } = store.view;
            // Of two, the other one.
            if (last > 0) set({ a: a !== null ? null : last === 1 ? 1 - n : n });
        },
        swap: () => store.view.a !== null && set({ a: store.view.n, n: store.view.a }),
        only: () => set({ only: !store.view.only }),
        query: (query) => set({ query }),
        path: () => set({ path: (store.view.path + 1) % paths }),
        theme() {
            theme.toggle();
            set({ theme: theme.name });
        },
        help: () => help.showModal(),
        escape() {
            if (help.open) return;
            if (store.view.query) set({ query: '' });
            else if (store.view.step) set({ step: null });
            else if (store.view.a !== null && last > 1) set({ a: null });
            document.activeElement?.blur?.();
        },
    };
}

/** Lets the address follow the view when that rests: browsers refuse to change it at every step. */
function follower(defaults) {
    let due = null;
    return {
        stop: () => clearTimeout(due),
        follow(view) {
            clearTimeout(due);
            due = setTimeout(() => {
                const fragment = toFragment(view, { ...defaults, path: 0 });
                const { pathname, search } = window.location;
                const address = fragment ? `#${fragment}` : pathname + search;
                window.history.replaceState(null, '', address);
            }, 250);
        },
    };
}

/** Shows one of the paths; `onPath(i)` is called for another one. Returns what ends it. */
function showSeries(root, model, { open, theme, all, path, view: wanted, onPath }) {
    const ending = new AbortController();
    const { signal } = ending;
    const series = all[path];
    const defaults = defaultsFor(series);
    const viewOf = (part) => bounded({ ...defaults, path, ...part, theme: theme.name }, series);
    const store = new Store(viewOf({ ...wanted, path }));
    const last = defaults.n;
    const help = helpCard();
    const address = follower(defaults);
    const play = player(store, last, (playing) => bar.playing(playing));
    const find = () => bar.search.focus();
    const paths = Math.max(all.length, 1);
    const actions = actionsOn(store, { last, paths, play, theme, help, open, find });
    const bar = toolbar(model, all, series, store, actions);
    const sections = series ? sectionsOf(series, store) : [];
    const nothing = series ? null : el('p', { class: 'nothing' }, 'There is no snapshot in this.');

    function update(view, changed) {
        if (view.path !== path && all[view.path]) return onPath(view.path);
        const shown = { ...view, series, find: finder(view.query) };
        bar.update(shown);
        for (const section of sections) updateSection(section, shown, changed);
        if (['a', 'only', 'query'].some((key) => changed.has(key)))
            bar.sections(sections.filter(({ place }) => !place.hidden));
        address.follow(view);
    }
    function paper(printing) {
        theme.paper(printing);
        update(store.view, new Set(['theme']));
        if (printing) drawAll();
    }
    function drawAll() {
        for (const section of sections) section.drawAll?.();
    }

    const places = sections.map(({ place }) => place);
    root.replaceChildren(bar.element, el('main', {}, notices(model, all), nothing, places), help);
    document.title = `${model.files.join(', ')} – vordascope`;
    store.listen(update);
    update(store.view, EVERYTHING);
    listenToKeys(actions, signal);
    theme.listen(() => store.set({ theme: theme.name }), signal);
    const listen = (event, listener) => window.addEventListener(event, listener, { signal });
    listen('beforeprint', () => paper(true));
    listen('afterprint', () => paper(false));
    listen('hashchange', () => store.set(viewOf(fromFragment(window.location.hash))));
    const idle = window.requestIdleCallback ?? ((callback) => setTimeout(callback, 200));
    idle(() => !signal.aborted && drawAll());
    return () => {
        play.stop();
        address.stop();
        ending.abort();
    };
}
