// Measures pages in a browser. For each FILE.html one line: its name, the milliseconds until it has
// drawn itself, and those that a step to the next snapshot takes (medians of rounds in which the files
// take turns; 0 where there is none).
import { basename, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { launch } from '../tests/page/browser.mjs';

const ROUNDS = 7;
const STEPS = 10;
const median = (values) => values.sort((a, b) => a - b)[values.length >> 1] ?? 0;

/** Runs in the page before anything else: notes when its first content has been painted. */
function watchReady() {
    const painted = () => {
        const { port1, port2 } = new MessageChannel();
        port1.onmessage = () => {
            window.readyAt = performance.now();
        };
        requestAnimationFrame(() => port2.postMessage(null));
    };
    new MutationObserver((_, observer) => {
        if (!document.querySelector('main section')) return;
        observer.disconnect();
        painted();
    }).observe(document, { childList: true, subtree: true });
}

/** Runs in the page: the milliseconds of each of so many steps, from its frame's begin to its end. */
async function steps(count) {
    const times = [];
    for (let i = 0; i < count; i++) {
        const begun = new Promise((resolve) => {
            requestAnimationFrame(() => resolve(performance.now()));
        });
        document.body.dispatchEvent(
            new KeyboardEvent('keydown', { key: 'ArrowLeft', bubbles: true }),
        );
        const ended = new Promise((resolve) => {
            const { port1, port2 } = new MessageChannel();
            port1.onmessage = () => resolve(performance.now());
            requestAnimationFrame(() => port2.postMessage(null));
        });
        times.push((await ended) - (await begun));
    }
    return times;
}

/** Loads a page and steps through it: { ready, step: [...] }, the steps empty where there are none. */
async function measure(browser, file) {
    const page = await browser.newPage({ viewport: { width: 1280, height: 900 } });
    await page.addInitScript(watchReady);
    await page.goto(pathToFileURL(resolve(file)).href);
    await page.waitForFunction(() => window.readyAt);
    const ready = await page.evaluate(() => window.readyAt);
    await page.waitForTimeout(1000);
    const before = await page.evaluate(() => location.hash);
    const step = await page.evaluate(steps, STEPS);
    await page.waitForTimeout(500);
    const moved = before !== (await page.evaluate(() => location.hash));
    await page.close();
    return { ready, step: moved ? step : [] };
}

const browser = await launch();
const files = process.argv.slice(2);
const measured = files.map(() => []);
for (let round = 0; round < ROUNDS; round++)
    for (const [i, file] of files.entries()) measured[i].push(await measure(browser, file));
for (const [i, file] of files.entries()) {
    const ready = median(measured[i].map(({ ready }) => ready));
    const step = median(measured[i].flatMap(({ step }) => step));
    console.log(basename(file), ready.toFixed(0), step.toFixed(1));
}
await browser.close();
