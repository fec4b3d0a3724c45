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

function cutNotice(run) {
    if (run.cut.size === 0) return null;
    const end = 'in the middle: what was printed up to there is shown.';
    if (run.length === 1) return `${run.name}: the snapshot ends ${end}`;
    const which = [...run.cut].map((n) => `#${n + 1}`);
    const shown = which.length > 8 ? [...which.slice(0, 8), `${which.length - 8} more`] : which;
    return `${run.name}: ${shown.join(', ')} ended ${end}`;
}

/** What a model says of its files, as texts. */
export const notesOf = ({ files, notes }) =>
    (notes ?? []).map(({ file, text }) => (files[file] ? `${files[file]}: ${text}` : text));

/** The notices of the models whose runs are here, an empty list where all is well. */
export const notices = (models) =>
    models.flatMap(({ model, runs }) =>
        [
            ...[...notesOf(model), ...runs.map(cutNotice).filter(Boolean)].map((text) =>
                el('p', { class: 'notice' }, text),
            ),
            unreadNotice(model),
        ].filter(Boolean),
    );
