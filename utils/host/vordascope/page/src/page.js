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
import { finder } from './search.js';
import { Store } from './store.js';
import { timeSection } from './time.js';
import { toolbar } from './toolbar.js';

const FRAME = 1000 / 15;
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

/** Shows one of the paths; `onPath(i)` is called for another one. Returns what ends it. */
function showSeries(root, model, { open, theme, all, path, view: wanted, onPath }) {
    const ending = new AbortController();
    const { signal } = ending;
    const series = all[path];
    const defaults = defaultsFor(series);
    const store = new Store(bounded({ ...defaults, ...wanted, path, theme: theme.name }, series));
    const set = (patch) => store.set(patch);
    const help = helpCard();
    let timer = null;

    function play(on = timer === null) {
        clearInterval(timer);
        timer = null;
        if (on && series?.length > 2) {
            if (store.view.n === series.length - 1) set({ n: 0 });
            timer = setInterval(() => {
                if (store.view.n === series.length - 1) play(false);
                else set({ n: store.view.n + 1 });
            }, FRAME);
        }
        bar.playing(timer !== null);
    }
    const last = (series?.length ?? 1) - 1;
    const goTo = (n) => {
        play(false);
        set({ n: Math.min(Math.max(n, 0), last) });
    };
    const actions = {
        open,
        step: (by) => goTo(store.view.n + by),
        first: () => goTo(0),
        last: () => goTo(last),
        play: () => play(),
        compare: () =>
            last > 0 &&
            set({
                a: store.view.a === null ? (last === 1 ? 1 - store.view.n : store.view.n) : null,
            }),
        swap: () => store.view.a !== null && set({ a: store.view.n, n: store.view.a }),
        only: () => set({ only: !store.view.only }),
        query: (query) => set({ query }),
        find: () => bar.search.focus(),
        path: () => all.length > 1 && set({ path: (path + 1) % all.length }),
        theme: () => {
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

    // The address follows when the view rests: browsers refuse to change it at every step of a play.
    let due = null;
    function address(view) {
        clearTimeout(due);
        due = setTimeout(() => {
            const fragment = toFragment(view, { ...defaults, path: 0 });
            const { pathname, search } = window.location;
            window.history.replaceState(null, '', fragment ? `#${fragment}` : pathname + search);
        }, 250);
    }

    const bar = toolbar(model, all, series, store, actions);
    const built = series
        ? [
              nowSection(series),
              timeSection(series, store),
              differencesSection(series),
              ...cardSections(series),
              listSection(series, store),
          ]
        : [];
    const sections = built.filter(Boolean).map((section) => ({
        ...section,
        place: el('section', { id: section.id }, el('h2', {}, section.title), section.element),
    }));
    const nothing = series ? null : el('p', { class: 'nothing' }, 'There is no snapshot in this.');

    function update(view, changed) {
        if (changed.has('path') && view.path !== path) {
            onPath(view.path);
            return;
        }
        const shown = { ...view, series, find: finder(view.query) };
        bar.update(shown);
        for (const section of sections) {
            section.update(shown, changed);
            section.place.hidden =
                section.empty() ||
                (view.query !== '' && (section.id === 'now' || section.id === 'time'));
        }
        if (['a', 'only', 'query'].some((key) => changed.has(key)))
            bar.sections(
                sections.map(({ title, place }) => ({
                    title,
                    element: place,
                    hidden: place.hidden,
                })),
            );
        address(view);
    }

    const drawAll = () => {
        for (const section of sections) section.drawAll?.();
    };
    root.replaceChildren(
        bar.element,
        el(
            'main',
            {},
            notices(model, all),
            nothing,
            sections.map(({ place }) => place),
        ),
        help,
    );
    document.title = `${model.files.join(', ')} – vordascope`;
    listenToKeys(actions, signal);
    store.listen(update);
    update(store.view, EVERYTHING);
    theme.listen(() => set({ theme: theme.name }), signal);
    window.addEventListener(
        'beforeprint',
        () => {
            theme.paper(true);
            update(store.view, new Set(['theme']));
            drawAll();
        },
        { signal },
    );
    window.addEventListener(
        'afterprint',
        () => {
            theme.paper(false);
            update(store.view, new Set(['theme']));
        },
        { signal },
    );
    const idle = window.requestIdleCallback ?? ((callback) => setTimeout(callback, 200));
    idle(() => !signal.aborted && drawAll());
    return () => {
        clearInterval(timer);
        clearTimeout(due);
        ending.abort();
    };
}
