// The parts of the page that need no browser: what is measured, said, found and planned.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { inflateSync } from 'node:zlib';
import { SECTIONS } from '../../utils/host/vordascope/page/src/known.js';
import { Moment, number, Run } from '../../utils/host/vordascope/page/src/model.js';
import { plan } from '../../utils/host/vordascope/page/src/plan.js';
import { readModel } from '../../utils/host/vordascope/page/src/reader.js';
import { steadyRanges } from '../../utils/host/vordascope/page/src/sources.js';
import { short, ticks } from '../../utils/host/vordascope/page/src/ticks.js';
import { fromFragment, toFragment } from '../../utils/host/vordascope/page/src/view.js';
import { moved, zoomed } from '../../utils/host/vordascope/page/src/zoom.js';
import { blockOf, capture, emptyPage, kept } from './harness.mjs';

const reader = inflateSync(
    Buffer.from(blockOf(readFileSync(emptyPage(), 'utf8'), 'reader'), 'base64'),
);

/** Every item of two stitched sensors. */
const stitched = `dev_idx = 0, path_idx = 0\n${readFileSync(kept('tests/golden/distinct.txt'), 'latin1')}`;

/** The first run of a capture. */
async function runOf(content) {
    const captures = [{ name: 'capture.txt', content: new Blob([content]) }];
    const model = JSON.parse(await readModel(reader, captures));
    return new Run(model.runs[0], model);
}

// The lists and grids that no card draws: [pattern of the items, pattern of the keys].
// biome-ignore format: a table
const PLAIN = [
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

const isPlain = ({ item, key }) =>
    PLAIN.some(([items, keys]) => items.test(item) && keys.test(key));

test('every list and grid of every item is drawn, or listed as plain numbers', async () => {
    // Two stitched sensors, and one by its items alone, whose blocks have other names.
    const captures = [stitched, capture()];
    for (const item of ['cfg.crc', 'cfg.lsc']) captures.push(capture({ vorda: [item] }));
    const drawnCards = new Set();
    const usedRows = new Set();
    for (const content of captures) {
        const run = await runOf(content);
        const cards = plan(run);
        const drawn = new Set(cards.flatMap(({ fields }) => fields));
        const arrays = run.fields.filter(({ shape }) => shape !== 'scalar');
        assert.ok(arrays.length > 3);
        const unknown = arrays.filter((field) => !drawn.has(field) && !isPlain(field));
        assert.deepEqual(
            unknown.map(({ name }) => name),
            [],
        );
        for (const { card, state } of cards) {
            drawnCards.add(card);
            assert.equal(state.length, card.state?.length ?? 0, `the state of ${card.title}`);
        }
        for (const row of PLAIN)
            if (arrays.some(({ item, key }) => row[0].test(item) && row[1].test(key)))
                usedRows.add(row);
    }
    const idle = SECTIONS.flatMap(({ cards }) => cards).filter((card) => !drawnCards.has(card));
    assert.deepEqual(
        idle.map(({ title }) => title),
        [],
    );
    assert.deepEqual(
        PLAIN.filter((row) => !usedRows.has(row)),
        [],
    );
});

test('cards of two sensors are told apart, and draw rows in their order', async () => {
    const run = await runOf(stitched);
    const titles = plan(run).map(({ title }) => title);
    for (const title of ['Lens shading, LSC0', 'Lens shading, LSC1', 'CRC curves, CRC1'])
        assert.ok(titles.includes(title), title);
    const levels = plan(run).find(({ item, card }) => item === 'intl.nr' && card.draw === 'maps');
    const now = new Moment(run, 0);
    const rows = levels.parts[0].rows(now);
    assert.deepEqual([rows.length, rows[0].length], [17, 9]);
    assert.deepEqual(rows[16], run.field('intl.nr.lut_ma_y_lut_i-16').at(0));
    const scenes = plan(run).find(({ card }) => card.draw === 'family');
    assert.deepEqual(
        scenes.parts.map(({ y }) => y.numbers(now).length),
        Array(11).fill(33),
    );
});

test('a zoomed part stays within the whole, and what the pointer is over stays there', () => {
    const whole = [0, 100];
    assert.deepEqual(zoomed(null, whole, 0.5, 20, 1), [10, 60]);
    assert.deepEqual(zoomed([10, 60], whole, 0.001, 20, 5), [19, 24]);
    assert.deepEqual(zoomed([0, 10], whole, 4, 9, 1), [0, 40]);
    assert.equal(zoomed([10, 60], whole, 9, 20, 1), null);
    assert.deepEqual(moved([10, 20], whole, -2), [0, 10]);
});

test('a printed value is a number only where it is one', () => {
    assert.deepEqual(['25.00', -3, true, '18446744073709551615'].map(number), [25, -3, 1, 2 ** 64]);
    for (const value of ['', ' ', 'nan', 'inf', '0 (normal)', null, undefined])
        assert.ok(Number.isNaN(number(value)), String(value));
});

test('axes get round numbers', () => {
    assert.deepEqual(ticks(0, 4000, 4), [0, 1000, 2000, 3000, 4000]);
    assert.deepEqual(ticks(0.05, 0.31, 3), [0.1, 0.2, 0.3]);
    assert.deepEqual(ticks(-7, 7, 3), [-5, 0, 5]);
    assert.deepEqual(ticks(5, 5, 3), [5]);
    assert.deepEqual(ticks(Number.NaN, Number.NaN, 3), []);
    const shown = [0, 999.96, 9999, 40000, -65536, 1234567, 4.2e9, 0.30000000000000004, 1 / 0];
    assert.equal(shown.map(short).join(' '), '0 1000 9999 40k -65.54k 1.235M 4.2G 0.3 –');
});

test('a scale stands still, but never leaves out what shows', () => {
    const extents = Array.from({ length: 30 }, (_, n) => [10 + (n % 3), 200 - (n % 3)]);
    extents[7] = [0, 65535];
    extents[8] = [Number.NaN, Number.NaN];
    const pairs = (...all) => all.map((extent) => [extent, [1, 1]]);
    const scales = (...shown) => steadyRanges(pairs(...extents), pairs(...shown));
    assert.deepEqual(scales(extents[3]), pairs([10, 200])[0]);
    assert.deepEqual(scales(extents[8]), pairs([10, 200])[0]);
    assert.deepEqual(scales(extents[3], extents[7]), pairs([0, 65535])[0]);
});

test('a view survives as a fragment, and a wrong fragment does no harm', () => {
    const defaults = {
        run: 0,
        n: 299,
        against: null,
        a: null,
        only: false,
        query: '',
        step: null,
        added: [],
    };
    const view = {
        run: 1,
        n: 0,
        against: 2,
        a: 41,
        only: true,
        query: 'nr/ lut=1&2 #ü',
        step: [29, 71],
        zoom: [1.25, 7],
        align: 'share.inttime',
        band: 0.02,
        ref: true,
        added: ['share.ratio', 'stat.mv.mv_total_cnt'],
    };
    assert.deepEqual({ ...defaults, ...fromFragment(`#${toFragment(view, defaults)}`) }, view);
    assert.equal(toFragment(defaults, defaults), '');
    const compared = { ...defaults, against: 0, a: 0 };
    assert.equal(fromFragment(toFragment(defaults, compared)).a, null);
    assert.deepEqual(
        fromFragment('#n=-1&a=x&step=9-3&run=1e9&zoom=7_2&band=x&only=<b>&%E0%A4%A'),
        {},
    );
});
