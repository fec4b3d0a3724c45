// What an engineer reads off the cards: lens shading, white balance, what is not valid.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { drop, emptyPage, open, saved, show } from './harness.mjs';

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
    await map.click({ position: { x: (box.width * 12.5) / 32, y: (box.height * 4.5) / 32 } });
    assert.match(await card.locator('.reading-line').textContent(), /^row 4\b/);
    assert.match(await reading(0), /oo \(B\)0: 604/);
    await card.getByRole('button', { name: 'column' }).click();
    assert.match(await card.locator('.reading-line').textContent(), /^column 12\b/);
    assert.match(await reading(0), /ee \(R\)0: 276/);
    assert.match(await reading(1), /R\/G0: 0\.92.*B\/G0: 2(?!\.)/);
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
    assert.equal(
        await page.locator('[data-title="Luma average"] .where').textContent(),
        '#2 · not valid: lum_valid 0 ·',
    );
    // Of two that are compared it says which.
    await page.keyboard.press('c');
    await page.keyboard.press('Home');
    await page.waitForSelector('.reference-line:not([hidden])');
    assert.equal(await said('Luminance by region'), 'not valid in A: lum_valid 0');
    assert.equal(await said('White balance averages'), 'not valid: awb_valid 0');
});

/** A camera whose regions [0][0] and [0][1] are of one colour, and that grows redder at [1][2]. */
const balance = (n) =>
    [
        `time = ${n}`,
        'dev_idx = 0, path_idx = 0',
        '=== cfg.awb ===',
        'gain[0].enable = 1,',
        ...[1000, 1250, 2000, 1000].map(
            (value, i) => `gain[0].gain.val[${i}] = ${value + n * (i === 2)},`,
        ),
        'gain[1].enable = 0,',
        ...[1, 1, 1, 1].map((value, i) => `gain[1].gain.val[${i}] = ${value},`),
        '=== stat.lum ===',
        'Luminance histogram:',
        ...Array.from({ length: 10 }, (_, y) =>
            Array.from({ length: 6 }, (_, x) => `${y * 6 + x === 20 + n ? 500 : 7}, `).join(''),
        ),
        '=== stat.awb ===',
        '[Gwd RGL]',
        'g channel:',
        ' 100, 50, 200,',
        ' 100, 100, 100,',
        'r channel:',
        ' 80, 40, 200,',
        ` 60, 90, ${40 + 10 * n},`,
        'b channel:',
        ' 60, 30, 100,',
        ' 40, 50, 70,',
        '',
    ].join('\n');
const balanced = Array.from({ length: 6 }, (_, n) => balance(n)).join('');

/** What a card reads where the pointer finds something: the places are looked for. */
async function readings(canvas, reading, [across, down] = [6, 6]) {
    const box = await canvas.boundingBox();
    const found = new Map();
    for (let y = 12; y < box.height - 34; y += down)
        for (let x = 44; x < box.width - 12; x += across) {
            await canvas.dispatchEvent('pointermove', { clientX: box.x + x, clientY: box.y + y });
            const text = await reading.textContent();
            if (text && !found.has(text)) found.set(text, { x, y });
        }
    return found;
}

test('white balance: gains among the regions, points told apart, a region through the run', async (t) => {
    const page = await show(t, { 'a.txt': balanced }, { width: 420 });
    const card = page.locator('[data-title="Chromaticity by region"]');
    await card.scrollIntoViewIfNeeded();
    const canvas = card.locator('canvas').first();
    await canvas.waitFor();
    const found = await readings(canvas, card.locator('.reading').first());
    const all = [...found.keys()];
    assert.ok(all.includes('2 regions here: [0][0] [0][1], r/g 0.8, b/g 0.6'), all.join('\n'));
    assert.ok(all.includes('gain[0]: val[0]/val[1] 0.8, val[0]/val[2] 0.4988'), all.join('\n'));
    assert.ok(!all.some((text) => text.includes('gain[1]')));
    assert.match(await card.locator('.plain').first().textContent(), /^6 regions in 5 places/);
    // A step is as long on both axes: from [1][0] at 0.6, 0.4 to [0][2] at 1, 0.5 it is 4 to 1.
    const at = (text) => found.get(all.find((one) => one.startsWith(text)));
    const [from, to] = [at('[1][0]'), at('[0][2]')];
    assert.ok(
        Math.abs((to.x - from.x) / (from.y - to.y) - 4) < 0.8,
        `${from.x} ${to.x} ${from.y} ${to.y}`,
    );

    await canvas.click({ position: at('[1][2]') });
    assert.equal(await card.getByLabel('region', { exact: true }).inputValue(), '[1][2]');
    const over = card.locator('.u-over');
    await over.waitFor();
    const box = await over.boundingBox();
    await page.mouse.move(box.x + box.width - 1, box.y + 10);
    assert.deepEqual(await texts(card, '.legend .entry'), ['r/g0.9', 'b/g0.7']);
    await page.mouse.move(box.x + 1, box.y + 10);
    assert.deepEqual(await texts(card, '.legend .entry'), ['r/g0.4', 'b/g0.7']);
    // Keys go from point to point, and pick what the pointer does.
    await canvas.focus();
    const said = async (...keys) => {
        for (const key of keys) await canvas.press(key);
        return canvas.getAttribute('aria-valuetext');
    };
    assert.match(await said('End'), /^\[0\]\[2\] r\/g 1, b\/g 0\.5/);
    assert.match(await said('ArrowLeft', 'ArrowLeft'), /^\[1\]\[1\] r\/g 0\.9, b\/g 0\.5/);
    assert.match(await said('Home', 'ArrowLeft'), /^\[1\]\[0\] r\/g 0\.6/);
    // Upwards to the higher b/g.
    assert.match(await said('ArrowUp'), /^gain\[0\]: /);
    await said('Home', 'Enter');
    assert.equal(await card.getByLabel('region', { exact: true }).inputValue(), '[1][0]');
    await said('End', 'ArrowLeft', 'Enter');
    assert.equal(await card.getByLabel('region', { exact: true }).inputValue(), '[1][2]');
    // Its way lies in the cloud, in the colour that the chosen region has.
    const { bytes } = await saved(page, 'Chromaticity by region', 'SVG');
    const colour = await page.evaluate(() =>
        getComputedStyle(document.documentElement).getPropertyValue('--line3'),
    );
    const paths = bytes.toString().match(/<path d="M[^"]*"[^>]*>/g);
    assert.ok(paths.some((path) => path.includes(colour) && path.match(/L/g)?.length === 5));
    await card.getByLabel('region', { exact: true }).selectOption('');
    await over.waitFor({ state: 'hidden' });
});

test('elements of grids and histograms go over time, and gains are named and coloured alike', async (t) => {
    const path = 'stat.awb.Gwd RGL.r channel[1][2]';
    const page = await open(t, emptyPage(), { expected: /getImageData/ });
    await page.evaluate(
        (hash) => window.location.replace(hash),
        `#add=${encodeURIComponent(path)}`,
    );
    await drop(page, { name: 'a.txt', content: balanced });
    const chart = page.locator(`[data-title="${path}"]`);
    await chart.locator('canvas').waitFor();
    assert.deepEqual(await texts(chart, '.reading'), ['90']);
    await page.keyboard.press('Home');
    await page.waitForFunction(
        (title) => document.querySelector(`[data-title="${title}"] .reading`).textContent === '40',
        path,
    );
    const adder = page.getByLabel('add a chart of a field');
    for (const name of ['stat.awb.Gwd RGL.g channel[7][7]', 'nothing[0]']) {
        await adder.fill(name);
        await adder.press('Enter');
        await page.getByText(`${name}: no such number`).waitFor();
    }
    await adder.fill('stat.lum.Luminance histogram[22]');
    await adder.press('Enter');
    await page.locator('[data-title="stat.lum.Luminance histogram[22]"] canvas').waitFor();
    await page.waitForFunction(() => /add=.*add=.*%5B22%5D/.test(window.location.hash));

    // The histogram is one map: the bin of each snapshot where most is reads as printed.
    const map = page.locator('[data-title="Luminance histogram over time"]');
    await map.scrollIntoViewIfNeeded();
    const canvas = map.locator('canvas').first();
    const found = await readings(canvas, map.locator('.reading').first(), [90, 2]);
    for (const [n, bin] of [
        [1, 21],
        [3, 23],
        [4, 24],
    ])
        assert.ok(found.has(`#${n + 1} · ${n} s · [${bin}]: 500`), [...found.keys()].join('\n'));
    const brightness = (text) =>
        canvas.evaluate((element, { x, y }) => {
            const scale = element.width / element.clientWidth;
            const context = element.getContext('2d');
            const [r, g, b] = context.getImageData(x * scale, y * scale, 1, 1).data;
            return r + g + b;
        }, found.get(text));
    for (const text of ['#2 · 1 s · [21]: 500', '#5 · 4 s · [24]: 500'])
        assert.ok((await brightness(text)) > (await brightness('#2 · 1 s · [40]: 7')) + 150, text);
    assert.ok(found.get('#5 · 4 s · [24]: 500').x > found.get('#2 · 1 s · [21]: 500').x);
    await canvas.click({ position: found.get('#4 · 3 s · [23]: 500') });
    await page.waitForFunction(() => document.querySelector('.place').textContent.startsWith('#4'));
    // Keys go there too: to the right by snapshots, up by values.
    await canvas.focus();
    for (const key of ['End', 'ArrowLeft', 'PageUp', 'ArrowRight', ...Array(21).fill('ArrowUp')])
        await canvas.press(key);
    assert.equal(await canvas.getAttribute('aria-valuetext'), '#2 · 1 s · [21]: 500');
    await canvas.press('Enter');
    await page.waitForFunction(() => document.querySelector('.place').textContent.startsWith('#2'));

    const gains = page.locator('[data-title="White balance gains"]');
    const entries = await gains
        .first()
        .locator('.entry')
        .evaluateAll((all) =>
            all.map((one) => [
                one.childNodes[1].textContent,
                one.querySelector('.swatch').style.getPropertyValue('--swatch'),
            ]),
        );
    assert.deepEqual(
        entries.map(([name]) => name),
        ['val[0]', 'val[1]', 'val[2]', 'val[3]'],
    );
    // In a narrow window too every name can be read.
    await page.setViewportSize({ width: 400, height: 900 });
    const cut = await gains
        .first()
        .locator('.legend')
        .evaluate((legend) => {
            const { right, bottom } = legend.getBoundingClientRect();
            const boxes = [...legend.children].map((one) => one.getBoundingClientRect());
            return boxes.filter((box) => box.right > right + 1 || box.bottom > bottom + 1).length;
        });
    assert.equal(cut, 0);
    const sparks = await page
        .locator('.figure[title="cfg.awb.gain[0].gain.val"] .spark-line')
        .evaluateAll((all) => all.map((one) => one.style.stroke));
    assert.deepEqual(
        sparks,
        entries.map(([, colour]) => colour),
    );
    assert.equal(new Set(sparks).size, 4);
    const colours = await page.evaluate(() => {
        const style = getComputedStyle(document.documentElement);
        return ['--red', '--green', '--blue'].map((name) => style.getPropertyValue(name));
    });
    for (const spark of sparks) {
        const value = await page.evaluate(
            (name) => getComputedStyle(document.documentElement).getPropertyValue(name),
            /\((.*)\)/.exec(spark)[1],
        );
        assert.ok(!colours.includes(value), `${spark} is the colour of a channel`);
    }
    await gains.last().scrollIntoViewIfNeeded();
    assert.deepEqual(await texts(gains.last(), 'thead th'), ['', ...entries.map(([name]) => name)]);
});

test('planes of whole numbers have whole ticks, zeros make no scale, cells are squares', async (t) => {
    const numbers = async (capture, title) => {
        const page = await show(t, { 'a.txt': `dev_idx = 0, path_idx = 0\n${capture}` });
        await page.locator(`[data-title="${title}"] canvas`).first().waitFor();
        const svg = (await saved(page, title, 'SVG')).bytes.toString();
        return [...svg.matchAll(/>(-?[\d.]+[kM]?)<\/text>/g)].map(([, text]) => text).sort();
    };
    const motion = (...bins) =>
        `=== stat.mv ===\nmv histogram:\n${bins.map((bin, i) => `<# ${i}> (${bin.join(', ')})`).join('\n')}\n`;
    assert.deepEqual(await numbers(motion([0, 0, 5], [1, -1, 7]), 'Motion vectors'), [
        '-1',
        '0',
        '0',
        '1',
    ]);
    assert.deepEqual(await numbers(motion([0, 0, 5], [0, 0, 7]), 'Motion vectors'), ['0', '0']);
    // Where all is in one place, that alone stands on the axes.
    const alike = Object.entries({ g: 20, r: 10, b: 5 }).map(
        ([name, level]) => `${name} channel:\n${`${level}, ${level}, \n`.repeat(2)}`,
    );
    const regions = `=== stat.awb ===\n[Gwd RGL]\n${alike.join('')}`;
    assert.deepEqual(await numbers(regions, 'Chromaticity by region'), ['0.25', '0.5']);
    const lum = '=== stat.lum ===\nRegional Luminance average:\n1, 2, 3, 4\n5, 6, 7, 8\n';
    const map = await show(t, { 'a.txt': `dev_idx = 0, path_idx = 0\n${lum}` });
    const box = await map.locator('.map canvas').first().boundingBox();
    assert.ok(Math.abs(box.width / box.height - 2) < 0.02, `${box.width} ${box.height}`);
});
