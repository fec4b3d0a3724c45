// The runs that the page holds: of what was baked in and of all that was dropped, pasted or opened.
import { grouped, Run } from './model.js';
import { goingOn } from './view.js';

/** What came from no file is known by its labels. */
const NAMELESS = ['standard input', 'pasted text'];

/** So many labels are looked at for a name, and so much of one stands in it. */
const LABELS = 20;
const LENGTH = 40;

/** A text on one line, in the order of its characters. */
const plain = (text) => text.replace(/[\p{C}\s]+/gu, ' ').trim();

function inName(value) {
    const text = [...plain(value)];
    return text.slice(0, LENGTH).join('') + (text.length > LENGTH ? '…' : '');
}

const groups = (runs, key) => [...grouped(runs, (run) => run[key]).values()];

/** The keys of the labels that tell runs apart, as few of the first ones as do. */
function telling(runs) {
    const keys = new Set(runs.flatMap(({ labels }) => labels.slice(0, LABELS).map(([key]) => key)));
    const chosen = [];
    const apart = (keys) =>
        new Set(runs.map((run) => keys.map((key) => run.label(key)).join('\n'))).size;
    for (const key of keys) if (apart([...chosen, key]) > apart(chosen)) chosen.push(key);
    return chosen;
}

/** Names runs: by the file or by labels; with the path and a count where that is not enough. */
function nameRuns(runs) {
    for (const same of groups(runs, 'file')) {
        const keys = telling(same);
        for (const run of same) {
            const told = keys.map((key) => inName(run.label(key))).filter(Boolean);
            const nameless = NAMELESS.includes(run.file);
            if (nameless && told.length === 0) told.push(inName(run.labels[0]?.[1] ?? ''));
            const parts = nameless && told[0] ? told : [plain(run.file), ...told];
            run.capture = parts.filter(Boolean).join(' · ');
            run.name = run.capture;
        }
    }
    for (const same of groups(runs, 'capture'))
        if (groups(same, 'path').length > 1)
            for (const run of same) run.name = `${run.capture} · ${run.path}`;
    for (const same of groups(runs, 'name'))
        if (same.length > 1)
            same.forEach((run, i) => {
                run.name += ` · run ${i + 1}`;
            });
}

export class Runs {
    #models = [];

    /** All of them in order. */
    get all() {
        return this.#models.flatMap(({ runs }) => runs);
    }

    /** The models that have runs here: { model, runs }. */
    get models() {
        return this.#models;
    }

    /** The names of the captures that they come from. */
    get captures() {
        return [...new Set(this.all.map(({ capture }) => capture))];
    }

    /** Adds the runs of a model, see model.h. Returns them. */
    add(model) {
        const runs = model.runs.map((run) => new Run(run, model));
        this.#models.push({ model, runs });
        nameRuns(this.all);
        return runs;
    }

    /** Takes all of a model away. */
    removeModel(model) {
        this.#models = this.#models.filter((entry) => entry.model !== model);
    }

    /** Takes a run away, and with its last one what was said of the model. */
    remove(run) {
        for (const entry of this.#models) entry.runs = entry.runs.filter((one) => one !== run);
        this.#models = this.#models.filter(({ runs }) => runs.length > 0);
        nameRuns(this.all);
    }
}

/** Whether two runs are of one path, so that to compare them is what somebody wants. */
const alike = (a, b) => a.path === b.path && a.file !== b.file;

/**
 * What shows of runs when nothing was chosen: the last snapshot of the first run; where two runs are
 * of one path, the second one against the first; of two snapshots both.
 */
export function usualView(all) {
    const [first, second] = all;
    if (all.length === 2 && alike(first, second))
        return { run: 1, n: second.length - 1, against: 0, a: first.length - 1 };
    const pair = first?.length === 2;
    const last = Math.max((first?.length ?? 1) - 1, 0);
    return { run: 0, n: last, against: pair ? 0 : null, a: pair ? 0 : null };
}

/**
 * What goes on showing when runs have come or gone: what did, where it is still there. Where a second
 * run of the same path has come, it is shown against the first.
 * @param {{view, run, against, count}} before the view, its runs, and how many there were
 */
export function continuedView({ view, run, against, count }, all, usual) {
    const here = all.indexOf(run);
    const compared = against ? all.indexOf(against) : -1;
    if (here < 0 || (all.length > count && usual.against !== null)) return goingOn(view);
    return {
        ...view,
        run: here,
        against: compared < 0 ? null : compared,
        a: compared < 0 ? null : view.a,
    };
}

/** Whether a run has what two different sensors have both. */
const paired = (run, sensors) =>
    new Set(sensors).size === 2 && sensors.every((sensor) => run?.sensors.includes(sensor));

/** A view with everything within the bounds of the runs. */
export function boundedView(view, all) {
    const run = Math.min(view.run, Math.max(all.length - 1, 0));
    const last = Math.max((all[run]?.length ?? 1) - 1, 0);
    const other = view.a === null ? undefined : all[view.against ?? run];
    const alone = other === all[run] && last === 0;
    const compared = other && view.a < other.length && !alone;
    return {
        ...view,
        run,
        n: Math.min(view.n, last),
        against: compared ? (view.against ?? run) : null,
        a: compared ? view.a : null,
        sensors: !compared && paired(all[run], view.sensors) ? view.sensors : null,
        step: view.step?.every((n) => n <= last) ? view.step : null,
    };
}
