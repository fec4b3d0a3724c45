// What an engineer reads off the cards: lens shading, white balance, what is not valid.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { drop, emptyPage, open } from './harness.mjs';

async function show(t, captures, options) {
    const page = await open(t, emptyPage(), options);
    const files = Object.entries(captures).map(([name, content]) => ({ name, content }));
    await drop(page, ...files);
    await page.waitForSelector('.bar');
    return page;
}

const texts = (card, selector) =>
    card.locator(selector).evaluateAll((all) => all.map((one) => one.textContent.trim()));

/** A table of so many rows and columns. */
const tableText = (name, value, [rows, columns] = [32, 32]) => [
    `table.coeff.${name} :`,
    ...Array.from({ length: rows }, (_, y) =>
        Array.from({ length: columns }, (_, x) => `${String(value(y, x)).padStart(3)}, `).join(''),
    ),
];

/** Shading tables: `ee` falls by 2 a column, the greens differ by 40, `oo` is twice the greens' mean. */
const shadingOf = (phase, twist = 0) =>
    [
        'dev_idx = 0, path_idx = 0',
        ...(phase ? [`vinfo.bayer = 1 (Phase ${phase})`] : []),
        '=== cfg.lsc ===',
        ...tableText('ee', (y, x) => 300 - 2 * x + (y === 0 && x === 0 ? twist : 0)),
        ...tableText('eo', () => 280),
        ...tableText('oe', () => 320),
        ...tableText('oo', (y) => 600 + y),
        '',
    ].join('\n');

const cells = (card) =>
    card
        .locator('.figures-table tbody tr')
        .evaluateAll((rows) =>
            rows.map((row) => [...row.children].map((cell) => cell.textContent)),
        );

test('lens shading has figures, ratios of the colours that the text names, and cuts', async (t) => {
    const page = await show(t, { 'r.txt': shadingOf('R') });
    const card = page.locator('[data-title="Lens shading"]');
    await card.scrollIntoViewIfNeeded();
    await card.locator('.figures-table td').first().waitFor();
    assert.deepEqual(await cells(card), [
        ['ee (R)', '269', '300', '238', '300', '238', '1'],
        ['eo (G)', '280', '280', '280', '280', '280', '1'],
        ['oe (G)', '320', '320', '320', '320', '320', '1'],
        ['oo (B)', '615.5', '600', '600', '631', '631', '1'],
        ['R/G', '0.8967', '1', '0.7933', '1', '0.7933', '1'],
        ['B/G', '2.052', '2', '2', '2.103', '2.103', '1'],
    ]);
    assert.equal(await card.locator('canvas.turn').count(), 0);
    // A click on a map cuts there, along a row or a column; the readings are those of the cut.
    const over = (n) => card.locator('.u-over').nth(n);
    const reading = async (n) => {
        const box = await over(n).boundingBox();
        await page.mouse.move(box.x + 1, box.y + 20);
        return (await texts(card, '.legend')).filter((text) => text.includes('0: '))[0];
    };
    assert.match(await reading(0), /ee \(R\)0: 300.*oo \(B\)0: 616/);
    const map = card.locator('.map canvas').first();
    const box = await map.boundingBox();
    await map.click({ position: { x: (box.width * 10.5) / 32, y: (box.height * 4.5) / 32 } });
    assert.match(await card.locator('.reading-line').textContent(), /^row 4\b/);
    assert.match(await reading(0), /oo \(B\)0: 604/);
    await card.getByRole('button', { name: 'column' }).click();
    assert.match(await card.locator('.reading-line').textContent(), /^column 10\b/);
    assert.match(await reading(0), /ee \(R\)0: 280/);
    assert.match(await reading(1), /R\/G0: 0\.93.*B\/G0: 2\b/);
});

test('where the text does not say which table is red, none is called so', async (t) => {
    const names = async (capture) => {
        const page = await show(t, capture);
        const card = page.locator('[data-title="Lens shading"]');
        await card.scrollIntoViewIfNeeded();
        await card.locator('.figures-table td').first().waitFor();
        const colours = await card
            .locator('.swatch')
            .evaluateAll((all) => all.map((one) => one.style.getPropertyValue('--swatch')));
        return [(await cells(card)).map(([name]) => name), colours];
    };
    const [green, greenColours] = await names({ 'gr.txt': shadingOf('Gr') });
    assert.deepEqual(green, ['ee (G)', 'eo', 'oe', 'oo (G)', 'oe/G', 'eo/G']);
    assert.ok(!greenColours.some((one) => /red|blue|line[01]\)/.test(one)), greenColours.join());
    const [plain, colours] = await names({ 'none.txt': shadingOf('') });
    assert.deepEqual(plain, ['ee', 'eo', 'oe', 'oo']);
    assert.ok(!colours.some((one) => /red|green|blue|line[012]\)/.test(one)), colours.join());
    // Of two captures each figure has A, B and the difference.
    const page = await show(t, { 'a.txt': shadingOf('R'), 'b.txt': shadingOf('R', 7) });
    const card = page.locator('[data-title="Lens shading"]');
    await card.scrollIntoViewIfNeeded();
    await card.locator('.figures-table td').first().waitFor();
    assert.deepEqual(
        (await cells(card)).slice(0, 3).map((row) => row.slice(0, 3)),
        [
            ['A ee (R)', '269', '300'],
            ['B ee (R)', '269', '307'],
            ['B − A', '0', '7'],
        ],
    );
});

test('statistics that are not valid are called so, card by card and snapshot by snapshot', async (t) => {
    const snapshot = (lum, awb) =>
        [
            'dev_idx = 0, path_idx = 0',
            '=== stat.flag ===',
            `lum_valid = ${lum}`,
            `awb_valid = ${awb}`,
            '=== stat.lum ===',
            'Regional Luminance average:',
            ' 1, 2, 3,',
            ' 4, 5, 6,',
            `gamma_domain_avg_16b = ${100 + lum}`,
            '=== stat.awb ===',
            '[Gwd RGL]',
            ...['g', 'r', 'b'].flatMap((name) => [`${name} channel:`, ' 1, 2, 3,', ' 4, 5, 6,']),
            '',
        ].join('\n');
    const page = await show(t, { 'a.txt': snapshot(1, 0) + snapshot(0, 0) + snapshot(1, 1) });
    const said = async (title) => {
        const card = page.locator(`[data-title="${title}"]`);
        await card.scrollIntoViewIfNeeded();
        await card.locator('.maps').first().waitFor();
        return (await texts(card, '.invalid')).join();
    };
    const figure = () => texts(page.locator('#now'), '.figure .invalid');
    assert.equal(await said('Luminance by region'), '');
    assert.equal(await said('White balance averages'), '');
    await page.keyboard.press('ArrowLeft');
    await page.waitForFunction(() => document.querySelector('#now .invalid').textContent !== '');
    assert.deepEqual(await figure(), ['not valid: lum_valid 0']);
    assert.equal(await said('Luminance by region'), 'not valid: lum_valid 0');
    assert.equal(await said('White balance averages'), 'not valid: awb_valid 0');
    // Of two that are compared it says which.
    await page.keyboard.press('c');
    await page.keyboard.press('Home');
    await page.waitForSelector('.reference-line:not([hidden])');
    assert.equal(await said('Luminance by region'), 'not valid in A: lum_valid 0');
    assert.equal(await said('White balance averages'), 'not valid: awb_valid 0');
});
