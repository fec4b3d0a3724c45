// What one sees and does: the page in a browser, with captures dropped onto it.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import {
    capture,
    drop,
    emptyPage,
    kept,
    open,
    report,
    series,
    show,
    vordascope,
    write,
} from './harness.mjs';

const one = capture();
const stitched = `dev_idx = 0, path_idx = 0\n${readFileSync(kept('tests/golden/distinct.txt'), 'latin1')}`;
const SNAPSHOTS = 40;
let recorded;
const many = () => {
    recorded ??= series(SNAPSHOTS);
    return recorded;
};

const press = async (page, ...keys) => {
    for (const key of keys) await page.keyboard.press(key);
    await page.evaluate(
        () => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))),
    );
};
const texts = (page, selector) => page.$$eval(selector, (all) => all.map((one) => one.textContent));
/** What stands beside the sliders: "#3 of 40 · 2 s", in a comparison "A ..., B ...". */
const place = (page) =>
    page.$$eval('.snapshot-line:not([hidden]) .place', (all) =>
        all.length > 1 ? `A ${all[1].textContent}, ${all[0].textContent}` : all[0].textContent,
    );
/** The value that a key figure shows. */
const figure = (page, title) =>
    page.$$eval(
        '.figure',
        (all, title) =>
            all.find((one) => one.querySelector('dt').textContent === title)?.querySelector('dd')
                .textContent,
        title,
    );
const shownSections = (page) => texts(page, 'section:not([hidden]) > h2');
/** The page as if somebody had scrolled through it: every card is drawn, in its size. */
const drawAll = (page) =>
    page.evaluate(async () => {
        window.dispatchEvent(new Event('beforeprint'));
        window.dispatchEvent(new Event('afterprint'));
        for (let i = 0; i < 3; i++) await new Promise(requestAnimationFrame);
    });

test('every card is drawn, none fails and no canvas stays blank', async (t) => {
    for (const content of [stitched, one]) {
        const page = await show(t, { 'a.txt': content });
        await drawAll(page);
        assert.deepEqual(await texts(page, '.failed'), []);
        const blank = await page.$$eval('.card', (cards) =>
            cards.flatMap((card) =>
                [...card.querySelectorAll('canvas')]
                    .filter((canvas) => canvas.clientWidth > 0)
                    .filter((canvas) => {
                        const { width, height } = canvas;
                        if (width * height === 0) return true;
                        const { data } = canvas.getContext('2d').getImageData(0, 0, width, height);
                        return !data.some((byte) => byte !== 0);
                    })
                    .map(() => card.dataset.title),
            ),
        );
        assert.deepEqual(blank, []);
        assert.ok((await page.$$('.cards .card')).length >= 34);
    }
});

test('a card that fails says so, and the others stand', async (t) => {
    const page = await open(t, emptyPage());
    await page.evaluate(() => {
        CanvasRenderingContext2D.prototype.arc = () => {
            throw new Error('no discs today');
        };
    });
    await drop(page, { name: 'a.txt', content: one });
    await page.waitForSelector('.bar');
    await drawAll(page);
    const failed = await page.$$eval('.failed', (all) =>
        all.map((one) => one.closest('.card').dataset.title),
    );
    assert.deepEqual(failed, ['Chromaticity by region', 'Motion vectors']);
    assert.match((await texts(page, '.failed'))[0], /no discs today/);
    assert.ok(await page.$('[data-title="Gamma"] canvas'));
});

test('keys step through a series, compare and measure nothing twice', async (t) => {
    const page = await show(t, { 'series.txt': many() });
    const last = `#${SNAPSHOTS} of ${SNAPSHOTS} · ${SNAPSHOTS - 1} s`;
    assert.equal(await place(page), last);
    await press(page, 'ArrowLeft', 'ArrowLeft', 'Shift+ArrowLeft');
    assert.equal(await place(page), `#${SNAPSHOTS - 12} of ${SNAPSHOTS} · ${SNAPSHOTS - 13} s`);
    await press(page, 'Home', 'ArrowLeft');
    assert.equal(await place(page), `#1 of ${SNAPSHOTS} · 0 s`);
    await press(page, 'c', 'ArrowRight', 'ArrowRight', 'ArrowRight');
    assert.equal(await place(page), 'A #1 · 0 s, B #4 · 3 s');
    assert.ok((await shownSections(page)).includes('Differences'));
    await press(page, 'x');
    assert.equal(await place(page), 'A #4 · 3 s, B #1 · 0 s');
    await press(page, 'c', 'End');
    assert.equal(await place(page), last);
    assert.ok(!(await shownSections(page)).includes('Differences'));
    // Play from the end begins anew, and any step stops it.
    await page.clock.install({ time: 0 });
    await page.clock.pauseAt(60_008);
    await page.keyboard.press(' ');
    await page.clock.runFor(3250);
    assert.equal(await place(page), `#4 of ${SNAPSHOTS} · 3 s`);
    await page.keyboard.press('ArrowRight');
    await page.clock.runFor(1000);
    assert.equal(await place(page), `#5 of ${SNAPSHOTS} · 4 s`);
});

test('keys belong to the field that has the focus', async (t) => {
    const page = await show(t, { 'series.txt': many() });
    await press(page, '/');
    await page.keyboard.type('lut cx?');
    assert.equal(await page.$eval('input[type=search]', (input) => input.value), 'lut cx?');
    assert.equal(await page.$eval('dialog', (dialog) => dialog.open), false);
    await press(page, 'Escape', '?');
    assert.equal(await page.$eval('input[type=search]', (input) => input.value), '');
    assert.equal(await page.$eval('dialog', (dialog) => dialog.open), true);
    await press(page, 'Escape');
    assert.equal(await page.$eval('dialog', (dialog) => dialog.open), false);
});

test('two captures are compared: figures, cards and fields say what changed', async (t) => {
    const after = one
        .toString('latin1')
        .replace('share.inttime = 8000', 'share.inttime = 40000')
        .replace('level_g0 = 1024', 'level_g0 = 1000');
    const page = await show(t, { 'before.txt': one, 'after.txt': after });
    assert.equal(await figure(page, 'Exposure time'), '8000 → 40000');
    assert.equal(await figure(page, 'Total gain'), '1024');
    assert.equal(await place(page), 'A before.txt · #1, B after.txt · #1');
    assert.deepEqual(await texts(page, '.differences tr'), [
        'cfg.calDBC / level_g01024 -> 1000  (-24, -2.34 %)',
        'shareinttime8000 -> 40000  (+32000, +400 %)',
    ]);
    await press(page, 'o');
    assert.deepEqual(await shownSections(page), ['Now', 'Differences', 'All fields']);
    assert.deepEqual(await texts(page, '.item:not([hidden]) tr:not([hidden]) th'), [
        'DBC / level_g0',
        'inttime',
    ]);
    await press(page, 'x');
    assert.equal(await figure(page, 'Exposure time'), '40000 → 8000');
    await press(page, 'c');
    assert.equal(await figure(page, 'Exposure time'), '8000');
});

/** What `vordascope diff` says of two snapshots of a file, [item, field, difference] each. */
function diffOf(file, a, b) {
    const { stdout } = vordascope('diff', `${file}#${a}`, `${file}#${b}`);
    const named = stdout
        .toString()
        .replaceAll(`only in ${file}#${a}`, 'only in A')
        .replaceAll(`only in ${file}#${b}`, 'only in B');
    let item = '';
    return named
        .split('\n')
        .slice(2, -2)
        .flatMap((line) => {
            const [, key, text] = /^ {2}(.+?) {2,}(.*)$/.exec(line) ?? [];
            const [, whole, side] = /^(\S+): (only in .*)$/.exec(line) ?? [];
            if (!key) item = line;
            return key ? [[item, key, text]] : whole ? [[whole, side]] : [];
        });
}

test('a comparison shows what diff prints', async (t) => {
    const old = stitched
        .replace(/=== cfg\.hdr ===\n[\s\S]*?(?==== )/, '')
        .replaceAll('bpf_gain_2s = 42', 'bpf = 1');
    const file = write(
        'compared.txt',
        Buffer.concat([many(), Buffer.from(stitched + old, 'latin1')]),
    );
    const page = await show(t, { 'compared.txt': readFileSync(file) });
    const shown = () =>
        page.$$eval('.differences tr', (rows) => {
            let item = '';
            return rows.map((row) => {
                item = row.querySelector('th')?.textContent ?? item;
                return [item, ...[...row.querySelectorAll('td')].map((cell) => cell.textContent)];
            });
        });
    await press(page, 'Home', 'c', 'ArrowRight', 'Shift+ArrowRight');
    assert.ok((await shown()).length > 20);
    assert.deepEqual(await shown(), diffOf(file, 1, 12));
    // Of a list or grid every value on demand, as with --every.
    const opened = await page.$$('.differences summary');
    assert.ok(opened.length > 3);
    for (const summary of opened) await summary.click();
    await page.waitForFunction(() =>
        [...document.querySelectorAll('.differences pre')].every((one) => one.textContent),
    );
    const every = vordascope('diff', '--every', `${file}#1`, `${file}#12`).stdout.toString();
    assert.deepEqual(
        (await texts(page, '.differences pre')).flatMap((text) => text.split('\n')),
        every.split('\n').flatMap((line) => /^ {4}(\[.*)/.exec(line)?.[1] ?? []),
    );
    // The other way round nearly everything differs, in 64 bits and in fields that one side lacks.
    await press(page, 'c', 'End', 'ArrowLeft', 'c', 'Home');
    const rows = (all) =>
        all.map((row) => row.join(' | ')).filter((row) => !/_path|valid_win/.test(row));
    const said = rows(await shown()).sort();
    assert.ok(said.length > 1000);
    assert.deepEqual(said, rows(diffOf(file, SNAPSHOTS + 1, 1)).sort());
    await press(page, 'c', 'End', 'ArrowLeft', 'c', 'End');
    assert.deepEqual(
        rows(await shown()).sort(),
        rows(diffOf(file, SNAPSHOTS + 1, SNAPSHOTS + 2)).sort(),
    );
    assert.ok(rows(await shown()).includes('cfg.hdr | only in A (24 fields)'));
});

test('a series shows what series prints', async (t) => {
    const file = write('series.txt', many());
    const page = await show(t, { 'series.txt': many() });
    const names = ['inttime', 'sys_gain', 'sensor_gain', 'isp_gain'].map((name) => `share.${name}`);
    const { stdout } = vordascope('series', file, 'time', ...names, 'cfg.awb.gain[0].gain.val');
    const rows = stdout.toString().trim().split('\n').slice(1);
    assert.equal(new Set(rows.map((row) => row.replace(/^\d+,/, ''))).size > 5, true);
    await press(page, 'Home');
    for (const row of rows) {
        const time = Number((await place(page)).match(/· (\d+) s$/)[1]) + 1;
        const values = [];
        for (const title of ['Exposure time', 'Gains', 'White balance gains'])
            values.push(...(await texts(page, `#time [data-title="${title}"] .reading`)));
        assert.equal([time, ...values].join(','), row);
        await press(page, 'ArrowRight');
    }
});

test('a search leaves the fields and cards that match, and opens them', async (t) => {
    const page = await show(t, { 'a.txt': one });
    await page.fill('input[type=search]', 'nr lut_o');
    await page.waitForFunction(() =>
        document.querySelector('.list .summary').textContent.startsWith('18 of'),
    );
    assert.deepEqual(await shownSections(page), ['Now', 'Noise', 'All fields']);
    const cards = await page.$$eval('.card[data-title]', (all) =>
        all.filter((card) => card.offsetParent).map((card) => card.dataset.title),
    );
    assert.deepEqual(cards, ['Noise reduction', 'Front noise reduction']);
    const [row] = await texts(page, '.item:not([hidden]) tr:not([hidden])');
    assert.match(row, /^ma_y\.lut_o0, 3, 13, 29, 52, 81, 117, 159, 208/);
    await page.fill('input[type=search]', '=28600');
    await page.waitForFunction(() =>
        document.querySelector('.list .summary').textContent.startsWith('1 of'),
    );
    assert.deepEqual(await texts(page, '.item:not([hidden]) tr:not([hidden]) th'), [
        'gamma_domain_avg_16b',
    ]);
    // Hundreds of fields are a list of items to choose from.
    for (const query of ['cfg', '']) {
        await page.fill('input[type=search]', query);
        await page.waitForFunction(() => !document.querySelector('details.item[open]'));
    }
});

test('a drag across a chart measures, a click goes there', async (t) => {
    const levels = [10, 10, 10, 10, 60, 130, 100, 100, 100, 100, 100];
    const text = levels
        .map(
            (level) =>
                `dev_idx = 0, path_idx = 0\nshare.inttime = ${level}\nshare.odd = ${level % 7}\n`,
        )
        .join('');
    const page = await show(t, { 'step.txt': text });
    const box = await (await page.$('[data-title="Exposure time"] .u-over')).boundingBox();
    const x = (n) => box.x + (box.width * n) / (levels.length - 1);
    await page.mouse.move(x(1), box.y + 20);
    await page.mouse.down();
    await page.mouse.move(x(5), box.y + 30);
    await page.mouse.move(x(9), box.y + 20);
    await page.mouse.up();
    await page.waitForSelector('.measured li');
    assert.deepEqual(await texts(page, '.measured li'), [
        'step 10 → 100, within 5 % after 2 snapshots, overshoot 33.3 %',
    ]);
    await page.mouse.click(x(2), box.y + 20);
    await page.keyboard.down('Shift');
    await page.mouse.click(x(6), box.y + 20);
    await page.keyboard.up('Shift');
    await page.waitForFunction(() =>
        document.querySelector('.place').textContent.startsWith('B #3'),
    );
    await page.fill('.adder input', 'share.odd');
    await press(page, 'Enter');
    await page.waitForSelector('[data-title="share.odd"]');
    assert.equal((await texts(page, '.measured li')).length, 2);
    await page.click('[data-title="share.odd"] button');
    await page.waitForFunction(() => !document.querySelector('[data-title="share.odd"]'));
});

/** A recording of one field, a snapshot every 40 ms from a time on; `head` adds lines to a snapshot. */
const recording = (begin, values, head = {}) =>
    values
        .map(
            (value, n) =>
                `${head[n] ?? ''}time = ${(begin + n * 0.04).toFixed(2)}\n` +
                `dev_idx = 0, path_idx = 0\nshare.inttime = ${value}\nshare.sys_gain = 2\n`,
        )
        .join('');
const flatUntil = (n, ...then) =>
    Array.from({ length: 40 }, (_, i) => then[i - n] ?? (i < n ? 1000 : 2000));

test('a second run lies under the first: read, aligned, measured, zoomed', async (t) => {
    const before = recording(0, flatUntil(10));
    const after = recording(100, flatUntil(15, 1250, 1500, 1750), { 30: 'missed = 3\n' });
    const page = await show(t, { 'before.txt': before, 'after.txt': after });
    const box = () => page.locator('[data-title="Exposure time"] .u-over').boundingBox();
    let seconds = 39 * 0.04;
    const at = async (n) => {
        const { x, y, width } = await box();
        return [x + (width * n * 0.04) / seconds, y + 60];
    };
    const reading = async (n) => {
        await page.mouse.move(...(await at(n)));
        return (await texts(page, '[data-title="Exposure time"] .legend'))[0];
    };
    assert.equal(await reading(10), '#11 · 0.4 s ·1000 (A 2000, -1000)');
    await page.selectOption('[aria-label="align the runs"]', 'share.inttime');
    await press(page);
    seconds += 0.2; // by which the first run is moved
    // Both leave rest at the same place now; what is computed is aligned with what is printed.
    assert.equal(await reading(15), '#16 · 0.6 s ·1250 (A 2000, -750)');
    assert.equal(await reading(14), '#15 · 0.56 s ·1000 (A 1000, +0)');
    assert.match(await page.innerText('[data-title="Exposure, computed"]'), /2000 \(A 2000, \+0\)/);

    const place = await box();
    await page.mouse.move(...(await at(11)));
    await page.mouse.down();
    await page.mouse.move(...(await at(20)));
    await page.mouse.move(...(await at(37)));
    await page.mouse.up();
    await page.waitForSelector('.measured li');
    assert.deepEqual(await texts(page, '[data-title="Exposure time"] .measured li'), [
        'B step 1000 → 2000, within 5 % after 3 (0.12 s) snapshots, overshoot 0 %',
        'A step 1000 → 2000, within 5 % after 0 (0 s) snapshots, overshoot 0 %',
    ]);
    assert.deepEqual(await box(), place, 'nothing moves when a selection is made');
    const rows = await texts(page, '.answers tbody tr');
    assert.match(rows[2], /^B − A\+0 → \+0–\+3 \(\+0\.12 s\)\+3 \(\+0\.12 s\)/);
    // The command line says the same of that part.
    const file = write('after.txt', after);
    const { stdout } = vordascope('response', '--csv', `${file}#12-38`, 'share.inttime');
    const [names, row] = stdout
        .toString()
        .split('\n')
        .map((line) => line.split(','));
    const said = Object.fromEntries(names.map((name, i) => [name, row[i]]));
    assert.deepEqual([said.settling, Number(said.settling_s)], ['3', 0.12]);

    // The wheel zooms around the pointer; what was under it stays under it.
    await page.keyboard.press('Escape');
    const under = await reading(30);
    await page.mouse.wheel(0, -400);
    await page.waitForFunction(() => window.location.hash.includes('zoom='));
    assert.equal((await texts(page, '[data-title="Exposure time"] .legend'))[0], under);
    // Frames that nobody saw are a gap in the line.
    const inked = await page.$eval('[data-title="Exposure time"] canvas', (canvas) => {
        const { width, height } = canvas;
        const { data } = canvas.getContext('2d').getImageData(0, 0, width, height);
        const over = canvas.parentElement.querySelector('.u-over');
        return Array.from({ length: over.clientWidth }, (_, x) =>
            Array.from({ length: over.clientHeight }, (_, y) => {
                const at = ((y + over.offsetTop) * width + x + over.offsetLeft) * 4;
                return data[at] < 40 && data[at + 2] > 150 && data[at + 3] > 200;
            }).some(Boolean),
        );
    });
    const blank = inked.lastIndexOf(true) - inked.indexOf(true) + 1 - inked.filter(Boolean).length;
    assert.ok(blank > 10 && blank < inked.length / 8, `${blank} of ${inked.length}`);

    // A drag in the overview moves the part that shows; a double click shows all.
    const zoomOf = () => page.evaluate(() => window.location.hash.match(/zoom=([^&]*)/)?.[1]);
    const strip = await page.locator('.overview').boundingBox();
    const [y, first, second] = [strip.y + 15, strip.x + strip.width / 4, strip.x + strip.width / 2];
    await page.locator('.overview').dblclick();
    await page.waitForFunction(() => !window.location.hash.includes('zoom='));
    await page.mouse.move(first, y);
    await page.mouse.down();
    await page.mouse.move(second, y);
    await page.mouse.up();
    await page.waitForFunction(() => window.location.hash.includes('zoom='));
    assert.deepEqual(
        (await zoomOf()).split('_').map((x) => Number(x).toFixed(2)),
        ['0.44', '0.88'],
    );
    const fragment = await page.evaluate(() => window.location.hash);
    await press(page, '0');
    await page.waitForFunction(() => !window.location.hash.includes('zoom='));

    const again = await show(t, { 'before.txt': before, 'after.txt': after }, { fragment });
    assert.equal(await again.inputValue('[aria-label="align the runs"]'), 'share.inttime');
    assert.equal(await again.isEnabled('text=Show all'), true);
});

test('what ends is freed', async (t) => {
    const page = await show(t, { 'a.txt': many(), 'b.txt': many() });
    const session = await page.context().newCDPSession(page);
    const alive = async (what) => {
        await session.send('HeapProfiler.collectGarbage');
        const { result } = await session.send('Runtime.evaluate', {
            expression: `${what}.prototype`,
        });
        const { objects } = await session.send('Runtime.queryObjects', {
            prototypeObjectId: result.objectId,
        });
        const count = await session.send('Runtime.callFunctionOn', {
            objectId: objects.objectId,
            functionDeclaration: 'function () { return this.length; }',
            returnByValue: true,
        });
        // Who counts holds what is counted until then.
        await session.send('Runtime.releaseObject', { objectId: objects.objectId });
        return count.result.value;
    };
    await drawAll(page);
    const kinds = ['HTMLCanvasElement', 'ResizeObserver'];
    const before = [await alive(kinds[0]), await alive(kinds[1])];
    for (let i = 0; i < 30; i++) await press(page, 'p');
    await drawAll(page);
    for (const [i, kind] of kinds.entries()) {
        // Of the run before the browser may hold what it showed last, and frees some of it late.
        const most = before[i] * 2.4;
        let now = await alive(kind);
        for (let tries = 0; now > most && tries < 100; tries++) {
            await page.evaluate(() => new Promise(requestAnimationFrame));
            now = await alive(kind);
        }
        assert.ok(now <= most, `${now} of ${kind} after ${before[i]}`);
    }
});

test('a section that cannot be built says so, and 200,000 snapshots are shown', async (t) => {
    const text = Array.from(
        { length: 200000 },
        (_, n) => `dev_idx = 0, path_idx = 0\nshare.inttime = ${n % 977}\n`,
    ).join('');
    const page = await open(t, report('long.html', write('long.txt', text)));
    await page.waitForSelector('#time canvas');
    assert.equal(await place(page), '#200000 of 200000');
    assert.equal(await figure(page, 'Exposure time'), String(199999 % 977));
    const broken = await open(t, emptyPage());
    await broken.evaluate(() => {
        const create = document.createElement.bind(document);
        document.createElement = (tag) => {
            if (tag === 'datalist') throw new Error('no list today');
            return create(tag);
        };
    });
    await drop(broken, { name: 'a.txt', content: many() });
    await broken.waitForSelector('.bar');
    assert.match((await texts(broken, '#time')).join(), /could not be drawn \(no list today\)/);
    assert.ok((await shownSections(broken)).includes('Statistics'));
});

test('an address leads back to the same view', async (t) => {
    const page = await show(
        t,
        { 'series.txt': many() },
        { fragment: '#n=7&a=3&only=changed&find=inttime&step=5-20' },
    );
    assert.equal(await place(page), 'A #3 · 2 s, B #7 · 6 s');
    assert.equal(await page.$eval('input[type=search]', (input) => input.value), 'inttime');
    assert.equal(await page.getAttribute('.tools button', 'aria-pressed'), 'true');
    await press(page, 'ArrowRight', 'o');
    await page.waitForFunction(() => window.location.hash === '#n=8&a=1.3&find=inttime&step=5-20');
    await page.evaluate(() => {
        window.location.hash = '#n=2';
    });
    await page.waitForFunction(() => document.querySelector('.place').textContent.includes('#2'));
});

test('what is dropped is added as runs, held against each other, and taken away', async (t) => {
    const text = (path, ...inttimes) =>
        inttimes.map((one) => `dev_idx = 0, path_idx = ${path}\nshare.inttime = ${one}\n`).join('');
    const page = await show(t, { 'both.txt': text(0, 11, 12, 13) + text(1, 22) + text(0, 14) });
    const runs = () => texts(page, '.run button:first-child');
    const shown = () => texts(page, '.run [aria-pressed=true]');
    assert.deepEqual(await runs(), [
        'both.txt · dev_idx 0, path_idx 04 snapshots',
        'both.txt · dev_idx 0, path_idx 11 snapshot',
    ]);
    assert.equal(await figure(page, 'Exposure time'), '14');
    await press(page, 'p');
    assert.equal(await figure(page, 'Exposure time'), '22');
    // Any snapshot of any run is A.
    await page.click('.run:first-child [aria-label^=compare]');
    await page.fill('.reference-line input', '1');
    await press(page);
    assert.match(await place(page), /^A both.*path_idx 0 · #2, B both.*path_idx 1 · #1$/);
    assert.equal(await figure(page, 'Exposure time'), '12 → 22');
    assert.deepEqual(await texts(page, '.differences tr'), [
        'shareinttime12 -> 22  (+10, +83.3 %)',
    ]);
    await page.waitForFunction(() => window.location.hash === '#run=2&n=1&a=1.2');

    // A text without a snapshot changes nothing and says why; a capture becomes one run more.
    await drop(page, { name: 'letter.txt', content: 'Dear all\n' });
    await page.waitForSelector('.notice');
    assert.match((await texts(page, '.notice')).join(), /letter\.txt: There is no snapshot/);
    assert.equal(await figure(page, 'Exposure time'), '12 → 22');
    await drop(page, { name: 'third.txt', content: text(0, 33) });
    await page.waitForFunction(() => document.querySelectorAll('.run').length === 3);
    assert.equal(await figure(page, 'Exposure time'), '12 → 22');
    assert.deepEqual(await shown(), ['A', 'both.txt · dev_idx 0, path_idx 11 snapshot']);

    await page.click('[aria-label="take both.txt · dev_idx 0, path_idx 1 away"]');
    await page.waitForFunction(() => document.querySelectorAll('.run').length === 2);
    // What is left are a run before and one after of the same path.
    assert.equal(await figure(page, 'Exposure time'), '14 → 33');
    for (let i = 0; i < 2; i++)
        await page.click('.run [aria-label^=take], .bar [aria-label^=take]');
    await page.waitForSelector('main.empty');
});

test('what could not be read is said, and never takes the rest with it', async (t) => {
    const text = 'dev_idx = 0, path_idx = 0\nshare.inttime = 5\n?? <b>what</b>\nshare.sys_gain = 7';
    const page = await show(t, { 'bad.txt': text, 'none.txt': 'nothing\n' });
    const notices = (await texts(page, '.notice')).join('\n');
    assert.match(notices, /none\.txt: /);
    assert.match(notices, /the snapshot ends in the middle/);
    assert.match(notices, /3 lines could not be read/);
    assert.match(notices, /bad\.txt:3.*\?\? <b>what<\/b>/);
    assert.equal(await figure(page, 'Exposure time'), '5');
    const empty = await open(t, emptyPage());
    await drop(empty, { name: 'none.txt', content: '' });
    await empty.waitForSelector('.notice');
    assert.match(await empty.innerText('main'), /none\.txt: There is no snapshot/);
});

test('names and values of a capture are text, whatever they are', async (t) => {
    const names = ['__proto__', 'constructor', 'toString', 'hasOwnProperty'];
    const snapshot = (n) =>
        [
            'dev_idx = 0, path_idx = 0',
            ...names.map((name) => `share.${name} = ${n}`),
            '=== cfg.__proto__ ===',
            ...names.map((name) => `${name} = <script>hacked=${n}</script>`),
            '<img src=x onerror=hacked=1> = 1',
            '',
        ].join('\n');
    const page = await show(t, { '<b>a</b>.txt': snapshot(1), ['__proto__']: snapshot(2) });
    await page.fill('input[type=search]', 'cfg');
    await page.waitForSelector('details.item[open]');
    const shown = await page.innerText('.list');
    for (const name of names) assert.ok(shown.includes(name), name);
    assert.ok(shown.includes('<script>hacked=2</script>'));
    assert.match((await texts(page, '.notice')).join(), /<img src=x onerror=hacked=1> = 1/);
    assert.equal(await page.$eval('h1', (title) => title.textContent), '<b>a</b>.txt, __proto__');
    assert.equal(await page.evaluate(() => window.hacked), undefined);
});

test('numbers of any size and curves that run backwards are drawn', async (t) => {
    const text = [
        'dev_idx = 0, path_idx = 0',
        '=== stat.lum ===',
        'Regional Luminance average:',
        ' 1, 2, 3,',
        ' nan, 18446744073709551615, -5,',
        '=== cfg.nr ===',
        ...[9, 5, 7].map((x, i) => `ma_y.lut_i[${i}] = ${x}`),
        ...[1, 2, 3].map((y, i) => `ma_y.lut_o[${i}] = ${y}`),
        '',
    ].join('\n');
    const page = await show(t, { 'odd.txt': text });
    await drawAll(page);
    assert.deepEqual(await texts(page, '.failed'), []);
    assert.match(await page.innerText('[data-title="Noise reduction"]'), /x does not ascend/);
});

test('nothing is wider than the window, wide or narrow', async (t) => {
    for (const width of [420, 800, 1920]) {
        const page = await show(
            t,
            { 'series.txt': many() },
            { width, fragment: '#n=9&a=2&step=3-8&zoom=2_30' },
        );
        await drawAll(page);
        await page.fill('input[type=search]', 'lut_i');
        await page.waitForSelector('details.item[open]');
        const widths = await page.evaluate(() => [
            document.documentElement.scrollWidth,
            document.documentElement.clientWidth,
        ]);
        assert.equal(widths[0], widths[1], `at ${width}`);
        await page.close();
    }
});

test('light and dark follow the system until one is chosen', async (t) => {
    const page = await show(t, { 'a.txt': one }, { colorScheme: 'dark' });
    const ground = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    const dark = await ground();
    await page.emulateMedia({ colorScheme: 'light' });
    await page.waitForSelector('html[data-theme=light]');
    const light = await ground();
    assert.notEqual(light, dark);
    await press(page, 't');
    assert.equal(await ground(), dark);
    // Paper is light, without what only a screen can use, and the screen is as before afterwards.
    await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
    assert.equal(await page.getAttribute('html', 'data-theme'), 'light');
    assert.equal(await page.isVisible('.tools'), false);
    const overflow = await page.$$eval(
        '.chart .uplot',
        (all) => all.filter((plot) => plot.clientWidth > plot.closest('.card').clientWidth).length,
    );
    assert.equal(overflow, 0);
    await page.evaluate(() => window.dispatchEvent(new Event('afterprint')));
    assert.equal(await ground(), dark);
    assert.equal(await page.isVisible('.tools'), true);
});
