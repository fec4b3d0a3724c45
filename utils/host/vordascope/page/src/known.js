// What the page knows of particular fields: the only place that names them. What does not stand here
// is listed under "All fields" all the same.
// biome-ignore-all format: tables, a row a line

/** The key figures: a title and the field. A list shows all its numbers. */
export const FIGURES = [
    ['Exposure time', 'share.inttime'],
    ['Total gain', 'share.sys_gain'],
    ['Sensor gain', 'share.sensor_gain'],
    ['ISP gain', 'share.isp_gain'],
    ['Change of the exposure', 'share.ratio'],
    ['Frame rate', 'share.fps'],
    ['ISO', 'share.noise_level.noise_level.level_iso'],
    ['Luma average', 'stat.lum.gamma_domain_avg_16b'],
    ['Colour temperature', 'share.color_temp'],
    ['Flicker-free confidence', 'share.flicker_free_conf'],
    ['White balance gains', 'cfg.awb.gain[0].gain.val'],
];

/** The charts over time: a title and, by name, the fields of their lines. */
export const COURSES = [
    ['Exposure time', { inttime: 'share.inttime' }],
    ['Gains', { sensor: 'share.sensor_gain', isp: 'share.isp_gain', total: 'share.sys_gain' }],
    ['Change of the exposure', { ratio: 'share.ratio' }],
    ['Luma average', { luma: 'stat.lum.gamma_domain_avg_16b' }],
    ['Colour temperature', { color_temp: 'share.color_temp' }],
    ['White balance gains', { val: 'cfg.awb.gain[0].gain.val' }],
];

/** Long lists that are a map over time: a title and the field. */
export const HISTORIES = [['Luminance histogram over time', 'stat.lum.Luminance histogram']];

/** Says the colour of the first pixel, "(Phase R)". */
export const PHASE = 'vinfo.bayer';

/** The flag that says whether the statistics of an item are valid. */
export const validOf = (item) => item.replace(/^stat\.(\w+)$/, 'stat.flag.$1_valid');

const EXPOSURE = ['share.inttime', 'share.sys_gain'];
const exposure = (time, gain) => time * gain;
const stops = (time, gain) => (time * gain > 0 ? Math.log2(time * gain) : Number.NaN);

/** Quantities that are printed nowhere but computed here, as vordascope's command line does. */
export const COMPUTED = [
    { title: 'Exposure, computed', name: 'exposure', formula: 'share.inttime × share.sys_gain', factors: EXPOSURE, of: exposure },
    { title: 'Exposure in stops, computed', name: 'exposure.stops', formula: 'log2(share.inttime × share.sys_gain)', factors: EXPOSURE, of: stops, stops: true },
];

/** A curve over another list. */
const curve = (y, x) => ({ y, x });
const each = (names, key) => Object.fromEntries(names.map((name) => [name, key(name)]));
/** A list or grid whose values or rows stand under keys with a number each. */
const rows = (name) => new RegExp(`^${name}-\\d+$`);
const points = (name) => curve(new RegExp(`^${name}_y_\\d+$`), new RegExp(`^${name}_x_\\d+$`));
const matrix = (names) => each(names, (row) => new RegExp(`^${row}_(r_coeff|g_coeff|b_coeff|offset)_2s$`));

const CHANNELS = ['g0', 'r', 'b', 'g1'];
const ROIS = ['ROI0', 'ROI1', 'ROI2', 'ROI3'];
const GAINS = ['gain[0]', 'gain[1]'];
const VALS = [0, 1, 2, 3].map((i) => `val[${i}]`);
const LUTS = ['ma_y', 'mc_y', 'ma_c'];
const SHARP = ['gain_curve', 'luma_ctrl_gain'];
const COEFFICIENTS = ['r', 'g', 'b', 'offset'];
/** The blocks of one sensor or, where two are stitched, of each: LSC; LSC0 and LSC1. */
const SENSORS = /^(?:[A-Z]+\d*)?$/;

const averages = { r: 'r channel', g: 'g channel', b: 'b channel' };
const noise = each(LUTS, (name) => curve(`${name}.lut_o`, `${name}.lut_i`));
const levels = each(LUTS, (name) => rows(`lut_${name}_lut_i`));
const manual = each(SHARP, (name) => curve(`manual_cfg.${name}.y`, `manual_cfg.${name}.x`));
const crc = each([0, 1, 2, 3, 4].map((i) => `curve[${i}]`), (name) => curve(`${name}.y`, `${name}.x`));
const gain = { gain_curve: curve('cfg.gain_curve.y', 'cfg.gain_curve.x') };
const blend = { blend_curve: curve('cfg.luma.blend_curve.y', 'cfg.luma.blend_curve.x') };
const regions = each(['lce.rgl_weight', 'manual_cfg.rgl_gain', 'manual_cfg.rgl_offset'], (name) => rows(name.replace('.', '\\.')));
const lut = { state: ['is_lut_i_en', 'lut_i_cnt'] };
const mode = { state: ['mode'] };

const card = ([draw, title, item, keys, more]) => ({ draw, title, item, keys, ...more });
const section = (id, title, cards) => ({ id, title, cards: cards.map(card) });

/**
 * The cards by section. Each has the kind of its drawing:
 *
 *     lines         curves: {name: key} over the index, or {name: curve(y, x)}
 *     family        a curve for each text that the first group of a pattern captures
 *     maps          grids on one scale, or `apart` on one each; `text` writes the numbers into them
 *     table         a row each
 *     shading, chromaticity, vectors
 *
 * its title in the field's terms; vorda's item, or a pattern of items; the keys that it draws, each a
 * string or a pattern whose matches make one list or the rows of one grid; and where it needs them
 * `block`, the heading or block of the keys or a pattern of them, of which each gets a card; `state`,
 * scalars that say whether the module is on; `used`, that which says how many curves are; `beside`, other fields that it draws too; `wide` for a card
 * of the page's width.
 */
export const SECTIONS = [
    section('statistics', 'Statistics', [
        ['lines', 'Luminance histogram', 'stat.lum', { bins: 'Luminance histogram' }, { state: ['Overflow'], stepped: true }],
        ['maps', 'Luminance by region', 'stat.lum', { average: 'Regional Luminance average' }, { text: true }],
        ['chromaticity', 'Chromaticity by region', 'stat.awb', averages, { block: 'Gwd RGL', beside: GAINS.map((name) => `cfg.awb.${name}.gain.val`) }],
        ['maps', 'White balance averages', 'stat.awb', averages, { block: 'Gwd RGL' }],
        ['table', 'White balance energies', 'stat.awb', each(ROIS, (roi) => `${roi} energy`), { block: 'Gwd ROI' }],
        ['maps', 'White balance peaks', 'stat.awb', each(CHANNELS, (name) => `${name} channel`), { block: 'Rtx RGL' }],
        ['table', 'Sums of the peaks', 'stat.awb', { peak: 'White balance peak' }, { block: 'Rtx ROI' }],
        ['maps', 'Contrast by region', 'stat.var', { h1: 'h1_avg', h2: 'h2_avg', v1: 'v1_avg', v2: 'v2_avg' }, { block: 'RGL var' }],
        ['table', 'Contrast', 'stat.var', each(ROIS, (roi) => new RegExp(`^${roi} [hv][12]_avg$`)), { block: 'ROI var', columns: ['h1', 'h2', 'v1', 'v2'] }],
        ['maps', 'Low-pass luma by region', 'stat.shp', { average: 'RGL lpf_luma_avg', minimum: 'RGL lpf_luma_min' }],
        ['vectors', 'Motion vectors', 'stat.mv', { bins: 'mv histogram' }],
    ]),
    section('tone', 'Tone', [
        ['lines', 'Gamma', 'cfg.gamma', { curve: /^GMA curve/ }, { state: ['GMA mode', 'FGMA mode', 'FAGMA mode'] }],
        ['lines', 'Tone enhancement', 'cfg.te', { curve: /^TE Curve/ }, { state: ['TE enable'] }],
        ['lines', 'HDR tone enhancement', 'cfg.hte', { curve: /^HTE curve/ }, { state: ['HTE enable'] }],
        ['lines', 'Post tone', 'cfg.pta', { curve: /^PTA Curve/ }],
        ['family', 'Post tone: scene curves', 'intl.pta', /^scene_curve\.val_(\d+)-\d+$/, { state: ['enable', 'scene_curve_cnt'], used: 'scene_curve_cnt' }],
        ['maps', 'Dehaze by region', 'cfg.dhz', { gain: 'rgl.gain', offset: 'rgl.offset' }, { apart: true }],
        ['maps', 'Dehaze by region, settings', 'intl.dhz', regions, { apart: true, state: ['lce_en', 'manual_cfg_enable'] }],
    ]),
    section('colour', 'Colour', [
        ['table', 'Colour correction matrix', 'share', { '': 'colormatrix' }, { coloured: true, sums: true }],
        ['table', 'White balance gains', 'cfg.awb', each(GAINS, (name) => `${name}.gain.val`), { columns: VALS, state: GAINS.map((name) => `${name}.enable`) }],
        ['table', 'HDR white balance gains', 'cfg.hawb', each(GAINS, (name) => `${name}.gain.val`), { columns: VALS, state: ['enable'] }],
        ['table', 'Colour correction, raw registers (_2s)', 'cfg.csm', matrix(['r', 'g', 'b']), { block: 'CCM', columns: COEFFICIENTS }],
        ['table', 'Colour space, raw registers (_2s)', 'cfg.csm', matrix(['y', 'u', 'v']), { block: 'CST', columns: COEFFICIENTS }],
        ['lines', 'CRC curves', /^cfg\.(cal|crc)$/, crc, { block: SENSORS, ...mode }],
    ]),
    section('shading', 'Lens shading', [
        ['shading', 'Lens shading', /^cfg\.(cal|lsc)$/, each(['ee', 'eo', 'oe', 'oo'], (name) => `table.coeff.${name}`),
            { block: SENSORS, state: ['table.enable', 'curve.enable'], wide: true }],
    ]),
    section('noise', 'Noise', [
        ['lines', 'Noise reduction', 'cfg.nr', noise, mode],
        ['lines', 'Front noise reduction', 'cfg.front_nr', noise, mode],
        ['lines', 'Front noise reduction: ISO', 'intl.iso', { fnr_iso_auto: curve('fnr_iso.fnr_iso_auto.y', 'fnr_iso.fnr_iso_auto.x') },
            { state: ['fnr_iso.enable', 'fnr_iso.mode'] }],
        ['maps', 'Noise reduction: lut_i by level', 'intl.nr', levels, lut],
        ['maps', 'Front noise reduction: lut_i by level', 'intl.front_nr', levels, lut],
    ]),
    section('sharpness', 'Sharpness', [
        ['lines', 'Sharpness', 'cfg.shp', each(SHARP, points), mode],
        ['lines', 'Sharpness, weak', 'cfg.weak_win_shp', each(SHARP, points), mode],
        ['lines', 'Sharpness, manual', 'intl.shp', manual, { state: ['manual_cfg_enable'] }],
        ['lines', 'Enhancement: gain', 'cfg.enh', gain],
        ['lines', 'Enhancement: blending', 'cfg.enh', blend],
        ['lines', 'Front enhancement: gain', 'cfg.front_enh', gain],
        ['lines', 'Front enhancement: blending', 'cfg.front_enh', blend],
    ]),
];

/**
 * The lists and grids that no card draws, [pattern of the items, pattern of the keys]: numbers to look
 * up under "All fields", beside a picture the size of a word.
 */
export const PLAIN = [
    [/^cfg\.(cal|crc)$/, /^curve\[\d\]\.m$/],
    [/^cfg\.(front_)?enh$/, /^cfg\.(luma\.blend_curve\.m|gain_curve\.m_2s)$/],
    [/^cfg\.(front_)?nr$/, /^m[ac]_[yc]\.lut_slope$/],
    [/^stat\.awb$/, /^(ROI\d energy norm|(g0|r|b|g1)( norm)?|White balance peak norm)$/],
    [/^intl\.crc$/, /^(k_order|(g0|r|b|g1)\.[xym]_\d)$/],
    [/^intl\.lsc$/, /^((lsc_csr\.)?curve\.(fit|d[xy])\w+|nl_adapt\.strength)$/],
    [/^intl\.shp$/, /^manual_cfg\.\w+\.m_2s$/],
    [/^intl\.te$/, /^(dark_enhance_range|iir_weight)$/],
    [/^intl\.enh$/, /^(blend_[xm]|ma_blur_y_zone_\w+)$/],
    [/^intl\.fcs$/, /^(\w+_level_bin|\w+_val)$/],
    [/^intl\.dhz$/, /^lce\.([yc]_gain_max|strength|curve_\w+)$/],
    [/^intl\.iso$/, /^iso_ver2_noise_level_bin$/],
    [/^intl\.stat$/, /^(auto_rb_rgn_slope_\d|wb_csr\.awb_gwd_\w+)$/],
    [/^intl\.(front_)?nr$/, /^(lut_m\w+_lut_o|mc_y_\w+|manual_cfg\.m\w+_lut_[io]|attr\.nr_auto\.\w+)$/],
    [/^intl\.(front_)?me$/, /_(gain|gain_low|gain_slope|offset|th|weight)$/],
    [/^intl\.dpc$/, /^dp[cd]_\w+_ratio$/],
    [/^intl\.front_enh$/, /^attr\.enh_auto\.\w+$/],
    [/^intl\.ts$/, /^nr_l(ut|p)_adj$/],
    [/^share$/, /^noise_level_bin$/],
    [/^vinfo$/, /^(bind|valid)_win$/],
];
