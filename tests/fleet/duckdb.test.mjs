// The lines of the manual for many cameras, as they stand there, in the database that they are for.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { after, test } from 'node:test';
import { DuckDBInstance } from '@duckdb/node-api';

const build = resolve(process.env.VORDA_BUILD ?? 'build/release');
const folder = mkdtempSync(join(tmpdir(), 'vordascope-fleet-'));
after(() => rmSync(folder, { recursive: true }));

const manual = readFileSync(`${build}/vordascope.1`, 'utf8').replaceAll('\\-', '-');
const queries = [...manual.matchAll(/^duckdb -c "([^"]*)"/gm)].map(([, sql]) => sql);

/** What a camera of a firmware printed: the second one is slow, and 1.1 has another limit. */
function capture(host, fw) {
    return `label host = ${host}
label fw = ${fw}
time = 1.50
dev_idx = 0, path_idx = 0
share.fps = ${host === 'cam"2' ? '12.50' : '25.00'}
share.colormatrix:
1, 2, 3
4, 5, 6
=== cfg.nr ===
limit = ${fw === '1.0' ? 96 : 64}
big = 9223372036854775807
=== stat.lum ===
avg = ${host.length + fw.length}
; end
`;
}

test('the manual has lines for fleets, and they answer what they say', async () => {
    mkdirSync(join(folder, 'captures'));
    for (const host of ['cam1', 'cam"2', 'cam3'])
        for (const fw of ['1.0', '1.1'])
            writeFileSync(join(folder, 'captures', `${host.at(-1)}-${fw}.txt`), capture(host, fw));
    const [line] = manual.match(/^vordascope json captures.*$/m);
    const path = `${build}/utils/host/vordascope:${process.env.PATH}`;
    execFileSync('sh', ['-c', line], { cwd: folder, env: { ...process.env, PATH: path } });

    process.chdir(folder);
    const database = await (await DuckDBInstance.create(':memory:')).connect();
    const answers = [];
    for (const sql of queries) answers.push((await database.runAndReadAll(sql)).getRowsJson());
    assert.deepEqual(answers, [[['6']], [['cam"2']], [['$.cfg.nr.limit', ['96'], ['64']]]]);
    const exact =
        "select distinct cfg.nr.big, share.colormatrix[2][3], file from 'captures.parquet'";
    const rows = (await database.runAndReadAll(`${exact} order by file`)).getRowsJson();
    assert.deepEqual(rows[0], ['9223372036854775807', '6', 'captures/1-1.0.txt']);
});
