// Measures `vordascope live` with a page in a browser, while a recording goes on at 25 snapshots a second.
//
//     node live.mjs VORDASCOPE RECORDING KEEP
//
// The ring of KEEP seconds is filled first, as fast as it goes. Lines of a name and a number each:
//     window, page       from a snapshot's last byte on the input until it, or a later one, shows:
//                        milliseconds, the 95th percentile; in a window, and in one that shows all
//     scope, tab         memory of the program and of the tab once the ring is full, KiB
//     scope-on, tab-on   the same when it has been filled RINGS times more
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { readFileSync } from 'node:fs';
import { launch } from '../tests/page/browser.mjs';

const [scope, recording, keep] = process.argv.slice(2);
const RATE = 25;
const SHOWN = 250;
const RINGS = 1;
const WINDOW = { width: 1280, height: 900 };

// Each is sent with the time of a recording that never ends, which its sum would not hold for.
const snapshots = readFileSync(recording, 'latin1')
    .split(/(?<=^; end\n)/m)
    .filter((text) => text.endsWith('; end\n'))
    .map((text) => text.replace(/^sum = .*\n/m, '').replace(/^missed = .*\n/m, ''));
const snapshot = (n) =>
    snapshots[n % snapshots.length]
        .replace(/^time = .*$/m, `time = ${(n / RATE).toFixed(2)}`)
        .replace(/^frame = .*$/m, `frame = ${n}`)
        .replace(/^added_to = .*$/m, `added_to = ${n - 1}`);

const program = spawn(scope, ['live', '--no-browser', '--keep', keep, '-'], {
    stdio: ['pipe', 'pipe', 'ignore'],
});
const [address] = await once(program.stdout, 'data');
const browser = await launch();
const page = await browser.newPage({ viewport: WINDOW });

let sent = 0;
async function feed(count) {
    for (const end = sent + count; sent < end; sent++)
        if (!program.stdin.write(snapshot(sent), 'latin1')) await once(program.stdin, 'drain');
}

/** Runs in the page: notes when which snapshot has been painted. */
function watch() {
    window.shown = [];
    const { port1, port2 } = new MessageChannel();
    port1.onmessage = () => {
        const place = document.querySelector('.snapshot-line .place').title;
        window.shown.push([Number(/snapshot (\d+)/.exec(place)[1]), Date.now()]);
    };
    new MutationObserver(() => port2.postMessage(null)).observe(document.body, {
        subtree: true,
        attributes: true,
        attributeFilter: ['title'],
    });
}

/** Waits until the page shows what was sent last. */
const settled = () =>
    page.waitForFunction(
        (wanted) =>
            document.querySelector('.snapshot-line .place')?.title.includes(`snapshot ${wanted},`),
        sent,
        { timeout: 600_000 },
    );

async function latency() {
    await settled();
    await page.evaluate(watch);
    const times = [];
    const begun = Date.now();
    for (let i = 0; i < SHOWN; i++) {
        const pause = begun + (i * 1000) / RATE - Date.now();
        if (pause > 0) await new Promise((resolve) => setTimeout(resolve, pause));
        await feed(1);
        times.push([sent, Date.now()]);
    }
    await settled();
    await page.evaluate(() => new Promise(requestAnimationFrame));
    const shown = await page.evaluate(() => window.shown);
    const waits = times.map(([n, at]) => shown.find(([newest]) => newest >= n)[1] - at);
    return waits.sort((p, q) => p - q)[Math.floor(0.95 * (waits.length - 1))];
}

/** What a process has of memory that is its own, KiB. */
const memoryOf = (pid) =>
    Number(/^RssAnon:\s*(\d+)/m.exec(readFileSync(`/proc/${pid}/status`, 'latin1'))[1]);

async function memory() {
    await settled();
    const own = await page.context().newCDPSession(page);
    await own.send('HeapProfiler.collectGarbage');
    const session = await browser.newBrowserCDPSession();
    const { processInfo } = await session.send('SystemInfo.getProcessInfo');
    const tabs = processInfo.filter(({ type }) => type === 'renderer');
    return [memoryOf(program.pid), Math.max(...tabs.map(({ id }) => memoryOf(id)))];
}

const tell = (name, number) => console.log(name, number);
const ring = Number(keep) * RATE;
await feed(ring);
await page.goto(address.toString().trim());
tell('window', await latency());
const [own, tab] = await memory();
tell('scope', own);
tell('tab', tab);
await feed(RINGS * ring);
const [ownOn, tabOn] = await memory();
tell('scope-on', ownOn);
tell('tab-on', tabOn);
const height = await page.evaluate(() => document.documentElement.scrollHeight);
await page.setViewportSize({ ...WINDOW, height });
tell('page', await latency());
await browser.close();
program.kill();
