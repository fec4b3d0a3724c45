// What two snapshots show of each other, as somebody reads it who points at it.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { drop, emptyPage, open, show } from './harness.mjs';

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
    const page = await show(t, { 'a.txt': before, 'b.txt': after });
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
        'A average [1][1] 40',
        'B average [1][1] 60',
        'B − A [1][1] 20',
        'B ÷ A [1][1] 1.5',
    ]);
    // What is the same is no larger beside it.
    const wide = await card('Contrast by region')
        .locator('.map canvas:visible')
        .evaluateAll((all) => all.map((one) => one.clientWidth));
    assert.ok(wide.length === 5 && Math.max(...wide) < 1.1 * Math.min(...wide), String(wide));
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

/** The shading tables of two sensors, of which the second one's falls off by 5 in a corner. */
const sensors = [0, 1]
    .flatMap((sensor) => [
        `LSC${sensor}:`,
        'table.enable = 1',
        'curve.enable = 0',
        ...['ee', 'eo', 'oe', 'oo'].flatMap((name, i) => [
            `table.coeff.${name} :`,
            ...[0, 1, 2].map((y) => ` ${100 + i}, ${100 + i}, ${100 + i + (y ? 0 : 5 * sensor)},`),
        ]),
    ])
    .join('\n');

test('the two sensors of a snapshot are held against each other', async (t) => {
    const page = await open(t, emptyPage());
    const text = `dev_idx = 0, path_idx = 0\n=== cfg.cal ===\n${sensors}\nshare.inttime = 1\n`;
    await drop(page, { name: 'a.txt', content: text });
    const choice = page.getByRole('button', { name: 'Sensor 0 as A, sensor 1 as B' });
    await choice.click();
    const card = page.locator('.card:visible[data-title^="Lens shading"]');
    await page.waitForSelector('#differences:not([hidden])');
    assert.equal(await card.count(), 1);
    assert.match(await page.locator('#differences .summary').innerText(), /^4 of 6 fields differ/);
    assert.equal(await page.locator('.differences tr').count(), 4);
    assert.equal(await page.locator('.reference-line').isVisible(), false);
    const figures = () =>
        card
            .locator('.figures-table tr')
            .evaluateAll((rows) => rows.map((row) => [...row.cells].map((c) => c.textContent)))
            .then((rows) => rows.filter(([name]) => /ee|B − A/.test(name)).slice(0, 3))
            .then((rows) => rows.map((row) => [row[0], row[3]]));
    assert.deepEqual(await figures(), [
        ['A ee', '100'],
        ['B ee', '105'],
        ['B − A', '5'],
    ]);
    const corner = async (i) => {
        const map = card.locator('.map:visible').nth(i);
        const box = await map.locator('canvas').boundingBox();
        await map.locator('canvas').hover({ position: { x: box.width * 0.9, y: 4 } });
        return (await map.locator('figcaption').innerText()).replace(/\s+/g, ' ');
    };
    const maps = ['A ee [0][2] 100', 'B ee [0][2] 105', 'B − A [0][2] 5', 'B ÷ A [0][2] 1.05'];
    for (const [i, said] of maps.entries()) assert.equal(await corner(i), said);

    // The cut has a line of each.
    const cut = card.locator('.chart').first();
    await cut.focus();
    await card
        .locator('.map:visible canvas')
        .first()
        .click({ position: { x: 4, y: 4 } });
    await cut.focus();
    await cut.press('End');
    assert.match(await cut.getAttribute('aria-valuetext'), /^2: A ee 100.*, ee 105/);

    // Exchanged, and so by its link; then no more.
    await page.keyboard.press('x');
    await page.waitForFunction(() => location.hash === '#sensors=1-0');
    assert.deepEqual((await figures()).at(-1), ['B − A', '-5']);
    assert.equal(await page.getByRole('button', { name: 'Sensor 1 as A' }).isVisible(), true);
    await page.keyboard.press('c');
    await page.waitForSelector('#differences', { state: 'hidden' });
    assert.equal(await card.count(), 2);
    await page.evaluate(() => window.location.replace('#sensors=0-1'));
    await page.waitForSelector('#differences:not([hidden])');
    // Without a second sensor there is nothing to choose.
    const one = await show(t, { 'a.txt': text.replace(/LSC1:.*?(?=\nshare)/s, '') });
    assert.equal(await one.getByRole('button', { name: /^Sensor/ }).count(), 0);
});
