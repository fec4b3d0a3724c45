// What leaves the page and what it says of time: playing, progress, charts and numbers as files.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { test } from 'node:test';
import { capture, emptyPage, open, report, saved, show, write } from './harness.mjs';

/** Snapshots of one path: of each its lines, below what is known of its time. */
const recording = (snapshots) =>
    snapshots
        .flatMap(({ head = [], lines }) => [...head, 'dev_idx = 0, path_idx = 0', ...lines, ''])
        .join('\n');

const place = (page) => page.textContent('.snapshot-line .place');

test('a recording plays at its own speed, slower, and frame by frame', async (t) => {
    // One pause in it lasts 5 seconds.
    const times = Array.from({ length: 50 }, (_, n) => 7 + n * 0.04 + (n < 40 ? 0 : 5));
    const timed = recording(
        times.map((time, n) => ({ head: [`time = ${time}`], lines: [`share.inttime = ${n}`] })),
    );
    const page = await show(t, { 'capture.txt': timed });
    await page.clock.install({ time: 0 });
    await page.clock.pauseAt(60_008);
    await page.keyboard.press('Home');
    await page.keyboard.press(' ');
    await page.clock.runFor(1000);
    assert.match(await place(page), /^#2[56] of 50/);
    await page.selectOption('[aria-label="speed, of the recording"]', '0.1');
    await page.clock.runFor(2000);
    assert.match(await place(page), /^#3[01] of 50/);
    await page.selectOption('[aria-label="speed, of the recording"]', '1');
    await page.clock.runFor(4000);
    assert.match(await place(page), /^#40 of 50/);
    await page.clock.runFor(2500);
    assert.match(await place(page), /^#50 of 50/);
    assert.equal(await page.getAttribute('.play', 'aria-label'), 'play');

    // Without time it is 15 frames a second, those that nobody saw included.
    const missed = Array.from({ length: 10 }, (_, n) => (n === 5 ? ['missed = 30'] : []));
    const untimed = recording(missed.map((head, n) => ({ head, lines: [`share.a = ${n}`] })));
    const other = await show(t, { 'capture.txt': untimed });
    await other.clock.install({ time: 0 });
    await other.clock.pauseAt(60_008);
    await other.keyboard.press('Home');
    await other.click('.play');
    await other.clock.runFor(2200);
    assert.match(await place(other), /^#5 of 10/);
    await other.clock.runFor(300);
    assert.match(await place(other), /^#8 of 10/);
});

test('while a large capture is read the page says how far, and stays alive', async (t) => {
    const one = { lines: [`share.inttime = 5`, `; ${'x'.repeat(1 << 16)}`] };
    const page = await open(t, emptyPage());
    await page.evaluate(() => {
        window.seen = [];
        window.frames = 0;
        const look = () => {
            const bar = document.querySelector('.progress progress');
            if (bar) {
                window.says = document.querySelector('.progress').textContent;
                window.frames += 1;
                if (window.seen.at(-1) !== bar.value) window.seen.push(bar.value);
            }
            requestAnimationFrame(look);
        };
        look();
        const file = (text, count) => new File(Array(count).fill(text), 'large.txt');
        window.give = (text, count) => {
            const transfer = new DataTransfer();
            transfer.items.add(file(text, count));
            document.body.dispatchEvent(
                new DragEvent('drop', { dataTransfer: transfer, bubbles: true, cancelable: true }),
            );
        };
    });
    await page.evaluate(([text]) => window.give(text, 1600), [recording([one])]);
    await page.waitForSelector('.bar');
    const { seen, frames, says } = await page.evaluate(() => ({
        seen: window.seen,
        frames: window.frames,
        says: window.says,
    }));
    assert.match(says, /^Reading large\.txt: \d+ %$/);
    assert.ok(new Set(seen).size >= 4 && frames >= 4, `${frames} frames: ${seen}`);
    assert.deepEqual(
        seen,
        seen.toSorted((p, q) => p - q),
    );
    assert.equal(await page.$('.progress'), null);
});

/** Serves a page with a header that says what it may do; returns its address. */
async function serve(t, file, policy) {
    const server = createServer((_, response) => {
        response.setHeader('Content-Type', 'text/html');
        response.setHeader('Content-Security-Policy', policy);
        response.end(readFileSync(file));
    });
    t.after(() => {
        server.close();
        server.closeAllConnections();
    });
    await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
    server.unref(); // a test that fails does not wait for it
    return `http://127.0.0.1:${server.address().port}/`;
}

const rows = (page) =>
    page.$$eval('tr', (all) =>
        all.map((row) => [...row.children].map((cell) => cell.textContent.trim())),
    );

test('where scripts are blocked the page has key figures and differences', async (t) => {
    const one = capture().toString('latin1');
    const other = one
        .replace('share.inttime = 8000', 'share.inttime = 40000')
        .replace('share.color_temp', 'share.<img src=x onerror=alert(1)> = 1\nshare.color_temp');
    const file = report('plain.html', write('a&b.txt', one), write('b.txt', other));
    const policies = [
        'sandbox',
        "sandbox allow-same-origin; default-src 'none'; img-src 'self'; style-src 'self';",
        "script-src 'none'",
    ];
    const expected = /sandboxed|Content Security Policy|violates/;
    const pages = [await open(t, file, { javaScriptEnabled: false })];
    for (const policy of policies)
        pages.push(await open(t, await serve(t, file, policy), { expected }));
    for (const page of pages) {
        const shown = await rows(page);
        assert.deepEqual(shown[0], [
            '',
            'A: a&b.txt#1: dev_idx = 0, path_idx = 0',
            'B: b.txt#1: dev_idx = 0, path_idx = 0',
        ]);
        assert.deepEqual(shown[1], ['Exposure time', '8000', '40000']);
        assert.deepEqual(shown.slice(-2), [
            ['share', 'inttime', '8000 -> 40000  (+32000, +400 %)'],
            [
                'lines that are not understood',
                '',
                'only in B: share.<img src=x onerror=alert(1)> = 1',
            ],
        ]);
        assert.match(await page.innerText('main'), /1 of \d+ fields differ/);
        assert.ok(await page.isVisible('main'));
    }
    // With scripts the page itself is in that place.
    const whole = await open(t, file);
    await whole.waitForSelector('.bar');
    assert.deepEqual(await whole.$$('main h1'), []);
});

test('of one run without scripts the first and the last show, and no more than there is room for', async (t) => {
    const lines = (value) => Array.from({ length: 9000 }, (_, i) => `share.a${i} = <b>${value}`);
    const text = recording([1, 2, 3].map((value) => ({ lines: [`share.fps = ${value}`] })));
    const page = await open(t, report('run.html', write('run.txt', text)), {
        javaScriptEnabled: false,
    });
    assert.deepEqual((await rows(page))[1], ['Frame rate', '1', '3']);
    const single = await open(t, report('one.html', write('one.txt', capture())), {
        javaScriptEnabled: false,
    });
    assert.deepEqual((await rows(single))[1], ['Exposure time', '8000']);
    assert.doesNotMatch(await single.innerText('main'), /differ/);
    const many = recording([1, 2].map((value) => ({ lines: lines(value) })));
    const file = report('many.html', write('many.txt', many));
    const html = readFileSync(file, 'latin1');
    const size = html.indexOf('</main>') - html.indexOf('<main>');
    assert.ok(size > 190_000 && size < 201_000, String(size));
    const bounded = await open(t, file, { javaScriptEnabled: false });
    assert.match(await bounded.innerText('main'), /9000 of 9000 fields differ; there is no room/);
    assert.equal(await bounded.$('b'), null);
});

test('charts and their numbers leave the page as files', async (t) => {
    const lines = (n) => [
        `share.sensor_gain = ${1000 + n}`,
        `share.sys_gain = ${2000 + 10 * n}.50`,
        '=== stat.lum ===',
        'Regional Luminance average:',
        ' 1, 2, 3,',
        ` 4, 5, ${6 + n},`,
        '=== cfg.dms ===',
        'odd = =1+1',
    ];
    const content = recording(
        Array.from({ length: 6 }, (_, n) => ({ head: [`time = ${n / 2}`], lines: lines(n) })),
    );
    for (const colorScheme of ['light', 'dark']) {
        const page = await show(t, { 'capture.txt': content }, { colorScheme });
        const { name, bytes: svg } = await saved(page, 'Gains', 'SVG');
        assert.equal(name, 'gains.svg');
        // It is a picture for whatever reads pictures: its title, the legend, axes, lines in colour.
        const drawn = await page.evaluate((text) => {
            const { documentElement } = new DOMParser().parseFromString(text, 'image/svg+xml');
            return {
                root: documentElement.tagName,
                texts: [...documentElement.querySelectorAll('text')].map((one) => one.textContent),
                strokes: [...documentElement.querySelectorAll('path')].map((one) =>
                    one.getAttribute('stroke'),
                ),
                ground: documentElement.querySelector('rect').getAttribute('fill'),
            };
        }, svg.toString());
        assert.equal(drawn.root, 'svg');
        for (const text of ['Gains', 'sensor', 'total', '2 s', '2000'])
            assert.ok(drawn.texts.includes(text), `${text} of ${drawn.texts}`);
        const colour = (name) =>
            page.evaluate(
                (name) => getComputedStyle(document.documentElement).getPropertyValue(name),
                name,
            );
        for (const line of ['--line0', '--line1'])
            assert.ok(drawn.strokes.includes(await colour(line)), `${line} of ${drawn.strokes}`);
        const ground = (await colour('--card')).slice(1);
        const [red, green, blue] = ground.match(/../g).map((part) => Number.parseInt(part, 16));
        assert.ok([`#${ground}`, `rgb(${red},${green},${blue})`].includes(drawn.ground));

        const { bytes: png } = await saved(page, 'Luminance by region', 'PNG');
        const colours = await page.evaluate(async (base64) => {
            const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
            const picture = await createImageBitmap(new Blob([bytes]));
            const canvas = new OffscreenCanvas(picture.width, picture.height);
            const context = canvas.getContext('2d');
            context.drawImage(picture, 0, 0);
            const { data } = context.getImageData(0, 0, picture.width, picture.height);
            const seen = new Set(new Uint32Array(data.buffer));
            return { corner: [...data.slice(0, 3)], count: seen.size };
        }, png.toString('base64'));
        assert.deepEqual(colours.corner, [red, green, blue]);
        assert.ok(colours.count > 6, `${colours.count} colours`);

        const { bytes: numbers } = await saved(page, 'Gains', 'TSV');
        const rows = numbers.toString().split('\n');
        assert.equal(rows[0], '#\ttime\ttotal\tsensor');
        assert.equal(rows[6], '6\t2.5\t2050.50\t1005');
        assert.equal(rows.length, 8);
        const { bytes: grid } = await saved(page, 'Luminance by region', 'TSV');
        assert.equal(grid.toString(), 'stat.lum.Regional Luminance average\n1\t2\t3\n4\t5\t11\n');
        // Two snapshots have a column each.
        await page.keyboard.press('c');
        await page.keyboard.press('Home');
        await page.waitForSelector('.reference-line:not([hidden])');
        const { bytes: both } = await saved(page, 'Luminance by region', 'TSV');
        assert.match(
            both.toString(),
            /^A stat.*\n1\t2\t3\n4\t5\t11\nB stat.*\n1\t2\t3\n4\t5\t6\n$/,
        );
    }
});

test('what is copied from a table is what a spreadsheet takes', async (t) => {
    const page = await show(t, { 'capture.txt': capture() });
    const copied = (selector) =>
        page.$eval(selector, (element) => {
            const selection = window.getSelection();
            selection.selectAllChildren(element);
            return selection.toString();
        });
    await page.fill('input[type=search]', 'share.inttime');
    await page.waitForSelector('.item[open] .fields');
    assert.match(await copied('.item[open] .fields'), /inttime\s+8000/);
    assert.doesNotMatch(await copied('.item[open] .fields'), /copy/);
    await page.fill('input[type=search]', '');
    await page.locator('[data-title="Colour correction matrix"] .sum').first().waitFor();
    const matrix = await copied('[data-title="Colour correction matrix"] .numbers');
    assert.match(matrix, /\d/);
    assert.doesNotMatch(matrix, /Σ/);
});
