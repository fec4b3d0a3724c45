// What the tests of the page share: captures, reports of them, and a browser that tells on the page.
import assert from 'node:assert/strict';
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { after } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { launch } from './browser.mjs';

const source = fileURLToPath(new URL('../..', import.meta.url));
const build = resolve(source, process.env.VORDA_BUILD ?? 'build/release');

/** A folder of this test file's own. */
export const scratch = mkdtempSync(join(tmpdir(), 'vordascope-page-'));
after(() => rmSync(scratch, { recursive: true }));

/** The file of a capture that this repository keeps, such as 'tests/golden/distinct.txt'. */
export const kept = (name) => join(source, name);

/** Writes a capture into the folder of this test file; returns its path. */
export function write(name, content) {
    const path = join(scratch, name);
    writeFileSync(path, content);
    return path;
}

/** Runs vordascope; returns { status, stdout, stderr }, the output as bytes. */
export function vordascope(...args) {
    const { status, stdout, stderr } = spawnSync(built('vordascope'), args, {
        cwd: scratch,
        maxBuffer: 1 << 28,
    });
    return { status, stdout, stderr: stderr.toString() };
}

/** Where the build put a file. */
export const built = (name) =>
    execFileSync('find', [build, '-name', name, '-type', 'f', '-print', '-quit']).toString().trim();

/** What vorda prints of a scene, with the sr-scene options and the vorda arguments given. */
export function capture({ scene = [], vorda = ['all'] } = {}) {
    const region = join(scratch, 'scene.sr');
    execFileSync(built('sr-scene'), [...scene, region]);
    return execFileSync(built('sr-run'), ['--region', region, '--', built('vorda'), ...vorda]);
}

/** So many snapshots of a camera at work, each with its time. */
export function series(count) {
    const region = join(scratch, 'live.sr');
    execFileSync(built('sr-scene'), [region]);
    const camera = spawn(built('sr-scene'), ['--live', '--fps', '0', region]);
    const record = `for i in $(seq ${count}); do echo "time = $i"; "$@"; done`;
    const vorda = [built('sr-run'), '--region', region, '--', built('vorda'), 'all'];
    try {
        return execFileSync('sh', ['-c', record, 'sh', ...vorda], { maxBuffer: 1 << 28 });
    } finally {
        camera.kill();
    }
}

/** Makes a page of captures, even where there is something to complain of; returns its path. */
export function report(name, ...captures) {
    const page = join(scratch, name);
    rmSync(page, { force: true });
    vordascope('report', '-o', page, ...captures);
    return page;
}

/** A data block of a page, such as the captures: base64 of what was deflated. */
export const blockOf = (html, id) =>
    new RegExp(`<script type="application/octet-stream" id="${id}">([^<]*)</script>`).exec(html)[1];

/** The empty page. */
export const emptyPage = () => built('vordascope.html');

let browser;
after(() => browser?.close());

/**
 * Opens a page from file://, or an address. Of `options`, `expected` matches what it may say on the
 * console, the others are those of a browser's window. When the test ends, the page must have asked for nothing but its own
 * file and have said nothing on the console.
 * @returns playwright's page
 */
export async function open(test, file, options = {}) {
    const { width = 1280, height = 900, expected = /^$/, ...more } = options;
    browser ??= await launch();
    const context = await browser.newContext({
        viewport: { width, height },
        colorScheme: 'light',
        ...more,
    });
    context.setDefaultTimeout(120_000); // only a fault reaches it
    const page = await context.newPage();
    const url = file.startsWith('http:') ? file : pathToFileURL(file).href;
    const heard = [];
    page.on('console', (message) => {
        if (!expected.test(message.text())) heard.push(`console: ${message.text()}`);
    });
    page.on('pageerror', (error) => heard.push(`error: ${error.stack}`));
    page.on('request', (request) => {
        if (request.url() !== url) heard.push(`request: ${request.url()}`);
    });
    test.after(async () => {
        await context.close();
        assert.deepEqual(heard, []);
    });
    await page.goto(url);
    await page.waitForSelector('#page > *');
    return page;
}

/**
 * Opens the empty page and drops captures onto it, given by name; `fragment` of the options is the view
 * that it begins with, the others are those of open().
 */
export async function show(t, captures, { fragment, ...options } = {}) {
    const page = await open(t, emptyPage(), options);
    if (fragment) await page.evaluate((hash) => window.location.replace(hash), fragment);
    const files = Object.entries(captures).map(([name, content]) => ({ name, content }));
    await drop(page, ...files);
    await page.waitForSelector('.bar');
    return page;
}

/** Drops files onto a page, as { name, content } each. */
export async function drop(page, ...files) {
    const transfer = await page.evaluateHandle(
        (files) => {
            const transfer = new DataTransfer();
            for (const { name, base64 } of files) {
                const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
                transfer.items.add(new File([bytes], name));
            }
            return transfer;
        },
        files.map(({ name, content }) => ({
            name,
            base64: Buffer.from(content).toString('base64'),
        })),
    );
    await page.dispatchEvent('body', 'drop', { dataTransfer: transfer });
}

/** What something done on a page saves, as { name, path }. */
export async function downloaded(page, act) {
    const [download] = await Promise.all([page.waitForEvent('download'), act()]);
    const name = download.suggestedFilename();
    const path = join(scratch, name);
    await download.saveAs(path);
    return { name, path };
}

/** What the choice of a card saves, such as its SVG: { name, bytes }. */
export async function saved(page, title, way) {
    const choice = page.locator(`[data-title="${title}"] select.save`).first();
    const { name, path } = await downloaded(page, () => choice.selectOption({ label: way }));
    return { name, bytes: readFileSync(path) };
}

export const read = (path) => readFileSync(path);
