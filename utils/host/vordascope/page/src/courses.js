// What a chart over time draws: lines, each the course of a number over any run, also one that goes on.
import { pushed } from './course.js';
import { flat, number, printed } from './model.js';
import { shortNumber } from './ticks.js';

// A line is
//     name, path     what the chart calls it, and the field or quantity
//     factors        the fields that it is computed from, where it is
//     stops          whether its values are logarithms
//     varies         whether it changes over the run that it was made for
//     of(run)        its numbers in all snapshots of a run; undefined where the run lacks it
//     text(run, n)   its value in one of them, as printed

/** Lines of fields: one a field, or one an element of a list. `names` gives each its path. */
export function linesOf(run, names) {
    return Object.entries(names).flatMap(([name, path]) => {
        const field = run.field(path);
        if (!field) return [];
        return field.courses.map((_, i, { length }) => ({
            name: length > 1 ? `${name}[${i}]` : name,
            path,
            varies: field.varies,
            of: (other) => other.field(path)?.courses[i],
            text: (other, n) => printed(flat(other.field(path)?.at(n) ?? null)[i]),
        }));
    });
}

/** The numbers that `valueAt(run, n)` gives for the snapshots of a run, each asked for once. */
function remembered(valueAt) {
    let [known, first, values] = [null, 0, null];
    return (run) => {
        if (known !== run || run.first < first) values = new Float64Array(0);
        else if (run.first > first) values = values.slice(run.first - first);
        [known, first] = [run, run.first];
        for (let n = values.length; n < run.length; n++) values = pushed(values, valueAt(run, n));
        return values;
    };
}

/** The same for the run that shows and for the one that it is held against. */
function ofTwo(run, valueAt) {
    const [own, others] = [remembered(valueAt), remembered(valueAt)];
    return (other) => (other === run ? own : others)(other);
}

/** The field that a path names, and the places in it behind its name: "stat.awb.Gwd RGL.g channel[3][4]". */
export function elementOf(run, path) {
    for (const places of [0, 1, 2]) {
        const [, name, behind] = new RegExp(`^(.*?)((?:\\[\\d+\\]){${places}})$`).exec(path) ?? [];
        const field = name && run.field(name);
        if (field) return { field, at: (behind.match(/\d+/g) ?? []).map(Number) };
    }
    return null;
}

/** The line of one element of a list or a grid; none where the path names no number. */
export function elementLine(run, path) {
    const { field, at = [] } = elementOf(run, path) ?? {};
    if (!field || at.length === 0) return [];
    const valueAt = (of, n) =>
        at.reduce((value, i) => value?.[i], of.field(field.name)?.at(n) ?? null);
    const numbers = ofTwo(run, (of, n) => number(valueAt(of, n)));
    if (!numbers(run).some(Number.isFinite)) return [];
    return [
        {
            name: path,
            path,
            varies: field.varies,
            of: (other) => (other.field(field.name) ? numbers(other) : undefined),
            text: (other, n) => printed(valueAt(other, n) ?? null),
        },
    ];
}

/** The line of a product that is computed here, see known.js; none where a factor is missing. */
export function computedLine(run, { name, factors, stops }) {
    const has = (other) => factors.every((path) => other.field(path)?.shape === 'scalar');
    if (!has(run)) return [];
    function valueAt(other, n) {
        const numbers = factors.map((path) => number(other.field(path).at(n)));
        const product = numbers.reduce((p, q) => p * q);
        if (!stops) return product;
        return product > 0 ? Math.log2(product) : Number.NaN;
    }
    const numbers = ofTwo(run, valueAt);
    return [
        {
            name,
            path: name,
            factors,
            stops,
            varies: factors.some((path) => run.field(path).varies),
            of: (other) => (has(other) ? numbers(other) : undefined),
            text: (other, n) => shortNumber(has(other) ? valueAt(other, n) : Number.NaN),
        },
    ];
}

/** Whether a field has more values than a chart has lines for, and these change. */
export const isLong = (field) =>
    Boolean(field?.varies) &&
    field.numeric &&
    field.run.length > 2 &&
    !field.charted &&
    field.shape !== 'scalar';
