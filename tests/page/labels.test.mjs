// Whose capture it is: labels on the page, and the names that runs have by them.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { drop, emptyPage, open, vordascope, write } from './harness.mjs';

const snapshot = (labels, inttime = 8000) =>
    `${Object.entries(labels)
        .map(([key, value]) => `label ${key} = ${value}\n`)
        .join('')}dev_idx = 0, path_idx = 0\nshare.inttime = ${inttime}\n; end\n`;

const names = (page) =>
    page.$$eval('.run button:first-child', (all) => all.map((one) => one.firstChild.textContent));
const paste = (page, text) =>
    page.evaluate((text) => {
        const clipboardData = new DataTransfer();
        clipboardData.setData('text/plain', text);
        document.body.dispatchEvent(
            new ClipboardEvent('paste', { clipboardData, bubbles: true, cancelable: true }),
        );
    }, text);
const runs = (page, count) =>
    page.waitForFunction((count) => document.querySelectorAll('.run').length === count, count);

test('labels stand beside the name, hostile ones as text', async (t) => {
    const hostile = {
        host: '<img src=x onerror=alert(1)>',
        site: 'roof \u202eevil\u2066 süd',
        long: 'x'.repeat(10000),
        ...Object.fromEntries(Array.from({ length: 300 }, (_, i) => [`k${i}`, '</details>'])),
    };
    const page = await open(t, emptyPage());
    await drop(page, { name: 'a.txt', content: snapshot(hostile) });
    const few = page.locator('.labels summary');
    await few.waitFor();
    assert.match(await few.textContent(), /^host <img src=x onerror=alert\(1\)>site roof /);
    assert.match(await few.textContent(), / and 252 more$/);
    assert.equal(await page.locator('.bar img').count(), 0);
    // More than anyone gives are told, not shown.
    assert.match(
        await page.locator('.notice summary').textContent(),
        /^47 lines could not be read/,
    );

    const box = (selector) => page.$eval(selector, (one) => one.getBoundingClientRect().toJSON());
    for (const width of [1280, 400]) {
        await page.setViewportSize({ width, height: 900 });
        const bar = await box('.bar');
        assert.ok(bar.height < (width === 400 ? 330 : 160), `${bar.height} at ${width}`);
        assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), width);
    }

    // By keys: opened, everything is there, and within the window.
    await few.focus();
    await page.keyboard.press('Enter');
    const told = await page.$$eval('.labels dd', (all) => all.map((one) => one.textContent));
    // What would turn the direction is told.
    hostile.site = 'roof \\u{202e}evil\\u{2066} süd';
    assert.deepEqual(told, Object.values(hostile).slice(0, 256));
    const list = await box('.labels dl');
    assert.ok(list.x >= 0 && list.x + list.width <= 400 && list.y + list.height <= 900);

    // Of the command line, beside the capture's own.
    const file = write('own.txt', snapshot({ host: 'cam1' }));
    const out = write('own.html', '');
    vordascope('report', '--label', 'site=süd', '--label', 'host=cam9', '-o', out, file);
    const own = await open(t, out);
    assert.equal(await own.locator('.labels summary').textContent(), 'site südhost cam1');
});

test('runs are named by their files, by labels where those do not tell them apart', async (t) => {
    const page = await open(t, emptyPage());
    await paste(page, snapshot({ host: 'cam1', kernel: '5.10', started: '10:00' }));
    await page.waitForSelector('.labels');
    // What was pasted has no name of its own.
    assert.equal(await page.locator('h1').textContent(), 'cam1');
    assert.equal(await page.title(), 'cam1 – vordascope');
    await paste(page, snapshot({ host: 'cam\u202e2', kernel: '5.10', started: '10:00' }));
    await runs(page, 2);
    assert.deepEqual(await names(page), ['cam1', 'cam 2']);
    await paste(page, snapshot({ host: 'cam1', kernel: '5.10', started: '11:00' }));
    await runs(page, 3);
    assert.deepEqual(await names(page), ['cam1 · 10:00', 'cam 2 · 10:00', 'cam1 · 11:00']);
    await paste(page, snapshot({}));
    await runs(page, 4);
    assert.deepEqual((await names(page))[3], 'pasted text');

    const files = await open(t, emptyPage());
    const of = (host, ...times) =>
        times.map((started, i) => snapshot({ host, started }, i)).join('');
    await drop(
        files,
        { name: 'a.txt', content: of('cam1', '10:00') },
        { name: 'b.txt', content: of('cam1', '10:00') },
    );
    await runs(files, 2);
    assert.deepEqual(await names(files), ['a.txt', 'b.txt']);
    await drop(files, { name: 'a.txt', content: of('cam2', '10:00') });
    await runs(files, 3);
    assert.deepEqual(await names(files), ['a.txt · cam1', 'b.txt', 'a.txt · cam2']);
    // The labels are those of the run that shows.
    await files.click('.run:nth-child(2) button');
    assert.equal(await files.locator('.labels summary').textContent(), 'host cam1started 10:00');
});
