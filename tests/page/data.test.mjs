// From captures to what the page holds: the model, the reader in the page, the file's size.
import assert from 'node:assert/strict';
import { readdirSync } from 'node:fs';
import { basename } from 'node:path';
import { test } from 'node:test';
import { inflateSync } from 'node:zlib';
import { readModel } from '../../utils/host/vordascope/page/src/reader.js';
import {
    blockOf,
    capture,
    drop,
    emptyPage,
    kept,
    open,
    read,
    report,
    scratch,
    series,
    vordascope,
    write,
} from './harness.mjs';

const inflated = (file, id) =>
    inflateSync(Buffer.from(blockOf(read(file).toString(), id), 'base64'));
const modelOf = (file) => JSON.parse(inflated(file, 'captures'));

/** The model of captures, given as texts. */
function model(...texts) {
    const files = texts.map((text, i) => write(`capture-${i}.txt`, text));
    return modelOf(report('model.html', ...files));
}

const field = (model, item, key, group = 0) =>
    model.groups[group].fields.find((f) => f.item === item && f.key === key);

const INDEX = 'dev_idx = 0, path_idx = 0\n';

const hostileText = [
    'dev_idx = 0, path_idx = 0',
    '[LSC]',
    'table_coeff_file_path = "</script><script>hacked = 1</script><img src=x onerror="hacked = 1">',
    '--><!-- {{script}} \u0000\u2028\u00ff \\u0041 \\" %s',
    '=== cfg.<b>nr</b> ===',
    '<i>k</i> = 1',
    'share.<script>hacked = 1</script> = 7',
    '<style>* { display: none }</style>',
    'javascript:hacked=1',
    '',
].join('\n');

const captures = [
    ...readdirSync(kept('tests/corpus')).map((name) => kept(`tests/corpus/${name}`)),
    ...readdirSync(kept('tests/golden')).flatMap((name) => [
        kept(`tests/golden/${name}`),
        write(`indexed-${name}`, `${INDEX}${read(kept(`tests/golden/${name}`))}`),
    ]),
    write('one.txt', capture()),
    write('series.txt', series(20)),
    write('hostile.txt', hostileText),
    write('cut.txt', capture().subarray(0, 70000)),
    write(
        'crlf.txt',
        capture({ vorda: ['share'] })
            .toString()
            .replaceAll('\n', '\r\n'),
    ),
    write('empty.txt', ''),
    write('noise.txt', Buffer.from(Array.from({ length: 5000 }, (_, i) => (i * 7919) & 255))),
];

/** What the reader in the page makes of captures, read in pieces of this size. */
async function readInWasm(files, piece) {
    const wasm = inflated(emptyPage(), 'reader');
    assert.deepEqual(WebAssembly.Module.imports(new WebAssembly.Module(wasm)), []);
    const captures = files.map((file) => ({
        name: basename(file),
        content: new Blob([read(file)]),
    }));
    return Buffer.from(await readModel(wasm, captures, piece));
}

test('the reader in the page and the native one agree byte for byte', async () => {
    assert.ok(captures.length > 30);
    for (const file of captures) {
        const native = inflated(report('native.html', file), 'captures');
        for (const piece of [1 << 20, 4093])
            assert.ok(native.equals(await readInWasm([file], piece)), `${file} by ${piece}`);
    }
    const native = inflated(report('native.html', ...captures), 'captures');
    assert.ok(native.equals(await readInWasm(captures, 65536)), 'all together');
});

test('a value is kept once while it stays, else once a snapshot', () => {
    const snapshot = (...lines) => `${INDEX}${lines.join('\n')}\n`;
    const m = model(
        snapshot('share.fps = 25.00', 'share.a = 1', 'share.gone = 5') +
            snapshot('share.fps = 25.00', 'share.a = 2', 'share.new = 0.5') +
            snapshot('share.fps = 25.00', 'share.a = 1', 'share.gone = 5', 'share.new = 0.5'),
    );
    assert.deepEqual(field(m, 'share', 'fps').v, ['25.00']);
    assert.deepEqual(field(m, 'share', 'a').v, [1, 2, 1]);
    assert.deepEqual(field(m, 'share', 'gone').v, [5, null, 5]);
    assert.deepEqual(field(m, 'share', 'new').v, [null, 0.5, 0.5]);
});

test('numbers stand as printed', () => {
    const printed =
        '0 -1 9007199254740993 18446744073709551615 -0 0.50 0.5 -12.25 nan -inf 1000000000000000 ' +
        '340282346638528859811704183484516925440.00 0.0000001 123456789012345';
    const lines = printed.split(' ').map((value, i) => `share.n${i} = ${value}`);
    const m = model(`${INDEX}${lines.join('\n')}\nshare.b = true\n`);
    const values = m.groups[0].fields.map((f) => f.v[0]);
    assert.equal(values.slice(0, -1).map(String).join(' '), printed);
    assert.deepEqual(
        values.filter((value) => typeof value === 'number'),
        [0, -1, 0.5, -12.25, 123456789012345],
    );
    assert.equal(values.at(-1), true);
    assert.deepEqual(new Set(m.groups[0].fields.map((f) => f.kind)), new Set(['number', 'bool']));
});

test('grids keep their rows, wrapped vectors are flat', () => {
    const m = model(`${INDEX}${read(kept('tests/golden/distinct.txt'))}`);
    const shape = (item, key) => {
        const [value] = field(m, item, key).v;
        return Array.isArray(value[0]) ? [value.length, value[0].length] : [value.length];
    };
    assert.deepEqual(shape('stat.lum', 'Luminance histogram'), [60]);
    assert.deepEqual(shape('stat.lum', 'Regional Luminance average'), [8, 8]);
    assert.deepEqual(shape('cfg.cal', 'table.coeff.ee'), [32, 32]);
    assert.deepEqual(shape('share', 'colormatrix'), [3, 3]);
});

test('paths and devices are kept apart, files are not', () => {
    const snapshot = (dev, path, fps) =>
        `dev_idx = ${dev}, path_idx = ${path}\nshare.fps = ${fps}\n`;
    const m = model(
        snapshot(0, 0, 1) + snapshot(0, 1, 2) + snapshot(0, 0, 3),
        snapshot(1, 0, 4) + snapshot(0, 0, 5),
    );
    assert.deepEqual(m.files, ['capture-0.txt', 'capture-1.txt']);
    assert.deepEqual(
        m.groups.map((g) => [g.dev_idx, g.path_idx, g.file, g.number, g.fields[0].v]),
        [
            [0, 0, [0, 0, 1], [1, 3, 2], [1, 3, 5]],
            [0, 1, [0], [2], [2]],
            [1, 0, [1], [1], [4]],
        ],
    );
});

test('time is an axis only where all have it and none goes back', () => {
    const timed = (...times) =>
        model(
            times
                .map(
                    (time) =>
                        `${time === null ? '' : `time = ${time}\n`}dev_idx = 0, path_idx = 0\nshare.fps = 1\n`,
                )
                .join(''),
        ).groups[0].time;
    assert.deepEqual(timed('9.5', '10.25', '10.25', '100'), [9.5, 10.25, 10.25, 100]);
    assert.equal(timed('9.5', null, '11'), null);
    assert.equal(timed('9.5', '10.5', '10.25'), null);
    assert.equal(timed('9.5', 'nan'), null);
});

test('--max thins evenly, keeps the ends of each path, and says so', () => {
    const text = Array.from(
        { length: 101 },
        (_, i) => `dev_idx = 0, path_idx = ${i % 2}\nshare.n = ${i}\n`,
    ).join('');
    const file = write('long.txt', text);
    const thinned = (max) => {
        assert.equal(vordascope('report', '--max', String(max), '-o', 'thin.html', file).status, 0);
        return modelOf(`${scratch}/thin.html`).groups.map((g) => [
            g.read,
            field({ groups: [g] }, 'share', 'n').v,
        ]);
    };
    assert.deepEqual(thinned(12), [
        [51, [0, 20, 40, 60, 80, 100]],
        [50, [1, 25, 49, 73, 99].map((n) => n)],
    ]);
    assert.deepEqual(
        thinned(1).map(([, v]) => v),
        [[0], [1]],
    );
    assert.equal(thinned(101)[0][1].length, 51);
});

test('what cannot be read is told', () => {
    const lines = Array.from({ length: 250 }, (_, i) => `?? ${i} ${'x'.repeat(i === 0 ? 900 : 0)}`);
    const m = model('nothing of vorda\n', `${INDEX}${lines.join('\n')}\nshare.fps = 2`, '');
    assert.equal(m.unread_count, 251 + 1);
    assert.equal(m.unread.length, 200);
    assert.deepEqual(
        [m.unread[0].file, m.unread[0].line, m.unread[0].text],
        [0, 1, 'nothing of vorda'],
    );
    assert.deepEqual([m.unread[1].file, m.unread[1].line, m.unread[1].text.length], [1, 2, 503]);
    assert.deepEqual(
        m.notes.map((note) => note.file),
        [0, 2],
    );
    assert.deepEqual(m.groups[0].cut, [0]);
});

test('a file that is not there or empty does not take the others with it', () => {
    const files = ['gone.txt', 'one.txt', 'empty.txt'];
    const { status, stderr } = vordascope('report', '-o', 'gone.html', ...files);
    assert.equal(status, 2);
    assert.match(stderr, /gone\.txt: No such file.*\n.*empty\.txt: no snapshot/);
    const m = modelOf(`${scratch}/gone.html`);
    assert.deepEqual([m.groups.length, m.groups[0].file], [1, [1]]);
    assert.deepEqual(
        m.notes.map(({ file, text }) => [file, /No such file|no snapshot/.exec(text)[0]]),
        [
            [0, 'No such file'],
            [2, 'no snapshot'],
        ],
    );
});

test('a page is as small as promised', () => {
    assert.ok(read(report('one.html', 'one.txt')).length <= 350 << 10);
    const file = write('300.txt', series(300));
    assert.ok(read(report('300.html', file)).length <= 2 << 20);
});

test('a page allows itself nothing but its own script, style and reader', () => {
    const html = read(emptyPage()).toString();
    const [, policy] = /http-equiv="Content-Security-Policy" content="([^"]*)"/.exec(html);
    const hash = "'sha256-[A-Za-z0-9+/=]{44}'";
    assert.match(
        policy,
        new RegExp(
            `^default-src 'none'; script-src ${hash} 'wasm-unsafe-eval'; style-src ${hash}; ` +
                "base-uri 'none'; form-action 'none'$",
        ),
    );
    assert.match(html, /Copyright \(c\) \d+ Leon Sorokin/);
});

test('a report goes to standard output, never over a capture', () => {
    const { status, stdout, stderr: said } = vordascope('report', 'one.txt');
    assert.deepEqual([status, said], [0, '']);
    assert.ok(stdout.equals(read(report('one.html', 'one.txt'))));
    const { status: refused, stderr } = vordascope('report', '-o', 'one.txt', 'one.txt');
    assert.equal(refused, 2);
    assert.match(stderr, /one\.txt/);
    assert.ok(read(`${scratch}/one.txt`).includes('dev_idx'));
    assert.equal(vordascope('report', '-o', '/dev/full', 'one.txt').status, 2);
});

/** The text of a page, once it has drawn everything: it does so when it is idle, before we are told. */
async function shown(page) {
    await page.waitForSelector('section');
    return page.evaluate(async () => {
        await new Promise((resolve) => window.requestIdleCallback(resolve));
        return document.querySelector('#page').textContent;
    });
}

test('dropped, chosen or pasted, a capture gives the page that report gives', async (t) => {
    const content = read(`${scratch}/one.txt`);
    const reported = await shown(await open(t, report('one.html', 'one.txt')));
    assert.ok(/one\.txt.* [0-9]{4} fields.*stat\.lum/.test(reported));

    const dropped = await open(t, emptyPage());
    await drop(dropped, { name: 'one.txt', content });
    assert.equal(await shown(dropped), reported);

    const chosen = await open(t, emptyPage());
    const chooser = chosen.waitForEvent('filechooser');
    await chosen.getByRole('button').first().click();
    await (await chooser).setFiles(`${scratch}/one.txt`);
    assert.equal(await shown(chosen), reported);

    const pasted = await open(t, emptyPage());
    await pasted.evaluate((text) => {
        const clipboardData = new DataTransfer();
        clipboardData.setData('text/plain', text);
        document.body.dispatchEvent(new ClipboardEvent('paste', { clipboardData, bubbles: true }));
    }, content.toString());
    assert.equal((await shown(pasted)).replaceAll('pasted text', 'one.txt'), reported);
});

test('hostile text is text', async (t) => {
    for (const name of ['hostile.txt', 'noise.txt', 'empty.txt']) {
        const page = await open(t, report('hostile.html', name));
        await page.waitForFunction((name) => document.body.innerText.includes(name), name);
        assert.equal(await page.evaluate(() => window.hacked), undefined);
        assert.equal(await page.evaluate(() => document.scripts.length), 3);
        assert.equal(await page.evaluate(() => document.querySelectorAll('img, iframe').length), 0);
    }
});
