// What has to be said of the input before anything of it is shown.
import { el } from './dom.js';

function unreadNotice({ files, unread, unread_count: count }) {
    if (!count) return null;
    const lines = unread.map(({ file, line, text, why }) =>
        el(
            'tr',
            {},
            el('td', {}, `${files[file] ?? ''}:${line}`),
            el('td', { class: 'why' }, why),
            el('td', {}, text),
        ),
    );
    const rest = count - unread.length;
    return el(
        'details',
        { class: 'notice' },
        el('summary', {}, `${count} line${count === 1 ? '' : 's'} could not be read`),
        el('div', { class: 'wide' }, el('table', { class: 'unread' }, el('tbody', {}, lines))),
        rest > 0 ? el('p', {}, `and ${rest} more`) : null,
    );
}

function cutNotice(series) {
    if (series.cut.size === 0) return null;
    const end = 'in the middle: what was printed up to there is shown.';
    if (series.length === 1) return `${series.title}: the snapshot ends ${end}`;
    const which = [...series.cut].map((n) => `#${n + 1} ${series.origin(n)}`.trim());
    const shown = which.length > 8 ? [...which.slice(0, 8), `${which.length - 8} more`] : which;
    return `${series.title}: ${shown.join(', ')} ended ${end}`;
}

function thinnedNotice({ title, length, group }) {
    if (!(group.read > length)) return null;
    return `${title}: ${length} of ${group.read} snapshots, evenly spread.`;
}

/** The notices, an empty list where all is well. */
export function notices(model, all) {
    const said = (model.notes ?? []).map(({ file, text }) => `${model.files[file] ?? ''}: ${text}`);
    const texts = [...said, ...all.map(thinnedNotice), ...all.map(cutNotice)].filter(Boolean);
    return [...texts.map((text) => el('p', { class: 'notice' }, text)), unreadNotice(model)].filter(
        Boolean,
    );
}
