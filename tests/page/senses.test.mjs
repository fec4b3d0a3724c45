// The page for every eye, hand and ear: contrast, names, keys.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { cssOf, inkOn, sequential } from '../../utils/host/vordascope/page/src/colours.js';
import { capture, drop, emptyPage, open, show } from './harness.mjs';

const one = capture().toString('latin1');

/** The capture with every other number so much larger. */
function changed(by) {
    let i = 0;
    return one.replace(/ = (\d+)$/gm, (text, value) =>
        i++ % 2 ? ` = ${Number(value) + by}` : text,
    );
}

/** Forty snapshots in which much goes up. */
const many = Array.from({ length: 40 }, (_, i) => `time = ${i}\n${changed(i)}`).join('');

/** A page on which everything shows that can: a comparison, a measurement, notices, labels, open items. */
async function busyPage(t, options) {
    const page = await open(t, emptyPage(), options);
    await page.evaluate(() =>
        window.location.replace('#run=1&n=30&a=1.3&step=10-35&add=stat.lum.avg'),
    );
    const text = `label host = cam1\n${many}oops\n`;
    await drop(page, { name: 'a.txt', content: text }, { name: 'b.txt', content: text });
    await page.waitForSelector('.run:first-child button:first-child[aria-pressed=true]');
    await page.evaluate(() => {
        for (const one of document.querySelectorAll('details')) one.open = true;
        window.dispatchEvent(new Event('beforeprint'));
        window.dispatchEvent(new Event('afterprint'));
    });
    await page.waitForSelector('.fields tr');
    return page;
}

/** Texts whose contrast with what is behind them is less than 4.5:1, as "ratio: text (class)". */
const faint = () => {
    const channels = (colour) => {
        const [r, g, b, a = 1] = colour.match(/[\d.]+/g).map(Number);
        return [r, g, b, a];
    };
    const over = ([r, g, b, a], under) =>
        [r, g, b].map((channel, i) => channel * a + under[i] * (1 - a));
    const behind = (element) => {
        if (!element) return [255, 255, 255];
        const colour = channels(getComputedStyle(element).backgroundColor);
        return colour[3] === 1 ? colour.slice(0, 3) : over(colour, behind(element.parentElement));
    };
    const opacity = (element) =>
        element ? Number(getComputedStyle(element).opacity) * opacity(element.parentElement) : 1;
    const luminance = (rgb) => {
        const [r, g, b] = rgb.map((channel) => {
            const c = channel / 255;
            return c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const ratio = (ink, paper) => {
        const [p, q] = [luminance(ink), luminance(paper)].sort((a, b) => b - a);
        return (p + 0.05) / (q + 0.05);
    };
    const found = new Set();
    let looked = 0;
    const look = (element, style, text) => {
        const [r, g, b, a] = channels(style.color);
        const paper = behind(element);
        const part = a * opacity(element);
        const contrast = ratio(over([r, g, b, part], paper), paper);
        looked += 1;
        if (contrast < 4.5)
            found.add(`${contrast.toFixed(2)}: ${text.slice(0, 30)} (${element.className})`);
    };
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
        const { parentElement: element, textContent: text } = walker.currentNode;
        if (/^(SCRIPT|STYLE)$/.test(element.tagName) || !text.trim()) continue;
        if (element.checkVisibility({ visibilityProperty: true }))
            look(element, getComputedStyle(element), text);
    }
    for (const element of document.body.querySelectorAll('*')) {
        for (const pseudo of ['::before', '::after']) {
            const style = getComputedStyle(element, pseudo);
            if (/^"[^"]*\S/.test(style.content) && element.checkVisibility())
                look(element, style, style.content);
        }
        if (element.placeholder)
            look(element, getComputedStyle(element, '::placeholder'), element.placeholder);
    }
    return { found: [...found], looked };
};

test('every text has contrast, in both themes', async (t) => {
    for (const colorScheme of ['light', 'dark']) {
        const page = await busyPage(t, { colorScheme });
        const shown = await page.evaluate(faint);
        assert.deepEqual(shown.found, [], colorScheme);
        assert.ok(shown.looked > 3000, String(shown.looked));
        await page.keyboard.press('?');
        await page.waitForSelector('dialog[open]');
        assert.deepEqual((await page.evaluate(faint)).found, [], colorScheme);
        const empty = await open(t, emptyPage(), { colorScheme });
        assert.deepEqual((await empty.evaluate(faint)).found, [], colorScheme);
    }
});

test('numbers on colours can be read', () => {
    const light = ([r, g, b]) =>
        [r, g, b].reduce((sum, channel, i) => {
            const c = channel / 255;
            const linear = c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
            return sum + linear * [0.2126, 0.7152, 0.0722][i];
        }, 0.05);
    const contrast = (rgb) => {
        const ink = inkOn(rgb) === '#000' ? 0.05 : 1.05;
        return Math.max(ink, light(rgb)) / Math.min(ink, light(rgb));
    };
    const steps = Array.from({ length: 18 }, (_, i) => i * 15);
    const colours = steps.flatMap((r) => steps.flatMap((g) => steps.map((b) => [r, g, b])));
    const scale = Array.from({ length: 256 }, (_, i) => sequential(i / 255));
    const hard = [...colours, ...scale].filter((rgb) => contrast(rgb) < 4.5).map(cssOf);
    assert.deepEqual(hard, []);
});

/** What assistive technology is told of the page: role and name of each node. */
async function spoken(page) {
    const session = await page.context().newCDPSession(page);
    const { nodes } = await session.send('Accessibility.getFullAXTree');
    return nodes
        .filter(({ ignored }) => !ignored)
        .map(({ role, name }) => ({ role: role.value, name: name?.value ?? '' }));
}

test('whatever one can use has a name in words', async (t) => {
    const page = await busyPage(t);
    const usable = (await spoken(page)).filter(({ role }) =>
        /^(button|slider|combobox|searchbox|checkbox|link|image|img|application|DisclosureTriangle)$/.test(
            role,
        ),
    );
    assert.ok(usable.length > 100, String(usable.length));
    const names = usable.filter(({ name }) => !/\p{L}/u.test(name));
    assert.deepEqual(names, []);
    for (const name of ['play', 'exchange A and B', 'compare with a.txt'])
        assert.ok(usable.some((one) => one.role === 'button' && one.name === name, name));
});

test('nothing moves by itself for whom that disturbs; keys go on where a link leads', async (t) => {
    const page = await busyPage(t);
    await page.emulateMedia({ reducedMotion: 'reduce' });
    await page.evaluate(() => window.scrollTo(0, 0));
    const link = page.locator('nav button', { hasText: 'All fields' });
    await link.focus();
    await page.keyboard.press('Enter');
    // Where it leads is reached at once, before another frame.
    const top = await page.$eval('#fields', (one) => one.getBoundingClientRect().top);
    assert.ok(top < 300, String(top));
    assert.equal(await page.evaluate(() => document.getAnimations().length), 0);
    await page.keyboard.press('Tab');
    assert.ok(await page.evaluate(() => document.activeElement.closest('#fields') !== null));
});

/** How many sheets of A4 a page prints. */
async function sheets(page) {
    const pdf = await page.pdf({ format: 'A4', preferCSSPageSize: true });
    return pdf.toString('latin1').match(/\/Type\s*\/Page\b/g).length;
}

test('it prints on six sheets: the figures and what differs, or the cards', async (t) => {
    // A comparison of many fields, one of long texts, a recording with courses, a capture alone.
    const long = (c) =>
        `dev_idx = 0, path_idx = 0\n[A]\n${Array.from({ length: 900 }, (_, i) => `k${i} = "${c.repeat(400)}"\n`).join('')}`;
    const printed = [[one, changed(7)], [long('x'), long('y')], [many], [one]];
    for (const [i, captures] of printed.entries()) {
        const page = await show(t, captures);
        const count = await sheets(page);
        assert.ok(count > 1 && count <= 6, `${count} sheets of ${i}`);
        // What is printed, as it is laid out for that.
        await page.evaluate(() => window.dispatchEvent(new Event('beforeprint')));
        const shown = (selector) =>
            page.$$eval(selector, (all) => all.filter((one) => one.checkVisibility()).length);
        assert.equal((await shown('.figure')) > 0, i !== 1, `figures of ${i}`);
        assert.equal((await shown('.courses .card')) > 0, i === 2);
        assert.equal((await shown('.cards .card')) > 9, i > 1);
        const rows = await shown('.differences tr');
        assert.equal(rows > 100, i < 2, String(rows));
        // What has no room is told.
        const left = (await page.locator('.differences tr').count()) - rows;
        if (left > 0) {
            const note = await page.locator('.paper-note').textContent();
            assert.equal(note, `${left} more stand in the page alone.`);
        }
        await page.evaluate(() => window.dispatchEvent(new Event('afterprint')));
        assert.equal(await page.locator('.paper-note, .off-paper').count(), 0);
    }
});

test('in a narrow window differences stand in the flow of the page', async (t) => {
    const page = await busyPage(t, { width: 400 });
    const scrollers = await page.$$eval('#differences, #differences *', (all) =>
        all
            .filter((one) => one.checkVisibility())
            .filter((one) => one.scrollWidth > one.clientWidth + 1 && one.clientWidth > 0)
            .filter((one) => /auto|scroll|hidden/.test(getComputedStyle(one).overflow))
            .map((one) => one.outerHTML.slice(0, 80)),
    );
    assert.deepEqual(scrollers, []);
    const [list, within] = await page.$eval('#differences .wide', (one) => [
        one.clientHeight,
        one.scrollHeight,
    ]);
    assert.ok(list > 1000 && list === within, `${list} of ${within}`);
    // The name above, the difference below it, both within the window.
    const rows = await page.$$eval('.differences tr', (all) =>
        all.map((row) =>
            [...row.querySelectorAll('td')].map((cell) => {
                const { left, right, top } = cell.getBoundingClientRect();
                return { left, right, top };
            }),
        ),
    );
    for (const [key, what] of rows) {
        assert.ok(key.left >= 0 && what.right <= 400);
        assert.ok(what.top > key.top);
    }
});

test('lines are told apart by their dashes too, and legends keep their colours', async (t) => {
    const page = await show(t, { 'a.txt': many });
    await page.evaluate(() => {
        window.dispatchEvent(new Event('beforeprint'));
        window.dispatchEvent(new Event('afterprint'));
    });
    const legends = () =>
        page.$$eval('.legend', (all) =>
            all
                .map((legend) => [...legend.querySelectorAll('.swatch line')])
                .filter((lines) => lines.length > 1)
                .map((lines) => lines.map((line) => getComputedStyle(line)))
                .map((lines) => lines.map(({ stroke, strokeDasharray: dash }) => [stroke, dash])),
        );
    const shown = await legends();
    assert.ok(shown.length > 5, String(shown.length));
    for (const lines of shown.filter(({ length }) => length <= 11))
        assert.equal(new Set(lines.map(([, dash]) => dash)).size, lines.length, String(lines));
    await page.emulateMedia({ forcedColors: 'active' });
    assert.deepEqual(await legends(), shown);
});

test('each drawing has its numbers as a table', async (t) => {
    const page = await show(t, { 'a.txt': many });
    const without = await page.$$eval('article.card', (all) =>
        all
            .filter((card) => card.querySelector('canvas') && !card.querySelector('.save'))
            .map((card) => card.dataset.title),
    );
    assert.deepEqual(without, []);
    const histogram = page.locator('.card[data-title="Luminance histogram"] .save');
    await histogram.selectOption('Show the numbers');
    const table = page.getByRole('dialog', { name: 'numbers of Luminance histogram' });
    assert.ok((await table.locator('tr').count()) > 50);
    assert.match(await table.locator('tr').nth(1).textContent(), /^0\d+/);
    await page.keyboard.press('Escape');
    assert.equal(await page.locator('dialog[open]').count(), 0);
});

/** Focuses a drawing as Tab does; returns what presses keys there and tells what is read then. */
async function keysOn(drawing) {
    await drawing.scrollIntoViewIfNeeded();
    await drawing.focus();
    return async (...keys) => {
        for (const key of keys) await drawing.press(key);
        return drawing.getAttribute('aria-valuetext');
    };
}

test('keys read, measure and pick in drawings what the mouse does there', async (t) => {
    let time = 8000;
    const lit = many.replace(/^share\.inttime = .*$/gm, () => `share.inttime = ${time++}`);
    const page = await show(t, { 'a.txt': lit });
    await page.keyboard.press('Tab');
    assert.equal(await page.evaluate(() => document.activeElement.type), 'search');
    const part = (pattern) => page.waitForFunction((p) => location.hash.match(p), pattern);

    // A course: readings, a measured span, the snapshot that shows.
    const exposure = page.locator('#time [data-title="Exposure time"]');
    const course = exposure.locator('.chart');
    const onCourse = await keysOn(course);
    const ring = await course.evaluate((one) => getComputedStyle(one).outlineStyle);
    assert.equal(ring, 'solid');
    assert.match(await onCourse('ArrowRight', 'PageDown'), /^11 s: inttime \d+$/);
    assert.match(await exposure.locator('.where').textContent(), /^#12 /);
    assert.match(await onCourse('End', 'ArrowLeft'), /^38 s/);
    await onCourse('Enter');
    await part('n=39');
    assert.match(await onCourse('Home', 'Shift+PageDown', 'Shift+ArrowRight'), /^11 s/);
    await part('step=1-12');
    // Escape gives the keys back to the page; the span stays until it is pressed again.
    await page.keyboard.press('Escape');
    await page.keyboard.press('ArrowLeft');
    await part('n=38');
    await part('step=1-12');
    // After a click arrows step as ever.
    await course.click({ position: { x: 200, y: 60 } });
    await page.keyboard.press('Home');
    await part('n=1(&|$)');

    // The overview: which part shows, from end to end.
    const onStrip = await keysOn(page.locator('.overview'));
    assert.equal(await onStrip(), 'all, 0 s to 39 s');
    await onStrip('+');
    await part('zoom=');
    await onStrip('Home');
    await part('zoom=0_19.5');
    await onStrip('PageDown');
    await part('zoom=19.5_39');
    assert.equal(await onStrip(), '19.5 s to 39 s');
    await onStrip('0');
    await page.waitForFunction(() => !location.hash.includes('zoom='));

    // A curve: along it, with its values beside it; nothing is read any more behind it.
    const gamma = page.locator('.card[data-title="Luminance histogram"]');
    const onCurve = await keysOn(gamma.locator('.chart'));
    assert.match(await onCurve('ArrowRight', 'PageDown', 'ArrowUp'), /^11: bins \d+$/);
    assert.match(await gamma.locator('.legend').textContent(), /^11: \d+$/);
    await page.keyboard.press('Tab');
    assert.equal(await gamma.locator('.legend').textContent(), '');

    // A map: by cells, rows and columns; one that is picked is cut there.
    const shading = page.locator('.card[data-title="Lens shading"]');
    const onMap = await keysOn(shading.locator('.map canvas').first());
    assert.match(await onMap('ArrowDown', 'ArrowDown', 'ArrowRight'), /^\[2\]\[1\] \d/);
    assert.match(await onMap('PageDown', 'End', 'ArrowRight'), /^\[12\]\[31\] \d/);
    await onMap('ArrowUp', 'Enter');
    assert.match(await shading.locator('.reading-line').textContent(), /^row 11:/);
});
