// Colour scales. Both are even to the eye and keep their order for every kind of colour blindness.
import { colourOf } from './dom.js';

// Viridis at even distances.
// biome-ignore format: a table
const SEQUENTIAL = [
    [68, 1, 84], [71, 24, 107], [71, 46, 124], [66, 65, 134], [56, 88, 140], [48, 105, 142],
    [40, 122, 142], [34, 139, 141], [31, 158, 137], [42, 176, 127], [68, 190, 112], [107, 205, 89],
    [149, 216, 64], [199, 224, 32], [253, 231, 37],
];

const between = (a, b, t) => a.map((channel, i) => Math.round(channel + (b[i] - channel) * t));

function along(stops, t) {
    const position = Math.min(Math.max(t, 0), 1) * (stops.length - 1);
    const i = Math.min(Math.floor(position), stops.length - 2);
    return between(stops[i], stops[i + 1], position - i);
}

const RAMP = Array.from({ length: 256 }, (_, i) => along(SEQUENTIAL, i / 255));

/** The colour, [red, green, blue], of a place between 0 and 1 on the scale of maps. */
export const sequential = (t) => RAMP[Math.round(Math.min(Math.max(t, 0), 1) * 255)];

/**
 * The scale of differences in the theme that shows now: a function from a place between -1 and 1 to
 * its colour; 0 has that of the paper.
 */
export function diverging() {
    const [below, zero, above] = ['--below', '--zero', '--above'].map(rgbOf);
    return (t) => between(zero, t < 0 ? below : above, Math.min(Math.abs(t), 1));
}

/** How much light a channel of a colour gives. */
const light = (channel) => (channel / 255) ** 2.2;

/** Black or white, whichever is easier to read on a colour: at least 4.5 to 1. */
export const inkOn = ([r, g, b]) =>
    0.2126 * light(r) + 0.7152 * light(g) + 0.0722 * light(b) > 0.179 ? '#000' : '#fff';

export const cssOf = (rgb) => `rgb(${rgb.join(' ')})`;

/** A colour of the style, given there as #rrggbb. */
function rgbOf(name) {
    const hex = colourOf(name);
    return [1, 3, 5].map((at) => Number.parseInt(hex.slice(at, at + 2), 16));
}

const LINES = 11;
const CHANNELS = new Map([
    ['r', '--red'],
    ['g', '--green'],
    ['g0', '--green'],
    ['g1', '--green2'],
    ['b', '--blue'],
    ['R/G', '--red'],
    ['B/G', '--blue'],
]);

/** Of what may be colour channels, but the text does not say which. */
const NEUTRAL = [3, 4, 5, 7];

/**
 * The style's colour of line i with that name: a colour channel has its own, which nothing else has
 * that could be taken for one. "eo (G)" is of a channel, "eo" and "val[1]" of none that is known.
 */
export function lineColour(name, i) {
    const channel = /\(([RGB])\)$/.exec(name)?.[1].toLowerCase();
    if (channel)
        return channel === 'g' && name.startsWith('o') ? '--green2' : CHANNELS.get(channel);
    const one = /^(?:[eo]{2}(?:\/G)?|.*\bval\[\d\])$/.test(name);
    return CHANNELS.get(name) ?? `--line${one ? NEUTRAL[i % NEUTRAL.length] : i % LINES}`;
}

// Long enough that two lines beside each other are told apart without their colours; the line of A
// has another one.
// biome-ignore format: a table
const DASHES = [
    [], [9, 3], [2, 3], [9, 3, 2, 3], [16, 4], [5, 5], [9, 3, 2, 3, 2, 3], [2, 6], [16, 4, 2, 4],
    [16, 4, 6, 4], [6, 3, 6, 9],
];

/** How the line of a colour is dashed, in units of the page: what tells it from others beside that. */
export function lineDash(colour) {
    const channels = [...new Set(CHANNELS.values())];
    const i = colour.startsWith('--line') ? Number(colour.slice(6)) : channels.indexOf(colour);
    return DASHES[Math.max(i, 0)];
}
