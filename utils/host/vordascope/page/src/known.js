// What the page knows of particular fields: the only place that names them. What does not stand here
// is listed under "All fields" all the same.
// biome-ignore-all format: tables, a row a line
import { grouped } from './model.js';

/** The key figures: a title and the field; its line in a chart over time, whose title may be another. */
export const FIGURES = [
    ['Exposure time', 'share.inttime', 'inttime'],
    ['Total gain', 'share.sys_gain', 'total', 'Gains'],
    ['Sensor gain', 'share.sensor_gain', 'sensor', 'Gains'],
    ['ISP gain', 'share.isp_gain', 'isp', 'Gains'],
    ['Change of the exposure', 'share.ratio', 'ratio'],
    ['Frame rate', 'share.fps'],
    ['ISO', 'share.noise_level.noise_level.level_iso'],
    ['Luma average', 'stat.lum.gamma_domain_avg_16b', 'luma'],
    ['Colour temperature', 'share.color_temp', 'color_temp'],
    ['Flicker-free confidence', 'share.flicker_free_conf'],
    ['White balance gains', 'cfg.awb.gain[0].gain.val', 'val'],
];

/** The charts over time: a title and, by name, the fields of their lines. */
export const COURSES = [...grouped(FIGURES.filter(([, , name]) => name), ([title, , , chart = title]) => chart)]
    .map(([chart, lines]) => [chart, Object.fromEntries(lines.map(([, field, name]) => [name, field]))]);

const EXPOSURE = ['share.inttime', 'share.sys_gain'];

/** Products that are printed nowhere but computed here, or their base-2 logarithms: as vordascope's command line does. */
export const COMPUTED = [
    { title: 'Exposure, computed', name: 'exposure', formula: EXPOSURE.join(' × '), factors: EXPOSURE },
    { title: 'Exposure in stops, computed', name: 'exposure.stops', formula: `log2(${EXPOSURE.join(' × ')})`, factors: EXPOSURE, stops: true },
];

/** Long lists that are a map over time: a title and the field. */
export const HISTORIES = [['Luminance histogram over time', 'stat.lum.Luminance histogram']];

/** Says the colour of the first pixel, "(Phase R)". */
export const PHASE = 'vinfo.bayer';

/** The flag that says whether the statistics of an item are valid. */
export const validOf = (item) => item.replace(/^stat\.(\w+)$/, 'stat.flag.$1_valid');

const curve = (y, x) => ({ y, x });
const each = (names, key) => Object.fromEntries(names.map((name) => [name, key(name)]));
/** A list or grid whose values or rows stand under keys with a number each. */
const rows = (name) => new RegExp(`^${name.replace('.', '\\.')}-\\d+$`);
const points = (name) => curve(new RegExp(`^${name}_y_\\d+$`), new RegExp(`^${name}_x_\\d+$`));
const matrix = (names) => each(names, (row) => new RegExp(`^${row}_(r_coeff|g_coeff|b_coeff|offset)_2s$`));

const ROIS = ['ROI0', 'ROI1', 'ROI2', 'ROI3'];
const GAINS = ['gain[0]', 'gain[1]'];
const GAIN = { columns: ['val[0]', 'val[1]', 'val[2]', 'val[3]'] };
const LUTS = ['ma_y', 'mc_y', 'ma_c'];
const SHARP = ['gain_curve', 'luma_ctrl_gain'];
const REGISTERS = { columns: ['r', 'g', 'b', 'offset'] };
/** The blocks of one sensor or, where two are stitched, of each: LSC; LSC0 and LSC1. */
const SENSORS = /^(?:[A-Z]+\d*)?$/;
const AVERAGES = { r: 'r channel', g: 'g channel', b: 'b channel' };

/**
 * The cards by section. Each has the kind of its drawing:
 *
 *     lines         curves: {name: key} over the index, or {name: curve(y, x)}
 *     family        a curve for each text that the first group of a pattern captures
 *     maps          grids on one scale, or `apart` on one each; `text` writes the numbers into them
 *     table         a row each
 *     shading, chromaticity, vectors
 *
 * its title in the field's terms with vorda's item, or a pattern of items, where several are alike each
 * of them; the keys that it draws, a string or a pattern each whose matches make one list or the rows of
 * one grid; and where it needs them `block`, the heading or block of the keys or a pattern of them, of
 * which each gets a card; `state`, scalars that say whether the module is on; `used`, that which says how
 * many curves are; `beside`, other fields that it draws too; `wide` for a card of the page's width.
 */
const CARDS = {
    Statistics: [
        ['lines', { 'Luminance histogram': 'stat.lum' }, { bins: 'Luminance histogram' }, { state: ['Overflow'], stepped: true }],
        ['maps', { 'Luminance by region': 'stat.lum' }, { average: 'Regional Luminance average' }, { text: true }],
        ['chromaticity', { 'Chromaticity by region': 'stat.awb' }, AVERAGES, { block: 'Gwd RGL', beside: GAINS.map((name) => `cfg.awb.${name}.gain.val`) }],
        ['maps', { 'White balance averages': 'stat.awb' }, AVERAGES, { block: 'Gwd RGL' }],
        ['table', { 'White balance energies': 'stat.awb' }, each(ROIS, (roi) => `${roi} energy`), { block: 'Gwd ROI' }],
        ['maps', { 'White balance peaks': 'stat.awb' }, each(['g0', 'r', 'b', 'g1'], (name) => `${name} channel`), { block: 'Rtx RGL' }],
        ['table', { 'Sums of the peaks': 'stat.awb' }, { peak: 'White balance peak' }, { block: 'Rtx ROI' }],
        ['maps', { 'Contrast by region': 'stat.var' }, each(['h1', 'h2', 'v1', 'v2'], (name) => `${name}_avg`), { block: 'RGL var' }],
        ['table', { Contrast: 'stat.var' }, each(ROIS, (roi) => new RegExp(`^${roi} [hv][12]_avg$`)), { block: 'ROI var', columns: ['h1', 'h2', 'v1', 'v2'] }],
        ['maps', { 'Low-pass luma by region': 'stat.shp' }, { average: 'RGL lpf_luma_avg', minimum: 'RGL lpf_luma_min' }],
        ['vectors', { 'Motion vectors': 'stat.mv' }, { bins: 'mv histogram' }],
    ],
    Tone: [
        ['lines', { Gamma: 'cfg.gamma' }, { curve: /^GMA curve/ }, { state: ['GMA mode', 'FGMA mode', 'FAGMA mode'] }],
        ['lines', { 'Tone enhancement': 'cfg.te' }, { curve: /^TE Curve/ }, { state: ['TE enable'] }],
        ['lines', { 'HDR tone enhancement': 'cfg.hte' }, { curve: /^HTE curve/ }, { state: ['HTE enable'] }],
        ['lines', { 'Post tone': 'cfg.pta' }, { curve: /^PTA Curve/ }],
        ['family', { 'Post tone: scene curves': 'intl.pta' }, /^scene_curve\.val_(\d+)-\d+$/, { state: ['enable', 'scene_curve_cnt'], used: 'scene_curve_cnt' }],
        ['maps', { 'Dehaze by region': 'cfg.dhz' }, { gain: 'rgl.gain', offset: 'rgl.offset' }, { apart: true }],
        ['maps', { 'Dehaze by region, settings': 'intl.dhz' }, each(['lce.rgl_weight', 'manual_cfg.rgl_gain', 'manual_cfg.rgl_offset'], rows), { apart: true, state: ['lce_en', 'manual_cfg_enable'] }],
    ],
    Colour: [
        ['table', { 'Colour correction matrix': 'share' }, { '': 'colormatrix' }, { coloured: true, sums: true }],
        ['table', { 'White balance gains': 'cfg.awb' }, each(GAINS, (name) => `${name}.gain.val`), { ...GAIN, state: GAINS.map((name) => `${name}.enable`) }],
        ['table', { 'HDR white balance gains': 'cfg.hawb' }, each(GAINS, (name) => `${name}.gain.val`), { ...GAIN, state: ['enable'] }],
        ['table', { 'Colour correction, raw registers (_2s)': 'cfg.csm' }, matrix(['r', 'g', 'b']), { ...REGISTERS, block: 'CCM' }],
        ['table', { 'Colour space, raw registers (_2s)': 'cfg.csm' }, matrix(['y', 'u', 'v']), { ...REGISTERS, block: 'CST' }],
        ['lines', { 'CRC curves': /^cfg\.(cal|crc)$/ }, each([0, 1, 2, 3, 4].map((i) => `curve[${i}]`), (name) => curve(`${name}.y`, `${name}.x`)), { block: SENSORS, state: ['mode'] }],
    ],
    'Lens shading': [
        ['shading', { 'Lens shading': /^cfg\.(cal|lsc)$/ }, each(['ee', 'eo', 'oe', 'oo'], (name) => `table.coeff.${name}`), { block: SENSORS, state: ['table.enable', 'curve.enable'], wide: true }],
    ],
    Noise: [
        ['lines', { 'Noise reduction': 'cfg.nr', 'Front noise reduction': 'cfg.front_nr' }, each(LUTS, (name) => curve(`${name}.lut_o`, `${name}.lut_i`)), { state: ['mode'] }],
        ['lines', { 'Front noise reduction: ISO': 'intl.iso' }, each(['fnr_iso_auto'], (name) => curve(`fnr_iso.${name}.y`, `fnr_iso.${name}.x`)), { state: ['fnr_iso.enable', 'fnr_iso.mode'] }],
        ['maps', { 'Noise reduction: lut_i by level': 'intl.nr', 'Front noise reduction: lut_i by level': 'intl.front_nr' }, each(LUTS, (name) => rows(`lut_${name}_lut_i`)), { state: ['is_lut_i_en', 'lut_i_cnt'] }],
    ],
    Sharpness: [
        ['lines', { Sharpness: 'cfg.shp', 'Sharpness, weak': 'cfg.weak_win_shp' }, each(SHARP, points), { state: ['mode'] }],
        ['lines', { 'Sharpness, manual': 'intl.shp' }, each(SHARP, (name) => curve(`manual_cfg.${name}.y`, `manual_cfg.${name}.x`)), { state: ['manual_cfg_enable'] }],
        ['lines', { 'Enhancement: gain': 'cfg.enh', 'Front enhancement: gain': 'cfg.front_enh' }, { gain_curve: curve('cfg.gain_curve.y', 'cfg.gain_curve.x') }],
        ['lines', { 'Enhancement: blending': 'cfg.enh', 'Front enhancement: blending': 'cfg.front_enh' }, { blend_curve: curve('cfg.luma.blend_curve.y', 'cfg.luma.blend_curve.x') }],
    ],
};

/** [{ id, title, cards: [{ draw, title, item, keys, ... }] }] */
export const SECTIONS = Object.entries(CARDS).map(([title, table]) => ({
    id: title.split(' ').at(-1).toLowerCase(),
    title,
    cards: table.flatMap(([draw, titles, keys, more]) => Object.entries(titles).map(([card, item]) => ({ draw, title: card, item, keys, ...more }))),
}));
