// What leaves the page and what it says of time: playing, progress, charts and numbers as files.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { drop, emptyPage, open } from './harness.mjs';

/** Snapshots of one path: of each its lines, below what is known of its time. */
const recording = (snapshots) =>
    snapshots
        .flatMap(({ head = [], lines }) => [...head, 'dev_idx = 0, path_idx = 0', ...lines, ''])
        .join('\n');

async function show(t, content, options) {
    const page = await open(t, emptyPage(), options);
    await drop(page, { name: 'capture.txt', content });
    await page.waitForSelector('.bar');
    return page;
}

const place = (page) => page.textContent('.snapshot-line .place');

test('a recording plays at its own speed, slower, and frame by frame', async (t) => {
    // One pause in it lasts 5 seconds.
    const times = Array.from({ length: 50 }, (_, n) => 7 + n * 0.04 + (n < 40 ? 0 : 5));
    const timed = recording(
        times.map((time, n) => ({ head: [`time = ${time}`], lines: [`share.inttime = ${n}`] })),
    );
    const page = await show(t, timed);
    await page.clock.install({ time: 0 });
    await page.clock.pauseAt(1000);
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
    const other = await show(t, untimed);
    await other.clock.install({ time: 0 });
    await other.clock.pauseAt(1000);
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
    await page.waitForSelector('.progress');
    assert.match(await page.textContent('.progress'), /^Reading large\.txt: \d+ %$/);
    await page.waitForSelector('.bar');
    const { seen, frames } = await page.evaluate(() => ({
        seen: window.seen,
        frames: window.frames,
    }));
    assert.ok(new Set(seen).size >= 4 && frames >= 4, `${frames} frames: ${seen}`);
    assert.deepEqual(
        seen,
        seen.toSorted((p, q) => p - q),
    );
    assert.equal(await page.$('.progress'), null);
});
