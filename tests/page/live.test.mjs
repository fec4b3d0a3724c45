// `vordascope live` as a server: whom it answers, and that nobody slows it.
import assert from 'node:assert/strict';
import { spawn, spawnSync } from 'node:child_process';
import { once } from 'node:events';
import {
    appendFileSync,
    mkdirSync,
    readdirSync,
    readFileSync,
    statSync,
    writeFileSync,
} from 'node:fs';
import { connect } from 'node:net';
import { hostname } from 'node:os';
import { test } from 'node:test';
import { environment, exchange, feed, follow, live, skip, snapshot, start } from './following.mjs';
import { built, scratch, vordascope, write } from './harness.mjs';

test('it answers its own page and nobody else', { skip }, async (test) => {
    const { address } = await live(test, '-');
    const { host, pathname: path } = address;
    assert.match(address.href, /^http:\/\/127\.0\.0\.1:\d+\/[0-9a-f]{32,}\/$/);
    const ask = async (line, headers = [`Host: ${host}`], body = '') =>
        (await exchange(address, [line, ...headers, '', body].join('\r\n'))).slice(9, 12);
    const get = `GET ${path} HTTP/1.1`;
    const ours = `Host: ${host}`;

    assert.equal(await ask(get), '200');
    assert.equal(await ask(get, [ours, 'Sec-Fetch-Site: none']), '200');
    for (const [line, headers, status] of [
        ['GET / HTTP/1.1', [ours], '404'],
        [`GET ${path.slice(0, -2)}/ HTTP/1.1`, [ours], '404'],
        [`GET /${'0'.repeat(path.length - 2)}/ HTTP/1.1`, [ours], '404'],
        [`GET ${path}x HTTP/1.1`, [ours], '404'],
        [`GET ${path}../ HTTP/1.1`, [ours], '404'],
        [`GET ${path}?a HTTP/1.1`, [ours], '404'],
        [get, [], '403'],
        [get, ['Host: evil.example'], '403'],
        [get, [`Host: localhost:${address.port}`], '403'],
        [get, [ours, ours], '403'],
        [`GET ${path}events HTTP/1.1`, [ours, 'Origin: http://evil.example'], '403'],
        [`GET ${path}events HTTP/1.1`, [ours, 'Origin: null'], '403'],
        [`GET ${path}mark?text=a HTTP/1.1`, [ours, 'Sec-Fetch-Site: cross-site'], '403'],
        [`GET ${path}mark?text=a HTTP/1.1`, [ours, 'Sec-Fetch-Site: same-site'], '403'],
        [`GET ${path}mark?text=%2 HTTP/1.1`, [ours], '400'],
        [`GET ${path}mark?text=%20 HTTP/1.1`, [ours], '400'],
        [`HEAD ${path} HTTP/1.1`, [ours], '405'],
        [`POST ${path}mark?text=a HTTP/1.1`, [ours], '405'],
        [`OPTIONS ${path} HTTP/1.1`, [ours], '405'],
        [get, [ours, 'Content-Length: 3'], '400'],
        [get, [ours, 'Transfer-Encoding: chunked'], '400'],
        [get, [ours, `X: ${'x'.repeat(9000)}`], '431'],
        [`GET /${'x'.repeat(9000)} HTTP/1.1`, [ours], '431'],
        ['\x16\x03\x01\x02\x00', [], '400'],
        ['GET', [], '400'],
    ])
        assert.equal(await ask(line, headers), status, `${line.slice(0, 80)} ${headers}`);

    const reply = await exchange(address, `${get}\r\n${ours}\r\n\r\n`);
    const head = reply.slice(0, reply.indexOf('\r\n\r\n'));
    assert.doesNotMatch(head, /Access-Control/i);
    assert.match(head, /X-Frame-Options: DENY/);
    assert.match(reply, /content="default-src 'none'; connect-src 'self'; script-src /);

    // More connections than it takes, and requests that never end: they go, it stays.
    const idle = Array.from({ length: 60 }, () => connect(address.port, '127.0.0.1'));
    await Promise.all(idle.map((socket) => once(socket, 'connect')));
    idle.map((socket) => socket.on('error', () => {}).write('GET '));
    assert.equal(await ask(get), '', 'all connections are taken');
    for (const socket of idle) socket.destroy();
    while ((await ask(get)) === ''); // until it has noticed that they have gone
    assert.equal(await ask(get), '200');
});

test('a page gets the state, and then what is new', { skip }, async (test) => {
    const good = write('good.txt', snapshot(1, 100) + snapshot(2, 200));
    const program = await live(test, '--reference', `${good}#2`, '-');
    const first = await follow(program.address);
    let event = await first.next();
    assert.equal(event.name, 'state');
    assert.equal(event.data.age, null);
    assert.equal(event.data.model.runs[event.data.reference].fields[0].value, 200);

    await feed(program, snapshot(5, 800));
    await feed(program, `mark = lamp on\n${snapshot(6, 900, '\x1b[31mnoise\n')}time = 7\ndev_idx`);
    const added = [];
    while (added.length < 2) added.push(...(await first.next()).data.add);
    assert.deepEqual(added[1].marks, ['lamp on']);
    assert.deepEqual(
        added.map(({ snapshot, fields }) => [snapshot, fields[0][1]]),
        [
            [0, 800],
            [1, 900],
        ],
    );

    // Marks of the verb and of the page; another page, and one that comes back, get the whole.
    const marked = spawnSync(built('vordascope'), ['mark', 'lamp', 'off & "on"'], {
        env: environment,
    });
    assert.equal(marked.status, 0, marked.stderr.toString());
    assert.deepEqual((await first.next()).data.marks, [[1, 1, 'lamp off & "on"']]);
    await fetch(new URL('mark?text=one%0Aline', program.address));
    assert.deepEqual((await first.next()).data.marks, [[1, 1, 'one line']]);
    first.leave();
    const second = await follow(program.address);
    event = await second.next();
    assert.equal(event.name, 'state');
    assert.equal(event.data.model.unread_count, 1);
    assert.deepEqual(event.data.model.runs[1].marks, [
        [1, 'lamp on'],
        [1, 'lamp off & "on"'],
        [1, 'one line'],
    ]);

    // The input ends within a snapshot; the program tells and stays.
    program.child.stdin.end();
    event = await second.next();
    assert.equal(event.name, 'state');
    assert.equal(event.data.ended, true);
    assert.equal(event.data.model.runs[1].count, 2);
    assert.ok(await program.tells('standard input has ended after 2 snapshots'));
    assert.equal((await fetch(program.address)).status, 200);
    const posted = () => readdirSync(`${scratch}/vordascope`);
    assert.equal(statSync(`${scratch}/vordascope`).mode & 0o777, 0o700);
    assert.deepEqual(posted(), [String(program.child.pid)]);
    program.child.kill();
    await once(program.child, 'exit');
    assert.equal(program.child.exitCode, 0);
    assert.deepEqual(posted(), []);
});

/** How many bytes a connection on this machine holds at most while nobody reads. */
function heldByConnection() {
    const most = (which) =>
        Number(readFileSync(`/proc/sys/net/ipv4/tcp_${which}mem`, 'utf8').split(/\s+/)[2]);
    return most('r') + most('w');
}

test('a page that does not read slows nobody', { skip, timeout: 600_000 }, async (test) => {
    const program = await live(test, '-');
    const stalled = await follow(program.address);
    const reading = await follow(program.address);

    const values = Array.from({ length: 4000 }, (_, k) => 10000 + k);
    const text = (i) => `share.grid: ${[i, ...values.slice(1)].join(', ')}\n`;
    const count = Math.ceil((1.5 * heldByConnection()) / text(0).length);
    /** The whole states that a page got until it has seen everything. */
    const states = async (page) => {
        let seen = 0;
        let whole = 0;
        while (seen < count) {
            const { name, data } = await page.next();
            seen = name === 'state' ? (data.model.runs[0]?.count ?? 0) : seen + data.add.length;
            whole += name === 'state';
        }
        assert.equal(seen, count);
        return whole;
    };
    const read = states(reading);
    for (let i = 1; i <= count; i++) await feed(program, snapshot(i / 25, i, text(i)));
    await read;
    assert.ok((await states(stalled)) > 1, 'it was spared what it did not read');
});

test('what is read is written, with what was noted where it belongs', { skip }, async (test) => {
    const ended = async ({ child }) => {
        if (child.exitCode === null) await once(child, 'exit');
        return child.exitCode;
    };
    const [one, two, three] = [1, 2, 3].map((n) => snapshot(n, n * 100));
    const [half, rest] = [three.slice(0, 40), three.slice(40)];
    const noise = 'hello\n';
    const first = `${noise}mark = early\nmark = dev_idx = 0, path_idx = 1\n${one}`;
    const wanted = `${first}mark = lamp\n${two}mark = late\n${three}`;
    const fifo = `${scratch}/fifo`;
    spawnSync('mkfifo', [fifo]);
    let piped = '';
    const reader = spawn('cat', [fifo]);
    reader.stdout.setEncoding('latin1').on('data', (text) => {
        piped += text;
    });
    test.after(() => reader.kill());
    const file = write('recorded.txt', 'what was there before and is longer'.repeat(20));
    for (const out of [file, fifo]) {
        const program = await live(test, '-o', out, '-');
        const { child, address } = program;
        const page = await follow(address);
        const note = (text) => fetch(new URL(`mark?text=${text}`, address));
        const news = async (wanted) => {
            while (!JSON.stringify((await page.next()).data).includes(wanted));
        };
        await note('early');
        await feed(program, noise + one);
        await news('early');
        await note('dev_idx = 0, path_idx = 1');
        if (out === file) assert.equal(readFileSync(file, 'latin1'), first);
        await feed(program, two + half);
        await news('200');
        await note('lamp');
        child.stdin.end(rest);
        await news('"ended":true');
        await note('late');
        child.kill();
        assert.equal(await ended(program), 0);
    }
    assert.equal(readFileSync(file, 'latin1'), wanted);
    if (reader.exitCode === null) await once(reader, 'close');
    assert.equal(piped, wanted);
    const columns = vordascope('series', '--no-header', file, 'time', 'mark').stdout.toString();
    assert.equal(columns, '1,"early; dev_idx = 0, path_idx = 1"\n2,lamp\n3,late\n');

    // What cannot be written is told, once, and following goes on; it shows in the exit status.
    const program = await live(test, '-o', '/dev/full', '-');
    const page = await follow(program.address);
    await feed(program, one + two);
    assert.ok(await program.tells('/dev/full: No space left on device; no more is written there'));
    await feed(program, three);
    for (let seen = 0; seen < 3; ) {
        const { name, data } = await page.next();
        seen = name === 'state' ? (data.model.runs[0]?.count ?? 0) : seen + data.add.length;
    }
    program.child.kill();
    assert.equal(await ended(program), 2);

    // Nor is a line lost where nothing says to which snapshot it belongs.
    const odd = await live(test, '-o', file, '-');
    await feed(odd, `\x1b[1m${one}`);
    const others = await follow(odd.address);
    while (!JSON.stringify((await others.next()).data).includes('100'));
    await fetch(new URL('mark?text=lamp', odd.address));
    odd.child.kill();
    assert.ok(await odd.tells(`${file} lacks what was noted: mark = lamp`));
    for (const args of [[file], ['--reference', `${file}#1`, '-']]) {
        const { status, stderr } = vordascope('live', '--no-browser', '-o', file, ...args);
        assert.equal(status, 2);
        assert.match(stderr, /recorded.txt: the recording would overwrite this capture/);
    }
    assert.equal(readFileSync(file, 'latin1'), `\x1b[1m${one}`);
});

test('a file that grows is followed, and one that is written anew', { skip }, async (test) => {
    const file = write('growing.txt', snapshot(1, 1));
    const { address, child } = await live(test, file);
    const page = await follow(address);
    let count = (await page.next()).data.model.runs[0]?.count ?? 0;
    if (count === 0) count = (await page.next()).data.add.length;
    appendFileSync(file, snapshot(2, 2));
    assert.equal((await page.next()).data.add[0].fields[0][1], 2);
    write('growing.txt', snapshot(1, 3));
    const [{ run, begin }] = (await page.next()).data.add;
    assert.equal(run, 1);
    assert.ok(begin);

    // What cannot be done is said, with status 2.
    const fails = (...args) => {
        const result = spawnSync(built('vordascope'), ['live', '--no-browser', ...args], {
            env: environment,
        });
        assert.equal(result.status, 2);
        return result.stderr.toString();
    };
    assert.match(fails('--port', address.port, file), /port \d+: Address already in use; without/);
    assert.match(fails(`${scratch}/none`), /No such file/);
    assert.match(fails(scratch), /is a directory/);
    assert.match(fails('--reference', `${file}#9`, file), /no snapshot 9/);
    assert.equal(child.exitCode, null);
});

test("the desktop's opener gets the address, and is not waited for", { skip }, async (test) => {
    const folder = `${scratch}/bin`;
    mkdirSync(folder);
    const opened = `${scratch}/opened`;
    spawnSync('mkfifo', [opened]);
    const desktop = { ...environment, DISPLAY: ':9', PATH: `${folder}:${process.env.PATH}` };
    const opener = (script) =>
        writeFileSync(`${folder}/xdg-open`, `#!/bin/sh\n${script}\n`, { mode: 0o755 });
    const tellsHow = async ({ tells, address }) => {
        const { port } = address;
        assert.ok(await tells('open that address in a browser, on another machine after:'));
        assert.ok(await tells(`ssh -L ${port}:127.0.0.1:${port} ${hostname()}\n`));
    };

    // It goes on longer than the program, whose port is free then.
    opener(`exec 3> ${opened}; echo "$$ $# $1" >&3; exec 3>&-; exec sleep 600`);
    const program = await start(test, desktop, '-');
    const [pid, ...given] = readFileSync(opened, 'latin1').trim().split(' ');
    test.after(() => process.kill(Number(pid)));
    assert.deepEqual(given, ['1', program.address.href]);
    assert.equal((await fetch(program.address)).status, 200);
    program.child.kill();
    await once(program.child, 'exit');
    assert.ok(process.kill(Number(pid), 0));
    const [error] = await once(connect(program.address.port, '127.0.0.1'), 'error');
    assert.equal(error.code, 'ECONNREFUSED');

    // When it fails, or is not there, or there is no desktop, people are told what to do.
    opener('exit 3');
    const failed = await start(test, desktop, '-');
    assert.ok(await failed.tells('xdg-open failed'));
    await tellsHow(failed);
    const none = await start(test, { ...desktop, PATH: scratch }, '-');
    assert.ok(await none.tells('xdg-open could not be started'));
    await tellsHow(none);
    await tellsHow(await start(test, environment, '-'));
});
