// Metrics: what stands in the file, and that the programs which it is for take it.
import assert from 'node:assert/strict';
import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { after, test } from 'node:test';
import { setTimeout as pause } from 'node:timers/promises';

const build = resolve(process.env.VORDA_BUILD ?? 'build/release');
const vordascope = join(build, 'utils/host/vordascope/vordascope');
const folder = mkdtempSync(join(tmpdir(), 'vordascope-metrics-'));
const children = [];
after(() => {
    for (const child of children) child.kill('SIGKILL');
    rmSync(folder, { recursive: true });
});

const installed = (...names) =>
    names.every((name) => spawnSync('sh', ['-c', `command -v ${name}`]).status === 0);

const metrics = (args, input) =>
    execFileSync(vordascope, ['metrics', ...args], { input, cwd: folder }).toString();

const odd = `label host = "a\\b"
label fw.v = \xff
label fw-v = 2
label field = 3
time = 7.50
frame = 9
dev_idx = 1, path_idx = 2
share.fps = 25.00
share.list = 1, 2
share.n = -inf
share.name = abc
=== stat.x ===
Overflow = true
a.b = 1
[X]
y = 5
; end
`;

test('fields are samples, whatever labels hold', () => {
    const began = Date.now() / 1000;
    const text = metrics(['-'], Buffer.from(odd, 'latin1'));
    const labels = 'dev_idx="1",path_idx="2",host="\\"a\\\\b\\"",fw_v="ÿ",fw_v_="2",field_="3"';
    const lines = text.split('\n').filter((line) => !/^# |timestamp/.test(line));
    assert.deepEqual(lines, [
        `vorda_field{${labels},field="share.fps"} 25.00`,
        `vorda_field{${labels},field="share.n"} -Inf`,
        `vorda_field{${labels},field="stat.x.Overflow"} 1`,
        `vorda_field{${labels},field="stat.x.a.b"} 1`,
        `vorda_snapshot_time_seconds{${labels}} 7.50`,
        `vorda_snapshot_frame{${labels}} 9`,
        '',
    ]);
    const when = Number(/^vorda_snapshot_timestamp_seconds\{.*\} (.*)$/m.exec(text)[1]);
    assert.ok(began - 1 < when && when < Date.now() / 1000 + 1);
    assert.match(text, /\n# EOF\n$/);
    assert.match(metrics(['--only', 'intl', '-'], odd), /field="intl.x.y"\} 5\n/);
    assert.equal(metrics(['--max', '2', '-'], odd).match(/^vorda_field/gm).length, 2);
    if (installed('promtool')) {
        const check = spawnSync('promtool', ['check', 'metrics'], { input: text });
        assert.deepEqual([check.status, check.stdout + check.stderr], [0, '']);
    }
});

test('what comes through a pipe renews the file at each snapshot', async () => {
    const out = join(folder, 'live.prom');
    const child = spawn(vordascope, ['metrics', '-o', out, '-']);
    children.push(child);
    for (const fps of ['25.00', '12.50']) {
        child.stdin.write(`dev_idx = 0, path_idx = 0\nshare.fps = ${fps}\n; end\n`);
        const there = () => {
            try {
                return readFileSync(out, 'utf8').includes(`field="share.fps"} ${fps}\n`);
            } catch {
                return false;
            }
        };
        for (let i = 0; !there() && i < 12000; i++) await pause(10);
        assert.ok(there());
    }
    child.stdin.end();
    const [status] = await new Promise((ended) => child.on('close', (...how) => ended(how)));
    assert.equal(status, 0);
    assert.deepEqual(readdirSync(folder), ['live.prom']);
});

/** A port that is free now. */
const port = () =>
    new Promise((found) => {
        const server = createServer().listen(0, '127.0.0.1', () => {
            const { port } = server.address();
            server.close(() => found(port));
        });
    });

test('a Prometheus with its node exporter scrapes two cameras', {
    skip: !installed('prometheus', 'prometheus-node-exporter'),
}, async () => {
    const prom = join(folder, 'prom');
    mkdirSync(prom);
    const region = join(folder, 'scene.sr');
    execFileSync(join(build, 'sim/sr-scene'), [region]);
    for (const path of ['0', '1']) {
        const query = ['--region', region, '--', join(build, 'vorda'), '-p', path, 'share'];
        const text = execFileSync(join(build, 'sim/sr-run'), query);
        metrics(['--label', `host=cam${path}`, '-o', join(prom, `cam${path}.prom`), '-'], text);
    }
    const [exporter, server] = [await port(), await port()];
    const start = (name, ...args) =>
        children.push(spawn(name, args, { cwd: folder, stdio: 'ignore' }));
    start(
        'prometheus-node-exporter',
        '--collector.disable-defaults',
        '--collector.textfile',
        `--collector.textfile.directory=${prom}`,
        `--web.listen-address=127.0.0.1:${exporter}`,
    );
    writeFileSync(
        join(folder, 'prometheus.yml'),
        `global: {scrape_interval: 1s}
scrape_configs: [{job_name: cameras, static_configs: [{targets: ['127.0.0.1:${exporter}']}]}]
`,
    );
    start(
        'prometheus',
        '--config.file=prometheus.yml',
        '--storage.tsdb.path=data',
        `--web.listen-address=127.0.0.1:${server}`,
    );
    const query = encodeURIComponent('vorda_field{field="share.fps"}');
    let found = [];
    for (let i = 0; found.length < 2 && i < 1200; i++) {
        await pause(100);
        const answer = await fetch(`http://127.0.0.1:${server}/api/v1/query?query=${query}`)
            .then((response) => response.json())
            .catch(() => null);
        found = answer?.data?.result ?? [];
    }
    assert.deepEqual(
        found.map(({ metric, value }) => [metric.host, metric.path_idx, value[1]]).sort(),
        [
            ['cam0', '0', '25'],
            ['cam1', '1', '25'],
        ],
    );
});
