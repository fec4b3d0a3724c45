// The bar on top: what is shown, the search, the snapshots.
import { el, setText } from './dom.js';

const button = (text, title, click, more = {}) =>
    el('button', { type: 'button', title, on: { click }, ...more }, text);

/** The name of what was read, and the buttons that are there for every capture. */
function titleLine(model, actions) {
    const files =
        model.files.length > 3
            ? [...model.files.slice(0, 2), `${model.files.length - 2} more`]
            : model.files;
    const search = el('input', {
        type: 'search',
        placeholder: 'Find a field ( / )',
        'aria-label': 'find a field',
        on: { input: () => actions.query(search.value) },
    });
    const only = button('Only changed', 'only what changed (O)', actions.only, {
        'aria-pressed': 'false',
    });
    return {
        search,
        only,
        element: el(
            'div',
            { class: 'title-line' },
            el('h1', { title: model.files.join('\n') }, files.join(', ') || 'vordascope'),
            el('span', { class: 'about' }),
            el(
                'span',
                { class: 'tools' },
                search,
                only,
                actions.open ? button('Open…', 'read other captures', actions.open) : null,
                button('Theme', 'light or dark (T)', actions.theme),
                button('?', 'keys (?)', actions.help, { 'aria-label': 'help' }),
            ),
        ),
    };
}

/** The slider over the snapshots, null for one alone. */
function snapshotLine(series, store, actions) {
    if (series.length < 2) return null;
    const slider = el('input', {
        type: 'range',
        min: '0',
        max: String(series.length - 1),
        step: '1',
        'aria-label': 'snapshot',
    });
    slider.addEventListener('input', () => store.set({ n: Number(slider.value) }));
    const play =
        series.length > 2 ? button('▶', 'play (space)', actions.play, { class: 'play' }) : null;
    const reference = el('span', { class: 'reference', 'aria-hidden': 'true' });
    const place = el('output', { class: 'place' });
    const compare = button('Compare', 'compare with this snapshot (C)', actions.compare);
    const swap = button('A ⇄ B', 'exchange the two (X)', actions.swap);

    /** The number of a snapshot, its time and its file where there are several. */
    function nameOf(n, of = '') {
        const time = series.timed ? `${series.axis[n]} s` : '';
        const cut = series.cut.has(n) ? 'cut off' : '';
        return [`${n + 1}${of}`, time, series.origin(n), cut].filter(Boolean).join(' · ');
    }
    return {
        element: el(
            'div',
            { class: 'snapshot-line' },
            play,
            el('span', { class: 'slide' }, reference, slider),
            place,
            swap,
            compare,
        ),
        playing(is) {
            if (!play) return;
            setText(play, is ? '⏸' : '▶');
            play.setAttribute('aria-label', is ? 'stop' : 'play');
        },
        update({ n, a }) {
            slider.value = String(n);
            slider.setAttribute('aria-valuetext', nameOf(n));
            setText(
                place,
                a === null ? nameOf(n, ` / ${series.length}`) : `A ${nameOf(a)} → B ${nameOf(n)}`,
            );
            reference.hidden = a === null;
            if (a !== null)
                reference.style.setProperty('--at-number', String(a / (series.length - 1)));
            swap.hidden = a === null;
            setText(compare, a === null ? 'Compare' : 'End comparison');
        },
    };
}

/**
 * @param {object} model of all captures
 * @param {Series[]} all the paths
 * @param {object} actions what the buttons do
 * @returns {{element, search, update(view, changed), playing(is), sections(list)}}
 */
export function toolbar(model, all, series, store, actions) {
    const title = titleLine(model, actions);
    const snapshots = series && snapshotLine(series, store, actions);
    const nav = el('nav', { 'aria-label': 'sections' });
    const paths =
        all.length > 1 &&
        el(
            'div',
            { class: 'choice', role: 'group', 'aria-label': 'path' },
            all.map((path, i) =>
                button(path.title, 'show this path (P)', () => store.set({ path: i }), {
                    'aria-pressed': String(path === series),
                }),
            ),
        );
    const about = title.element.querySelector('.about');
    if (series) {
        const count = series.length > 1 ? `${series.length} snapshots, ` : '';
        setText(
            about,
            `${all.length > 1 ? '' : `${series.title} · `}${count}${series.fields.length} fields`,
        );
    }
    return {
        element: el(
            'header',
            { class: 'bar' },
            title.element,
            paths || null,
            snapshots?.element,
            nav,
        ),
        search: title.search,
        playing: (is) => snapshots?.playing(is),
        update(view) {
            if (title.search.value !== view.query) title.search.value = view.query;
            title.only.setAttribute('aria-pressed', String(view.only));
            snapshots?.update(view);
        },
        /** Names the sections that show: [{title, place}]. */
        sections(list) {
            const goTo = (place) => place.scrollIntoView({ behavior: 'smooth' });
            nav.replaceChildren(
                ...list.map(({ title, place }) =>
                    button(title, '', () => goTo(place), { class: 'link' }),
                ),
            );
        },
    };
}
