// What a chart over time draws of many snapshots.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Thinned } from '../../utils/host/vordascope/page/src/thin.js';

const PIXELS = 100;
const COUNT = 5000;
const axis = Float64Array.from({ length: COUNT }, (_, n) => n / 25 + (n > 3000 ? 20 : 0));
const wave = Float64Array.from(axis, (x) => Math.sin(x / 9));
const steps = Float64Array.from(axis, (_, n) => (n % 7 === 3 ? Number.NaN : n % 11));

/** Takes the first so many snapshots; returns whether they look other than before. */
const take = (thinned, lines, count, slack = 0) =>
    thinned.take(
        'run',
        axis.subarray(0, count),
        lines.map((line) => line.subarray(0, count)),
        [0, axis[count - 1]],
        PIXELS,
        slack,
    );

test('a line is thinned to its extremes, at once or as it grows, and no spike is lost', () => {
    const spiked = wave.slice();
    for (const n of [77, 1234, 2999, 4998]) spiked[n] = 50 + n;
    const lines = [spiked, steps];
    const whole = new Thinned();
    take(whole, lines, COUNT);
    assert.ok(whole.x.length <= 4 * PIXELS + 2, `${whole.x.length} points`);
    for (const n of [77, 1234, 2999, 4998]) assert.ok(whole.ys[0].includes(50 + n), `spike ${n}`);
    assert.equal(Math.min(...whole.ys[0]), Math.min(...spiked));
    whole.places.forEach((n, i) => {
        assert.equal(whole.x[i], axis[n]);
        assert.ok(i === 0 || n > whole.places[i - 1]);
    });
    // Where the axis leaps nothing lies between the snapshots before and after.
    const leap = whole.pointFrom(3001);
    assert.deepEqual([whole.places[leap - 1], whole.places[leap]], [3000, 3001]);
    // Of a line that only rises or falls each point is a value, in order.
    const straight = new Thinned();
    take(straight, [axis, axis.map((x) => 1 - x)], COUNT);
    assert.deepEqual(straight.ys, [straight.x, straight.x.map((x) => 1 - x)]);

    const grown = new Thinned();
    for (let count = 1; count < COUNT; count += 1 + ((count * 7) % 13)) take(grown, lines, count);
    take(grown, lines, COUNT);
    assert.deepEqual([grown.x, grown.ys, grown.places], [whole.x, whole.ys, whole.places]);

    // Few snapshots, or a part of few, stand as they are.
    take(whole, lines, 300);
    assert.deepEqual(whole.ys[0], [...spiked.subarray(0, 300)]);
    assert.equal(whole.ys[1][3], null);
    whole.take('run', axis, lines, [10, 12], PIXELS, 0);
    assert.deepEqual([whole.places[0], whole.places.at(-1)], [250, 301]);
});

test('what no pixel shows is told from what one does', () => {
    const flat = new Float64Array(COUNT).fill(5);
    const thinned = new Thinned();
    take(thinned, [flat], 4000);
    const begun = thinned.places.length;
    let drawn = 0;
    for (let n = 4001; n <= 4100; n++) drawn += take(thinned, [flat], n) ? 1 : 0;
    assert.equal(drawn, Math.ceil((thinned.places.length - begun) / 2), 'once a column');
    assert.ok(drawn > 0 && drawn < 20, `${drawn} of 100 drawn`);
    // A value that leaves the last column shows, beyond what is said to be too little.
    let n = 4100;
    while (take(thinned, [flat], ++n));
    for (const [value, shows] of [
        [5.4, false],
        [4.4, true],
        [5.8, false],
        [6, true],
    ]) {
        flat[n] = value;
        n += 1;
        assert.equal(take(thinned, [flat], n, 0.5), shows, `${value} at ${n}`);
    }
});
