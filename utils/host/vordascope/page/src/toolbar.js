// The bar on top: what is shown, the search, the runs, the snapshots.
import { el, setText } from './dom.js';
import { RATE, SPEEDS } from './player.js';

const button = (text, title, click, more = {}) =>
    el('button', { type: 'button', title, on: { click }, ...more }, text);

/** What takes a run away. */
const awayButton = (run, actions, more) =>
    button('×', `take ${run.name} away`, () => actions.remove(run), {
        'aria-label': `take ${run.name} away`,
        ...more,
    });

/** A text of which nothing is hidden and nothing turns the others around. */
const visible = (text) => text.replace(/\p{C}/gu, (c) => `\\u{${c.codePointAt(0).toString(16)}}`);

/** So many labels show unopened. */
const LABELS = 4;

/** What the capture of a run says of itself: beside its name in few words, opened in full. */
function labelsOf() {
    const few = el('summary', {}, 'labels');
    const all = el('dl');
    let told = [];
    const element = el('details', { class: 'labels', hidden: true }, few, all);
    return {
        element,
        update({ labels }) {
            if (labels === told) return;
            told = labels;
            const entries = labels.map(([key, value]) => [key, el('bdi', {}, visible(value))]);
            element.hidden = labels.length === 0;
            if (element.hidden) return;
            const rest = labels.length > LABELS ? ` and ${labels.length - LABELS} more` : '';
            const short = entries.slice(0, LABELS);
            few.replaceChildren(
                ...short.map(([key, value]) => el('span', {}, `${key} `, value.cloneNode(true))),
                rest,
            );
            all.replaceChildren(
                ...entries.flatMap(([key, value]) => [el('dt', {}, key), el('dd', {}, value)]),
            );
        },
    };
}

/** The name of what was read, and the buttons that are there for every capture. */
function titleLine(runs, run, actions) {
    const { captures } = runs;
    const more = captures.length - 2;
    const named = more > 1 ? [...captures.slice(0, 2), `${more} more`] : captures;
    const search = el('input', {
        type: 'search',
        placeholder: 'Find a field ( / )',
        'aria-label': 'find a field',
        on: { input: () => actions.query(search.value) },
    });
    const only = button('Only changed', 'only what changed (O)', actions.only, {
        'aria-pressed': 'false',
    });
    const about = el('span', { class: 'about' });
    const labels = labelsOf();
    const wrong = el('span', { class: 'about', role: 'status' });
    return {
        search,
        only,
        update({ query, find }) {
            if (search.value !== query) search.value = query;
            search.ariaInvalid = String(find.error !== '');
            setText(wrong, find.error);
            const count = run.length > 1 ? `${run.length} snapshots, ` : '';
            setText(about, `${run.path} · ${count}${run.fields.length} fields`);
            labels.update(run);
        },
        element: el(
            'div',
            { class: 'title-line' },
            el('h1', { title: captures.join('\n') }, named.join(', ')),
            about,
            labels.element,
            el(
                'span',
                { class: 'tools' },
                search,
                wrong,
                only,
                actions.open ? button('Open…', 'add other captures', actions.open) : null,
                runs.all.length > 1 ? null : awayButton(run, actions, { class: 'quiet' }),
                button('Theme', 'light or dark (T)', actions.theme),
                button('?', 'keys (?)', actions.help, { 'aria-label': 'help' }),
            ),
        ),
    };
}

/** The length of a run in words: "300 snapshots, 12 s". */
function lengthOf(run) {
    const count = `${run.length} snapshot${run.length === 1 ? '' : 's'}`;
    return run.timed && run.length > 1 ? `${count}, ${run.axis[run.length - 1]} s` : count;
}

/** The runs, each to be shown, to be held against, to be taken away; null for one alone. */
function runsLine(all, actions) {
    if (all.length < 2) return null;
    const entries = all.map((run, i) => {
        const show = button(run.name, `show ${run.name} (P: the next one)`, () => actions.show(i));
        show.append(el('span', { class: 'about' }, lengthOf(run)));
        const hold = button('A', `hold it against ${run.name}`, () => actions.hold(i), {
            'aria-label': `compare with ${run.name}`,
        });
        const away = awayButton(run, actions);
        return { show, hold, element: el('span', { class: 'run' }, show, hold, away) };
    });
    return {
        element: el(
            'div',
            { class: 'runs', role: 'group', 'aria-label': 'runs' },
            entries.map(({ element }) => element),
        ),
        update({ run, against }) {
            entries.forEach(({ show, hold }, i) => {
                show.setAttribute('aria-pressed', String(i === run));
                hold.setAttribute('aria-pressed', String(i === against));
            });
        },
    };
}

/** The sensors of a snapshot, one to be held against the other; null where that is not. */
function sensorsLine({ sensors }, actions) {
    if (sensors.length < 2) return null;
    const pair = button('', 'the sensors of this snapshot, one against the other', actions.sensors);
    return {
        element: el('div', { class: 'runs' }, pair),
        update(view) {
            const [a, b] = view.sensors ?? sensors;
            pair.setAttribute('aria-pressed', String(Boolean(view.sensors)));
            setText(pair, `Sensor ${a} as A, sensor ${b} as B`);
        },
    };
}

/** A slider over the snapshots of a run: `key` is the part of the view that it moves. */
function slider(store, key, label) {
    const input = el('input', {
        type: 'range',
        min: '0',
        step: '1',
        'aria-label': label,
        on: { input: () => store.set({ [key]: Number(input.value) }) },
    });
    const place = el('output', { class: 'place' });
    return {
        input,
        place,
        show({ run, n }, text) {
            input.max = String(run.length - 1);
            input.value = String(n);
            input.disabled = run.length < 2;
            input.setAttribute('aria-valuetext', text);
            setText(place, text);
            place.title = run.originOf(n);
        },
    };
}

/** How fast a run plays. */
function speedChoice({ timed }, player) {
    const title = `speed, of ${timed ? 'the recording' : `${RATE} frames a second`}`;
    const choice = el(
        'select',
        {
            title,
            'aria-label': title,
            on: {
                change: () => {
                    player.speed = Number(choice.value);
                },
            },
        },
        SPEEDS.map(([times, text]) => el('option', { value: String(times) }, text)),
    );
    choice.value = String(player.speed);
    return choice;
}

/** The sliders over the snapshots, null where there is but one. */
function snapshotLines(all, run, store, actions) {
    if (run.length < 2 && all.length < 2) return null;
    const now = slider(store, 'n', 'snapshot');
    const reference = slider(store, 'a', 'compared snapshot');
    const naming = { class: 'play', 'aria-label': 'play' };
    const play = run.length > 2 ? button('▶', 'play (space)', actions.play, naming) : null;
    const speed = play && speedChoice(run, actions.player);
    const compare = button('Compare', 'compare with this snapshot (C)', actions.compare);
    const swap = button('A ⇄ B', 'exchange the two (X)', actions.swap, {
        'aria-label': 'exchange A and B',
    });
    const referenceLine = el(
        'div',
        { class: 'snapshot-line reference-line' },
        el('b', {}, 'A'),
        reference.input,
        reference.place,
        swap,
    );

    /** A snapshot, and its run where there are several. */
    function nameOf(moment, of) {
        const cut = moment.run.cut.has(moment.n) ? 'cut off' : '';
        const name = all.length > 1 ? moment.run.name : '';
        const place = moment.run.placeOf(moment.n).replace(/^#\d+/, (number) => number + of);
        return [name, place, cut].filter(Boolean).join(' · ');
    }
    return {
        element: el(
            'div',
            { class: 'snapshots' },
            el('div', { class: 'snapshot-line' }, play, speed, now.input, now.place, compare),
            referenceLine,
        ),
        playing(is) {
            if (!play) return;
            setText(play, is ? '⏸' : '▶');
            play.setAttribute('aria-label', is ? 'stop' : 'play');
        },
        update({ now: shown, before }) {
            const text = nameOf(shown, before ? '' : ` of ${run.length}`);
            now.show(shown, before ? `B ${text}` : text);
            const held = before && before.sensor === shown.sensor;
            referenceLine.hidden = !held;
            if (held) reference.show(before, nameOf(before, ''));
            setText(compare, before ? 'End comparison' : 'Compare');
        },
    };
}

/**
 * @param {Runs} runs all that are here
 * @param {Run} run the one that shows
 * @param {object} actions what the buttons do
 * @returns {{element, search, update(view), playing(is), sections(list)}}
 */
export function toolbar(runs, run, store, actions) {
    const title = titleLine(runs, run, actions);
    const strip = runsLine(runs.all, actions);
    const sensors = sensorsLine(run, actions);
    const snapshots = snapshotLines(runs.all, run, store, actions);
    const nav = el('nav', { 'aria-label': 'sections' });
    const parts = [title.element, strip?.element, sensors?.element, snapshots?.element, nav];
    return {
        element: el('header', { class: 'bar' }, parts),
        search: title.search,
        playing: (is) => snapshots?.playing(is),
        update(view) {
            title.update(view);
            title.only.setAttribute('aria-pressed', String(view.only));
            strip?.update(view);
            sensors?.update(view);
            snapshots?.update(view);
        },
        /** Names the sections that show: [{title, place}]. */
        sections(list) {
            const still = window.matchMedia('(prefers-reduced-motion: reduce)');
            const goTo = (place) => {
                place.scrollIntoView({ behavior: still.matches ? 'instant' : 'smooth' });
                place.tabIndex = -1; // so that keys go on from there
                place.focus({ preventScroll: true });
            };
            nav.replaceChildren(
                ...list.map(({ title, place }) =>
                    button(title, '', () => goTo(place), { class: 'link' }),
                ),
            );
        },
    };
}
