// What two snapshots show of each other, as somebody reads it who points at it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { drop, emptyPage, open } from './harness.mjs';

const snapshot = ({ gain, matrix, luma, h1, v1, curve }) => `dev_idx = 0, path_idx = 0
share.sys_gain = ${gain}
share.colormatrix:
${matrix}
=== cfg.awb ===
gain[0].gain.val = ${gain}, 7, 7, 7
=== cfg.gamma ===
GMA curve:
${curve}
=== stat.lum ===
Regional Luminance average:
${luma}
=== stat.var ===
[RGL var]
h1_avg:
${h1}
v1_avg:
${v1}
`;
const before = snapshot({
    gain: 1000,
    matrix: '1, 2\n3, 4',
    luma: '10, 20\n30, 40',
    h1: '1, 2\n3, 4',
    v1: '100, 200\n300, 400',
    curve: '0, 10, 20, 30, 40',
});
const after = snapshot({
    gain: 1500,
    matrix: '1, 2\n3, 9',
    luma: '10, 20\n30, 60',
    h1: '1, 2\n3, 5',
    v1: '100, 200\n300, 400',
    curve: '0, 10, 25, 30, 40',
});

const cellTexts = (card, selector) =>
    card.locator(selector).evaluateAll((all) => all.map((one) => one.innerText.split('\n')));

test('figures, tables, curves and maps show A, B and how they differ', async (t) => {
    const page = await open(t, emptyPage());
    await drop(page, { name: 'a.txt', content: before }, { name: 'b.txt', content: after });
    await page.waitForSelector('.bar');
    const card = (title) => page.locator(`.cards [data-title="${title}"]`);
    assert.deepEqual(await cellTexts(page.locator('.figure').first(), 'dd'), [
        ['1000 → 1500'],
        ['+500, +50 %'],
    ]);
    await card('Colour correction matrix').scrollIntoViewIfNeeded();
    assert.deepEqual(await cellTexts(card('Colour correction matrix'), 'td.changed'), [
        ['4', '9', '+5'],
        ['7', '12', '+5'],
    ]);
    assert.deepEqual(await cellTexts(card('White balance gains'), 'td.changed'), [
        ['1000', '1500', '+500'],
    ]);

    // Where the curves differ, the pointer reads both.
    const curve = card('Gamma').locator('.u-over');
    await curve.scrollIntoViewIfNeeded();
    const { width, height } = await curve.boundingBox();
    await curve.hover({ position: { x: width / 2, y: height / 2 } });
    assert.equal(await card('Gamma').locator('.reading').innerText(), '2: 25 (A 20, +5)');

    // Four maps, in each of which the pointer reads the cell that differs.
    const readings = async (title) => {
        const all = [];
        for (const map of await card(title).locator('.map:visible').all()) {
            await map.scrollIntoViewIfNeeded();
            const canvas = map.locator('canvas');
            const box = await canvas.boundingBox();
            await canvas.hover({ position: { x: box.width * 0.75, y: box.height * 0.75 } });
            all.push((await map.locator('figcaption').innerText()).replace(/\s+/g, ' '));
        }
        return all;
    };
    assert.deepEqual(await readings('Luminance by region'), [
        'B average [1][1] 60',
        'A average [1][1] 40',
        'B − A [1][1] 20',
        'B ÷ A [1][1] 1.5',
    ]);
    // Each table has a scale of its own, unless somebody asks for one for all.
    const scales = () =>
        card('Contrast by region')
            .locator('.map-group > .scale')
            .evaluateAll((all) =>
                all.filter((one) => one.checkVisibility()).map((one) => one.textContent),
            );
    assert.deepEqual(await scales(), ['15', '100400']);
    await card('Contrast by region').getByRole('button', { name: 'One scale' }).click();
    assert.deepEqual(await scales(), ['1400', '1400']);
    await page.keyboard.press('c');
    await page.waitForFunction(() => !document.querySelector('.compared'));
    assert.deepEqual(
        await readings('Luminance by region').then((all) => all[0]),
        'average [1][1] 60',
    );
});
