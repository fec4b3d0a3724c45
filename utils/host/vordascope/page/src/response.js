// How a quantity answers to a change (see response.h), measured by the code of the command line.

const KINDS = ['none', 'steady', 'step', 'recovery', 'moving'];

// The order in which wasm.cpp hands them out.
const NAMES = [
    'kind',
    'count',
    'low',
    'high',
    'before',
    'beforeCount',
    'after',
    'scale',
    'band',
    'noise',
    'spread',
    'end',
    'departure',
    'riseBegin',
    'riseEnd',
    'settled',
    'strays',
    'peak',
    'peakPart',
    'overshoot',
    'overshootPart',
    'undershoot',
    'undershootPart',
];

/** The part of a step, or of the value before a recovery, that is half the width of the band. */
export const BAND = 0.05;

/**
 * Measures values, one a snapshot; what is not finite stands for none.
 * @param {object} exports of the reader's WebAssembly instance, after _initialize()
 * @param {ArrayLike<number>} values
 * @param {object} [how] `band`; `before`, a reference for the value before; `unit`, of what a
 *     recovery's parts are (1 for stops)
 * @returns {object} the members of Response: `kind` by its name, places as indexes or -1 (`peak`,
 *     `overshoot` and `undershoot` are places too, with their parts beside them), NaN for what an
 *     answer of this kind does not have
 */
export function measure(exports, values, { band = BAND, before = NaN, unit = NaN } = {}) {
    const room = exports.numbers(values.length); // before the buffer is looked at, which grows by it
    new Float64Array(exports.memory.buffer, room, values.length).set(values);
    const at = exports.measure(band, before, unit);
    const numbers = new Float64Array(exports.memory.buffer, at, NAMES.length);
    const response = Object.fromEntries(NAMES.map((name, i) => [name, numbers[i]]));
    return { ...response, kind: KINDS[response.kind] };
}
