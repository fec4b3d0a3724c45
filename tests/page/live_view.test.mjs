// The page of `vordascope live` in a browser, while a camera goes on.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import { connect, createServer } from 'node:net';
import { after, test } from 'node:test';
import { launch } from './browser.mjs';
import { feed, follow, live, skip, snapshot } from './following.mjs';
import { downloaded, open, read, report, saved, write } from './harness.mjs';

let browser;
after(() => browser?.close());

/** A page on an address; what it says on the console fails the test. */
async function visit(test, address) {
    browser ??= await launch();
    const context = await browser.newContext({ acceptDownloads: true });
    context.setDefaultTimeout(120_000);
    const page = await context.newPage();
    const heard = [];
    page.on('console', (message) => heard.push(message.text()));
    page.on('pageerror', (error) => heard.push(error.stack));
    test.after(async () => {
        await context.close();
        assert.deepEqual(
            heard.filter((text) => !/net::ERR_/.test(text)),
            [],
        );
    });
    await page.goto(address.href);
    return page;
}

const place = (page) => page.locator('.snapshot-line .place').first().textContent();
const state = (page) => page.locator('.live').getAttribute('data-state');
const showing = (page, text) =>
    page.waitForFunction(
        (wanted) => document.querySelector('.snapshot-line .place')?.textContent.startsWith(wanted),
        text,
    );

/** The file that Save gives. */
async function savedFrom(page) {
    const button = page.getByRole('button', { name: 'Save' });
    return (await downloaded(page, () => button.click())).path;
}

/** Resolves when the input of a page has ended. */
const ended = (page) =>
    page.waitForFunction(
        () => document.querySelector('.live')?.dataset.state === 'the input has ended',
    );

/** Snapshots from..to of an exposure that climbs, 25 a second, with a grid in each. */
const climb = (from, to) =>
    Array.from({ length: to - from }, (_, i) =>
        snapshot(
            ((from + i) * 0.04).toFixed(2),
            1000 + from + i,
            `share.sys_gain = 1024\nshare.grid:\n${`${from + i}, 2, 3, 4, 5, 6, 7\n`.repeat(5)}`,
        ),
    ).join('');

test('it goes along, holds while somebody looks, and goes on', { skip }, async (test) => {
    const program = await live(test, '--keep', '10', '-');
    const page = await visit(test, program.address);
    await page.waitForSelector('.live .age');
    assert.match(await page.locator('.live .age').textContent(), /no snapshot yet/);
    await feed(program, climb(0, 20));
    await showing(page, '#20 of 20');
    assert.equal(await state(page), 'live');
    assert.equal(await page.locator('.figure .value').first().textContent(), '1019');

    // Held: what arrives shows in the age alone; readings work.
    await page.keyboard.press('ArrowLeft');
    await showing(page, '#19 of 20');
    await feed(program, climb(20, 40));
    await page.waitForFunction(() => document.querySelector('.live').dataset.state === 'held');
    assert.match(await place(page), /^#19 of 20 /);
    await page.keyboard.press('End');
    await showing(page, '#40 of 40');
    await page.keyboard.press('+'); // zoomed
    await feed(program, climb(40, 60));
    await page.waitForFunction(() => document.querySelector('.live').dataset.state === 'held');
    assert.match(await place(page), /^#40 of 40 /);
    await page.getByRole('button', { name: 'Back to now' }).click();
    await showing(page, '#60 of 60');
    const chart = page.locator('.card[data-title="Exposure time"] .where');
    await page.waitForFunction(
        () =>
            document.querySelector('.card[data-title="Exposure time"] .where').textContent ===
            '#60 · 2.36 s ·',
    );
    assert.equal(await chart.textContent(), '#60 · 2.36 s ·');

    // A mark, in this page and in another one; it leads there.
    const other = await visit(test, program.address);
    await showing(other, '#60 of 60');
    page.once('dialog', (dialog) => dialog.accept('lamp on'));
    await page.keyboard.press('m');
    for (const one of [page, other]) await one.getByRole('button', { name: 'lamp on' }).waitFor();
    await feed(program, climb(60, 100));
    await showing(other, '#100 of 100');
    await other.getByRole('button', { name: 'lamp on' }).click();
    await showing(other, '#60 of 100');
    assert.equal(await state(other), 'held');

    // The ring: the axis begins where it does, and what is forgotten moves nothing else.
    await feed(program, climb(100, 600));
    await page.waitForFunction(() => {
        const [, n, of] = /#(\d+) of (\d+)/.exec(
            document.querySelector('.snapshot-line .place').textContent,
        );
        const newest = document.querySelector('.figure .value').textContent;
        return newest === '1599' && n === of && Number(of) < 270;
    });
    const fresh = await visit(test, program.address);
    await showing(fresh, await place(page));
    assert.match(await other.locator('.figure .value').first().textContent(), /^1059$/);

    // The end: an ordinary page, which saves what there was.
    program.child.kill();
    await once(program.child, 'exit');
    await ended(page);
    page.once('dialog', (dialog) => dialog.dismiss());
    const copy = await open(test, await savedFrom(page));
    await showing(copy, (await place(page)).slice(0, 8));
    assert.equal(await copy.locator('.figure .value').first().textContent(), '1599');
    assert.equal(await copy.locator('.live').count(), 0);
});

/** A page without scripts: its table rows and texts. */
async function plainly(test, file) {
    const page = await open(test, file, { javaScriptEnabled: false });
    const rows = await page.$$eval('main tr', (all) =>
        all.map((row) => [...row.children].map((cell) => cell.textContent.trim())),
    );
    return { rows, said: await page.locator('main > :not(table)').allTextContents() };
}

test('saved, it shows without scripts what a report does', { skip }, async (test) => {
    const hostile = 'share.color_temp = <b>&amp;\nshare.grid:\n1, 2\n3, 4\n';
    const one = snapshot(1, 800) + snapshot(2, 900, 'share.fps = 25.00\n');
    const texts = [
        one + snapshot(3, 1200, hostile),
        one.replaceAll('path_idx = 1', 'path_idx = 0') + snapshot(5, 700, hostile),
        snapshot(1, 800, hostile),
    ];
    for (const [i, text] of texts.entries()) {
        const program = await live(test, '-');
        const page = await visit(test, program.address);
        await feed(program, text);
        program.child.stdin.end();
        await ended(page);
        // A tolerance that is typed holds for the page alone.
        await page.locator('input[type=search]').fill('abs=1000');
        const file = await savedFrom(page);
        const copy = await plainly(test, file);
        const whole = await plainly(test, report('r.html', write('standard input', text)));
        const named = (rows) => rows.map((row) => row.map((cell) => cell.replace(/^.*\//, '')));
        assert.deepEqual(named(copy.rows), named(whole.rows));
        assert.deepEqual(copy.said, whole.said);
        assert.equal(copy.rows.length, [6, 8, 3][i], JSON.stringify(copy.rows));
        assert.doesNotMatch(read(file).toString(), /<b>&/);
        // With scripts the page itself is in that place.
        const shown = await open(test, file);
        await shown.waitForSelector('.bar');
        assert.equal(await shown.locator('main h1').count(), 0);
    }
});

test('what goes beyond the scales that were there at first shows', { skip }, async (test) => {
    const program = await live(test, '-');
    const page = await visit(test, program.address);
    const grids = (level, bin) =>
        `=== stat.lum ===\nRegional Luminance average:\n7, 7, 7\n7, 7, ${level}\n` +
        `=== stat.mv ===\nmv histogram:\n<# 0> (0, 0, 5)\n<# 1> (${bin}, 0, 7)\n`;
    await feed(program, snapshot(1, 800));
    await feed(program, snapshot(2, 800, grids(7, 1)));
    const map = page.locator('[data-title="Luminance by region"]');
    await map.getByText('average: all 7').waitFor();
    await page.locator('[data-title="Motion vectors"] canvas').waitFor();
    await feed(program, snapshot(3, 800, grids(7000, 50)));
    await map.locator('.scale', { hasText: '7000' }).waitFor();
    // No disc lies outside of what the axes span.
    const svg = (await saved(page, 'Motion vectors', 'SVG')).bytes.toString();
    assert.match(svg, />40<\/text>/);
});

test('everything is held against a reference; no other page gets in', { skip }, async (test) => {
    const good = write('good.txt', snapshot(1, 500, 'share.sys_gain = 1024\n'));
    const program = await live(test, '--reference', good, '-');
    const page = await visit(test, program.address);
    await feed(program, climb(0, 5));
    await page.waitForFunction(
        () => document.querySelector('.figure .value')?.textContent === '1004',
    );
    assert.equal(await page.locator('.figure .before').first().textContent(), '500 → ');
    assert.equal(await state(page), 'live');

    // What came out of a rest of seconds stands first, before what differs all along and what never
    // rests; with time it goes down to those that rest.
    const moving = (from, to, gain) =>
        Array.from({ length: to - from }, (_, i) => {
            const more = `share.offset = 3\nshare.sys_gain = ${gain}\n`;
            return snapshot(((from + i) * 0.04).toFixed(2), 1000 + from + i, more);
        }).join('');
    const rows = (first) =>
        page.waitForFunction((wanted) => {
            const all = document.querySelectorAll('.differences tr');
            const texts = [...all].map((row) => row.className.trim() + row.lastChild.textContent);
            return texts.join('; ').startsWith(wanted);
        }, first);
    await feed(program, moving(5, 120, 1024) + moving(120, 130, 2048));
    await rows('first moved1024 -> 2048  (+1024, +100 %); firstonly in B: 3; first500 -> 1129');
    assert.match(
        await page.locator('#differences .summary').textContent(),
        /^3 of 4 fields differ; 1 just moved\.$/,
    );
    await feed(program, moving(130, 190, 2048));
    await rows('first1024 -> 2048  (+1024, +100 %); only in B: 3; first500 -> 1189');

    // The same browser, from another origin.
    const stranger = await (await browser.newContext()).newPage();
    await stranger.goto('data:text/html,stranger');
    const got = await stranger.evaluate(async (address) => {
        const tried = [];
        for (const route of ['', 'events', 'mark?text=evil']) {
            await fetch(address + route).then(
                () => tried.push('read'),
                () => tried.push('blocked'),
            );
        }
        await fetch(`${address}mark?text=evil`, { mode: 'no-cors' }).catch(() => {});
        await new Promise((resolve) => {
            const frame = document.createElement('iframe');
            frame.src = address;
            frame.onload = resolve;
            document.body.append(frame);
        });
        return tried;
    }, program.address.href);
    assert.deepEqual(got, ['blocked', 'blocked', 'blocked']);
    await stranger.context().close();
    await feed(program, climb(190, 191));
    await page.waitForFunction(
        () => document.querySelector('.figure .value')?.textContent === '1190',
    );
    assert.equal(await page.getByRole('button', { name: 'evil' }).count(), 0);
});

test('labels say whose camera it is, as they change, and in what is saved', {
    skip,
}, async (test) => {
    const program = await live(test, '--label', 'host=cam7', '--label', 'lamp=süd', '-');
    const page = await visit(test, program.address);
    await feed(program, climb(0, 3));
    const labels = page.locator('.labels summary');
    await labels.waitFor();
    assert.equal(await labels.textContent(), 'host cam7lamp süd');
    assert.equal(await page.locator('h1').textContent(), 'cam7');
    // The camera's own hold, from there on.
    await feed(program, `label lamp = off\n${climb(3, 5)}mark = süd\n${climb(5, 6)}`);
    await showing(page, '#6 of 6');
    assert.equal(await labels.textContent(), 'host cam7lamp off');
    await page.getByRole('button', { name: 'süd', exact: true }).waitFor();

    const copy = await open(test, await savedFrom(page));
    await showing(copy, '#6 of 6');
    assert.equal(await copy.locator('.labels summary').textContent(), 'host cam7lamp off');
});

/** Follows so many snapshots of the input as they are taken, whatever becomes of other pages. */
async function takenUpTo({ address }, count) {
    const page = await follow(address);
    for (let seen = 0; seen < count; ) {
        const { name, data } = await page.next();
        seen = name === 'state' ? (data.model.runs[0]?.count ?? 0) : seen + data.add.length;
    }
    page.leave();
}

test('a browser that sleeps and wakes has all that came meanwhile', { skip }, async (test) => {
    const own = await launch();
    test.after(() => own.close());
    const program = await live(test, '--keep', '1000', '-');
    const page = await own.newPage();
    await page.goto(program.address.href);
    await feed(program, climb(0, 20));
    await showing(page, '#20 of 20');

    const session = await own.newBrowserCDPSession();
    const { processInfo } = await session.send('SystemInfo.getProcessInfo');
    const asleep = processInfo.filter(({ type }) => !['browser', 'GPU'].includes(type));
    const send = (signal) => {
        for (const { id } of asleep) process.kill(id, signal);
    };
    assert.ok(asleep.length > 1, 'a network service and a tab');
    send('SIGSTOP');
    try {
        // More than the sockets between the two hold.
        const more = `share.grid:\n${`${'7, '.repeat(400)}8\n`.repeat(20)}`;
        const grid = (n) => snapshot((n * 0.04).toFixed(2), 1000 + n, more.replace('7', String(n)));
        for (let n = 20; n < 1020; n++) await feed(program, grid(n));
        await takenUpTo(program, 1020);
    } finally {
        send('SIGCONT');
    }
    await showing(page, '#1020 of 1020');
    assert.equal(await page.locator('.figure .value').first().textContent(), '2019');
    assert.equal(await state(page), 'live');
    await page.keyboard.press('Home');
    await showing(page, '#1 of 1020');
    assert.equal(await page.locator('.figure .value').first().textContent(), '1000');
});

/** Carries connections to a program, under another port, until they are cut. */
async function forwarder(test, { port: own }) {
    const ends = new Set();
    let port = 0;
    const server = createServer((near) => {
        const far = connect(own, '127.0.0.1');
        for (const [end, other] of [
            [near, far],
            [far, near],
        ]) {
            ends.add(end);
            end.on('error', () => {}).on('close', () => other.destroy());
        }
        near.on('data', (data) => {
            far.write(data.toString('latin1').replaceAll(`:${port}`, `:${own}`), 'latin1');
        });
        far.pipe(near);
    });
    const accept = () => once(server.listen(port, '127.0.0.1'), 'listening');
    const cut = () => {
        server.close();
        for (const end of ends) end.destroy();
        ends.clear();
    };
    test.after(cut);
    await accept();
    port = server.address().port;
    return { accept, cut, port };
}

test('a forwarder that is cut and comes back leaves nothing out', { skip }, async (test) => {
    const program = await live(test, '-');
    const between = await forwarder(test, program.address);
    const address = new URL(program.address);
    address.port = between.port;
    const [page, held] = [await visit(test, address), await visit(test, address)];
    await feed(program, climb(0, 20));
    for (const one of [page, held]) await showing(one, '#20 of 20');
    await held.keyboard.press('ArrowLeft');
    await showing(held, '#19 of 20');

    between.cut();
    for (const one of [page, held])
        await one.waitForFunction(
            () => document.querySelector('.live').dataset.state === 'the connection is lost',
        );
    assert.equal(await place(page), '#20 of 20 · 0.76 s');
    await feed(program, climb(20, 40));
    await fetch(new URL('mark?text=meanwhile', program.address));
    await takenUpTo(program, 40);
    await between.accept();
    await showing(page, '#40 of 40');
    await page.getByRole('button', { name: 'meanwhile' }).waitFor();
    await held.waitForFunction(() => document.querySelector('.live').dataset.state === 'held');
    assert.equal(await place(held), '#19 of 20 · 0.72 s');
    await feed(program, climb(40, 45));
    await showing(page, '#45 of 45');
    await held.keyboard.press('End');
    await showing(held, '#45 of 45');
});
