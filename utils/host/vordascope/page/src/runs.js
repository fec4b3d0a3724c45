// The runs that the page holds: of what was baked in and of all that was dropped, pasted or opened.
import { Run } from './model.js';

/** Names of the runs of one model: the file's; with the path and a count where that is not enough. */
function nameRuns(runs) {
    const several = (list) => new Set(list).size > 1;
    for (const run of runs) {
        const ofFile = runs.filter(({ file }) => file === run.file);
        const ofPath = ofFile.filter(({ path }) => path === run.path);
        const parts = [run.file];
        if (several(ofFile.map(({ path }) => path))) parts.push(run.path);
        if (ofPath.length > 1) parts.push(`run ${ofPath.indexOf(run) + 1}`);
        run.name = parts.join(' · ');
    }
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

    /** The names of the files that they come from. */
    get files() {
        return [...new Set(this.all.map(({ file }) => file))];
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
    const { only, query, added, align, band, ref } = view;
    const here = all.indexOf(run);
    const compared = against ? all.indexOf(against) : -1;
    if (here < 0 || (all.length > count && usual.against !== null))
        return { only, query, added, align, band, ref };
    return {
        ...view,
        run: here,
        against: compared < 0 ? null : compared,
        a: compared < 0 ? null : view.a,
    };
}

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
        step: view.step?.every((n) => n <= last) ? view.step : null,
    };
}
