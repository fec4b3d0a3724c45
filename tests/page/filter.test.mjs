// What is looked for, typed once, holds for everything: as somebody at the page types and pastes it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { show } from './harness.mjs';

/** A snapshot: exposure time, gain, a short list, a grid, and whether a module is on. */
const snapshot = (inttime, gain, white, grid) => `dev_idx = 0, path_idx = 0
share.inttime = ${inttime}
share.sys_gain = ${gain}
=== cfg.awb ===
gain[0].gain.val = ${white}
=== stat.lum ===
Regional Luminance average:
${grid}
=== cfg.nr ===
mode = 0 (0: disable, 1: enable)
`;
const recording = [
    snapshot(8000, 1024, '1, 2, 3, 4', '1, 2\n3, 4'),
    snapshot(8004, 1024, '1, 2, 3, 4', '1, 2\n3, 4'),
    snapshot(8004, 1030, '1, 2, 3, 4', '1, 2\n3, 4'),
    snapshot(40000, 1030, '1, 2, 3, 5', '1, 9\n3, 6'),
].join('');

const settled = (page) =>
    page.evaluate(
        () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))),
    );
const seen = (page, selector) =>
    page.$$eval(selector, (all) =>
        all.filter((one) => one.checkVisibility()).map((one) => one.textContent),
    );
/** Types a query in place of the last one. */
async function type(page, query) {
    await page.click('input[type=search]', { clickCount: 3 });
    await page.keyboard.press('Delete');
    await page.keyboard.type(query);
    await settled(page);
}
const paste = (page, text) =>
    page.$eval(
        'input[type=search]',
        (input, text) => {
            const clipboardData = new DataTransfer();
            clipboardData.setData('text/plain', text);
            const event = { clipboardData, bubbles: true, cancelable: true };
            input.select();
            return input.dispatchEvent(new ClipboardEvent('paste', event));
        },
        text,
    );

test('titles, legends, names and lines are found, and Now and Time stay', async (t) => {
    const page = await show(t, { 'a.txt': recording }, { fragment: '#n=4&a=1' });
    const found = () => seen(page, '.item[open] tr .copy');
    for (const [query, fields] of [
        ['Exposure time', ['inttime']],
        ['total gain', ['sys_gain']],
        ['disable', ['mode']],
        ['share.*gain', ['sys_gain']],
        ['-share -cfg', ['Regional Luminance average']],
        ['cfg.awb.gain[0].gain.val', ['gain[0].gain.val']],
    ]) {
        await type(page, query);
        assert.deepEqual(await found(), fields, query);
        const sections = await seen(page, 'section > h2');
        assert.deepEqual(sections.slice(0, 3), ['Now', 'Time', 'Differences'], query);
    }
    await paste(page, 'share.inttime = 8000\n');
    await page.keyboard.insertText('share.inttime = 8000');
    await settled(page);
    assert.deepEqual(await found(), ['inttime']);
    assert.deepEqual(await seen(page, '#time .card h3'), [
        'Exposure time',
        'Exposure, computed',
        'Exposure in stops, computed',
    ]);
    await type(page, 'mode');
    assert.equal((await seen(page, '#time .card h3')).length, 5);
    assert.match((await seen(page, '#time .below')).join(), /No chart shows what is looked for/);
});

test('an element of grids is what differs, and what the list shows', async (t) => {
    const page = await show(t, { 'a.txt': recording }, { fragment: '#n=4&a=1' });
    await type(page, '[0][1]');
    assert.deepEqual(await seen(page, '.differences tr'), [
        'stat.lumRegional Luminance average[0][1]2 -> 9  (+7, +350 %)',
    ]);
    await type(page, 'lum [1][0]');
    assert.deepEqual(await seen(page, '.differences tr'), []);
    assert.deepEqual(await seen(page, '.item[open] .value'), ['[1][0] 3']);
});

test('a tolerance holds for differences, badges, list and charts', async (t) => {
    const page = await show(t, { 'a.txt': recording }, { fragment: '#n=3&a=1' });
    const differences = () => seen(page, '.differences .key');
    const badges = () =>
        page.$$eval('.cards .card', (all) =>
            all
                .filter((one) => !one.querySelector('.badge').hidden)
                .map((one) => one.dataset.title),
        );
    assert.deepEqual(await differences(), ['inttime', 'sys_gain']);
    await type(page, 'abs=5');
    assert.deepEqual(await differences(), ['sys_gain']);
    assert.equal(await page.textContent('#now .changed dt'), 'Total gain');
    await type(page, 'rel=2%');
    assert.deepEqual(await differences(), []);
    await page.keyboard.press('Escape');
    await page.keyboard.press('End');
    await settled(page);
    assert.deepEqual(await badges(), ['Luminance by region', 'White balance gains']);
    await type(page, 'abs=1 rel=1%');
    assert.deepEqual(await differences(), ['inttime', 'Regional Luminance average']);
    assert.deepEqual(await badges(), ['Luminance by region']);
    assert.deepEqual(await seen(page, '#time .card h3'), [
        'Exposure time',
        'Exposure, computed',
        'Exposure in stops, computed',
    ]);
    assert.match(
        (await seen(page, '#time .below')).join(),
        /tolerance: Gains, White balance gains\./,
    );
    for (const key of ['Escape', 'c', 'o']) await page.keyboard.press(key);
    await type(page, 'abs=1 rel=1%');
    assert.deepEqual(await seen(page, '.item[open] tr .copy'), [
        'inttime',
        'Regional Luminance average',
    ]);
    await type(page, 'rel=5');
    assert.match((await seen(page, '.tools [role=status]')).join(), /^rel is a percentage/);
});

test('a capture pasted into the search is opened, other text is looked for', async (t) => {
    const page = await show(t, { 'a.txt': recording }, { fragment: '#' });
    await paste(page, 'share.inttime\n  fps\n');
    await page.waitForFunction(
        () => document.querySelector('input[type=search]').value === 'share.inttime fps',
    );
    await page.waitForFunction(() => !document.querySelector('[aria-busy]'));
    await type(page, '');
    await paste(page, snapshot(7, 8, '1, 2, 3, 4', '1, 2\n3, 4'));
    await page.waitForSelector('.run');
    assert.equal((await page.$$('.run')).length, 2);
    assert.equal(await page.inputValue('input[type=search]'), '');
});
