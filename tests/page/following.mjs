// What the tests of `vordascope live` share: the program at work, its input, and what it sends.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { connect } from 'node:net';
import { built, scratch, vordascope } from './harness.mjs';

export const environment = { ...process.env, XDG_RUNTIME_DIR: scratch, DISPLAY: '' };

/** Why the tests of a program without a server are skipped; false where it has one. */
export const skip =
    /without its server/.test(vordascope('live', '--no-browser', '/').stderr) &&
    'vordascope was built without its server';

/** Starts `vordascope live`; it ends with the test. Resolves when its address is known. */
export const live = (test, ...args) => start(test, environment, '--no-browser', ...args);

/** The same in another environment, and with a browser. */
export async function start(test, env, ...args) {
    const child = spawn(built('vordascope'), ['live', ...args], {
        env,
        stdio: ['pipe', 'pipe', 'pipe'],
    });
    let told = '';
    child.stderr.on('data', (text) => {
        told += text;
    });
    test.after(async () => {
        if (child.exitCode === null) {
            child.kill();
            await once(child, 'exit');
        }
    });
    const [line] = await once(child.stdout, 'data');
    const address = new URL(line.toString().trim());
    const tells = async (text) => {
        while (!told.includes(text)) await once(child.stderr, 'data');
        return true;
    };
    return { child, address, tells };
}

/** A snapshot, `more` lines of it behind the exposure time. */
export const snapshot = (time, inttime, more = '') =>
    `time = ${time}\ndev_idx = 0, path_idx = 1\nshare.inttime = ${inttime}\n${more}; end\n`;

/** Writes to the input and waits until it has been taken. */
export async function feed({ child }, text) {
    if (!child.stdin.write(text)) await once(child.stdin, 'drain');
}

/** Sends raw bytes and resolves to what comes back until the connection ends. */
export function exchange(address, bytes) {
    return new Promise((resolve, reject) => {
        let reply = '';
        const socket = connect(address.port, address.hostname, () => socket.write(bytes));
        socket.on('data', (data) => {
            reply += data;
        });
        socket.on('error', () => resolve(reply));
        socket.on('close', () => resolve(reply));
        socket.setTimeout(120_000, () => reject(new Error('no answer')));
    });
}

async function* events(stream) {
    let pieces = [];
    let last = '';
    for await (const piece of stream) {
        pieces.push(piece);
        const ends = (last + piece).includes('\n\n');
        last = piece.at(-1);
        if (!ends) continue; // a state comes in hundreds of pieces, which are not joined for each
        const texts = pieces.join('').split('\n\n');
        pieces = [texts.pop()];
        for (const text of texts) {
            const found = /^event: (\w+)\ndata: (.*)$/.exec(text);
            if (found) yield { name: found[1], data: JSON.parse(found[2]) };
        }
    }
}

/**
 * The events of a page, as they come: next() resolves to { name, data }, and leave() ends them.
 * Nothing more than a piece is read from the connection before next() is called.
 */
export async function follow(address) {
    const leaving = new AbortController();
    const reply = await fetch(new URL('events', address), { signal: leaving.signal });
    // Taken at once: a body that nobody holds is cancelled when its reply is collected.
    const coming = events(reply.body.pipeThrough(new TextDecoderStream()));
    return {
        leave: () => leaving.abort(),
        async next() {
            const { value, done } = await coming.next();
            if (done) throw new Error('the events have ended');
            return value;
        },
    };
}
