// From captures to what the page holds: the model, the reader in the page, the file's size.
import assert from 'node:assert/strict';
import { mkdirSync, readdirSync } from 'node:fs';
import { basename } from 'node:path';
import { test } from 'node:test';
import { gzipSync, inflateSync } from 'node:zlib';
import { Run } from '../../utils/host/vordascope/page/src/model.js';
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

/** The runs of captures, given as texts, as the page has them. */
function runsOf(...texts) {
    const m = model(...texts);
    return m.runs.map((run) => new Run(run, m));
}
/** What a field holds, snapshot by snapshot. */
const values = (run, name) => Array.from({ length: run.length }, (_, n) => run.field(name).at(n));

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
    write('mail.txt', `Dear all,\n${INDEX}share.a = 1\nshare.b = 2\n`.replaceAll(/^/gm, '> ')),
    write('packed.gz', gzipSync(series(20))),
    write('half.gz', gzipSync(series(20)).subarray(0, 20000)),
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

const snapshot = (...lines) => `${INDEX}${lines.join('\n')}\n`;

test('what is read is what the page has, value by value, and each change is kept once', () => {
    const texts = [
        ['share.fps = 25.00', 'share.a = 1', 'share.gone = 5', 'share.list = 1, 2'],
        ['share.fps = 25.00', 'share.a = -2', 'share.new = 0.5', 'share.list = 1, 2, 3'],
        ['share.fps = 25.00', 'share.a = nan', 'share.new = 0.50', 'share.list = 7'],
        ['share.fps = 25.00', 'share.a = 1', 'share.gone = 5', 'share.list = (1 2) (3 4)'],
    ].map((lines) => snapshot(...lines));
    const [run] = runsOf(texts.join(''));
    const a = { ...Object.fromEntries(run.fields.map(({ name }) => [name, values(run, name)])) };
    assert.deepEqual(a, {
        'share.fps': ['25.00', '25.00', '25.00', '25.00'],
        'share.a': [1, -2, 'nan', 1],
        'share.gone': [5, null, null, 5],
        'share.new': [null, '0.5', '0.50', null],
        'share.list': [
            [1, 2],
            [1, 2, 3],
            7,
            [
                [1, 2],
                [3, 4],
            ],
        ],
    });
    assert.deepEqual(
        [...run.field('share.gone').courses[0], ...run.field('share.a').courses[0]],
        [5, Number.NaN, Number.NaN, 5, 1, -2, Number.NaN, 1],
    );
});

test('numbers stand as printed, whether they stay or change', () => {
    const printed =
        '0 -1 9007199254740993 18446744073709551615 -0 0.50 0.5 -12.25 nan -inf 1000000000000000 ' +
        '340282346638528859811704183484516925440.00 0.0000001 123456789012345 -0.00 -0.07 true';
    const lines = printed.split(' ').map((value, i) => `share.n${i} = ${value}`);
    const others = lines.map((line) => line.replace(/= .*/, '= 3'));
    for (const texts of [[lines], [others, lines], [lines, others]]) {
        const [run] = runsOf(texts.map((one) => snapshot(...one)).join(''));
        const n = texts.indexOf(lines);
        assert.equal(run.fields.map((field) => String(field.at(n))).join(' '), printed);
    }
});

test('grids keep their rows, wrapped vectors are flat', () => {
    const [run] = runsOf(`${INDEX}${read(kept('tests/golden/distinct.txt'))}`);
    const shape = (name) => {
        const value = run.field(name).at(0);
        return Array.isArray(value[0]) ? [value.length, value[0].length] : [value.length];
    };
    assert.deepEqual(shape('stat.lum.Luminance histogram'), [60]);
    assert.deepEqual(shape('stat.lum.Regional Luminance average'), [8, 8]);
    assert.deepEqual(shape('cfg.cal.LSC0.table.coeff.ee'), [32, 32]);
    assert.deepEqual(shape('share.colormatrix'), [3, 3]);
});

test('a run is a path of a file, and ends where time or frame go back', () => {
    const at = (head, dev, path, n) =>
        `${head}dev_idx = ${dev}, path_idx = ${path}\nshare.n = ${n}\n`;
    const runs = runsOf(
        at('time = 9.5\n', 0, 0, 1) + at('', 0, 1, 2) + at('time = 9.62\n', 0, 0, 3),
        at('frame = 7\n', 1, 0, 4) +
            at('missed = 2\nframe = 10\nmark = <b>lamp\n', 1, 0, 5) +
            at('frame = 9\n', 1, 0, 6) +
            at('time = 1\n', 0, 0, 7) +
            at('time = 1\n', 0, 0, 8) +
            at('time = 0.5\n', 0, 0, 9),
    );
    assert.deepEqual(
        runs.map((run) => [run.file, run.path, values(run, 'share.n'), run.timed && [...run.axis]]),
        [
            ['capture-0.txt', 'dev_idx 0, path_idx 0', [1, 3], [0, 0.12]],
            ['capture-0.txt', 'dev_idx 0, path_idx 1', [2], false],
            ['capture-1.txt', 'dev_idx 1, path_idx 0', [4, 5], false],
            ['capture-1.txt', 'dev_idx 1, path_idx 0', [6], false],
            ['capture-1.txt', 'dev_idx 0, path_idx 0', [7, 8], [0, 0]],
            ['capture-1.txt', 'dev_idx 0, path_idx 0', [9], [0]],
        ],
    );
    assert.deepEqual([...runs[2].missed], [[1, 2]]);
    assert.deepEqual(runs[2].marks, [[1, '<b>lamp']]);
    assert.match(runs[0].originOf(1), /^capture-0\.txt, snapshot 3, .*time 9\.62$/);
});

test('long lists are thinned where they change too often, all else is complete', () => {
    const long = (n) => Array.from({ length: 17 }, (_, i) => n * 100 + i).join(', ');
    const snapshots = Array.from({ length: 101 }, (_, n) =>
        snapshot(`share.n = ${n * n}`, `share.often = ${long(n)}`, `share.once = ${long(n >> 5)}`),
    );
    const file = write('long.txt', snapshots.join(''));
    const { stderr } = vordascope('report', '--max', '12', '-o', 'thin.html', file);
    assert.match(stderr, /long\.txt: One of 16 snapshots has the 1 field of more than 16 values/);
    const m = modelOf(`${scratch}/thin.html`);
    assert.match(m.notes[0].text, /One of 16/);
    const run = new Run(m.runs[0], m);
    const field = run.field('share.often');
    for (let n = 0; n < 101; n++) {
        assert.equal(run.field('share.n').at(n), n * n);
        assert.equal(run.field('share.once').at(n)[0], 100 * (n >> 5));
        const of = n === 100 ? 100 : n - (n % 16);
        assert.deepEqual([field.pictureOf(n), field.at(n)[0]], [of, of * 100], `snapshot ${n}`);
    }
});

test('a capture of anything takes no more memory than a few times its size', () => {
    const many = Array.from({ length: 50000 }, (_, n) => snapshot(`share.k${n} = ${n}`)).join('');
    const back = Array.from(
        { length: 3000 },
        (_, n) => `time = ${9000 - n}\n${snapshot('share.a = 1')}`,
    );
    const blocks = Array.from({ length: 2000 }, (_, n) => `block ${n}:\na = 1\n`).join('');
    const long = snapshot(`=== stat.x ===\n[Long ${'x'.repeat(50000)}]\n${blocks}`);
    const files = [
        write('keys.txt', many),
        write('long.txt', long),
        write('back.txt', back.join('')),
    ];
    const { stderr } = vordascope('report', '-o', 'hostile.html', ...files);
    assert.match(stderr, /2000 values left out: there are names of more than 500 bytes/);
    assert.match(stderr, /30998 values left out: there are more than 20000 names/);
    assert.match(stderr, /2002 snapshots left out: there are more than 1000 runs/);
    const m = modelOf(`${scratch}/hostile.html`);
    assert.deepEqual([m.runs.length, m.names.length, m.notes.length], [1000, 20000, 3]);
    assert.ok(inflated(`${scratch}/hostile.html`, 'captures').length < 3 * many.length);
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
    assert.deepEqual(m.runs[0].cut, [0]);
});

test('a file that is not there or empty does not take the others with it', () => {
    const files = ['gone.txt', 'one.txt', 'empty.txt'];
    const { status, stderr } = vordascope('report', '-o', 'gone.html', ...files);
    assert.equal(status, 2);
    assert.match(stderr, /gone\.txt: No such file.*\n.*empty\.txt: no snapshot/);
    const m = modelOf(`${scratch}/gone.html`);
    assert.deepEqual([m.runs.length, m.runs[0].file], [1, 1]);
    assert.deepEqual(
        m.notes.map(({ file, text }) => [file, /No such file|no snapshot/.exec(text)[0]]),
        [
            [0, 'No such file'],
            [2, 'no snapshot'],
        ],
    );
});

test('of the captures, those of one name show their folders', () => {
    for (const folder of ['x', 'y']) mkdirSync(`${scratch}/${folder}`);
    const files = ['x/a.txt', 'y/a.txt', 'y/b.txt'].map((name) =>
        write(name, `${INDEX}share.a = 1\n`),
    );
    assert.deepEqual(modelOf(report('names.html', ...files)).files, [files[0], files[1], 'b.txt']);
});

test('a page is as small as promised', () => {
    assert.ok(read(emptyPage()).length <= 220000);
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
            `^default-src 'none'; script-src ${hash} ${hash} 'wasm-unsafe-eval'; style-src ${hash}; ` +
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
        assert.equal(await page.evaluate(() => document.scripts.length), 4);
        assert.equal(await page.evaluate(() => document.querySelectorAll('img, iframe').length), 0);
    }
});
